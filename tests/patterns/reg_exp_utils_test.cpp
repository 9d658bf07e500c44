#include "vex/patterns/reg_exp_utils.h"

#include <gtest/gtest.h>

#include <vector>

#include "vex/platform/exceptions.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

std::string Utf8(const String& s) { return ToUtf8(s, TInvalidText::Replace); }

// --- Yes/no tests ---------------------------------------------------------------------------

TEST(RegExpUtilsFormats, IsNumberFormatNeedsPercentOptionalPrecisionAndD) {
  const std::pair<const char16_t*, bool> cases[] = {
      {u"%.3d", true}, {u"Item %.2d of", true}, {u"%5d", false},
      {u"%s", false},  {u"%.d", false},         {u"%D", false},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(IsNumberFormat(text), expected) << Utf8(text);
  }
}

TEST(RegExpUtilsFormats, IsTwoNumbersFormatSplicesTheDelimiterAsPattern) {
  EXPECT_TRUE(IsTwoNumbersFormat(u"Beam %d-%.2d", u"-"));
  EXPECT_FALSE(IsTwoNumbersFormat(u"%d-%d", u"_"));
  EXPECT_FALSE(IsTwoNumbersFormat(u"%d", u""));
  // "." is pattern syntax: any one character between the placeholders passes.
  EXPECT_TRUE(IsTwoNumbersFormat(u"%dx%d", u"."));
  EXPECT_THROW(IsTwoNumbersFormat(u"%d(%d", u"("), ERegExError);
}

TEST(RegExpUtilsFormats, IsFloatNumberIsAContainsTest) {
  const std::pair<const char16_t*, bool> cases[] = {
      {u"abc1", true}, {u"-1.5e3", true}, {u"1.", true},
      {u"abc", false}, {u".e", false},   {u"\u0661", false},  // Arabic one
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(IsFloatNumber(text), expected) << Utf8(text);
  }
}

// --- Places ---------------------------------------------------------------------------------

TEST(RegExpUtilsPlaces, DetectPatternInfoFillsOrZeroes) {
  TRegExInfo info{7, 7, u"old"};
  EXPECT_TRUE(DetectPatternInfo(u"ab12cd", u"\\d+", info));
  EXPECT_EQ(info, (TRegExInfo{3, 2, u"12"}));
  EXPECT_FALSE(DetectPatternInfo(u"abcd", u"\\d+", info));
  EXPECT_EQ(info, TRegExInfo());
  EXPECT_TRUE(DetectPatternInfoPtr(u"a1", u"\\d"));
  EXPECT_FALSE(DetectPatternInfoPtr(u"a1", u"x", nullptr));
  EXPECT_THROW(DetectPatternInfoPtr(u"a1", u"[", nullptr), ERegExError);
}

TEST(RegExpUtilsPlaces, DetectPatternInfosCountsOnlyNonEmptyMatches) {
  TRegExInfoArray infos{TRegExInfo{1, 1, u"stale"}};
  EXPECT_EQ(DetectPatternInfos(u"abc", {}, infos), 0);
  EXPECT_TRUE(infos.empty());

  EXPECT_EQ(DetectPatternInfos(u"abc 12", {u"x*", u"\\d+", u"z", u"b"}, infos), 2);
  ASSERT_EQ(infos.size(), 4u);
  EXPECT_EQ(infos[0], (TRegExInfo{1, 0, u""}));  // matched, but empty: not counted
  EXPECT_EQ(infos[1], (TRegExInfo{5, 2, u"12"}));
  EXPECT_EQ(infos[2], TRegExInfo());
  EXPECT_EQ(infos[3], (TRegExInfo{2, 1, u"b"}));
}

