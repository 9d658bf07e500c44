#include "vex/platform/component.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "platform/component_test_classes.h"
#include "test_support.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

using test::TTestComponent;
using test::TTestFont;
using test::TTestItem;
using test::TTestOther;
using test::TTestPicture;

// Counts its destructions, so that ownership can be checked without reading freed memory.
class TCounted : public TComponent {
  VEX_CLASS(TCounted, TComponent)

 public:
  TCounted(TComponent* owner, int* deaths) : TComponent(owner), deaths_(deaths) {}
  ~TCounted() override { ++*deaths_; }

 private:
  int* deaths_;
};

TEST(Component, OwnerFreesWhatItOwnsAndAFreedComponentLeavesItsOwner) {
  int deaths = 0;
  {
    TComponent owner(nullptr);
    auto* a = new TCounted(&owner, &deaths);
    auto* b = new TCounted(&owner, &deaths);
    new TCounted(a, &deaths);  // owned by a, freed with it
    ASSERT_EQ(owner.ComponentCount(), 2);
    EXPECT_EQ(owner.Components(0), a);
    EXPECT_EQ(b->ComponentIndex(), 1);
    delete a;
    EXPECT_EQ(deaths, 2);
    ASSERT_EQ(owner.ComponentCount(), 1);
    EXPECT_EQ(owner.Components(0), b);
    EXPECT_EQ(b->ComponentIndex(), 0);
    EXPECT_EQ(test::MessageOf<EListError>([&] { owner.Components(1); }),
              u"List index out of bounds (1)");
  }
  EXPECT_EQ(deaths, 3);
}

TEST(Component, InsertAndRemoveMoveOwnership) {
  TComponent first(nullptr);
  TComponent second(nullptr);
  auto* c = new TComponent(&first);
  second.InsertComponent(c);
  EXPECT_EQ(c->Owner(), &second);
  EXPECT_EQ(first.ComponentCount(), 0);
  second.RemoveComponent(c);
  EXPECT_EQ(c->Owner(), nullptr);
  EXPECT_EQ(second.ComponentCount(), 0);
  delete c;  // no longer owned: the caller frees it
}

TEST(Component, SetComponentIndexReordersTheOwnersList) {
  TComponent owner(nullptr);
  auto* a = new TComponent(&owner);
  auto* b = new TComponent(&owner);
  auto* c = new TComponent(&owner);
  c->SetComponentIndex(0);
  EXPECT_EQ(owner.Components(0), c);
  EXPECT_EQ(owner.Components(1), a);
  a->SetComponentIndex(99);  // clamped to the end
  EXPECT_EQ(owner.Components(2), a);
  EXPECT_EQ(owner.Components(1), b);
}

TEST(Component, NamesFollowIdentifierRules) {
  struct Case {
    const char16_t* name;
    bool valid;
  };
  const Case cases[] = {{u"Button1", true}, {u"_x", true},      {u"a_1_b", true},
                        {u"", true},        {u"1abc", false},   {u"a b", false},
                        {u"a.b", false},    {u"Кнопка", false}, {u"a-b", false}};
  for (const Case& c : cases) {
    TComponent comp(nullptr);
    if (c.valid) {
      EXPECT_NO_THROW(comp.SetName(c.name)) << ToUtf8(c.name);
      EXPECT_EQ(comp.Name(), c.name);
    } else {
      EXPECT_EQ(test::MessageOf<EComponentError>([&] { comp.SetName(c.name); }),
                u"'" + String(c.name) + u"' is not a valid component name");
    }
  }
}

TEST(Component, NamesAreUniqueAmongTheOwnersComponentsRegardlessOfCase) {
  TComponent owner(nullptr);
  auto* a = new TComponent(&owner);
  auto* b = new TComponent(&owner);
  a->SetName(u"Edit1");
  EXPECT_EQ(test::MessageOf<EComponentError>([&] { b->SetName(u"EDIT1"); }),
            u"A component named EDIT1 already exists");
  a->SetName(u"EDIT1");  // a case change of its own name is fine
  EXPECT_EQ(owner.FindComponent(u"edit1"), a);
  EXPECT_EQ(owner.FindComponent(u""), nullptr);
  EXPECT_EQ(owner.FindComponent(u"Edit2"), nullptr);
  // Inserting a component whose name is taken fails and leaves it with its old owner.
  TComponent other(nullptr);
  auto* clash = new TComponent(&other);
  clash->SetName(u"edit1");
  EXPECT_THROW(owner.InsertComponent(clash), EComponentError);
  EXPECT_EQ(clash->Owner(), &other);
}

