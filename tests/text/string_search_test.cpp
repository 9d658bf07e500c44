#include "vex/text/string_search.h"

#include <gtest/gtest.h>

#include <vector>

namespace vex {
namespace {

const TStringSearchOptions kDown{soDown};

std::vector<int32_t> Places(const String& text, const String& what,
                            TStringSearchOptions options = kDown) {
  TSearchInfoArray infos;
  DetectStringPlaces(text, what, options, infos);
  std::vector<int32_t> positions;
  for (const TSearchInfo& i : infos) positions.push_back(i.Index);
  return positions;
}

using V = std::vector<int32_t>;

TEST(StringSearch, MatchesNeverTouch) {
  // The search resumes one character past the end of a match.
  EXPECT_EQ(Places(u"abab", u"ab"), V{1});
  EXPECT_EQ(Places(u"aaaa", u"aa"), V{1});
  EXPECT_EQ(Places(u"ab-ab", u"ab"), (V{1, 4}));
  EXPECT_EQ(Places(u"aaa", u"a"), (V{1, 3}));
  EXPECT_EQ(Places(u"", u"ab"), V{});
  EXPECT_EQ(Places(u"abc", u""), V{});
}

TEST(StringSearch, InfosCarryTheTextAsFound) {
  TSearchInfoArray infos;
  DetectStringPlaces(u"One one ONE", u"one", kDown, infos);
  ASSERT_EQ(infos.size(), 3u);
  EXPECT_EQ(infos[0], (TSearchInfo{1, 3, u"One"}));
  EXPECT_EQ(infos[2], (TSearchInfo{9, 3, u"ONE"}));
  DetectStringPlaces(u"One one ONE", u"one", {soDown, soMatchCase}, infos);
  EXPECT_EQ(infos, (TSearchInfoArray{{5, 3, u"one"}}));
}

TEST(StringSearch, WholeWordAndDirectionOptions) {
  EXPECT_EQ(Places(u"cat cats cat", u"cat", {soDown, soWholeWord}), (V{1, 10}));
  // A backward search from the start of the text finds nothing.
  EXPECT_EQ(Places(u"cat cat", u"cat", {}), V{});
}

// A match points into its text and back to its search, so neither may be a temporary.
template <class Search, class Text>
concept CanMatch = requires(Search&& search, Text&& text) {
  static_cast<Search&&>(search).Match(static_cast<Text&&>(text));
};
static_assert(CanMatch<TStringSearch&, const String&>);
static_assert(!CanMatch<TStringSearch&, String>);
static_assert(!CanMatch<TStringSearch&, const char16_t (&)[5]>);
static_assert(!CanMatch<TStringSearch, const String&>);
template <class Search>
concept CanGetMatch = requires(Search&& search) {
  static_cast<Search&&>(search).GetMatch(0);
};
static_assert(CanGetMatch<const TStringSearch&> && !CanGetMatch<TStringSearch>);

TEST(StringSearch, MatchAndNextMatch) {
  const String text = u"x-ab-ab";
  TStringSearch search(u"ab", kDown);
  TStringMatch m = search.Match(text);
  EXPECT_TRUE(m.Success);
  EXPECT_EQ(m.FOwner, &search);
  EXPECT_EQ(m.Index, 3);
  m = m.NextMatch();
  EXPECT_EQ(m.Index, 6);
  m = m.NextMatch();
  EXPECT_FALSE(m.Success);
  EXPECT_EQ(m.Index, 0);
  EXPECT_EQ(m.Length, 0);
  EXPECT_TRUE(m.Value.empty());
  const TStringMatch after = m.NextMatch();
  EXPECT_FALSE(after.Success);
  EXPECT_EQ(after.FOwner, nullptr);
  EXPECT_EQ(search.GetMatch(4).Index, 6);
  EXPECT_FALSE(search.GetMatch(100).Success);
}

TEST(StringSearch, DetectStringInfosFirstOrLast) {
  TSearchInfo info{7, 7, u"junk"};
  EXPECT_TRUE(DetectStringInfos(u"a1 a2 a3", u"a", kDown, info));
  EXPECT_EQ(info, (TSearchInfo{1, 1, u"a"}));
  EXPECT_TRUE(DetectStringInfos(u"a1 a2 A3", u"a", kDown, info, true));
  EXPECT_EQ(info, (TSearchInfo{7, 1, u"A"}));
  EXPECT_FALSE(DetectStringInfos(u"b", u"a", kDown, info, true));
  EXPECT_EQ(info, TSearchInfo{});

  TSearchInfoArrays all;
  DetectStringInfos(u"ab ba", TStringDynArray{u"a", u"b", u"c"}, 1, kDown, all);
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0].size(), 2u);
  EXPECT_EQ(all[1][1].Index, 4);
  DetectStringInfos(u"ab", TStringDynArray{u"a"}, 5, kDown, all);
  EXPECT_EQ(all.size(), 1u);
}

