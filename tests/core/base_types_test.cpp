#include "vex/core/base_types.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

// The ordinals are part of the interface (they are stored and passed as numbers): the last
// member of each enumeration pins its count and a middle one its order.
static_assert(lctRegExp == 4 && lctContains == 3);
static_assert(cmpWholeWords == 1 && lpInverse == 2 && bpXor == 3 && sdtString == 2);
static_assert(dlgQuery == 3 && dlgNumber == 5 && jmpCancel == 2 && cctGroupBox == 4);
static_assert(lotGetCount == 4 && lotFindIndex == 10);
static_assert(dotSetOwner == 6 && dtRemove == 7 && dotSetData == 9);
static_assert(cptCaption == 6 && cptRegName == 16);
static_assert(errNoNumber == 4 && errNoAddress == 7);
static_assert(ckParameter == 6 && ckBinValue == 10);
static_assert(ucvNotBoolean == 1 && upSigner == 2 && upConductor == 3 && uatConduct == 3);
static_assert(etLoad == 4 && etClone == 9);
static_assert(sizeof(TDataOperType) == 1 && sizeof(TControlPropType) == 1);
static_assert(std::is_same_v<TUserPriveleges, Set<TUserPrivelege>>);

// Counts the OnChange notifications of a list.
struct ChangeCounter {
  explicit ChangeCounter(TStringList& list) {
    list.OnChange = [this](TObject*) { ++changes; };
  }
  int changes = 0;
};

TNameValueArrayRec StrRecs(std::initializer_list<TNameValue> recs) {
  TNameValueArrayRec a = TNameValueArrayRec::Create(u';', u'=');
  for (const auto& r : recs) a.AddNameValue(r.Name, r.Value);
  return a;
}

TNameValueIntArrayRec IntRecs(std::initializer_list<TNameValueInt> recs) {
  TNameValueIntArrayRec a = TNameValueIntArrayRec::Create(u';', u'=');
  for (const auto& r : recs) a.AddNameValue(r.Name, r.Value);
  return a;
}

String Joined(const TNameValue& nv) { return nv.Name + u"|" + nv.Value; }

// --- TNameValue / TNameValueInt parsing ------------------------------------------------------

TEST(NameValueCreate, SplitsAtTheFirstDelimiterAndTrims) {
  EXPECT_EQ(Joined(TNameValue::Create(u"  k = v = w ", false, u'=')), u"k|v = w");
  EXPECT_EQ(Joined(TNameValue::Create(u"  k = v = w ", true, u'=')), u"v = w|k");
  EXPECT_EQ(Joined(TNameValue::Create(u"\t\x01k:\x1Fv\r", false, u':')), u"k|v");  // codes <= 32
  // Without a delimiter the untrimmed text is the name, swapped or not.
  EXPECT_EQ(Joined(TNameValue::Create(u" abc ", true, u'=')), u" abc |");
  // The delimiter is dropped only for an empty name.
  EXPECT_EQ(TNameValue::Create(u"a", u"1").JoinFields(u':'), u"a:1");
  EXPECT_EQ(TNameValue::Create(u"", u"1").JoinFields(u':'), u"1");
  EXPECT_EQ(TNameValue::Create(u"a", u"").JoinFields(u':'), u"a:");
  EXPECT_EQ(TNameValueInt::Create(u"a", -5).JoinFields(), u"a=-5");
  EXPECT_EQ(TNameValueInt::Create(u"", 42).JoinFields(), u"42");
}

TEST(NameValueIntCreate, ParsesNameAndIntegerOrWholeInteger) {
  struct Case {
    const char16_t* init;
    bool swap;
    const char16_t* name;
    int32_t value;
  };
  const Case cases[] = {
      {u"-7", true, u"", -7},
      {u" x ", false, u" x ", 0},  // not an integer: the untrimmed text is the name
      {u"x=abc", false, u"x", 0},  // a bad value is 0
      {u" x = 12 ", false, u"x", 12},
      {u"12 = x", true, u"x", 12},
      {u"x = 12", true, u"12", 0},  // swapped: the left side is the value
      {u"x=99999999999", false, u"x", 0},
      {u"=", false, u"", 0},
  };
  for (const Case& c : cases) {
    const TNameValueInt nv = TNameValueInt::Create(c.init, c.swap);
    EXPECT_EQ(nv.Name, c.name) << ToUtf8(c.init);
    EXPECT_EQ(nv.Value, c.value) << ToUtf8(c.init);
  }
}

