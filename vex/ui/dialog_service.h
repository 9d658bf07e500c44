// The dialog service: the few modal windows the library shows (message box, input prompt, text
// viewer, save-file prompt), declared without any toolkit. The host installs an implementation
// (vex::qt::Install() installs the Qt one); with none installed nothing is shown and the
// library's show operations answer -1 / false at once.
//
//   SetDialogService(&my_service);
//   TDialogUtils::ShowInfoDialog(u"Title", u"Saved.");   // -> my_service.MessageBox(...)
#pragma once

#include <cstdint>

#include "vex/core/base_types.h"
#include "vex/platform/object.h"
#include "vex/platform/types.h"

namespace vex {

/// The icon of a message box.
enum TDialogIcon : uint8_t { diError, diInformation, diWarning, diQuestion };

/// The buttons of a message box, left to right in the order named.
enum TDialogButtons : uint8_t { dbOK, dbYesNo, dbYesNoCancel, dbOKCancel };

/// Which button closed a message box. daCancel also when the box was closed by its close
/// control or Escape; daNone when the box could not be shown.
enum TDialogAnswer : uint8_t { daNone, daOK, daYes, daNo, daCancel };

/// The buttons of the text viewer.
enum TViewerButton : uint8_t { vbOK, vbCancel };
using TViewerButtons = Set<TViewerButton>;

/// The text viewer as the host's callback sees it just before it is shown. The service reads
/// the fields back after the callback, so the callback may change them.
class TTextViewerForm : public TObject {
 public:
  String Caption;
  /// The text shown; after OK in an editable viewer, the edited text (lines joined by CR LF).
  String Text;
  bool ReadOnly = true;
  TViewerButtons Buttons{vbOK, vbCancel};
  /// The toolkit's window while it exists (a QDialog* with the Qt service), otherwise null.
  void* Window = nullptr;

  String ClassName() const override { return u"TTextViewerForm"; }
};

/// The toolkit operations the library needs. Every window is modal and owned by the
/// application's active window so that it stays above it.
class IDialogService {
 public:
  virtual ~IDialogService() = default;

  /// Shows a message box; DefaultButton is the 0-based index of the default button among
  /// those of Buttons. Returns the button that closed it.
  virtual TDialogAnswer MessageBox(const String& Caption, const String& Text, TDialogIcon Icon,
                                   TDialogButtons Buttons, int32_t DefaultButton) = 0;
  /// Shows a caption, a prompt and an edit box holding Value, with OK and Cancel. Returns true
  /// for OK, and then Value holds the edited text; on Cancel Value is left alone.
  virtual bool InputQuery(const String& Caption, const String& Prompt, String& Value) = 0;
  /// Shows Viewer's text, editable unless ReadOnly, with Viewer's buttons. Prepare (when
  /// assigned) is called once with &Viewer after the window is made and before it is shown.
  /// Returns true when closed with OK; then Viewer.Text holds the text as it is in the window.
  virtual bool TextViewer(TTextViewerForm& Viewer, const TCustomObjProc& Prepare) = 0;
  /// Asks for the name of a file to save to, starting from FileName. Filter is a file-dialog
  /// filter ("Text files (*.txt)|*.txt|"). Returns true and sets FileName when one was chosen.
  virtual bool SaveFileName(const String& Title, const String& Filter, String& FileName) = 0;
};

/// Installs the service the library shows its windows with (null uninstalls); returns the
/// previous one. The service is not owned. Install it on the main thread before use.
IDialogService* SetDialogService(IDialogService* service);
/// The installed service, or null.
IDialogService* DialogService();

}  // namespace vex