TEST(RegExpUtilsPlaces, DetectPatternPlacesReplacesTheArray) {
  TRegExInfoArray places{TRegExInfo{9, 9, u"stale"}};
  DetectPatternPlaces(u"a1b22c333", u"\\d+", places);
  EXPECT_EQ(places, (TRegExInfoArray{{2, 1, u"1"}, {4, 2, u"22"}, {7, 3, u"333"}}));
  DetectPatternPlaces(u"abc", u"\\d+", places);
  EXPECT_TRUE(places.empty());
}

TEST(RegExpUtilsPlaces, ProcessPatternPlacesReusesOneRecordAndIgnoresItsChanges) {
  std::vector<TRegExInfo> seen;
  std::vector<PRegExInfo> pointers;
  ProcessPatternPlaces(u"1 22 333", u"\\d+", [&](PRegExInfo info) {
    seen.push_back(*info);
    pointers.push_back(info);
    info->Index = 100;  // has no effect on the walk
    info->Value = u"changed";
  });
  EXPECT_EQ(seen, (std::vector<TRegExInfo>{{1, 1, u"1"}, {3, 2, u"22"}, {6, 3, u"333"}}));
  EXPECT_EQ(pointers[0], pointers[2]);
  EXPECT_NO_THROW(ProcessPatternPlaces(u"1", u"\\d", nullptr));
  EXPECT_THROW(ProcessPatternPlaces(u"1", u"(", nullptr), ERegExError);
}

TEST(RegExpUtilsPlaces, DetectFloatPlacesReadsCommasAsPoints) {
  TRegExInfoArray places;
  DetectFloatPlaces(u"1,5 and 2", places);
  EXPECT_EQ(places, (TRegExInfoArray{{1, 3, u"1.5"}, {9, 1, u"2"}}));
  DetectFloatPlaces(u"-2.5e+3,x", places);
  EXPECT_EQ(places, (TRegExInfoArray{{1, 7, u"-2.5e+3"}}));
}

// --- One number -----------------------------------------------------------------------------

struct OneNumberCase {
  const char16_t* text;
  Char ch;
  const char16_t* result;
  int32_t value;
  const char16_t* format;
};

TEST(RegExpUtilsOneNumber, ReplacesTheOnlyRunByItsFormatOrACharacter) {
  const OneNumberCase cases[] = {
      {u"File_007.txt", 0, u"File_%.3d.txt", 7, u"%.3d"},
      {u"0", 0, u"%.1d", 0, u"%.1d"},
      {u"a0000000000012", 0, u"a%.13d", 12, u"%.13d"},  // leading zeros do not overflow
      {u"File_007.txt", u'*', u"File_*.txt", 7, u"%.3d"},
      {u"\u041A\u0430\u043D\u0430\u043B 12", u'#', u"\u041A\u0430\u043D\u0430\u043B #", 12,
       u"%d"},
  };
  for (const OneNumberCase& c : cases) {
    int32_t value = -1;
    String format = u"unset";
    EXPECT_EQ(DetectOneNumberFormat(c.text, &value, &format, c.ch), c.result) << Utf8(c.text);
    EXPECT_EQ(value, c.value) << Utf8(c.text);
    EXPECT_EQ(format, c.format) << Utf8(c.text);
  }
  EXPECT_EQ(DetectOneNumberFormat(u"Track 5"), u"Track %d");
}

TEST(RegExpUtilsOneNumber, NoneOrSeveralRunsGiveNothingAndWriteNothing) {
  for (const char16_t* text : {u"File_007_v2.txt", u"no digits", u"", u"\u0661\u0662"}) {
    int32_t value = -1;
    String format = u"unset";
    EXPECT_EQ(DetectOneNumberFormat(text, &value, &format, u'*'), u"") << Utf8(text);
    EXPECT_EQ(value, -1);
    EXPECT_EQ(format, u"unset");
  }
}

TEST(RegExpUtilsOneNumber, RunBeyondThirtyTwoBitsRaisesBeforeWriting) {
  int32_t value = -1;
  String format = u"unset";
  EXPECT_THROW(DetectOneNumberFormat(u"x99999999999", &value, &format), EConvertError);
  EXPECT_THROW(DetectOneNumberFormat(u"2147483648"), EConvertError);
  EXPECT_EQ(value, -1);
  EXPECT_EQ(format, u"unset");
}