TEST(NameValueIntAccept, TakesTheNameAndReportsWhetherTheValueIsAnInteger) {
  TNameValueInt nv = TNameValueInt::Create(u"prev", 9);
  EXPECT_FALSE(nv.Accept(u"no equals 5"));  // keeps the name, zeroes the value
  EXPECT_EQ(nv.Name + u"=" + IntToStr(nv.Value), u"prev=0");
  EXPECT_TRUE(nv.Accept(u" a = -3 "));
  EXPECT_EQ(nv.Name + u"=" + IntToStr(nv.Value), u"a=-3");
  EXPECT_FALSE(nv.Accept(u"b=x"));  // the name is taken even when the value is bad
  EXPECT_EQ(nv.Name + u"=" + IntToStr(nv.Value), u"b=0");
}

// --- the record arrays ----------------------------------------------------------------------

TEST(NameValueArrayRec, AddNameValueOverwritesTheFirstMatchCaseSensitively) {
  TNameValueArrayRec a = TNameValueArrayRec::Create(u';', u'=');
  EXPECT_EQ(a.AddNameValue(u"a", u"1"), 0);
  EXPECT_EQ(a.AddNameValue(u"b", u"x"), 1);
  EXPECT_EQ(a.AddNameValue(u"a", u"2"), 0);
  EXPECT_EQ(a.AddNameValue(u"A", u"3"), 2);
  EXPECT_EQ(a.JoinRecs(), u"a=2;b=x;A=3");
  a.Recs = {{u"k", u"1"}, {u"k", u"2"}, {u"", u"e"}};
  EXPECT_EQ(a.IndexOf(u""), 2);
  EXPECT_EQ(a.AddNameValue(u"k", u"3"), 0);
  EXPECT_EQ(a.Recs[1].Value, u"2");
  a.Clear();
  EXPECT_EQ(a.ValueCount(), 0);

  TNameValueIntArrayRec i = TNameValueIntArrayRec::Create(u',', u':');
  EXPECT_EQ(i.AddNameValue(u"a", 1), 0);
  EXPECT_EQ(i.AddNameValue(u"a", 2), 0);
  EXPECT_EQ(i.AddNameValue(u"A", 3), 1);
  EXPECT_EQ(i.JoinRecs(), u"a:2,A:3");
  i.Clear();
  EXPECT_EQ(i.ValueCount(), 0);
  EXPECT_EQ(i.fRecDelim, u',');  // clearing keeps the delimiters
}

TEST(NameValueArrayRec, MissesResetTheOutputsAsDefined) {
  TNameValueArrayRec a = StrRecs({{u"a", u"1"}});
  String s = u"old";
  EXPECT_EQ(a.FindValue(u"zz", s), -1);
  EXPECT_EQ(s, u"");  // a string is cleared...
  EXPECT_EQ(a.FindValue(u"a", s), 0);
  EXPECT_EQ(s, u"1");
  TNameValueIntArrayRec i = IntRecs({{u"a", 1}, {u"b", 2}, {u"c", 3}});
  int32_t v = 77;
  EXPECT_EQ(i.FindValue(u"zz", v), -1);
  EXPECT_EQ(v, 77);  // ...an integer is left alone

  TNameValueInt out = TNameValueInt::Create(u"x", 9);
  EXPECT_FALSE(i.GetRecBy(5, out));
  EXPECT_EQ(out.Name + u"=" + IntToStr(out.Value), u"=-1");
  EXPECT_FALSE(i.GetRecBy(-1, out));
  EXPECT_TRUE(i.GetRecBy(2, out));
  EXPECT_EQ(out.Name + u"=" + IntToStr(out.Value), u"c=3");
  TNameValue sout = TNameValue::Create(u"x", u"y");
  EXPECT_FALSE(a.GetRecBy(1, sout));
  EXPECT_EQ(Joined(sout), u"|");
  EXPECT_TRUE(a.GetRecBy(0, sout));
  EXPECT_EQ(Joined(sout), u"a|1");
}

TEST(NameValueArrayRec, RecPtrMinusOneIsLastAndOutOfRangeIsNull) {
  TNameValueArrayRec a = TNameValueArrayRec::Create(u';', u'=');
  EXPECT_EQ(a.RecPtr(-1), nullptr);
  a = StrRecs({{u"a", u"1"}, {u"b", u"2"}});
  EXPECT_EQ(a.RecPtr(0), &a.Recs[0]);
  EXPECT_EQ(a.RecPtr(a.ValueCount()), nullptr);
  EXPECT_EQ(a.RecPtr(-2), nullptr);
  a.RecPtr(-1)->Value = u"changed";
  EXPECT_EQ(a.JoinRecs(), u"a=1;b=changed");
  const TNameValueIntArrayRec i = IntRecs({{u"a", 1}});
  EXPECT_EQ(i.RecPtr(-1)->Value, 1);
  EXPECT_EQ(i.RecPtr(1), nullptr);
}

