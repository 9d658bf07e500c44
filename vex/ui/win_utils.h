// TWinUtils: start a procedure on its own thread after an optional delay, and read a
// high-resolution monotonic counter.
//
//   int64_t t0 = TWinUtils::GetTimeCounter();
//   ...
//   double seconds = double(TWinUtils::GetTimeCounter() - t0) / TWinUtils::GetTimeFrequency();
#pragma once

#include <cstdint>

#include "vex/core/base_types.h"

namespace vex {

class TWinUtils {
 public:
  /// Sleeps Delay ms on the caller's thread (blocking the caller, deliberately), then runs Proc
  /// on a new self-freeing thread and returns once it is started. Proc does its own hand-over
  /// to the main thread.
  static void ExecuteProcInThread(TSimpleProc Proc, uint32_t Delay);
  /// Counts per second of GetTimeCounter; -1 when no monotonic counter is available.
  static int64_t GetTimeFrequency();
  /// The monotonic counter's current value; -1 when not available.
  static int64_t GetTimeCounter();
};

}  // namespace vex
