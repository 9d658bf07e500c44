// The Qt dialog service on real widgets: each window is shown modally, answered from a timer
// and saved as a PNG under the build folder.
#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>

#include "qt_test_support.h"
#include "vex/qt/dialog_service_qt.h"

namespace vex::qt {
namespace {

using test::App;
using test::SaveTestScreenshot;

struct BoxCase {
  const char* name;
  TDialogButtons buttons;
  int32_t default_index;
  QMessageBox::StandardButton expected_default;
  QMessageBox::StandardButton click;
  TDialogAnswer expected;
};

class MessageBoxTest : public ::testing::TestWithParam<BoxCase> {};

TEST_P(MessageBoxTest, ShowsTheButtonsWithTheDefaultAndReturnsTheClickedOne) {
  App();
  const BoxCase& c = GetParam();
  QString shot;
  QMessageBox::StandardButton seen_default = QMessageBox::NoButton;
  QString seen_title;
  WhenModalShown([&](QWidget* window) {
    auto* box = qobject_cast<QMessageBox*>(window);
    ASSERT_NE(box, nullptr);
    seen_title = box->windowTitle();
    seen_default = box->standardButton(box->defaultButton());
    shot = SaveTestScreenshot(*box, QString("message_box_") + c.name);
    box->button(c.click)->click();
  });
  TQtDialogService service;
  EXPECT_EQ(
      service.MessageBox(u"Title", u"Line one\r\nLine two", diQuestion, c.buttons, c.default_index),
      c.expected);
  EXPECT_EQ(seen_title, "Title");
  EXPECT_EQ(seen_default, c.expected_default);
  EXPECT_GT(QFileInfo(shot).size(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Buttons, MessageBoxTest,
    ::testing::Values(
        BoxCase{"ok", dbOK, 0, QMessageBox::Ok, QMessageBox::Ok, daOK},
        BoxCase{"yes_no", dbYesNo, 1, QMessageBox::No, QMessageBox::Yes, daYes},
        BoxCase{"yes_no_cancel", dbYesNoCancel, 2, QMessageBox::Cancel, QMessageBox::No, daNo},
        BoxCase{"ok_cancel", dbOKCancel, 0, QMessageBox::Ok, QMessageBox::Cancel, daCancel}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(QtInputQuery, ReturnsTheTypedTextOnOkAndKeepsTheValueOnCancel) {
  App();
  TQtDialogService service;
  WhenModalShown([](QWidget* window) {
    auto* dialog = qobject_cast<QInputDialog*>(window);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->labelText(), "Name:");
    EXPECT_EQ(dialog->textValue(), "old");
    window->findChild<QLineEdit*>()->setText("Beam 7");
    SaveTestScreenshot(*dialog, "input_query");
    dialog->accept();
  });
  String value = u"old";
  EXPECT_TRUE(service.InputQuery(u"Rename", u"Name:", value));
  EXPECT_EQ(value, u"Beam 7");

  WhenModalShown([](QWidget* window) {
    window->findChild<QLineEdit*>()->setText("lost");
    qobject_cast<QDialog*>(window)->reject();
  });
  EXPECT_FALSE(service.InputQuery(u"Rename", u"Name:", value));
  EXPECT_EQ(value, u"Beam 7");
}

TEST(QtTextViewer, HandsTheEditedTextBackOnlyOnOk) {
  App();
  TQtDialogService service;
  for (const bool press_ok : {true, false}) {
    TTextViewerForm form;
    form.Caption = u"Channels";
    form.Text = u"a\r\nb";
    form.ReadOnly = false;
    bool prepared_with_window = false;
    WhenModalShown([&](QWidget* window) {
      auto* viewer = qobject_cast<TTextViewerDialog*>(window);
      ASSERT_NE(viewer, nullptr);
      EXPECT_EQ(viewer->windowTitle(), "Changed by the host");
      EXPECT_EQ(viewer->Editor()->toPlainText(), "a\nb");
      EXPECT_FALSE(viewer->Editor()->isReadOnly());
      viewer->Editor()->setPlainText("x\ny\nz");
      SaveTestScreenshot(*viewer, press_ok ? "text_viewer_ok" : "text_viewer_cancel");
      viewer->Buttons()
          ->button(press_ok ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel)
          ->click();
    });
    const bool ok = service.TextViewer(form, [&](TObject* obj) {
      auto* prepared = dynamic_cast<TTextViewerForm*>(obj);
      ASSERT_NE(prepared, nullptr);
      prepared_with_window =
          qobject_cast<TTextViewerDialog*>(static_cast<QObject*>(prepared->Window)) != nullptr;
      prepared->Caption = u"Changed by the host";
    });
    EXPECT_EQ(ok, press_ok);
    EXPECT_TRUE(prepared_with_window);
    EXPECT_EQ(form.Window, nullptr);
    EXPECT_EQ(form.Text, press_ok ? String(u"x\r\ny\r\nz") : String(u"a\r\nb"));
  }
}

TEST(QtFileFilter, TurnsPipePairsIntoQtFilters) {
  EXPECT_EQ(ToQtFilter(u"Text files (*.txt)|*.txt|All|*.*;*|"), "Text files (*.txt);;All (*.* *)");
  EXPECT_EQ(ToQtFilter(u""), "");
}

}  // namespace
}  // namespace vex::qt
