// The Qt application of vexc's window commands (message, checktree, form show), compiled in
// only when vexc is built with vex::qt (VEXC_WITH_QT). Only these commands create it; with a
// screenshot path the windows render on the offscreen platform, are saved as PNG and closed, so
// the command needs no display.
//
//   WindowApp app(screenshot);            // "" = show on the screen
//   return app.ShowWindow(viewer);        // screenshot and exit, or run until closed
#pragma once

#ifdef VEXC_WITH_QT

#include <memory>
#include <string>

class QApplication;
class QWidget;

namespace vexc {

class WindowApp {
 public:
  /// Creates the QApplication (offscreen when ScreenshotPath is not empty) and installs
  /// vex::qt.
  explicit WindowApp(std::string ScreenshotPath);
  ~WindowApp();

  bool Offscreen() const { return !screenshot_.empty(); }
  /// Shows a main window: with a screenshot path saves it and returns at once, otherwise runs
  /// the event loop until the window closes. Returns the exit code.
  int ShowWindow(QWidget& window);
  /// With a screenshot path: the next modal window (a message box, a prompt) is saved and
  /// closed as soon as it is shown, which answers it with Cancel (or its only button).
  void CaptureNextModal();
  /// Raises InputError when a screenshot was asked for but could not be written.
  void CheckScreenshotWritten() const;

 private:
  std::string screenshot_;
  std::unique_ptr<QApplication> app_;
  std::shared_ptr<bool> written_;
};

}  // namespace vexc

#endif  // VEXC_WITH_QT
