#include <gtest/gtest.h>

#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"
#include "vex/text/string_utils.h"

namespace vex {
namespace {

void Fill(TStrings& list, std::initializer_list<const char16_t*> lines) {
  list.Clear();
  for (const char16_t* line : lines) list.Add(line);
}

TStringDynArray Lines(const TStrings& list) { return list.ToStringArray(); }

TEST(RemoveQuotes, TakesOffOneMatchingPairAndReportsIt) {
  struct Case {
    const char16_t* text;
    const char16_t* inside;
    const char16_t* quotes;
  };
  const Case cases[] = {
      {u"\"Pump 3\"", u"Pump 3", u"\"\""},
      {u"'Pump 3'", u"Pump 3", u"''"},
      {u"\u00ABPump 3\u00BB", u"Pump 3", u"\u00AB\u00BB"},
      {u"\u201EPump\u201C", u"Pump", u"\u201E\u201C"},
      {u"\"\"", u"", u"\"\""},
      {u"\"\"x\"\"", u"\"x\"", u"\"\""},                // only one pair goes
      {u"\"Pump 3", u"\"Pump 3", u""},                  // unbalanced
      {u"\u00BBPump\u00AB", u"\u00BBPump\u00AB", u""},  // closing before opening
      {u"\"Pump'", u"\"Pump'", u""},                    // different quotes
      {u"\"", u"\"", u""},                              // one character is no pair
      {u"", u"", u""},
      {u" \"a\" ", u" \"a\" ", u""},  // blanks outside the quotes
  };
  for (const Case& c : cases) {
    String quotes = u"stale";
    EXPECT_EQ(TStringUtils::RemoveQuotes(c.text, &quotes), c.inside) << ToUtf8(c.text);
    EXPECT_EQ(quotes, c.quotes) << ToUtf8(c.text);
  }
  EXPECT_EQ(TStringUtils::RemoveQuotes(u"'a'"), u"a");
}

TEST(QuotedStr, UsesOneCharacterOnBothSidesOrAnOpeningClosingPair) {
  EXPECT_EQ(TStringUtils::QuotedStr(u"it's"), u"'it's'");  // no doubling inside
  EXPECT_EQ(TStringUtils::QuotedStr(u"a", u'"'), u"\"a\"");
  EXPECT_EQ(TStringUtils::QuotedStr(u"a", u"\u00AB\u00BB"), u"\u00ABa\u00BB");
  EXPECT_EQ(TStringUtils::QuotedStr(u"a", u""), u"a");
  EXPECT_EQ(TStringUtils::QuotedStr(u"", u"\"\""), u"\"\"");
}

TEST(QuotedStr, IsUndoneByRemoveQuotes) {
  for (const String quotes : {u"\"\"", u"''", u"\u00AB\u00BB", u"\u201C\u201D"}) {
    for (const String text : {u"", u"x", u"\"in\"", u"\u00ABa\u00BB b"}) {
      String back_quotes;
      EXPECT_EQ(TStringUtils::RemoveQuotes(TStringUtils::QuotedStr(text, quotes), &back_quotes),
                text);
      EXPECT_EQ(back_quotes, quotes);
    }
  }
}

TEST(CheckForLastChar, GivesThePositionAndRemovesOnlyWhenAsked) {
  String s = u"Title:";
  EXPECT_EQ(TStringUtils::CheckForLastChar(s, u':'), 6);
  EXPECT_EQ(s, u"Title:");
  EXPECT_EQ(TStringUtils::CheckForLastChar(s, u':', true), 6);
  EXPECT_EQ(s, u"Title");
  EXPECT_EQ(TStringUtils::CheckForLastChar(s, u':', true), 0);
  EXPECT_EQ(s, u"Title");
  String colon_inside = u"a:b";
  EXPECT_EQ(TStringUtils::CheckForLastChar(colon_inside, u':', true), 0);
  EXPECT_EQ(colon_inside, u"a:b");
  String empty;
  EXPECT_EQ(TStringUtils::CheckForLastChar(empty, u'\0', true), 0);
}

TEST(ApplyFormat, PutsTextAndValueInTheOrderInverseNames) {
  EXPECT_EQ(TStringUtils::ApplyFormat(u"%s %.3d", u"File", 7, true), u"File 007");
  EXPECT_EQ(TStringUtils::ApplyFormat(u"%s%d", u"Ch.", 12, true), u"Ch.12");
  EXPECT_EQ(TStringUtils::ApplyFormat(u"%d  %s", u"items", 3, false), u"3  items");
  EXPECT_EQ(TStringUtils::ApplyFormat(u"%.2d", u"ignored", 5, false), u"05");
  EXPECT_EQ(TStringUtils::ApplyFormat(u"%d", u"", 5, true), u"5");
  // The text is an argument, never a template.
  EXPECT_EQ(TStringUtils::ApplyFormat(u"%s %d", u"100%d", 1, true), u"100%d 1");
}

TEST(CommonCharCount, FollowsTheSharedPrefix) {
  TStringList list;
  EXPECT_EQ(TStringUtils::CommonCharCount(list, 1), 0);
  Fill(list, {u"abc", u"abd"});
  EXPECT_EQ(TStringUtils::CommonCharCount(list, 1), 2);
  EXPECT_EQ(TStringUtils::CommonCharCount(list, 2), 2);
  EXPECT_EQ(TStringUtils::CommonCharCount(list, 3), 0);
  EXPECT_EQ(TStringUtils::CommonCharCount(list, 0), 0);
  Fill(list, {u"abc", u"ab", u"abcd"});  // a shorter later line bounds the prefix
  EXPECT_EQ(TStringUtils::CommonCharCount(list, 1), 2);
  Fill(list, {u"Abc", u"abc"});  // case-sensitive
  EXPECT_EQ(TStringUtils::CommonCharCount(list, 1), 0);
  Fill(list, {u"x"});
  EXPECT_EQ(TStringUtils::CommonCharCount(list, 3), 3);
  EXPECT_EQ(TStringUtils::CommonCharCount(list, 1), 1);
  const String long_line(300, u'z');
  list.Clear();
  list.Add(long_line);
  list.Add(long_line + u"a");
  EXPECT_EQ(TStringUtils::CommonCharCount(list, 1), 255);
  EXPECT_EQ(TStringUtils::CommonCharCount(list, 1, 10), 10);
}

TEST(PackList, WritesCommonPrefixAndTailsInBraces) {
  TStringList source;
  TStringList dest;
  dest.Add(u"old");
  Fill(source, {u"Pump A", u"Pump B", u"Pump"});
  TStringUtils::PackList(source, dest);
  EXPECT_EQ(Lines(dest), (TStringDynArray{u"Pump{ A| B|}"}));
  Fill(source, {u"Gate", u"Beam"});
  TStringUtils::PackList(source, dest);
  EXPECT_EQ(Lines(dest), (TStringDynArray{u"{Gate|Beam}"}));
}

TEST(PackList, CopiesShortListsAndAllowsPackingInPlace) {
  TStringList source;
  TStringList dest;
  dest.Add(u"old");
  Fill(source, {u"only"});
  TStringUtils::PackList(source, dest);
  EXPECT_EQ(Lines(dest), (TStringDynArray{u"only"}));
  source.Clear();
  TStringUtils::PackList(source, dest);
  EXPECT_EQ(dest.Count(), 0);
  Fill(source, {u"ab1", u"ab2"});
  TStringUtils::PackList(source, source);
  EXPECT_EQ(Lines(source), (TStringDynArray{u"ab{1|2}"}));
}

}  // namespace
}  // namespace vex
