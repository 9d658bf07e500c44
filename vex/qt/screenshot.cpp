#include "vex/qt/screenshot.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPixmap>
#include <QTimer>
#include <memory>

namespace vex::qt {

bool SaveScreenshot(QWidget& widget, const QString& path) {
  QDir().mkpath(QFileInfo(path).absolutePath());
  return widget.grab().save(path, "PNG");
}

void WhenModalShown(std::function<void(QWidget*)> Action, int TimeoutMs) {
  constexpr int kPollMs = 20;
  auto* timer = new QTimer(QCoreApplication::instance());
  auto waited = std::make_shared<int>(0);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, waited, TimeoutMs, Action] {
    QWidget* modal = QApplication::activeModalWidget();
    *waited += kPollMs;
    if (modal == nullptr || !modal->isVisible()) {
      if (*waited >= TimeoutMs) timer->deleteLater();
      return;
    }
    timer->stop();
    timer->deleteLater();
    Action(modal);
  });
  timer->start(kPollMs);
}

}  // namespace vex::qt
