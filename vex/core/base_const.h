// Constants shared by several units of the library: line and field separators, the digit set,
// the separators of language keys and texts, and the message prefixes of the conversions.
// Constants only; each is used by more than one unit.
//
//   throw EConvertError(String(sConvertIntError) + text);   // "Conversion to integer error in: x"
#pragma once

#include "vex/platform/types.h"

namespace vex {

inline constexpr Char cTab = u'\t';
inline constexpr Char cCR = u'\r';
inline constexpr Char cLF = u'\n';
/// The line break that the library writes (it reads CR LF, LF and CR).
inline constexpr char16_t sLineBreak[] = u"\r\n";

/// The decimal digits, as a character set for the token and pattern operations.
inline constexpr char16_t sDigits[] = u"0123456789";

/// The default separator of names and values in name=value text.
inline constexpr Char cNameValueSep = u'=';
/// The quote character of QuotedStr/DequoteStr and of the quoted code form.
inline constexpr Char cQuoteChar = u'\'';

/// A language text holds a caption and a message separated by this character
/// ("Caption|Message"); a list of keys is separated by it too.
inline constexpr Char cLangTextSep = u'|';
/// A language key is a section and an ident separated by this character ("Errors\NoFile").
inline constexpr Char cLangKeySep = u'\\';

/// Message prefixes of the "Try" conversions; the offending text follows.
inline constexpr char16_t sConvertIntError[] = u"Conversion to integer error in: ";
inline constexpr char16_t sConvertInt64Error[] = u"Conversion to Int64 error in: ";
inline constexpr char16_t sConvertFloatError[] = u"Conversion to float error in: ";
inline constexpr char16_t sConvertBoolError[] = u"Conversion to Boolean error in: ";

}  // namespace vex
