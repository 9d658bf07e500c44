#include "vex/platform/streams.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

constexpr int64_t kCopyBufferSize = 64 * 1024;

String SystemMessage(int error) { return FromUtf8(std::strerror(error), TInvalidText::Replace); }

}  // namespace

// --- TStream ----------------------------------------------------------------------------------

void TStream::ReadBuffer(void* buffer, int64_t count) {
  if (count != 0 && Read(buffer, count) != count) throw EReadError(u"Stream read error");
}

void TStream::WriteBuffer(const void* buffer, int64_t count) {
  if (count != 0 && Write(buffer, count) != count) throw EWriteError(u"Stream write error");
}

int64_t TStream::CopyFrom(TStream& source, int64_t count) {
  if (count <= 0) {
    source.SetPosition(0);
    count = source.Size();
  }
  std::vector<uint8_t> buffer(static_cast<size_t>(std::min(count, kCopyBufferSize)));
  int64_t left = count;
  while (left > 0) {
    int64_t chunk = std::min(left, kCopyBufferSize);
    source.ReadBuffer(buffer.data(), chunk);
    WriteBuffer(buffer.data(), chunk);
    left -= chunk;
  }
  return count;
}

// --- TMemoryStream ----------------------------------------------------------------------------

int64_t TMemoryStream::Read(void* buffer, int64_t count) {
  if (count <= 0 || position_ < 0 || position_ >= Size()) return 0;
  int64_t n = std::min(count, Size() - position_);
  std::memcpy(buffer, data_.data() + position_, static_cast<size_t>(n));
  position_ += n;
  return n;
}

int64_t TMemoryStream::Write(const void* buffer, int64_t count) {
  // A position left negative by Seek cannot take data.
  if (count <= 0 || position_ < 0) return 0;
  int64_t end = position_ + count;
  if (end > Size()) {
    if (static_cast<size_t>(end) > data_.capacity()) {
      data_.reserve(std::max(static_cast<size_t>(end), data_.capacity() * 2));
    }
    data_.resize(static_cast<size_t>(end));
  }
  std::memcpy(data_.data() + position_, buffer, static_cast<size_t>(count));
  position_ = end;
  return count;
}

int64_t TMemoryStream::Seek(int64_t offset, TSeekOrigin origin) {
  switch (origin) {
    case soFromBeginning:
      position_ = offset;
      break;
    case soFromCurrent:
      position_ += offset;
      break;
    case soFromEnd:
      position_ = Size() + offset;
      break;
  }
  return position_;
}

void TMemoryStream::SetSize(int64_t size) {
  if (size < 0) size = 0;
  data_.resize(static_cast<size_t>(size));
  if (position_ > size) position_ = size;
}

void TMemoryStream::Clear() {
  data_.clear();
  data_.shrink_to_fit();
  position_ = 0;
}

void TMemoryStream::LoadFromStream(TStream& source) {
  source.SetPosition(0);
  int64_t count = source.Size();
  SetSize(count);
  if (count != 0) source.ReadBuffer(data_.data(), count);
}

void TMemoryStream::SaveToStream(TStream& target) const {
  if (!data_.empty()) target.WriteBuffer(data_.data(), Size());
}

void TMemoryStream::LoadFromFile(const String& file_name) {
  TFileStream file(file_name, fmOpenRead | fmShareDenyWrite);
  LoadFromStream(file);
}

void TMemoryStream::LoadFromFile(const std::string& file_name) {
  TFileStream file(file_name, fmOpenRead | fmShareDenyWrite);
  LoadFromStream(file);
}

void TMemoryStream::SaveToFile(const String& file_name) const {
  TFileStream file(file_name, fmCreate);
  SaveToStream(file);
}

void TMemoryStream::SaveToFile(const std::string& file_name) const {
  TFileStream file(file_name, fmCreate);
  SaveToStream(file);
}

// --- TBytesStream and TStringStream -----------------------------------------------------------

TBytesStream::TBytesStream(TBytes bytes) { data_ = std::move(bytes); }

TStringStream::TStringStream(const String& text) {
  std::string utf8 = ToUtf8(text, TInvalidText::Replace);
  data_.assign(utf8.begin(), utf8.end());
}

