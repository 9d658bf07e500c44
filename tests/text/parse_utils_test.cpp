#include "vex/text/parse_utils.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <utility>
#include <vector>

#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

using ::testing::ElementsAre;
using P = TParseUtils;

// --- pieces at positions ---------------------------------------------------------------------

TEST(ParseUtilsPieces, SplitAtAPositionOrTheFirstDelimiter) {
  TSplitResult r = P::SplitStr(u"  ab  ", 0, 0, true);  // position 0: the whole trimmed text
  EXPECT_EQ(r.s1 + u"|" + r.s2, u"ab|");
  EXPECT_EQ(r.flag, 1);
  r = P::SplitStr(u"abc=def", 4, 2, false);  // the second part starts K before the skipped one
  EXPECT_EQ(r.s1 + u"|" + r.s2, u"abc|c=def");
  EXPECT_EQ(r.flag, 3);
  EXPECT_EQ(P::SplitStr(u"abc", 100, 0, false).s1, u"abc");
  r = P::SplitStr(u" a = b = c", u'=', true);
  EXPECT_EQ(r.s1 + u"|" + r.s2, u"a|b = c");
  EXPECT_EQ(P::SplitStr(u" abc ", u'=', false).s1, u" abc ");
  EXPECT_EQ(P::SplitStr(u"=x", u'=', true).flag, 2);
  EXPECT_EQ(P::JoinParts(P::SplitStr(u"=", u'=', true), u';'), u";");

  String left, right;
  P::SplitStrByPos(u"abcdef", 2, 3, left, right);
  EXPECT_EQ(left + u"|" + right, u"ab|def");
  P::SplitStrByPos(u"abcdef", 9, -3, left, right);
  EXPECT_EQ(left + u"|" + right, u"abcdef|abcdef");
  EXPECT_EQ(P::CopyToken(u"abcdef", 2, 5), u"cd");
  EXPECT_EQ(P::CopyToken(u"abcdef", 3, 1), u"ab");
  EXPECT_EQ(P::StuffToken(u"abcdef", u"XY", 2, 3), u"aXYdef");
  EXPECT_EQ(P::StuffToken(u"abcdef", u"XY", 10, 12), u"abcdefXY");
}

// Positions anywhere in the 32-bit range never read outside the string (checked by the
// sanitizer builds) and give pieces of the string.
TEST(ParseUtilsPieces, ExtremePositionsStayInsideTheString) {
  const std::vector<int32_t> positions = {INT_MIN, -7, -1, 0, 1, 2, 3, 4, 5, INT_MAX};
  for (const String& s : {String(), String(u"x"), String(u"a;b")}) {
    for (int32_t p : positions) {
      for (int32_t q : positions) {
        EXPECT_LE(P::CopyToken(s, p, q).size(), s.size());
        EXPECT_LE(P::StuffToken(s, u"", p, q).size(), 2 * s.size());
        EXPECT_LE(P::SplitStr(s, p, q, false).s2.size(), s.size());
        String l, r;
        P::SplitStrByPos(s, p, q, l, r);
        EXPECT_LE(l.size() + r.size(), 2 * s.size());
      }
      EXPECT_LE(P::SetFirstToken(s, u"T", p).size(), s.size() + 1);
      int32_t pos = p;
      EXPECT_LE(P::ExtractParamField(s, pos, u';').size(), s.size());
      EXPECT_EQ(P::ExtractOptionsWithBrackets(s, u"()", p), u"");
      pos = p;
      P::DetectIntChars(s, pos);
      EXPECT_EQ(pos, 0);
      EXPECT_EQ(P::MinPosAndIndexOfChar(s, u"#", p), 0);
      EXPECT_LE(P::ExtractParamFieldByIndex(s, p, u';').size(), s.size());
    }
  }
}

// --- first, second and last tokens ----------------------------------------------------------

