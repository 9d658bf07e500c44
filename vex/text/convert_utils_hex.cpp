// TConvertUtils: hexadecimal and binary digit strings and the byte arrays they stand for.
#include <algorithm>
#include <cstdint>
#include <string>

#include "vex/text/convert_utils.h"
#include "vex/text/mem_utils.h"
#include "vex/text/parse_utils.h"
#include "vex/text/string_utils.h"

namespace vex {

namespace {

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

std::string WithoutChars(const std::string& s, const std::string& chars) {
  if (chars.empty()) return s;
  std::string r;
  r.reserve(s.size());
  for (char c : s) {
    if (chars.find(c) == std::string::npos) r.push_back(c);
  }
  return r;
}

// Converts up to count pairs from the start of hex; stops at the first pair that is not two
// hexadecimal digits. Returns the number of bytes written.
int32_t ConvertPairs(const std::string& hex, uint8_t* dest, int32_t count) {
  int32_t done = 0;
  for (; done < count; ++done) {
    const int hi = HexValue(hex[2 * static_cast<size_t>(done)]);
    const int lo = HexValue(hex[2 * static_cast<size_t>(done) + 1]);
    if (hi < 0 || lo < 0) break;
    dest[done] = static_cast<uint8_t>(hi * 16 + lo);
  }
  return done;
}

// Library text to 8-bit digit text: units above 0xFF cannot be digits and become "?".
std::string Narrow(const String& s) {
  std::string r(s.size(), '?');
  for (size_t i = 0; i < s.size(); ++i) {
    if (s[i] <= 0xFF) r[i] = static_cast<char>(s[i]);
  }
  return r;
}

}  // namespace

void TConvertUtils::HexStrToBytes(const std::string& S, const std::string& IgnoreChars,
                                  int32_t* BadCount, TBytes& Bytes) {
  const std::string hex = WithoutChars(S, IgnoreChars);
  const int32_t n = static_cast<int32_t>(hex.size() / 2);
  Bytes.assign(static_cast<size_t>(n), 0);
  const int32_t done = n > 0 ? ConvertPairs(hex, Bytes.data(), n) : 0;
  if (BadCount != nullptr) *BadCount = n - done;
}

int32_t TConvertUtils::HexStrToDest(const std::string& S, const std::string& IgnoreChars,
                                    THexDestBuffer& Dest, int32_t MaxCount) {
  std::string hex = WithoutChars(S, IgnoreChars);
  if (!hex.empty() && hex[0] == '$') hex.erase(0, 1);
  const size_t limit =
      std::min({hex.size() / 2, Dest.size(), static_cast<size_t>(std::max(MaxCount, 0))});
  return ConvertPairs(hex, Dest.data(), static_cast<int32_t>(limit));
}

std::string TConvertUtils::BytesToHexStr(const uint8_t* Data, int32_t Count,
                                         const std::string& Separator) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string r;
  if (Data == nullptr || Count <= 0) return r;
  r.reserve(static_cast<size_t>(Count) * (2 + Separator.size()));
  for (int32_t i = 0; i < Count; ++i) {
    if (i > 0) r += Separator;
    r.push_back(kDigits[Data[i] >> 4]);
    r.push_back(kDigits[Data[i] & 0xF]);
  }
  return r;
}

std::string TConvertUtils::BytesToHexStr(const TBytes& Bytes, int32_t Count,
                                         const std::string& Separator) {
  const int32_t size = static_cast<int32_t>(Bytes.size());
  const int32_t n = (Count < 0 || Count > size) ? size : Count;
  return BytesToHexStr(Bytes.data(), n, Separator);
}

std::string TConvertUtils::DataToBinStr(const void* Data, int32_t BitCount) {
  if (Data == nullptr || BitCount <= 0) return std::string();
  const auto* bytes = static_cast<const uint8_t*>(Data);
  std::string r(static_cast<size_t>(BitCount), '0');
  for (int32_t i = 0; i < BitCount; ++i) {
    if ((bytes[i / 8] >> (i % 8)) & 1) r[static_cast<size_t>(i)] = '1';
  }
  return r;
}

std::string TConvertUtils::BytesToBinStr(const TBytes& Bytes) {
  if (Bytes.empty()) return std::string();
  // The byte count is passed as the bit count: only the first size() bits are shown.
  return DataToBinStr(Bytes.data(), static_cast<int32_t>(Bytes.size()));
}

TBytes TConvertUtils::BinStrToBytes(const std::string& S) {
  TBytes bytes((S.size() + 7) / 8, 0);
  for (size_t i = 0; i < S.size(); ++i) {
    if (S[i] != '0') bytes[i / 8] |= static_cast<uint8_t>(1u << (i % 8));
  }
  return bytes;
}

TBytes TConvertUtils::MixedStrToBytes(const String& S, Char Delim) {
  TBytes result;
  for (const String& token : TParseUtils::ExtractTokens(S, Delim)) {
    TBytes part;
    if (TStringUtils::CheckForFirstChars(token, u"nt")) {
      part = BinStrToBytes(Narrow(token.substr(1)));
    } else {
      HexStrToBytes(Narrow(token), std::string(), nullptr, part);
    }
    TMemUtils::AppendBytes(result, part);
  }
  return result;
}

}  // namespace vex
