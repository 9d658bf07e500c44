// TConvertUtils: date-time text.
#include "vex/platform/datetime.h"
#include "vex/text/convert_utils.h"

namespace vex {

String TConvertUtils::DateTimeStrDef(double DateTime, bool WithMs, const String& Default) {
  if (DateTime == 0) return Default;
  // Quoted separators: "/" and ":" are written as they stand, not as the locale's separators.
  String picture = u"dd\"/\"mm\"/\"yyyy,hh\":\"nn\":\"ss";
  if (WithMs) picture += u".zzz";
  return FormatDateTime(picture, DateTime);
}

}  // namespace vex
