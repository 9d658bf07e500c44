#include "vex/platform/code_page.h"

#include <unicode/ucnv.h>

#include <memory>

#include "vex/platform/exceptions.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

// Windows-1252 bytes 0x80-0x9F; the unassigned ones keep their own value.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool IsWindows1252(std::u16string_view name) {
  return SameText(String(name), u"windows-1252") || SameText(String(name), u"cp1252") ||
         name == u"1252";
}

int Cp1252Byte(char16_t c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return c;
  for (int i = 0; i < 32; ++i) {
    if (kCp1252High[i] == c) return 0x80 + i;
  }
  return -1;
}

String CharacterError(char16_t c, std::u16string_view code_page) {
  return u"Character U+" + IntToHex(c, 4) + u" has no code in " + String(code_page);
}

struct ConverterCloser {
  void operator()(UConverter* c) const { ucnv_close(c); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

Converter OpenConverter(std::u16string_view code_page) {
  UErrorCode status = U_ZERO_ERROR;
  Converter c(ucnv_open(ToUtf8(code_page, TInvalidText::Replace).c_str(), &status));
  if (U_FAILURE(status) || !c) throw EConvertError(u"Unknown code page " + String(code_page));
  // Stop at the first byte or character that has no counterpart instead of substituting.
  status = U_ZERO_ERROR;
  ucnv_setToUCallBack(c.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(c.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  return c;
}

}  // namespace

String CodePageToString(std::string_view bytes, std::u16string_view code_page) {
  if (IsWindows1252(code_page)) {
    String out(bytes.size(), u'\0');
    for (size_t i = 0; i < bytes.size(); ++i) {
      auto b = static_cast<uint8_t>(bytes[i]);
      out[i] = (b >= 0x80 && b < 0xA0) ? kCp1252High[b - 0x80] : char16_t{b};
    }
    return out;
  }
  Converter c = OpenConverter(code_page);
  String out(bytes.size() * 2 + 1, u'\0');
  UErrorCode status = U_ZERO_ERROR;
  int32_t n = ucnv_toUChars(c.get(), out.data(), static_cast<int32_t>(out.size()), bytes.data(),
                            static_cast<int32_t>(bytes.size()), &status);
  if (U_FAILURE(status)) throw EConvertError(u"Invalid bytes for code page " + String(code_page));
  out.resize(static_cast<size_t>(n));
  return out;
}

std::string StringToCodePage(std::u16string_view text, std::u16string_view code_page) {
  if (IsWindows1252(code_page)) {
    std::string out(text.size(), '\0');
    for (size_t i = 0; i < text.size(); ++i) {
      int b = Cp1252Byte(text[i]);
      if (b < 0) throw EConvertError(CharacterError(text[i], code_page));
      out[i] = static_cast<char>(b);
    }
    return out;
  }
  Converter c = OpenConverter(code_page);
  std::string out(text.size() * 4 + 1, '\0');
  UErrorCode status = U_ZERO_ERROR;
  int32_t n = ucnv_fromUChars(c.get(), out.data(), static_cast<int32_t>(out.size()), text.data(),
                              static_cast<int32_t>(text.size()), &status);
  if (U_FAILURE(status)) {
    throw EConvertError(u"Text has characters with no code in " + String(code_page));
  }
  out.resize(static_cast<size_t>(n));
  return out;
}

}  // namespace vex
