#include "vex/core/base_types.h"
#include "vex/text/mem_utils.h"

namespace vex {

TListRec TMemUtils::ListRec(const std::vector<void*>& Items) { return GetListRec(Items); }

}  // namespace vex
