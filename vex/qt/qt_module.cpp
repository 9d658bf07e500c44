#include "vex/qt/qt_module.h"

#include <QCoreApplication>
#include <QEventLoop>

#include "vex/platform/thread.h"
#include "vex/qt/check_tree_viewer.h"
#include "vex/qt/dialog_service_qt.h"
#include "vex/ui/dialog_service.h"

namespace vex::qt {

namespace {

// Runs on the queuing thread: posting an event is thread-safe, the drain runs on the GUI thread.
void WakeGuiThread() {
  if (QCoreApplication* app = QCoreApplication::instance()) {
    QMetaObject::invokeMethod(
        app, [] { CheckSynchronize(0); }, Qt::QueuedConnection);
  }
}

void ServeGuiEvents() {
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

TQtDialogService& Service() {
  static TQtDialogService service;
  return service;
}

}  // namespace

void Install() {
  SetDialogService(&Service());
  InstallCheckTreeViewer();
  SetMainThreadHooks({&WakeGuiThread, &ServeGuiEvents});
}

void Uninstall() {
  if (DialogService() == &Service()) SetDialogService(nullptr);
  UninstallCheckTreeViewer();
  SetMainThreadHooks({});
}

}  // namespace vex::qt
