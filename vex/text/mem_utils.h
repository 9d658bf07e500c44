// TMemUtils: byte-array and memory-block helpers and the CRC-16 of a block.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vex/core/base_types.h"
#include "vex/platform/types.h"

namespace vex {

class TMemUtils {
 public:
  // --- record wrappers ----------------------------------------------------------------------

  // --- byte arrays --------------------------------------------------------------------------

  // --- checksums ----------------------------------------------------------------------------
};

}  // namespace vex
