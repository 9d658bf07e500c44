#include <gtest/gtest.h>

#include <vector>

#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"
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

}  // namespace
}  // namespace vex
