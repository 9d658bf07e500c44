#include "vex/companion/obj_props.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace vex
