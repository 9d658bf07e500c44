#include "vex/platform/type_info.h"

#include <gtest/gtest.h>

#include "vex/platform/exceptions.h"

#include <array>
#include <vector>

namespace rtti_test {

enum TShape { shCircle, shSquare, shTriangle };
VEX_DESCRIBE_ENUM(TShape, shCircle, shSquare, shTriangle)

enum class TLevel : uint8_t { Low = 1, High = 7 };
VEX_DESCRIBE_ENUM(TLevel, Low, High)

enum TUndescribed { udA, udB };

struct TInner {
  int32_t X;
  vex::String S;
};
VEX_DESCRIBE_RECORD(TInner, X, S)

// A record holding a dynamic array of itself: describing it must not recurse.
struct TNode {
  int64_t Id;
  std::vector<TNode> Children;
  TInner Inner[2];
  std::array<TShape, 3> Shapes;
  bool Flag;
};
VEX_DESCRIBE_RECORD(TNode, Id, Children, Inner, Shapes, Flag)

struct TPlain {
  int32_t A;
};

}  // namespace rtti_test

namespace vex {
namespace {

using namespace rtti_test;

// The kinds keep the platform's ordinals.
static_assert(tkUnknown == 0 && tkEnumeration == 3 && tkVariant == 12 && tkRecord == 14 &&
              tkInt64 == 16 && tkUString == 18);

TEST(TypeInfoTest, MapsCppTypesToKindsAndNames) {
  struct Case {
    PTypeInfo type;
    TTypeKind kind;
    const char16_t* name;
  };
  const Case cases[] = {
      {TypeInfo<int32_t>(), tkInteger, u"Integer"},
      {TypeInfo<const uint8_t>(), tkInteger, u"Byte"},
      {TypeInfo<int64_t>(), tkInt64, u"Int64"},
      {TypeInfo<double>(), tkFloat, u"Double"},
      {TypeInfo<String>(), tkUString, u"string"},
      {TypeInfo<bool>(), tkEnumeration, u"Boolean"},
      {TypeInfo<TShape>(), tkEnumeration, u"TShape"},
      {TypeInfo<TLevel>(), tkEnumeration, u"TLevel"},
      {TypeInfo<TUndescribed>(), tkEnumeration, u""},
      {TypeInfo<Char>(), tkWChar, u"Char"},
      {TypeInfo<Variant>(), tkVariant, u"Variant"},
      {TypeInfo<Set<TShape>>(), tkSet, u""},
      {TypeInfo<int32_t[4]>(), tkArray, u"array[0..3] of Integer"},
      {TypeInfo<std::array<String, 2>>(), tkArray, u"array[0..1] of string"},
      {TypeInfo<std::vector<TInner>>(), tkDynArray, u"TArray<TInner>"},
      {TypeInfo<std::vector<bool>>(), tkUnknown, u""},
      {TypeInfo<TPlain>(), tkUnknown, u""},
      {TypeInfo<TNode>(), tkRecord, u"TNode"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "kind " << int(c.kind));
    ASSERT_NE(c.type, nullptr);
    EXPECT_EQ(c.type->Kind, c.kind);
    EXPECT_EQ(c.type->Name, c.name);
  }
  EXPECT_EQ(TypeInfo<int32_t>(), TypeInfo<const int32_t>());
}

TEST(TypeInfoTest, RecordsListFieldsWithTypesAndOffsets) {
  PTypeInfo node = TypeInfo<TNode>();
  ASSERT_EQ(node->Fields.size(), 5u);
  EXPECT_EQ(node->Size, sizeof(TNode));
  const size_t offsets[] = {offsetof(TNode, Id), offsetof(TNode, Children), offsetof(TNode, Inner),
                            offsetof(TNode, Shapes), offsetof(TNode, Flag)};
  const char16_t* names[] = {u"Id", u"Children", u"Inner", u"Shapes", u"Flag"};
  for (size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(node->Fields[i].Name, names[i]);
    EXPECT_EQ(node->Fields[i].Offset, offsets[i]);
  }
  EXPECT_EQ(node->Fields[1].FieldType()->ElementType(), node);
  PTypeInfo inner = node->Fields[2].FieldType();
  EXPECT_EQ(inner->Kind, tkArray);
  EXPECT_EQ(inner->ElementCount, 2u);
  EXPECT_EQ(inner->ElementType(), TypeInfo<TInner>());
  EXPECT_EQ(node->Fields[3].FieldType()->ElementType(), TypeInfo<TShape>());
}

TEST(TypeInfoTest, EnumerationsMapOrdinalsToNamesBothWays) {
  PTypeInfo level = TypeInfo<TLevel>();
  ASSERT_NE(level->EnumName(7), nullptr);
  EXPECT_EQ(*level->EnumName(7), u"High");
  EXPECT_EQ(level->EnumName(2), nullptr);
  ASSERT_NE(level->FindMember(u"LOW"), nullptr);
  EXPECT_EQ(level->FindMember(u"LOW")->Ordinal, 1);
  EXPECT_EQ(level->FindMember(u"Middle"), nullptr);
  EXPECT_EQ(*TypeInfo<bool>()->EnumName(1), u"True");
}

TEST(TypeInfoTest, SimpleValuesGoThroughVariants) {
  TNode n{};
  PTypeInfo node = TypeInfo<TNode>();
  auto at = [&](size_t field) { return reinterpret_cast<char*>(&n) + node->Fields[field].Offset; };
  node->Fields[0].FieldType()->SetValue(at(0), Variant(int64_t{-9000000000}));
  EXPECT_EQ(n.Id, -9000000000);
  EXPECT_EQ(node->Fields[0].FieldType()->GetValue(at(0)).AsInt64(), -9000000000);

  node->Fields[4].FieldType()->SetValue(at(4), Variant(1));
  EXPECT_TRUE(n.Flag);
  EXPECT_EQ(node->Fields[4].FieldType()->GetValue(at(4)).VarType(), varBoolean);

  TLevel lv = TLevel::Low;
  TypeInfo<TLevel>()->SetValue(&lv, Variant(true));  // a Boolean stores ordinal 1
  EXPECT_EQ(lv, TLevel::Low);
  TypeInfo<TLevel>()->SetValue(&lv, Variant(7));
  EXPECT_EQ(lv, TLevel::High);
  EXPECT_EQ(TypeInfo<TLevel>()->GetValue(&lv).AsInteger(), 7);

  // A described enumeration takes its members only; Boolean takes any ordinal.
  EXPECT_THROW(TypeInfo<TLevel>()->SetValue(&lv, Variant(2)), EConvertError);
  EXPECT_EQ(lv, TLevel::High);
  TUndescribed ud = udA;
  TypeInfo<TUndescribed>()->SetValue(&ud, Variant(1));
  EXPECT_EQ(ud, udB);
  bool flag = false;
  TypeInfo<bool>()->SetValue(&flag, Variant(-1));
  EXPECT_TRUE(flag);

  uint8_t b = 0;
  TypeInfo<uint8_t>()->SetValue(&b, Variant(u"200"));
  EXPECT_EQ(b, 200);
  EXPECT_TRUE(TypeInfo<TNode>()->GetValue(&n).IsEmpty());
}

TEST(TypeInfoTest, DynamicArraysGiveLengthAndDataAndResize) {
  std::vector<TInner> v;
  PTypeInfo t = TypeInfo<std::vector<TInner>>();
  EXPECT_EQ(t->DynArrayLength(&v), 0u);
  EXPECT_EQ(t->DynArrayData(&v), nullptr);
  t->SetDynArrayLength(&v, 3);
  EXPECT_EQ(v.size(), 3u);
  EXPECT_EQ(t->DynArrayLength(&v), 3u);
  EXPECT_EQ(t->DynArrayData(&v), v.data());
}

}  // namespace
}  // namespace vex
