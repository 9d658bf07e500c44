#include "vex/platform/component_io.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "platform/component_random.h"
#include "platform/component_test_classes.h"
#include "test_support.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/object_stream.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

using test::TTestComponent;
using test::TTestControl;
using test::TTestItem;
using test::TTestOther;

class ComponentIO : public ::testing::Test {
 protected:
  void SetUp() override { test::RegisterTestClasses(); }
};

// The property names of the root object of a component stream, in stream order.
std::vector<std::string> RootPropertyNames(TMemoryStream& stream) {
  stream.SetPosition(0);
  TBinaryObjectReader in(stream);
  in.ReadSignature();
  in.ReadObjectHeader();
  std::vector<std::string> names;
  while (!in.EndOfList()) {
    names.push_back(in.ReadPropertyName());
    in.SkipValue();
  }
  return names;
}

// Writes a stream holding one TTestComponent named Comp1 with the given raw properties.
template <class F>
void WriteRawComponent(TMemoryStream& stream, F write_properties) {
  TBinaryObjectWriter out(stream);
  out.WriteSignature();
  out.WriteObjectHeader("TTestComponent", "Comp1");
  write_properties(out);
  out.WriteListEnd();
  out.WriteListEnd();
  stream.SetPosition(0);
}

TEST_F(ComponentIO, DefaultComponentWritesNoProperties) {
  TTestComponent c(nullptr);
  c.SetName(u"Comp1");
  TMemoryStream stream;
  WriteComponent(stream, c);
  EXPECT_TRUE(RootPropertyNames(stream).empty());
  // "TPF0", two short strings, two end markers.
  EXPECT_EQ(stream.Size(), 4 + 1 + 14 + 1 + 5 + 2);
}

TEST_F(ComponentIO, WritesNonDefaultPropertiesInDeclarationOrder) {
  TTestOther c(nullptr);
  c.level = 4;  // declared last
  c.caption = u"x";
  c.count = 0;  // default 7 in this class: written
  c.SetTag(5);  // inherited from TComponent: first
  c.font.SetSize(12);
  c.font.SetName(u"Tahoma");  // the default: not written
  c.lines.Add(u"one");
  c.picture.bytes = {1, 2, 3};
  c.extra = {1};
  TMemoryStream stream;
  WriteComponent(stream, c);
  const std::vector<std::string> expected = {
      "Tag", "Count", "Caption", "Lines.Strings", "Font.Size", "Picture.Data", "Level", "Extra"};
  EXPECT_EQ(RootPropertyNames(stream), expected);
}

void FillEveryKind(TTestComponent& c, TComponent* buddy) {
  c.count = -123456;
  c.big = INT64_MIN;
  c.align = test::alBottom;
  c.options = {test::toItalic, test::toStrikeOut};
  c.ratio = 1.0L / 3;
  c.scale = 0.1f;
  c.price = 12.3456;
  c.when = 45000.75;
  c.precise = 2.0 / 3;
  c.enabled = false;
  c.caption = u"Grüße 'quoted'\r\n\x01";
  c.lines.Add(u"first");
  c.lines.Add(String(300, u'x'));
  c.lines.Add(u"");
  c.font.SetName(u"Arial");
  c.font.SetStyle({test::toBold});
  auto* item = static_cast<TTestItem*>(c.columns.Add());
  item->SetCaption(u"Col");
  item->Font()->SetSize(9);
  c.columns.Add();
  c.data = {0, 255, 16};
  c.on_click = u"CompClick";
  c.SetBuddy(buddy);
  c.picture.bytes = TBytes(100, 7);
  c.extra = {3, -1, 70000};
}

