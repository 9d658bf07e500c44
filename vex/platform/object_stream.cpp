#include "vex/platform/object_stream.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include "vex/platform/code_page.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

static_assert(std::endian::native == std::endian::little,
              "the component stream is little-endian and is copied as it stands");

constexpr bool kLongDoubleIsX87 = std::numeric_limits<long double>::digits == 64 &&
                                  std::numeric_limits<long double>::max_exponent == 16384;

constexpr char kSignature[4] = {'T', 'P', 'F', '0'};

[[noreturn]] void InvalidFormat() { throw EReadError(u"Invalid stream format"); }
[[noreturn]] void InvalidValue() { throw EReadError(u"Invalid property value"); }

template <class T>
T Load(const uint8_t* p) {
  T value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

}  // namespace

// --- 80-bit floats --------------------------------------------------------------------------

TExtendedBytes ExtendedToBytes(long double value) {
  TExtendedBytes bytes{};
  if constexpr (kLongDoubleIsX87) {
    std::memcpy(bytes.data(), &value, bytes.size());
  } else {
    // Builds the 80-bit pattern from a double: sign, biased exponent, explicit integer bit.
    auto d = static_cast<double>(value);
    uint16_t sign_exp = std::signbit(d) ? 0x8000 : 0;
    uint64_t mantissa = 0;
    if (std::isnan(d)) {
      sign_exp |= 0x7FFF;
      mantissa = 0xC000000000000000ULL;
    } else if (std::isinf(d)) {
      sign_exp |= 0x7FFF;
      mantissa = 0x8000000000000000ULL;
    } else if (d != 0) {
      int exp = 0;
      double frac = std::frexp(std::fabs(d), &exp);  // in [0.5, 1)
      mantissa = static_cast<uint64_t>(std::ldexp(frac, 64));
      sign_exp |= static_cast<uint16_t>(exp - 1 + 16383);
    }
    std::memcpy(bytes.data(), &mantissa, 8);
    std::memcpy(bytes.data() + 8, &sign_exp, 2);
  }
  return bytes;
}

long double BytesToExtended(const TExtendedBytes& bytes) {
  if constexpr (kLongDoubleIsX87) {
    long double value = 0;
    std::memcpy(&value, bytes.data(), bytes.size());
    return value;
  } else {
    uint64_t mantissa = Load<uint64_t>(bytes.data());
    uint16_t sign_exp = Load<uint16_t>(bytes.data() + 8);
    int exp = sign_exp & 0x7FFF;
    double sign = (sign_exp & 0x8000) ? -1.0 : 1.0;
    if (exp == 0x7FFF) {
      return (mantissa << 1) == 0 ? sign * std::numeric_limits<double>::infinity()
                                  : std::numeric_limits<double>::quiet_NaN();
    }
    return sign * std::ldexp(static_cast<double>(mantissa), exp - 16383 - 63);
  }
}

// --- TBinaryObjectWriter ----------------------------------------------------------------------

void TBinaryObjectWriter::Put(const void* data, size_t count) {
  stream_.WriteBuffer(data, static_cast<int64_t>(count));
}

void TBinaryObjectWriter::WriteValueType(TValueType type) { Put(&type, 1); }

void TBinaryObjectWriter::WriteShortString(std::string_view name) {
  if (name.size() > 255) throw EWriteError(u"Name too long for the component stream");
  uint8_t buffer[256];
  buffer[0] = static_cast<uint8_t>(name.size());
  std::memcpy(buffer + 1, name.data(), name.size());
  Put(buffer, name.size() + 1);
}

void TBinaryObjectWriter::WriteSignature() { Put(kSignature, 4); }

void TBinaryObjectWriter::WriteObjectHeader(std::string_view class_name,
                                            std::string_view object_name, uint8_t flags,
                                            int32_t position) {
  // A class name of 240 bytes or more would read as a prefix byte, so it always gets one.
  if (flags != 0 || class_name.size() >= 0xF0) {
    uint8_t prefix = static_cast<uint8_t>(0xF0 | (flags & 0x0F));
    Put(&prefix, 1);
    if (flags & ffChildPos) WriteInteger(position);
  }
  WriteShortString(class_name);
  WriteShortString(object_name);
}

void TBinaryObjectWriter::WriteObjectHeader(const TObjectHeader& header) {
  WriteObjectHeader(header.class_name, header.object_name, header.flags, header.position);
}

void TBinaryObjectWriter::WritePropertyName(std::string_view name) { WriteShortString(name); }

