// Random component trees over the test classes, and a comparison of two trees through their
// published properties, for round-trip property tests.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "platform/component_test_classes.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex::test {

class RandomTree {
 public:
  explicit RandomTree(uint32_t seed) : rng_(seed) {}

  /// A root with up to four children; TTestOther children own children of their own.
  std::unique_ptr<TTestOther> Make() {
    auto root = std::make_unique<TTestOther>(nullptr);
    root->SetName(u"Root");
    all_.assign(1, root.get());
    AddChildren(*root, 0);
    for (TTestComponent* c : all_) Fill(*c);
    return root;
  }

 private:
  int Int(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng_); }
  bool Chance(int percent) { return Int(1, 100) <= percent; }

  void AddChildren(TTestOther& parent, int depth) {
    const int n = depth < 2 ? Int(0, 3) : 0;
    for (int i = 0; i < n; ++i) {
      TTestComponent* child = nullptr;
      if (Chance(50)) {
        auto* other = new TTestOther(&parent);
        AddChildren(*other, depth + 1);
        child = other;
      } else {
        child = new TTestComponent(&parent);
      }
      // Some stay unnamed; names are unique over the whole tree.
      if (Chance(80)) child->SetName(u"C" + IntToStr(static_cast<int32_t>(all_.size())));
      all_.push_back(child);
    }
  }

  String Text() {
    static const char16_t kPieces[] = u"aZ _'#+09\r\n\t\x01\u00e9\u0416\u20ac";
    String s;
    const int len = Chance(10) ? Int(200, 400) : Int(0, 12);
    const int last = static_cast<int>(std::size(kPieces)) - 2;  // not the terminating zero
    for (int i = 0; i < len; ++i) s += kPieces[Int(0, last)];
    if (Chance(5)) s += u"\U0001F600";  // a surrogate pair
    return s;
  }

  // References are written as Name or Owner.Name relative to the root, so a target must be
  // the root, one of its components, or a component of a named one of them.
  bool Referable(const TComponent& target) const {
    const TComponent* root = all_[0];
    if (&target == root) return true;
    if (target.Name().empty()) return false;
    const TComponent* owner = target.Owner();
    return owner == root || (owner->Owner() == root && !owner->Name().empty());
  }

  String Ident() { return Chance(30) ? String() : u"Handler" + IntToStr(Int(0, 99)); }

  void Fill(TTestComponent& c) {
    const int64_t wide[] = {0,      1,         -1,        127,       -128,     32767,
                            -32769, INT32_MAX, INT32_MIN, INT64_MAX, INT64_MIN};
    c.count = Chance(50) ? Int(-100000, 100000) : static_cast<int32_t>(wide[Int(0, 8)]);
    c.big = wide[Int(0, 10)];
    c.align = static_cast<TTestAlign>(Int(0, 3));
    c.options = Set<TTestOption>::FromBits(static_cast<uint64_t>(Int(0, 15)));
    // Floats with few enough digits for the text form, which keeps 16 significant digits of
    // extended values and 15 of dates.
    c.ratio = Chance(20) ? 0.0L : static_cast<long double>(Int(-1000000, 1000000)) / 64.0L;
    c.scale = Chance(20) ? 0.0f : static_cast<float>(Int(-1000, 1000)) / 3.0f;
    c.price = Chance(20) ? 0.0 : static_cast<double>(Int(-9000000, 9000000)) / 10000.0;
    c.when = Chance(20) ? 0.0 : 36000.0 + Int(0, 1000) / 8.0;
    c.precise = Chance(20) ? 0.0 : static_cast<double>(Int(-(1 << 30), 1 << 30)) / 16.0;
    c.enabled = Chance(50);
    c.caption = Text();
    c.lines.Clear();
    for (int i = Int(0, 3); i > 0; --i) c.lines.Add(Text());
    c.font.SetName(Chance(50) ? String(u"Tahoma") : Text());
    c.font.SetSize(Int(6, 30));
    c.font.SetStyle(Set<TTestOption>::FromBits(static_cast<uint64_t>(Int(0, 15))));
    for (int i = Int(0, 3); i > 0; --i) {
      auto* item = static_cast<TTestItem*>(c.columns.Add());
      item->SetCaption(Text());
      item->SetWidth(Int(0, 100));
      item->Font()->SetSize(Int(6, 10));
    }
    c.data.assign(static_cast<size_t>(Chance(30) ? Int(0, 100) : 0), 0);
    for (uint8_t& b : c.data) b = static_cast<uint8_t>(Int(0, 255));
    c.on_click = Ident();
    TTestComponent* target =
        Chance(40) ? all_[static_cast<size_t>(Int(0, static_cast<int>(all_.size()) - 1))] : nullptr;
    c.SetBuddy(target != nullptr && Referable(*target) ? target : nullptr);
    c.picture.bytes.assign(static_cast<size_t>(Chance(30) ? Int(1, 40) : 0), 0x5A);
    c.extra.clear();
    for (int i = Int(0, 2); i > 0; --i) c.extra.push_back(Int(-5, 5));
    if (auto* other = dynamic_cast<TTestOther*>(&c)) other->level = Int(0, 5);
  }

  std::mt19937 rng_;
  std::vector<TTestComponent*> all_;
};

