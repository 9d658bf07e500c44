#include <gtest/gtest.h>

#include <initializer_list>

#include "test_support.h"
#include "vex/patterns/reg_ex_utils.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"

namespace vex {
namespace {

class RegExUtilsTest : public ::testing::Test {
 protected:
  TStringList& List(std::initializer_list<const char16_t*> lines) {
    list_.Clear();
    for (const char16_t* line : lines) list_.Add(line);
    return list_;
  }
  TStringDynArray Lines() const { return list_.ToStringArray(); }

  TStringList list_;
};

// --- prefixes and columns
// --------------------------------------------------------------------

TEST_F(RegExUtilsTest, IsCommonPartNeedsTwoLinesAndTheWholePrefix) {
  EXPECT_FALSE(TRegExUtils::IsCommonPart(List({u"abc"}), 1));
  EXPECT_TRUE(TRegExUtils::IsCommonPart(List({u"abc", u"abd"}), 2));
  EXPECT_FALSE(TRegExUtils::IsCommonPart(List({u"ab", u"abc"}),
                                         3));  // first line too short
  EXPECT_FALSE(TRegExUtils::IsCommonPart(List({u"abc", u"ABc"}), 1));
}

TEST_F(RegExUtilsTest, MostCommonCharCountIsCappedAndRespectsTheMinimum) {
  EXPECT_EQ(TRegExUtils::MostCommonCharCount(List({}), 1), 0);
  EXPECT_EQ(TRegExUtils::MostCommonCharCount(List({u"abc", u"abd"}), 1), 2);
  EXPECT_EQ(TRegExUtils::MostCommonCharCount(List({u"abc", u"abd"}), 3), 0);
  EXPECT_EQ(TRegExUtils::MostCommonCharCount(List({u"x"}), 3), 3);
  // Never above 255, a single line included.
  EXPECT_EQ(TRegExUtils::MostCommonCharCount(List({u"x"}), 300), 255);
  EXPECT_EQ(TRegExUtils::MostCommonCharCount(List({String(300, u'k').c_str()}), 1), 255);
  EXPECT_EQ(TRegExUtils::MostCommonCharCount(List({u"ab", u"ab"}), 300), 0);
  const String shared(300, u'k');
  EXPECT_EQ(
      TRegExUtils::MostCommonCharCount(List({(shared + u"1").c_str(), (shared + u"2").c_str()}), 1),
      255);
}

TEST_F(RegExUtilsTest, DetectIntegerRegionReadsTheRunAtTheColumnInReverseOrder) {
  EXPECT_EQ(TRegExUtils::DetectIntegerRegion(List({u"a1", u"a2", u"a3"}), 0, 3, 2), u"3,2,1");
  // Reversal makes a descending column from 0 a full run: written as its end.
  EXPECT_EQ(TRegExUtils::DetectIntegerRegion(List({u"a2", u"a1", u"a0"}), 0, 3, 2), u"2");
  // Lines without a digit at the column, or with one too long, are skipped; the
  // run must start exactly at the column.
  EXPECT_EQ(TRegExUtils::DetectIntegerRegion(List({u"a12x", u"ab3", u"a", u"a99999999999", u"a07"}),
                                             0, 5, 2),
            u"7,12");
  // Lines past the end of the list are not read.
  EXPECT_EQ(TRegExUtils::DetectIntegerRegion(List({u"a1", u"a2"}), 1, 10, 2), u"2");
}

TEST_F(RegExUtilsTest, GetMatchingCountCountsEveryMatchingLineFromStart) {
  TStringList& list = List({u"Ch1", u"Gate", u"Ch2", u"Ch3"});
  EXPECT_EQ(TRegExUtils::GetMatchingCount(list, 0, u"Ch\\d"), 3);
  EXPECT_EQ(TRegExUtils::GetMatchingCount(list, 4, u"Ch\\d"), 0);
  EXPECT_EQ(TRegExUtils::GetMatchingCount(list, 0, u"ch\\d"),
            0);  // case-sensitive
  EXPECT_THROW(TRegExUtils::GetMatchingCount(list, 0, u"Ch("), ERegExError);
}

// --- single names
// ----------------------------------------------------------------------------

TEST_F(RegExUtilsTest, DetectIntPatternByStrReplacesTheOneNumber) {
  EXPECT_EQ(TRegExUtils::DetectIntPatternByStr(u"Item12"), u"Item\\d+");
  EXPECT_EQ(TRegExUtils::DetectIntPatternByStr(u"A1B"), u"A\\d+B");
  EXPECT_EQ(TRegExUtils::DetectIntPatternByStr(u"abc"), u"abc\\d+");
  EXPECT_EQ(TRegExUtils::DetectIntPatternByStr(u"a.b"),
            u"a.b\\d+");  // not escaped
  EXPECT_EQ(TRegExUtils::DetectIntPatternByStr(u"a1b2"), u"");
}

TEST_F(RegExUtilsTest, ReplaceIntPatternByStrPicksTheCharacterOfTheNumber) {
  int32_t value = 0;
  EXPECT_EQ(TRegExUtils::ReplaceIntPatternByStr(u"Ch3x", u"Ch", u"Channel ", u"ABCDE", &value),
            u"Channel Cx");
  EXPECT_EQ(value, 3);
  EXPECT_EQ(TRegExUtils::ReplaceIntPatternByStr(u"Ch3x", u"Ch", u"Channel ", u"AB", &value),
            u"Channel x");
  EXPECT_EQ(value, 3);
  // Number 0 has no character.
  EXPECT_EQ(TRegExUtils::ReplaceIntPatternByStr(u"Ch0", u"Ch", u"N", u"AB", &value), u"N");
  EXPECT_EQ(value, 0);
  // Without a prefix only the number is replaced.
  EXPECT_EQ(TRegExUtils::ReplaceIntPatternByStr(u"ab2cd", u"", u"#", u"XYZ", &value), u"ab#Ycd");
  EXPECT_EQ(value, 2);
}

TEST_F(RegExUtilsTest, ReplaceIntPatternByStrLeavesOtherTextsAlone) {
  int32_t value = 5;
  EXPECT_EQ(TRegExUtils::ReplaceIntPatternByStr(u"Ch x3", u"Ch", u"N", u"ABC", &value), u"Ch x3");
  EXPECT_EQ(value, -1);
  value = 5;
  EXPECT_EQ(TRegExUtils::ReplaceIntPatternByStr(u"Gate3", u"Ch", u"N", u"ABC", &value), u"Gate3");
  EXPECT_EQ(value, -1);
  EXPECT_EQ(TRegExUtils::ReplaceIntPatternByStr(u"", u"", u"N", u"ABC", &value), u"");
  EXPECT_EQ(value, -1);
}

TEST_F(RegExUtilsTest, ReplaceIntPatternByStrRaisesForAnUnreadableNumber) {
  EXPECT_EQ(test::MessageOf<Exception>(
                [&] { TRegExUtils::ReplaceIntPatternByStr(u"Ch99999999999", u"Ch", u"N", u"AB"); }),
            u"Error in TRegExUtils.ReplaceIntPatternByStr: "
            u"Failed to convert int part");
}

TEST_F(RegExUtilsTest, SplitStrIntoPartsNeedsATextBeforeTheNumber) {
  const TRegEx number = TRegExUtils::NumberPattern();
  String int_part = u"-", right = u"-", left = u"-";
  EXPECT_FALSE(TRegExUtils::SplitStrIntoParts(u"abc", u"", number, int_part, right, left));
  EXPECT_EQ(int_part + right + left, u"---");  // untouched without a match
  EXPECT_FALSE(TRegExUtils::SplitStrIntoParts(u"12abc", u"", number, int_part, right, left));
  EXPECT_EQ(right, u"abc");  // written, but the split does not count
  EXPECT_TRUE(TRegExUtils::SplitStrIntoParts(u"Beam 12 x", u"", number, int_part, right, left));
  EXPECT_EQ(left + u"|" + int_part + u"|" + right, u"Beam |12| x");
}

TEST_F(RegExUtilsTest, SplitStrIntoPartsComparesTheHintsTextBeforeItsNumber) {
  const TRegEx number = TRegExUtils::NumberPattern();
  String int_part, right, left;
  EXPECT_TRUE(TRegExUtils::SplitStrIntoParts(u"Beam 7", u"Beam 1", number, int_part, right, left));
  EXPECT_FALSE(TRegExUtils::SplitStrIntoParts(u"Beam 7", u"Gate 1", number, int_part, right, left));
  EXPECT_FALSE(TRegExUtils::SplitStrIntoParts(u"Beam 7", u"Beam", number, int_part, right, left));
}

TEST_F(RegExUtilsTest, DetectIntPatternPartsWantsExactlyOneNumber) {
  std::optional<TRegEx> regex;
  String left, right;
  EXPECT_TRUE(TRegExUtils::DetectIntPatternParts(u"Beam 12.x", u"Beam 3", left, right, regex));
  ASSERT_TRUE(regex.has_value());
  EXPECT_EQ(regex->Pattern(), u"\\d+");
  EXPECT_EQ(left, u"Beam ");
  EXPECT_EQ(right, u".x");
  EXPECT_FALSE(TRegExUtils::DetectIntPatternParts(u"Beam 12", u"Gate 3", left, right, regex));
  left = u"kept";
  EXPECT_FALSE(TRegExUtils::DetectIntPatternParts(u"a1b2", u"a1", left, right, regex));
  EXPECT_FALSE(TRegExUtils::DetectIntPatternParts(u"ab", u"ab", left, right, regex));
  EXPECT_EQ(left, u"kept");
}

// --- patterns from lists
// ---------------------------------------------------------------------

TEST_F(RegExUtilsTest, DetectRegExPatternKeepsItsPositionsExactly) {
  int32_t char_pos = -1, int_len = -1, matches = -1;
  TStringList& list = List({u"File_A01.txt", u"File_B02.txt", u"File_A01.txt"});
  EXPECT_EQ(TRegExUtils::DetectRegExPattern(list, 0, char_pos, int_len, matches, true),
            u"File_A0\\d+txt");
  EXPECT_EQ(char_pos, 7);
  EXPECT_EQ(int_len, 3);  // two digits, plus one
  EXPECT_EQ(matches,
            0);  // the pattern built this way rarely matches its own lines
  // The digit count comes from line 0 whatever Start is.
  List({u"Ch7x", u"Ch123x"});
  EXPECT_EQ(TRegExUtils::DetectRegExPattern(list_, 1, char_pos, int_len, matches, true),
            u"Ch1\\d+3x");
  EXPECT_EQ(char_pos, 3);
  EXPECT_EQ(int_len, 2);
  EXPECT_EQ(matches, 1);  // "Ch123x" matches "Ch1\d+3x"
}

TEST_F(RegExUtilsTest, DetectRegExPatternWithoutDigitOrPrefix) {
  int32_t char_pos = -1, int_len = -1, matches = -1;
  EXPECT_EQ(
      TRegExUtils::DetectRegExPattern(List({u"abc", u"abd"}), 0, char_pos, int_len, matches, true),
      u"bc");  // from the last common character on
  EXPECT_EQ(char_pos, 0);
  EXPECT_EQ(int_len, 0);
  EXPECT_EQ(matches, 0);
  EXPECT_EQ(
      TRegExUtils::DetectRegExPattern(List({u"abc", u"xbc"}), 0, char_pos, int_len, matches, true),
      u"");
  EXPECT_EQ(TRegExUtils::DetectRegExPattern(List({u"a1"}), 0, char_pos, int_len, matches, true),
            u"");
  EXPECT_EQ(
      TRegExUtils::DetectRegExPattern(List({u"a1", u"a2"}), 2, char_pos, int_len, matches, true),
      u"");
}

TEST_F(RegExUtilsTest, DetectIntegerPatternFillsTheRegionBetweenTheCutPieces) {
  int32_t count = 0;
  EXPECT_EQ(TRegExUtils::DetectIntegerPattern(List({u"Ch1", u"Ch2", u"Ch3"}), 0, count),
            u"Ch{3,2,1}1");
  EXPECT_EQ(count, 3);
  count = 2;
  EXPECT_EQ(TRegExUtils::DetectIntegerPattern(list_, 0, count), u"Ch{2,1}1");
  count = 0;
  EXPECT_EQ(TRegExUtils::DetectIntegerPattern(List({u"abc", u"abd"}), 0, count), u"");
  EXPECT_EQ(count, 0);
}

// --- series
// ----------------------------------------------------------------------------------

TEST_F(RegExUtilsTest, GroupItemsWithRegExCollectsTheSeriesFromStart) {
  const TRegEx number = TRegExUtils::NumberPattern();
  int32_t count = -1;
  EXPECT_EQ(TRegExUtils::GroupItemsWithRegEx(List({u"Ch1", u"Ch2", u"Ch4", u"Ch5"}), number, u"Ch",
                                             u"", 0, count),
            u"1-2,4-5");
  EXPECT_EQ(count, 4);
  EXPECT_EQ(TRegExUtils::GroupItemsWithRegEx(List({u"Ch1", u"Ch2"}), number, u"Ch", u"", 0, count),
            u"2");
  // Sorted before writing; stops at a different suffix.
  EXPECT_EQ(TRegExUtils::GroupItemsWithRegEx(List({u"Ch3", u"Ch1", u"Ch2", u"Ch4x", u"Ch5"}),
                                             number, u"Ch", u"", 0, count),
            u"3");
  EXPECT_EQ(count, 3);
  EXPECT_EQ(TRegExUtils::GroupItemsWithRegEx(list_, number, u"Ch", u"", 3, count), u"");
  EXPECT_EQ(count, 0);
  // The prefix must be the whole text before the number.
  EXPECT_EQ(TRegExUtils::GroupItemsWithRegEx(List({u"Chan1"}), number, u"Ch", u"", 0, count), u"");
  EXPECT_EQ(count, 0);
  // A prefix with a number of its own never fits: the line splits at that
  // number.
  EXPECT_EQ(TRegExUtils::GroupItemsWithRegEx(List({u"Ch1x5"}), number, u"Ch1x", u"", 0, count),
            u"");
  EXPECT_EQ(TRegExUtils::GroupItemsWithRegEx(List({u"5a"}), number, u"", u"a", 0, count), u"");
  EXPECT_EQ(count, 0);
}

TEST_F(RegExUtilsTest, GroupItemsWithRegExRaisesForANumberBeyond32Bits) {
  const TRegEx number = TRegExUtils::NumberPattern();
  int32_t count = 0;
  EXPECT_THROW(TRegExUtils::GroupItemsWithRegEx(List({u"Ch1", u"Ch99999999999"}), number, u"Ch",
                                                u"", 0, count),
               EConvertError);
}

TEST_F(RegExUtilsTest, GroupItemsWithRegExTakesBracketedValuesFromTheIndexFunction) {
  const TRegEx number = TRegExUtils::NumberPattern();
  const TIntStringFunc index = [](const String& item) -> int32_t {
    const size_t open = item.find(u'[');
    return item[open + 1] == u'x' ? -1 : item[open + 1] - u'a';
  };
  int32_t count = 0;
  EXPECT_EQ(
      TRegExUtils::GroupItemsWithRegEx(List({u"P[a]v", u"P[b]v", u"P[c]v", u"P[x]v", u"P[d]v"}),
                                       number, u"P", u"v", 0, count, index),
      u"2");  // base 0 run
  EXPECT_EQ(count, 3);
  EXPECT_EQ(TRegExUtils::GroupItemsWithRegEx(List({u"P[b]v", u"P[c]v"}), number, u"P", u"v", 0,
                                             count, index),
            u"1-2");
}

TEST_F(RegExUtilsTest, GroupListWithRegExStopsAtTheFirstStranger) {
  TStringList dest;
  TRegExUtils::GroupListWithRegEx(List({u"Beam 1.a", u"Beam 2.a", u"Gate", u"Beam 3.a"}), dest,
                                  TRegExUtils::NumberPattern(), u"Beam ", u".a");
  EXPECT_EQ(dest.ToStringArray(), (TStringDynArray{u"Beam {2}"}));  // suffix not written
}

TEST_F(RegExUtilsTest, CompressWithHintGroupsBySampleAndDropsTheRest) {
  TRegExUtils::CompressListWithIntPatternAndHint(List({u"Beam 1", u"Beam 2", u"Gate", u"Beam 7"}),
                                                 u"Beam ", u"Beam 5");
  EXPECT_EQ(Lines(), (TStringDynArray{u"Beam {2}"}));
  TRegExUtils::CompressListWithIntPatternAndHint(List({u"Beam 1", u"Beam 2"}), u"Gate", u"Beam 5");
  EXPECT_EQ(Lines(), (TStringDynArray{u"Beam 1", u"Beam 2"}));  // sample does not split
}

TEST_F(RegExUtilsTest, CompressWithoutHintUsesTheSmartWalk) {
  TRegExUtils::CompressListWithIntPattern(List({u"Gate", u"Beam"}), u"", u"Beam 1");
  EXPECT_EQ(Lines(), (TStringDynArray{u"Gate", u"Beam"}));  // no packing
  TRegExUtils::CompressListWithIntPattern(List({u"Beam 1", u"Beam 2", u"Gate"}), u"Ch", u"Beam 1");
  EXPECT_EQ(Lines(), (TStringDynArray{u"Beam {2}", u"Gate"}));
  // The hint's text before its number must be the sample's.
  TRegExUtils::CompressListWithIntPattern(List({u"Beam 1", u"Beam 2", u"Gate"}), u"Beam",
                                          u"Beam 1");
  EXPECT_EQ(Lines(), (TStringDynArray{u"Beam 1", u"Beam 2", u"Gate"}));
  TRegExUtils::CompressListWithIntPattern(List({u"Beam 1", u"Beam 2", u"Gate"}), u"Beam 0",
                                          u"Beam 01");
  EXPECT_EQ(Lines(), (TStringDynArray{u"Beam {2}"}));
}

TEST_F(RegExUtilsTest, SmartCompressionGroupsEachSeries) {
  TRegExUtils::CompressListWithIntPatternSmart(
      List({u"Beam 1", u"Beam 2", u"Beam 3", u"Gate", u"Beam 7"}));
  EXPECT_EQ(Lines(), (TStringDynArray{u"Beam {3}", u"Gate", u"Beam 7"}));
  TRegExUtils::CompressListWithIntPatternSmart(
      List({u"a1.txt", u"a2.txt", u"a5.txt", u"b2.txt", u"b3.txt", u"1a", u"c007"}));
  EXPECT_EQ(Lines(), (TStringDynArray{u"a{1-2,5}.txt", u"b{2-3}.txt", u"1a", u"c7"}));
}

TEST_F(RegExUtilsTest, SmartCompressionPacksOnlyWhenNothingWasGrouped) {
  TRegExUtils::CompressListWithIntPatternSmart(List({u"Gate A", u"Gate B"}), nullptr, true);
  EXPECT_EQ(Lines(), (TStringDynArray{u"Gate {A|B}"}));
  TRegExUtils::CompressListWithIntPatternSmart(List({u"Gate A"}), nullptr, true);
  EXPECT_EQ(Lines(), (TStringDynArray{u"Gate A"}));
  TRegExUtils::CompressListWithIntPatternSmart(List({u"Ch1", u"Ch2", u"Gate"}), nullptr, true);
  EXPECT_EQ(Lines(), (TStringDynArray{u"Ch{2}", u"Gate"}));
  TRegExUtils::CompressListWithIntPatternSmart(List({}), nullptr, true);
  EXPECT_EQ(list_.Count(), 0);
}

TEST_F(RegExUtilsTest, SmartCompressionGroupsBracketedItemsByIndex) {
  const TIntStringFunc index = [](const String& item) -> int32_t {
    return item[item.find(u'[') + 1] - u'A';
  };
  TRegExUtils::CompressListWithIntPatternSmart(
      List({u"Pump[A]", u"Pump[B]", u"Pump[C]", u"Valve[B]", u"Ch1", u"Ch2"}), index);
  EXPECT_EQ(Lines(), (TStringDynArray{u"Pump[<2>]", u"Valve[1]", u"Ch{2}"}));
}

TEST_F(RegExUtilsTest, SmartCompressionRejectsANegativeIndexInsteadOfLooping) {
  const TIntStringFunc negative = [](const String&) { return -1; };
  List({u"Pump 1", u"Pump[A]"});
  EXPECT_NE(test::MessageOf<EListError>([&] {
              TRegExUtils::CompressListWithIntPatternSmart(list_, negative);
            }).find(u"Pump[A]"),
            String::npos);
  EXPECT_EQ(Lines(), (TStringDynArray{u"Pump 1", u"Pump[A]"}));  // list untouched
}

}  // namespace
}  // namespace vex
