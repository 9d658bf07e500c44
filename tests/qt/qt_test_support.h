// Shared set-up of the Qt test program: one QApplication for the whole program (on the
// offscreen platform unless QT_QPA_PLATFORM says otherwise) with vex::qt installed, and PNG
// screenshots of the windows a test drove, written under the build folder.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QString>
#include <QWidget>

#include "vex/qt/qt_module.h"
#include "vex/qt/screenshot.h"

namespace vex::qt::test {

/// The program's QApplication, made on first use. It lives until the process ends.
inline QApplication& App() {
  static QApplication* app = [] {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "vex_qt_tests";
    static char* argv[] = {name, nullptr};
    auto* created = new QApplication(argc, argv);
    Install();
    return created;
  }();
  return *app;
}

/// The folder the screenshots go to.
inline QString ScreenshotDir() { return QStringLiteral(VEX_SCREENSHOT_DIR); }

/// Saves the widget as <name>.png in the screenshot folder and checks that it was written.
/// Returns the file's path.
inline QString SaveTestScreenshot(QWidget& widget, const QString& name) {
  const QString path = QDir(ScreenshotDir()).filePath(name + ".png");
  EXPECT_TRUE(SaveScreenshot(widget, path)) << path.toStdString();
  return path;
}

}  // namespace vex::qt::test
