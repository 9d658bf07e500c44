// TCompareUtils: line comparison functions of one shape, (SubStr, AText) -> integer, chosen by a
// TLineCompareType and options, so that list filters compare lines by equality, prefix, suffix or
// containment, with or without case. Callers test the result for non-zero.
//
//   TGetPosFunc f = TCompareUtils::IntCompareFunc(lctStartsWith, {cmpIgnoreCase});
//   f(u"AB", u"abc")   // 1
//   TCompareUtils::AnsiPosNoCase(u"ABC", u"xabcx")   // 2
#pragma once

#include <cstdint>

#include "vex/core/base_types.h"
#include "vex/platform/types.h"

namespace vex {

class TCompareUtils {
 public:
  /// 1 when SubStr and AText are equal, code unit for code unit; else 0.
  static int32_t SameStrInt(const String& SubStr, const String& AText);
  /// 1 when they are equal ignoring ASCII case (SameText); else 0.
  static int32_t SameTextInt(const String& SubStr, const String& AText);
  /// 1 when AText starts with SubStr (case-sensitive); an empty SubStr always matches.
  static int32_t StartsWithStrInt(const String& SubStr, const String& AText);
  /// As StartsWithStrInt, ignoring ASCII case.
  static int32_t StartsWithTextInt(const String& SubStr, const String& AText);
  /// 1 when AText ends with SubStr (case-sensitive); an empty SubStr always matches.
  static int32_t EndsWithStrInt(const String& SubStr, const String& AText);
  /// As EndsWithStrInt, ignoring ASCII case.
  static int32_t EndsWithTextInt(const String& SubStr, const String& AText);
  /// 1-based position of SubStr in AText after both are upper-cased with ASCII-only folding
  /// (only a..z change); 0 when absent or when SubStr is empty.
  static int32_t AnsiPosNoCase(const String& SubStr, const String& AText);

  /// Sets Func by the comparison type: lctSameStr, lctStartsWith, lctEndsWith to the matching
  /// Str/Text function above, lctContains to AnsiPosNoCase or Pos, lctRegExp to an empty
  /// function (regular expressions are matched elsewhere).
  static void AssignPosFunc(TGetPosFunc& Func, TLineCompareType CompareType, bool IgnoreCase);
  /// AssignPosFunc with IgnoreCase taken from cmpIgnoreCase; cmpWholeWords has no effect here.
  static TGetPosFunc IntCompareFunc(TLineCompareType CompareType, TLineCompareOptions Options);
};

}  // namespace vex
