// TVclUtils: describing controls and their properties as text, walking nested controls,
// creating controls by class with unique names, and saving and restoring window and control
// positions as comma-separated numbers. Works on any control tree: the toolkit-free controls of
// vex/ui/controls.h, and live widgets through vex::qt's adapter.
//
//   TVclUtils::GetMinControlInfo(ok_button);                       // u"btnOK:TButton"
//   TVclUtils::GetPropTypeValueStr(ok_button, cptPlace, u'=', true);
//                                             // u"Place=x: 10; y: 20; w: 75; h: 25"
#pragma once

#include <cstdint>
#include <functional>

#include "vex/core/base_types.h"
#include "vex/platform/string_list.h"
#include "vex/platform/types.h"
#include "vex/ui/controls.h"

namespace vex {

/// The label of a property kind: its identifier without the "cpt" prefix ("Caption").
String ControlPropTypeLabel(TControlPropType kind);

/// The callback of EnumNestedControlsWithFunc: true stops the walk.
using TControlFunc = std::function<bool(TControl* control)>;

class TVclUtils {
 public:
  /// One property as "<label><separator><value>", or "" for a null control, or for an empty
  /// value with SkipEmpty. Parent, owner, font and handle appear as pointer text; the handle
  /// only for containers; Color is always empty. Missing properties read as empty.
  static String GetPropTypeValueStr(TControl* Control, TControlPropType PropType, Char Separator,
                                    bool SkipEmpty);
  /// Every kind on its own line, each as Prefix + GetPropTypeValueStr(..., SkipEmpty = true);
  /// an empty value still leaves its prefix and line break. Trailing white space is cut.
  static String GetControlPropStr(TControl* Control, const TControlPropArray& PropTypes,
                                  const String& Prefix, Char Separator);
  /// GetControlPropStr indented by Level tabs; WithName puts the display name on a first line
  /// and indents the properties one tab deeper.
  static String GetControlPropStrWithLevel(TControl* Control, const TControlPropArray& PropTypes,
                                           int32_t Level, Char Separator, bool WithName);
  /// Adds the control's properties to List as lines indented by Level tabs; WithHeader first
  /// adds GetMinControlInfo and skips Name and ClassName. Items are listed under an "Items"
  /// line, each behind the two characters "#9". False (nothing added) for a null control.
  static bool GetControlPropList(TControl* Control, const TControlPropArray& PropTypes,
                                 TStrings& List, int32_t Level, Char Separator, bool WithHeader,
                                 bool SkipEmpty);
  /// "<display name>:<class name>"; "<Empty:Empty>" for a null control.
  static String GetMinControlInfo(TControl* Control);
  /// "<prefix><display name>: <class name>"; a null control shows "<Empty>" for both names.
  static String GetControlPropStrDef(TControl* Control, const String& Prefix);
  /// Pre-order depth-first walk calling Func until it returns true; returns whether it did.
  static bool EnumNestedControlsWithFunc(TControl* Control, const TControlFunc& Func);
  /// Creates a control of ControlClass owned by Owner inside Parent, names it and sets its
  /// "Caption". A tab-sheet class is created only inside a page container (null otherwise).
  /// A name Owner already has raises EComponentError "Component with name <name> already
  /// exists".
  static TControl* CreateControlByClassAndName(TComponent* Owner, TWinControl* Parent,
                                               const TClassInfo& ControlClass, const String& Name,
                                               const String& Caption);
  /// Wanted when it is free and not empty, else Base1, Base2, ...: free among the global
  /// components (Context null or neither a component nor a string list), the components
  /// Context owns, or the lines of a string list.
  static String GetUniqueName(TObject* Context, const String& Base, const String& Wanted);
  /// Save: the window's placement as 11 numbers joined by ","; Load: applies such a text when
  /// it has exactly 11 numbers and the first is 44. True when done.
  static bool SaveLoadWindowPos(String& Text, TControl* Window, bool Save);
  /// Save: "left,top,right,bottom" of a control wider and higher than 20. Load: exactly 4
  /// numbers of a rectangle wider and higher than 20; a left or top below 20 becomes 20
  /// (right and bottom stay). True when done.
  static bool SaveLoadControlPos(String& Text, TControl* Control, bool Save);
};

}  // namespace vex