TStringStream::TStringStream(const std::string& bytes) { data_.assign(bytes.begin(), bytes.end()); }

String TStringStream::DataString() const {
  return FromUtf8(std::string_view(reinterpret_cast<const char*>(data_.data()), data_.size()),
                  TInvalidText::Replace);
}

void TStringStream::WriteString(const String& text) {
  std::string utf8 = ToUtf8(text, TInvalidText::Replace);
  WriteBuffer(utf8.data(), static_cast<int64_t>(utf8.size()));
}

String TStringStream::ReadString(int64_t count) {
  if (count <= 0) return String();
  std::string bytes(static_cast<size_t>(std::min(count, std::max<int64_t>(Size(), 0))), '\0');
  bytes.resize(static_cast<size_t>(Read(bytes.data(), static_cast<int64_t>(bytes.size()))));
  return FromUtf8(bytes, TInvalidText::Replace);
}

// --- TFileStream ------------------------------------------------------------------------------

TFileStream::TFileStream(const String& file_name, uint16_t mode) : file_name_(file_name) {
  Open(ToUtf8(file_name, TInvalidText::Replace), mode);
}

TFileStream::TFileStream(const std::string& file_name, uint16_t mode)
    : file_name_(FromUtf8(file_name, TInvalidText::Replace)) {
  Open(file_name, mode);
}

TFileStream::~TFileStream() {
  if (fd_ >= 0) ::close(fd_);
}

void TFileStream::Open(const std::string& utf8_name, uint16_t mode) {
  if (mode == fmCreate) {
    fd_ = ::open(utf8_name.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd_ < 0) {
      throw EFCreateError(u"Cannot create file \"" + file_name_ + u"\". " + SystemMessage(errno));
    }
    return;
  }
  int flags = O_RDONLY;
  switch (mode & 0x0003) {
    case fmOpenWrite:
      flags = O_WRONLY;
      break;
    case fmOpenReadWrite:
      flags = O_RDWR;
      break;
    default:
      break;
  }
  fd_ = ::open(utf8_name.c_str(), flags | O_CLOEXEC);
  int error = errno;
  if (fd_ >= 0) {
    // Opening a directory succeeds on POSIX for reading, but it is not a file.
    struct stat info {};
    if (::fstat(fd_, &info) == 0 && S_ISDIR(info.st_mode)) {
      ::close(fd_);
      fd_ = -1;
      error = EISDIR;
    }
  }
  if (fd_ < 0) {
    throw EFOpenError(u"Cannot open file \"" + file_name_ + u"\". " + SystemMessage(error));
  }
}

int64_t TFileStream::Read(void* buffer, int64_t count) {
  auto* out = static_cast<uint8_t*>(buffer);
  int64_t done = 0;
  while (done < count) {
    ssize_t n = ::read(fd_, out + done, static_cast<size_t>(count - done));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    done += n;
  }
  return done;
}

int64_t TFileStream::Write(const void* buffer, int64_t count) {
  const auto* in = static_cast<const uint8_t*>(buffer);
  int64_t done = 0;
  while (done < count) {
    ssize_t n = ::write(fd_, in + done, static_cast<size_t>(count - done));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    done += n;
  }
  return done;
}

int64_t TFileStream::Seek(int64_t offset, TSeekOrigin origin) {
  int whence =
      origin == soFromBeginning ? SEEK_SET : (origin == soFromCurrent ? SEEK_CUR : SEEK_END);
  off_t result = ::lseek(fd_, static_cast<off_t>(offset), whence);
  return result < 0 ? -1 : static_cast<int64_t>(result);
}

int64_t TFileStream::Position() const {
  off_t result = ::lseek(fd_, 0, SEEK_CUR);
  return result < 0 ? -1 : static_cast<int64_t>(result);
}

int64_t TFileStream::Size() const {
  struct stat info {};
  if (::fstat(fd_, &info) != 0) return -1;
  return static_cast<int64_t>(info.st_size);
}

void TFileStream::SetSize(int64_t size) {
  int64_t position = Position();
  if (::ftruncate(fd_, static_cast<off_t>(size)) != 0) {
    throw EStreamError(u"Stream write error: " + SystemMessage(errno));
  }
  if (position > size) Seek(size, soFromBeginning);
}

}  // namespace vex