/// Expects equal published properties (and custom data of the test classes) on two objects.
inline void ExpectSameProperties(const TPersistent& a, const TPersistent& b, const String& path) {
  ASSERT_EQ(a.ClassInfo().Name(), b.ClassInfo().Name()) << ToUtf8(path);
  for (const TPropInfo* p : a.ClassInfo().Properties()) {
    const std::string where = ToUtf8(path + u"." + p->name);
    switch (p->kind) {
      case pkInteger:
      case pkInt64:
      case pkEnumeration:
      case pkSet:
      case pkBoolean:
        EXPECT_EQ(p->get_ordinal(a), p->get_ordinal(b)) << where;
        break;
      case pkFloat:
        EXPECT_EQ(p->get_float(a), p->get_float(b)) << where;
        break;
      case pkString:
      case pkEvent:
        EXPECT_EQ(p->get_string(a), p->get_string(b)) << where;
        break;
      case pkBinary:
        EXPECT_EQ(p->get_bytes(a), p->get_bytes(b)) << where;
        break;
      case pkComponent: {
        const TComponent* ca = p->get_component(a);
        const TComponent* cb = p->get_component(b);
        ASSERT_EQ(ca == nullptr, cb == nullptr) << where;
        if (ca != nullptr) {
          EXPECT_EQ(ca->Name(), cb->Name()) << where;
        }
        break;
      }
      case pkStrings:
        EXPECT_EQ(static_cast<const TStrings*>(p->get_object(a))->Text(),
                  static_cast<const TStrings*>(p->get_object(b))->Text())
            << where;
        break;
      case pkPersistent:
        ExpectSameProperties(*dynamic_cast<const TPersistent*>(p->get_object(a)),
                             *dynamic_cast<const TPersistent*>(p->get_object(b)),
                             path + u"." + p->name);
        break;
      case pkCollection: {
        const auto* ia = dynamic_cast<const TCollection*>(p->get_object(a));
        const auto* ib = dynamic_cast<const TCollection*>(p->get_object(b));
        ASSERT_EQ(ia->Count(), ib->Count()) << where;
        for (int32_t i = 0; i < ia->Count(); ++i) {
          ExpectSameProperties(*ia->Items(i), *ib->Items(i), path + u"." + p->name);
        }
        break;
      }
    }
  }
  if (const auto* pa = dynamic_cast<const TTestPicture*>(&a)) {
    EXPECT_EQ(pa->bytes, dynamic_cast<const TTestPicture&>(b).bytes) << ToUtf8(path);
  }
  if (const auto* ca = dynamic_cast<const TTestComponent*>(&a)) {
    EXPECT_EQ(ca->extra, dynamic_cast<const TTestComponent&>(b).extra) << ToUtf8(path);
  }
}

/// Expects two component trees with the same classes, names, properties and owned children.
inline void ExpectSameTree(const TComponent& a, const TComponent& b) {
  const String path = a.Name().empty() ? a.ClassInfo().Name() : a.Name();
  ExpectSameProperties(a, b, path);
  ASSERT_EQ(a.ComponentCount(), b.ComponentCount()) << ToUtf8(path);
  for (int32_t i = 0; i < a.ComponentCount(); ++i) {
    EXPECT_EQ(a.Components(i)->Name(), b.Components(i)->Name()) << ToUtf8(path);
    ExpectSameTree(*a.Components(i), *b.Components(i));
  }
}

}  // namespace vex::test
