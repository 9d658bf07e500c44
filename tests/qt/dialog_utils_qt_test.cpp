// TDialogUtils showing real Qt windows: the composed box, the integer prompt and the list
// editor, each answered from a timer and saved as a PNG.
#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>

#include "qt_test_support.h"
#include "vex/qt/dialog_service_qt.h"
#include "vex/ui/dialog_utils.h"

namespace vex::qt {
namespace {

TEST(QtDialogUtils, AFastDialogShowsTheComposedCaptionAndLines) {
  test::App();
  QString title;
  QString text;
  WhenModalShown([&](QWidget* window) {
    auto* box = qobject_cast<QMessageBox*>(window);
    ASSERT_NE(box, nullptr);
    title = box->windowTitle();
    text = box->text();
    test::SaveTestScreenshot(*box, "dialog_utils_fast_info");
    box->button(QMessageBox::Ok)->click();
  });
  EXPECT_EQ(TDialogUtils::ShowCustomInfoDlgFast(u"Title|Line one\\nLine two", dlgInfo), -1);
  EXPECT_EQ(title, "Title");
  EXPECT_EQ(text, "Line one\r\nLine two");
}

TEST(QtDialogUtils, InputIntegerReadsTheTypedNumberThenShowsTheSuccessBox) {
  test::App();
  QStringList seen;
  WhenModalShown([&](QWidget* window) {
    auto* dialog = qobject_cast<QInputDialog*>(window);
    ASSERT_NE(dialog, nullptr);
    seen << dialog->labelText() << dialog->textValue();
    window->findChild<QLineEdit*>()->setText("10");
    test::SaveTestScreenshot(*dialog, "dialog_utils_input_integer");
    dialog->accept();
    WhenModalShown([&](QWidget* next) {
      seen << qobject_cast<QMessageBox*>(next)->text();
      next->close();
    });
  });
  int32_t value = 0;
  EXPECT_TRUE(TDialogUtils::InputInteger(u"Level", u"From %d to %d", u"Level %d set", u"Bad", 3, 1,
                                         10, value));
  EXPECT_EQ(value, 10);
  EXPECT_EQ(seen, (QStringList{"From 1 to 10", "3", "Level 10 set"}));
}

TEST(QtDialogUtils, EditListAsTextWritesTheEditedLinesBackOnOk) {
  test::App();
  TStringList list;
  list.SetText(u"Beam 1\r\nBeam 2");
  WhenModalShown([](QWidget* window) {
    auto* viewer = qobject_cast<TTextViewerDialog*>(window);
    ASSERT_NE(viewer, nullptr);
    viewer->Editor()->appendPlainText("Beam 3");
    test::SaveTestScreenshot(*viewer, "dialog_utils_edit_list");
    viewer->Buttons()->button(QDialogButtonBox::Ok)->click();
  });
  EXPECT_TRUE(TDialogUtils::EditListAsText(&list, u"Channels", nullptr, false, {vbOK, vbCancel}));
  EXPECT_EQ(list.Count(), 3);
  EXPECT_EQ(list.Strings(2), u"Beam 3");
}

}  // namespace
}  // namespace vex::qt
