// Pictures of windows and hands for modal dialogs: save a widget as a PNG, and act on the next
// modal window once it is up (how tests answer a QMessageBox, and how vexc renders one offscreen).
//
//   vex::qt::WhenModalShown([](QWidget* box) { vex::qt::SaveScreenshot(*box, "box.png"); });
//   TDialogUtils::ShowInfoDialog(u"Title", u"Text");   // the action runs while it is shown
#pragma once

#include <QString>
#include <QWidget>
#include <functional>

namespace vex::qt {

/// Saves the widget as it paints now into a PNG file, creating missing folders. Returns false
/// when the file could not be written.
bool SaveScreenshot(QWidget& widget, const QString& path);

/// Runs Action with the active modal window once one is shown and painted, polling from the
/// event loop; gives up after TimeoutMs. The action usually answers the window (click, accept,
/// reject), which ends its exec().
void WhenModalShown(std::function<void(QWidget*)> Action, int TimeoutMs = 10000);

}  // namespace vex::qt
