#include "vex/text/compare_utils.h"

#include <gtest/gtest.h>

namespace vex {
namespace {

struct Case {
  TLineCompareType type;
  bool ignore_case;
  const char16_t* sub;
  const char16_t* text;
  int32_t expected;
};

TEST(CompareUtils, AssignedFunctionsFollowTypeAndCase) {
  const Case cases[] = {
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
  for (const Case& c : cases) {
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

}  // namespace
}  // namespace vex
