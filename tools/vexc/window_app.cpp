#include "window_app.h"

#ifdef VEXC_WITH_QT

#include <QApplication>
#include <QWidget>

#include "cli.h"
#include "vex/qt/qt_module.h"
#include "vex/qt/screenshot.h"

namespace vexc {

namespace {
int g_argc = 1;
char g_name[] = "vexc";
char* g_argv[] = {g_name, nullptr};
}  // namespace

WindowApp::WindowApp(std::string ScreenshotPath)
    : screenshot_(std::move(ScreenshotPath)), written_(std::make_shared<bool>(false)) {
  if (Offscreen()) qputenv("QT_QPA_PLATFORM", "offscreen");
  app_ = std::make_unique<QApplication>(g_argc, g_argv);
  vex::qt::Install();
}

WindowApp::~WindowApp() { vex::qt::Uninstall(); }

int WindowApp::ShowWindow(QWidget& window) {
  window.show();
  if (!Offscreen()) return QApplication::exec();
  QApplication::processEvents();
  *written_ = vex::qt::SaveScreenshot(window, QString::fromStdString(screenshot_));
  CheckScreenshotWritten();
  return kExitOk;
}

void WindowApp::CaptureNextModal() {
  if (!Offscreen()) return;
  vex::qt::WhenModalShown(
      [path = QString::fromStdString(screenshot_), written = written_](QWidget* modal) {
        *written = vex::qt::SaveScreenshot(*modal, path);
        modal->close();
      });
}

void WindowApp::CheckScreenshotWritten() const {
  if (Offscreen() && !*written_) throw InputError(screenshot_, "cannot write the screenshot");
}

}  // namespace vexc

#endif  // VEXC_WITH_QT
