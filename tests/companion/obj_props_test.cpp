#include "vex/companion/obj_props.h"

#include <gtest/gtest.h>

#include "platform/component_test_classes.h"
#include "vex/platform/unicode.h"

namespace obj_props_test {
enum class TAlign : int8_t { alNone = -1, alLeft = 2, alRight = 5 };
VEX_DESCRIBE_ENUM(TAlign, alNone, alLeft, alRight)
}  // namespace obj_props_test

namespace vex {
namespace {

using obj_props_test::TAlign;

TEST(ObjPropsEnums, NamesFollowTheMembersValues) {
  PTypeInfo align = TypeInfo<TAlign>();
  EXPECT_EQ(GoodObjTypeName(align, -1), u"alNone");
  EXPECT_EQ(GoodObjTypeName(align, 5), u"alRight");
  EXPECT_EQ(GoodObjTypeName(align, 0), u"");  // between members
  EXPECT_EQ(GoodObjTypeName(TypeInfo<int32_t>(), 0), u"");
  EXPECT_EQ(GoodObjTypeName(nullptr, 0), u"");
  EXPECT_EQ(GoodObjTypeName(TypeInfo<bool>(), 1), u"True");
}

TEST(ObjPropsEnums, OrdinalsByNameIgnoreAsciiCaseOnly) {
  PTypeInfo align = TypeInfo<TAlign>();
  EXPECT_EQ(GoodObjTypeIndex(align, u"ALLEFT", 99), 2);
  EXPECT_EQ(GoodObjTypeIndex(align, u"alNone", 99), -1);
  EXPECT_EQ(GoodObjTypeIndex(align, u"alLeft ", 99), 99);
  EXPECT_EQ(GoodObjTypeIndex(align, u"", 99), 99);
  EXPECT_EQ(GoodObjTypeIndex(TypeInfo<bool>(), u"true", 99), 1);
  EXPECT_EQ(GoodObjTypeIndex(nullptr, u"alLeft", 99), 99);
}

TEST(ObjPropsObjects, ReadsPublishedPropertiesByDottedName) {
  test::TTestComponent comp(nullptr);
  comp.count = 42;
  comp.font.SetName(u"Arial");
  comp.align = test::alBottom;
  Variant value;
  ASSERT_TRUE(TryGetObjPropValue(&comp, u"Count", value));
  EXPECT_EQ(value.AsInteger(), 42);
  ASSERT_TRUE(TryGetObjPropValue(&comp, u"font.name", value));  // names ignore case
  EXPECT_EQ(value.AsString(), u"Arial");
  ASSERT_TRUE(TryGetObjPropValue(&comp, u"Align", value));
  EXPECT_EQ(value.AsString(), u"alBottom");
  ASSERT_TRUE(TryGetObjPropValue(&comp, u"Font", value));  // a nested object has no value
  EXPECT_TRUE(value.IsEmpty());

  value = 7;
  for (const char16_t* missing : {u"Missing", u"Font.Missing", u"Count.X", u"", u"Font."}) {
    EXPECT_FALSE(TryGetObjPropValue(&comp, missing, value)) << ToUtf8(missing);
  }
  EXPECT_EQ(value.AsInteger(), 7);
  TObject plain;
  EXPECT_FALSE(TryGetObjPropValue(&plain, u"Count", value));
  EXPECT_FALSE(TryGetObjPropValue(nullptr, u"Count", value));
}

TEST(ObjPropsObjects, EnumerationPropertiesMapNamesBothWays) {
  test::TTestComponent comp(nullptr);
  EXPECT_EQ(GoodObjTypeName(&comp, u"Align", 3), u"alClient");
  EXPECT_EQ(GoodObjTypeName(&comp, u"Align", 9), u"9");
  EXPECT_EQ(GoodObjTypeName(&comp, u"Enabled", 1), u"True");
  EXPECT_EQ(GoodObjTypeName(&comp, u"Count", 1), u"");  // not an enumeration
  EXPECT_EQ(GoodObjTypeName(&comp, u"Nothing", 1), u"");
  EXPECT_EQ(GoodObjTypeIndex(&comp, u"Align", u"ALTOP", -5), 1);
  EXPECT_EQ(GoodObjTypeIndex(&comp, u"Align", u"alLeft", -5), -5);
  EXPECT_EQ(GoodObjTypeIndex(&comp, u"Enabled", u"false", -5), 0);
  EXPECT_EQ(GoodObjTypeIndex(&comp, u"Caption", u"alTop", -5), -5);
  EXPECT_EQ(GoodObjTypeIndex(nullptr, u"Align", u"alTop", -5), -5);
}

}  // namespace
}  // namespace vex
