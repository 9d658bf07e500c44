#include "vex/platform/list.h"

#include <gtest/gtest.h>

#include <vector>

#include "test_support.h"
#include "vex/platform/exceptions.h"

namespace vex {
namespace {

std::vector<int> Values(const TList& list) {
  std::vector<int> out;
  for (void* p : list.List()) out.push_back(p ? *static_cast<int*>(p) : -1);
  return out;
}

class TListTest : public ::testing::Test {
 protected:
  int v[5] = {0, 1, 2, 3, 4};
};

TEST_F(TListTest, AddInsertDeleteKeepOrder) {
  TList list;
  EXPECT_EQ(list.Add(&v[1]), 0);
  EXPECT_EQ(list.Add(&v[3]), 1);
  list.Insert(1, &v[2]);
  list.Insert(0, &v[0]);
  list.Insert(4, &v[4]);
  EXPECT_EQ(Values(list), (std::vector<int>{0, 1, 2, 3, 4}));
  list.Delete(2);
  EXPECT_EQ(Values(list), (std::vector<int>{0, 1, 3, 4}));
  EXPECT_EQ(list.First(), &v[0]);
  EXPECT_EQ(list.Last(), &v[4]);
  EXPECT_EQ(list[1], &v[1]);
}

TEST_F(TListTest, RemoveAndExtractTakeTheFirstOccurrence) {
  TList list;
  list.Add(&v[1]);
  list.Add(&v[2]);
  list.Add(&v[1]);
  EXPECT_EQ(list.Remove(&v[1]), 0);
  EXPECT_EQ(Values(list), (std::vector<int>{2, 1}));
  EXPECT_EQ(list.Remove(&v[4]), -1);
  EXPECT_EQ(list.Extract(&v[1]), &v[1]);
  EXPECT_EQ(list.Extract(&v[1]), nullptr);
  EXPECT_EQ(list.IndexOf(&v[2]), 0);
}

TEST_F(TListTest, MoveExchangePackAndSort) {
  TList list;
  for (int i : {3, 0, 4, 1}) list.Add(&v[i]);
  list.Move(0, 3);
  EXPECT_EQ(Values(list), (std::vector<int>{0, 4, 1, 3}));
  list.Move(2, 0);
  EXPECT_EQ(Values(list), (std::vector<int>{1, 0, 4, 3}));
  list.Exchange(0, 3);
  EXPECT_EQ(Values(list), (std::vector<int>{3, 0, 4, 1}));
  list.Insert(1, nullptr);
  list.Add(nullptr);
  list.Pack();
  EXPECT_EQ(list.Count(), 4);
  list.Sort([](void* a, void* b) { return *static_cast<int*>(a) - *static_cast<int*>(b); });
  EXPECT_EQ(Values(list), (std::vector<int>{0, 1, 3, 4}));
  list.SetCount(6);
  EXPECT_EQ(list.Items(5), nullptr);
  list.SetCount(1);
  EXPECT_EQ(Values(list), (std::vector<int>{0}));
}

TEST_F(TListTest, BadIndexesRaiseListError) {
  TList list;
  EXPECT_EQ(test::MessageOf<EListError>([&] { list.First(); }), u"List index out of bounds (0)");
  EXPECT_EQ(test::MessageOf<EListError>([&] { list.Last(); }), u"List index out of bounds (-1)");
  list.Add(&v[0]);
  EXPECT_THROW(list.Insert(2, &v[1]), EListError);
  EXPECT_THROW(list.Delete(1), EListError);
  EXPECT_THROW(list.SetItems(-1, nullptr), EListError);
  EXPECT_THROW(list.Move(0, 1), EListError);
  EXPECT_THROW(list.Exchange(1, 0), EListError);
}

}  // namespace
}  // namespace vex
