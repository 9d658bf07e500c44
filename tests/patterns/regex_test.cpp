#include "vex/patterns/regex.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "test_support.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

std::string Utf8(const String& s) { return ToUtf8(s, TInvalidText::Replace); }

// A match refers to its subject: the calls that return matches refuse a temporary subject.
template <class Subject>
concept CanMatch = requires(const TRegEx& re, Subject&& s) {
  re.Match(static_cast<Subject&&>(s));
};
template <class Subject>
concept CanMatchAll = requires(const TRegEx& re, Subject&& s) {
  re.Matches(static_cast<Subject&&>(s));
};
static_assert(CanMatch<const String&> && CanMatchAll<String&>);
static_assert(!CanMatch<String> && !CanMatch<const char16_t (&)[3]>);
static_assert(!CanMatchAll<String> && !CanMatchAll<const char16_t (&)[3]>);

// Index:Length:Value of every match of the NextMatch walk.
std::vector<std::string> Walk(const TRegEx& re, const String& subject) {
  std::vector<std::string> out;
  for (TRegExMatch m = re.Match(subject); m.Success(); m = re.NextMatch(m)) {
    out.push_back(std::to_string(m.Index()) + ":" + std::to_string(m.Length()) + ":" +
                  Utf8(m.Value()));
  }
  return out;
}

TEST(RegExMatch, ReportsOneBasedIndexLengthAndValue) {
  TRegEx re(u"\\d+");
  String s = u"ab12cd345";
  TRegExMatch m = re.Match(s);
  ASSERT_TRUE(m.Success());
  EXPECT_EQ(m.Index(), 3);
  EXPECT_EQ(m.Length(), 2);
  EXPECT_EQ(m.Value(), u"12");
  m = re.NextMatch(m);
  EXPECT_EQ(m.Index(), 7);
  EXPECT_EQ(m.Value(), u"345");
  EXPECT_FALSE(re.NextMatch(m).Success());
}

TEST(RegExMatch, FailedMatchIsAllZero) {
  TRegEx re(u"x");
  String s = u"abc";
  TRegExMatch m = re.Match(s);
  EXPECT_FALSE(m.Success());
  EXPECT_EQ(m.Index(), 0);
  EXPECT_EQ(m.Length(), 0);
  EXPECT_EQ(m.Value(), u"");
  EXPECT_FALSE(re.NextMatch(m).Success());
}

TEST(RegExMatch, GroupsIncludingUnsetAndOutOfRange) {
  TRegEx re(u"(a)|(b)(c)?");
  String s = u"xb";
  TRegExMatch m = re.Match(s);
  ASSERT_TRUE(m.Success());
  EXPECT_EQ(m.GroupCount(), 3);
  EXPECT_FALSE(m.GroupMatched(1));
  EXPECT_EQ(m.GroupIndex(1), 0);
  EXPECT_EQ(m.Group(1), u"");
  EXPECT_TRUE(m.GroupMatched(2));
  EXPECT_EQ(TRegEx(u"(?<key>\\w+)=(?<val>\\d*)").GroupNumber(u"val"), 2);
  EXPECT_EQ(TRegEx(u"(?<key>\\w+)").GroupNumber(u"nope"), -1);
  EXPECT_EQ(m.GroupIndex(2), 2);
  EXPECT_EQ(m.GroupLength(2), 1);
  EXPECT_EQ(m.Group(2), u"b");
  EXPECT_FALSE(m.GroupMatched(3));
  EXPECT_FALSE(m.GroupMatched(4));
}

TEST(RegExMatch, StartPosition) {
  TRegEx re(u"a");
  String s = u"aXa";
  EXPECT_EQ(re.Match(s, 2).Index(), 3);
  EXPECT_EQ(re.Match(s, 0).Index(), 1);
  EXPECT_EQ(re.Match(s, -5).Index(), 1);
  EXPECT_FALSE(re.Match(s, 4).Success());
  EXPECT_TRUE(TRegEx(u"$").Match(s, 4).Success());  // the end itself is a position
  EXPECT_FALSE(re.IsMatch(s, 4));
  // A start inside a surrogate pair is refused, not matched from half a character.
  String pair = u"a\U0001F600b";
  EXPECT_THROW(TRegEx(u"b").Match(pair, 3), ERegExError);
  EXPECT_EQ(TRegEx(u"b").Match(pair, 4).Index(), 4);
}

