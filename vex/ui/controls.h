// The control tree: visual controls as components, each with a parent container, bounds, a font
// and published properties, so that a form description reads into a live tree and TVclUtils can
// describe, walk and position it. Toolkit-free; vex::qt presents real widgets through the same
// classes by overriding the virtual accessors.
//
//   TForm form(nullptr);
//   auto* ok = new TButton(&form);      // owned by the form, freed with it
//   ok->SetParent(&form);               // shown inside the form
//   ok->SetName(u"btnOK");
//   ok->SetBounds(10, 20, 75, 25);      // ok->BoundsRect() -> {10, 20, 85, 45}
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "vex/platform/component.h"
#include "vex/platform/string_list.h"
#include "vex/platform/types.h"
#include "vex/platform/variant.h"
#include "vex/text/convert_utils.h"

namespace vex {

enum TAlign : uint8_t { alNone, alTop, alBottom, alLeft, alRight, alClient, alCustom };
enum TFontStyle : uint8_t { fsBold, fsItalic, fsUnderline, fsStrikeOut };
using TFontStyles = Set<TFontStyle>;
enum TWindowState : uint8_t { wsNormal, wsMinimized, wsMaximized };
enum TComboBoxStyle : uint8_t {
  csDropDown,
  csSimple,
  csDropDownList,
  csOwnerDrawFixed,
  csOwnerDrawVariable
};
enum TListBoxStyle : uint8_t {
  lbStandard,
  lbOwnerDrawFixed,
  lbOwnerDrawVariable,
  lbVirtual,
  lbVirtualOwnerDraw
};
enum TTabStyle : uint8_t { tsTabs, tsButtons, tsFlatButtons };

/// Show commands of a window placement.
inline constexpr int32_t SW_SHOWNORMAL = 1;
inline constexpr int32_t SW_SHOWMINIMIZED = 2;
inline constexpr int32_t SW_SHOWMAXIMIZED = 3;

/// A window's placement: 11 numbers of 32 bits, the record length (44) first.
struct TWindowPlacement {
  int32_t length = 44;
  int32_t flags = 0;
  int32_t showCmd = SW_SHOWNORMAL;
  int32_t ptMinPositionX = -1;
  int32_t ptMinPositionY = -1;
  int32_t ptMaxPositionX = -1;
  int32_t ptMaxPositionY = -1;
  TRect rcNormalPosition;
};

/// A control's font: face name, height in pixels (Size is derived at 96 pixels per inch),
/// colour, character set and style.
class TFont : public TPersistent {
  VEX_CLASS(TFont, TPersistent)

 public:
  TFont() = default;
  void Assign(const TPersistent& source) override;

  int32_t Charset() const { return charset_; }
  void SetCharset(int32_t v) { charset_ = v; }
  int32_t Color() const { return color_; }
  void SetColor(int32_t v) { color_ = v; }
  int32_t Height() const { return height_; }
  void SetHeight(int32_t v) { height_ = v; }
  const String& Name() const { return name_; }
  void SetName(const String& v) { name_ = v; }
  /// Points at 96 pixels per inch: -Height * 72 / 96, rounded.
  int32_t Size() const;
  void SetSize(int32_t points);
  TFontStyles Style() const { return style_; }
  void SetStyle(TFontStyles v) { style_ = v; }

  static void DescribeProperties(TClassBuilder<TFont>& c);

 private:
  int32_t charset_ = 1;
  int32_t color_ = 0;
  int32_t height_ = -11;
  String name_ = u"Tahoma";
  TFontStyles style_;
};

class TWinControl;

/// A visual control: a component with a parent container, bounds and text. The accessors that
/// a toolkit adapter answers from a live widget are virtual.
class TControl : public TComponent {
  VEX_CLASS(TControl, TComponent)

 public:
  explicit TControl(TComponent* owner);
  ~TControl() override;

  /// The container showing this control, or null.
  TWinControl* Parent() const { return parent_; }
  /// Moves the control into `parent`'s children (at the end), or out of any with null.
  virtual void SetParent(TWinControl* parent);

