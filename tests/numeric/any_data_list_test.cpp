#include "vex/numeric/any_data_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <random>
#include <set>
#include <vector>

namespace vex {
namespace {

void* Value(intptr_t v) { return reinterpret_cast<void*>(v); }
intptr_t ValueOf(const TAny32IntRec* rec) { return reinterpret_cast<intptr_t>(rec->Data); }

std::vector<int32_t> Keys(TAny32DataList& list) {
  std::vector<int32_t> keys;
  list.ForEach([&](int32_t, bool, PAny32IntRec rec) { keys.push_back(rec->Key); });
  return keys;
}

bool AllZero(const void* p, int32_t n) {
  const auto* b = static_cast<const uint8_t*>(p);
  return std::all_of(b, b + n, [](uint8_t c) { return c == 0; });
}

// --- the shared binary search -----------------------------------------------------------------

TEST(FindIntValue, ReportsFoundIndexOrInsertionIndex) {
  const int32_t items[] = {1, 5, 9};
  int32_t index = -1;
  EXPECT_TRUE(FindIntValue(items, 3, 4, false, index, 5));
  EXPECT_EQ(index, 1);
  EXPECT_FALSE(FindIntValue(items, 3, 4, false, index, 7));
  EXPECT_EQ(index, 2);
  EXPECT_FALSE(FindIntValue(nullptr, 0, 4, false, index, 10));
  EXPECT_EQ(index, 0);
}

TEST(FindIntValue, ReadsKeysAtTheItemStrideAndThroughPointers) {
  struct Item { int32_t key; int32_t payload[3]; };
  const Item items[] = {{-4, {9, 9, 9}}, {0, {}}, {12, {}}, {40, {}}};
  int32_t index;
  EXPECT_TRUE(FindIntValue(items, 4, sizeof(Item), false, index, 12));
  EXPECT_EQ(index, 2);
  EXPECT_FALSE(FindIntValue(items, 4, sizeof(Item), false, index, 9));  // payloads ignored
  EXPECT_EQ(index, 2);

  const int32_t a = 3, b = 8, c = 20;
  const int32_t* pointers[] = {&a, &b, &c};
  EXPECT_TRUE(FindIntValue(pointers, 3, sizeof(int32_t*), true, index, 20));
  EXPECT_EQ(index, 2);
  EXPECT_FALSE(FindIntValue(pointers, 3, sizeof(int32_t*), true, index, 4));
  EXPECT_EQ(index, 1);
}

TEST(FindIntValue, OrdersByTheSignOfTheWrappedDifference) {
  // INT_MAX - INT_MIN wraps to -1, so INT_MAX sorts before INT_MIN; a plain comparison would
  // search the other half and miss the key.
  const int32_t wrapped[] = {0, INT_MAX, INT_MIN};
  int32_t index;
  EXPECT_TRUE(FindIntValue(wrapped, 3, 4, false, index, INT_MIN));
  EXPECT_EQ(index, 2);
  const int32_t sorted[] = {INT_MIN, 0, INT_MAX};
  EXPECT_FALSE(FindIntValue(sorted, 3, 4, false, index, INT_MIN));  // 0 - INT_MIN wraps
  EXPECT_EQ(index, 3);
}

TEST(InsertIntValue, KeepsTheArraySortedAndFreeOfDuplicates) {
  std::mt19937 rng(7);
  TIntegerDynArray grown;
  std::set<int32_t> reference;
  for (int i = 0; i < 2000; ++i) {
    const int32_t v = std::uniform_int_distribution<int32_t>(-500, 500)(rng);
    const int32_t at = InsertIntValue(v, grown);
    reference.insert(v);
    ASSERT_EQ(grown[static_cast<size_t>(at)], v);
  }
  EXPECT_EQ(grown, TIntegerDynArray(reference.begin(), reference.end()));
}

// --- the keyed store --------------------------------------------------------------------------

TEST(Any32DataList, KeepsKeysAscendingAndVisitsThemInOrder) {
  TAny32DataList list;
  int32_t pos = 99;
  EXPECT_FALSE(list.FindKeyPos(5, pos));  // an empty list: position 0, no record
  EXPECT_EQ(pos, 0);
  PAny32IntRec found = reinterpret_cast<PAny32IntRec>(&pos);
  EXPECT_FALSE(list.Find(5, found));
  EXPECT_EQ(found, nullptr);
  list.Add(30, Value(300));
  list.Add(10, Value(100));
  list.Add(20, Value(200));
  std::vector<int32_t> indexes, keys;
  list.ForEach([&](int32_t i, bool has_block, PAny32IntRec rec) {
    indexes.push_back(i);
    keys.push_back(rec->Key);
    EXPECT_FALSE(has_block);
  });
  EXPECT_EQ(indexes, (std::vector<int32_t>{0, 1, 2}));
  EXPECT_EQ(keys, (std::vector<int32_t>{10, 20, 30}));
  EXPECT_FALSE(list.FindKeyPos(25, pos));
  EXPECT_EQ(pos, 2);
  EXPECT_TRUE(list.FindKeyPos(20, pos));
  EXPECT_EQ(pos, 1);
  list.ForEach(nullptr);
}

TEST(Any32DataList, AnExistingKeyKeepsItsRecord) {
  TAny32DataList list;
  list.Add(1, Value(11));
  list.Add(1, Value(22));
  list.AddMem(1, 64);
  list.AddMemData(1, 4, "abcd");
  ASSERT_EQ(list.Count(), 1);
  EXPECT_EQ(ValueOf(list.LookFor(1)), 11);
  EXPECT_EQ(list.LookFor(1)->Size, 0);

  PAny32IntRec rec = list.GetIntRec(4, 8);
  ASSERT_NE(rec, nullptr);
  EXPECT_EQ(rec->Size, 8);
  EXPECT_TRUE(AllZero(rec->Data, 8));
  std::memset(rec->Data, 0x5A, 8);  // the whole block is ours to write
  void* block = rec->Data;
  PAny32IntRec again = list.GetIntRec(4, 16);
  EXPECT_EQ(again->Size, 8);
  EXPECT_EQ(again->Data, block);
  EXPECT_EQ(list.Count(), 2);
}

TEST(Any32DataList, AddMemDataCopiesTheSource) {
  TAny32DataList list;
  const char text[6] = "hello";
  list.AddMemData(7, 6, text);
  list.AddMem(3, 5);
  list.AddMemData(9, 0, text);  // no block: nothing copied, no data
  EXPECT_EQ(std::memcmp(list.LookFor(7)->Data, text, 6), 0);
  EXPECT_TRUE(AllZero(list.LookFor(3)->Data, 5));
  EXPECT_EQ(list.LookFor(9)->Size, 0);
  EXPECT_EQ(list.LookFor(9)->Data, nullptr);
  std::vector<bool> blocks;
  list.ForEach([&](int32_t, bool has_block, PAny32IntRec) { blocks.push_back(has_block); });
  EXPECT_EQ(blocks, (std::vector<bool>{true, true, false}));
}

TEST(Any32DataList, AddRecInsertsAtTheGivenIndexWithoutSearching) {
  TAny32DataList list;
  list.Add(1, Value(1));
  list.Add(3, Value(3));
  PAny32IntRec rec = list.AddRec(2, -5, Value(42), 1);
  EXPECT_EQ(rec->Key, 2);
  EXPECT_EQ(rec->Size, -5);  // not a block: kept as the caller's value
  EXPECT_EQ(ValueOf(rec), 42);
  list.AddRec(100, 0, nullptr, 1000);  // index clamped to the end
  list.AddRec(-100, 0, nullptr, -3);   // and to the start
  EXPECT_EQ(Keys(list), (std::vector<int32_t>{-100, 1, 2, 3, 100}));
}

// Run under the address sanitizer these also prove that every block is freed exactly once and
// that the caller's pointers are never freed.
TEST(Any32DataList, ClearFreesBlocksAndLeavesValuesAlone) {
  int32_t callers_own[4] = {1, 2, 3, 4};
  auto owner = std::make_unique<TAny32DataList>();  // destroyed through its owner at the end
  TAny32DataList& list = *owner;
  list.Add(1, callers_own);
  list.AddMem(2, 100);
  list.Add(3, Value(-1));
  list.AddMemData(4, 4, callers_own);
  list.GetIntRec(5, 1);
  list.Clear();
  EXPECT_EQ(list.Count(), 0);
  EXPECT_FALSE(list.Exists(2));
  EXPECT_EQ(callers_own[0], 1);  // still ours and intact
  list.AddMem(2, 10);            // usable after Clear
  EXPECT_TRUE(list.Exists(2));
}

}  // namespace
}  // namespace vex
