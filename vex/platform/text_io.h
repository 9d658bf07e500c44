// Buffered UTF-8 text over a TStream: TStreamReader hands out lines (or the rest of the text)
// from the stream's current position in constant memory apart from the line itself;
// TStreamWriter encodes text into a buffer and writes it to the stream in blocks.
//
//   TStringStream in(u"one\r\ntwo\nthree");
//   TStreamReader reader(in);
//   String line;
//   while (reader.ReadLine(line)) { ... }   // "one", "two", "three"
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "vex/platform/object.h"
#include "vex/platform/streams.h"
#include "vex/platform/types.h"
#include "vex/platform/unicode.h"

namespace vex {

class TStreamReader : public TObject {
 public:
  /// Reads `stream` from its current position; the stream must outlive the reader. A UTF-8
  /// byte-order mark at that position is skipped unless `skip_bom` is false. Malformed UTF-8
  /// raises EConvertError naming the line, or becomes U+FFFD with TInvalidText::Replace.
  explicit TStreamReader(TStream& stream, TInvalidText invalid = TInvalidText::Raise,
                         size_t buffer_size = 4096, bool skip_bom = true);

  /// The next line without its line break (CR LF, LF or CR). False at the end of the text; a
  /// final line break does not produce an extra empty line.
  bool ReadLine(String& line);
  /// Everything not yet read, line breaks included.
  String ReadToEnd();
  /// True when no text is left.
  bool EndOfStream();
  /// The number of lines ReadLine has returned so far.
  int64_t LineNumber() const { return line_number_; }

 private:
  bool Fill();
  bool ReadMore();
  String Decode(const std::string& bytes, int64_t first_line) const;

  TStream& stream_;
  TInvalidText invalid_;
  std::string buffer_;
  size_t begin_ = 0;
  size_t end_ = 0;
  bool eof_ = false;
  bool check_bom_;
  int64_t line_number_ = 0;
};

class TStreamWriter : public TObject {
 public:
  /// Writes at the stream's current position; the stream must outlive the writer. With
  /// `write_bom` the UTF-8 byte-order mark goes first. Lone surrogates are written as U+FFFD.
  explicit TStreamWriter(TStream& stream, size_t buffer_size = 4096, bool write_bom = false);
  /// Flushes what is buffered; errors at that point are swallowed, so call Flush() to see them.
  ~TStreamWriter() override;
  TStreamWriter(const TStreamWriter&) = delete;
  TStreamWriter& operator=(const TStreamWriter&) = delete;

  void Write(const String& text);
  /// `text` followed by NewLine().
  void WriteLine(const String& text = String());
  /// Writes the buffer to the stream; a short write raises EWriteError "Stream write error".
  void Flush();

  const String& NewLine() const { return new_line_; }
  void SetNewLine(const String& value) { new_line_ = value; }

 private:
  void Append(const String& text);

  TStream& stream_;
  size_t buffer_size_;
  std::string buffer_;
  String new_line_ = u"\r\n";
  // A high surrogate at the end of one Write waits for the low half from the next.
  Char pending_high_ = 0;
};

}  // namespace vex