TEST(Component, FreeNotificationClearsAReferenceToAFreedComponent) {
  TComponent owner(nullptr);
  auto* holder = new TTestComponent(&owner);
  auto* target = new TComponent(&owner);
  holder->SetBuddy(target);
  delete target;
  EXPECT_EQ(holder->buddy, nullptr);
  // And the other way round: the freed holder is no longer on the target's list.
  auto* target2 = new TComponent(&owner);
  holder->SetBuddy(target2);
  delete holder;
  delete target2;  // must not notify the freed holder (ASan would catch it)
}

TEST(Collection, AddDeleteClearAndIndexes) {
  TCollection items(TTestItem::StaticClassInfo());
  auto* a = static_cast<TTestItem*>(items.Add());
  auto* b = static_cast<TTestItem*>(items.Add());
  auto* c = static_cast<TTestItem*>(items.Insert(0));
  ASSERT_EQ(items.Count(), 3);
  EXPECT_EQ(items.Items(0), c);
  EXPECT_EQ(a->Index(), 1);
  EXPECT_EQ(b->ID(), 1);
  EXPECT_EQ(items.FindItemID(2), c);
  EXPECT_EQ(items.FindItemID(7), nullptr);
  b->SetIndex(0);
  EXPECT_EQ(items.Items(0), b);
  items.Delete(1);  // c
  EXPECT_EQ(items.Count(), 2);
  EXPECT_EQ(items.FindItemID(2), nullptr);
  delete a;  // a freed item leaves its collection
  EXPECT_EQ(items.Count(), 1);
  EXPECT_THROW(items.Items(1), EListError);
  EXPECT_THROW(items.Delete(-1), EListError);
  EXPECT_THROW(items.Insert(5), EListError);
  items.Clear();
  EXPECT_EQ(items.Count(), 0);
}

TEST(Collection, AssignCopiesItemsAndTheirNestedProperties) {
  TCollection from(TTestItem::StaticClassInfo());
  auto* item = static_cast<TTestItem*>(from.Add());
  item->SetCaption(u"Name");
  item->SetWidth(120);
  item->Font()->SetSize(14);
  TCollection to(TTestItem::StaticClassInfo());
  to.Add();
  to.Add();
  to.Assign(from);
  ASSERT_EQ(to.Count(), 1);
  auto* copy = static_cast<TTestItem*>(to.Items(0));
  EXPECT_EQ(copy->Caption(), u"Name");
  EXPECT_EQ(copy->Width(), 120);
  EXPECT_EQ(copy->Font()->Size(), 14);
}

TEST(Persistent, AssignBetweenUnrelatedClassesRaises) {
  TTestFont font;
  TTestPicture picture;
  EXPECT_EQ(test::MessageOf<EConvertError>([&] { picture.Assign(font); }),
            u"Cannot assign a TTestFont to a TTestPicture");
}

TEST(ClassInfo, PropertiesComeInheritedFirstInDeclarationOrder) {
  std::vector<String> names;
  for (const TPropInfo* p : TTestOther::StaticClassInfo().Properties()) names.push_back(p->name);
  const std::vector<String> expected = {
      u"Name",  u"Tag",     u"Count", u"Big",     u"Align",   u"Options", u"Ratio",
      u"Scale", u"Price",   u"When",  u"Precise", u"Enabled", u"Caption", u"Lines",
      u"Font",  u"Columns", u"Data",  u"OnClick", u"Buddy",   u"Picture", u"Level"};
  EXPECT_EQ(names, expected);
  // Count was described again with another default, at its inherited place.
  EXPECT_EQ(TTestOther::StaticClassInfo().FindProperty(u"count")->default_ordinal, 7);
  EXPECT_EQ(TTestComponent::StaticClassInfo().FindProperty(u"Count")->default_ordinal, 0);
  EXPECT_EQ(TTestComponent::StaticClassInfo().FindProperty(u"Level"), nullptr);
  EXPECT_TRUE(TTestOther::StaticClassInfo().InheritsFrom(TComponent::StaticClassInfo()));
  EXPECT_FALSE(TComponent::StaticClassInfo().InheritsFrom(TTestOther::StaticClassInfo()));
  EXPECT_EQ(TTestOther::StaticClassInfo().Name(), u"TTestOther");
}

