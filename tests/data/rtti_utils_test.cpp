#include "vex/data/rtti_utils.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "platform/component_test_classes.h"
#include "vex/companion/query_list.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"
#include "vex/text/convert_utils.h"

namespace rtti_utils_test {

using vex::String;

enum TColor { clRed, clGreen, clBlue };
enum TPlainEnum : int16_t { peA, peB };  // not described
VEX_DESCRIBE_ENUM(TColor, clRed, clGreen, clBlue)

struct TPair {
  int32_t A;
  String S;
  bool operator==(const TPair&) const = default;
};
VEX_DESCRIBE_RECORD(TPair, A, S)

struct TItem {
  int32_t Id;
  String Name;
  TColor Color;
  bool On;
  bool operator==(const TItem&) const = default;
};
VEX_DESCRIBE_RECORD(TItem, Id, Name, Color, On)

struct TDoc {
  TPair Head;
  TItem Fixed[2];
  std::vector<TItem> Items;
  std::vector<int64_t> Big;
  double D;
  std::array<std::vector<TPair>, 2> Nested;
  vex::Char Ch;  // not a simple kind: passed over
  bool operator==(const TDoc&) const = default;
};
VEX_DESCRIBE_RECORD(TDoc, Head, Fixed, Items, Big, D, Nested, Ch)

}  // namespace rtti_utils_test

