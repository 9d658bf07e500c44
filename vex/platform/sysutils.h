// Text helpers of the platform: substring positions, copy/delete/insert with 1-based positions,
// trimming, replacement, case mapping and comparison, and integer text.
//
//   Pos(u"lo", u"hello")            // 4
//   Copy(u"hello", 2, 3)            // u"ell"
//   StrToIntDef(u" $1F", 0)         // 31
//
// Positions and counts are clamped as the Pascal platform clamps them: Copy with a start beyond
// the end gives an empty string, a count running past the end stops at the end, and so on; no
// operation reads outside its string.
#pragma once

#include <cstdint>
#include <type_traits>

#include "vex/platform/types.h"

namespace vex {

// --- Positions and pieces -------------------------------------------------------------------

/// 1-based position of the first occurrence of sub in s; 0 when absent or when sub is empty.
int32_t Pos(const String& sub, const String& s);
/// As Pos, starting the search at position offset (1-based); 0 when offset < 1 or past the end.
int32_t PosEx(const String& sub, const String& s, int32_t offset = 1);
/// count characters of s starting at index (1-based); index < 1 is taken as 1.
String Copy(const String& s, int32_t index, int32_t count);
/// Everything from index to the end.
String Copy(const String& s, int32_t index);
/// Removes count characters starting at index; nothing when index is outside 1..Length.
void Delete(String& s, int32_t index, int32_t count);
/// Inserts source into s before position index (clamped to 1..Length+1).
void Insert(const String& source, String& s, int32_t index);
/// Length as a 32-bit integer (the library's strings are far below 2^31 units).
inline int32_t Length(const String& s) { return static_cast<int32_t>(s.size()); }
/// A string of count copies of c (empty for count <= 0).
String StringOfChar(Char c, int32_t count);

/// Removes leading and trailing characters of code 32 or below.
String Trim(const String& s);
String TrimLeft(const String& s);
String TrimRight(const String& s);

/// Index of the last character of s that occurs in delimiters; 0 when none.
int32_t LastDelimiter(const String& delimiters, const String& s);

enum TReplaceFlag { rfReplaceAll, rfIgnoreCase };
using TReplaceFlags = Set<TReplaceFlag>;

/// Replaces the first (or, with rfReplaceAll, every) occurrence of old_pattern. rfIgnoreCase
/// compares after Unicode upper-casing with the one-to-one mapping of each character (so that
/// positions stay aligned; "ß" matches only itself). An empty old_pattern leaves s unchanged.
String StringReplace(const String& s, const String& old_pattern, const String& new_pattern,
                     TReplaceFlags flags);

// --- Case -----------------------------------------------------------------------------------

/// ASCII only: 'a'..'z' become 'A'..'Z'; every other unit is kept.
String UpperCase(const String& s);
String LowerCase(const String& s);
/// Ordinal comparison of UTF-16 units: < 0, 0 or > 0.
int32_t CompareStr(const String& a, const String& b);
bool SameStr(const String& a, const String& b);
/// Ordinal comparison after ASCII upper-casing.
int32_t CompareText(const String& a, const String& b);
bool SameText(const String& a, const String& b);

/// Full Unicode case mapping (ICU, root locale).
String AnsiUpperCase(const String& s);
String AnsiLowerCase(const String& s);
/// Case-sensitive and case-insensitive comparison by ICU's root collation order.
int32_t AnsiCompareStr(const String& a, const String& b);
int32_t AnsiCompareText(const String& a, const String& b);
bool AnsiSameStr(const String& a, const String& b);
/// Equal after full Unicode case folding.
bool AnsiSameText(const String& a, const String& b);

// --- Integer text ---------------------------------------------------------------------------

String IntToStr(int32_t value);
String IntToStr(int64_t value);
String UIntToStr(uint64_t value);
/// Other integer types (unsigned, long long, short ...) without overload ambiguity.
template <class T>
  requires(std::is_integral_v<T> && !std::is_same_v<T, int32_t> && !std::is_same_v<T, int64_t> &&
           !std::is_same_v<T, bool> && !std::is_same_v<T, char> && !std::is_same_v<T, char8_t> &&
           !std::is_same_v<T, char16_t> && !std::is_same_v<T, char32_t> &&
           !std::is_same_v<T, wchar_t>)
String IntToStr(T value) {
  if constexpr (std::is_unsigned_v<T> && sizeof(T) >= sizeof(int64_t)) {
    return UIntToStr(value);
  } else {
    return IntToStr(static_cast<int64_t>(value));
  }
}
/// Upper-case hexadecimal, padded with zeros to at least digits characters.
String IntToHex(int64_t value, int32_t digits);

/// Optional leading blanks (space, tab), optional sign, then decimal digits or "$"/"0x"/"0X"
/// and hexadecimal digits; nothing after; must fit the type. Failure raises EConvertError
/// "'<text>' is not a valid integer value".
/// Hexadecimal text is a bit pattern, as IntToHex writes it: without a sign it may use the
/// type's full unsigned width ("$FFFFFFFF" is -1 for StrToInt), and a sign before the prefix
/// negates it ("-$10" is -16; "-$80000000" is the smallest 32-bit value, "-$80000001" fails).
/// Decimal text is range-checked: StrToInt(u"2147483648") fails.
int32_t StrToInt(const String& s);
int32_t StrToIntDef(const String& s, int32_t default_value);
bool TryStrToInt(const String& s, int32_t& value);
int64_t StrToInt64(const String& s);
int64_t StrToInt64Def(const String& s, int64_t default_value);
bool TryStrToInt64(const String& s, int64_t& value);

/// "True"/"False" texts of the platform (BoolToStr with use_bool_strs) or "-1"/"0".
String BoolToStr(bool value, bool use_bool_strs = false);
/// Accepts "true"/"false" in any case and any integer (non-zero is true).
bool TryStrToBool(const String& s, bool& value);
bool StrToBool(const String& s);

}  // namespace vex
