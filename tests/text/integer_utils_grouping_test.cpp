#include <climits>

#include <gtest/gtest.h>

#include "vex/text/integer_utils.h"

namespace vex {
namespace {

struct GroupCase {
  TIntegerDynArray values;
  int32_t base;
  const char16_t* expected;
};

class GroupIntegersTest : public ::testing::TestWithParam<GroupCase> {};

TEST_P(GroupIntegersTest, WritesRunsAndSingles) {
  const GroupCase& c = GetParam();
  EXPECT_EQ(TIntegerUtils::GroupIntegers(c.values, c.base), String(c.expected));
}

INSTANTIATE_TEST_SUITE_P(
    Notation, GroupIntegersTest,
    ::testing::Values(GroupCase{{}, 0, u""}, GroupCase{{2, 3, 5}, 0, u"2-3,5"},
                      GroupCase{{1, 2, 4, 5}, 1, u"1-2,4-5"},  // not one run: no shortening
                      GroupCase{{1, 2, 3, 4}, 1, u"4"},        // one run from the base
                      GroupCase{{0, 1, 2, 3, 4, 5, 6, 7}, 0, u"7"},
                      GroupCase{{1, 2, 3}, 0, u"1-3"},  // one run, but not from the base
                      GroupCase{{1}, 1, u"1"},          // a lone value is always written
                      GroupCase{{0}, 0, u"0"},
                      GroupCase{{3, 2, 1}, 0, u"3,2,1"},  // order given; descending is no run
                      GroupCase{{5, 5, 6}, 0, u"5,5-6"},  // a repeat breaks the run
                      GroupCase{{-3, -2, -1, 4}, 0, u"-3--1,4"}, GroupCase{{1, 3, 5}, 1, u"1,3,5"},
                      GroupCase{{7, 8, 9, 1, 2}, 7, u"7-9,1-2"}));

TEST(GroupIntegers, LargestValueHasNoSuccessor) {
  EXPECT_EQ(TIntegerUtils::GroupIntegers({INT_MAX, INT_MIN}), u"2147483647,-2147483648");
  EXPECT_EQ(TIntegerUtils::GroupIntegers({INT_MAX - 1, INT_MAX}), u"2147483646-2147483647");
}

TEST(GroupIntegers, JoinsPiecesWithTheGivenDelimiter) {
  EXPECT_EQ(TIntegerUtils::GroupIntegers({1, 2, 4, 6, 7}, 0, u"; "), u"1-2; 4; 6-7");
}

}  // namespace
}  // namespace vex
