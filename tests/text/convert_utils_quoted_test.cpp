#include <gtest/gtest.h>

#include <random>

#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/text/convert_utils.h"

namespace vex {
namespace {

using C = TConvertUtils;

TStringDynArray Lines(const String& s, const String& prefix = String()) {
  TStringList list;
  C::WriteStr2Uni(s, list, prefix);
  TStringDynArray r;
  for (int32_t i = 0; i < list.Count(); ++i) r.push_back(list[i]);
  return r;
}

String Join(const TStringDynArray& lines, const String& sep) {
  String r;
  for (size_t i = 0; i < lines.size(); ++i) r += (i ? sep : String()) + lines[i];
  return r;
}

void ExpectInvalid(const String& s, bool as_line = false) {
  try {
    C::Uni2Str(s, as_line);
    ADD_FAILURE() << "accepted: " << std::string(s.begin(), s.end());
  } catch (const EConvertError& e) {
    EXPECT_EQ(e.Message(), u"ConvertAsUnicode: Invalid String");
  }
}

TEST(QuotedForm, WritesRunsAndCodes) {
  EXPECT_EQ(C::Str2Uni(u""), u"''");
  EXPECT_EQ(C::Str2Uni(u"'"), u"#39");
  EXPECT_EQ(C::Str2Uni(u"it's\r\n"), u"'it'#39's'#13#10");
  EXPECT_EQ(C::Str2Uni(u"\x7f~ "), u"'\x7f~ '");
  EXPECT_EQ(C::Str2Uni(u"\u0080\u00e9\uffff\U0001F600"), u"#128#233#65535#55357#56832");
  EXPECT_EQ(C::Str2Uni(String(1, u'\0')), u"#0");
}

TEST(QuotedForm, WrapsAfterSixtyFourCharacters) {
  const String a64(64, u'a');
  EXPECT_EQ(Lines(a64), TStringDynArray{u"'" + a64 + u"'"});
  EXPECT_EQ(Lines(a64 + u"b", u"  "), (TStringDynArray{u"  ", u"  '" + a64 + u"' +", u"  'b'"}));
  EXPECT_EQ(C::Str2Uni(a64 + u"b"), u"'" + a64 + u"' +'b'");
  // Codes count one source character each; a code that reaches the limit ends the line.
  const String codes(64, u'\t');
  String coded;
  for (int i = 0; i < 64; ++i) coded += u"#9";
  EXPECT_EQ(Lines(codes + u"x"), (TStringDynArray{u"", coded + u" +", u"'x'"}));
  // A run cut by the limit continues on the next line.
  EXPECT_EQ(Lines(u"\t" + a64), (TStringDynArray{u"", u"#9'" + String(63, u'a') + u"' +", u"'a'"}));
  // Nothing remains after the limit: no joint.
  EXPECT_EQ(Lines(String(130, u'z')).size(), 4u);
  EXPECT_EQ(Lines(String(128, u'z')).size(), 3u);
}

TEST(QuotedForm, ApostrophesNeverEndALine) {
  const String q(70, u'\'');
  String coded;
  for (int i = 0; i < 70; ++i) coded += u"#39";
  EXPECT_EQ(Lines(q), (TStringDynArray{u"", coded}));
  // The run after them starts with the limit already reached and is written empty.
  EXPECT_EQ(Lines(q + u"ab"), (TStringDynArray{u"", coded + u"'' +", u"'ab'"}));
  EXPECT_EQ(C::Uni2Str(C::Str2Uni(q + u"ab")), q + u"ab");
}

TEST(QuotedForm, ReadsJoinedLinesWithBlankPrefixes) {
  const String text = String(100, u'x') + u"\r\n" + String(80, u'\'') + u"é";
  for (const String& sep : {String(u"\r\n"), String(u"\n"), String(u""), String(u" ")}) {
    EXPECT_EQ(C::Uni2Str(Join(Lines(text, u"    "), sep)), text);
    EXPECT_EQ(C::Uni2Str(Join(Lines(text, u"\t"), sep), true), text);
  }
  EXPECT_EQ(C::Uni2Str(u"  'a'  +  \r\n  #66  "), u"aB");
}

TEST(QuotedForm, LineModeAcceptsSingleLinesOfALongText) {
  EXPECT_EQ(C::Uni2Str(u"", true), u"");
  EXPECT_EQ(C::Uni2Str(u"    ", true), u"");
  EXPECT_EQ(C::Uni2Str(u"  'abc' +", true), u"abc");
  ExpectInvalid(u"");
  ExpectInvalid(u"   ");
  ExpectInvalid(u"'abc' +");
}

TEST(QuotedForm, RejectsEverythingElse) {
  for (const char16_t* bad :
       {u"abc",      u"'abc",         u"abc'",    u"'a'b",    u"#",    u"#x",
        u"#65536",   u"#99999999999", u"'a' 'b'", u"'a''b'",  u"''''", u"'a'+",
        u"+'a'",     u"'a' + + 'b'",  u"'a'#",    u"#13 #10", u"'é'",  u"'a\tb'",
        u"'a\r\nb'", u"$41",          u"#$41",    u"x'a'",    u"'a'x"}) {
    ExpectInvalid(bad);
  }
  ExpectInvalid(u"x'a'", true);
  ExpectInvalid(u"+'a'", true);
}

TEST(QuotedForm, RoundTripsRandomText) {
  std::mt19937 rng(2024);
  const std::u16string pool = u"ab Z~'\"#+\t\r\n\x7f\x80\u00e9\u0416\u4e2d\uffff";
  for (int round = 0; round < 2000; ++round) {
    String s;
    const int n = static_cast<int>(rng() % 200);
    for (int i = 0; i < n; ++i) {
      switch (rng() % 6) {
        case 0:  // a lone surrogate of either half
          s.push_back(static_cast<Char>(0xD800 + rng() % 0x800));
          break;
        case 1:  // a pair outside the BMP
          s += u"\U0001F600";
          break;
        case 2:
          s.push_back(static_cast<Char>(rng() % 0x10000));
          break;
        default:
          s.push_back(pool[rng() % pool.size()]);
      }
    }
    const String coded = C::Str2Uni(s);
    for (Char c : coded) ASSERT_TRUE(c >= 32 && c <= 127) << round;
    ASSERT_EQ(C::Uni2Str(coded), s) << round;
    ASSERT_EQ(C::Uni2Str(Join(Lines(s, u"  "), u"\r\n")), s) << round;
  }
}

TEST(QuotedForm, DequotedAndPrefixedVariants) {
  EXPECT_EQ(C::Str2UniDeqt(u"abc", true), u"abc");
  EXPECT_EQ(C::Str2UniDeqt(u"abc", false), u"'abc'");
  EXPECT_EQ(C::Str2UniDeqt(u"a\tb", true), u"'a'#9'b'");
  EXPECT_EQ(C::Str2UniDeqt(u"a\tb", true, u'='), u"='a'#9'b'");
  EXPECT_EQ(C::Str2UniDeqt(u"", true), u"");

  EXPECT_EQ(C::Uni2StrPref(u"'a'#9'b'", true), u"a\tb");
  EXPECT_EQ(C::Uni2StrPref(u"'a'#9'b'", false), u"'a'#9'b'");
  EXPECT_EQ(C::Uni2StrPref(u"#9'b'", true), u"#9'b'");      // does not open with "'"
  EXPECT_EQ(C::Uni2StrPref(u"'plain'", true), u"'plain'");  // no "#"
}

TEST(QuotedForm, ListsSaveAndLoadLineByLine) {
  TStringList source;
  source.Add(u"one's");
  source.Add(u"");
  source.Add(u"\u0416");
  TStringList coded;
  coded.Add(u"kept");
  C::SaveToUni(source, coded, u"  ");
  ASSERT_EQ(coded.Count(), 4);
  EXPECT_EQ(coded[0], u"kept");
  EXPECT_EQ(coded[1], u"  'one'#39's'");
  EXPECT_EQ(coded[2], u"  ''");
  EXPECT_EQ(coded[3], u"  #1046");

  coded.Delete(0);
  TStringList back;
  back.Add(u"old");
  C::LoadFromUni(coded, back);
  ASSERT_EQ(back.Count(), 3);
  for (int32_t i = 0; i < 3; ++i) EXPECT_EQ(back[i], source[i]);

  // A long line comes back as the pieces of its lines.
  TStringList long_source;
  long_source.Add(String(70, u'q'));
  TStringList long_coded;
  C::SaveToUni(long_source, long_coded);
  C::LoadFromUni(long_coded, back);
  EXPECT_EQ(back.Count(), 3);
  EXPECT_EQ(back[0], u"");
  EXPECT_EQ(back[1] + back[2], String(70, u'q'));

  TStringList bad;
  bad.Add(u"'ok'");
  bad.Add(u"not coded");
  EXPECT_THROW(C::LoadFromUni(bad, back), EConvertError);
  EXPECT_EQ(back.Count(), 3);  // left as it was
}

}  // namespace
}  // namespace vex