TEST(ClassRegistry, FindsRegisteredClassesByNameInAnyCase) {
  test::RegisterTestClasses();
  EXPECT_EQ(GetClass(u"ttestother"), &TTestOther::StaticClassInfo());
  EXPECT_EQ(&FindClass(u"TTestComponent"), &TTestComponent::StaticClassInfo());
  // Registering a class registers its parents too.
  EXPECT_EQ(GetClass(u"TComponent"), &TComponent::StaticClassInfo());
  EXPECT_EQ(GetClass(u"TNoSuchClass"), nullptr);
  EXPECT_EQ(test::MessageOf<EClassNotFound>([&] { FindClass(u"TNoSuchClass"); }),
            u"Class TNoSuchClass not found");
  auto made = CreateComponent(u"TTestOther");
  EXPECT_NE(dynamic_cast<TTestOther*>(made.get()), nullptr);
  EXPECT_THROW(CreateComponent(u"TTestItem"), EComponentError);
}

TEST(ClassRegistry, AnotherClassUnderATakenNameIsRefused) {
  static const TClassInfo impostor(u"TTestOther", &TComponent::StaticClassInfo(), {});
  test::RegisterTestClasses();
  EXPECT_EQ(test::MessageOf<EFilerError>([&] { RegisterClass(impostor); }),
            u"A class named TTestOther already exists");
  RegisterClass<TTestOther>();  // the same class again is harmless
  static const TClassInfo temporary(u"TTemporaryClass", &TComponent::StaticClassInfo(), {});
  RegisterClass(temporary);
  EXPECT_EQ(GetClass(u"TTemporaryClass"), &temporary);
  UnRegisterClass(temporary);
  EXPECT_EQ(GetClass(u"TTemporaryClass"), nullptr);
}

TEST(ClassRegistry, ReadsAreSafeFromManyThreadsWhileRegistering) {
  test::RegisterTestClasses();
  std::atomic<int> found{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&found] {
      for (int i = 0; i < 2000; ++i) {
        if (GetClass(u"TTestComponent") != nullptr) ++found;
      }
    });
  }
  threads.emplace_back([] {
    for (int i = 0; i < 200; ++i) RegisterClass<TTestItem>();
  });
  for (auto& th : threads) th.join();
  EXPECT_EQ(found.load(), 8000);
}

TEST(PropertyAccess, GetsAndSetsEveryKindByName) {
  TComponent owner(nullptr);
  auto* c = new TTestComponent(&owner);
  auto* other = new TComponent(&owner);
  other->SetName(u"Other");

  SetPropValue(*c, u"Count", 42);
  SetPropValue(*c, u"Big", int64_t{1} << 40);
  SetPropValue(*c, u"Align", u"alclient");
  SetPropValue(*c, u"Options", u"[toBold, toUnderline]");
  SetPropValue(*c, u"Ratio", 2.5);
  SetPropValue(*c, u"Enabled", false);
  SetPropValue(*c, u"Caption", u"Hello");
  SetPropValue(*c, u"Lines", u"a\r\nb");
  SetPropValue(*c, u"Data", u"00FFa0");
  SetPropValue(*c, u"OnClick", u"ButtonClick");
  SetPropValue(*c, u"Buddy", u"other");
  SetPropValue(*c, u"Font.Name", u"Arial");
  SetPropValue(*c, u"font.style", u"fsItalic");

  EXPECT_EQ(c->count, 42);
  EXPECT_EQ(c->big, int64_t{1} << 40);
  EXPECT_EQ(c->align, test::alClient);
  EXPECT_EQ(c->options, (Set<test::TTestOption>{test::toBold, test::toUnderline}));
  EXPECT_EQ(c->ratio, 2.5L);
  EXPECT_FALSE(c->enabled);
  EXPECT_EQ(c->lines.Count(), 2);
  EXPECT_EQ(c->data, (TBytes{0x00, 0xFF, 0xA0}));
  EXPECT_EQ(c->buddy, other);
  EXPECT_EQ(c->font.Name(), u"Arial");

  EXPECT_EQ(GetPropValue(*c, u"Count"), Variant(42));
  EXPECT_EQ(GetPropValue(*c, u"Align"), Variant(u"alClient"));
  EXPECT_EQ(GetPropValue(*c, u"Options"), Variant(u"toBold,toUnderline"));
  EXPECT_EQ(GetPropValue(*c, u"Enabled"), Variant(false));
  EXPECT_EQ(GetPropValue(*c, u"Data"), Variant(u"00FFA0"));
  EXPECT_EQ(GetPropValue(*c, u"Buddy"), Variant(u"Other"));
  EXPECT_EQ(GetPropValue(*c, u"Font.Style"), Variant(u"fsItalic"));
  EXPECT_EQ(GetPropValue(*c, u"Lines"), Variant(u"a\r\nb\r\n"));
  EXPECT_EQ(PropKind(*c, u"Font"), pkPersistent);
  EXPECT_EQ(PropKind(*c, u"Font.Size"), pkInteger);

  SetPropValue(*c, u"Align", 2);  // an ordinal works too
  EXPECT_EQ(c->align, test::alBottom);
  SetPropValue(*c, u"Buddy", u"");
  EXPECT_EQ(c->buddy, nullptr);
}