  /// The name a description shows: Name() here; an adapter gives the widget's object name.
  virtual String ControlName() const { return Name(); }

  /// Left, top, right, bottom relative to the parent.
  virtual TRect BoundsRect() const;
  virtual void SetBounds(int32_t left, int32_t top, int32_t width, int32_t height);
  void SetBoundsRect(const TRect& r) {
    SetBounds(r.Left, r.Top, r.Right - r.Left, r.Bottom - r.Top);
  }
  int32_t Left() const { return BoundsRect().Left; }
  int32_t Top() const { return BoundsRect().Top; }
  int32_t Width() const;
  int32_t Height() const;
  void SetLeft(int32_t v) { SetBounds(v, Top(), Width(), Height()); }
  void SetTop(int32_t v) { SetBounds(Left(), v, Width(), Height()); }
  void SetWidth(int32_t v) { SetBounds(Left(), Top(), v, Height()); }
  void SetHeight(int32_t v) { SetBounds(Left(), Top(), Width(), v); }

  /// The control's text: its caption for buttons, labels and forms, its content for edits.
  virtual String GetText() const { return text_; }
  virtual void SetText(const String& text) { text_ = text; }
  TAlign Align() const { return align_; }
  void SetAlign(TAlign v) { align_ = v; }
  bool Visible() const { return visible_; }
  void SetVisible(bool v) { visible_ = v; }
  bool Enabled() const { return enabled_; }
  void SetEnabled(bool v) { enabled_ = v; }
  /// The font object, owned by the control.
  virtual TFont* Font() const { return font_.get(); }

  /// A published property as a variant by name ("Caption", "Items", "Font.Name"); false, and
  /// `value` left alone, when the control has no such property or it has no simple value.
  virtual bool ReadProperty(const String& name, Variant& value) const;
  /// Assigns a published property; false when there is none or the value does not fit.
  virtual bool WriteProperty(const String& name, const Variant& value);
  /// The string list published as "Items", or null.
  virtual TStrings* ItemsList() const;

  /// Whether the bounds are written when the control is streamed (not for a page, which its
  /// page control places).
  virtual bool IsBoundsStored() const { return true; }

  // Streaming: a control sits below its parent in a component stream.
  bool HasParent() const override { return true; }
  TComponent* GetParentComponent() const override;
  void SetParentComponent(TComponent* parent) override;

  static void DescribeProperties(TClassBuilder<TControl>& c);

 private:
  friend class TWinControl;
  TWinControl* parent_ = nullptr;
  int32_t left_ = 0;
  int32_t top_ = 0;
  int32_t width_ = 0;
  int32_t height_ = 0;
  String text_;
  TAlign align_ = alNone;
  bool visible_ = true;
  bool enabled_ = true;
  std::unique_ptr<TFont> font_;
};

/// A container control: it has children in order and a window handle.
class TWinControl : public TControl {
  VEX_CLASS(TWinControl, TControl)

 public:
  explicit TWinControl(TComponent* owner);
  /// Children still inside are let go, not freed: their owner frees them.
  ~TWinControl() override;

  virtual int32_t ControlCount() const { return static_cast<int32_t>(controls_.size()); }
  /// The child at `index`; raises EListError for a bad index.
  virtual TControl* Controls(int32_t index) const;
  /// The window handle: a number unique in the process, made on first use.
  virtual uintptr_t Handle() const;

  /// True for containers whose children are pages (a page control).
  virtual bool IsPageContainer() const { return false; }
  /// Creates a control of class `control_class` owned by `owner` with this container as its
  /// parent (for a page container, as a new page). An adapter creates a real widget.
  virtual TControl* CreateChildControl(const TClassInfo& control_class, TComponent* owner);

  /// The window's placement; false when there is none to read. The default gives the bounds as
  /// the normal position, shown normally.
  virtual bool GetWindowPlacement(TWindowPlacement& placement) const;
  /// Applies a placement; false when it cannot be applied.
  virtual bool SetWindowPlacement(const TWindowPlacement& placement);

  /// The children owned by `root`, in order: what is written below this control.
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;

