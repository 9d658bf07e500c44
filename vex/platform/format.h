// Format and float text of the platform: the Pascal-style Format with an "array of const", the
// format settings (separators, currency, date and time pictures), and float <-> text.
//
//   Format(u"%s has %.3d items", {name, 7})      // u"box has 007 items"
//   Format(u"%1:s-%0:s", {u"a", u"b"})           // u"b-a"
//   FloatToStr(1.0 / 3)                           // u"0.333333333333333" (15 digits at most)
//   FormatFloat(u"#,##0.00", 1234.5)              // u"1,234.50"
//
// Format follows the Pascal platform's rules, not printf's: "%" [index ":"] ["-"] [width]
// ["." precision] type, with type one of d u e f g n m p s x (either case) and "*" taking an
// index, width or precision from the arguments. A specifier whose argument has the wrong kind,
// a missing argument or a malformed specifier raise EConvertError.
//
// Float text is exact: digits come from the binary value by correct rounding (ties away from
// zero), never from printf or the C locale. At most 15 significant digits are produced; further
// places are written as zeros.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <type_traits>
#include <vector>

#include "vex/platform/types.h"

namespace vex {

// --- Settings -------------------------------------------------------------------------------

/// Separators, currency layout and date/time pictures used by the formatting functions.
/// CurrencyFormat: 0 "$1", 1 "1$", 2 "$ 1", 3 "1 $". NegCurrFormat: 0 "($1)", 1 "-$1",
/// 2 "$-1", 3 "$1-", 4 "(1$)", 5 "-1$", 6 "1-$", 7 "1$-", 8 "-1 $", 9 "-$ 1", 10 "1 $-",
/// 11 "$ 1-", 12 "$ -1", 13 "1- $", 14 "($ 1)", 15 "(1 $)".
struct TFormatSettings {
  Char DecimalSeparator = u'.';
  /// Zero means "no grouping character".
  Char ThousandSeparator = u',';
  String CurrencyString = u"$";
  uint8_t CurrencyFormat = 1;
  uint8_t NegCurrFormat = 5;
  uint8_t CurrencyDecimals = 2;
  Char DateSeparator = u'/';
  Char TimeSeparator = u':';
  String ShortDateFormat = u"dd/mm/yyyy";
  String LongDateFormat = u"dd mmmm yyyy";
  String ShortTimeFormat = u"hh:nn";
  String LongTimeFormat = u"hh:nn:ss";
  String TimeAMString = u"AM";
  String TimePMString = u"PM";
  std::array<String, 12> ShortMonthNames{u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun",
                                         u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};
  std::array<String, 12> LongMonthNames{u"January", u"February", u"March",     u"April",
                                        u"May",     u"June",     u"July",      u"August",
                                        u"September", u"October", u"November", u"December"};
  /// Index 0 is Sunday.
  std::array<String, 7> ShortDayNames{u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"};
  std::array<String, 7> LongDayNames{u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                     u"Thursday", u"Friday", u"Saturday"};
};

/// The process-wide default settings used by every overload without a settings argument.
/// Changing them while other threads format text is a data race; set them at start-up.
TFormatSettings& FormatSettings();

// --- Format arguments -----------------------------------------------------------------------

/// Kinds of Format arguments, numbered as the Pascal platform numbers them.
enum TVarRecType : uint8_t {
  vtInteger = 0,
  vtBoolean = 1,
  vtExtended = 3,
  vtPointer = 5,
  vtWideChar = 9,
  vtPWideChar = 10,
  vtInt64 = 16,
  vtUnicodeString = 17,
  vtUInt64 = 18,
};

/// One element of Format's argument list. Built implicitly from integers of any width, double,
/// bool, Char, const Char*, String and pointers. Integers up to 32 bits are vtInteger,
/// unsigned 32-bit and 64-bit signed values vtInt64, unsigned 64-bit values vtUInt64.
/// A String lvalue or a string view is referenced, not copied: it must outlive the Format call
/// (a temporary in the argument list does). A String rvalue is moved in and owned.
class TVarRec {
 public:
  template <class T>
    requires(std::is_integral_v<T> && !std::is_same_v<T, bool> && !std::is_same_v<T, char> &&
             !std::is_same_v<T, char8_t> && !std::is_same_v<T, char16_t> &&
             !std::is_same_v<T, char32_t> && !std::is_same_v<T, wchar_t>)
  TVarRec(T value) {  // NOLINT(google-explicit-constructor)
    if constexpr (sizeof(T) < 4 || (sizeof(T) == 4 && std::is_signed_v<T>)) {
      type_ = vtInteger;
      int_ = static_cast<int64_t>(value);
    } else if constexpr (std::is_signed_v<T> || sizeof(T) == 4) {
      type_ = vtInt64;
      int_ = static_cast<int64_t>(value);
    } else {
      type_ = vtUInt64;
      int_ = static_cast<int64_t>(value);
    }
  }
  template <class T>
    requires std::is_floating_point_v<T>
  TVarRec(T value) : type_(vtExtended), float_(static_cast<double>(value)) {}  // NOLINT
  TVarRec(bool value) : type_(vtBoolean), int_(value ? 1 : 0) {}              // NOLINT
  TVarRec(Char value) : type_(vtWideChar), char_(value), int_(value) {}       // NOLINT
  TVarRec(const Char* value) : type_(vtPWideChar), pointer_(value) {}         // NOLINT
  TVarRec(const String& value) : type_(vtUnicodeString), text_(value) {}      // NOLINT
  TVarRec(String&& value);                                                    // NOLINT
  TVarRec(std::u16string_view value) : type_(vtUnicodeString), text_(value) {}  // NOLINT
  TVarRec(const void* value) : type_(vtPointer), pointer_(value) {}           // NOLINT
  TVarRec(std::nullptr_t) : type_(vtPointer), pointer_(nullptr) {}           // NOLINT
  // Narrow text is UTF-8 in this library and must be converted explicitly (FromUtf8).
  TVarRec(char) = delete;
  TVarRec(const char*) = delete;

