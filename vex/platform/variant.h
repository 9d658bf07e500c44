// Variant: the platform's dynamically typed value, holding nothing (Empty, "unassigned"), Null,
// a Boolean, a 32- or 64-bit integer, a double, a date, a string or an array of variants.
//
//   Variant v = 42;               // varInteger
//   v.AsString();                 // u"42"
//   Variant s = u"1.5";
//   s.AsDouble();                 // 1.5
//   VarToStr(Null());             // u"" (AsString of Null raises EVariantError)
//
// Conversions follow the Pascal platform: True converts to the integer -1, strings convert to
// numbers by the integer and float text rules (decimal point from the settings), and an
// impossible conversion raises EVariantError "Could not convert variant of type (X) into type
// (Y)".
#pragma once

#include <cstdint>
#include <initializer_list>
#include <type_traits>
#include <variant>
#include <vector>

#include "vex/platform/datetime.h"
#include "vex/platform/object.h"
#include "vex/platform/types.h"

namespace vex {

/// Type codes of the variant kinds, numbered as the Pascal platform numbers them.
using TVarType = uint16_t;
constexpr TVarType varEmpty = 0x0000;
constexpr TVarType varNull = 0x0001;
constexpr TVarType varInteger = 0x0003;
constexpr TVarType varDouble = 0x0005;
constexpr TVarType varDate = 0x0007;
constexpr TVarType varBoolean = 0x000B;
constexpr TVarType varVariant = 0x000C;
constexpr TVarType varInt64 = 0x0014;
constexpr TVarType varUString = 0x0102;
constexpr TVarType varArray = 0x2000;
constexpr TVarType varTypeMask = 0x0FFF;

class Variant : public TObject {
 public:
  /// Empty (unassigned).
  Variant() = default;
  Variant(bool value) : value_(value) {}  // NOLINT(google-explicit-constructor)
  template <class T>
  requires(std::is_integral_v<T> && !std::is_same_v<T, bool> && !std::is_same_v<T, char> &&
           !std::is_same_v<T, char8_t> && !std::is_same_v<T, char16_t> &&
           !std::is_same_v<T, char32_t> && !std::is_same_v<T, wchar_t>)
      Variant(T value) {  // NOLINT(google-explicit-constructor)
    if constexpr (sizeof(T) < 4 || (sizeof(T) == 4 && std::is_signed_v<T>)) {
      value_ = static_cast<int32_t>(value);
    } else {
      // Unsigned 64-bit values above the Int64 range keep their bit pattern.
      value_ = static_cast<int64_t>(value);
    }
  }
  Variant(double value) : value_(value) {}                           // NOLINT
  Variant(const String& value) : value_(value) {}                    // NOLINT
  Variant(String&& value) : value_(std::move(value)) {}              // NOLINT
  Variant(const Char* value) : value_(String(value)) {}              // NOLINT
  Variant(std::vector<Variant> items) : value_(std::move(items)) {}  // NOLINT
  // Narrow text is UTF-8 in this library and must be converted explicitly (FromUtf8).
  Variant(char) = delete;
  Variant(const char*) = delete;
  // Other pointers would silently become Booleans.
  template <class T>
  Variant(T*) = delete;

  static Variant Null();
  static Variant FromDate(TDateTime value);

  TVarType VarType() const;
  bool IsEmpty() const { return std::holds_alternative<std::monostate>(value_); }
  bool IsNull() const { return std::holds_alternative<NullTag>(value_); }
  bool IsArray() const { return std::holds_alternative<std::vector<Variant>>(value_); }

  /// Empty gives "", Boolean "True"/"False", numbers their FloatToStr/IntToStr text, a date
  /// DateTimeToStr; Null and arrays raise EVariantError.
  String AsString() const;
  /// The text held, without conversion; nullptr when the variant holds anything else.
  const String* TextPtr() const { return std::get_if<String>(&value_); }
  /// Empty gives 0, Boolean -1/0; doubles and dates are rounded (ties to even); strings are
  /// read as integer text or, failing that, float text. Out of range raises EVariantError.
  int32_t AsInteger() const;
  int64_t AsInt64() const;
  /// Empty gives 0; strings are read as float text (or integer text such as "$1F").
  double AsDouble() const;
  /// Numbers are true when not zero; strings "True"/"False" in any case or a number.
  bool AsBoolean() const;
  TDateTime AsDateTime() const;

  /// Array access; an index outside the array raises EVariantError.
  size_t ArrayLength() const;
  const Variant& operator[](size_t index) const;
  Variant& operator[](size_t index);

  /// Equal when both are Empty, both Null, both numbers (Boolean, integer, double or date) of
  /// equal value, equal strings (ordinal), or arrays of equal items. Never raises.
  friend bool operator==(const Variant& a, const Variant& b);

 private:
  struct NullTag {
    bool operator==(const NullTag&) const = default;
  };
  struct DateTag {
    TDateTime value;
  };

  [[noreturn]] void RaiseCast(TVarType target) const;
  bool TryNumber(double& value) const;

  std::variant<std::monostate, NullTag, bool, int32_t, int64_t, double, DateTag, String,
               std::vector<Variant>>
      value_;
};

Variant Null();
Variant Unassigned();
Variant VarArrayOf(std::initializer_list<Variant> items);

TVarType VarType(const Variant& v);
bool VarIsNull(const Variant& v);
bool VarIsEmpty(const Variant& v);
bool VarIsArray(const Variant& v);
/// As AsString, except that Null gives "".
String VarToStr(const Variant& v);
/// The platform's name of a type code: "Empty", "Null", "Integer", "UnicodeString",
/// "Array Variant", ...
String VarTypeAsText(TVarType type);

}  // namespace vex