// --- End number -----------------------------------------------------------------------------

struct EndNumberCase {
  const char16_t* text;
  const char16_t* result;
  const char16_t* prefix;
  int32_t value;
  bool is_end;
};

TEST(RegExpUtilsEndNumber, BuildsTextAndNumberTemplate) {
  const EndNumberCase cases[] = {
      {u"Item 7", u"%s %d", u"Item", 7, true},
      {u"Item   7", u"%s   %d", u"Item", 7, true},  // the count of blanks is kept
      {u"Ch.12", u"%s%d", u"Ch.", 12, true},
      {u"Port\t3", u"%s %d", u"Port", 3, true},  // any whitespace becomes blanks
      {u"A \r\n9", u"%s   %d", u"A", 9, true},
      {u"007", u"%.3d", u"", 7, false},
      {u"  5", u"%d", u"", 5, true},  // only whitespace before: no text part
  };
  for (const EndNumberCase& c : cases) {
    String prefix = u"unset";
    int32_t value = -1;
    bool is_end = !c.is_end;
    EXPECT_EQ(DetectEndNumberFormat(c.text, &prefix, &value, &is_end), c.result) << Utf8(c.text);
    EXPECT_EQ(prefix, c.prefix) << Utf8(c.text);
    EXPECT_EQ(value, c.value) << Utf8(c.text);
    EXPECT_EQ(is_end, c.is_end) << Utf8(c.text);
  }
}

TEST(RegExpUtilsEndNumber, NumberMustBeTheOnlyRunAndEndTheText) {
  for (const char16_t* text : {u"Item 7a", u"A1 B2", u"Item", u"Item 7 "}) {
    String prefix = u"unset";
    int32_t value = -1;
    bool is_end = false;
    EXPECT_EQ(DetectEndNumberFormat(text, &prefix, &value, &is_end), u"") << Utf8(text);
    EXPECT_EQ(prefix, u"unset");
    EXPECT_EQ(value, -1);
  }
  String prefix = u"unset";
  EXPECT_THROW(DetectEndNumberFormat(u"Item 99999999999", &prefix), EConvertError);
  EXPECT_EQ(prefix, u"unset");
}

// --- Two numbers ----------------------------------------------------------------------------

TEST(RegExpUtilsTwoNumbers, RemovesOrReplacesThePair) {
  String value = u"unset";
  int32_t index = -1;
  EXPECT_EQ(DetectTwoNumbersFormat(u"Beam 3-7", &value, &index), u"Beam");
  EXPECT_EQ(value, u" 3-7");
  EXPECT_EQ(index, 5);
  EXPECT_EQ(DetectTwoNumbersFormat(u"Beam 3-7", nullptr, nullptr, u'#'), u"Beam#");
  EXPECT_EQ(DetectTwoNumbersFormat(u"File_007_v2.txt", &value, &index), u"File_.txt");
  EXPECT_EQ(value, u"007_v2");  // no whitespace before the first run, none taken
  EXPECT_EQ(index, 6);
  EXPECT_EQ(DetectTwoNumbersFormat(u"1 to 2 end", &value, &index), u" end");
  EXPECT_EQ(value, u"1 to 2");
  EXPECT_EQ(index, 1);
}

TEST(RegExpUtilsTwoNumbers, OtherCountsGiveNothing) {
  for (const char16_t* text : {u"Beam 3", u"1-2-3", u"none", u""}) {
    String value = u"unset";
    int32_t index = -1;
    EXPECT_EQ(DetectTwoNumbersFormat(text, &value, &index, u'#'), u"") << Utf8(text);
    EXPECT_EQ(value, u"unset");
    EXPECT_EQ(index, -1);
  }
}

// --- Split, join, process -------------------------------------------------------------------