void ExpectEveryKind(const TTestComponent& c, const TComponent* buddy) {
  EXPECT_EQ(c.count, -123456);
  EXPECT_EQ(c.big, INT64_MIN);
  EXPECT_EQ(c.align, test::alBottom);
  EXPECT_EQ(c.options, (Set<test::TTestOption>{test::toItalic, test::toStrikeOut}));
  EXPECT_EQ(c.ratio, 1.0L / 3);  // Extended keeps all 64 bits of the mantissa
  EXPECT_EQ(c.scale, 0.1f);
  EXPECT_EQ(c.price, 12.3456);
  EXPECT_EQ(c.when, 45000.75);
  EXPECT_EQ(c.precise, static_cast<double>(static_cast<long double>(2.0 / 3)));
  EXPECT_FALSE(c.enabled);
  EXPECT_EQ(c.caption, u"Grüße 'quoted'\r\n\x01");
  ASSERT_EQ(c.lines.Count(), 3);
  EXPECT_EQ(c.lines[1], String(300, u'x'));
  EXPECT_EQ(c.lines[2], u"");
  EXPECT_EQ(c.font.Name(), u"Arial");
  EXPECT_EQ(c.font.Size(), 8);
  EXPECT_EQ(c.font.Style(), Set<test::TTestOption>{test::toBold});
  ASSERT_EQ(c.columns.Count(), 2);
  auto* item = static_cast<const TTestItem*>(c.columns.Items(0));
  EXPECT_EQ(item->Caption(), u"Col");
  EXPECT_EQ(const_cast<TTestItem*>(item)->Font()->Size(), 9);
  EXPECT_EQ(static_cast<const TTestItem*>(c.columns.Items(1))->Width(), 50);
  EXPECT_EQ(c.data, (TBytes{0, 255, 16}));
  EXPECT_EQ(c.on_click, u"CompClick");
  EXPECT_EQ(c.buddy, buddy);
  EXPECT_EQ(c.picture.bytes, TBytes(100, 7));
  EXPECT_EQ(c.extra, (std::vector<int32_t>{3, -1, 70000}));
}

TEST_F(ComponentIO, RoundTripRestoresEveryKindAndOwnedChildren) {
  TTestComponent root(nullptr);
  root.SetName(u"Root");
  auto* child = new TTestComponent(&root);
  child->SetName(u"Child");
  auto* other = new TTestOther(&root);
  other->SetName(u"Other");
  other->level = 11;
  FillEveryKind(*child, other);  // a reference to a later sibling
  root.SetBuddy(&root);          // and one to the root itself

  TMemoryStream stream;
  WriteComponent(stream, root);
  stream.SetPosition(0);
  TTestComponent copy(nullptr);
  ReadComponent(stream, copy);

  EXPECT_EQ(copy.Name(), u"Root");
  ASSERT_EQ(copy.ComponentCount(), 2);
  auto* child_copy = dynamic_cast<TTestComponent*>(copy.Components(0));
  auto* other_copy = dynamic_cast<TTestOther*>(copy.Components(1));
  ASSERT_NE(child_copy, nullptr);
  ASSERT_NE(other_copy, nullptr);
  EXPECT_EQ(child_copy->Name(), u"Child");
  EXPECT_EQ(other_copy->level, 11);
  ExpectEveryKind(*child_copy, other_copy);
  EXPECT_EQ(copy.buddy, &copy);
  EXPECT_FALSE(copy.Loading());
  EXPECT_FALSE(child_copy->Loading());
  EXPECT_EQ(stream.Position(), stream.Size());
}

TEST_F(ComponentIO, ReadingWithoutARootCreatesTheStreamsClass) {
  TTestOther original(nullptr);
  original.SetName(u"Made");
  original.level = 1;
  new TTestComponent(&original);  // an unnamed child
  TMemoryStream stream;
  WriteComponent(stream, original);
  stream.SetPosition(0);
  std::unique_ptr<TComponent> made = ReadComponent(stream);
  auto* typed = dynamic_cast<TTestOther*>(made.get());
  ASSERT_NE(typed, nullptr);
  EXPECT_EQ(typed->Name(), u"Made");
  EXPECT_EQ(typed->level, 1);
  ASSERT_EQ(typed->ComponentCount(), 1);
  EXPECT_EQ(typed->Components(0)->Name(), u"");
}

