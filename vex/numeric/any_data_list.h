// uAnyDataList: a small store keyed by 32-bit integers, and the binary search it rests on.
//
// TAny32DataList keeps records sorted by Key, each holding either a value of the caller's or a
// zero-filled memory block that the list allocates and frees. InsertIntValue keeps a plain
// integer array sorted and free of duplicates with the same search.
//
//   TAny32DataList list;
//   list.Add(30, reinterpret_cast<void*>(intptr_t{7}));
//   PAny32IntRec rec = list.GetIntRec(10, 8);   // new record with an 8-byte zeroed block
//   list.LookFor(30)->Data;                      // (void*)7
//
// Keys are ordered by the sign of their wrapped 32-bit difference (see FindIntValue), so keys
// 2^31 or more apart compare the wrong way round: the store is meant for keys of moderate range.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "vex/platform/object.h"
#include "vex/platform/types.h"

namespace vex {

/// One record of a TAny32DataList.
struct TAny32IntRec {
  int32_t Key;
  /// Greater than 0: Data points to a block of Size bytes owned by the list. 0 or less: Data is
  /// the caller's own value (a number or a pointer that the list never frees).
  int32_t Size;
  /// Pointer-sized, so that a caller's pointer fits on a 64-bit build too; a 32-bit value is
  /// kept in it by a cast through intptr_t.
  void* Data;
};
using PAny32IntRec = TAny32IntRec*;

/// Binary search over Count items of ItemSize bytes at Items, ordered by the signed 32-bit key
/// at the start of each item (with Indirect, the item starts with a pointer to that key). The
/// order is the sign of key - Value as a wrapping 32-bit subtraction, kept deliberately. True
/// and the item's index in Index when Value is found; otherwise false and the index where it
/// would be inserted (0 for no items).
bool FindIntValue(const void* Items, int32_t Count, int32_t ItemSize, bool Indirect,
                  int32_t& Index, int32_t Value);

/// When Arr holds Value, returns its index and changes nothing; otherwise inserts Value where
/// FindIntValue places it and returns that index. An array changed only through this operation
/// stays sorted and duplicate-free: InsertIntValue(7, {1, 5, 9}) gives 2 and {1, 5, 7, 9}.
int32_t InsertIntValue(int32_t Value, TIntegerDynArray& Arr);

/// Called by TAny32DataList::ForEach with the record's index, whether it owns a block (Size > 0)
/// and the record.
using TAny32RecProc = std::function<void(int32_t Index, bool HasBlock, PAny32IntRec Rec)>;

/// Records keyed by a signed 32-bit integer, ascending, one per key. Record pointers stay valid
/// only until the next insertion or Clear. No lock: callers that share a list between threads
/// serialise their calls.
class TAny32DataList : public TObject {
 public:
  TAny32DataList() = default;
  /// Frees every owned block.
  ~TAny32DataList() override;
  TAny32DataList(const TAny32DataList&) = delete;
  TAny32DataList& operator=(const TAny32DataList&) = delete;

  String ClassName() const override { return u"TAny32DataList"; }

  /// The number of records.
  int32_t Count() const { return static_cast<int32_t>(FRecs.size()); }

  /// Frees the block of every record with Size > 0 (values are left alone), then removes all
  /// records.
  void Clear();

  /// True and the record's index when Key is present; false and the index where it would be
  /// inserted when it is not (0 for an empty list).
  bool FindKeyPos(int32_t Key, int32_t& Pos) const;
  /// True and the record when Key is present; false and Rec = nullptr otherwise.
  bool Find(int32_t Key, PAny32IntRec& Rec);
  /// The record of Key, or nullptr.
  PAny32IntRec LookFor(int32_t Key);
  bool Exists(int32_t Key) const;

  /// Inserts a record at Index (clamped to 0 .. Count) without searching, so the caller keeps
  /// the order. Size > 0 gives a fresh zero-filled block of Size bytes and Data is not used;
  /// otherwise Data is stored as it is. Returns the new record.
  PAny32IntRec AddRec(int32_t Key, int32_t Size, void* Data, int32_t Index);
  /// Adds Key with the caller's value Data; an existing Key keeps its old record.
  void Add(int32_t Key, void* Data);
  /// Adds Key with a zero-filled block of Size bytes; an existing Key keeps its old record.
  void AddMem(int32_t Key, int32_t Size);
  /// Adds Key with a block holding a copy of Size bytes from Source; an existing Key keeps its
  /// old record.
  void AddMemData(int32_t Key, int32_t Size, const void* Source);
  /// The record of Key, created with AddRec(Key, Size, nullptr, ...) when absent. An existing
  /// record keeps its own size and data.
  PAny32IntRec GetIntRec(int32_t Key, int32_t Size);

  /// Calls Proc for every record in ascending key order; nothing when Proc is empty.
  void ForEach(const TAny32RecProc& Proc);

 private:
  std::vector<TAny32IntRec> FRecs;
};

}  // namespace vex
