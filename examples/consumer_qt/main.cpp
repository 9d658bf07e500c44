// Shows a yes/no question through TDialogUtils with the Qt module installed and answers it
// from a timer; runs offscreen.
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <iostream>

#include "vex/qt/qt_module.h"
#include "vex/qt/screenshot.h"
#include "vex/vex.h"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  vex::qt::Install();
  vex::qt::WhenModalShown([](QWidget* window) {
    auto* box = qobject_cast<QMessageBox*>(window);
    if (box) box->button(QMessageBox::Yes)->click();
  });
  const bool yes = vex::TDialogUtils::ShowYesNoQuestionDialog(u"Consumer", u"Answer yes?");
  std::cout << "answer=" << (yes ? "yes" : "no") << "\n";  // answer=yes
  vex::qt::Uninstall();
}
