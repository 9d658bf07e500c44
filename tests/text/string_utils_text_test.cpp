#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"
#include "vex/text/compare_utils.h"
#include "vex/text/integer_utils.h"
#include "vex/text/string_utils.h"

namespace vex {
namespace {

using S = TStringUtils;

TEST(StringUtilsText, DequoteStrRemovesOnePairOnlyWhenBothEndsCarryIt) {
  struct Case {
    String s, quote, expected;
  };
  const std::vector<Case> cases = {
      {u"'abc'", u"'", u"abc"}, {u"''abc''", u"'", u"'abc'"}, {u"'it''s'", u"'", u"it''s"},
      {u"'abc", u"'", u"'abc"}, {u"abc'", u"'", u"abc'"},     {u"'", u"'", u"'"},
      {u"''", u"'", u""},       {u"\"x\"", u"\"", u"x"},      {u"<<x<<", u"<<", u"x"},
      {u"<<<", u"<<", u"<<<"},  {u"'x'", u"", u"'x'"},        {u"", u"'", u""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(S::DequoteStr(c.s, c.quote), c.expected) << ToUtf8(c.s) << " / " << ToUtf8(c.quote);
  }
}

TEST(StringUtilsText, LastDelimiterExCountsOccurrencesFromTheEnd) {
  EXPECT_EQ(S::LastDelimiterEx(u"./", u"a.b/c.d", 1), 6);
  EXPECT_EQ(S::LastDelimiterEx(u"./", u"a.b/c.d", 2), 4);
  EXPECT_EQ(S::LastDelimiterEx(u"./", u"a.b/c.d", 3), 2);
  EXPECT_EQ(S::LastDelimiterEx(u"./", u"a.b/c.d", 4), 0);
  EXPECT_EQ(S::LastDelimiterEx(u"./", u"a.b/c.d", 0), 0);
  EXPECT_EQ(S::LastDelimiterEx(u"", u"a.b", 1), 0);
}

TEST(StringUtilsText, PrefixAndLastCharacterRemoval) {
  String s = u"*.txt";
  EXPECT_TRUE(S::DeleteFirstChars(s, u"*."));
  EXPECT_EQ(s, u"txt");
  EXPECT_FALSE(S::DeleteFirstChars(s, u"*."));
  EXPECT_FALSE(S::DeleteFirstChars(s, u""));
  EXPECT_FALSE(S::DeleteFirstChars(s, u"txt!"));
  EXPECT_EQ(s, u"txt");

  s = u"a;b;";
  EXPECT_TRUE(S::DeleteLastChar(s, u';'));
  EXPECT_EQ(s, u"a;b");
  EXPECT_FALSE(S::DeleteLastChar(s, u';'));
  s.clear();
  EXPECT_FALSE(S::DeleteLastChar(s, u';'));

  String a = u"1", b = u"2";
  S::SwapStrings(a, b);
  EXPECT_EQ(a + b, u"21");
}

TEST(StringUtilsText, IndexOfStrValuePLooksAtEveryStepthElementIgnoringCase) {
  const TStringDynArray items = {u"Text", u"*.TXT", u"txt", u"*.txt", u"All", u"*.*"};
  EXPECT_EQ(S::IndexOfStrValueP(items, u"*.txt", 1, 2), 1);
  EXPECT_EQ(S::IndexOfStrValueP(items, u"txt", 1, 2), -1);
  EXPECT_EQ(S::IndexOfStrValueP(items, u"TXT"), 2);
  EXPECT_EQ(S::IndexOfStrValueP(items, u"text", -5, 0), 0);
  EXPECT_EQ(S::IndexOfStrValueP(items, u"*.*", 6, 2), -1);
}

TEST(StringUtilsText, DeleteAllCharsAndInsertChars) {
  EXPECT_EQ(S::DeleteAllChars(u"0A 1B-2C", u" -"), u"0A1B2C");
  EXPECT_EQ(S::DeleteAllChars(u"abc", u""), u"abc");
  struct Case {
    String s, chars;
    int32_t count;
    String expected;
  };
  const std::vector<Case> cases = {
      {u"0A1B2C", u" ", 2, u"0A 1B 2C"},
      {u"0A1B2", u" ", 2, u"0A 1B 2"},
      {u"0A", u" ", 2, u"0A"},
      {u"abc", u", ", 1, u"a, b, c"},
      {u"abc", u"", 1, u"abc"},
      {u"abc", u"-", 0, u"abc"},
      {u"", u"-", 1, u""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(S::InsertChars(c.s, c.chars, c.count), c.expected) << ToUtf8(c.s) << c.count;
  }
}

TEST(StringUtilsText, FirstCharacterTestAndTabs) {
  EXPECT_TRUE(S::CheckForFirstChars(u"n0110", u"nt"));
  EXPECT_TRUE(S::CheckForFirstChars(u"t1", u"nt"));
  EXPECT_FALSE(S::CheckForFirstChars(u"0110n", u"nt"));
  EXPECT_FALSE(S::CheckForFirstChars(u"", u"nt"));
  EXPECT_EQ(S::GetTabStr(3), u"\t\t\t");
  EXPECT_EQ(S::GetTabStr(0), u"");
  EXPECT_EQ(S::GetTabStr(-1), u"");
}

TEST(StringUtilsText, ListSearchesCompareTheTextWithEveryLineFromTheStart) {
  TStringList list;
  list.AddStrings(TStringDynArray{u"Beam 1", u"gate", u"BEAM 2", u"Gate 3"});
  EXPECT_EQ(S::IndexInListByParams(u"Beam", list, lctStartsWith, {}), 0);
  EXPECT_EQ(S::IndexInListByParams(u"Beam", list, lctStartsWith, {}, 1), -1);
  EXPECT_EQ(S::IndexInListByParams(u"Beam", list, lctStartsWith, {cmpIgnoreCase}, 1), 2);
  EXPECT_EQ(S::IndexInListByParams(u"GATE", list, lctSameStr, {cmpIgnoreCase}), 1);
  EXPECT_EQ(S::IndexInListByParams(u"3", list, lctEndsWith, {}), 3);
  EXPECT_EQ(S::IndexInListByParams(u"ate", list, lctContains, {}, -4), 1);
  EXPECT_EQ(S::IndexInListByParams(u"Beam", list, lctRegExp, {}), -1);
  EXPECT_EQ(S::IndexInListWithProc(u"x", list, nullptr), -1);
  EXPECT_EQ(
      S::IndexInListWithProc(
          u"gate", list, [](const String& sub, const String& text) { return sub == text ? 1 : 0; }),
      1);
}

TEST(IntegerUtilsText, IntArrayToStringJoinsDecimals) {
  EXPECT_EQ(TIntegerUtils::IntArrayToString({1, -2, 3}, u"|"), u"1|-2|3");
  EXPECT_EQ(TIntegerUtils::IntArrayToString({INT32_MIN}), u"-2147483648");
  EXPECT_EQ(TIntegerUtils::IntArrayToString({}), u"");
  EXPECT_EQ(TIntegerUtils::IntArrayToString({4, 5}), u"4,5");
}

// --- line comparison ----------------------------------------------------------------------

struct CompareCase {
  TLineCompareType type;
  bool ignore_case;
  const char16_t* sub;
  const char16_t* text;
  int32_t expected;
};

TEST(CompareUtils, AssignedFunctionsFollowTypeAndCase) {
  const CompareCase cases[] = {
      {lctSameStr, false, u"abc", u"abc", 1},   {lctSameStr, false, u"abc", u"ABC", 0},
      {lctSameStr, true, u"abc", u"ABC", 1},    {lctSameStr, true, u"abc", u"abcd", 0},
      {lctStartsWith, false, u"ab", u"abc", 1}, {lctStartsWith, false, u"AB", u"abc", 0},
      {lctStartsWith, true, u"AB", u"abc", 1},  {lctStartsWith, true, u"abcd", u"abc", 0},
      {lctStartsWith, false, u"", u"abc", 1},   {lctEndsWith, false, u"bc", u"abc", 1},
      {lctEndsWith, false, u"BC", u"abc", 0},   {lctEndsWith, true, u"BC", u"abc", 1},
      {lctEndsWith, true, u"zabc", u"abc", 0},  {lctContains, false, u"b", u"abcb", 2},
      {lctContains, false, u"B", u"abcb", 0},   {lctContains, true, u"CB", u"abcb", 3},
      {lctContains, false, u"", u"abc", 0},
  };
  for (const CompareCase& c : cases) {
    TGetPosFunc f;
    TCompareUtils::AssignPosFunc(f, c.type, c.ignore_case);
    ASSERT_TRUE(f);
    EXPECT_EQ(f(c.sub, c.text), c.expected)
        << int(c.type) << " " << c.ignore_case << " " << int(c.sub[0]);
  }
}

TEST(CompareUtils, CaseIsFoldedForAsciiOnly) {
  EXPECT_EQ(TCompareUtils::AnsiPosNoCase(u"ABC", u"xabcx"), 2);
  EXPECT_EQ(TCompareUtils::AnsiPosNoCase(u"ÄB", u"xäbx"), 0);
  EXPECT_EQ(TCompareUtils::SameTextInt(u"Привет", u"привет"), 0);
  EXPECT_EQ(TCompareUtils::StartsWithTextInt(u"É", u"é"), 0);
}

TEST(CompareUtils, RegExpLeavesTheFunctionEmpty) {
  TGetPosFunc f = &TCompareUtils::SameStrInt;
  TCompareUtils::AssignPosFunc(f, lctRegExp, true);
  EXPECT_FALSE(f);
  EXPECT_FALSE(TCompareUtils::IntCompareFunc(lctRegExp, {cmpIgnoreCase}));
}

TEST(CompareUtils, IntCompareFuncTakesCaseFromOptionsAndIgnoresWholeWords) {
  EXPECT_EQ(TCompareUtils::IntCompareFunc(lctSameStr, {cmpIgnoreCase})(u"A", u"a"), 1);
  EXPECT_EQ(TCompareUtils::IntCompareFunc(lctSameStr, {})(u"A", u"a"), 0);
  EXPECT_EQ(TCompareUtils::IntCompareFunc(lctContains, {cmpWholeWords})(u"at", u"cats"), 2);
}

// --- integer groups -------------------------------------------------------------------------

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
