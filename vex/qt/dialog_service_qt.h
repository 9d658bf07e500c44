// The dialog service over Qt Widgets: QMessageBox, QInputDialog, a text-viewer dialog and
// QFileDialog, each modal and owned by the active window. Installed by vex::qt::Install().
#pragma once

#include <QDialog>

#include "vex/ui/dialog_service.h"

class QPlainTextEdit;
class QDialogButtonBox;

namespace vex::qt {

/// The text viewer window: a plain-text editor above OK / Cancel.
class TTextViewerDialog : public QDialog {
  Q_OBJECT

 public:
  explicit TTextViewerDialog(QWidget* parent = nullptr);

  /// Copies caption, text, read-only mode and buttons from the form into the window.
  void Load(const TTextViewerForm& form);
  QPlainTextEdit* Editor() const { return editor_; }
  QDialogButtonBox* Buttons() const { return buttons_; }

 private:
  QPlainTextEdit* editor_;
  QDialogButtonBox* buttons_;
};

class TQtDialogService : public IDialogService {
 public:
  TDialogAnswer MessageBox(const String& Caption, const String& Text, TDialogIcon Icon,
                           TDialogButtons Buttons, int32_t DefaultButton) override;
  bool InputQuery(const String& Caption, const String& Prompt, String& Value) override;
  bool TextViewer(TTextViewerForm& Viewer, const TCustomObjProc& Prepare) override;
  bool SaveFileName(const String& Title, const String& Filter, String& FileName) override;
};

/// Turns a file-dialog filter of "Description|pattern|" pairs into Qt's ";;"-separated form.
QString ToQtFilter(const String& filter);

}  // namespace vex::qt
