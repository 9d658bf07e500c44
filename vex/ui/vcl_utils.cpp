#include "vex/ui/vcl_utils.h"

#include <algorithm>
#include <array>
#include <vector>

#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/variant.h"
#include "vex/text/convert_utils.h"

namespace vex {

namespace {

constexpr std::array<const Char*, 17> kLabels = {
    u"Parent",  u"Owner", u"Font",  u"Handle",    u"Name",   u"ClassName",
    u"Caption", u"Text",  u"Items", u"Coord",     u"Size",   u"Place",
    u"Color",   u"Style", u"Align", u"MultiLine", u"RegName"};

const String kCrLf = u"\r\n";

String DisplayName(const TControl& control) {
  String name = control.ControlName();
  return name.empty() ? String(u"$Empty") : name;
}

String PointerText(const void* p) { return p == nullptr ? String() : TConvertUtils::PtrToStr(p); }

String CoordText(const TControl& c) { return Format(u"x: %d; y: %d", {c.Left(), c.Top()}); }
String SizeText(const TControl& c) { return Format(u"w: %d; h: %d", {c.Width(), c.Height()}); }

String PublishedText(const TControl& control, const String& name) {
  Variant value;
  if (!control.ReadProperty(name, value)) return {};
  try {
    return VarToStr(value);
  } catch (const Exception&) {
    return {};  // a value with no text form reads as empty, like a missing property
  }
}

String ItemsText(const TControl& control) {
  const TStrings* items = control.ItemsList();
  if (items == nullptr) return {};
  String text;
  for (int32_t i = 0; i < items->Count(); ++i) {
    if (i > 0) text += kCrLf;
    text += (*items)[i];
  }
  return text;
}

String PropertyValue(TControl& control, TControlPropType kind) {
  switch (kind) {
    case cptParent:
      return PointerText(control.Parent());
    case cptOwner:
      return PointerText(control.Owner());
    case cptFont:
      return PointerText(control.Font());
    case cptHandle: {
      const auto* container = dynamic_cast<const TWinControl*>(&control);
      return container == nullptr ? String()
                                  : PointerText(reinterpret_cast<const void*>(container->Handle()));
    }
    case cptName:
      return DisplayName(control);
    case cptClassName:
      return control.ClassName();
    case cptItems:
      return ItemsText(control);
    case cptCoord:
      return CoordText(control);
    case cptSize:
      return SizeText(control);
    case cptPlace:
      return CoordText(control) + u"; " + SizeText(control);
    case cptColor:
      return {};  // deliberately never read
    default:
      return PublishedText(control, ControlPropTypeLabel(kind));
  }
}

String Tabs(int32_t level) { return String(static_cast<size_t>(std::max(level, 0)), u'\t'); }

// The numbers of a comma-separated text; false when a field is not an integer.
bool ParseNumbers(const String& text, std::vector<int32_t>& numbers) {
  numbers.clear();
  size_t start = 0;
  while (true) {
    const size_t comma = text.find(u',', start);
    int32_t value = 0;
    if (!TryStrToInt(text.substr(start, comma - start), value)) return false;
    numbers.push_back(value);
    if (comma == String::npos) return true;
    start = comma + 1;
  }
}

String JoinNumbers(std::initializer_list<int32_t> numbers) {
  String text;
  for (int32_t n : numbers) {
    if (!text.empty()) text += u',';
    text += IntToStr(n);
  }
  return text;
}

bool IsNameTaken(TObject* context, const String& name) {
  if (auto* component = dynamic_cast<TComponent*>(context)) {
    return component->FindComponent(name) != nullptr;
  }
  if (auto* list = dynamic_cast<TStrings*>(context)) return list->IndexOf(name) != -1;
  return FindGlobalComponent(name) != nullptr;
}

}  // namespace

String ControlPropTypeLabel(TControlPropType kind) {
  return static_cast<size_t>(kind) < kLabels.size() ? String(kLabels[kind]) : String();
}

String TVclUtils::GetPropTypeValueStr(TControl* Control, TControlPropType PropType, Char Separator,
                                      bool SkipEmpty) {
  if (Control == nullptr) return {};
  const String value = PropertyValue(*Control, PropType);
  if (value.empty() && SkipEmpty) return {};
  return ControlPropTypeLabel(PropType) + Separator + value;
}

String TVclUtils::GetControlPropStr(TControl* Control, const TControlPropArray& PropTypes,
                                    const String& Prefix, Char Separator) {
  if (Control == nullptr) return {};
  String text;
  for (TControlPropType kind : PropTypes) {
    text += Prefix + GetPropTypeValueStr(Control, kind, Separator, true) + kCrLf;
  }
  size_t end = text.size();
  while (end > 0 && (text[end - 1] == u'\r' || text[end - 1] == u'\n' || text[end - 1] == u'\t' ||
                     text[end - 1] == u' ')) {
    --end;
  }
  text.resize(end);
  return text;
}

String TVclUtils::GetControlPropStrWithLevel(TControl* Control, const TControlPropArray& PropTypes,
                                             int32_t Level, Char Separator, bool WithName) {
  String indent = Tabs(Level);
  String text;
  if (WithName) {
    text = indent + (Control == nullptr ? String() : DisplayName(*Control)) + kCrLf;
    indent += u'\t';
  }
  return text + GetControlPropStr(Control, PropTypes, indent, Separator);
}

bool TVclUtils::GetControlPropList(TControl* Control, const TControlPropArray& PropTypes,
                                   TStrings& List, int32_t Level, Char Separator, bool WithHeader,
                                   bool SkipEmpty) {
  if (Control == nullptr) return false;
  String indent = Tabs(Level);
  TStringsUpdate update(List);
  if (WithHeader) {
    List.Add(indent + GetMinControlInfo(Control));
    indent += u'\t';
  }
  for (TControlPropType kind : PropTypes) {
    if (kind == cptItems) {
      List.Add(indent + u"Items");
      if (const TStrings* items = Control->ItemsList()) {
        // "#9" is written as the two characters, not as a tab: readers of this text expect it.
        for (int32_t i = 0; i < items->Count(); ++i) List.Add(indent + u"#9" + (*items)[i]);
      }
      continue;
    }
    if (WithHeader && (kind == cptName || kind == cptClassName)) continue;
    const String item = GetPropTypeValueStr(Control, kind, Separator, SkipEmpty);
    if (!item.empty() || !SkipEmpty) List.Add(indent + item);
  }
  return true;
}

String TVclUtils::GetMinControlInfo(TControl* Control) {
  if (Control == nullptr) return u"<Empty:Empty>";
  return DisplayName(*Control) + u":" + Control->ClassName();
}

String TVclUtils::GetControlPropStrDef(TControl* Control, const String& Prefix) {
  if (Control == nullptr) return Format(u"%s%s: %s", {Prefix, u"<Empty>", u"<Empty>"});
  return Format(u"%s%s: %s", {Prefix, DisplayName(*Control), Control->ClassName()});
}

bool TVclUtils::EnumNestedControlsWithFunc(TControl* Control, const TControlFunc& Func) {
  if (Control == nullptr) return false;
  if (Func(Control)) return true;
  auto* container = dynamic_cast<TWinControl*>(Control);
  if (container == nullptr) return false;
  for (int32_t i = 0; i < container->ControlCount(); ++i) {
    if (EnumNestedControlsWithFunc(container->Controls(i), Func)) return true;
  }
  return false;
}

TControl* TVclUtils::CreateControlByClassAndName(TComponent* Owner, TWinControl* Parent,
                                                 const TClassInfo& ControlClass, const String& Name,
                                                 const String& Caption) {
  if (Owner != nullptr && !Name.empty() && Owner->FindComponent(Name) != nullptr) {
    throw EComponentError(Format(u"Component with name %s already exists", {Name}));
  }
  TControl* control = nullptr;
  if (ControlClass.InheritsFrom(TTabSheet::StaticClassInfo())) {
    // Pages exist only inside a page container.
    if (Parent == nullptr || !Parent->IsPageContainer()) return nullptr;
    control = Parent->CreateChildControl(ControlClass, Owner);
  } else if (Parent != nullptr) {
    control = Parent->CreateChildControl(ControlClass, Owner);
  } else {
    control = CreateControlOfClass(ControlClass, Owner);
  }
  if (!Name.empty()) control->SetName(Name);
  if (!Caption.empty()) control->WriteProperty(u"Caption", Caption);
  return control;
}

String TVclUtils::GetUniqueName(TObject* Context, const String& Base, const String& Wanted) {
  String candidate = Wanted;
  // Base alone is never tried: the names go Wanted, Base1, Base2, ...
  for (int64_t n = 1; candidate.empty() || IsNameTaken(Context, candidate); ++n) {
    candidate = Base + IntToStr(n);
  }
  return candidate;
}

bool TVclUtils::SaveLoadWindowPos(String& Text, TControl* Window, bool Save) {
  auto* window = dynamic_cast<TWinControl*>(Window);
  if (window == nullptr) return false;
  TWindowPlacement p;
  if (Save) {
    if (!window->GetWindowPlacement(p)) return false;
    const TRect& r = p.rcNormalPosition;
    Text = JoinNumbers({p.length, p.flags, p.showCmd, p.ptMinPositionX, p.ptMinPositionY,
                        p.ptMaxPositionX, p.ptMaxPositionY, r.Left, r.Top, r.Right, r.Bottom});
    return true;
  }
  std::vector<int32_t> n;
  if (!ParseNumbers(Text, n) || n.size() != 11 || n[0] != 44) return false;
  p = TWindowPlacement{n[0], n[1], n[2], n[3], n[4], n[5], n[6], {n[7], n[8], n[9], n[10]}};
  return window->SetWindowPlacement(p);
}

bool TVclUtils::SaveLoadControlPos(String& Text, TControl* Control, bool Save) {
  if (Control == nullptr) return false;
  if (Save) {
    if (Control->Width() <= 20 || Control->Height() <= 20) return false;
    const TRect r = Control->BoundsRect();
    Text = JoinNumbers({r.Left, r.Top, r.Right, r.Bottom});
    return true;
  }
  std::vector<int32_t> n;
  if (!ParseNumbers(Text, n) || n.size() != 4) return false;
  TRect r{n[0], n[1], n[2], n[3]};
  if (r.Right - r.Left <= 20 || r.Bottom - r.Top <= 20) return false;
  // The corner is pulled back on screen while the far edges stay, so the rectangle shrinks.
  r.Top = std::max(r.Top, 20);
  r.Left = std::max(r.Left, 20);
  Control->SetBoundsRect(r);
  return true;
}

}  // namespace vex
