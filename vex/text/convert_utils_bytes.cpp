// TConvertUtils: byte arrays as ASCII, Windows-1252, UTF-16 and UTF-8 text.
#include <array>
#include <string>

#include "vex/platform/unicode.h"
#include "vex/text/convert_utils.h"

namespace vex {

namespace {

// Windows-1252 bytes 0x80..0x9F; the five bytes the code page leaves undefined keep their C1
// control code, as the system conversion does.
constexpr std::array<Char, 32> kAnsi80{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

Char AnsiToChar(uint8_t b) { return (b >= 0x80 && b <= 0x9F) ? kAnsi80[b - 0x80] : Char{b}; }

uint8_t CharToAnsi(Char c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<uint8_t>(c);
  for (size_t i = 0; i < kAnsi80.size(); ++i) {
    if (kAnsi80[i] == c) return static_cast<uint8_t>(0x80 + i);
  }
  return '?';
}

}  // namespace

String TConvertUtils::ASCII_String(const TBytes& Bytes) {
  String s(Bytes.size(), u'?');
  for (size_t i = 0; i < Bytes.size(); ++i) {
    if (Bytes[i] < 0x80) s[i] = Bytes[i];
  }
  return s;
}

String TConvertUtils::ANSI_String(const TBytes& Bytes) {
  String s(Bytes.size(), u'\0');
  for (size_t i = 0; i < Bytes.size(); ++i) s[i] = AnsiToChar(Bytes[i]);
  return s;
}

TBytes TConvertUtils::ASCII_Bytes(const String& S) {
  TBytes b(S.size(), '?');
  for (size_t i = 0; i < S.size(); ++i) {
    if (S[i] < 0x80) b[i] = static_cast<uint8_t>(S[i]);
  }
  return b;
}

TBytes TConvertUtils::ANSI_Bytes(const String& S) {
  TBytes b(S.size(), 0);
  for (size_t i = 0; i < S.size(); ++i) b[i] = CharToAnsi(S[i]);
  return b;
}

String TConvertUtils::Wide_Chars(const TBytes& Bytes) {
  String s(Bytes.size() / 2, u'\0');
  for (size_t i = 0; i < s.size(); ++i) {
    s[i] = static_cast<Char>(Bytes[2 * i] | (Bytes[2 * i + 1] << 8));
  }
  return s;
}

TBytes TConvertUtils::GetEncodingBytes(const String& S, TBytesEncoding Encoding) {
  switch (Encoding) {
    case beASCII:
      return ASCII_Bytes(S);
    case beANSI:
      return ANSI_Bytes(S);
    case beUTF8: {
      const std::string utf8 = ToUtf8(S, TInvalidText::Replace);
      return TBytes(utf8.begin(), utf8.end());
    }
    case beUnicode:
    default: {
      TBytes b(S.size() * 2, 0);
      for (size_t i = 0; i < S.size(); ++i) {
        b[2 * i] = static_cast<uint8_t>(S[i] & 0xFF);
        b[2 * i + 1] = static_cast<uint8_t>(S[i] >> 8);
      }
      return b;
    }
  }
}

TStringDynArray TConvertUtils::ObjArrayToStringArray(const std::vector<TObject*>& Objects) {
  TStringDynArray result;
  result.reserve(Objects.size());
  for (const TObject* object : Objects) result.push_back(object ? object->ToString() : String());
  return result;
}

TComponentArray TConvertUtils::CtlArrayToCompArray(const TControlArray& Controls) {
  return TComponentArray(Controls.begin(), Controls.end());
}

}  // namespace vex
