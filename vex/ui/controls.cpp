#include "vex/ui/controls.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <mutex>

#include "vex/platform/exceptions.h"
#include "vex/platform/sysutils.h"

namespace vex {

namespace {

// Window handles are numbers unique in the process, never 0.
std::atomic<uintptr_t> g_next_handle{0x10000};

struct GlobalComponents {
  std::mutex mutex;
  std::vector<TComponent*> list;
};

GlobalComponents& Globals() {
  static GlobalComponents globals;
  return globals;
}

const std::vector<String> kAlignNames = {u"alNone",  u"alTop",    u"alBottom", u"alLeft",
                                         u"alRight", u"alClient", u"alCustom"};

// The properties most controls publish, each class listing its own in the designer's
// (alphabetical) order after the bounds and Align of TControl.
template <class C>
void CaptionProp(TClassBuilder<C>& c) {
  c.String(u"Caption", &C::GetText, &C::SetText);
}
template <class C>
void EnabledProp(TClassBuilder<C>& c) {
  c.Boolean(u"Enabled", &C::Enabled, &C::SetEnabled, true);
}
template <class C>
void FontProp(TClassBuilder<C>& c) {
  c.Persistent(u"Font", &C::Font);
}
template <class C>
void VisibleProp(TClassBuilder<C>& c) {
  c.Boolean(u"Visible", &C::Visible, &C::SetVisible, true);
}

}  // namespace

// --- TFont -----------------------------------------------------------------------------------

void TFont::Assign(const TPersistent& source) {
  if (dynamic_cast<const TFont*>(&source) == nullptr) return TPersistent::Assign(source);
  AssignProperties(source);
}

int32_t TFont::Size() const { return static_cast<int32_t>(std::lround(-height_ * 72.0 / 96.0)); }

void TFont::SetSize(int32_t points) {
  height_ = -static_cast<int32_t>(std::lround(points * 96.0 / 72.0));
}

void TFont::DescribeProperties(TClassBuilder<TFont>& c) {
  c.Integer(u"Charset", &TFont::Charset, &TFont::SetCharset, 1);
  c.Integer(u"Color", &TFont::Color, &TFont::SetColor, 0);
  c.Integer(u"Height", &TFont::Height, &TFont::SetHeight, -11);
  c.String(u"Name", &TFont::Name, &TFont::SetName, u"Tahoma");
  // Size follows Height, which is what is stored.
  c.Integer(u"Size", &TFont::Size, &TFont::SetSize).Stored(false);
  c.SetOf(u"Style", &TFont::Style, &TFont::SetStyle,
          {u"fsBold", u"fsItalic", u"fsUnderline", u"fsStrikeOut"});
}

// --- TControl --------------------------------------------------------------------------------

TControl::TControl(TComponent* owner) : TComponent(owner), font_(std::make_unique<TFont>()) {}

TControl::~TControl() { SetParent(nullptr); }

void TControl::SetParent(TWinControl* parent) {
  if (parent == parent_) return;
  if (parent == this) throw EComponentError(u"A control cannot have itself as its parent");
  if (parent_ != nullptr) parent_->RemoveControl(this);
  parent_ = nullptr;
  if (parent != nullptr) parent->InsertControl(this);
}

TRect TControl::BoundsRect() const { return {left_, top_, left_ + width_, top_ + height_}; }

void TControl::SetBounds(int32_t left, int32_t top, int32_t width, int32_t height) {
  left_ = left;
  top_ = top;
  width_ = width;
  height_ = height;
}

int32_t TControl::Width() const {
  const TRect r = BoundsRect();
  return r.Right - r.Left;
}

int32_t TControl::Height() const {
  const TRect r = BoundsRect();
  return r.Bottom - r.Top;
}

bool TControl::ReadProperty(const String& name, Variant& value) const {
  const TPropInfo* prop = FindPropInfo(*this, name);
  if (prop == nullptr || prop->kind == pkPersistent || prop->kind == pkCollection) return false;
  try {
    value = GetPropValue(*this, name);
  } catch (const EPropertyConvertError&) {
    return false;
  }
  return true;
}

bool TControl::WriteProperty(const String& name, const Variant& value) {
  if (FindPropInfo(*this, name) == nullptr) return false;
  try {
    SetPropValue(*this, name, value);
  } catch (const EPropertyConvertError&) {
    return false;
  } catch (const EVariantError&) {
    return false;
  }
  return true;
}

TStrings* TControl::ItemsList() const {
  const TPropInfo* prop = FindPropInfo(*this, u"Items");
  if (prop == nullptr || prop->kind != pkStrings) return nullptr;
  return dynamic_cast<TStrings*>(prop->get_object(*this));
}

TComponent* TControl::GetParentComponent() const { return parent_; }

void TControl::SetParentComponent(TComponent* parent) {
  if (auto* container = dynamic_cast<TWinControl*>(parent)) SetParent(container);
}

void TControl::DescribeProperties(TClassBuilder<TControl>& c) {
  // The bounds are always written, as the designer does.
  const auto stored = &TControl::IsBoundsStored;
  c.Integer(u"Left", &TControl::Left, &TControl::SetLeft).NoDefault().StoredIf<TControl>(stored);
  c.Integer(u"Top", &TControl::Top, &TControl::SetTop).NoDefault().StoredIf<TControl>(stored);
  c.Integer(u"Width", &TControl::Width, &TControl::SetWidth).NoDefault().StoredIf<TControl>(stored);
  c.Integer(u"Height", &TControl::Height, &TControl::SetHeight)
      .NoDefault()
      .StoredIf<TControl>(stored);
  c.Enum(u"Align", &TControl::Align, &TControl::SetAlign, kAlignNames, alNone);
}

// --- TWinControl -----------------------------------------------------------------------------

TWinControl::TWinControl(TComponent* owner) : TControl(owner) {}

TWinControl::~TWinControl() {
  for (TControl* child : controls_) child->parent_ = nullptr;
  controls_.clear();
}

TControl* TWinControl::Controls(int32_t index) const {
  if (index < 0 || index >= static_cast<int32_t>(controls_.size())) RaiseListIndexError(index);
  return controls_[static_cast<size_t>(index)];
}

uintptr_t TWinControl::Handle() const {
  if (handle_ == 0) handle_ = g_next_handle.fetch_add(4);
  return handle_;
}

TControl* CreateControlOfClass(const TClassInfo& control_class, TComponent* owner) {
  const auto factory = control_class.Factories().component;
  if (factory == nullptr || !control_class.InheritsFrom(TControl::StaticClassInfo())) {
    throw EComponentError(u"Cannot create an instance of " + control_class.Name());
  }
  return static_cast<TControl*>(factory(owner));
}

TControl* TWinControl::CreateChildControl(const TClassInfo& control_class, TComponent* owner) {
  TControl* control = CreateControlOfClass(control_class, owner);
  control->SetParent(this);
  return control;
}

bool TWinControl::GetWindowPlacement(TWindowPlacement& placement) const {
  placement = TWindowPlacement{};
  placement.rcNormalPosition = BoundsRect();
  return true;
}

bool TWinControl::SetWindowPlacement(const TWindowPlacement& placement) {
  SetBoundsRect(placement.rcNormalPosition);
  return true;
}

void TWinControl::GetChildren(const TGetChildProc& proc, TComponent* root) {
  for (TControl* child : controls_) {
    if (child->Owner() == root) proc(child);
  }
}

void TWinControl::InsertControl(TControl* control) {
  controls_.push_back(control);
  control->parent_ = this;
}

void TWinControl::RemoveControl(TControl* control) {
  std::erase(controls_, control);
  control->parent_ = nullptr;
}

// --- TCustomForm -----------------------------------------------------------------------------

TCustomForm::TCustomForm(TComponent* owner) : TWinControl(owner) { RegisterGlobalComponent(this); }

TCustomForm::~TCustomForm() { UnregisterGlobalComponent(this); }

bool TCustomForm::GetWindowPlacement(TWindowPlacement& placement) const {
  TWinControl::GetWindowPlacement(placement);
  placement.showCmd = window_state_ == wsMinimized   ? SW_SHOWMINIMIZED
                      : window_state_ == wsMaximized ? SW_SHOWMAXIMIZED
                                                     : SW_SHOWNORMAL;
  placement.ptMinPositionX = min_x_;
  placement.ptMinPositionY = min_y_;
  placement.ptMaxPositionX = max_x_;
  placement.ptMaxPositionY = max_y_;
  return true;
}

bool TCustomForm::SetWindowPlacement(const TWindowPlacement& placement) {
  TWinControl::SetWindowPlacement(placement);
  switch (placement.showCmd) {
    case SW_SHOWMINIMIZED:
    case 6:  // minimise
    case 7:  // minimised without activation
      window_state_ = wsMinimized;
      break;
    case SW_SHOWMAXIMIZED:
      window_state_ = wsMaximized;
      break;
    default:
      window_state_ = wsNormal;
  }
  min_x_ = placement.ptMinPositionX;
  min_y_ = placement.ptMinPositionY;
  max_x_ = placement.ptMaxPositionX;
  max_y_ = placement.ptMaxPositionY;
  return true;
}

void TCustomForm::GetChildren(const TGetChildProc& proc, TComponent* root) {
  for (int32_t i = 0; i < ComponentCount(); ++i) {
    TComponent* owned = Components(i);
    if (!owned->HasParent()) proc(owned);
  }
  TWinControl::GetChildren(proc, root);
}

void TCustomForm::DescribeProperties(TClassBuilder<TCustomForm>& c) {
  CaptionProp(c);
  // The designer stores a form's client size; without window borders it is the whole size.
  c.Integer(u"ClientHeight", &TCustomForm::Height, &TCustomForm::SetHeight).Stored(false);
  c.Integer(u"ClientWidth", &TCustomForm::Width, &TCustomForm::SetWidth).Stored(false);
  c.Integer(u"Color", &TCustomForm::Color, &TCustomForm::SetColor, -16777201);
  EnabledProp(c);
  FontProp(c);
  c.Enum(u"WindowState", &TCustomForm::WindowState, &TCustomForm::SetWindowState,
         {u"wsNormal", u"wsMinimized", u"wsMaximized"}, wsNormal);
}

// --- Standard controls -----------------------------------------------------------------------

void TPanel::DescribeProperties(TClassBuilder<TPanel>& c) {
  CaptionProp(c);
  EnabledProp(c);
  FontProp(c);
  VisibleProp(c);
}

void TButton::DescribeProperties(TClassBuilder<TButton>& c) {
  c.Boolean(u"Cancel", &TButton::Cancel, &TButton::SetCancel);
  CaptionProp(c);
  c.Boolean(u"Default", &TButton::Default, &TButton::SetDefault);
  EnabledProp(c);
  FontProp(c);
  c.Integer(u"ModalResult", &TButton::ModalResult, &TButton::SetModalResult);
  VisibleProp(c);
}

void TLabel::DescribeProperties(TClassBuilder<TLabel>& c) {
  CaptionProp(c);
  EnabledProp(c);
  FontProp(c);
  VisibleProp(c);
}

void TEdit::DescribeProperties(TClassBuilder<TEdit>& c) {
  EnabledProp(c);
  FontProp(c);
  c.Boolean(u"ReadOnly", &TEdit::ReadOnly, &TEdit::SetReadOnly);
  c.String(u"Text", &TEdit::GetText, &TEdit::SetText);
  VisibleProp(c);
}

TMemo::TMemo(TComponent* owner) : TWinControl(owner), lines_(std::make_unique<TStringList>()) {}

void TMemo::DescribeProperties(TClassBuilder<TMemo>& c) {
  EnabledProp(c);
  FontProp(c);
  c.Strings(u"Lines", &TMemo::Lines);
  c.Boolean(u"ReadOnly", &TMemo::ReadOnly, &TMemo::SetReadOnly);
  VisibleProp(c);
  c.Boolean(u"WordWrap", &TMemo::WordWrap, &TMemo::SetWordWrap, true);
}

void TCheckBox::DescribeProperties(TClassBuilder<TCheckBox>& c) {
  CaptionProp(c);
  c.Boolean(u"Checked", &TCheckBox::Checked, &TCheckBox::SetChecked);
  EnabledProp(c);
  FontProp(c);
  VisibleProp(c);
}

TListBox::TListBox(TComponent* owner)
    : TWinControl(owner), items_(std::make_unique<TStringList>()) {}

void TListBox::DescribeProperties(TClassBuilder<TListBox>& c) {
  EnabledProp(c);
  FontProp(c);
  c.Strings(u"Items", &TListBox::Items);
  VisibleProp(c);
  c.Enum(u"Style", &TListBox::Style, &TListBox::SetStyle,
         {u"lbStandard", u"lbOwnerDrawFixed", u"lbOwnerDrawVariable", u"lbVirtual",
          u"lbVirtualOwnerDraw"},
         lbStandard);
}

TComboBox::TComboBox(TComponent* owner)
    : TWinControl(owner), items_(std::make_unique<TStringList>()) {}

void TComboBox::DescribeProperties(TClassBuilder<TComboBox>& c) {
  c.Enum(
      u"Style", &TComboBox::Style, &TComboBox::SetStyle,
      {u"csDropDown", u"csSimple", u"csDropDownList", u"csOwnerDrawFixed", u"csOwnerDrawVariable"},
      csDropDown);
  EnabledProp(c);
  FontProp(c);
  c.Integer(u"ItemIndex", &TComboBox::ItemIndex, &TComboBox::SetItemIndex, -1);
  c.String(u"Text", &TComboBox::GetText, &TComboBox::SetText);
  c.Strings(u"Items", &TComboBox::Items);
  VisibleProp(c);
}

int32_t TPageControl::PageCount() const {
  int32_t count = 0;
  for (int32_t i = 0; i < ControlCount(); ++i) {
    if (dynamic_cast<TTabSheet*>(Controls(i)) != nullptr) ++count;
  }
  return count;
}

TTabSheet* TPageControl::Pages(int32_t index) const {
  int32_t seen = 0;
  for (int32_t i = 0; i < ControlCount(); ++i) {
    if (auto* page = dynamic_cast<TTabSheet*>(Controls(i))) {
      if (seen++ == index) return page;
    }
  }
  RaiseListIndexError(index);
}

void TPageControl::SetActivePage(TTabSheet* page) {
  if (page != nullptr && page->Parent() != this) return;
  active_page_ = page;
}

void TPageControl::RemoveControl(TControl* control) {
  if (control == active_page_) active_page_ = nullptr;
  TWinControl::RemoveControl(control);
}

void TPageControl::DescribeProperties(TClassBuilder<TPageControl>& c) {
  c.Component(u"ActivePage", &TPageControl::ActivePage, &TPageControl::SetActivePage);
  EnabledProp(c);
  FontProp(c);
  c.Boolean(u"MultiLine", &TPageControl::MultiLine, &TPageControl::SetMultiLine);
  c.Enum(u"Style", &TPageControl::Style, &TPageControl::SetStyle,
         {u"tsTabs", u"tsButtons", u"tsFlatButtons"}, tsTabs);
  VisibleProp(c);
}

int32_t TTabSheet::PageIndex() const {
  const TPageControl* pages = PageControl();
  if (pages == nullptr) return -1;
  for (int32_t i = 0; i < pages->PageCount(); ++i) {
    if (pages->Pages(i) == this) return i;
  }
  return -1;
}

void TTabSheet::DescribeProperties(TClassBuilder<TTabSheet>& c) {
  CaptionProp(c);
  EnabledProp(c);
  FontProp(c);
  VisibleProp(c);
}

void RegisterStandardControls() {
  static std::once_flag once;
  std::call_once(once, [] {
    RegisterClasses(
        {&TFont::StaticClassInfo(), &TControl::StaticClassInfo(), &TWinControl::StaticClassInfo(),
         &TForm::StaticClassInfo(), &TPanel::StaticClassInfo(), &TButton::StaticClassInfo(),
         &TLabel::StaticClassInfo(), &TEdit::StaticClassInfo(), &TMemo::StaticClassInfo(),
         &TCheckBox::StaticClassInfo(), &TListBox::StaticClassInfo(), &TComboBox::StaticClassInfo(),
         &TPageControl::StaticClassInfo(), &TTabSheet::StaticClassInfo()});
  });
}

namespace {
// The standard controls are readable from form descriptions as soon as the library is loaded.
const bool g_registered = (RegisterStandardControls(), true);
}  // namespace

// --- Global component registry ---------------------------------------------------------------

void RegisterGlobalComponent(TComponent* component) {
  auto& g = Globals();
  std::lock_guard lock(g.mutex);
  if (std::find(g.list.begin(), g.list.end(), component) == g.list.end()) {
    g.list.push_back(component);
  }
}

void UnregisterGlobalComponent(TComponent* component) {
  auto& g = Globals();
  std::lock_guard lock(g.mutex);
  std::erase(g.list, component);
}

TComponent* FindGlobalComponent(const String& name) {
  if (name.empty()) return nullptr;
  auto& g = Globals();
  std::lock_guard lock(g.mutex);
  for (TComponent* component : g.list) {
    if (AnsiSameText(component->Name(), name)) return component;
  }
  return nullptr;
}

}  // namespace vex
