// Helpers shared by the fuzz targets.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "vex/platform/types.h"

namespace vex_fuzz {

/// Stops the run (libFuzzer records the input) when a property does not hold.
inline void Check(bool condition) {
  if (!condition) std::abort();
}

/// The bytes read as little-endian UTF-16 code units, so lone surrogates occur; an odd last
/// byte is dropped.
inline vex::String RawUtf16(std::string_view bytes) {
  vex::String s;
  s.reserve(bytes.size() / 2);
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    s += static_cast<char16_t>(static_cast<uint8_t>(bytes[i]) |
                               (static_cast<uint8_t>(bytes[i + 1]) << 8));
  }
  return s;
}

}  // namespace vex_fuzz