TEST(RegExMatch, EmptyMatchesAdvanceByWholeCharacters) {
  EXPECT_EQ(Walk(TRegEx(u"x*"), u"abc"),
            (std::vector<std::string>{"1:0:", "2:0:", "3:0:", "4:0:"}));
  // Perl's rule: after an empty match, a non-empty one may start at the same place.
  EXPECT_EQ(Walk(TRegEx(u"a*"), u"baa"), (std::vector<std::string>{"1:0:", "2:2:aa", "4:0:"}));
  // U+1F600 is a surrogate pair: no empty match between its halves.
  String s = u"a\U0001F600b";
  EXPECT_EQ(Walk(TRegEx(u""), s), (std::vector<std::string>{"1:0:", "2:0:", "4:0:", "5:0:"}));
}

TEST(RegExMatch, WalkFunctionsAgree) {
  TRegEx re(u"\\d*");
  String s = u"1a22b";
  std::vector<TRegExMatch> all = re.Matches(s);
  std::vector<std::string> from_matches;
  for (const TRegExMatch& m : all) {
    from_matches.push_back(std::to_string(m.Index()) + ":" + Utf8(m.Value()));
  }
  std::vector<std::string> from_each;
  re.ForEachMatch(s, [&](const TRegExMatch& m) {
    from_each.push_back(std::to_string(m.Index()) + ":" + Utf8(m.Value()));
    return true;
  });
  EXPECT_EQ(from_matches, (std::vector<std::string>{"1:1", "2:", "3:22", "5:", "6:"}));
  EXPECT_EQ(from_each, from_matches);
  EXPECT_EQ(re.CountMatches(s), 5);
  int visited = 0;
  EXPECT_EQ(re.ForEachMatch(s, [&](const TRegExMatch&) { return ++visited < 2; }), 2);
}

TEST(RegExMatch, ClassesAreAsciiButCaseFoldingIsUnicode) {
  struct Case {
    const char16_t* pattern;
    const char16_t* subject;
    bool matches;
  };
  const Case cases[] =
      {
          {u"^\\d$", u"7", true},         {u"^\\d$", u"\u0663", false},  // Arabic-Indic three
          {u"^\\w$", u"_", true},         {u"^\\w$", u"\u00E9", false},  // é
          {u"^\\W$", u"\u00E9", true},    {u"^\\s$", u"\t", true},
          {u"^\\s$", u"\u00A0", false},   {u"^\\D$", u"\u0663", true},
          {u"\\bx\\b", u"\u00E9x", true},  // é is not a word character, so \b sits before x
          {u"^.$", u"\U0001F600", true},   // one character, two code units
      };
  for (const Case& c : cases) {
    EXPECT_EQ(TRegEx(c.pattern).IsMatch(c.subject), c.matches)
        << Utf8(c.pattern) << " on " << Utf8(c.subject);
  }
  EXPECT_TRUE(TRegEx(u"\u00E9t\u00C9", {roIgnoreCase}).IsMatch(u"\u00C9T\u00E9"));
  EXPECT_TRUE(TRegEx(u"\u0436", {roIgnoreCase}).IsMatch(u"\u0416"));  // Cyrillic zhe
  EXPECT_FALSE(TRegEx(u"\u0436").IsMatch(u"\u0416"));
}

TEST(RegExOptions, LinesAndDots) {
  String text = u"one\r\ntwo\nthree";
  EXPECT_FALSE(TRegEx(u"^two$").IsMatch(text));
  EXPECT_TRUE(TRegEx(u"^two$", {roMultiLine}).IsMatch(text));
  EXPECT_TRUE(TRegEx(u"^one$", {roMultiLine}).IsMatch(text));  // CR LF is one line break
  EXPECT_FALSE(TRegEx(u"one.two").IsMatch(u"one\ntwo"));
  EXPECT_TRUE(TRegEx(u"one.two", {roSingleLine}).IsMatch(u"one\ntwo"));
  EXPECT_TRUE(TRegEx(u"a b # comment", {roExtended}).IsMatch(u"ab"));
  String aaa = u"aaa";
  EXPECT_EQ(TRegEx(u"a+", {roUngreedy}).Match(aaa).Length(), 1);
  EXPECT_FALSE(TRegEx(u"b", {roAnchored}).IsMatch(u"ab"));
  EXPECT_TRUE(TRegEx(u"b", {roAnchored}).IsMatch(u"ab", 2));
  EXPECT_EQ(TRegEx(u"x*", {roNotEmpty}).CountMatches(u"axxbx"), 2);
}

