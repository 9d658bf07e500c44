// The one call a Qt host makes to let the library show its windows with Qt Widgets and hand
// calls from worker threads to the GUI thread through the Qt event loop.
//
//   QApplication app(argc, argv);
//   vex::qt::Install();   // TDialogUtils now shows QMessageBox & co., the check tree viewer
//                         // is a Qt window, Synchronize posts to Qt
#pragma once

namespace vex::qt {

/// Installs the Qt dialog service, the Qt check tree viewer and the main-thread hooks: a call
/// queued by Synchronize posts an event that drains the queue on the GUI thread, and
/// TThread::WaitFor on the GUI thread keeps processing Qt events (painting, timers, input)
/// while it waits. Call it on the main thread (the one that created the QApplication) before
/// any window is shown.
void Install();
/// Removes what Install installed; call it before the QApplication is destroyed.
void Uninstall();

}  // namespace vex::qt