namespace vex {
namespace {

using namespace rtti_utils_test;

std::vector<String> Lines(const TStrings& list) {
  std::vector<String> lines;
  for (int32_t i = 0; i < list.Count(); ++i) lines.push_back(list[i]);
  return lines;
}

using Lines_t = std::vector<String>;

TEST(RttiUtilsKinds, SimpleAndStringKinds) {
  for (int k = tkUnknown; k <= tkUString; ++k) {
    const auto kind = static_cast<TTypeKind>(k);
    const bool is_string =
        kind == tkString || kind == tkLString || kind == tkWString || kind == tkUString;
    const bool is_simple = is_string || kind == tkInteger || kind == tkEnumeration ||
                           kind == tkFloat || kind == tkInt64;
    EXPECT_EQ(TRttiUtils::IsStringKind(kind), is_string) << k;
    EXPECT_EQ(TRttiUtils::IsSimpleKind(kind), is_simple) << k;
  }
}

TEST(RttiUtilsEnums, NamesAndOrdinalsBothWays) {
  PTypeInfo color = TypeInfo<TColor>();
  EXPECT_EQ(TRttiUtils::IndexToTypeName(color, 2), u"clBlue");
  EXPECT_EQ(TRttiUtils::IndexToTypeName(TypeInfo<bool>(), 0), u"False");
  // An ordinal without a member keeps its number, which reads back.
  EXPECT_EQ(TRttiUtils::IndexToTypeName(color, 7), u"7");
  EXPECT_THROW(TRttiUtils::IndexToTypeName(color, 7, true), EConvertError);
  EXPECT_EQ(TRttiUtils::TypeNameToIndex(color, u"CLGREEN", -1), 1);
  EXPECT_EQ(TRttiUtils::TypeNameToIndex(color, u"2", -1), 2);
  EXPECT_EQ(TRttiUtils::TypeNameToIndex(color, u"7", -1), -1);  // no member: not storable
  EXPECT_EQ(TRttiUtils::TypeNameToIndex(TypeInfo<TPlainEnum>(), u"7", -1), 7);
  EXPECT_EQ(TRttiUtils::IndexToTypeName(TypeInfo<TPlainEnum>(), 1), u"1");
  EXPECT_EQ(TRttiUtils::TypeNameToIndex(color, u"clPurple", -1), -1);
  EXPECT_EQ(TRttiUtils::TypeNameToIndex(TypeInfo<int32_t>(), u"clRed", 5), 5);
}

TEST(RttiUtilsList, RecordWithoutIndentGivesDottedLinesWithUnquotedStrings) {
  TPair p{-12, u"it's"};
  TStringList list;
  TRttiUtils::WriteVariableToList(TypeInfo<TPair>(), &p, u"R", list);
  EXPECT_EQ(Lines(list), (Lines_t{u"R.A = -12", u"R.S = it's"}));
  EXPECT_EQ(TStrings::ObjectToTag(list.Objects(0)), tkInteger);
  EXPECT_EQ(TStrings::ObjectToTag(list.Objects(1)), tkUString);

  list.Clear();
  TRttiUtils::WriteVariableToList(TypeInfo<TPair>(), &p, u"", list, true);
  EXPECT_EQ(Lines(list), (Lines_t{u"A: Integer = -12", u"S: string = it's"}));
}

TEST(RttiUtilsList, ArraysNameTheirElementsAndEmptyDynamicArraysWriteNothing) {
  TDoc doc{};
  doc.Fixed[1] = {5, u"x", clBlue, true};
  doc.Big = {std::numeric_limits<int64_t>::min()};
  doc.D = 0.1;
  TStringList list;
  TRttiUtils::WriteVariableToList(TypeInfo<TDoc>(), &doc, u"D", list);
  EXPECT_EQ(Lines(list),
            (Lines_t{u"D.Head.A = 0", u"D.Head.S = ", u"D.Fixed[0].Id = 0", u"D.Fixed[0].Name = ",
                     u"D.Fixed[0].Color = clRed", u"D.Fixed[0].On = False", u"D.Fixed[1].Id = 5",
                     u"D.Fixed[1].Name = x", u"D.Fixed[1].Color = clBlue", u"D.Fixed[1].On = True",
                     u"D.Big[0] = -9223372036854775808", u"D.D = 0.1"}));
}

TEST(RttiUtilsList, IndentedListHasStructureLinesAndTabs) {
  TDoc doc{};
  doc.Items = {{1, u"a", clGreen, false}};
  doc.Nested[1] = {{2, u"b"}};
  TStringList list;
  TRttiUtils::WriteVariableToList(TypeInfo<TDoc>(), &doc, u"D", list, true, true);
  const Lines_t expected{
      u"D: TDoc",
      u"\tHead: TPair",
      u"\t\tA: Integer = 0",
      u"\t\tS: string = ",
      u"\tFixed: array[0..1] of TItem",
      u"\tFixed[0]: TItem",
      u"\t\tId: Integer = 0",
      u"\t\tName: string = ",
      u"\t\tColor: TColor = clRed",
      u"\t\tOn: Boolean = False",
      u"\tFixed[1]: TItem",
      u"\t\tId: Integer = 0",
      u"\t\tName: string = ",
      u"\t\tColor: TColor = clRed",
      u"\t\tOn: Boolean = False",
      u"\tItems: TArray<TItem>",
      u"\tItems[0]: TItem",
      u"\t\tId: Integer = 1",
      u"\t\tName: string = a",
      u"\t\tColor: TColor = clGreen",
      u"\t\tOn: Boolean = False",
      u"\tBig: TArray<Int64>",
      u"\tD: Double = 0",
      u"\tNested: array[0..1] of TArray<TPair>",
      u"\tNested[0]: TArray<TPair>",
      u"\tNested[1]: TArray<TPair>",
      u"\tNested[1][0]: TPair",
      u"\t\tA: Integer = 2",
      u"\t\tS: string = b",
  };
  EXPECT_EQ(Lines(list), expected);
  EXPECT_EQ(TStrings::ObjectToTag(list.Objects(0)), tkRecord);
}

TEST(RttiUtilsList, ValueAsTagMovesOrdinalValuesIntoTheTag) {
  TItem item{-7, u"n", clBlue, true};
  TStringList list;
  TRttiUtils::WriteVariableToList(TypeInfo<TItem>(), &item, u"I", list, false, false, true);
  EXPECT_EQ(Lines(list), (Lines_t{u"I.Id", u"I.Name = n", u"I.Color", u"I.On"}));
  EXPECT_EQ(TStrings::ObjectToTag(list.Objects(0)), -7);
  EXPECT_EQ(TStrings::ObjectToTag(list.Objects(1)), tkUString);
  EXPECT_EQ(TStrings::ObjectToTag(list.Objects(2)), clBlue);
  EXPECT_EQ(TStrings::ObjectToTag(list.Objects(3)), 1);
}

TEST(RttiUtilsList, AppendsInsideOneUpdate) {
  TDoc doc{};
  TStringList list;
  list.Add(u"kept");
  int changes = 0;
  list.OnChange = [&](TObject*) { ++changes; };
  TRttiUtils::WriteVariableToList(TypeInfo<TDoc>(), &doc, u"D", list);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(list[0], u"kept");
  EXPECT_EQ(list.Count(), 12);
}

TEST(RttiUtilsWalk, NamesFollowTheLevelAndStructuresAreAnnounced) {
  TDoc doc{};
  doc.Items.resize(1);
  std::vector<String> names;
  std::vector<bool> empty;
  auto collect = [&](const String& name, const String&, const Variant& value) {
    names.push_back(name);
    empty.push_back(value.IsEmpty());
  };
  TRttiUtils::WriteVariable(TypeInfo<TPair>(), &doc.Head, u"", collect);
  EXPECT_EQ(names, (Lines_t{u"A", u"S"}));

  names.clear();
  TRttiUtils::WriteFields(&doc.Head, u"P", TypeInfo<TPair>()->Fields, collect, 2);
  EXPECT_EQ(names, (Lines_t{u"\t\tA", u"\t\tS"}));  // no prefix with a level

  names.clear();
  empty.clear();
  TRttiUtils::WriteVariableByType(TypeInfo<std::vector<TItem>>(), &doc.Items, u"L", collect, -1,
                                  true);
  EXPECT_EQ(names, (Lines_t{u"L", u"L[0]", u"L[0].Id", u"L[0].Name", u"L[0].Color", u"L[0].On"}));
  EXPECT_EQ(empty, (std::vector<bool>{true, true, false, false, false, false}));

  names.clear();
  TRttiUtils::WriteVariable(nullptr, &doc, u"D", collect);
  TRttiUtils::WriteVariable(TypeInfo<TDoc>(), nullptr, u"D", collect);
  EXPECT_TRUE(names.empty());
}

TEST(RttiUtilsWalk, ReadWriteCallbacksReplaceValues) {
  TItem item{1, u"ab", clRed, false};
  TRttiUtils::ReadWriteVariableByType(TypeInfo<TItem>(), &item, u"I",
                                      [](const String& name, Variant& value) {
                                        if (name == u"I.Id") value = 41;
                                        if (name == u"I.Name") value = Variant();  // kept
                                        if (name == u"I.Color") value = 2;
                                        if (name == u"I.On") value = true;
                                      });
  EXPECT_EQ(item, (TItem{41, u"ab", clBlue, true}));

  std::vector<String> types;
  TRttiUtils::ReadVariable(TypeInfo<TItem>(), &item, u"",
                           [&](const String&, const String& type, Variant& value) {
                             types.push_back(type);
                             if (type == u"string") value = u"new";
                           });
  EXPECT_EQ(types, (Lines_t{u"Integer", u"string", u"TColor", u"Boolean"}));
  EXPECT_EQ(item.Name, u"new");

  EXPECT_THROW(TRttiUtils::ReadWriteVariableByType(
                   TypeInfo<TItem>(), &item, u"",
                   [](const String&, Variant& value) { value = u"not a number"; }),
               EVariantError);
}

TEST(RttiUtilsWalk, ProcessVariableGivesTypesAndAddresses) {
  TDoc doc{};
  doc.Big = {1, 2};
  std::vector<void*> addresses;
  TRttiUtils::ProcessVariable(TypeInfo<TDoc>(), &doc, u"D",
                              [&](const String& name, const TRttiType* type, void* addr) {
                                if (type->Kind == tkInt64) addresses.push_back(addr);
                                if (name == u"D.Head.A") *static_cast<int32_t*>(addr) = 9;
                              });
  EXPECT_EQ(addresses, (std::vector<void*>{&doc.Big[0], &doc.Big[1]}));
  EXPECT_EQ(doc.Head.A, 9);
}

TEST(RttiUtilsStore, StringListHoldsQuotedNameValueLines) {
  TPair p{3, u"it's"};
  TStringList list;
  TRttiUtils::ProcessVariableWithList(TypeInfo<TPair>(), &p, u"R", list);
  EXPECT_EQ(Lines(list), (Lines_t{u"R.A=3", u"R.S='it's'"}));
  p.A = 4;  // an existing entry is overwritten in place
  TRttiUtils::ProcessVariableWithList(TypeInfo<TPair>(), &p, u"R", list);
  EXPECT_EQ(Lines(list), (Lines_t{u"R.A=4", u"R.S='it's'"}));

  TPair back{};
  TRttiUtils::ProcessVariableWithList(TypeInfo<TPair>(), &back, u"R", list, false, false, true);
  EXPECT_EQ(back, (TPair{4, u"it's"}));
}

TEST(RttiUtilsStore, QueryListStoresByPath) {
  TDoc doc{};
  doc.Items = {{1, u"a", clGreen, true}};
  TQueryList list;
  TRttiUtils::ProcessVariableWithList(TypeInfo<TDoc>(), &doc, u"D", list, true);
  EXPECT_EQ(list.GetValueByPath(u"D.Items[0].Color"), u"clGreen");
  EXPECT_EQ(list.GetValueByPath(u"D.Items"), u"1");
  EXPECT_EQ(list.GetValueByPath(u"D.Fixed[1].Name"), u"''");
  EXPECT_EQ(list.GetValueByPath(u"D.Nested[0]"), u"0");
  ASSERT_NE(list.GetItemByPath(u"D.Items[0]"), nullptr);
}

TEST(RttiUtilsStore, MissingEntriesLeaveValuesExactly) {
  TDoc doc{};
  doc.D = 0.1 + 0.2;  // its 15-digit text would read back as 0.3
  doc.Head = {5, u"s"};
  TStringList list;
  list.Add(u"D.Head.A=6");
  TRttiUtils::ProcessVariableWithList(TypeInfo<TDoc>(), &doc, u"D", list, true, false, true);
  EXPECT_EQ(doc.Head, (TPair{6, u"s"}));
  EXPECT_EQ(doc.D, 0.1 + 0.2);
}

TEST(RttiUtilsStore, BadNumberTextRaisesAfterTheEarlierFields) {
  // Head reads, Fixed[0].Id fails, Fixed[0].Name after it stays untouched.
  for (const char16_t* bad : {u"x1", u"2147483648", u"", u"1.5", u"1 "}) {
    TDoc doc{};
    doc.Fixed[0].Name = u"old";
    TStringList list;
    list.Add(u"D.Head.A=7");
    list.Add(u"D.Head.S='s'");
    list.Add(String(u"D.Fixed[0].Id=") + bad);
    list.Add(u"D.Fixed[0].Name='new'");
    EXPECT_THROW(
        TRttiUtils::ProcessVariableWithList(TypeInfo<TDoc>(), &doc, u"D", list, false, false, true),
        EConvertError)
        << ToUtf8(bad);
    EXPECT_EQ(doc.Head, (TPair{7, u"s"}));
    EXPECT_EQ(doc.Fixed[0].Id, 0);
    EXPECT_EQ(doc.Fixed[0].Name, u"old");
  }
  // A number outside a narrower integer type is refused, not cut to its low bits.
  for (const char16_t* text : {u"B=256", u"B=-1"}) {
    uint8_t b = 9;
    TStringList list;
    list.Add(text);
    EXPECT_THROW(TRttiUtils::ProcessVariableWithList(TypeInfo<uint8_t>(), &b, u"B", list, false,
                                                     false, true),
                 EConvertError);
    EXPECT_EQ(b, 9);
  }

  TPair p{1, u"old"};
  TQueryList list;
  list.ImportFromStrWithTabs(u"R\r\n\tA=$10\r\n\tS='a'\r\nT\r\n\tA=bad\r\n");
  TRttiUtils::ProcessVariableWithList(TypeInfo<TPair>(), &p, u"R", list, false, false, true);
  EXPECT_EQ(p, (TPair{16, u"a"}));
  EXPECT_THROW(
      TRttiUtils::ProcessVariableWithList(TypeInfo<TPair>(), &p, u"T", list, false, false, true),
      EConvertError);
  EXPECT_EQ(p, (TPair{16, u"a"}));

  TDoc doc{};
  TStringList floats;
  floats.Add(u"D.Head.A=1");
  floats.Add(u"D.D=1,5");
  EXPECT_THROW(
      TRttiUtils::ProcessVariableWithList(TypeInfo<TDoc>(), &doc, u"D", floats, false, false, true),
      EConvertError);
  EXPECT_EQ(doc.Head.A, 1);
}

TEST(RttiUtilsStore, LengthsAreStoredOnlyWithTheFlag) {
  TDoc doc{};
  doc.Items = {{1, u"a", clGreen, true}, {2, u"b", clBlue, false}};
  TStringList list;
  TRttiUtils::ProcessVariableWithList(TypeInfo<TDoc>(), &doc, u"D", list);
  EXPECT_LT(list.IndexOfName(u"D.Items"), 0);
  TDoc back{};
  TRttiUtils::ProcessVariableWithList(TypeInfo<TDoc>(), &back, u"D", list, false, false, true);
  EXPECT_TRUE(back.Items.empty());  // nothing to size the array from
  back.Items.resize(1);
  TRttiUtils::ProcessVariableWithList(TypeInfo<TDoc>(), &back, u"D", list, false, false, true);
  ASSERT_EQ(back.Items.size(), 1u);
  EXPECT_EQ(back.Items[0], doc.Items[0]);

  list.Clear();
  TRttiUtils::ProcessVariableWithList(TypeInfo<TDoc>(), &doc, u"D", list, true);
  EXPECT_EQ(list.Values(u"D.Items"), u"2");
  TDoc fresh{};
  TRttiUtils::ProcessVariableWithList(TypeInfo<TDoc>(), &fresh, u"D", list, true, false, true);
  EXPECT_EQ(fresh, doc);
}

TEST(RttiUtilsStore, BadLengthsAreRefused) {
  for (const char16_t* length : {u"-1", u"100000", u"two"}) {
    TStringList list;
    list.Add(String(u"D.Items=") + length);
    TDoc doc{};
    EXPECT_THROW(
        TRttiUtils::ProcessVariableWithList(TypeInfo<TDoc>(), &doc, u"D", list, true, false, true),
        EConvertError)
        << ToUtf8(length);
    EXPECT_TRUE(doc.Items.empty());
  }
}

// A component whose every property read is counted.
class TCountingComponent : public TComponent {
  VEX_CLASS(TCountingComponent, TComponent)