TEST(RegExErrors, BadPatternNamesMessageAndOffset) {
  {
    const std::string message = ToUtf8(test::MessageOf<ERegExError>([] { TRegEx re(u"Ch(\\d+"); }));
    EXPECT_NE(message.find("\"Ch(\\d+\""), std::string::npos) << message;
    EXPECT_NE(message.find("at offset 6"), std::string::npos) << message;
    EXPECT_NE(message.find("missing closing parenthesis"), std::string::npos) << message;
  }
  for (const char16_t* bad : {u"[", u"*", u"a{2,1}", u"(?<n>a)(?<n>b)", u"\\C", u"\\"}) {
    EXPECT_THROW(TRegEx{bad}, ERegExError) << Utf8(bad);
  }
  String lone = u"a";
  lone += static_cast<Char>(0xD800);
  EXPECT_THROW(TRegEx{lone}, ERegExError);
}

TEST(RegExErrors, CatastrophicBacktrackingStopsWithinASecond) {
  TRegEx re(u"(a+)+$");
  String subject(30, u'a');
  subject += u'b';
  const auto started = std::chrono::steady_clock::now();
  EXPECT_THROW(re.IsMatch(subject), ERegExError);
  EXPECT_THROW(re.Replace(subject, u"x"), ERegExError);
  const auto elapsed = std::chrono::steady_clock::now() - started;
  EXPECT_LT(elapsed, std::chrono::seconds(2));
  EXPECT_NE(test::MessageOf<ERegExError>([&] { re.Match(subject); }).find(u"limit"), String::npos);
}

TEST(RegExErrors, LoneSurrogateInSubjectIsAnError) {
  String bad = u"ab";
  bad += static_cast<Char>(0xDC00);
  bad += u"12";
  TRegEx re(u"\\d+");
  EXPECT_THROW(re.IsMatch(bad), ERegExError);
  EXPECT_THROW(re.Match(bad), ERegExError);
  EXPECT_THROW(re.Replace(bad, u"x"), ERegExError);
  EXPECT_NE(test::MessageOf<ERegExError>([&] { re.Match(bad); }).find(u"offset 2"), String::npos);
  String high_at_end = u"12";
  high_at_end += static_cast<Char>(0xD83D);
  EXPECT_THROW(TRegEx(u"x").IsMatch(high_at_end), ERegExError);
}

TEST(RegExErrors, LongSubjectsDoNotExhaustTheStack) {
  // Each repetition of a group leaves a backtracking point; the JIT stack overflows long before the
  // end and the interpreter takes over.
  String subject(200000, u'a');
  subject += u'c';
  TRegEx re(u"(?:a|b)*c");
  TRegExMatch m = re.Match(subject);
  EXPECT_EQ(m.Length(), 200001);
}

TEST(RegExSplit, PartsAreOneMoreThanMatchesWithEmptyPartsKept) {
  struct Case {
    const char16_t* pattern;
    const char16_t* subject;
    std::vector<String> parts;
  };
  const Case cases[] = {
      {u",", u"a,b,,c", {u"a", u"b", u"", u"c"}},
      {u",", u",a,", {u"", u"a", u""}},
      {u",", u"", {u""}},
      {u"\\d+", u"12ab", {u"", u"ab"}},
      {u"x*", u"ab", {u"", u"a", u"b", u""}},
  };
  for (const Case& c : cases) {
    TRegEx re(c.pattern);
    TStringDynArray parts = re.Split(c.subject);
    EXPECT_EQ(parts, c.parts) << Utf8(c.pattern) << " on " << Utf8(c.subject);
    EXPECT_EQ(static_cast<int32_t>(parts.size()), re.CountMatches(c.subject) + 1);
  }
}