TEST(NameValueArrayRec, JoinRecsDropsOnlyTheLastRecordDelimiterAndQuotesNothing) {
  EXPECT_EQ(TNameValueArrayRec::Create(u';', u'=').JoinRecs(), u"");
  EXPECT_EQ(StrRecs({{u"", u""}}).JoinRecs(), u"=");
  EXPECT_EQ(StrRecs({{u"a;b", u"c=d"}, {u"e", u";"}}).JoinRecs(), u"a;b=c=d;e=;");
  EXPECT_EQ(IntRecs({{u"a", -10}, {u"b", 0}}).JoinRecs(), u"a=-10;b=0");
}

// --- writing into string lists ----------------------------------------------------------------

TEST(NameValueSaveToList, StringArraysReplaceAndIntegerArraysAppendInOneChange) {
  TStringList list;
  list.Add(u"old");
  ChangeCounter counter(list);
  StrRecs({{u"n1", u"v1"}, {u"n2", u"v2"}}).SaveToListEx(list, 4);
  EXPECT_EQ(list.Text(), u"v1=n1\r\nv2=n2\r\n");
  EXPECT_EQ(counter.changes, 1);  // one bracketed change, clear included
  IntRecs({{u"n1", 1}, {u"n2", -2}}).SaveToListEx(list, 3);
  EXPECT_EQ(list.Text(), u"v1=n1\r\nv2=n2\r\nn1=1\r\nn2=-2\r\n");
  EXPECT_EQ(counter.changes, 2);
  StrRecs({{u"a", u"1"}}).SaveToList(list);
  EXPECT_EQ(list[4], u"a=1");
  EXPECT_EQ(counter.changes, 3);
}

TEST(NameValueSaveToList, OptionsSelectTheLine) {
  const TNameValueArrayRec a = StrRecs({{u"n", u"v"}});
  const TNameValueIntArrayRec i = IntRecs({{u"n", 7}});
  const String expected[] = {u"", u"n", u"v", u"n=v", u"v=n", u"", u""};
  const String expected_int[] = {u"", u"n", u"7", u"n=7", u"7=n", u"", u""};
  const uint8_t options[] = {0, 1, 2, 3, 4, 5, 255};
  for (size_t k = 0; k < std::size(options); ++k) {
    TStringList list;
    a.SaveToListEx(list, options[k]);
    i.SaveToListEx(list, options[k]);
    ASSERT_EQ(list.Count(), 2);
    EXPECT_EQ(list[0], expected[k]) << int(options[k]);
    EXPECT_EQ(list[1], expected_int[k]) << int(options[k]);
  }
}

TEST(NameValueSaveToList, IntegerSaveToListWritesTextOrTags) {
  TNameValueIntArrayRec i = TNameValueIntArrayRec::Create(u';', u':');
  i.AddNameValue(u"x", -4);
  i.AddNameValue(u"y", 5);
  TStringList text_list;
  i.SaveToList(text_list, false);
  EXPECT_EQ(text_list.Text(), u"x:-4\r\ny:5\r\n");
  TStringList tag_list;
  i.SaveToList(tag_list, true);
  EXPECT_EQ(tag_list.Text(), u"x\r\ny\r\n");
  EXPECT_EQ(TStrings::ObjectToTag(tag_list.Objects(0)), -4);
  EXPECT_EQ(TStrings::ObjectToTag(tag_list.Objects(1)), 5);
}

// --- free functions and small records ----------------------------------------------------------

TEST(RecordFunctions, ListRecordsOwnTheirLists) {
  TStrListRec rec = GetStrListRec(u"a\r\nb\nc\rd\r\n");
  ASSERT_NE(rec.List, nullptr);
  EXPECT_EQ(rec.List->Count(), 4);
  EXPECT_EQ(rec.List->Strings(3), u"d");
  EXPECT_EQ(GetStrListRec(u"").List->Count(), 0);
  EXPECT_EQ(GetStrRec(u"s").Str, u"s");
  int a = 0, b = 0;
  TListRec pointers = GetListRec({&b, nullptr, &a});
  ASSERT_EQ(pointers.List->Count(), 3);
  EXPECT_EQ(pointers.List->Items(0), &b);
  EXPECT_EQ(pointers.List->Items(2), &a);
  EXPECT_EQ(GetListRec({}).List->Count(), 0);
  const TFileDialogParams p = TFileDialogParams::Create(u"Title", u"Text files", u".txt");
  EXPECT_EQ(p.DlgTitle + u"|" + p.FileHint + u"|" + p.FileExt, u"Title|Text files|.txt");
}

}  // namespace
}  // namespace vex
