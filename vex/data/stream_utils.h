// TStreamUtils: moving data between a byte stream and a memory buffer, a byte array, a string,
// a string list and a component. Text in streams is UTF-8; a component and a list of object
// description lines meet only through the binary component stream ("TPF0").
//
//   TStringList lines;
//   TStreamUtils::WriteComponentToList(form, lines);   // "object Form1: TForm" ... "end"
//   TStreamUtils::ReadComponentFromList(copy, lines);  // copy gets form's properties back
#pragma once

#include <cstdint>
#include <memory>

#include "vex/platform/component.h"
#include "vex/platform/streams.h"
#include "vex/platform/string_list.h"
#include "vex/platform/types.h"

namespace vex {

class TStreamUtils {
 public:
  /// Empties the stream, then writes Count bytes from Buffer at position 0; returns the count
  /// written. Neither Buffer nor Count is checked; Count 0 just empties the stream.
  static int32_t LoadStreamFromBuffer(TStream& Stream, const void* Buffer, int32_t Count);
  /// Rewinds the stream and reads up to Count bytes into Buffer (which must hold Count bytes);
  /// returns the count read.
  static int32_t SaveStreamToBuffer(TStream& Stream, void* Buffer, int32_t Count);
  /// The whole stream, read from position 0. An empty stream gives an empty array and its
  /// position is left alone.
  static TBytes GetStreamBytes(TStream& Stream);
  /// Replaces the stream's content by Bytes written from position 0 and returns their count;
  /// an empty array leaves the stream as it is and returns 0.
  static int32_t SetStreamBytes(TStream& Stream, const TBytes& Bytes);
  /// Writes Value as UTF-8 at the stream's current position (no clearing, no rewind; what
  /// lies beyond the written bytes stays).
  static void LoadStreamFromStr(TStream& Stream, const String& Value);
  /// The UTF-8 text from the stream's current position to its end (no rewind first).
  static String SaveStreamToStr(TStream& Stream);
  /// A new memory stream holding the list's lines as UTF-8 text, positioned at its end (rewind
  /// before reading it); an empty stream for a null list.
  static std::unique_ptr<TMemoryStream> CreateStreamFromList(const TStrings* List);
  /// Null for a null stream, and List is then left untouched. Otherwise List's lines are
  /// replaced by the stream's text read as UTF-8 from its current position, one line per
  /// line, and &List is returned.
  static TStrings* CreateListFromStream(TStream* Stream, TStrings& List);
  /// As above into a new list, which the caller owns; null for a null stream.
  static std::unique_ptr<TStringList> CreateListFromStream(TStream* Stream);
  /// Converts the object description text held in List into a binary component stream
  /// written at the target's position; returns the target's position after it and rewinds
  /// the target to 0. Text that is not an object description raises EParserError with its
  /// line number; the target keeps what was written before the failure.
  static int32_t SaveListToBinaryStream(const TStrings& List, TStream& Stream);
  /// Converts the binary component stream (read from position 0) into description text that
  /// replaces List's lines; returns the line count. A stream that is not a component stream
  /// raises EFilerError / EReadError (stream errors).
  static int32_t LoadListFromBinaryStream(TStream& Stream, TStrings& List);
  /// Reads Component's properties and children from the description text in List (through
  /// the binary form); returns the binary byte count. An empty list changes nothing and
  /// returns 0.
  static int32_t ReadComponentFromList(TComponent& Component, const TStrings& List);
  /// Replaces List's lines by Component's description text; returns the line count.
  static int32_t WriteComponentToList(TComponent& Component, TStrings& List);
};

}  // namespace vex
