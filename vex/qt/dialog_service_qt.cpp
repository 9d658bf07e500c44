#include "vex/qt/dialog_service_qt.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <vector>

#include "vex/qt/qt_string.h"

namespace vex::qt {

namespace {

// Modal windows are owned by the active window so that they stay above it.
QWidget* Owner() { return QApplication::activeWindow(); }

QMessageBox::Icon ToQtIcon(TDialogIcon icon) {
  switch (icon) {
    case diError:
      return QMessageBox::Critical;
    case diInformation:
      return QMessageBox::Information;
    case diWarning:
      return QMessageBox::Warning;
    case diQuestion:
      return QMessageBox::Question;
  }
  return QMessageBox::NoIcon;
}

struct ButtonAnswer {
  QMessageBox::StandardButton button;
  TDialogAnswer answer;
};

std::vector<ButtonAnswer> ButtonsOf(TDialogButtons buttons) {
  switch (buttons) {
    case dbOK:
      return {{QMessageBox::Ok, daOK}};
    case dbYesNo:
      return {{QMessageBox::Yes, daYes}, {QMessageBox::No, daNo}};
    case dbYesNoCancel:
      return {{QMessageBox::Yes, daYes}, {QMessageBox::No, daNo}, {QMessageBox::Cancel, daCancel}};
    case dbOKCancel:
      return {{QMessageBox::Ok, daOK}, {QMessageBox::Cancel, daCancel}};
  }
  return {{QMessageBox::Ok, daOK}};
}

}  // namespace

TTextViewerDialog::TTextViewerDialog(QWidget* parent)
    : QDialog(parent), editor_(new QPlainTextEdit(this)), buttons_(new QDialogButtonBox(this)) {
  setObjectName("TextViewer");
  editor_->setObjectName("Editor");
  editor_->setLineWrapMode(QPlainTextEdit::NoWrap);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(editor_);
  layout->addWidget(buttons_);
  connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
  resize(480, 360);
}

void TTextViewerDialog::Load(const TTextViewerForm& form) {
  setWindowTitle(ToQString(form.Caption));
  editor_->setPlainText(ToQString(form.Text));
  editor_->setReadOnly(form.ReadOnly);
  QDialogButtonBox::StandardButtons buttons;
  if (form.Buttons.Contains(vbOK)) buttons |= QDialogButtonBox::Ok;
  if (form.Buttons.Contains(vbCancel)) buttons |= QDialogButtonBox::Cancel;
  buttons_->setStandardButtons(buttons);
}

TDialogAnswer TQtDialogService::MessageBox(const String& Caption, const String& Text,
                                           TDialogIcon Icon, TDialogButtons Buttons,
                                           int32_t DefaultButton) {
  QMessageBox box(ToQtIcon(Icon), ToQString(Caption), ToQString(Text), QMessageBox::NoButton,
                  Owner());
  const std::vector<ButtonAnswer> buttons = ButtonsOf(Buttons);
  std::vector<QAbstractButton*> added;
  for (const ButtonAnswer& b : buttons) added.push_back(box.addButton(b.button));
  if (DefaultButton >= 0 && DefaultButton < static_cast<int32_t>(added.size())) {
    box.setDefaultButton(static_cast<QPushButton*>(added[DefaultButton]));
  }
  box.exec();
  QAbstractButton* clicked = box.clickedButton();
  for (size_t i = 0; i < added.size(); ++i) {
    if (added[i] == clicked) return buttons[i].answer;
  }
  return daCancel;
}

bool TQtDialogService::InputQuery(const String& Caption, const String& Prompt, String& Value) {
  QInputDialog dialog(Owner());
  dialog.setInputMode(QInputDialog::TextInput);
  dialog.setWindowTitle(ToQString(Caption));
  dialog.setLabelText(ToQString(Prompt));
  dialog.setTextValue(ToQString(Value));
  if (dialog.exec() != QDialog::Accepted) return false;
  Value = FromQString(dialog.textValue());
  return true;
}

bool TQtDialogService::TextViewer(TTextViewerForm& Viewer, const TCustomObjProc& Prepare) {
  TTextViewerDialog dialog(Owner());
  Viewer.Window = &dialog;
  if (Prepare) Prepare(&Viewer);
  dialog.Load(Viewer);
  const bool ok = dialog.exec() == QDialog::Accepted;
  Viewer.Window = nullptr;
  if (ok) Viewer.Text = FromQString(dialog.Editor()->toPlainText().replace('\n', "\r\n"));
  return ok;
}

bool TQtDialogService::SaveFileName(const String& Title, const String& Filter, String& FileName) {
  const QString chosen = QFileDialog::getSaveFileName(Owner(), ToQString(Title),
                                                      ToQString(FileName), ToQtFilter(Filter));
  if (chosen.isEmpty()) return false;
  FileName = FromQString(chosen);
  return true;
}

QString ToQtFilter(const String& filter) {
  const QStringList parts = ToQString(filter).split('|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString& description = parts[i];
    QString patterns = parts[i + 1];
    patterns.replace(';', ' ');
    filters << (description.contains('(') ? description : description + " (" + patterns + ")");
  }
  return filters.join(";;");
}

}  // namespace vex::qt