 public:
  using TComponent::TComponent;
  mutable int reads = 0;
  static void DescribeProperties(TClassBuilder<TCountingComponent>& c) {
    c.Integer(
        u"Hash", [](const TCountingComponent& t) { return ++t.reads; },
        [](TCountingComponent&, int32_t) {});
    c.Integer(
        u"Width", [](const TCountingComponent& t) { return ++t.reads; },
        [](TCountingComponent&, int32_t) {});
  }
};

TEST(RttiUtilsProps, GetPropStrReadsPublishedPropertiesAsText) {
  test::TTestComponent comp(nullptr);
  comp.font.SetSize(11);
  comp.enabled = false;
  comp.ratio = 0.25;
  bool found = false;
  EXPECT_EQ(TRttiUtils::GetPropStr(&comp, u"Font.Size", &found), u"11");
  EXPECT_TRUE(found);
  EXPECT_EQ(TRttiUtils::GetPropStr(&comp, u"Enabled"), u"False");
  EXPECT_EQ(TRttiUtils::GetPropStr(&comp, u"Ratio"), u"0.25");
  EXPECT_EQ(TRttiUtils::GetPropStr(&comp, u"Font", &found), u"");
  EXPECT_TRUE(found);
  EXPECT_EQ(TRttiUtils::GetPropStr(&comp, u"Font.Colour", &found), u"");
  EXPECT_FALSE(found);
}

TEST(RttiUtilsProps, HashIsTheAddressAndNeverReadsProperties) {
  TCountingComponent comp(nullptr);
  bool found = false;
  EXPECT_EQ(TRttiUtils::GetPropStr(&comp, u"Hash", &found), TConvertUtils::PtrToStr(&comp));
  EXPECT_TRUE(found);
  EXPECT_EQ(comp.reads, 0);
  // Only the exact name is special: any other case is an ordinary property name.
  EXPECT_EQ(TRttiUtils::GetPropStr(&comp, u"HASH", &found), u"1");
  EXPECT_EQ(comp.reads, 1);
  TObject plain;
  EXPECT_EQ(TRttiUtils::GetPropStr(&plain, u"Hash"), TConvertUtils::PtrToStr(&plain));
  EXPECT_EQ(TRttiUtils::GetPropStr(&plain, u"Width", &found), u"");
  EXPECT_FALSE(found);
}

// --- round trip over random values ------------------------------------------------------------

class Rng {
 public:
  explicit Rng(uint32_t seed) : gen_(seed) {}
  int64_t Int(int64_t lo, int64_t hi) {
    return std::uniform_int_distribution<int64_t>(lo, hi)(gen_);
  }
  int32_t Int32() {
    static constexpr int32_t kEdges[] = {0, -1, INT32_MIN, INT32_MAX};
    return Int(0, 3) == 0 ? kEdges[Int(0, 3)] : static_cast<int32_t>(Int(INT32_MIN, INT32_MAX));
  }
  int64_t Int64() {
    static constexpr int64_t kEdges[] = {INT64_MIN, INT64_MAX, 0, -1};
    return Int(0, 3) == 0 ? kEdges[Int(0, 3)] : Int(INT64_MIN, INT64_MAX);
  }
  double Double() {
    switch (Int(0, 5)) {
      case 0:
        return std::numeric_limits<double>::infinity() * (Int(0, 1) ? 1 : -1);
      case 1:
        return static_cast<double>(Int(-1000000, 1000000)) / 1000;
      default:
        return std::ldexp(static_cast<double>(Int(-(1LL << 52), 1LL << 52)),
                          static_cast<int>(Int(-1070, 960)));
    }
  }
  String Str() {
    static constexpr char16_t kChars[] = u"ab'\"=.\r\n\t[] \u00e9\u4e2d";
    String s;
    for (int64_t n = Int(0, 6); n > 0; --n) s += kChars[Int(0, std::size(kChars) - 2)];
    return s;
  }
  TItem Item() { return {Int32(), Str(), static_cast<TColor>(Int(0, 2)), Int(0, 1) == 1}; }
  TPair Pair() { return {Int32(), Str()}; }

