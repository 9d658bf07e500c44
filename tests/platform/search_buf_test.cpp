#include "vex/platform/search_buf.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "vex/platform/sysutils.h"

namespace vex {
namespace {

// Offset of the match, -1 when none.
int32_t Find(const String& text, const String& what, TStringSearchOptions options,
             int32_t sel_start = 0, int32_t sel_length = 0) {
  const Char* p = SearchBuf(text.data(), Length(text), sel_start, sel_length, what, options);
  return p == nullptr ? -1 : static_cast<int32_t>(p - text.data());
}

TEST(SearchBuf, ForwardStartsPastTheSelection) {
  const String t = u"one two one two";
  EXPECT_EQ(Find(t, u"one", {soDown, soMatchCase}), 0);
  EXPECT_EQ(Find(t, u"one", {soDown, soMatchCase}, 0, 1), 8);
  EXPECT_EQ(Find(t, u"one", {soDown, soMatchCase}, 8, 1), -1);
  EXPECT_EQ(Find(t, u"two", {soDown, soMatchCase}, 13, 0), -1);  // would run past the end
}

TEST(SearchBuf, BackwardFindsTheLastMatchEndingBeforeTheSelection) {
  const String t = u"one two one two";
  EXPECT_EQ(Find(t, u"one", {soMatchCase}, 15), 8);
  EXPECT_EQ(Find(t, u"one", {soMatchCase}, 10), 0);  // "on" of the second ends after 10
  EXPECT_EQ(Find(t, u"one", {soMatchCase}, 11), 8);
  EXPECT_EQ(Find(t, u"one", {soMatchCase}, 0), -1);
  EXPECT_EQ(Find(t, u"one", {soMatchCase}, 2), -1);
}

TEST(SearchBuf, EmptyInputsAndBadStartsFindNothing) {
  const String t = u"abc";
  EXPECT_EQ(Find(t, u"", {soDown}), -1);
  EXPECT_EQ(Find(u"", u"a", {soDown}), -1);
  EXPECT_EQ(Find(t, u"abcd", {soDown}), -1);
  EXPECT_EQ(Find(t, u"a", {soDown}, -1, 0), -1);
  EXPECT_EQ(Find(t, u"a", {soDown}, 5, 0), -1);
  EXPECT_EQ(Find(t, u"c", {}, 100), -1);
  EXPECT_EQ(SearchBuf(nullptr, 3, 0, 0, u"a", {soDown}), nullptr);
}

TEST(SearchBuf, StaysInsideTheGivenLength) {
  const String t = u"abcabc";
  EXPECT_EQ(SearchBuf(t.data(), 5, 1, 0, u"abc", {soDown}), nullptr);
  EXPECT_EQ(SearchBuf(t.data(), 5, 5, 0, u"c", {}), t.data() + 2);
}

TEST(SearchBuf, CaseInsensitiveFoldsUnicodeLetters) {
  EXPECT_EQ(Find(u"xxПРИВЕТ", u"привет", {soDown}), 2);
  EXPECT_EQ(Find(u"xxПРИВЕТ", u"привет", {soDown, soMatchCase}), -1);
  EXPECT_EQ(Find(u"Straße", u"STRASSE", {soDown}), -1);  // one-to-one mapping only
  // Deseret capital and small letter (outside the BMP) match as one code point.
  EXPECT_EQ(Find(u"a\U00010400b", u"\U00010428B", {soDown}), 1);
  EXPECT_EQ(Find(u"a\U00010400b", u"\U00010428B", {soDown, soMatchCase}), -1);
}

TEST(SearchBuf, WholeWordRejectsLettersAndDigitsNextToTheMatch) {
  const TStringSearchOptions ww{soDown, soWholeWord, soMatchCase};
  EXPECT_EQ(Find(u"cat", u"cat", ww), 0);
  EXPECT_EQ(Find(u"cats cat", u"cat", ww), 5);
  EXPECT_EQ(Find(u"1cat cat1 (cat)", u"cat", ww), 11);
  EXPECT_EQ(Find(u"_cat_", u"cat", ww), 1);           // "_" is neither letter nor digit
  EXPECT_EQ(Find(u"жcat cat", u"cat", ww), 5);        // Cyrillic letters count
  EXPECT_EQ(Find(u"\U0001D400cat", u"cat", ww), -1);  // so does a letter outside the BMP
  EXPECT_EQ(Find(u"٣cat", u"cat", ww), -1);           // and an Arabic-Indic digit
  // The rule looks only at the neighbours, even when the search string is no word itself.
  EXPECT_EQ(Find(u"a-b", u"-", ww), -1);
  EXPECT_EQ(Find(u"a-b - c", u"-", ww), 4);
  EXPECT_EQ(Find(u"cat cat", u"cat", {soWholeWord, soMatchCase}, 7), 4);
  EXPECT_EQ(Find(u"cat catx", u"cat", {soWholeWord, soMatchCase}, 8), 0);
}

TEST(SearchBuf, WholeWordSeesOnlyTheBuffer) {
  const String t = u"xcat";
  EXPECT_EQ(SearchBuf(t.data() + 1, 3, 0, 0, u"cat", {soDown, soWholeWord}), t.data() + 1);
  EXPECT_EQ(SearchBuf(t.data(), 4, 1, 0, u"cat", {soDown, soWholeWord}), nullptr);
}

// The skip-table search must find exactly what a plain scan finds.
TEST(SearchBuf, AgreesWithAPlainScanOnRandomText) {
  std::mt19937 rng(7);
  const std::vector<String> alphabet{u"a", u"b",      u"A",      u"B",          u" ",
                                     u"-", u"\u00e9", u"\u00c9", u"\U00010428", u"\U00010400"};
  auto random_text = [&](int n) {
    String s;
    for (int i = 0; i < n; ++i) s += alphabet[rng() % alphabet.size()];
    return s;
  };
  for (int round = 0; round < 3000; ++round) {
    const String text = random_text(static_cast<int>(rng() % 40));
    const String what = random_text(1 + static_cast<int>(rng() % 4));
    const bool match_case = rng() % 2 == 0;
    const TStringSearchOptions options =
        match_case ? TStringSearchOptions{soDown, soMatchCase} : TStringSearchOptions{soDown};
    const String t = match_case ? text : AnsiUpperCase(text);
    const String w = match_case ? what : AnsiUpperCase(what);
    int32_t expected = -1;
    if (t.size() == text.size() && w.size() == what.size()) {
      const size_t at = t.find(w);
      if (at != String::npos) expected = static_cast<int32_t>(at);
    } else {
      continue;
    }
    ASSERT_EQ(Find(text, what, options), expected) << round;
  }
}

// Long buffers take the vectorised path; it must agree with a plain scan as well, including
// letters that several characters upper-case to (i and dotless i, s and long s, the Dz forms).
TEST(SearchBuf, LongBuffersAgreeWithAPlainScan) {
  std::mt19937 rng(11);
  const std::vector<String> alphabet{u"a", u"I",          u"i",          u"\u0131", u"s", u"\u017f",
                                     u"S", u"\u01c4",     u"\u01c5",     u"\u01c6", u"k", u"\u212a",
                                     u"-", u"\U00010428", u"\U00010400", u"x",      u"y", u"z"};
  for (int round = 0; round < 40; ++round) {
    String text;
    while (text.size() < 3000) text += alphabet[rng() % alphabet.size()];
    String what;
    const int n = 1 + static_cast<int>(rng() % 4);
    for (int k = 0; k < n; ++k) what += alphabet[rng() % alphabet.size()];
    for (const bool match_case : {true, false}) {
      const TStringSearchOptions options =
          match_case ? TStringSearchOptions{soDown, soMatchCase} : TStringSearchOptions{soDown};
      const String t = match_case ? text : AnsiUpperCase(text);
      const String w = match_case ? what : AnsiUpperCase(what);
      ASSERT_EQ(t.size(), text.size());
      for (int32_t from = 0; from < Length(text); from += 1 + static_cast<int32_t>(rng() % 200)) {
        const size_t at = t.find(w, static_cast<size_t>(from));
        const int32_t expected = at == String::npos ? -1 : static_cast<int32_t>(at);
        ASSERT_EQ(Find(text, what, options, from), expected) << round << " " << from;
      }
    }
  }
}

}  // namespace
}  // namespace vex
