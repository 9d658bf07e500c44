#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "vex/companion/query_list.h"
#include "vex/patterns/reg_exp_utils.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

std::string Utf8(const String& s) { return ToUtf8(s, TInvalidText::Replace); }

std::unique_ptr<TStringList> Lines(std::initializer_list<const char16_t*> lines) {
  auto list = std::make_unique<TStringList>();
  for (const char16_t* line : lines) list->Add(line);
  return list;
}

// Each rule as "search>replacement", with "~" before a regular-expression rule.
std::vector<String> Rules(const TRegExTaskArray& tasks) {
  std::vector<String> rules;
  for (const TRegExTask& t : tasks)
    rules.push_back((t.SystemRep ? u"" : u"~") + t.SubText + u">" + t.Replace);
  return rules;
}
using Expected = std::vector<String>;

TEST(RegExTask, BackslashDecidesTheKind) {
  struct Case {
    const char16_t* sub_text;
    bool plain;
    const char16_t* subject;
    bool matches;
  };
  const Case cases[] = {
      {u"Ch\\d+", false, u"Ch12", true}, {u"Ch1", true, u"Ch12", true},
      {u"a.b", true, u"axb", false},     {u"a.b", true, u"a.b", true},
      {u"a\\.b", false, u"axb", false},  {u"a\\.b", false, u"a.b", true},
      {u"", true, u"anything", false},   {u"(", true, u"f(x)", true},  // plain: no pattern
  };
  for (const Case& c : cases) {
    const TRegExTask task(c.sub_text, u"");
    EXPECT_EQ(task.SystemRep, c.plain) << Utf8(c.sub_text);
    EXPECT_EQ(task.re.has_value(), !c.plain) << Utf8(c.sub_text);
    EXPECT_EQ(task.IsMatching(c.subject), c.matches) << Utf8(c.sub_text);
  }
  EXPECT_THROW(TRegExTask(u"\\d(", u""), ERegExError);
  EXPECT_FALSE(TRegExTask().IsMatching(u"x"));
}

TEST(RegExTask, ReplaceStrReplacesEveryOccurrenceOnce) {
  bool is_match = false;
  EXPECT_EQ(TRegExTask(u".", u"!").ReplaceStr(u"a.b.c", is_match), u"a!b!c");
  EXPECT_TRUE(is_match);
  EXPECT_EQ(TRegExTask(u"a", u"aa").ReplaceStr(u"aXa", is_match),
            u"aaXaa");  // no rescan
  EXPECT_EQ(TRegExTask(u"Ch(\\d+)", u"Channel $1").ReplaceStr(u"Ch1,Ch22", is_match),
            u"Channel 1,Channel 22");
  EXPECT_EQ(TRegExTask(u"ch", u"X").ReplaceStr(u"Ch", is_match),
            u"Ch");  // case-sensitive
  EXPECT_FALSE(is_match);
  EXPECT_EQ(TRegExTask(u"\\d", u"X").ReplaceStr(u"abc", is_match), u"abc");
  EXPECT_FALSE(is_match);
}

TEST(RegExTaskArray, AppliesRulesInOrderAndCountsMatches) {
  const TRegExTaskArray chain{TRegExTask(u"a", u"b"), TRegExTask(u"b", u"c")};
  int32_t count = -1;
  EXPECT_EQ(ReplaceStrWithTaskArray(u"a", chain, &count), u"c");
  EXPECT_EQ(count, 2);
  EXPECT_EQ(ReplaceStrWithTaskArray(u"xyz", chain, &count), u"xyz");
  EXPECT_EQ(count, 0);
  EXPECT_EQ(ReplaceStrWithTaskArray(u"ab", chain), u"cc");
  // An empty text is returned without consulting the rules, even one that
  // matches "".
  const TRegExTaskArray empty_match{TRegExTask(u"x\\d*|^", u"!")};
  EXPECT_EQ(ReplaceStrWithTaskArray(u"", empty_match, &count), u"");
  EXPECT_EQ(count, 0);
  EXPECT_EQ(ReplaceStrWithTaskArray(u"a", empty_match, &count), u"!a");
  EXPECT_EQ(count, 1);
}

TEST(RegExTaskArray, MatchIndexSkipsRulesThatNeverMatch) {
  const TRegExTaskArray tasks{TRegExTask(u"", u"x"), TRegExTask(u"Gate", u""),
                              TRegExTask(u"\\d+$", u""), TRegExTask(u"Beam", u"")};
  EXPECT_EQ(GetMatchIndexByTaskArray(u"Beam 7", tasks), 2);
  EXPECT_EQ(GetMatchIndexByTaskArray(u"Beam", tasks), 3);
  EXPECT_EQ(GetMatchIndexByTaskArray(u"none", tasks), -1);
  EXPECT_EQ(GetMatchIndexByTaskArray(u"Beam", {}), -1);
}

