// TIntegerUtils: operations on integer arrays and on the integer-group notation
// ("1-3,5": ascending runs written first, "-", last; single values alone).
#pragma once

#include <cstdint>

#include "vex/platform/types.h"

namespace vex {

class TIntegerUtils {
 public:
  // --- arrays as text -----------------------------------------------------------------------

  // --- grouping -----------------------------------------------------------------------------
};

}  // namespace vex
