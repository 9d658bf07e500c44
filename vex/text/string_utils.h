// TStringUtils: the string, quoting and list helpers that the text, pattern and data units share.
// Every operation is a static member; each group below is implemented in its own source file
// (string_utils_<group>.cpp).
#pragma once

#include <cstdint>

#include "vex/core/base_types.h"
#include "vex/platform/types.h"

namespace vex {

class TStringUtils {
 public:
  // --- record wrappers (forwarders to the free functions of base_types.h) -------------------

  // --- characters, pieces and list searches -------------------------------------------------

  // --- quoting, packing and formatting ------------------------------------------------------
};

}  // namespace vex