 protected:
  virtual void InsertControl(TControl* control);
  virtual void RemoveControl(TControl* control);

 private:
  friend class TControl;
  std::vector<TControl*> controls_;
  mutable uintptr_t handle_ = 0;
};

/// A top-level window. Every form is listed in the global component registry while it lives.
class TCustomForm : public TWinControl {
  VEX_CLASS(TCustomForm, TWinControl)

 public:
  explicit TCustomForm(TComponent* owner);
  ~TCustomForm() override;

  TWindowState WindowState() const { return window_state_; }
  void SetWindowState(TWindowState v) { window_state_ = v; }
  int32_t Color() const { return color_; }
  void SetColor(int32_t v) { color_ = v; }

  bool GetWindowPlacement(TWindowPlacement& placement) const override;
  bool SetWindowPlacement(const TWindowPlacement& placement) override;
  /// Non-visual owned components first, then the controls.
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;

  static void DescribeProperties(TClassBuilder<TCustomForm>& c);

 private:
  TWindowState window_state_ = wsNormal;
  int32_t color_ = -16777201;  // the button-face system colour
  int32_t min_x_ = -1, min_y_ = -1, max_x_ = -1, max_y_ = -1;
};

class TForm : public TCustomForm {
  VEX_CLASS(TForm, TCustomForm)

 public:
  using TCustomForm::TCustomForm;
};

class TPanel : public TWinControl {
  VEX_CLASS(TPanel, TWinControl)

 public:
  using TWinControl::TWinControl;
  static void DescribeProperties(TClassBuilder<TPanel>& c);
};

class TButton : public TWinControl {
  VEX_CLASS(TButton, TWinControl)

 public:
  using TWinControl::TWinControl;
  bool Default() const { return default_; }
  void SetDefault(bool v) { default_ = v; }
  bool Cancel() const { return cancel_; }
  void SetCancel(bool v) { cancel_ = v; }
  int32_t ModalResult() const { return modal_result_; }
  void SetModalResult(int32_t v) { modal_result_ = v; }
  static void DescribeProperties(TClassBuilder<TButton>& c);

 private:
  bool default_ = false;
  bool cancel_ = false;
  int32_t modal_result_ = 0;
};

/// A caption drawn on its parent: a control without a window of its own.
class TLabel : public TControl {
  VEX_CLASS(TLabel, TControl)

 public:
  using TControl::TControl;
  static void DescribeProperties(TClassBuilder<TLabel>& c);
};

class TEdit : public TWinControl {
  VEX_CLASS(TEdit, TWinControl)

 public:
  using TWinControl::TWinControl;
  bool ReadOnly() const { return read_only_; }
  void SetReadOnly(bool v) { read_only_ = v; }
  static void DescribeProperties(TClassBuilder<TEdit>& c);

 private:
  bool read_only_ = false;
};

/// A multi-line edit: its text is its Lines.
class TMemo : public TWinControl {
  VEX_CLASS(TMemo, TWinControl)

 public:
  explicit TMemo(TComponent* owner);
  TStrings* Lines() const { return lines_.get(); }
  String GetText() const override { return lines_->Text(); }
  void SetText(const String& text) override { lines_->SetText(text); }
  bool ReadOnly() const { return read_only_; }
  void SetReadOnly(bool v) { read_only_ = v; }
  bool WordWrap() const { return word_wrap_; }
  void SetWordWrap(bool v) { word_wrap_ = v; }
  static void DescribeProperties(TClassBuilder<TMemo>& c);

 private:
  std::unique_ptr<TStringList> lines_;
  bool read_only_ = false;
  bool word_wrap_ = true;
};

class TCheckBox : public TWinControl {
  VEX_CLASS(TCheckBox, TWinControl)

 public:
  using TWinControl::TWinControl;
  bool Checked() const { return checked_; }
  void SetChecked(bool v) { checked_ = v; }
  static void DescribeProperties(TClassBuilder<TCheckBox>& c);

 private:
  bool checked_ = false;
};

class TListBox : public TWinControl {
  VEX_CLASS(TListBox, TWinControl)

