// Huge-page hints for large blocks.
#include "vex/platform/memory.h"

#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace vex {

void AdviseHugePages(const void* data, size_t bytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
  constexpr uintptr_t kHugePage = uintptr_t{2} << 20;
  if (data == nullptr || bytes < 4 * kHugePage) return;
  const auto begin = reinterpret_cast<uintptr_t>(data);
  const uintptr_t first = (begin + kHugePage - 1) & ~(kHugePage - 1);
  const uintptr_t last = (begin + bytes) & ~(kHugePage - 1);
  if (last > first) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#else
  (void)data;
  (void)bytes;
#endif
}

}  // namespace vex
