// TIntegerUtils, grouping: integer arrays written in the integer-group notation ("1-3,5").
#include <cstddef>

#include "vex/platform/sysutils.h"
#include "vex/text/integer_utils.h"

namespace vex {

namespace {

// True when b follows a directly; computed wide so that INT32_MAX has no successor.
bool Follows(int32_t a, int32_t b) { return int64_t{b} == int64_t{a} + 1; }

bool IsOneRun(const TIntegerDynArray& values) {
  for (size_t i = 1; i < values.size(); ++i) {
    if (!Follows(values[i - 1], values[i])) return false;
  }
  return true;
}

}  // namespace

String TIntegerUtils::GroupIntegers(const TIntegerDynArray& Values, int32_t Base,
                                    const String& Delim) {
  if (Values.empty()) return String();
  // A full run from the base is known by its end alone ("4" for 1..4 with base 1).
  if (Values.size() >= 2 && Values.front() == Base && IsOneRun(Values)) {
    return IntToStr(Values.back());
  }
  String result;
  size_t i = 0;
  while (i < Values.size()) {
    size_t last = i;
    while (last + 1 < Values.size() && Follows(Values[last], Values[last + 1])) ++last;
    if (i > 0) result += Delim;
    result += IntToStr(Values[i]);
    if (last > i) {
      result += u'-';
      result += IntToStr(Values[last]);
    }
    i = last + 1;
  }
  return result;
}

}  // namespace vex
