// Byte streams: the abstract seekable TStream and its memory, file, byte-array and string
// forms. Counts and positions are 64-bit; Read and Write transfer what they can and return the
// count, ReadBuffer and WriteBuffer insist on the whole count.
//
//   TMemoryStream m;
//   m.WriteBuffer("abc", 3);          // Size() == 3, Position() == 3
//   m.SetPosition(0);
//   char buf[3];
//   m.Read(buf, 10);                  // -> 3
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "vex/platform/object.h"
#include "vex/platform/types.h"

namespace vex {

enum TSeekOrigin : uint8_t { soFromBeginning, soFromCurrent, soFromEnd };

/// Open modes of TFileStream: one access mode, optionally or-ed with a share flag (accepted and
/// ignored), or fmCreate alone, which creates the file (emptying an existing one) for reading
/// and writing.
inline constexpr uint16_t fmOpenRead = 0x0000;
inline constexpr uint16_t fmOpenWrite = 0x0001;
inline constexpr uint16_t fmOpenReadWrite = 0x0002;
inline constexpr uint16_t fmShareCompat = 0x0000;
inline constexpr uint16_t fmShareExclusive = 0x0010;
inline constexpr uint16_t fmShareDenyWrite = 0x0020;
inline constexpr uint16_t fmShareDenyRead = 0x0030;
inline constexpr uint16_t fmShareDenyNone = 0x0040;
inline constexpr uint16_t fmCreate = 0xFF00;

class TStream : public TObject {
 public:
  TStream() = default;
  TStream(const TStream&) = delete;
  TStream& operator=(const TStream&) = delete;
  ~TStream() override = default;

  /// Reads up to `count` bytes at the position into `buffer`; returns the number read (0 at
  /// the end or for count <= 0) and advances the position by it.
  virtual int64_t Read(void* buffer, int64_t count) = 0;
  /// Writes `count` bytes at the position; returns the number written and advances by it.
  virtual int64_t Write(const void* buffer, int64_t count) = 0;
  /// Moves the position relative to `origin` and returns the new position.
  virtual int64_t Seek(int64_t offset, TSeekOrigin origin) = 0;

  virtual int64_t Position() const = 0;
  void SetPosition(int64_t position) { Seek(position, soFromBeginning); }
  virtual int64_t Size() const = 0;
  /// Changes the size; content up to the new size is kept, a position beyond it moves to it.
  virtual void SetSize(int64_t size) = 0;

  /// Read/Write that raise EReadError "Stream read error" / EWriteError "Stream write error"
  /// when fewer than `count` bytes were transferred.
  void ReadBuffer(void* buffer, int64_t count);
  void WriteBuffer(const void* buffer, int64_t count);

  /// Copies `count` bytes from the source's position into this stream; `count` <= 0 copies the
  /// whole source from its start. Returns the count copied; a short source raises EReadError.
  int64_t CopyFrom(TStream& source, int64_t count);
};

/// A stream over a growable block of memory. Seeking past the end is allowed; a write there
/// fills the gap with zero bytes.
class TMemoryStream : public TStream {
 public:
  TMemoryStream() = default;

  int64_t Read(void* buffer, int64_t count) override;
  int64_t Write(const void* buffer, int64_t count) override;
  int64_t Seek(int64_t offset, TSeekOrigin origin) override;
  int64_t Position() const override { return position_; }
  int64_t Size() const override { return static_cast<int64_t>(data_.size()); }
  void SetSize(int64_t size) override;

  /// The content; valid until the next change of size.
  uint8_t* Memory() { return data_.data(); }
  const uint8_t* Memory() const { return data_.data(); }
  /// Empties the stream and rewinds it.
  void Clear();
  /// Replaces the content by the whole of `source` (read from its start); the position of this
  /// stream is kept (moved back to the end when beyond it).
  void LoadFromStream(TStream& source);
  /// Writes the whole content, from its start, at the position of `target`.
  void SaveToStream(TStream& target) const;
  void LoadFromFile(const String& file_name);
  void LoadFromFile(const std::string& file_name);
  void SaveToFile(const String& file_name) const;
  void SaveToFile(const std::string& file_name) const;

 protected:
  TBytes data_;
  int64_t position_ = 0;
};

/// A memory stream whose content starts as a byte array.
class TBytesStream : public TMemoryStream {
 public:
  TBytesStream() = default;
  explicit TBytesStream(TBytes bytes);

  /// A copy of the content.
  TBytes Bytes() const { return data_; }
};

/// A memory stream of text bytes: built from a String it holds the UTF-8 encoding.
class TStringStream : public TBytesStream {
 public:
  TStringStream() = default;
  explicit TStringStream(const String& text);
  /// Holds the bytes as they are.
  explicit TStringStream(const std::string& bytes);
  explicit TStringStream(TBytes bytes) : TBytesStream(std::move(bytes)) {}

  /// The whole content decoded as UTF-8; malformed bytes become U+FFFD.
  String DataString() const;
  /// Writes the UTF-8 encoding of `text` at the position.
  void WriteString(const String& text);
  /// Reads up to `count` bytes at the position and decodes them as UTF-8.
  String ReadString(int64_t count);
};

/// A stream over an operating-system file. Open failures raise EFOpenError
/// "Cannot open file \"<name>\". <system message>" or, for fmCreate, EFCreateError
/// "Cannot create file \"<name>\". <system message>".
class TFileStream : public TStream {
 public:
  TFileStream(const String& file_name, uint16_t mode);
  TFileStream(const std::string& file_name, uint16_t mode);
  ~TFileStream() override;

  int64_t Read(void* buffer, int64_t count) override;
  int64_t Write(const void* buffer, int64_t count) override;
  int64_t Seek(int64_t offset, TSeekOrigin origin) override;
  int64_t Position() const override;
  int64_t Size() const override;
  void SetSize(int64_t size) override;

  const String& FileName() const { return file_name_; }

 private:
  void Open(const std::string& utf8_name, uint16_t mode);

  String file_name_;
  int fd_ = -1;
};

}  // namespace vex