TEST(RegExpUtilsSplit, TokensAreOneMoreThanDelimitersAndJoinRestores) {
  struct Case {
    const char16_t* text;
    const char16_t* pattern;
    TStringDynArray tokens;
    TStringDynArray delims;
  };
  const Case cases[] = {
      {u"12ab", u"\\d+", {u"", u"ab"}, {u"12"}},
      {u"a1b2", u"\\d", {u"a", u"b", u""}, {u"1", u"2"}},
      {u"", u"\\d", {u""}, {}},
      {u"ab", u"x*", {u"", u"a", u"b", u""}, {u"", u"", u""}},
      {u"a,,b", u",", {u"a", u"", u"b"}, {u",", u","}},
  };
  for (const Case& c : cases) {
    TSplitInfo split{{u"stale"}, {u"stale"}};
    SplitWithPattern(c.text, c.pattern, split);
    EXPECT_EQ(split.Tokens, c.tokens) << Utf8(c.text) << " / " << Utf8(c.pattern);
    EXPECT_EQ(split.Delims, c.delims) << Utf8(c.text) << " / " << Utf8(c.pattern);
    EXPECT_EQ(JoinTokensWithDelims(split), c.text);
  }
  TSplitInfo split;
  EXPECT_THROW(SplitWithPattern(u"a", u"(?", split), ERegExError);
}

TEST(RegExpUtilsSplit, JoinFollowsTheLastTokenRule) {
  EXPECT_EQ(JoinTokensWithDelims({{u"a"}, {}}), u"a");
  // Extra tokens in the middle are not written; the last token always is.
  EXPECT_EQ(JoinTokensWithDelims({{u"a", u"b", u"c"}, {u"-"}}), u"a-c");
  EXPECT_EQ(JoinTokensWithDelims({{u"a", u"b"}, {u"-", u"+"}}), u"a-b+b");
  EXPECT_THROW(JoinTokensWithDelims({{}, {}}), ERangeError);
  EXPECT_THROW(JoinTokensWithDelims({{u"a"}, {u"-", u"+"}}), ERangeError);
}

TEST(RegExpUtilsProcess, CallbackSeesEveryTokenIncludingEmptyOnes) {
  std::vector<String> seen;
  const String result = ProcessWithPattern(u"1ab2", u"\\d", [&](String* token) {
    seen.push_back(*token);
    *token = u"<" + *token + u">";
  });
  EXPECT_EQ(seen, (std::vector<String>{u"", u"ab", u""}));
  EXPECT_EQ(result, u"<>1<ab>2<>");
  EXPECT_EQ(ProcessWithPattern(u"abc", u"\\d", [](String* t) { *t = UpperCase(*t); }), u"ABC");
  EXPECT_EQ(ProcessWithPattern(u"a1", u"\\d", nullptr), u"a1");
}

TEST(RegExpUtilsProcess, DigitAndLatinDelimiters) {
  auto upper = [](String* t) { *t = AnsiUpperCase(*t); };
  auto bracket = [](String* t) { *t = u"[" + *t + u"]"; };
  EXPECT_EQ(ProcessWithDigitDelims(u"ab 12 cd", upper), u"AB 12 CD");
  EXPECT_EQ(ProcessWithDigitDelims(u"a,b*c@d$e%f&g!h:i#j\\k", bracket),
            u"[a],[b]*[c]@[d]$[e]%[f]&[g]![h]:[i]#[j]\\[k]");
  EXPECT_EQ(ProcessWithDigitDelims(u"x.y", bracket), u"[x.y]");
  EXPECT_EQ(ProcessWithLatDigitDelims(u"Beam 12 \u041B\u0443\u0447", upper),
            u"Beam 12 \u041B\u0423\u0427");
  EXPECT_EQ(ProcessWithLatDigitDelims(u"Beam_1 \u043B\u0443\u0447.", bracket),
            u"[]Beam_1 [\u043B\u0443\u0447.]");
}

}  // namespace
}  // namespace vex
