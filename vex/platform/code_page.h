// 8-bit code pages: the bytes of text saved by older tools in a Windows code page, decoded to
// the library's UTF-16 and encoded back. Windows-1252 is built in; other code pages are named
// as ICU knows them ("windows-1251", "gbk", ...).
//
//   vex::CodePageToString("\xB0", u"windows-1252");   // -> u"\u00B0"
#pragma once

#include <string>
#include <string_view>

#include "vex/platform/types.h"

namespace vex {

/// The name of the default code page.
inline constexpr std::u16string_view kWindows1252 = u"windows-1252";

/// Decodes bytes in the named code page. In Windows-1252 every byte has a character (the five
/// unassigned bytes map to the control characters of the same value), so the decoding is
/// lossless. An unknown code page name raises EConvertError.
String CodePageToString(std::string_view bytes, std::u16string_view code_page = kWindows1252);

/// Encodes text in the named code page; a character the code page cannot hold raises
/// EConvertError.
std::string StringToCodePage(std::u16string_view text,
                             std::u16string_view code_page = kWindows1252);

}  // namespace vex