TEST(RegExTaskArray, ReplaceStringsRewritesEveryLine) {
  auto list = Lines({u"Ch1", u"", u"Beam 2", u"Ch10 Ch2"});
  ReplaceStringsWithTaskArray(
      *list, {TRegExTask(u"Ch(\\d+)", u"Channel $1"), TRegExTask(u"Beam", u"Gate")});
  EXPECT_EQ(list->ToStringArray(),
            (TStringDynArray{u"Channel 1", u"", u"Gate 2", u"Channel 10 Channel 2"}));
}

TEST(FillRegExpArray, ReadsCommaSeparatedColumns) {
  const auto lines =
      Lines({u"Ch\\d+,Channel", u"   ", u"Beam,Gate", u"only", u"", u"a,,c", u"x,y,z"});
  const TStringList& list = *lines;
  TRegExTaskArray tasks{TRegExTask(u"stale", u"")};
  FillRegExpArray(list, tasks);  // blank lines are skipped, empty fields kept
  EXPECT_EQ(Rules(tasks), (Expected{u"~Ch\\d+>Channel", u"Beam>Gate", u"only>", u"a>", u"x>y"}));
  FillRegExpArray(list, tasks, 1);
  EXPECT_EQ(Rules(tasks), (Expected{u"Channel>", u"Gate>", u">c", u"y>z"}));
  FillRegExpArray(list, tasks, 0, 2, 2);
  EXPECT_TRUE(tasks.empty());
  FillRegExpArray(list, tasks, 0, 3,
                  1);  // lines 1 and 2: end is a position, not a count
  EXPECT_EQ(Rules(tasks), (Expected{u"Beam>Gate"}));
  FillRegExpArray(list, tasks, -1);
  EXPECT_TRUE(tasks.empty());
  EXPECT_THROW(FillRegExpArray(list, tasks, 0, 8), EListError);
}

TEST(FillRegExpArray, BadPatternKeepsTheRulesBeforeIt) {
  const auto list = Lines({u"a,b", u"\\d(,x", u"c,d"});
  TRegExTaskArray tasks;
  EXPECT_THROW(FillRegExpArray(*list, tasks), ERegExError);
  ASSERT_EQ(tasks.size(), 1u);
  EXPECT_EQ(tasks[0].SubText, u"a");
}

TEST(ImportRegExpArray, ReadsRulesUnderAKeyedList) {
  TQueryList source;
  source.ImportFromStrWithTabs(
      u"Rules\r\n"
      u"\tR1\r\n\t\tSubText=Ch\\d+\r\n\t\tReplace=Channel\r\n"
      u"\tR2\r\n\t\tSubText=Beam\r\n"
      u"\tNoItems\r\n"
      u"\tR1\r\n\t\tReplace=x\r\n\t\tSubText=a=b\r\n"
      u"Other\r\n\tR9\r\n\t\tSubText=q\r\n");
  TRegExTaskArray tasks;
  ImportRegExpArray(source, tasks, u"Rules", u"");
  // An absent value is empty; a value is everything after the first "=".
  EXPECT_EQ(Rules(tasks), (Expected{u"~Ch\\d+>Channel", u"Beam>", u"a=b>x"}));
  ImportRegExpArray(source, tasks, u"Rules", u"R1");
  EXPECT_EQ(Rules(tasks), (Expected{u"~Ch\\d+>Channel", u"a=b>x"}));
  ImportRegExpArray(source, tasks, u"Rules", u"r1");  // keys are case-sensitive
  EXPECT_TRUE(tasks.empty());

  tasks.emplace_back(u"stale", u"");
  ImportRegExpArray(source, tasks, u"Missing", u"");
  EXPECT_TRUE(tasks.empty());

  // Without a list key the top level is read: each section is an entry.
  ImportRegExpArray(source, tasks, u"", u"");
  EXPECT_EQ(Rules(tasks), (Expected{u">", u">"}));
}

TEST(ImportRegExpArray, BadPatternKeepsTheRulesBeforeIt) {
  TQueryList source;
  source.ImportFromStrWithTabs(u"A\r\n\tSubText=x\r\nB\r\n\tSubText=\\d[\r\nC\r\n\tSubText=y\r\n");
  TRegExTaskArray tasks;
  EXPECT_THROW(ImportRegExpArray(source, tasks, u"", u""), ERegExError);
  ASSERT_EQ(tasks.size(), 1u);
  EXPECT_EQ(tasks[0].SubText, u"x");
}

}  // namespace
}  // namespace vex
