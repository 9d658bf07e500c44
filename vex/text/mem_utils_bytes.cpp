// TMemUtils: byte arrays and memory blocks.
#include "vex/text/mem_utils.h"

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace vex {

void TMemUtils::AppendBytes(TBytes& Dest, const TBytes& Source) {
  if (&Dest == &Source) {
    // Inserting a vector's own range into it is undefined; append a copy instead.
    const TBytes copy = Source;
    Dest.insert(Dest.end(), copy.begin(), copy.end());
    return;
  }
  Dest.insert(Dest.end(), Source.begin(), Source.end());
}

void TMemUtils::AdviseHugePages(const void* Data, size_t Bytes) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
  constexpr uintptr_t kHugePage = uintptr_t{2} << 20;
  if (Data == nullptr || Bytes < 4 * kHugePage) return;
  const auto begin = reinterpret_cast<uintptr_t>(Data);
  const uintptr_t first = (begin + kHugePage - 1) & ~(kHugePage - 1);
  const uintptr_t last = (begin + Bytes) & ~(kHugePage - 1);
  if (last > first) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#else
  (void)Data;
  (void)Bytes;
#endif
}

}  // namespace vex