TEST(StringSearch, ReplaceStrByInfosUsesGivenPositionsAsTheyAre) {
  const TSearchInfoArray infos{{1, 1, u"X"}, {3, 1, u"Y"}};
  EXPECT_EQ(ReplaceStrByInfos(u"a-a", u"", infos, 0), u"X-Y");
  // The second place is not moved by the longer first text, so it hits the "-".
  EXPECT_EQ(ReplaceStrByInfos(u"a-a", u"bb", infos, 0), u"bbbba");
  EXPECT_EQ(ReplaceStrByInfos(u"-a-a", u"", infos, 1), u"-X-Y");
}

TEST(StringSearch, ProcessStrWithProcShiftsForChangedLengths) {
  const auto twice = [](String& s) { s += s; };
  EXPECT_EQ(ProcessStrWithProc(u"a-a", u"a", kDown, twice), u"aa-aa");
  EXPECT_EQ(ProcessStrWithProc(u"xab-ab-ab", u"AB", kDown, [](String& s) { s = u"<" + s + u">"; }),
            u"x<ab>-<ab>-<ab>");
  EXPECT_EQ(ProcessStrWithProc(u"a-b-a", u"a", kDown, [](String& s) { s.clear(); }), u"-b-");
  EXPECT_EQ(ProcessStrWithProc(u"none", u"a", kDown, twice), u"none");
}

TEST(StringSearch, GetTextPosShortensTheStretchAtItsEnd) {
  EXPECT_EQ(GetTextPos(u"B", u"aaab", 1), 4);
  EXPECT_EQ(GetTextPos(u"b", u"aaab", 2), 0);  // the last character is cut off, not the first
  EXPECT_EQ(GetTextPos(u"a", u"aaab", 2), 1);
  EXPECT_EQ(GetTextPos(u"x", u"aaab", 1), 0);
}

TEST(StringSearch, GetTextPosExReturnsZeroBasedOffsets) {
  EXPECT_EQ(GetTextPosEx(u"b", u"abcabcabc", 2, kDown), 4);
  EXPECT_EQ(GetTextPosEx(u"a", u"abcabc", 0, kDown), 0);  // found at 0 ...
  EXPECT_EQ(GetTextPosEx(u"x", u"abcabc", 0, kDown), 0);  // ... and not found look the same
  EXPECT_EQ(GetTextPosEx(u"c", u"abcabcabc", 2, kDown), 2);
  // Only the first Length - Start characters are searched.
  EXPECT_EQ(GetTextPosEx(u"cab", u"abcabcab", 3, kDown), 0);
  EXPECT_EQ(GetTextPosEx(u"a", u"abcabcabcabc", 5, {}), 3);  // backward from offset 5
  EXPECT_EQ(GetTextPosEx(u"a", u"abcabc", 5, {}), 0);        // offset 5 lies beyond the stretch
}

TEST(StringSearch, GetTextPositionsShrinksByAbsolutePosition) {
  TIntegerDynArray positions{99};
  EXPECT_EQ(GetTextPositions(u"ab", u"abababab", positions, 0, kDown), 3);
  EXPECT_EQ(positions, (TIntegerDynArray{1, 3, 5}));
  EXPECT_EQ(GetTextPositions(u"x", u"x.x.x.x.x.x", positions, 0, kDown), 4);  // 9, 11 missed
  EXPECT_EQ(positions, (TIntegerDynArray{1, 3, 5, 7}));
  EXPECT_EQ(GetTextPositions(u"q", u"abc", positions, 0, kDown), 0);
  EXPECT_TRUE(positions.empty());
}

TEST(StringSearch, StuffTextInPositionsShiftsByAcceptedReplacements) {
  String text = u"a-a-a";
  EXPECT_EQ(StuffTextInPositions(text, u"xyz", 1, {1, 3, 5}), 3);
  EXPECT_EQ(text, u"xyz-xyz-xyz");

  text = u"a-a-a";
  EXPECT_EQ(StuffTextInPositions(text, u"xyz", 1, {1, 3, 5},
                                 [](int32_t q) { return q != 5; }),  // 3 shifted to 5: refused
            2);
  EXPECT_EQ(text, u"xyz-a-xyz");

  text = u"abcd";
  // 3 shifted by -2 is 1 and still fits; 4 shifted by -4 falls before the text and stops.
  EXPECT_EQ(StuffTextInPositions(text, u"", 2, {1, 3, 4}), 2);
  EXPECT_EQ(text, u"");
  text = u"abcd";
  EXPECT_EQ(StuffTextInPositions(text, u"Z", 2, {4, 1}), 0);  // first position runs past the end
  EXPECT_EQ(text, u"abcd");
}

}  // namespace
}  // namespace vex
