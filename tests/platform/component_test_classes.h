// Test classes of the component model: a component with a property of every kind, a nested
// font and picture, a collection, and a small parent/child tree whose parent differs from the
// owner. Shared by the platform and data tests.
#pragma once

#include <cstdint>
#include <memory>

#include "vex/platform/component.h"
#include "vex/platform/component_io.h"
#include "vex/platform/string_list.h"

namespace vex::test {

enum TTestAlign : uint8_t { alNone, alTop, alBottom, alClient };
enum TTestOption : uint8_t { toBold, toItalic, toUnderline, toStrikeOut };

class TTestFont : public TPersistent {
  VEX_CLASS(TTestFont, TPersistent)

 public:
  const String& Name() const { return name_; }
  void SetName(const String& v) { name_ = v; }
  int32_t Size() const { return size_; }
  void SetSize(int32_t v) { size_ = v; }
  Set<TTestOption> Style() const { return style_; }
  void SetStyle(Set<TTestOption> v) { style_ = v; }
  void Assign(const TPersistent& source) override { AssignProperties(source); }

  static void DescribeProperties(TClassBuilder<TTestFont>& c) {
    c.String(u"Name", &TTestFont::Name, &TTestFont::SetName, u"Tahoma");
    c.Integer(u"Size", &TTestFont::Size, &TTestFont::SetSize, 8);
    c.SetOf(u"Style", &TTestFont::Style, &TTestFont::SetStyle,
            {u"fsBold", u"fsItalic", u"fsUnderline", u"fsStrikeOut"});
  }

 private:
  String name_ = u"Tahoma";
  int32_t size_ = 8;
  Set<TTestOption> style_;
};

/// Keeps its bytes as custom data "Data", the way an image keeps its file.
class TTestPicture : public TPersistent {
  VEX_CLASS(TTestPicture, TPersistent)

 public:
  TBytes bytes;

  void DefineProperties(TFiler& filer) override {
    filer.DefineBinaryProperty(
        u"Data",
        [this](TStream& s) {
          bytes.resize(static_cast<size_t>(s.Size()));
          if (!bytes.empty()) s.ReadBuffer(bytes.data(), s.Size());
        },
        [this](TStream& s) { s.WriteBuffer(bytes.data(), static_cast<int64_t>(bytes.size())); },
        !bytes.empty());
  }
};

class TTestItem : public TCollectionItem {
  VEX_CLASS(TTestItem, TCollectionItem)

 public:
  using TCollectionItem::TCollectionItem;
  const String& Caption() const { return caption_; }
  void SetCaption(const String& v) { caption_ = v; }
  int32_t Width() const { return width_; }
  void SetWidth(int32_t v) { width_ = v; }
  TTestFont* Font() { return &font_; }

  static void DescribeProperties(TClassBuilder<TTestItem>& c) {
    c.String(u"Caption", &TTestItem::Caption, &TTestItem::SetCaption);
    c.Integer(u"Width", &TTestItem::Width, &TTestItem::SetWidth, 50);
    c.Persistent(u"Font", &TTestItem::Font);
  }

 private:
  String caption_;
  int32_t width_ = 50;
  TTestFont font_;
};

/// A component with one published property of every kind, in this order.
class TTestComponent : public TComponent {
  VEX_CLASS(TTestComponent, TComponent)

 public:
  using TComponent::TComponent;
  ~TTestComponent() override = default;

  int32_t count = 0;
  int64_t big = 0;
  TTestAlign align = alNone;
  Set<TTestOption> options;
  long double ratio = 0;
  float scale = 0;
  double price = 0;
  double when = 0;
  double precise = 0;
  bool enabled = true;
  String caption;
  TStringList lines;
  TTestFont font;
  TCollection columns{TTestItem::StaticClassInfo(), this};
  TBytes data;
  String on_click;
  TComponent* buddy = nullptr;
  TTestPicture picture;
  /// Custom data written through DefineProperty as a list of integers.
  std::vector<int32_t> extra;

  void DefineProperties(TFiler& filer) override {
    TComponent::DefineProperties(filer);
    filer.DefineProperty(
        u"Extra",
        [this](TReader& r) {
          extra.clear();
          r.ReadListBegin();
          while (!r.EndOfList()) extra.push_back(r.ReadInteger());
          r.ReadListEnd();
        },
        [this](TWriter& w) {
          w.WriteListBegin();
          for (int32_t v : extra) w.WriteInteger(v);
          w.WriteListEnd();
        },
        !extra.empty());
  }

  void SetBuddy(TComponent* value) {
    if (buddy != nullptr) buddy->RemoveFreeNotification(this);
    buddy = value;
    if (buddy != nullptr) buddy->FreeNotification(this);
  }

  static void DescribeProperties(TClassBuilder<TTestComponent>& c);