TEST(ParseUtilsTokens, GetAndSetTheSidesOfADelimiter) {
  EXPECT_EQ(P::GetFirstToken(u" a = b = c", u'='), u"a");
  EXPECT_EQ(P::GetSecondToken(u" a = b = c", u'=', u"def"), u"b = c");
  EXPECT_EQ(P::GetSecondToken(u"abc= ", u'=', u"def"), u"def");
  EXPECT_EQ(P::GetSecondTokenSafe(u"abc ", u'='), u"abc ");
  EXPECT_EQ(P::GetSecondTokenSafe(u"a =b ", u'='), u"b");
  EXPECT_EQ(P::GetNameToken(u"k = v") + P::GetValueToken(u"k = v"), u"kv");

  int32_t found = -1;
  EXPECT_EQ(P::GetFirstTokenEx(u"a ,b;c", u";,", 1, true, &found), u"a");
  EXPECT_EQ(found, 3);
  EXPECT_EQ(P::GetFirstTokenEx(u"a ,b;c", u";,", 4, false, &found), u"a ,b");
  EXPECT_EQ(found, 5);
  EXPECT_EQ(P::GetFirstTokenEx(u"a;b", u";", 0, true, &found), u"a;b");
  EXPECT_EQ(found, 0);

  EXPECT_EQ(P::GetValueTokenEx(u"'key = val'", u"key"), u"val");
  EXPECT_EQ(P::GetValueTokenEx(u"Key=val", u"key"), u"");
  EXPECT_EQ(P::GetValueTokenEx(u"'key=val", u"key"), u"");
  EXPECT_EQ(P::GetValueTokenEx(u"key:val", u"key", u':'), u"val");

  EXPECT_EQ(P::SetFirstToken(u"a = b", u"x", u'='), u"x=b");
  EXPECT_EQ(P::SetFirstToken(u"a = ", u"x", u'='), u"x");  // an empty rest drops the delimiter
  EXPECT_EQ(P::SetFirstToken(u"abcdef", u"X", 0), u"X");
  EXPECT_EQ(P::SetFirstToken(u"abcdef", u"X", 3), u"Xcdef");
  EXPECT_EQ(P::SetSecondToken(u" a = b", u"z", u'='), u"a=z");
  EXPECT_EQ(P::SetSecondToken(u"abc", u"", u'='), u"abc=");
}

TEST(ParseUtilsTokens, LastTokenAndCutLastToken) {
  EXPECT_EQ(P::GetLastToken(u"a.b.c", u'.'), u"c");
  EXPECT_EQ(P::GetLastToken(u"f(a(x)y", u'(', u')', u"def"), u"x");
  EXPECT_EQ(P::GetLastToken(u"f(a(x", u'(', u')', u"def"), u"def");
  EXPECT_EQ(P::GetLastToken(u"abc", u'.', 0, u"def"), u"def");
  EXPECT_EQ(P::GetLastToken(u"a.b.", u'.', 0, u"def"), u"def");
  bool found = false;
  EXPECT_EQ(P::CutLastToken(u"a.b.c", u'.', &found), u"a.b");
  EXPECT_TRUE(found);
  EXPECT_EQ(P::CutLastToken(u"abc", u'.', &found), u"abc");
  EXPECT_FALSE(found);
}

// --- splitting in place ---------------------------------------------------------------------

TEST(ParseUtilsInPlace, SplitAtTheFirstOrLastCharacter) {
  String s = u" a/b / c ", tail = u"old";
  P::SplitWithLastChar(s, u'/', tail);
  EXPECT_EQ(s + u"|" + tail, u" a/b | c ");
  s = u"abc";
  P::SplitWithLastChar(s, u'/', tail);
  EXPECT_EQ(s + u"|" + tail, u"abc|");
  s = u"a/b/c";
  P::SplitWithLastCharEx(s, u'/', 2, tail, false);  // the index counts from the end
  EXPECT_EQ(s + u"|" + tail, u"a|b/c");
  s = u"a/b/c";
  P::SplitWithLastCharEx(s, u'/', 1, tail, true);
  EXPECT_EQ(s + u"|" + tail, u"c|a/b");
  s = u"a/b/c";
  P::SplitWithLastCharEx(s, u'/', 3, tail, true);
  EXPECT_EQ(s + u"|" + tail, u"a/b/c|");
  String head = u"untouched";
  P::SplitWithLastCharPtr(u"x.y", u'.', 1, tail, false, &head);
  EXPECT_EQ(head + u"|" + tail, u"x|y");

  s = u" ab ; cd ";
  P::SplitWithFirstChar(s, u';', head);
  EXPECT_EQ(head + u"|" + s, u" ab | cd ");
  s = u"abcd";
  P::SplitWithFirstChar(s, u';', head);
  EXPECT_EQ(head + u"|" + s, u"abcd|");
}

