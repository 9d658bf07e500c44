// The object description text, the readable twin of the binary component stream, and the two
// converters between them. The text is written in the form designers save (2 spaces a level,
// strings wrapped at 64 characters, CR LF); the reader also takes older designers' text and
// other tools' layouts.
//
//   TStringStream text("object Form1: TForm1\r\n  Left = 8\r\nend\r\n"), binary;
//   ObjectTextToBinary(text, binary);   // "TPF0" 06 "TForm1" 05 "Form1" 04 "Left" 02 08 00 00
#pragma once

#include <string>
#include <string_view>

#include "vex/platform/streams.h"
#include "vex/platform/types.h"

namespace vex {

/// How the text side is written and, for text that is not UTF-8, read.
struct TObjectTextOptions {
  /// Floats of the extended kind in general format (15 significant digits, `1E-5`, whole
  /// values without a point) instead of 18 fixed decimals, as older designers wrote them.
  bool general_floats = false;
  /// Characters U+0080 and above that `code_page` holds are written as raw bytes inside the
  /// quotes instead of `#n` codes, as older designers wrote them.
  bool raw_code_page = false;
  /// The code page of raw bytes: used for writing when `raw_code_page` is set, and for reading
  /// any text that is not valid UTF-8.
  String code_page = u"windows-1252";

  /// The settings of older designers: general floats and raw Windows-1252 bytes.
  static TObjectTextOptions OlderDesigner() { return {true, true, u"windows-1252"}; }
};

/// Converts object text read from the position of `text` to its end into one binary component
/// stream ("TPF0" and one object) written at the position of `binary`. Malformed text raises
/// EParserError "<what> on line <n>"; the binary stream keeps what was written before.
void ObjectTextToBinary(TStream& text, TStream& binary);
void ObjectTextToBinary(TStream& text, TStream& binary, const TObjectTextOptions& options);

/// Converts one binary component stream read from the position of `binary` into object text
/// written at the position of `text` (UTF-8, or the code page's bytes with `raw_code_page`).
/// A source that is not a component stream, or ends early, raises EReadError.
void ObjectBinaryToText(TStream& binary, TStream& text);
void ObjectBinaryToText(TStream& binary, TStream& text, const TObjectTextOptions& options);

/// True when `name` (UTF-8) can stand as a name or identifier in object text: a letter, `_` or
/// a non-ASCII character, then letters, digits, `_`, `.` or non-ASCII characters.
bool IsObjectTextName(std::string_view name);

/// True when the stream holds a binary component stream at its position (begins with "TPF0");
/// the position is left where it was.
bool IsBinaryObjectStream(TStream& stream);

}  // namespace vex
