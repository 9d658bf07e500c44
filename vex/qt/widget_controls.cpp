#include "vex/qt/widget_controls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTextEdit>
#include <QVBoxLayout>
#include <cmath>

#include "vex/platform/exceptions.h"
#include "vex/qt/qt_string.h"

namespace vex::qt {

namespace {

bool Is(const TClassInfo& info, const TClassInfo& base) { return info.InheritsFrom(base); }

// The widget standing for a control class; null for classes with no Qt counterpart.
QWidget* NewWidgetFor(const TClassInfo& info, QWidget* parent) {
  if (Is(info, TButton::StaticClassInfo())) return new QPushButton(parent);
  if (Is(info, TCheckBox::StaticClassInfo())) return new QCheckBox(parent);
  if (Is(info, TLabel::StaticClassInfo())) return new QLabel(parent);
  if (Is(info, TEdit::StaticClassInfo())) return new QLineEdit(parent);
  if (Is(info, TMemo::StaticClassInfo())) return new QPlainTextEdit(parent);
  if (Is(info, TListBox::StaticClassInfo())) return new QListWidget(parent);
  if (Is(info, TComboBox::StaticClassInfo())) return new QComboBox(parent);
  if (Is(info, TPageControl::StaticClassInfo())) return new QTabWidget(parent);
  if (Is(info, TPanel::StaticClassInfo())) {
    auto* frame = new QFrame(parent);
    frame->setFrameShape(QFrame::StyledPanel);
    return frame;
  }
  if (Is(info, TCustomForm::StaticClassInfo())) return new QWidget(parent);
  return nullptr;
}

void MirrorChildren(TWidgetControl& node, TComponent* owner) {
  QWidget* widget = node.Widget();
  QList<QWidget*> kids;
  if (auto* tabs = qobject_cast<QTabWidget*>(widget)) {
    for (int i = 0; i < tabs->count(); ++i) kids << tabs->widget(i);
  } else {
    for (QObject* object : widget->children()) {
      auto* kid = qobject_cast<QWidget*>(object);
      if (kid != nullptr && !kid->isWindow() && !kid->objectName().startsWith("qt_")) kids << kid;
    }
  }
  for (QWidget* kid : kids) {
    auto* child = new TWidgetControl(owner, kid);
    child->SetParent(&node);
    MirrorChildren(*child, owner);
  }
}

String AlignmentName(Qt::Alignment a) {
  if (a & Qt::AlignRight) return u"taRightJustify";
  if (a & Qt::AlignHCenter) return u"taCenter";
  return u"taLeftJustify";
}

}  // namespace

TWidgetControl::TWidgetControl(TComponent* owner, QWidget* widget)
    : TWinControl(owner), widget_(widget) {
  const String name = FromQString(widget->objectName());
  if (name.empty()) return;
  try {
    TWinControl::SetName(name);
  } catch (const EComponentError&) {
    // Object names need not be identifiers nor unique; ControlName still shows them.
  }
}

String TWidgetControl::ClassName() const {
  return widget_ ? FromQString(QString::fromLatin1(widget_->metaObject()->className()))
                 : TWinControl::ClassName();
}

String TWidgetControl::ControlName() const {
  return widget_ ? FromQString(widget_->objectName()) : Name();
}

void TWidgetControl::SetName(const String& name) {
  TWinControl::SetName(name);
  if (widget_) widget_->setObjectName(ToQString(name));
}

TRect TWidgetControl::BoundsRect() const {
  if (!widget_) return {};
  const QRect g = widget_->geometry();
  return {g.x(), g.y(), g.x() + g.width(), g.y() + g.height()};
}

void TWidgetControl::SetBounds(int32_t left, int32_t top, int32_t width, int32_t height) {
  if (widget_) widget_->setGeometry(left, top, width, height);
}

String TWidgetControl::GetText() const {
  QWidget* w = widget_.data();
  if (w == nullptr) return {};
  if (auto* b = qobject_cast<QAbstractButton*>(w)) return FromQString(b->text());
  if (auto* l = qobject_cast<QLabel*>(w)) return FromQString(l->text());
  if (auto* e = qobject_cast<QLineEdit*>(w)) return FromQString(e->text());
  if (auto* p = qobject_cast<QPlainTextEdit*>(w)) return FromQString(p->toPlainText());
  if (auto* t = qobject_cast<QTextEdit*>(w)) return FromQString(t->toPlainText());
  if (auto* c = qobject_cast<QComboBox*>(w)) return FromQString(c->currentText());
  if (auto* g = qobject_cast<QGroupBox*>(w)) return FromQString(g->title());
  if (QWidget* parent = w->parentWidget()) {
    if (auto* tabs = qobject_cast<QTabWidget*>(parent->parentWidget())) {
      if (int i = tabs->indexOf(w); i >= 0) return FromQString(tabs->tabText(i));
    }
  }
  return FromQString(w->windowTitle());
}

void TWidgetControl::SetText(const String& text) {
  QWidget* w = widget_.data();
  if (w == nullptr) return;
  const QString q = ToQString(text);
  if (auto* b = qobject_cast<QAbstractButton*>(w)) return b->setText(q);
  if (auto* l = qobject_cast<QLabel*>(w)) return l->setText(q);
  if (auto* e = qobject_cast<QLineEdit*>(w)) return e->setText(q);
  if (auto* p = qobject_cast<QPlainTextEdit*>(w)) return p->setPlainText(q);
  if (auto* t = qobject_cast<QTextEdit*>(w)) return t->setPlainText(q);
  if (auto* c = qobject_cast<QComboBox*>(w)) return c->setCurrentText(q);
  if (auto* g = qobject_cast<QGroupBox*>(w)) return g->setTitle(q);
  if (QWidget* parent = w->parentWidget()) {
    if (auto* tabs = qobject_cast<QTabWidget*>(parent->parentWidget())) {
      if (int i = tabs->indexOf(w); i >= 0) return tabs->setTabText(i, q);
    }
  }
  w->setWindowTitle(q);
}

TFont* TWidgetControl::Font() const {
  if (!font_copy_) font_copy_ = std::make_unique<TFont>();
  if (!widget_) return font_copy_.get();
  const QFont f = widget_->font();
  font_copy_->SetName(FromQString(f.family()));
  font_copy_->SetHeight(f.pixelSize() > 0
                            ? -f.pixelSize()
                            : -static_cast<int32_t>(std::lround(f.pointSizeF() * 96.0 / 72.0)));
  TFontStyles style;
  if (f.bold()) style.Include(fsBold);
  if (f.italic()) style.Include(fsItalic);
  if (f.underline()) style.Include(fsUnderline);
  if (f.strikeOut()) style.Include(fsStrikeOut);
  font_copy_->SetStyle(style);
  return font_copy_.get();
}

uintptr_t TWidgetControl::Handle() const {
  return widget_ ? static_cast<uintptr_t>(widget_->winId()) : 0;
}

bool TWidgetControl::ReadProperty(const String& name, Variant& value) const {
  QWidget* w = widget_.data();
  if (w == nullptr) return false;
  if (name == u"Caption" || name == u"Text") {
    value = GetText();
    return true;
  }
  if (name == u"Align") {
    if (auto* l = qobject_cast<QLabel*>(w)) return value = AlignmentName(l->alignment()), true;
    if (auto* e = qobject_cast<QLineEdit*>(w)) return value = AlignmentName(e->alignment()), true;
    return false;
  }
  if (name == u"MultiLine") {
    if (qobject_cast<QPlainTextEdit*>(w) || qobject_cast<QTextEdit*>(w)) return value = true, true;
    if (qobject_cast<QLineEdit*>(w)) return value = false, true;
    if (auto* l = qobject_cast<QLabel*>(w)) return value = l->wordWrap(), true;
    return false;
  }
  if (name == u"Style") {
    if (auto* c = qobject_cast<QComboBox*>(w)) {
      value = String(c->isEditable() ? u"csDropDown" : u"csDropDownList");
      return true;
    }
    return false;
  }
  if (name == u"Visible") return value = !w->isHidden(), true;
  if (name == u"Enabled") return value = w->isEnabled(), true;
  if (name == u"Name") return value = ControlName(), true;
  return TWinControl::ReadProperty(name, value);
}

bool TWidgetControl::WriteProperty(const String& name, const Variant& value) {
  QWidget* w = widget_.data();
  if (w == nullptr) return false;
  try {
    if (name == u"Caption" || name == u"Text") {
      SetText(VarToStr(value));
      return true;
    }
    if (name == u"Visible") return w->setVisible(value.AsBoolean()), true;
    if (name == u"Enabled") return w->setEnabled(value.AsBoolean()), true;
  } catch (const Exception&) {
    return false;
  }
  return TWinControl::WriteProperty(name, value);
}

TStrings* TWidgetControl::ItemsList() const {
  QWidget* w = widget_.data();
  auto* list = qobject_cast<QListWidget*>(w);
  auto* combo = qobject_cast<QComboBox*>(w);
  if (list == nullptr && combo == nullptr) return nullptr;
  if (!items_copy_) items_copy_ = std::make_unique<TStringList>();
  items_copy_->Clear();
  const int count = list != nullptr ? list->count() : combo->count();
  for (int i = 0; i < count; ++i) {
    items_copy_->Add(FromQString(list != nullptr ? list->item(i)->text() : combo->itemText(i)));
  }
  return items_copy_.get();
}

bool TWidgetControl::IsPageContainer() const {
  return qobject_cast<QTabWidget*>(widget_.data()) != nullptr;
}

TControl* TWidgetControl::CreateChildControl(const TClassInfo& control_class, TComponent* owner) {
  QWidget* parent = widget_.data();
  if (parent == nullptr) throw EComponentError(u"The widget of this control is gone");
  QWidget* created = nullptr;
  if (Is(control_class, TTabSheet::StaticClassInfo())) {
    auto* tabs = qobject_cast<QTabWidget*>(parent);
    if (tabs == nullptr) throw EComponentError(u"A tab sheet needs a tab widget as its parent");
    created = new QWidget();
    tabs->addTab(created, QString());
  } else {
    created = NewWidgetFor(control_class, parent);
    if (created == nullptr) created = new QWidget(parent);
    created->setVisible(true);
  }
  auto* mirror = new TWidgetControl(owner, created);
  mirror->SetParent(this);
  return mirror;
}

bool TWidgetControl::GetWindowPlacement(TWindowPlacement& placement) const {
  if (!widget_ || !widget_->isWindow()) return TWinControl::GetWindowPlacement(placement);
  placement = TWindowPlacement{};
  const Qt::WindowStates state = widget_->windowState();
  placement.showCmd = (state & Qt::WindowMinimized)   ? SW_SHOWMINIMIZED
                      : (state & Qt::WindowMaximized) ? SW_SHOWMAXIMIZED
                                                      : SW_SHOWNORMAL;
  QRect normal = widget_->normalGeometry();
  if (!normal.isValid()) normal = widget_->geometry();
  placement.rcNormalPosition = {normal.x(), normal.y(), normal.x() + normal.width(),
                                normal.y() + normal.height()};
  return true;
}

bool TWidgetControl::SetWindowPlacement(const TWindowPlacement& placement) {
  if (!widget_ || !widget_->isWindow()) return TWinControl::SetWindowPlacement(placement);
  const TRect& r = placement.rcNormalPosition;
  widget_->setWindowState(Qt::WindowNoState);
  widget_->setGeometry(r.Left, r.Top, r.Right - r.Left, r.Bottom - r.Top);
  switch (placement.showCmd) {
    case SW_SHOWMINIMIZED:
    case 6:
    case 7:
      widget_->setWindowState(Qt::WindowMinimized);
      break;
    case SW_SHOWMAXIMIZED:
      widget_->setWindowState(Qt::WindowMaximized);
      break;
    default:
      break;
  }
  return true;
}

std::unique_ptr<TWidgetControl> WrapWidgetTree(QWidget* root) {
  auto mirror = std::make_unique<TWidgetControl>(nullptr, root);
  MirrorChildren(*mirror, mirror.get());
  return mirror;
}

// --- Widgets for a control tree --------------------------------------------------------------

namespace {

void ApplyFont(const TFont& font, QWidget& widget) {
  const TFont defaults;
  QFont f = widget.font();
  if (font.Name() != defaults.Name()) f.setFamily(ToQString(font.Name()));
  if (font.Height() != defaults.Height() && font.Height() != 0) {
    f.setPixelSize(std::abs(font.Height()));
  }
  f.setBold(font.Style().Contains(fsBold));
  f.setItalic(font.Style().Contains(fsItalic));
  f.setUnderline(font.Style().Contains(fsUnderline));
  f.setStrikeOut(font.Style().Contains(fsStrikeOut));
  widget.setFont(f);
}

void ApplyContent(const TControl& control, QWidget& widget) {
  const QString text = ToQString(control.GetText());
  if (auto* b = qobject_cast<QAbstractButton*>(&widget)) b->setText(text);
  if (auto* l = qobject_cast<QLabel*>(&widget)) l->setText(text);
  if (auto* e = qobject_cast<QLineEdit*>(&widget)) e->setText(text);
  if (auto* p = qobject_cast<QPlainTextEdit*>(&widget)) p->setPlainText(text);
  if (auto* c = qobject_cast<QCheckBox*>(&widget)) {
    if (const auto* box = dynamic_cast<const TCheckBox*>(&control)) c->setChecked(box->Checked());
  }
  const TStrings* items = control.ItemsList();
  if (items != nullptr) {
    for (int32_t i = 0; i < items->Count(); ++i) {
      if (auto* list = qobject_cast<QListWidget*>(&widget)) list->addItem(ToQString((*items)[i]));
      if (auto* combo = qobject_cast<QComboBox*>(&widget)) combo->addItem(ToQString((*items)[i]));
    }
  }
  if (auto* combo = qobject_cast<QComboBox*>(&widget)) {
    const auto* box = dynamic_cast<const TComboBox*>(&control);
    combo->setEditable(box == nullptr || box->Style() != csDropDownList);
    combo->setCurrentText(text);
  }
  ApplyFont(*control.Font(), widget);
  widget.setEnabled(control.Enabled());
}

// A framed panel naming a control whose class has no Qt counterpart.
QWidget* NewPlaceholder(const TControl& control, QWidget* parent) {
  auto* frame = new QFrame(parent);
  frame->setFrameShape(QFrame::Box);
  frame->setFrameShadow(QFrame::Sunken);
  auto* layout = new QVBoxLayout(frame);
  auto* label = new QLabel(ToQString(control.ControlName() + u": " + control.ClassName()), frame);
  label->setAlignment(Qt::AlignCenter);
  label->setWordWrap(true);
  layout->addWidget(label);
  return frame;
}

// The bounds of the children, with the aligned ones laid out as the form designer does: top
// and bottom bands across the whole width first, then left and right columns, then the client
// control in what remains.
std::vector<QRect> LayOut(const TWinControl& container, int width, int height) {
  QRect free(0, 0, width, height);
  std::vector<QRect> bounds(static_cast<size_t>(container.ControlCount()));
  for (TAlign pass : {alTop, alBottom, alLeft, alRight, alClient}) {
    for (int32_t i = 0; i < container.ControlCount(); ++i) {
      const TControl& c = *container.Controls(i);
      if (c.Align() != pass) continue;
      QRect& r = bounds[static_cast<size_t>(i)];
      switch (pass) {
        case alTop:
          r = QRect(free.left(), free.top(), free.width(), c.Height());
          free.setTop(free.top() + c.Height());
          break;
        case alBottom:
          r = QRect(free.left(), free.bottom() + 1 - c.Height(), free.width(), c.Height());
          free.setBottom(free.bottom() - c.Height());
          break;
        case alLeft:
          r = QRect(free.left(), free.top(), c.Width(), free.height());
          free.setLeft(free.left() + c.Width());
          break;
        case alRight:
          r = QRect(free.right() + 1 - c.Width(), free.top(), c.Width(), free.height());
          free.setRight(free.right() - c.Width());
          break;
        default:
          r = free;
      }
    }
  }
  for (int32_t i = 0; i < container.ControlCount(); ++i) {
    const TControl& c = *container.Controls(i);
    if (c.Align() == alNone || c.Align() == alCustom) {
      bounds[static_cast<size_t>(i)] = QRect(c.Left(), c.Top(), c.Width(), c.Height());
    }
  }
  return bounds;
}

void BuildChildren(const TWinControl& container, QWidget& widget, QSize size) {
  auto* tabs = qobject_cast<QTabWidget*>(&widget);
  const std::vector<QRect> bounds = LayOut(container, size.width(), size.height());
  for (int32_t i = 0; i < container.ControlCount(); ++i) {
    const TControl& child = *container.Controls(i);
    QWidget* made = nullptr;
    QSize child_size = bounds[static_cast<size_t>(i)].size();
    if (tabs != nullptr && dynamic_cast<const TTabSheet*>(&child) != nullptr) {
      made = new QWidget();
      tabs->addTab(made, ToQString(child.GetText()));
      child_size = QSize(std::max(0, size.width() - 8), std::max(0, size.height() - 30));
    } else if (dynamic_cast<const TUnknownControl*>(&child) != nullptr) {
      made = NewPlaceholder(child, &widget);
    } else {
      made = NewWidgetFor(child.ClassInfo(), &widget);
      if (made == nullptr) made = NewPlaceholder(child, &widget);
      ApplyContent(child, *made);
    }
    made->setObjectName(ToQString(child.ControlName()));
    if (tabs == nullptr) made->setGeometry(bounds[static_cast<size_t>(i)]);
    made->setVisible(child.Visible());
    if (const auto* sub = dynamic_cast<const TWinControl*>(&child)) {
      BuildChildren(*sub, *made, child_size);
    }
  }
  if (tabs != nullptr) {
    if (const auto* pages = dynamic_cast<const TPageControl*>(&container)) {
      if (pages->ActivePage() != nullptr) tabs->setCurrentIndex(pages->ActivePage()->PageIndex());
    }
  }
}

}  // namespace

std::unique_ptr<QWidget> BuildFormWidgets(const TControl& root) {
  // Whatever its class, the root of a form is a window.
  auto window = std::make_unique<QWidget>();
  window->setObjectName(ToQString(root.ControlName()));
  window->setWindowTitle(ToQString(root.GetText()));
  ApplyFont(*root.Font(), *window);
  const QSize size(std::max(root.Width(), 1), std::max(root.Height(), 1));
  window->resize(size);
  if (const auto* container = dynamic_cast<const TWinControl*>(&root)) {
    BuildChildren(*container, *window, size);
  }
  return window;
}

}  // namespace vex::qt
