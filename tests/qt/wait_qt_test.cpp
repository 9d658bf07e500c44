// The main-thread hand-over over the Qt event loop: a wait started from a button handler keeps
// the window painting and delivers every tick; a reply from a later Qt event stops it; a
// worker's event reaches the GUI thread with nobody calling CheckSynchronize.
#include <gtest/gtest.h>

#include <QEventLoop>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <vector>

#include "qt_test_support.h"
#include "vex/ui/flash_event.h"
#include "vex/ui/wait_procs.h"

namespace vex::qt {
namespace {

// A window with a button that waits for a reply, a progress bar fed by the ticks and a label
// repainted by a timer while the wait runs.
struct WaitWindow {
  QWidget window;
  QPushButton* button = new QPushButton("Send request", &window);
  QProgressBar* progress = new QProgressBar(&window);
  QLabel* label = new QLabel("idle", &window);
  QTimer heartbeat;
  int beats = 0;
  std::vector<int32_t> ticks;
  bool answered = false;

  WaitWindow() {
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(button);
    layout->addWidget(progress);
    layout->addWidget(label);
    window.resize(260, 120);
    QObject::connect(&heartbeat, &QTimer::timeout, [this] {
      ++beats;
      label->setText(QString("heartbeat %1").arg(beats));
    });
  }

  TSyncProc Ticks() {
    return [this](int32_t v) {
      EXPECT_TRUE(IsMainThread());
      ticks.push_back(v);
      if (v < 0) {
        progress->setRange(0, -v);
      } else {
        progress->setValue(v);
      }
    };
  }
};

TEST(QtHandOver, AWaitInAButtonHandlerKeepsTheEventLoopRunningAndDeliversEveryTick) {
  test::App();
  WaitWindow w;
  QObject::connect(w.button, &QPushButton::clicked, [&w] {
    w.heartbeat.start(5);
    w.answered = ExecuteMainProc(nullptr, w.Ticks(), 5, 40, false);
    w.heartbeat.stop();
  });
  w.window.show();
  w.button->click();
  EXPECT_FALSE(w.answered);
  EXPECT_EQ(w.ticks, (std::vector<int32_t>{-5, 1, 2, 3, 4, 5}));
  EXPECT_GT(w.beats, 0);  // timers (and painting) ran during the 200 ms wait
  EXPECT_EQ(w.progress->value(), 5);
  test::SaveTestScreenshot(w.window, "wait_in_button_handler");
}

TEST(QtHandOver, AReplyFromALaterQtEventStopsTheWait) {
  test::App();
  WaitWindow w;
  const bool answered = ExecuteMainProc(
      [](TObject* waiter) { QTimer::singleShot(60, [waiter] { StopLongTaskThread(waiter); }); },
      w.Ticks(), 100, 20, true);
  EXPECT_TRUE(answered);
  ASSERT_GE(w.ticks.size(), 2u);
  EXPECT_EQ(w.ticks.front(), -100);
  EXPECT_LT(w.ticks.back(), 100);
}

TEST(QtHandOver, AWorkersEventArrivesThroughTheEventLoopAlone) {
  test::App();
  QEventLoop loop;
  bool fired = false;
  FlashEventWithDelay(
      [&](TObject*) {
        fired = IsMainThread();
        loop.quit();
      },
      nullptr, 20);
  QTimer::singleShot(5000, &loop, &QEventLoop::quit);  // a safety net, not the expected path
  loop.exec();
  EXPECT_TRUE(fired);
}

}  // namespace
}  // namespace vex::qt
