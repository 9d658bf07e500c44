#include "vex/platform/list.h"

#include <algorithm>
#include <string>

#include "vex/platform/exceptions.h"

namespace vex {
void TList::CheckIndex(int32_t index) const {
  if (index < 0 || index >= Count()) RaiseListIndexError(index);
}

void TList::SetCount(int32_t count) {
  if (count < 0) RaiseListIndexError(count);
  items_.resize(static_cast<size_t>(count), nullptr);
}

void* TList::Items(int32_t index) const {
  CheckIndex(index);
  return items_[static_cast<size_t>(index)];
}

void TList::SetItems(int32_t index, void* item) {
  CheckIndex(index);
  items_[static_cast<size_t>(index)] = item;
}

int32_t TList::Add(void* item) {
  items_.push_back(item);
  return Count() - 1;
}

void TList::Insert(int32_t index, void* item) {
  if (index < 0 || index > Count()) RaiseListIndexError(index);
  items_.insert(items_.begin() + index, item);
}

void TList::Delete(int32_t index) {
  CheckIndex(index);
  items_.erase(items_.begin() + index);
}

int32_t TList::Remove(void* item) {
  int32_t index = IndexOf(item);
  if (index >= 0) Delete(index);
  return index;
}

void* TList::Extract(void* item) { return Remove(item) >= 0 ? item : nullptr; }

int32_t TList::IndexOf(const void* item) const {
  auto it = std::find(items_.begin(), items_.end(), item);
  return it == items_.end() ? -1 : static_cast<int32_t>(it - items_.begin());
}

void TList::Clear() { items_.clear(); }

void TList::Exchange(int32_t index1, int32_t index2) {
  CheckIndex(index1);
  CheckIndex(index2);
  std::swap(items_[static_cast<size_t>(index1)], items_[static_cast<size_t>(index2)]);
}

void TList::Move(int32_t cur_index, int32_t new_index) {
  CheckIndex(cur_index);
  CheckIndex(new_index);
  auto first = items_.begin();
  if (cur_index < new_index) {
    std::rotate(first + cur_index, first + cur_index + 1, first + new_index + 1);
  } else if (cur_index > new_index) {
    std::rotate(first + new_index, first + cur_index, first + cur_index + 1);
  }
}

void TList::Pack() { std::erase(items_, nullptr); }

void TList::Sort(const TListSortCompare& compare) {
  std::stable_sort(items_.begin(), items_.end(),
                   [&](void* a, void* b) { return compare(a, b) < 0; });
}

void* TList::First() const { return Items(0); }

void* TList::Last() const { return Items(Count() - 1); }

}  // namespace vex
