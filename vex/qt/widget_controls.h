// Live Qt widgets as a control tree, so that every TVclUtils operation works on real windows:
// WrapWidgetTree mirrors a widget and its child widgets as TWidgetControl nodes that read and
// write the widgets themselves (object name, class name, geometry, window id, font, caption and
// text, list and combo items, alignment, multi-line). BuildFormWidgets goes the other way: it
// makes real widgets for a toolkit-free control tree read from a form description.
//
//   auto tree = vex::qt::WrapWidgetTree(&window);
//   vex::TStringList lines;
//   vex::TVclUtils::GetControlPropList(tree.get(), {vex::cptCaption, vex::cptPlace}, lines, 0,
//                                      u'=', true, true);
#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>

#include "vex/ui/controls.h"

namespace vex::qt {

/// One widget seen as a control. The mirror does not own the widget; a widget freed elsewhere
/// reads as an empty control.
class TWidgetControl : public TWinControl {
  VEX_CLASS(TWidgetControl, TWinControl)

 public:
  TWidgetControl(TComponent* owner, QWidget* widget);

  QWidget* Widget() const { return widget_.data(); }

  /// The widget's class ("QPushButton") and object name.
  String ClassName() const override;
  String ControlName() const override;
  /// Names the widget too (its object name).
  void SetName(const String& name) override;

  /// The widget's geometry: relative to its parent, or on the screen for a window.
  TRect BoundsRect() const override;
  void SetBounds(int32_t left, int32_t top, int32_t width, int32_t height) override;
  /// A window's title, a button's or label's text, an edit's content, a combo box's text.
  String GetText() const override;
  void SetText(const String& text) override;
  /// The widget's font, copied into a TFont at each call (family, pixel height, style).
  TFont* Font() const override;
  /// The native window id, made on first use.
  uintptr_t Handle() const override;

  /// "Caption" and "Text" (the widget's text), "Align" (the text alignment as taLeftJustify,
  /// taRightJustify or taCenter), "MultiLine" (true for multi-line text widgets and
  /// multi-row tab bars), "Style" (csDropDown or csDropDownList for combo boxes), "Visible",
  /// "Enabled", "Name", "Tag".
  bool ReadProperty(const String& name, Variant& value) const override;
  bool WriteProperty(const String& name, const Variant& value) override;
  /// The items of a list widget or combo box, copied at each call.
  TStrings* ItemsList() const override;

  bool IsPageContainer() const override;
  /// Creates the real widget for a standard control class (TButton a QPushButton, TEdit a
  /// QLineEdit, ..., TTabSheet a page of this tab widget) and its mirror.
  TControl* CreateChildControl(const TClassInfo& control_class, TComponent* owner) override;

  /// A window's normal geometry and its shown state (normal, minimised, maximised).
  bool GetWindowPlacement(TWindowPlacement& placement) const override;
  bool SetWindowPlacement(const TWindowPlacement& placement) override;

 private:
  QPointer<QWidget> widget_;
  mutable std::unique_ptr<TFont> font_copy_;
  mutable std::unique_ptr<TStringList> items_copy_;
};

/// Mirrors `root` and every descendant widget it shows (Qt's own helper widgets, whose object
/// names start with "qt_", are left out; a tab widget's children are its pages). The returned
/// node owns the mirrors of the descendants; the widgets stay the caller's.
std::unique_ptr<TWidgetControl> WrapWidgetTree(QWidget* root);

/// Makes real widgets for a control tree: forms become top-level windows, the standard
/// controls their Qt counterparts with the same geometry, texts, items and fonts, and any
/// other class a labelled placeholder panel. The caller owns the returned window.
std::unique_ptr<QWidget> BuildFormWidgets(const TControl& root);

}  // namespace vex::qt