  TVarRecType VType() const { return type_; }
  /// The integer value of vtInteger, vtInt64, vtBoolean and vtWideChar; the bit pattern of
  /// vtUInt64.
  int64_t AsInt64() const { return int_; }
  double AsDouble() const { return float_; }
  const void* AsPointer() const { return pointer_; }
  /// The text of vtUnicodeString, vtPWideChar (empty for a null pointer) and vtWideChar.
  std::u16string_view AsText() const;

 private:
  TVarRecType type_;
  bool owns_text_ = false;
  Char char_ = 0;
  union {
    int64_t int_ = 0;
    double float_;
    const void* pointer_;
  };
  std::u16string_view text_;
  String owned_;
};

// --- Format ---------------------------------------------------------------------------------

/// Formats args by fmt as described at the top of this header. Raises EConvertError
/// "Format '<fmt>' invalid or incompatible with argument" for a wrong argument kind or a
/// malformed specifier, and "No argument for format '<fmt>'" for a missing argument.
String Format(const String& fmt, std::initializer_list<TVarRec> args);
String Format(const String& fmt, std::initializer_list<TVarRec> args,
              const TFormatSettings& settings);
String Format(const String& fmt, const std::vector<TVarRec>& args);
String Format(const String& fmt, const std::vector<TVarRec>& args,
              const TFormatSettings& settings);

// --- Floats ---------------------------------------------------------------------------------

enum TFloatFormat : uint8_t { ffGeneral, ffExponent, ffFixed, ffNumber, ffCurrency };

/// Shortest text with at most 15 significant digits: fixed notation, or "1.5E-7" style when the
/// value needs more than 15 integer digits or is below 0.00001. Infinities and NaN give "INF",
/// "-INF" and "NAN".
String FloatToStr(double value);
String FloatToStr(double value, const TFormatSettings& settings);

/// ffGeneral: as FloatToStr with precision significant digits (1..15).
/// ffExponent: "d.dddE+ddd" with precision digits in all and at least digits exponent digits.
/// ffFixed: digits decimals; ffNumber: the same with thousand separators; ffCurrency: as
/// ffNumber with the currency string placed by the settings' currency formats.
String FloatToStrF(double value, TFloatFormat format, int32_t precision, int32_t digits);
String FloatToStrF(double value, TFloatFormat format, int32_t precision, int32_t digits,
                   const TFormatSettings& settings);

/// Picture formatting: "0" digit or zero, "#" optional digit, "." decimal point, "," thousand
/// grouping, "E+"/"E-" (or "e") scientific with the zeros after it as minimal exponent digits,
/// text in '...' or "..." and any other character copied, up to three sections separated by
/// ";" for positive, negative and zero values. An empty picture gives FloatToStr.
String FormatFloat(const String& picture, double value);
String FormatFloat(const String& picture, double value, const TFormatSettings& settings);

/// Optional blanks, optional sign, digits with the settings' decimal separator, optional
/// exponent ("e"/"E", optional sign, digits), optional blanks; nothing else. "INF", "-INF" and
/// "NAN" in any case are accepted. Values beyond the double range fail; values too small to
/// represent become zero (so the 15-digit text of a value within half a unit of the largest
/// double, "1.79769313486232E308", does not read back). StrToFloat raises EConvertError
/// "'<text>' is not a valid floating point value".
bool TryStrToFloat(const String& s, double& value);
bool TryStrToFloat(const String& s, double& value, const TFormatSettings& settings);
double StrToFloat(const String& s);
double StrToFloat(const String& s, const TFormatSettings& settings);
double StrToFloatDef(const String& s, double default_value);
double StrToFloatDef(const String& s, double default_value, const TFormatSettings& settings);

}  // namespace vex
