#include "vex/platform/text_io.h"

#include <algorithm>
#include <cstring>

#include "vex/platform/exceptions.h"

namespace vex {
namespace {

constexpr size_t kMinBufferSize = 16;

bool IsLineBreakByte(char c) { return c == '\r' || c == '\n'; }

[[noreturn]] void InvalidTextError(int64_t line) {
  std::string digits = std::to_string(line);
  throw EConvertError(u"Invalid UTF-8 text in line " + String(digits.begin(), digits.end()));
}

void AppendUtf8(std::string& out, uint32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

constexpr uint32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(Char c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowSurrogate(Char c) { return c >= 0xDC00 && c <= 0xDFFF; }

}  // namespace

// --- TStreamReader ----------------------------------------------------------------------------

TStreamReader::TStreamReader(TStream& stream, TInvalidText invalid, size_t buffer_size,
                             bool skip_bom)
    : stream_(stream),
      invalid_(invalid),
      buffer_(std::max(buffer_size, kMinBufferSize), '\0'),
      check_bom_(skip_bom) {}

// Reads more bytes into the free end of the buffer; false at the end of the stream.
bool TStreamReader::ReadMore() {
  if (eof_ || end_ == buffer_.size()) return false;
  int64_t n = stream_.Read(buffer_.data() + end_, static_cast<int64_t>(buffer_.size() - end_));
  if (n <= 0) {
    eof_ = true;
    return false;
  }
  end_ += static_cast<size_t>(n);
  return true;
}

// Compacts the buffer and reads more bytes behind what is left; false when nothing came.
bool TStreamReader::Fill() {
  if (begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  if (!ReadMore()) return false;
  if (check_bom_) {
    check_bom_ = false;
    while (end_ - begin_ < 3 && ReadMore()) {
    }
    if (end_ - begin_ >= 3 && std::memcmp(buffer_.data() + begin_, "\xEF\xBB\xBF", 3) == 0) {
      begin_ += 3;
    }
  }
  return true;
}

String TStreamReader::Decode(const std::string& bytes, int64_t first_line) const {
  if (invalid_ == TInvalidText::Raise && !IsValidUtf8(bytes)) {
    // Find the line that holds the fault: line breaks never occur inside a UTF-8 sequence.
    int64_t line = first_line;
    size_t start = 0;
    while (start <= bytes.size()) {
      size_t stop = start;
      while (stop < bytes.size() && !IsLineBreakByte(bytes[stop])) ++stop;
      if (!IsValidUtf8(std::string_view(bytes).substr(start, stop - start))) break;
      if (stop < bytes.size() && bytes[stop] == '\r' && stop + 1 < bytes.size() &&
          bytes[stop + 1] == '\n') {
        ++stop;
      }
      start = stop + 1;
      ++line;
    }
    InvalidTextError(line);
  }
  return FromUtf8(bytes, TInvalidText::Replace);
}

bool TStreamReader::ReadLine(String& line) {
  std::string bytes;
  bool got_text = false;
  while (begin_ < end_ || Fill()) {
    const char* first = buffer_.data() + begin_;
    const char* last = buffer_.data() + end_;
    const char* stop = std::find_if(first, last, IsLineBreakByte);
    bytes.append(first, stop);
    got_text = true;
    if (stop == last) {
      begin_ = end_;
      continue;
    }
    begin_ = static_cast<size_t>(stop - buffer_.data()) + 1;
    if (*stop == '\r' && (begin_ < end_ || Fill()) && buffer_[begin_] == '\n') ++begin_;
    ++line_number_;
    line = Decode(bytes, line_number_);
    return true;
  }
  if (!got_text || bytes.empty()) return false;
  ++line_number_;
  line = Decode(bytes, line_number_);
  return true;
}

String TStreamReader::ReadToEnd() {
  std::string bytes;
  while (begin_ < end_ || Fill()) {
    bytes.append(buffer_.data() + begin_, end_ - begin_);
    begin_ = end_;
  }
  return Decode(bytes, line_number_ + 1);
}

bool TStreamReader::EndOfStream() {
  while (begin_ == end_) {
    if (!Fill()) return true;
  }
  return false;
}

// --- TStreamWriter ----------------------------------------------------------------------------

TStreamWriter::TStreamWriter(TStream& stream, size_t buffer_size, bool write_bom)
    : stream_(stream), buffer_size_(std::max(buffer_size, kMinBufferSize)) {
  buffer_.reserve(buffer_size_ + 8);
  if (write_bom) buffer_ = "\xEF\xBB\xBF";
}

TStreamWriter::~TStreamWriter() {
  try {
    Flush();
  } catch (const Exception&) {
    // A destructor cannot report it; callers who care call Flush() themselves.
  }
}

void TStreamWriter::Append(const String& text) {
  for (Char c : text) {
    if (pending_high_ != 0) {
      Char high = pending_high_;
      pending_high_ = 0;
      if (IsLowSurrogate(c)) {
        AppendUtf8(buffer_, 0x10000 + ((uint32_t{high} - 0xD800) << 10) + (c - 0xDC00));
        continue;
      }
      AppendUtf8(buffer_, kReplacement);
    }
    if (IsHighSurrogate(c)) {
      pending_high_ = c;
    } else {
      AppendUtf8(buffer_, IsLowSurrogate(c) ? kReplacement : c);
    }
    if (buffer_.size() >= buffer_size_) {
      stream_.WriteBuffer(buffer_.data(), static_cast<int64_t>(buffer_.size()));
      buffer_.clear();
    }
  }
}

void TStreamWriter::Write(const String& text) { Append(text); }

void TStreamWriter::WriteLine(const String& text) {
  Append(text);
  Append(new_line_);
}

void TStreamWriter::Flush() {
  if (pending_high_ != 0) {
    pending_high_ = 0;
    AppendUtf8(buffer_, kReplacement);
  }
  if (buffer_.empty()) return;
  std::string out;
  out.swap(buffer_);
  buffer_.reserve(buffer_size_ + 8);
  stream_.WriteBuffer(out.data(), static_cast<int64_t>(out.size()));
}

}  // namespace vex
