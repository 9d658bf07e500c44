#include "vex/platform/variant.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "vex/platform/datetime.h"
#include "vex/platform/exceptions.h"

namespace vex {
namespace {

String CastError(const Variant& v, int target) {
  try {
    switch (target) {
      case 0:
        v.AsInteger();
        break;
      case 1:
        v.AsString();
        break;
      default:
        v.AsDouble();
        break;
    }
  } catch (const EVariantError& e) {
    return e.Message();
  }
  return u"(no error)";
}

TEST(VariantKinds, EachConstructorGivesItsTypeCode) {
  EXPECT_EQ(VarType(Variant()), varEmpty);
  EXPECT_EQ(VarType(Null()), varNull);
  EXPECT_EQ(VarType(Variant(true)), varBoolean);
  EXPECT_EQ(VarType(Variant(5)), varInteger);
  EXPECT_EQ(VarType(Variant(int16_t{5})), varInteger);
  EXPECT_EQ(VarType(Variant(uint32_t{5})), varInt64);
  EXPECT_EQ(VarType(Variant(int64_t{5})), varInt64);
  EXPECT_EQ(VarType(Variant(2.5)), varDouble);
  EXPECT_EQ(VarType(Variant::FromDate(1.5)), varDate);
  EXPECT_EQ(VarType(Variant(u"s")), varUString);
  EXPECT_EQ(VarType(VarArrayOf({1, u"a"})), varArray | varVariant);
  EXPECT_TRUE(VarIsEmpty(Unassigned()));
  EXPECT_FALSE(VarIsEmpty(Null()));
  EXPECT_TRUE(VarIsNull(Null()));
  EXPECT_FALSE(VarIsNull(Variant()));
  EXPECT_TRUE(VarIsArray(VarArrayOf({})));
}

TEST(VariantConversions, ToString) {
  EXPECT_EQ(Variant().AsString(), u"");
  EXPECT_EQ(Variant(true).AsString(), u"True");
  EXPECT_EQ(Variant(false).AsString(), u"False");
  EXPECT_EQ(Variant(-12).AsString(), u"-12");
  EXPECT_EQ(Variant(INT64_MIN).AsString(), u"-9223372036854775808");
  EXPECT_EQ(Variant(1.0 / 3).AsString(), u"0.333333333333333");
  EXPECT_EQ(Variant::FromDate(EncodeDate(2024, 2, 29)).AsString(),
            FormatDateTime(u"ddddd", EncodeDate(2024, 2, 29)));
  EXPECT_EQ(VarToStr(Null()), u"");
  EXPECT_EQ(CastError(Null(), 1),
            u"Could not convert variant of type (Null) into type (UnicodeString)");
  EXPECT_THROW(VarToStr(VarArrayOf({1})), EVariantError);
}

TEST(VariantConversions, ToNumbers) {
  EXPECT_EQ(Variant().AsInteger(), 0);
  EXPECT_EQ(Variant(true).AsInteger(), -1);  // the platform's True is all bits set
  EXPECT_EQ(Variant(2.5).AsInteger(), 2);    // ties go to even, as the platform rounds
  EXPECT_EQ(Variant(3.5).AsInteger(), 4);
  EXPECT_EQ(Variant(-2.5).AsInt64(), -2);
  EXPECT_EQ(Variant(u" 42").AsInteger(), 42);
  EXPECT_EQ(Variant(u"$1F").AsInteger(), 31);
  EXPECT_EQ(Variant(u"1.5").AsDouble(), 1.5);
  EXPECT_EQ(Variant(u"2.5").AsInteger(), 2);
  EXPECT_EQ(Variant(u"9223372036854775807").AsInt64(), INT64_MAX);
  EXPECT_EQ(Variant(int64_t{7}).AsInteger(), 7);
  EXPECT_EQ(Variant(12).AsDouble(), 12.0);
  EXPECT_EQ(Variant::FromDate(2.25).AsDouble(), 2.25);
  EXPECT_EQ(Variant(3.75).AsDateTime(), 3.75);
}

TEST(VariantConversions, ImpossibleConversionsRaise) {
  EXPECT_EQ(CastError(Variant(u"abc"), 0),
            u"Could not convert variant of type (UnicodeString) into type (Integer)");
  EXPECT_EQ(CastError(Null(), 2), u"Could not convert variant of type (Null) into type (Double)");
  EXPECT_EQ(CastError(Variant(int64_t{1} << 40), 0),
            u"Could not convert variant of type (Int64) into type (Integer)");
  EXPECT_EQ(CastError(VarArrayOf({1}), 0),
            u"Could not convert variant of type (Array Variant) into type (Integer)");
  EXPECT_THROW(Variant(1e300).AsInt64(), EVariantError);
  EXPECT_THROW(Variant(u"1e3x").AsDouble(), EVariantError);
  EXPECT_THROW(Variant(u"yes").AsBoolean(), EVariantError);
}

TEST(VariantConversions, ToBoolean) {
  EXPECT_TRUE(Variant(u"TRUE").AsBoolean());
  EXPECT_FALSE(Variant(u"false").AsBoolean());
  EXPECT_TRUE(Variant(u"-1").AsBoolean());
  EXPECT_FALSE(Variant(u"0").AsBoolean());
  EXPECT_TRUE(Variant(0.5).AsBoolean());
  EXPECT_FALSE(Variant().AsBoolean());
}

TEST(VariantEquality, ComparesValuesAcrossNumericKinds) {
  EXPECT_EQ(Variant(1), Variant(1.0));
  EXPECT_EQ(Variant(int64_t{5}), Variant(5));
  EXPECT_EQ(Variant(true), Variant(-1));
  EXPECT_EQ(Variant(), Variant());
  EXPECT_EQ(Null(), Null());
  EXPECT_FALSE(Variant() == Null());
  EXPECT_FALSE(Variant(u"1") == Variant(1));  // text and numbers are never equal
  EXPECT_FALSE(Variant(u"a") == Variant(u"A"));
  EXPECT_FALSE(Variant(INT64_MAX) == Variant(INT64_MAX - 1));  // compared exactly, not as doubles
  EXPECT_EQ(VarArrayOf({1, u"x", VarArrayOf({Null()})}),
            VarArrayOf({1.0, u"x", VarArrayOf({Null()})}));
  EXPECT_FALSE(VarArrayOf({1}) == VarArrayOf({1, 2}));
}

TEST(VariantArrays, IndexingIsBoundsChecked) {
  Variant a = VarArrayOf({1, u"two", 3.0});
  EXPECT_EQ(a.ArrayLength(), 3u);
  EXPECT_EQ(a[1].AsString(), u"two");
  a[1] = 2;
  EXPECT_EQ(a[1].AsInteger(), 2);
  EXPECT_THROW(a[3], EVariantError);
  EXPECT_THROW(Variant(1)[0], EVariantError);
  EXPECT_EQ(Variant(1).ArrayLength(), 0u);
  Variant copy = a;
  copy[0] = u"changed";
  EXPECT_EQ(a[0].AsInteger(), 1);  // arrays are values: copies do not share items
}

}  // namespace
}  // namespace vex