TEST(ParseUtilsInPlace, SplitCutsTheRightPartToIPlusOneCharacters) {
  struct Case {
    String s;
    int32_t index;
    String left, right;
  };
  const std::vector<Case> cases = {
      {u"abcd=xy", 4, u"abcd", u"=xy"},
      {u"a=bcdef", 1, u"a", u"=b"},
      {u"=xyz", 0, u"", u"="},
      {u"abc", -1, u"abc", u"dflt"},
  };
  for (const Case& c : cases) {
    String left, right;
    EXPECT_EQ(P::Split(c.s, left, right, u'=', u"dflt"), c.index) << ToUtf8(c.s);
    EXPECT_EQ(left + u"|" + right, c.left + u"|" + c.right) << ToUtf8(c.s);
  }
}

TEST(ParseUtilsInPlace, SplitWithOneOrTwoCharacters) {
  String a, b, c;
  P::SplitStrWithChar(u" a ; b ; c ", u';', a, b);
  EXPECT_EQ(a + u"|" + b, u"a|b ; c");
  P::SplitStrWithChar(u" abc ", u';', a, b, false);
  EXPECT_EQ(a + u"|" + b, u" abc |");
  P::SplitStrWithTwoChars(u"1 . name = v=w", u'.', u'=', a, b, c);
  EXPECT_EQ(a + u"|" + b + u"|" + c, u"1|name|v=w");
  P::SplitStrWithTwoChars(u"1.name=v", u'.', 0, a, b, c);
  EXPECT_EQ(b + u"|" + c, u"name=v|");
  TSplitRec rec = P::SplitStr2Rec(u"name=v", u'.', u'=');
  EXPECT_EQ(rec.s1 + u"|" + rec.s2 + u"|" + rec.s3, u"name=v||");

  String name;
  Variant value;
  EXPECT_EQ(P::SplitPropStr(u" 2 . Width = 40", name, value), 2);
  EXPECT_EQ(name, u"Width");
  EXPECT_EQ(value.VarType(), varInteger);
  EXPECT_EQ(value.AsInteger(), 40);
  EXPECT_EQ(P::SplitPropStr(u"3.Caption=a=b", name, value, [](int32_t i) { return i * 10; }), 30);
  EXPECT_EQ(value.AsString(), u"a=b");
  EXPECT_THROW(P::SplitPropStr(u"x.Caption=1", name, value), EConvertError);
  EXPECT_THROW(P::SplitPropStr(u"Caption=1", name, value), EConvertError);
}

// --- walking fields -------------------------------------------------------------------------

TEST(ParseUtilsFields, ExtractParamFieldMovesThePositionAsDefined) {
  struct Case {
    String s;
    int32_t start;
    String field;
    int32_t next;
  };
  const std::vector<Case> cases = {
      {u"a;b;", 1, u"a", 3}, {u"a;b;", 3, u"b", 4},  // the final ";" is not stepped over
      {u"a;b;", 4, u"", 5},  {u";a", 1, u"", 2},    {u" a ;b", 1, u"a", 5},
      {u"  ;b", 1, u"", 4},  {u"a;b", 0, u"a", 3},  {u"a;b", 9, u"", 5},
  };
  for (const Case& c : cases) {
    int32_t pos = c.start;
    EXPECT_EQ(P::ExtractParamField(c.s, pos, u';'), c.field) << ToUtf8(c.s) << " @" << c.start;
    EXPECT_EQ(pos, c.next) << ToUtf8(c.s) << " @" << c.start;
  }
}