 public:
  explicit TListBox(TComponent* owner);
  TStrings* Items() const { return items_.get(); }
  TListBoxStyle Style() const { return style_; }
  void SetStyle(TListBoxStyle v) { style_ = v; }
  static void DescribeProperties(TClassBuilder<TListBox>& c);

 private:
  std::unique_ptr<TStringList> items_;
  TListBoxStyle style_ = lbStandard;
};

class TComboBox : public TWinControl {
  VEX_CLASS(TComboBox, TWinControl)

 public:
  explicit TComboBox(TComponent* owner);
  TStrings* Items() const { return items_.get(); }
  TComboBoxStyle Style() const { return style_; }
  void SetStyle(TComboBoxStyle v) { style_ = v; }
  int32_t ItemIndex() const { return item_index_; }
  void SetItemIndex(int32_t v) { item_index_ = v; }
  static void DescribeProperties(TClassBuilder<TComboBox>& c);

 private:
  std::unique_ptr<TStringList> items_;
  TComboBoxStyle style_ = csDropDown;
  int32_t item_index_ = -1;
};

class TTabSheet;

/// A page container: its children are tab sheets, one of them active.
class TPageControl : public TWinControl {
  VEX_CLASS(TPageControl, TWinControl)

 public:
  using TWinControl::TWinControl;
  bool IsPageContainer() const override { return true; }
  int32_t PageCount() const;
  TTabSheet* Pages(int32_t index) const;
  TTabSheet* ActivePage() const { return active_page_; }
  void SetActivePage(TTabSheet* page);
  bool MultiLine() const { return multi_line_; }
  void SetMultiLine(bool v) { multi_line_ = v; }
  TTabStyle Style() const { return style_; }
  void SetStyle(TTabStyle v) { style_ = v; }
  static void DescribeProperties(TClassBuilder<TPageControl>& c);

 protected:
  void RemoveControl(TControl* control) override;

 private:
  TTabSheet* active_page_ = nullptr;
  bool multi_line_ = false;
  TTabStyle style_ = tsTabs;
};

/// A page of a page control.
class TTabSheet : public TWinControl {
  VEX_CLASS(TTabSheet, TWinControl)

 public:
  using TWinControl::TWinControl;
  TPageControl* PageControl() const { return dynamic_cast<TPageControl*>(Parent()); }
  /// Makes this sheet a page of `page_control` (its parent), or of none.
  void SetPageControl(TPageControl* page_control) { SetParent(page_control); }
  /// The position among the pages, -1 outside a page control.
  int32_t PageIndex() const;
  bool IsBoundsStored() const override { return false; }
  static void DescribeProperties(TClassBuilder<TTabSheet>& c);
};

/// Stands in for a control whose class this library does not know, keeping that class's
/// name, so that the rest of a form description still loads and can be shown.
class TUnknownControl : public TWinControl {
  VEX_CLASS(TUnknownControl, TWinControl)

 public:
  using TWinControl::TWinControl;
  /// The class named in the description.
  const String& SourceClassName() const { return source_class_; }
  void SetSourceClassName(const String& name) { source_class_ = name; }
  String ClassName() const override {
    return source_class_.empty() ? TWinControl::ClassName() : source_class_;
  }

 private:
  String source_class_;
};

/// Creates a control of a registered control class owned by `owner` (which frees it; the
/// caller when null), with no parent. EComponentError for a class that is not a creatable
/// control.
TControl* CreateControlOfClass(const TClassInfo& control_class, TComponent* owner);

/// Registers the standard control classes (form, panel, button, label, edit, memo, check box,
/// list box, combo box, page control, tab sheet) and TFont with the class registry. Runs once
/// at load; calling it again does nothing.
void RegisterStandardControls();

// --- The global component registry: the live top-level forms and modules by name ---------------

/// Lists a top-level component (every TCustomForm lists itself while it lives).
void RegisterGlobalComponent(TComponent* component);
void UnregisterGlobalComponent(TComponent* component);
/// The listed component named `name` (case-insensitive), or null.
TComponent* FindGlobalComponent(const String& name);

}  // namespace vex