TEST_F(ComponentIO, ParentHooksRebuildAControlTreeOwnedByTheRoot) {
  TTestControl form(nullptr);
  form.SetName(u"Form1");
  auto* panel = new TTestControl(&form);
  panel->SetName(u"Panel1");
  panel->SetParentControl(&form);
  auto* button = new TTestControl(&form);
  button->SetName(u"Button1");
  button->SetParentControl(panel);
  button->left = 8;
  auto* timer = new TTestComponent(&form);  // owned, outside the control tree
  timer->SetName(u"Timer1");

  TMemoryStream stream;
  WriteComponent(stream, form);
  stream.SetPosition(0);
  TTestControl copy(nullptr);
  ReadComponent(stream, copy);

  ASSERT_EQ(copy.ComponentCount(), 3);  // everything is owned by the root
  auto* panel_copy = dynamic_cast<TTestControl*>(copy.FindComponent(u"Panel1"));
  auto* button_copy = dynamic_cast<TTestControl*>(copy.FindComponent(u"Button1"));
  ASSERT_NE(panel_copy, nullptr);
  ASSERT_NE(button_copy, nullptr);
  EXPECT_EQ(panel_copy->ParentControl(), &copy);
  EXPECT_EQ(button_copy->ParentControl(),
            panel_copy);  // parent set through the hook
  EXPECT_EQ(button_copy->left, 8);
  EXPECT_NE(copy.FindComponent(u"Timer1"), nullptr);
  // Loaded runs once per component read, while csLoading is still set.
  EXPECT_EQ(copy.loaded_calls, 1);
  EXPECT_EQ(button_copy->loaded_calls, 1);
  EXPECT_TRUE(button_copy->loading_seen_in_loaded);
  EXPECT_FALSE(button_copy->Loading());
}

TEST_F(ComponentIO, ReadingIntoATreeBuiltByCodeFillsTheExistingChildren) {
  TTestComponent original(nullptr);
  auto* edit = new TTestComponent(&original);
  edit->SetName(u"Edit1");
  edit->count = 5;
  TMemoryStream stream;
  WriteComponent(stream, original);

  TTestComponent target(nullptr);
  auto* existing = new TTestComponent(&target);
  existing->SetName(u"edit1");
  stream.SetPosition(0);
  ReadComponent(stream, target);
  ASSERT_EQ(target.ComponentCount(), 1);
  EXPECT_EQ(target.Components(0), existing);
  EXPECT_EQ(existing->count, 5);
}

struct ReaderErrorCase {
  const char* label;
  void (*write)(TBinaryObjectWriter&);
  const char16_t* message;  // what the error hook gets
  // What escapes without a hook, when an enclosing property wraps the message again.
  const char16_t* raised = nullptr;
};

const ReaderErrorCase kReaderErrors[] = {
    {"unknown property",
     [](TBinaryObjectWriter& w) {
       w.WritePropertyName("Foo");
       w.WriteInteger(1);
     },
     u"Error reading Comp1.Foo: Property Foo does not exist"},
    {"string for an integer",
     [](TBinaryObjectWriter& w) {
       w.WritePropertyName("Count");
       w.WriteString(u"ten");
     },
     u"Error reading Comp1.Count: Invalid property value"},
    {"integer out of range",
     [](TBinaryObjectWriter& w) {
       w.WritePropertyName("Count");
       w.WriteInteger(int64_t{1} << 33);
     },
     u"Error reading Comp1.Count: Invalid property value"},
    {"unknown enumeration name",
     [](TBinaryObjectWriter& w) {
       w.WritePropertyName("Align");
       w.WriteIdent("alSideways");
     },
     u"Error reading Comp1.Align: Invalid property value"},
    {"unknown set member",
     [](TBinaryObjectWriter& w) {
       w.WritePropertyName("Options");
       w.WriteSet({"toBold", "toNope"});
     },
     u"Error reading Comp1.Options: Invalid property value"},
    {"unknown nested property",
     [](TBinaryObjectWriter& w) {
       w.WritePropertyName("Font.Weight");
       w.WriteInteger(1);
     },
     u"Error reading Comp1.Font.Weight: Property Weight does not exist"},
    {"currency out of range",
     [](TBinaryObjectWriter& w) {
       w.WritePropertyName("Price");
       w.WriteExtended(1e30L);
     },
     u"Error reading Comp1.Price: Invalid property value"},
    {"list for a collection",
     [](TBinaryObjectWriter& w) {
       w.WritePropertyName("Columns");
       w.WriteListBegin();
       w.WriteInteger(1);
       w.WriteListEnd();
     },
     u"Error reading Comp1.Columns: Invalid property value"},
    {"bad property inside a collection item",
     [](TBinaryObjectWriter& w) {
       w.WritePropertyName("Columns");
       w.WriteCollectionBegin();
       w.WriteCollectionItemBegin();
       w.WritePropertyName("Width");
       w.WriteBoolean(true);
       w.WriteListEnd();
       w.WriteListEnd();
     },
     u"Error reading TTestItem.Width: Invalid property value",
     u"Error reading Comp1.Columns: Error reading TTestItem.Width: Invalid "
     u"property value"},
};