TEST(ParseUtilsFields, ExtractTokensKeepsEmptyFieldsAsTheWalkDefinesThem) {
  struct Case {
    String s;
    TStringDynArray tokens;
  };
  const std::vector<Case> cases = {
      {u"", {}},         {u"a;b;", {u"a", u"b", u""}}, {u";a", {u"", u"a"}},
      {u";", {u""}},     {u";;", {u"", u""}},          {u"a;;b", {u"a", u"", u"b"}},
      {u" a ; b ", {u"a", u"b"}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(P::ExtractTokens(c.s, u';'), c.tokens) << ToUtf8(c.s);
    EXPECT_EQ(P::ExtractTrimmedTokens(c.s, u';'), c.tokens) << ToUtf8(c.s);
    TStringDynArray arr = {u"stale"};
    EXPECT_EQ(P::ExtractParamFieldsToArray(c.s, arr, u';'), static_cast<int32_t>(c.tokens.size()));
    EXPECT_EQ(arr, c.tokens);
  }
  EXPECT_EQ(P::ExtractParamFieldByIndex(u"a;;b", 2, u';'), u"b");  // empty fields count
  EXPECT_EQ(P::ExtractParamFieldByIndex(u"a;;b", 3, u';'), u"");
}

TEST(ParseUtilsFields, CallbackWalksPassTextAndIndex) {
  std::vector<std::pair<String, int32_t>> seen;
  EXPECT_EQ(P::ExtractParamFields(
                u"x; y;", [&](const String& s, int32_t i) { seen.emplace_back(s, i); }, u';'),
            3);
  EXPECT_EQ(seen, (std::vector<std::pair<String, int32_t>>{{u"x", 0}, {u"y", 1}, {u"", 2}}));

  std::vector<TStringDynArray> kv;
  P::ExtractParamFieldsEx(
      u"a=1; b ;c = 2=3",
      [&](const String& k, const String& v, const String& s) { kv.push_back({k, v, s}); }, u';');
  EXPECT_EQ(kv, (std::vector<TStringDynArray>{
                    {u"a", u"1", u"a=1"}, {u"b", u"", u"b"}, {u"c", u"2=3", u"c = 2=3"}}));

  int32_t calls = 0;
  const auto until_stop = [&](const String& s, int32_t) { return ++calls, s != u"stop"; };
  EXPECT_EQ(P::ExtractParamFieldsWithFunc(u"a;b;stop;c", until_stop, u';'), 2);
  EXPECT_EQ(calls, 3);

  seen.clear();
  P::EnumStringItems({u"p", u"q"}, [&](const String& s, int32_t i) { seen.emplace_back(s, i); });
  EXPECT_EQ(seen, (std::vector<std::pair<String, int32_t>>{{u"p", 0}, {u"q", 1}}));
}

TEST(ParseUtilsFields, ListsArraysAndRecords) {
  TStringList list;
  list.Add(u"old");
  int changes = 0;
  list.OnChange = [&](TObject*) { ++changes; };
  EXPECT_EQ(P::ExtractParamFieldsToList(u"a;b", list, u';'), 2);
  EXPECT_EQ(list.ToStringArray(), (TStringDynArray{u"a", u"b"}));
  EXPECT_EQ(changes, 1);  // one update for the whole replacement

  auto tokens = std::make_unique<P::TTokenArray>();
  (*tokens)[5] = u"stale";
  EXPECT_EQ(P::CopyTokens(u"a;b;c", *tokens, u';'), 3);
  EXPECT_EQ((*tokens)[2] + (*tokens)[5], u"c");
  String many;
  for (int i = 0; i < P::kMaxCopyTokens + 6; ++i) many += IntToStr(i) + u";";
  EXPECT_EQ(P::CopyTokens(many, *tokens, u';'), P::kMaxCopyTokens);
  EXPECT_EQ(tokens->back(), IntToStr(P::kMaxCopyTokens - 1));
  TSplitRec rec = P::ExtractTokensRec(u"x;y", u';');
  EXPECT_EQ(rec.s1 + u"|" + rec.s2 + u"|" + rec.s3, u"x|y|");
  EXPECT_EQ(P::ExtractTokensRec(u"1;2;3;4", u';').s3, u"3");

  EXPECT_THAT(P::SplitIntoIntegers(u"1, -2,$10", u','), ElementsAre(1, -2, 16));
  EXPECT_THROW(P::SplitIntoIntegers(u"1,2,", u','), EConvertError);
  EXPECT_THAT(P::ExtractIntegers(u"1,x,3,", u','), ElementsAre(1, 0, 3, 0));
  EXPECT_THAT(P::ExtractBytes(u"256,-1,7,x", u','), ElementsAre(0, 255, 7, 0));
}

// --- name=value lookups ---------------------------------------------------------------------

TEST(ParseUtilsNames, IndexOfNameComparesTrimmedNamesExactly) {
  const TStringDynArray items = {u"a=1", u" b = 2 ", u"c=", u"c=3"};
  String value = u"untouched";
  EXPECT_EQ(P::IndexOfName(items, u"b", &value), 1);
  EXPECT_EQ(value, u"2");
  EXPECT_EQ(P::IndexOfName(items, u"c", &value, u'=', true), 3);
  EXPECT_EQ(value, u"3");
  EXPECT_EQ(P::IndexOfName(items, u"B"), -1);
  EXPECT_EQ(P::GetParamValue(items, u"c"), u"3");
  EXPECT_EQ(P::IndexOfNameInStr(u"x=1; y = 2", u"y", u';', &value), 1);
  EXPECT_EQ(value, u"2");
  EXPECT_EQ(P::ExtractValuesByKeys(u"a=1;b=2;c", {u"b", u"z", u"c"}, u';'),
            (TStringDynArray{u"2", u"", u""}));
}

TEST(ParseUtilsNames, NamesValuesAndRecordsRoundTrip) {
  TStringDynArray names = {u"stale"}, values;
  EXPECT_EQ(P::SplitIntoNamesAndValues(u"a=1; b = 2 ;;c;", names, values, u';'), 3);
  EXPECT_EQ(names, (TStringDynArray{u"a", u"b", u"c"}));
  EXPECT_EQ(values, (TStringDynArray{u"1", u"2", u""}));
  EXPECT_EQ(P::JoinNamesAndValues(names, values, u';'), u"a=1;b=2;c=");
  EXPECT_EQ(P::ReplaceTokens(u"a; b;c", [](const String& s) { return UpperCase(s); }, u';'),
            u"A;B;C");

  TNameValueArrayRec recs = P::SplitIntoNameValueRecs(u"a = 1;b=2", u';');
  EXPECT_EQ(recs.JoinRecs(), u"a=1;b=2");
  TNameValueArrayRec inv = P::SplitIntoNameValueRecsInv(u"a=1;b=2", u';');
  EXPECT_EQ(inv.Recs[1].Name + inv.Recs[1].Value, u"2b");
  EXPECT_EQ(P::SplitIntoNameValueRecsSep(u"a:1", u';', u':', true).Recs[0].Name, u"1");

  TNameValueIntArray ints = P::SplitIntoValueRecs(u"a=1; 5 ;x;b=", u';');
  ASSERT_EQ(ints.size(), 4u);
  EXPECT_EQ(ints[1].Name + u"=" + IntToStr(ints[1].Value), u"=5");
  EXPECT_EQ(ints[2].Name + u"=" + IntToStr(ints[2].Value), u"x=-1");
  EXPECT_EQ(ints[3].Name + u"=" + IntToStr(ints[3].Value), u"b=-1");
  EXPECT_THROW(P::SplitIntoValueRecs(u"a=x", u';'), EConvertError);
  TNameValueIntArrayRec rec = P::SplitIntoValueRecsInt(u"a=1;2", u';', u':');
  EXPECT_EQ(rec.fValueDelim, u':');
  EXPECT_EQ(P::JoinValueRecs(rec.Recs, u','), u"a=1,2");
  EXPECT_EQ(P::JoinValueRecs(rec.Recs, u',', true), u"1,2");
}

TEST(ParseUtilsNames, PropValuesGoThroughTheQueryListAndBack) {
  TQueryList list;
  list.Add(u"stale");
  P::ExportPropValuesFromArray({u"g1.k1=v1", u" g1 . k2 = v 2", u"g2.k=v", u"g1.k1=w"}, list);
  ASSERT_EQ(list.Count(), 2);
  EXPECT_EQ(list.GetItemList(u"g1")->GetValue(u"k1"), u"w");
  EXPECT_EQ(list.GetValueByPath(u"g1.k2"), u"v 2");
  TStringDynArray items = {u"stale"};
  P::ImportPropValuesToArray(items, list);
  EXPECT_EQ(items, (TStringDynArray{u"g1.k1=w", u"g1.k2=v 2", u"g2.k=v"}));
  P::ImportPropValuesToArray(items, list, u'/', u':');
  EXPECT_EQ(items[0], u"g1/k1:w");
}

// --- integers and characters ----------------------------------------------------------------

TEST(ParseUtilsIntegers, GetAndSetByIndexWithLastForNegative) {
  bool flag = false;
  EXPECT_EQ(P::GetIntValue(u"1,2,3", u',', -1, &flag), 3);
  EXPECT_TRUE(flag);
  EXPECT_EQ(P::GetIntValue(u"1,2,3", u',', 3, &flag), -1);
  EXPECT_FALSE(flag);
  EXPECT_EQ(P::SetIntValue(u"1,2,3", u',', -1, 9, &flag), u"1|2|9");
  EXPECT_TRUE(flag);
  EXPECT_EQ(P::SetIntValue(u"1, 2", u',', 5, 9, &flag), u"1, 2");
  EXPECT_FALSE(flag);
  EXPECT_EQ(P::SetEquIntValue(u" x = 5", 7, &flag), u"x=7");
  EXPECT_EQ(P::SetEquIntValue(u"5", -3), u"-3");

  int32_t pos = 1;
  EXPECT_EQ(P::DetectIntChars(u"ab12", pos), 3);
  EXPECT_EQ(pos, 3);
  pos = 1;
  EXPECT_EQ(P::DetectIntChars(u"abc", pos), 0);
  int32_t index = 9;
  EXPECT_EQ(P::MinPosAndIndexOfChar(u"a;b,c", u",;", 1, &index), 2);
  EXPECT_EQ(index, 1);
  EXPECT_EQ(P::PosAndIndexOfChar(u"a;b,c", u",;", 1, &index), 4);
  EXPECT_EQ(index, 0);
  EXPECT_EQ(P::MinPosAndIndexOfChar(u"a;b,c", u",;", 5, &index), 0);
  EXPECT_EQ(index, -1);
  EXPECT_EQ(P::PosAndIndexOfChar(u"a;b", u"", 1, &index), 0);
}

// --- file filters ---------------------------------------------------------------------------

TEST(ParseUtilsFilters, MakeAndReadAFilter) {
  const String filter = P::MakeFileFilter({u"Text", u"All", u"Extra"}, {u".txt", u".*"});
  EXPECT_EQ(filter, u"Text (*.txt)|*.txt|All (*.*)|*.*");
  EXPECT_EQ(P::MakeFileFilter({u"Text", u"All"}, {u".txt", u".*"}, 1), u"Text (*.txt)|*.txt");
  EXPECT_EQ(P::IndexOfFileExt(filter, u"TXT"), 1);
  EXPECT_EQ(P::IndexOfFileExt(filter, u".*"), 2);
  EXPECT_EQ(P::IndexOfFileExt(filter, u""), 0);
  EXPECT_EQ(P::IndexOfFileExt(u"Text|*.txt|All", u"txt"), 0);
  const TStringDynArray tokens = P::ExtractTokens(filter, u'|');
  EXPECT_EQ(P::GetExtIndexInArray(u"Txt", tokens), 1);
  EXPECT_EQ(P::GetExtIndexInArray(u"txt", {u"*.txt"}), -1);
  EXPECT_EQ(P::GetExtFromArray(1, tokens, true), u".txt");
  EXPECT_EQ(P::GetExtFromArray(1, tokens, false), u"txt");
  EXPECT_EQ(P::GetExtFromArray(INT_MIN, tokens, false), u"");
  EXPECT_EQ(P::GetFileExtByIndex(filter, 2, true), u".*");
}

// --- brackets -------------------------------------------------------------------------------

TEST(ParseUtilsBrackets, OptionsEndAtTheFirstClosingBracket) {
  EXPECT_EQ(P::ExtractOptionsWithBrackets(u"x(ab)c(d)", u"()", 6), u"d");
  EXPECT_EQ(P::ExtractOptionsWithBrackets(u"x(a(b)c)", u"()"), u"a(b");
  EXPECT_EQ(P::ExtractOptionsWithBrackets(u"x(ab", u"()"), u"");
  EXPECT_EQ(P::ExtractOptionsWithBrackets(u"x(ab)", u"("), u"");
  int32_t open = 99, close = 99;
  EXPECT_EQ(P::ExtractOptionsWithBracketsEx(open, close, u"x(ab)c", u"()"), u"ab");
  EXPECT_EQ(std::pair(open, close), std::pair(2, 5));
  close = 99;
  P::ExtractOptionsWithBracketsEx(open, close, u"xab)", u"()");
  EXPECT_EQ(std::pair(open, close), std::pair(0, 99));
  P::ExtractOptionsWithBracketsEx(open, close, u"x(ab", u"()");
  EXPECT_EQ(std::pair(open, close), std::pair(2, 0));

  String head = u"stale";  // a final closing bracket always closes
  EXPECT_EQ(P::ExtractStrAndOptionsWithBrackets(head, u"f(a(b))", u"()"), u"a(b)");
  EXPECT_EQ(head, u"f");
  EXPECT_EQ(P::ExtractStrAndOptionsWithBrackets(head, u"f(a)x)y", u"()"), u"a");
  EXPECT_EQ(P::ExtractStrAndOptionsWithBrackets(head, u" f (ab", u"()"), u"");
  EXPECT_EQ(head, u" f ");
  EXPECT_EQ(P::ExtractStrAndOptionsWithBrackets(head, u"()", u"()"), u"");
  EXPECT_EQ(P::ExtractStrAndOptionsWithBrackets(head, u"a||", u"||"), u"");
  EXPECT_EQ(head, u"a");
}

TEST(ParseUtilsBrackets, SplitFindsAPairOrLeavesThePositions) {
  int32_t open = 0, close = 0;
  EXPECT_TRUE(P::SplitStrWithBrackets(u"|a|b|", u"|", open, close, 2));
  EXPECT_EQ(std::pair(open, close), std::pair(3, 5));
  open = close = 77;
  EXPECT_FALSE(P::SplitStrWithBrackets(u"a[b", u"[]", open, close));
  EXPECT_FALSE(P::SplitStrWithBrackets(u"a[b]", u"", open, close));
  EXPECT_EQ(std::pair(open, close), std::pair(77, 77));
  String left, inner, right;
  EXPECT_TRUE(P::SplitStrWithBracketsPtr(u"Ch[12]x[3]", u"[]", &left, &inner, &right));
  EXPECT_EQ(left + u"|" + inner + u"|" + right, u"Ch|12|x[3]");
  EXPECT_TRUE(P::SplitStrWithBracketsPtr(u"[]", u"[]", nullptr, &inner));
  EXPECT_EQ(inner, u"");
  EXPECT_FALSE(P::SplitStrWithBracketsPtr(u"Ch12", u"[]", &left));
  EXPECT_EQ(left, u"Ch");
}

}  // namespace
}  // namespace vex