 private:
  std::mt19937 gen_;
};

TDoc RandomDoc(Rng& rng) {
  TDoc d{};
  d.Head = rng.Pair();
  d.Fixed[0] = rng.Item();
  d.Fixed[1] = rng.Item();
  for (int64_t n = rng.Int(0, 3); n > 0; --n) d.Items.push_back(rng.Item());
  for (int64_t n = rng.Int(0, 3); n > 0; --n) d.Big.push_back(rng.Int64());
  d.D = rng.Double();
  for (auto& nested : d.Nested) {
    for (int64_t n = rng.Int(0, 2); n > 0; --n) nested.push_back(rng.Pair());
  }
  return d;
}

template <class List>
void ExpectRoundTrip(const TDoc& doc) {
  List list;
  TRttiUtils::ProcessVariableWithList(TypeInfo<TDoc>(), const_cast<TDoc*>(&doc), u"Doc", list,
                                      true);
  TDoc back{};
  TRttiUtils::ProcessVariableWithList(TypeInfo<TDoc>(), &back, u"Doc", list, true, false, true);
  TDoc expected = doc;
  expected.D = StrToFloat(FloatToStr(doc.D));  // floats keep their 15-digit text
  EXPECT_EQ(back, expected) << ToUtf8(FloatToStr(doc.D));
}

TEST(RttiUtilsRoundTrip, RandomDocumentsComeBackThroughBothListKinds) {
  Rng rng(20261123);
  for (int i = 0; i < 300; ++i) {
    const TDoc doc = RandomDoc(rng);
    ExpectRoundTrip<TStringList>(doc);
    ExpectRoundTrip<TQueryList>(doc);
    if (HasFailure()) break;
  }
}

}  // namespace
}  // namespace vex