void TBinaryObjectWriter::WriteListEnd() { WriteValueType(vaNull); }

void TBinaryObjectWriter::WriteInteger(int64_t value) {
  uint8_t buffer[9];
  size_t size;
  if (value >= INT8_MIN && value <= INT8_MAX) {
    buffer[0] = vaInt8;
    size = 1;
  } else if (value >= INT16_MIN && value <= INT16_MAX) {
    buffer[0] = vaInt16;
    size = 2;
  } else if (value >= INT32_MIN && value <= INT32_MAX) {
    buffer[0] = vaInt32;
    size = 4;
  } else {
    buffer[0] = vaInt64;
    size = 8;
  }
  std::memcpy(buffer + 1, &value, size);  // little-endian: the low bytes come first
  Put(buffer, size + 1);
}

void TBinaryObjectWriter::WriteExtended(long double value) {
  WriteExtended(ExtendedToBytes(value));
}

void TBinaryObjectWriter::WriteExtended(const TExtendedBytes& bytes) {
  uint8_t buffer[11] = {vaExtended};
  std::memcpy(buffer + 1, bytes.data(), 10);
  Put(buffer, sizeof buffer);
}

namespace {

template <class T>
void PutTyped(TBinaryObjectWriter& w, TValueType type, T value) {
  uint8_t buffer[1 + sizeof(T)] = {type};
  std::memcpy(buffer + 1, &value, sizeof(T));
  w.Stream().WriteBuffer(buffer, sizeof buffer);
}

void PutLength(TBinaryObjectWriter& w, TValueType type, size_t length) {
  if (length > UINT32_MAX) throw EWriteError(u"Value too long for the component stream");
  PutTyped(w, type, static_cast<uint32_t>(length));
}

}  // namespace

void TBinaryObjectWriter::WriteSingle(float value) { PutTyped(*this, vaSingle, value); }
void TBinaryObjectWriter::WriteCurrency(int64_t units) { PutTyped(*this, vaCurrency, units); }
void TBinaryObjectWriter::WriteDate(double value) { PutTyped(*this, vaDate, value); }
void TBinaryObjectWriter::WriteDouble(double value) { PutTyped(*this, vaDouble, value); }

void TBinaryObjectWriter::WriteString(std::u16string_view value) {
  bool ascii = true;
  for (char16_t c : value) {
    if (c > 0x7F) {
      ascii = false;
      break;
    }
  }
  if (!ascii) {
    PutLength(*this, vaWString, value.size());
    Put(value.data(), value.size() * 2);
    return;
  }
  std::string bytes(value.begin(), value.end());
  if (bytes.size() <= 255) {
    WriteValueType(vaString);
    WriteShortString(bytes);
  } else {
    PutLength(*this, vaLString, bytes.size());
    Put(bytes.data(), bytes.size());
  }
}

void TBinaryObjectWriter::WriteUTF8String(std::string_view utf8) {
  PutLength(*this, vaUTF8String, utf8.size());
  Put(utf8.data(), utf8.size());
}

void TBinaryObjectWriter::WriteIdent(std::string_view name) {
  WriteValueType(vaIdent);
  WriteShortString(name);
}

void TBinaryObjectWriter::WriteBoolean(bool value) { WriteValueType(value ? vaTrue : vaFalse); }
void TBinaryObjectWriter::WriteNil() { WriteValueType(vaNil); }
void TBinaryObjectWriter::WriteNull() { WriteValueType(vaNull); }

void TBinaryObjectWriter::WriteSet(const std::vector<std::string>& names) {
  WriteValueType(vaSet);
  for (const std::string& name : names) WriteShortString(name);
  WriteShortString({});
}

void TBinaryObjectWriter::WriteBinary(const void* data, size_t count) {
  PutLength(*this, vaBinary, count);
  Put(data, count);
}

void TBinaryObjectWriter::WriteListBegin() { WriteValueType(vaList); }
void TBinaryObjectWriter::WriteCollectionBegin() { WriteValueType(vaCollection); }
void TBinaryObjectWriter::WriteCollectionItemBegin() { WriteValueType(vaList); }

void TBinaryObjectWriter::WriteCollectionItemBegin(int64_t order) {
  WriteInteger(order);
  WriteValueType(vaList);
}

// --- TBinaryObjectReader ----------------------------------------------------------------------

void TBinaryObjectReader::ReadBytes(void* buffer, size_t count) {
  stream_.ReadBuffer(buffer, static_cast<int64_t>(count));
}

