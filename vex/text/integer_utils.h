// TIntegerUtils: operations on integer arrays and on the integer-group notation
// ("1-3,5": ascending runs written first, "-", last; single values alone).
#pragma once

#include <cstdint>

#include "vex/platform/types.h"

namespace vex {

class TIntegerUtils {
 public:
  // --- arrays as text -----------------------------------------------------------------------

  /// The values in decimal, joined by Separator.
  ///
  ///   IntArrayToString({1, -2, 3}, u"|")   // u"1|-2|3"
  static String IntArrayToString(const TIntegerDynArray& Values, const String& Separator = u",");

  // --- grouping -----------------------------------------------------------------------------

  /// Writes Values, in the order given, in the integer-group notation: a run of values each
  /// one greater than the one before becomes "first-last", a lone value stands by itself, and
  /// the pieces are joined by Delim. When there are at least two values, the first is Base and
  /// all of them form one unbroken run, only the last value is written.
  ///
  ///   GroupIntegers({2, 3, 5})          // u"2-3,5"
  ///   GroupIntegers({1, 2, 3, 4}, 1)    // u"4"
  ///   GroupIntegers({3, 2, 1})          // u"3,2,1" (descending values are not a run)
  static String GroupIntegers(const TIntegerDynArray& Values, int32_t Base = 0,
                              const String& Delim = u",");
};

}  // namespace vex