TEST_F(ComponentIO, ReaderErrorsNameTheComponentAndTheProperty) {
  for (const ReaderErrorCase& k : kReaderErrors) {
    TMemoryStream stream;
    WriteRawComponent(stream, k.write);
    TTestComponent c(nullptr);
    EXPECT_EQ(test::MessageOf<EReadError>([&] { ReadComponent(stream, c); }),
              k.raised != nullptr ? k.raised : k.message)
        << k.label;
  }
}

TEST_F(ComponentIO, ErrorHookReportsEachProblemAndReadingGoesOn) {
  for (const ReaderErrorCase& k : kReaderErrors) {
    TMemoryStream stream;
    WriteRawComponent(stream, [&k](TBinaryObjectWriter& w) {
      w.WritePropertyName("Tag");
      w.WriteInteger(1);
      k.write(w);
      w.WritePropertyName("Caption");  // after the bad value: still read
      w.WriteString(u"after");
    });
    TTestComponent c(nullptr);
    std::vector<String> messages;
    ReadComponent(stream, c, [&messages](TReader&, const String& message, bool& handled) {
      messages.push_back(message);
      handled = true;
    });
    ASSERT_EQ(messages.size(), 1U) << k.label;
    EXPECT_EQ(messages[0], k.message) << k.label;
    EXPECT_EQ(c.Tag(), 1) << k.label;
    EXPECT_EQ(c.caption, u"after") << k.label;
  }
}

TEST_F(ComponentIO, UnknownClassRaisesOrIsSkippedByTheHook) {
  TMemoryStream stream;
  {
    TBinaryObjectWriter w(stream);
    w.WriteSignature();
    w.WriteObjectHeader("TTestComponent", "Root");
    w.WriteListEnd();
    w.WriteObjectHeader("TMissingClass", "Lost");
    w.WritePropertyName("Count");
    w.WriteInteger(1);
    w.WriteListEnd();
    w.WriteObjectHeader("TTestComponent", "LostChild");  // below the unknown one
    w.WriteListEnd();
    w.WriteListEnd();
    w.WriteListEnd();
    w.WriteObjectHeader("TTestComponent", "Kept");
    w.WriteListEnd();
    w.WriteListEnd();
    w.WriteListEnd();
  }
  {
    stream.SetPosition(0);
    TTestComponent c(nullptr);
    EXPECT_EQ(test::MessageOf<EClassNotFound>([&] { ReadComponent(stream, c); }),
              u"Class TMissingClass not found");
  }
  stream.SetPosition(0);
  TTestComponent c(nullptr);
  std::vector<String> messages;
  ReadComponent(stream, c, [&messages](TReader&, const String& m, bool& handled) {
    messages.push_back(m);
    handled = true;
  });
  EXPECT_EQ(messages, std::vector<String>{u"Class TMissingClass not found"});
  ASSERT_EQ(c.ComponentCount(), 1);
  EXPECT_EQ(c.Components(0)->Name(), u"Kept");
}

TEST_F(ComponentIO, AHookThatDeclinesLetsTheErrorThrough) {
  TMemoryStream stream;
  WriteRawComponent(stream, kReaderErrors[0].write);
  TTestComponent c(nullptr);
  int calls = 0;
  EXPECT_THROW(ReadComponent(stream, c, [&calls](TReader&, const String&, bool&) { ++calls; }),
               EReadError);
  EXPECT_EQ(calls, 1);
  EXPECT_FALSE(c.Loading());
}

TEST_F(ComponentIO, NotAComponentStreamRaises) {
  TStringStream text(u"object Form1: TForm\r\nend\r\n");
  TTestComponent c(nullptr);
  EXPECT_THROW(ReadComponent(text, c), EReadError);
}

// Every truncation of a valid stream fails cleanly, leaves no half-read child behind the reader's
// back, and leaks nothing (checked under ASan).
TEST_F(ComponentIO, EveryTruncationRaisesCleanly) {
  TTestComponent root(nullptr);
  root.SetName(u"Root");
  auto* child = new TTestComponent(&root);
  child->SetName(u"Child");
  FillEveryKind(*child, &root);
  TMemoryStream full;
  WriteComponent(full, root);
  for (int64_t size = 0; size < full.Size(); ++size) {
    TMemoryStream cut;
    cut.WriteBuffer(full.Memory(), size);
    cut.SetPosition(0);
    TTestComponent c(nullptr);
    EXPECT_THROW(ReadComponent(cut, c), EStreamError) << size;
    EXPECT_FALSE(c.Loading()) << size;
  }
}

