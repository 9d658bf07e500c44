// TList: an ordered list of untyped pointers, the platform's general-purpose container for
// objects it does not own. Indexes are 0-based; a bad index raises EListError
// "List index out of bounds (%d)".
//
//   TList list;
//   list.Add(&a);            // -> 0
//   list.Add(nullptr);
//   list.Pack();             // removes the nullptr; Count() == 1
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "vex/platform/object.h"

namespace vex {

/// The comparison of TList::Sort: < 0, 0 or > 0 for two items.
using TListSortCompare = std::function<int32_t(void* item1, void* item2)>;

class TList : public TObject {
 public:
  TList() = default;

  int32_t Count() const { return static_cast<int32_t>(items_.size()); }
  /// Grows (with nullptr items) or shrinks the list.
  void SetCount(int32_t count);
  void* Items(int32_t index) const;
  void* operator[](int32_t index) const { return Items(index); }
  void SetItems(int32_t index, void* item);

  /// Appends and returns the new index.
  int32_t Add(void* item);
  /// Inserts before `index` (0..Count()).
  void Insert(int32_t index, void* item);
  void Delete(int32_t index);
  /// Deletes the first occurrence of `item`; returns its former index or -1.
  int32_t Remove(void* item);
  /// Removes the first occurrence of `item` and returns it; nullptr when absent.
  void* Extract(void* item);
  /// Index of the first occurrence of `item`, or -1.
  int32_t IndexOf(const void* item) const;
  void Clear();
  void Exchange(int32_t index1, int32_t index2);
  /// Moves the item at `cur_index` so that it ends at `new_index`.
  void Move(int32_t cur_index, int32_t new_index);
  /// Removes every nullptr item.
  void Pack();
  /// Stable sort by `compare`.
  void Sort(const TListSortCompare& compare);
  /// The first and last items; an empty list raises EListError (index 0 and -1).
  void* First() const;
  void* Last() const;

  /// The items themselves, for range loops.
  const std::vector<void*>& List() const { return items_; }

 private:
  void CheckIndex(int32_t index) const;

  std::vector<void*> items_;
};

}  // namespace vex
