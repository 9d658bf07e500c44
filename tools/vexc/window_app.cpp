#include "window_app.h"

#ifdef VEXC_WITH_QT

#include <unistd.h>

#include <cstdio>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QWidget>

#include "cli.h"
#include "vex/qt/qt_module.h"
#include "vex/qt/screenshot.h"

namespace vexc {

namespace {
int g_argc = 1;
char g_name[] = "vexc";
char* g_argv[] = {g_name, nullptr};
QtMessageHandler g_previous_handler = nullptr;

// The offscreen platform says on standard error that it cannot do window-manager things (size
// hints, activation) that a picture does not need; everything else is passed on.
void QuietOffscreenNotices(QtMsgType type, const QMessageLogContext& context,
                           const QString& message) {
  if (message.startsWith("This plugin does not support")) return;
  if (g_previous_handler != nullptr) {
    g_previous_handler(type, context, message);
  } else {
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
  }
}
}  // namespace

WindowApp::WindowApp(std::string ScreenshotPath)
    : screenshot_(std::move(ScreenshotPath)), written_(std::make_shared<bool>(false)) {
  if (Offscreen()) qputenv("QT_QPA_PLATFORM", "offscreen");
  if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
    // Qt falls back to this folder anyway, but warns on standard error; name it quietly.
    const QString runtime = QDir::tempPath() + "/runtime-" + QString::number(getuid());
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", runtime.toLocal8Bit());
  }
  if (Offscreen()) g_previous_handler = qInstallMessageHandler(QuietOffscreenNotices);
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
