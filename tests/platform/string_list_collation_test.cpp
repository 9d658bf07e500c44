// Lists of printable ASCII lines sort and search by a fast path of their own; it must give
// exactly the order of the collation functions, for every pair of characters (lines with other
// characters are covered with the collation shortcut in string_list_test.cpp).
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

std::vector<String> AllPairs() {
  std::vector<String> pairs;
  for (Char x = 0x20; x < 0x7F; ++x) {
    for (Char y = 0x20; y < 0x7F; ++y) pairs.push_back(String{x, y});
  }
  return pairs;
}

TEST(StringListCollation, SortAndFindFollowTheCollationOnEveryPairOfCharacters) {
  std::vector<String> pairs = AllPairs();
  std::shuffle(pairs.begin(), pairs.end(), std::mt19937(5));
  for (bool case_sensitive : {false, true}) {
    auto collate = case_sensitive ? AnsiCompareStr : AnsiCompareText;
    TStringList list;
    list.SetCaseSensitive(case_sensitive);
    list.SetDuplicates(dupAccept);
    for (const String& s : pairs) list.Add(s);
    list.SetSorted(true);
    for (int32_t i = 1; i < list.Count(); ++i) {
      ASSERT_LE(collate(list[i - 1], list[i]), 0)
          << ToUtf8(list[i - 1]) << " / " << ToUtf8(list[i]);
    }
    // Every line is found, at the first line the collation calls equal to it.
    for (int32_t i = 0; i < list.Count(); ++i) {
      int32_t at = -1;
      ASSERT_TRUE(list.Find(list[i], at)) << ToUtf8(list[i]);
      ASSERT_EQ(collate(list[at], list[i]), 0);
      ASSERT_TRUE(at == 0 || collate(list[at - 1], list[i]) < 0) << ToUtf8(list[i]);
    }
  }
}

}  // namespace
}  // namespace vex
