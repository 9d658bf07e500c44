// TIntegerUtils: arrays as text.
#include "vex/platform/sysutils.h"
#include "vex/text/integer_utils.h"

namespace vex {

String TIntegerUtils::IntArrayToString(const TIntegerDynArray& Values, const String& Separator) {
  String result;
  for (size_t i = 0; i < Values.size(); ++i) {
    if (i > 0) result += Separator;
    result += IntToStr(Values[i]);
  }
  return result;
}

}  // namespace vex