uint8_t TBinaryObjectReader::ReadByte() {
  uint8_t b = 0;
  ReadBytes(&b, 1);
  return b;
}

size_t TBinaryObjectReader::ReadLength(size_t unit_size) {
  uint32_t count = 0;
  ReadBytes(&count, 4);
  uint64_t bytes = uint64_t{count} * unit_size;
  int64_t left = stream_.Size() - stream_.Position();
  if (left < 0 || bytes > static_cast<uint64_t>(left)) throw EReadError(u"Stream read error");
  return static_cast<size_t>(bytes);
}

std::string TBinaryObjectReader::ReadShortString() {
  uint8_t size = ReadByte();
  std::string s(size, '\0');
  ReadBytes(s.data(), size);
  return s;
}

void TBinaryObjectReader::ReadSignature() {
  char signature[4] = {};
  if (stream_.Read(signature, 4) != 4 || std::memcmp(signature, kSignature, 4) != 0) {
    InvalidFormat();
  }
}

TObjectHeader TBinaryObjectReader::ReadObjectHeader() {
  TObjectHeader header;
  uint8_t prefix = 0;
  ReadBytes(&prefix, 1);
  if ((prefix & 0xF0) == 0xF0) {
    header.flags = prefix & 0x0F;
    if (header.flags & ffChildPos) {
      int64_t position = ReadInteger();
      if (position < INT32_MIN || position > INT32_MAX) InvalidValue();
      header.position = static_cast<int32_t>(position);
    }
  } else {
    stream_.Seek(-1, soFromCurrent);
  }
  header.class_name = ReadShortString();
  header.object_name = ReadShortString();
  return header;
}

std::string TBinaryObjectReader::ReadPropertyName() { return ReadShortString(); }

bool TBinaryObjectReader::EndOfList() {
  uint8_t b = ReadByte();
  stream_.Seek(-1, soFromCurrent);
  return b == 0;
}

void TBinaryObjectReader::ReadListEnd() {
  if (ReadByte() != 0) InvalidFormat();
}

TValueType TBinaryObjectReader::NextValue() {
  TValueType type = ReadValueType();
  stream_.Seek(-1, soFromCurrent);
  return type;
}

TValueType TBinaryObjectReader::ReadValueType() {
  uint8_t b = ReadByte();
  if (b > kMaxValueType) InvalidFormat();
  return static_cast<TValueType>(b);
}

void TBinaryObjectReader::Expect(TValueType found, TValueType wanted) {
  if (found != wanted) InvalidValue();
}

int64_t TBinaryObjectReader::ReadIntegerPayload(TValueType type) {
  uint8_t buffer[8];
  switch (type) {
    case vaInt8:
      ReadBytes(buffer, 1);
      return Load<int8_t>(buffer);
    case vaInt16:
      ReadBytes(buffer, 2);
      return Load<int16_t>(buffer);
    case vaInt32:
      ReadBytes(buffer, 4);
      return Load<int32_t>(buffer);
    case vaInt64:
      ReadBytes(buffer, 8);
      return Load<int64_t>(buffer);
    default:
      InvalidValue();
  }
}

int64_t TBinaryObjectReader::ReadInteger() { return ReadIntegerPayload(ReadValueType()); }

namespace {

template <class T>
T ReadTyped(TBinaryObjectReader& r) {
  uint8_t buffer[sizeof(T)];
  r.ReadBytes(buffer, sizeof buffer);
  return Load<T>(buffer);
}

}  // namespace

long double TBinaryObjectReader::ReadFloat() {
  TValueType type = ReadValueType();
  switch (type) {
    case vaExtended: {
      TExtendedBytes bytes;
      ReadBytes(bytes.data(), bytes.size());
      return BytesToExtended(bytes);
    }
    case vaDouble:
    case vaDate:
      return ReadTyped<double>(*this);
    case vaSingle:
      return ReadTyped<float>(*this);
    case vaCurrency:
      return static_cast<long double>(ReadTyped<int64_t>(*this)) / 10000;
    default:
      return static_cast<long double>(ReadIntegerPayload(type));
  }
}

TExtendedBytes TBinaryObjectReader::ReadExtendedBytes() {
  Expect(ReadValueType(), vaExtended);
  TExtendedBytes bytes;
  ReadBytes(bytes.data(), bytes.size());
  return bytes;
}

float TBinaryObjectReader::ReadSingle() {
  Expect(ReadValueType(), vaSingle);
  return ReadTyped<float>(*this);
}

