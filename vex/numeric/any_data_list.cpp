#include "vex/numeric/any_data_list.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace vex {

namespace {

int32_t KeyAt(const uint8_t* item, bool indirect) {
  int32_t key;
  if (indirect) {
    const void* target;
    std::memcpy(&target, item, sizeof target);
    std::memcpy(&key, target, sizeof key);
  } else {
    std::memcpy(&key, item, sizeof key);
  }
  return key;
}

}  // namespace

bool FindIntValue(const void* Items, int32_t Count, int32_t ItemSize, bool Indirect,
                  int32_t& Index, int32_t Value) {
  const uint8_t* items = static_cast<const uint8_t*>(Items);
  bool found = false;
  int32_t low = 0;
  int32_t high = Count - 1;
  while (low <= high) {
    const int32_t mid = static_cast<int32_t>(
        (static_cast<uint32_t>(low) + static_cast<uint32_t>(high)) >> 1);
    const int32_t key = KeyAt(items + static_cast<ptrdiff_t>(mid) * ItemSize, Indirect);
    // Deliberately the sign of a wrapping difference, not a plain comparison.
    const int32_t diff =
        static_cast<int32_t>(static_cast<uint32_t>(key) - static_cast<uint32_t>(Value));
    if (diff >= 0) {
      high = mid - 1;
      if (diff == 0) {
        found = true;
        low = mid;
      }
    } else {
      low = mid + 1;
    }
  }
  Index = low;
  return found;
}

int32_t InsertIntValue(int32_t Value, TIntegerDynArray& Arr) {
  int32_t index = 0;
  if (!Arr.empty() && FindIntValue(Arr.data(), static_cast<int32_t>(Arr.size()),
                                   sizeof(int32_t), false, index, Value)) {
    return index;
  }
  Arr.insert(Arr.begin() + index, Value);
  return index;
}

TAny32DataList::~TAny32DataList() { Clear(); }

void TAny32DataList::Clear() {
  for (TAny32IntRec& rec : FRecs) {
    if (rec.Size > 0) delete[] static_cast<uint8_t*>(rec.Data);
  }
  FRecs.clear();
}

bool TAny32DataList::FindKeyPos(int32_t Key, int32_t& Pos) const {
  Pos = 0;
  if (FRecs.empty()) return false;
  return FindIntValue(FRecs.data(), Count(), sizeof(TAny32IntRec), false, Pos, Key);
}

bool TAny32DataList::Find(int32_t Key, PAny32IntRec& Rec) {
  Rec = nullptr;
  int32_t pos;
  if (!FindKeyPos(Key, pos)) return false;
  Rec = &FRecs[static_cast<size_t>(pos)];
  return true;
}

PAny32IntRec TAny32DataList::LookFor(int32_t Key) {
  PAny32IntRec rec;
  Find(Key, rec);
  return rec;
}

bool TAny32DataList::Exists(int32_t Key) const {
  int32_t pos;
  return FindKeyPos(Key, pos);
}

PAny32IntRec TAny32DataList::AddRec(int32_t Key, int32_t Size, void* Data, int32_t Index) {
  std::unique_ptr<uint8_t[]> block;
  if (Size > 0) block.reset(new uint8_t[static_cast<size_t>(Size)]());
  const size_t at = static_cast<size_t>(std::clamp(Index, 0, Count()));
  auto it = FRecs.insert(FRecs.begin() + static_cast<ptrdiff_t>(at),
                         TAny32IntRec{Key, Size, Size > 0 ? block.get() : Data});
  block.release();  // now owned by the record
  return &*it;
}

void TAny32DataList::Add(int32_t Key, void* Data) {
  int32_t pos;
  if (!FindKeyPos(Key, pos)) AddRec(Key, 0, Data, pos);
}

void TAny32DataList::AddMem(int32_t Key, int32_t Size) {
  int32_t pos;
  if (!FindKeyPos(Key, pos)) AddRec(Key, Size, nullptr, pos);
}

void TAny32DataList::AddMemData(int32_t Key, int32_t Size, const void* Source) {
  int32_t pos;
  if (FindKeyPos(Key, pos)) return;
  PAny32IntRec rec = AddRec(Key, Size, nullptr, pos);
  if (Size > 0 && Source != nullptr) std::memcpy(rec->Data, Source, static_cast<size_t>(Size));
}

PAny32IntRec TAny32DataList::GetIntRec(int32_t Key, int32_t Size) {
  int32_t pos;
  if (!FindKeyPos(Key, pos)) return AddRec(Key, Size, nullptr, pos);
  return &FRecs[static_cast<size_t>(pos)];
}

void TAny32DataList::ForEach(const TAny32RecProc& Proc) {
  if (!Proc) return;
  // By index, re-reading the size each time: the procedure may add records.
  for (size_t i = 0; i < FRecs.size(); ++i) {
    Proc(static_cast<int32_t>(i), FRecs[i].Size > 0, &FRecs[i]);
  }
}

}  // namespace vex