// A flipped byte anywhere either still reads or raises a library exception: no crash, no leak, no
// component left half-loaded.
TEST_F(ComponentIO, EveryFlippedByteReadsOrRaisesCleanly) {
  TTestOther root(nullptr);
  root.SetName(u"Root");
  auto* child = new TTestOther(&root);
  child->SetName(u"Child");
  FillEveryKind(*child, &root);
  new TTestControl(child);
  TMemoryStream full;
  WriteComponent(full, root);
  for (int64_t at = 0; at < full.Size(); ++at) {
    for (uint8_t mask : {0x01, 0x80, 0xFF}) {
      TMemoryStream bad;
      bad.WriteBuffer(full.Memory(), full.Size());
      bad.Memory()[at] ^= mask;
      bad.SetPosition(0);
      TTestOther c(nullptr);
      try {
        ReadComponent(bad, c);
      } catch (const Exception&) {
      }
      EXPECT_FALSE(c.Loading()) << at;
    }
  }
}

TEST_F(ComponentIO, DeepNestingRaisesInsteadOfOverflowingTheStack) {
  TMemoryStream stream;
  TBinaryObjectWriter w(stream);
  w.WriteSignature();
  const int depth = 100000;
  for (int i = 0; i < depth; ++i) {
    w.WriteObjectHeader("TTestOther", "");
    w.WriteListEnd();
  }
  for (int i = 0; i < 2 * depth; ++i) w.WriteListEnd();
  stream.SetPosition(0);
  TTestOther c(nullptr);
  EXPECT_THROW(ReadComponent(stream, c), EReadError);
  // The same through the hook: skipping the failed object must not recurse without bound.
  stream.SetPosition(0);
  TTestOther d(nullptr);
  EXPECT_THROW(
      ReadComponent(stream, d, [](TReader&, const String&, bool& handled) { handled = true; }),
      EReadError);
}

// The fuzz seed built byte by byte from the format (not by our writer) reads as intended.
TEST_F(ComponentIO, ReadsAStreamBuiltByHand) {
  TMemoryStream seed;
  seed.LoadFromFile(std::string(VEX_SOURCE_DIR) + "/fuzz/corpus/component_read/every_kind.bin");
  seed.SetPosition(1);  // the fuzz target's mode byte
  TTestOther c(nullptr);
  ReadComponent(seed, c);
  EXPECT_EQ(c.Name(), u"Root");
  EXPECT_EQ(c.count, 5);
  EXPECT_EQ(c.caption, u"Hello");
  EXPECT_EQ(c.align, test::alTop);
  EXPECT_EQ(c.options, (Set<test::TTestOption>{test::toBold, test::toItalic}));
  EXPECT_FALSE(c.enabled);
  EXPECT_EQ(c.lines.Text(), u"a\r\nb\r\n");
  EXPECT_EQ(c.font.Size(), 12);
  EXPECT_EQ(c.on_click, u"RootClick");
  ASSERT_EQ(c.columns.Count(), 1);
  EXPECT_EQ(static_cast<TTestItem*>(c.columns.Items(0))->Width(), 9);
  EXPECT_EQ(c.data, (TBytes{1, 2, 3}));
  EXPECT_EQ(c.picture.bytes, (TBytes{0xAA, 0xBB}));
  EXPECT_EQ(c.extra, (std::vector<int32_t>{1, -2}));
  ASSERT_EQ(c.ComponentCount(), 2);
  EXPECT_EQ(c.buddy, c.Components(0));  // a reference to a child read after it
  EXPECT_EQ(dynamic_cast<TTestComponent*>(c.Components(0))->big, -(int64_t{1} << 40));
  EXPECT_NE(dynamic_cast<TTestControl*>(c.Components(1)), nullptr);
}

TEST_F(ComponentIO, RandomTreesSurviveARoundTrip) {
  for (uint32_t seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE(seed);
    std::unique_ptr<TTestOther> tree = test::RandomTree(seed).Make();
    TMemoryStream stream;
    WriteComponent(stream, *tree);
    stream.SetPosition(0);
    TTestOther copy(nullptr);
    ReadComponent(stream, copy);
    test::ExpectSameTree(*tree, copy);
    if (HasFatalFailure() || HasNonfatalFailure()) break;
  }
}

}  // namespace
}  // namespace vex