int64_t TBinaryObjectReader::ReadCurrency() {
  Expect(ReadValueType(), vaCurrency);
  return ReadTyped<int64_t>(*this);
}

double TBinaryObjectReader::ReadDate() {
  Expect(ReadValueType(), vaDate);
  return ReadTyped<double>(*this);
}

double TBinaryObjectReader::ReadDouble() {
  Expect(ReadValueType(), vaDouble);
  return ReadTyped<double>(*this);
}

String TBinaryObjectReader::ReadString() {
  TValueType type = ReadValueType();
  switch (type) {
    case vaString:
      return CodePageToString(ReadShortString());
    case vaLString:
    case vaUTF8String: {
      std::string bytes(ReadLength(), '\0');
      ReadBytes(bytes.data(), bytes.size());
      return type == vaLString ? CodePageToString(bytes) : FromUtf8(bytes, TInvalidText::Replace);
    }
    case vaWString: {
      String units(ReadLength(2) / 2, u'\0');
      ReadBytes(units.data(), units.size() * 2);
      return units;
    }
    default:
      InvalidValue();
  }
}

std::string TBinaryObjectReader::ReadIdent() {
  switch (ReadValueType()) {
    case vaIdent:
      return ReadShortString();
    case vaFalse:
      return "False";
    case vaTrue:
      return "True";
    case vaNil:
      return "nil";
    case vaNull:
      return "Null";
    default:
      InvalidValue();
  }
}

bool TBinaryObjectReader::ReadBoolean() {
  TValueType type = ReadValueType();
  if (type != vaFalse && type != vaTrue) InvalidValue();
  return type == vaTrue;
}

std::vector<std::string> TBinaryObjectReader::ReadSet() {
  Expect(ReadValueType(), vaSet);
  std::vector<std::string> names;
  for (std::string name = ReadShortString(); !name.empty(); name = ReadShortString()) {
    names.push_back(std::move(name));
  }
  return names;
}

TBytes TBinaryObjectReader::ReadBinary() {
  Expect(ReadValueType(), vaBinary);
  TBytes bytes(ReadLength());
  ReadBytes(bytes.data(), bytes.size());
  return bytes;
}

void TBinaryObjectReader::ReadListBegin() { Expect(ReadValueType(), vaList); }
void TBinaryObjectReader::ReadCollectionBegin() { Expect(ReadValueType(), vaCollection); }

std::optional<int64_t> TBinaryObjectReader::ReadCollectionItemBegin() {
  std::optional<int64_t> order;
  TValueType type = ReadValueType();
  if (type != vaList) {
    order = ReadIntegerPayload(type);
    ReadListBegin();
  }
  return order;
}

void TBinaryObjectReader::SkipValue() { SkipValue(0); }

void TBinaryObjectReader::SkipBytes(uint64_t count) {
  int64_t left = stream_.Size() - stream_.Position();
  if (left < 0 || count > static_cast<uint64_t>(left)) throw EReadError(u"Stream read error");
  stream_.Seek(static_cast<int64_t>(count), soFromCurrent);
}

void TBinaryObjectReader::SkipValue(int depth) {
  if (depth >= kMaxObjectStreamDepth) throw EReadError(u"Component stream nested too deeply");
  TValueType type = ReadValueType();
  switch (type) {
    case vaNull:
    case vaFalse:
    case vaTrue:
    case vaNil:
      return;
    case vaList:
      while (!EndOfList()) SkipValue(depth + 1);
      ReadListEnd();
      return;
    case vaInt8:
    case vaInt16:
    case vaInt32:
    case vaInt64:
      ReadIntegerPayload(type);
      return;
    case vaExtended:
      return SkipBytes(10);
    case vaSingle:
      return SkipBytes(4);
    case vaCurrency:
    case vaDate:
    case vaDouble:
      return SkipBytes(8);
    case vaString:
    case vaIdent:
      return SkipBytes(ReadByte());
    case vaBinary:
    case vaLString:
    case vaUTF8String:
      return SkipBytes(ReadLength());
    case vaWString:
      return SkipBytes(ReadLength(2));
    case vaSet:
      while (!EndOfList()) SkipBytes(ReadByte());
      ReadListEnd();
      return;
    case vaCollection:
      while (!EndOfList()) {
        ReadCollectionItemBegin();
        while (!EndOfList()) {
          ReadPropertyName();
          SkipValue(depth + 1);
        }
        ReadListEnd();
      }
      ReadListEnd();
      return;
  }
}

}  // namespace vex