TEST(RegExReplace, GroupReferences) {
  struct Case {
    const char16_t* pattern;
    const char16_t* replacement;
    const char16_t* expected;
  };
  // Subject for every case: "Ch12 Ch3".
  const Case cases[] = {
      {u"Ch(\\d+)", u"Channel $1", u"Channel 12 Channel 3"},
      {u"Ch(\\d+)", u"<\\1>", u"<12> <3>"},
      {u"Ch(\\d+)", u"${1}0", u"120 30"},
      {u"Ch(\\d+)", u"$10", u"120 30"},  // one group: "$10" is group 1 and "0"
      {u"Ch(?<n>\\d+)", u"[${n}]", u"[12] [3]"},
      {u"Ch\\d+", u"($&)", u"(Ch12) (Ch3)"},
      {u"Ch\\d+", u"$$1", u"$1 $1"},
      {u"Ch\\d+", u"a\\\\b", u"a\\b a\\b"},
      {u"Ch\\d+", u"$2 \\2 ${x} $ \\q", u"$2 \\2 ${x} $ \\q $2 \\2 ${x} $ \\q"},
      {u"Ch(\\d+)|(x)", u"[$2]", u"[] []"},  // an unset group is empty
  };
  for (const Case& c : cases) {
    EXPECT_EQ(TRegEx(c.pattern).Replace(u"Ch12 Ch3", c.replacement), c.expected)
        << Utf8(c.pattern) << " -> " << Utf8(c.replacement);
  }
  // With eleven groups "$11" is group 11.
  EXPECT_EQ(TRegEx(u"(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)").Replace(u"abcdefghijk", u"$11$1"), u"ka");
}

TEST(RegExReplace, CountsAndEmptyMatches) {
  int32_t count = -1;
  EXPECT_EQ(TRegEx(u"b").Replace(u"abcb", u"", &count), u"ac");
  EXPECT_EQ(count, 2);
  EXPECT_EQ(TRegEx(u"x*").Replace(u"abc", u"-", &count), u"-a-b-c-");
  EXPECT_EQ(count, 4);
  EXPECT_EQ(TRegEx(u"a").Replace(u"aaa", u"aa"),
            u"aaaaaa");  // inserted text not rescanned
  EXPECT_EQ(TRegEx(u"\\d+").Replace(
                u"a1b22",
                [](const TRegExMatch& m) { return String(static_cast<size_t>(m.Length()), u'#'); }),
            u"a#b##");
}

TEST(RegExCache, ReusesPatternsAndKeepsOptionsApart) {
  ClearRegExCache();
  EXPECT_EQ(RegExCacheSize(), 0u);
  TRegEx a(u"abc");
  TRegEx b(u"abc");
  EXPECT_EQ(RegExCacheSize(), 1u);
  TRegEx c(u"abc", {roIgnoreCase});
  EXPECT_EQ(RegExCacheSize(), 2u);
  EXPECT_FALSE(b.IsMatch(u"ABC"));
  EXPECT_TRUE(c.IsMatch(u"ABC"));
  EXPECT_THROW(TRegEx(u"("), ERegExError);
  EXPECT_EQ(RegExCacheSize(), 2u);  // failures are not cached
  ClearRegExCache();
  EXPECT_TRUE(a.IsMatch(u"xabc"));  // objects keep their compiled pattern
  // The cache is bounded.
  for (int i = 0; i < 2000; ++i) {
    std::string digits = std::to_string(i);
    TRegEx re(u"p" + String(digits.begin(), digits.end()));
  }
  EXPECT_LE(RegExCacheSize(), 512u);
  EXPECT_GT(RegExCacheSize(), 0u);
}

TEST(RegExThreads, SharedObjectsAndCacheGiveTheSameAnswers) {
  TRegEx shared(u"(\\w+)=(\\d+)");
  const String text = u"a=1, bb=22, ccc=333";
  const String expected = shared.Replace(text, u"$2:$1");
  std::atomic<int> failures{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 500; ++i) {
        if (shared.Replace(text, u"$2:$1") != expected) ++failures;
        std::string k = std::to_string((i + t) % 7);
        TRegEx own(u"(\\w+)=(\\d+)x{0," + String(k.begin(), k.end()) + u"}");
        if (own.CountMatches(text) != 3) ++failures;
      }
    });
  }
  for (std::thread& th : threads) th.join();
  EXPECT_EQ(failures.load(), 0);
}

}  // namespace
}  // namespace vex