 protected:
  void Notification(TComponent* component, TOperation operation) override {
    TComponent::Notification(component, operation);
    if (operation == opRemove && component == buddy) buddy = nullptr;
  }
};

inline void TTestComponent::DescribeProperties(TClassBuilder<TTestComponent>& c) {
  using T = TTestComponent;
  c.Integer(
      u"Count", [](const T& t) { return t.count; }, [](T& t, int32_t v) { t.count = v; });
  c.Int64(
      u"Big", [](const T& t) { return t.big; }, [](T& t, int64_t v) { t.big = v; });
  c.Enum(
      u"Align", [](const T& t) { return t.align; }, [](T& t, TTestAlign v) { t.align = v; },
      {u"alNone", u"alTop", u"alBottom", u"alClient"}, alNone);
  c.SetOf(
      u"Options", [](const T& t) { return t.options; },
      [](T& t, Set<TTestOption> v) { t.options = v; },
      {u"toBold", u"toItalic", u"toUnderline", u"toStrikeOut"});
  c.Float(
      u"Ratio", [](const T& t) { return t.ratio; }, [](T& t, long double v) { t.ratio = v; });
  c.Float(
      u"Scale", [](const T& t) { return t.scale; }, [](T& t, float v) { t.scale = v; }, fkSingle);
  c.Float(
      u"Price", [](const T& t) { return t.price; }, [](T& t, double v) { t.price = v; },
      fkCurrency);
  c.Float(
      u"When", [](const T& t) { return t.when; }, [](T& t, double v) { t.when = v; }, fkDate);
  c.Float(
      u"Precise", [](const T& t) { return t.precise; }, [](T& t, double v) { t.precise = v; },
      fkDouble);
  c.Boolean(
      u"Enabled", [](const T& t) { return t.enabled; }, [](T& t, bool v) { t.enabled = v; }, true);
  c.String(
      u"Caption", [](const T& t) { return t.caption; },
      [](T& t, const String& v) { t.caption = v; });
  c.Strings(u"Lines", [](T& t) { return &t.lines; });
  c.Persistent(u"Font", [](T& t) { return &t.font; });
  c.Collection(u"Columns", [](T& t) { return &t.columns; });
  c.Binary(
      u"Data", [](const T& t) { return t.data; }, [](T& t, const TBytes& v) { t.data = v; });
  c.Event(
      u"OnClick", [](const T& t) { return t.on_click; },
      [](T& t, const String& v) { t.on_click = v; });
  c.Component(
      u"Buddy", [](const T& t) { return t.buddy; }, [](T& t, TComponent* v) { t.SetBuddy(v); });
  c.Persistent(u"Picture", [](T& t) { return &t.picture; });
}

/// A second class of the same shape, to check that the reader creates the stream's classes.
class TTestOther : public TTestComponent {
  VEX_CLASS(TTestOther, TTestComponent)

 public:
  using TTestComponent::TTestComponent;
  int32_t level = 3;

  /// Children read below it are its own, as with frames.
  TComponent* GetChildOwner() override { return this; }

  static void DescribeProperties(TClassBuilder<TTestOther>& c) {
    c.Integer(
        u"Level", [](const TTestOther& t) { return t.level; },
        [](TTestOther& t, int32_t v) { t.level = v; }, 3);
    // Redescribed with another default: keeps its place among the inherited properties.
    c.Integer(
        u"Count", [](const TTestOther& t) { return t.count; },
        [](TTestOther& t, int32_t v) { t.count = v; }, 7);
  }
};

/// A control-like component: its parent (another TTestControl) differs from its owner, and the
/// stream nests it below its parent.
class TTestControl : public TComponent {
  VEX_CLASS(TTestControl, TComponent)

 public:
  using TComponent::TComponent;
  ~TTestControl() override {
    SetParentControl(nullptr);
    for (TTestControl* c : std::vector<TTestControl*>(children_)) c->parent_ = nullptr;
  }

  TTestControl* ParentControl() const { return parent_; }
  void SetParentControl(TTestControl* parent) {
    if (parent_ != nullptr) std::erase(parent_->children_, this);
    parent_ = parent;
    if (parent_ != nullptr) parent_->children_.push_back(this);
  }
  const std::vector<TTestControl*>& Children() const { return children_; }
  int32_t left = 0;
  int loaded_calls = 0;
  bool loading_seen_in_loaded = false;

  void GetChildren(const TGetChildProc& proc, TComponent* root) override {
    for (TTestControl* c : children_) proc(c);
    // The root also writes the components it owns that sit outside the control tree.
    if (root == this) {
      for (int32_t i = 0; i < ComponentCount(); ++i) {
        if (!Components(i)->HasParent()) proc(Components(i));
      }
    }
  }
  TComponent* GetParentComponent() const override { return parent_; }
  void SetParentComponent(TComponent* parent) override {
    SetParentControl(dynamic_cast<TTestControl*>(parent));
  }
  bool HasParent() const override { return parent_ != nullptr; }
  void Loaded() override {
    ++loaded_calls;
    loading_seen_in_loaded = Loading();
    TComponent::Loaded();
  }

  static void DescribeProperties(TClassBuilder<TTestControl>& c) {
    c.Integer(
        u"Left", [](const TTestControl& t) { return t.left; },
        [](TTestControl& t, int32_t v) { t.left = v; });
  }

 private:
  TTestControl* parent_ = nullptr;
  std::vector<TTestControl*> children_;
};

inline void RegisterTestClasses() {
  RegisterClasses({&TTestComponent::StaticClassInfo(), &TTestOther::StaticClassInfo(),
                   &TTestControl::StaticClassInfo(), &TTestItem::StaticClassInfo()});
}

}  // namespace vex::test