TEST(PropertyAccess, TextFormsOfEachKind) {
  TTestComponent c(nullptr);
  struct Case {
    const char16_t* path;
    const char16_t* text;
    const char16_t* back;  // what GetPropText gives afterwards
  };
  const Case cases[] = {
      {u"Count", u"-17", u"-17"},
      {u"Big", u"$10", u"16"},
      {u"Ratio", u"0.125", u"0.125"},
      {u"Scale", u"1.5", u"1.5"},
      {u"Enabled", u"true", u"True"},
      {u"Enabled", u"0", u"False"},
      {u"Align", u"ALTOP", u"alTop"},
      {u"Options", u"toItalic", u"toItalic"},
      {u"Caption", u"x = 'y'", u"x = 'y'"},
      {u"Font.Size", u"12", u"12"},
      {u"Options", u"", u""},
  };
  for (const Case& k : cases) {
    SetPropText(c, k.path, k.text);
    EXPECT_EQ(GetPropText(c, k.path), k.back) << ToUtf8(k.path) << " " << ToUtf8(k.text);
  }
}

TEST(PropertyAccess, BadNamesAndValuesRaise) {
  TTestComponent c(nullptr);
  EXPECT_THROW(GetPropValue(c, u"Nope"), EPropertyError);
  EXPECT_THROW(GetPropValue(c, u"Font.Nope"), EPropertyError);
  EXPECT_THROW(GetPropValue(c, u"Count.Size"), EPropertyError);
  EXPECT_EQ(test::MessageOf<EPropertyError>([&] { SetPropValue(c, u"Missing", 1); }),
            u"Unknown property: \"Missing\"");
  EXPECT_FALSE(IsPublishedProp(c, u"Missing"));
  EXPECT_TRUE(IsPublishedProp(c, u"Font.Name"));
  const std::pair<const char16_t*, Variant> bad[] = {
      {u"Count", u"abc"},
      {u"Count", int64_t{1} << 40},
      {u"Align", u"alSideways"},
      {u"Align", 9},
      {u"Options", u"toBold,toNope"},
      {u"Data", u"ABC"},
      {u"Data", u"zz"},
      {u"Buddy", u"NoSuchComponent"},
      {u"Font", u"x"},
      {u"Options", u"[toBold"},
  };
  for (const auto& [path, value] : bad) {
    EXPECT_THROW(SetPropValue(c, path, value), EPropertyConvertError) << ToUtf8(path);
  }
  EXPECT_THROW(SetPropText(c, u"Count", u"1.5"), EPropertyConvertError);
  EXPECT_THROW(SetPropText(c, u"Enabled", u"maybe"), EPropertyConvertError);
  EXPECT_THROW(GetPropValue(c, u"Columns"), EPropertyConvertError);
}

}  // namespace
}  // namespace vex
