#include "vex/core/base_types.h"
#include "vex/text/string_utils.h"

namespace vex {

TStrRec TStringUtils::StrRec(const String& S) { return GetStrRec(S); }

TStrListRec TStringUtils::StrListRec(const String& S) { return GetStrListRec(S); }

}  // namespace vex
