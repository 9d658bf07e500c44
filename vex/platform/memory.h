// Large blocks that fill quickly: a huge-page hint for big fresh allocations, and an allocator
// that gives it to every block of a growing container.
//   std::vector<Record, LargeBlockAllocator<Record>> records;  // a million records, few faults
#pragma once

#include <cstddef>
#include <new>

namespace vex {

/// Asks the system to back the whole 2 MB pages inside a large, freshly allocated block with
/// huge pages, so that filling it takes one page fault per 2 MB instead of one per 4 KB.
/// A hint only: it changes nothing but speed, and does nothing for blocks under 8 MB or
/// where it is not supported.
void AdviseHugePages(const void* data, size_t bytes);

/// std::allocator, except that every block large enough gets AdviseHugePages.
template <class T>
struct LargeBlockAllocator {
  using value_type = T;
  LargeBlockAllocator() = default;
  template <class U>
  LargeBlockAllocator(const LargeBlockAllocator<U>& /*other*/) {}  // NOLINT: rebinding

  T* allocate(size_t count) {
    if (count > static_cast<size_t>(-1) / sizeof(T)) throw std::bad_array_new_length();
    T* data = static_cast<T*>(::operator new(count * sizeof(T)));
    AdviseHugePages(data, count * sizeof(T));
    return data;
  }
  void deallocate(T* data, size_t /*count*/) { ::operator delete(data); }

  template <class U>
  bool operator==(const LargeBlockAllocator<U>& /*other*/) const {
    return true;
  }
};

}  // namespace vex
