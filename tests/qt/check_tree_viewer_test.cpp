// The check tree viewer as a real window on the offscreen platform: clicks on check boxes and
// radio buttons, the space key, the find flow through the real input prompt and message box,
// the clipboard, Load and Save through the file dialog, OK and Cancel. Each test saves a PNG.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTabWidget>
#include <QToolTip>
#include <QTreeView>
#include <cstdio>
#include <filesystem>
#include <string>

#include "qt_test_support.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"
#include "vex/qt/check_tree_viewer.h"
#include "vex/qt/qt_string.h"

namespace vex::qt {
namespace {

using test::App;
using test::SaveTestScreenshot;

// The sample of the examples folder: 14 nodes.
const String kSample =
    u"Plant\r\n\t1#1|Pumps\r\n\t\t1#2|Pump 1: main feed\r\n\t\t0#2|Pump 2: standby\r\n"
    u"\tMode\r\n\t\t0@3|Manual\r\n\t\t1@4|Automatic\r\n\t\t0@0|Off\r\n"
    u"\t0#5|Alarms\r\n\t\t1#6|High pressure\r\n\t\t0#6|Low level\r\n"
    u"Reports\r\n\t1#0|Daily\r\n\t0#0|Weekly\r\n";

std::unique_ptr<TCheckTreeViewer> ShowSample(uint8_t options = ctvExpanded | ctvShowLoad |
                                                               ctvShowSave) {
  App();
  auto viewer = CreateCheckTreeViewer(nullptr, kSample, u"", nullptr, options);
  viewer->show();
  QApplication::processEvents();
  return viewer;
}

TCheckTreeNode* Node(TCheckTreeViewer& viewer, const String& text) {
  TCheckTreeNode* node = viewer.Tree().FindNode(-1, text);
  EXPECT_NE(node, nullptr) << ToUtf8(text);
  return node;
}

QModelIndex IndexOf(TCheckTreeViewer& viewer, const String& text) {
  return static_cast<TCheckTreeItemModel*>(viewer.TreeView()->model())->IndexOf(Node(viewer, text));
}

void SendClick(QWidget* widget, QPoint at) {
  const QPointF local(at);
  const QPointF global(widget->mapToGlobal(at));
  QMouseEvent press(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton,
                    Qt::NoModifier);
  QApplication::sendEvent(widget, &press);
  QMouseEvent release(QEvent::MouseButtonRelease, local, global, Qt::LeftButton, Qt::NoButton,
                      Qt::NoModifier);
  QApplication::sendEvent(widget, &release);
  QApplication::processEvents();
}

// Clicks the check box or radio button of the node with text, where the view's style puts it.
void ClickIndicator(TCheckTreeViewer& viewer, const String& text) {
  QTreeView* view = viewer.TreeView();
  const QModelIndex index = IndexOf(viewer, text);
  QStyleOptionViewItem option;
  option.initFrom(view->viewport());
  option.rect = view->visualRect(index);
  option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
  option.text = index.data().toString();
  const QRect box = view->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option,
                                                  view->viewport());
  SendClick(view->viewport(), box.center());
}

void PressKey(QWidget* widget, int key) {
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, key == Qt::Key_Space ? " " : "");
  QApplication::sendEvent(widget, &press);
  QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
  QApplication::sendEvent(widget, &release);
  QApplication::processEvents();
}

TEST(CheckTreeViewerWindow, ShowsTheTreeWithItsLayoutAndStatus) {
  auto viewer = ShowSample();
  EXPECT_EQ(viewer->windowTitle(), "Check Tree Viewer");
  EXPECT_EQ(viewer->size(), QSize(800, 660));
  EXPECT_EQ(viewer->OkButton()->size(), QSize(100, 30));
  EXPECT_TRUE(viewer->LoadButton()->isVisible());
  EXPECT_TRUE(viewer->SaveButton()->isVisible());
  EXPECT_EQ(viewer->Pages()->tabText(0), "Tree");
  EXPECT_EQ(viewer->Pages()->tabText(1), "List");
  EXPECT_EQ(viewer->Pages()->currentWidget(), viewer->TreeView());
  EXPECT_EQ(viewer->StatusText(0), "Nodes: 14");
  EXPECT_EQ(viewer->StatusText(1), "Lines: 14");
  EXPECT_EQ(viewer->StatusText(2), "Index: 0");
  EXPECT_EQ(viewer->StatusText(3), "Plant");
  EXPECT_EQ(viewer->ListEdit()->font().pixelSize(), 16);
  EXPECT_EQ(viewer->TreeView()->visualRect(IndexOf(*viewer, u"Automatic")).height(), 18);
  // Plain nodes have no check state; check boxes and radios have a real one.
  EXPECT_FALSE(IndexOf(*viewer, u"Plant").data(Qt::CheckStateRole).isValid());
  EXPECT_EQ(IndexOf(*viewer, u"Automatic").data(Qt::CheckStateRole).toInt(), Qt::Checked);

  // Selecting with the keyboard updates index and path (text up to "=" for the node itself).
  viewer->TreeView()->setFocus();
  PressKey(viewer->TreeView(), Qt::Key_Down);
  PressKey(viewer->TreeView(), Qt::Key_Down);
  EXPECT_EQ(viewer->StatusText(2), "Index: 2");
  EXPECT_EQ(viewer->StatusText(3), "Plant/Pumps/Pump 1: main feed");
  SaveTestScreenshot(*viewer, "check_tree_viewer_layout");
}

TEST(CheckTreeViewerWindow, ClicksAndSpaceTickCheckBoxesWithCascade) {
  auto viewer = ShowSample();
  TCheckTreeNode* alarms = Node(*viewer, u"Alarms");
  ClickIndicator(*viewer, u"Alarms");
  EXPECT_TRUE(alarms->Checked());
  EXPECT_TRUE(Node(*viewer, u"Low level")->Checked());  // cascaded to the children
  EXPECT_TRUE(Node(*viewer, u"High pressure")->Checked());
  EXPECT_EQ(IndexOf(*viewer, u"Low level").data(Qt::CheckStateRole).toInt(), Qt::Checked);
  SaveTestScreenshot(*viewer, "check_tree_viewer_ticked");

  ClickIndicator(*viewer, u"Low level");
  EXPECT_FALSE(Node(*viewer, u"Low level")->Checked());
  EXPECT_TRUE(alarms->Checked());

  viewer->TreeView()->setFocus();
  viewer->TreeView()->setCurrentIndex(IndexOf(*viewer, u"Alarms"));
  PressKey(viewer->TreeView(), Qt::Key_Space);
  EXPECT_FALSE(alarms->Checked());
  EXPECT_FALSE(Node(*viewer, u"High pressure")->Checked());
  // Clicking the text of a node selects it without ticking.
  SendClick(viewer->TreeView()->viewport(),
            viewer->TreeView()->visualRect(IndexOf(*viewer, u"Daily")).center() + QPoint(20, 0));
  EXPECT_TRUE(Node(*viewer, u"Daily")->Checked());
  EXPECT_EQ(viewer->Tree().Selected(), Node(*viewer, u"Daily"));
  SaveTestScreenshot(*viewer, "check_tree_viewer_unticked");
}

TEST(CheckTreeViewerWindow, RadioClicksSwitchTheGroup) {
  auto viewer = ShowSample();
  ClickIndicator(*viewer, u"Manual");
  EXPECT_TRUE(Node(*viewer, u"Manual")->Checked());
  EXPECT_FALSE(Node(*viewer, u"Automatic")->Checked());
  EXPECT_EQ(IndexOf(*viewer, u"Automatic").data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
  ClickIndicator(*viewer, u"Manual");  // a ticked radio stays ticked
  EXPECT_TRUE(Node(*viewer, u"Manual")->Checked());
  SaveTestScreenshot(*viewer, "check_tree_viewer_radio");
}

TEST(CheckTreeViewerWindow, ReadOnlyRefusesTicksAndHidesLoad) {
  auto viewer = ShowSample(ctvReadOnly | ctvShowLoad | ctvShowSave);
  EXPECT_FALSE(viewer->LoadButton()->isVisible());
  EXPECT_TRUE(viewer->SaveButton()->isVisible());
  viewer->TreeView()->expandAll();
  QApplication::processEvents();
  ClickIndicator(*viewer, u"Weekly");
  EXPECT_FALSE(Node(*viewer, u"Weekly")->Checked());
  SaveTestScreenshot(*viewer, "check_tree_viewer_read_only");
}

TEST(CheckTreeViewerWindow, FindsNodesThroughThePromptAndReportsFailure) {
  auto viewer = ShowSample(0);  // collapsed
  EXPECT_FALSE(viewer->TreeView()->isExpanded(IndexOf(*viewer, u"Plant")));
  QString prompt;
  WhenModalShown([&](QWidget* window) {
    auto* input = qobject_cast<QInputDialog*>(window);
    ASSERT_NE(input, nullptr);
    prompt = input->windowTitle() + "/" + input->labelText();
    input->setTextValue("Mode");
    SaveTestScreenshot(*input, "check_tree_viewer_find_prompt");
    input->accept();
  });
  viewer->MenuAction("Find Child...")->trigger();
  EXPECT_EQ(prompt, "Find Node/Node Text");
  EXPECT_EQ(viewer->Tree().Selected(), Node(*viewer, u"Mode"));
  EXPECT_TRUE(viewer->TreeView()->isExpanded(IndexOf(*viewer, u"Plant")));
  EXPECT_EQ(viewer->TreeView()->currentIndex(), IndexOf(*viewer, u"Mode"));
  EXPECT_EQ(viewer->StatusText(3), "Plant/Mode");

  QString box;
  WhenModalShown([&](QWidget* window) {
    qobject_cast<QInputDialog*>(window)->setTextValue("Mode");
    qobject_cast<QInputDialog*>(window)->accept();
    WhenModalShown([&](QWidget* failure) {
      auto* message = qobject_cast<QMessageBox*>(failure);
      ASSERT_NE(message, nullptr);
      box = message->windowTitle() + ": " + message->text();
      SaveTestScreenshot(*message, "check_tree_viewer_find_failure");
      message->accept();
    });
  });
  viewer->MenuAction("Find Parent...")->trigger();  // Mode is at level 1, not 0
  EXPECT_EQ(box, "TCheckTreeViewer.FindNode: Failed to find node with level 0 and text 'Mode'");
  EXPECT_EQ(viewer->Tree().Selected(), Node(*viewer, u"Mode"));
  SaveTestScreenshot(*viewer, "check_tree_viewer_found");
}

TEST(CheckTreeViewerWindow, CopiesTextAndCollapsesAndExpands) {
  auto viewer = ShowSample();
  viewer->TreeView()->setCurrentIndex(IndexOf(*viewer, u"Pump 2: standby"));
  viewer->MenuAction("Copy Text")->trigger();
  EXPECT_EQ(QApplication::clipboard()->text(), "Pump 2: standby");
  EXPECT_EQ(QToolTip::text(), "Copied chars: 15");
  SaveTestScreenshot(*viewer, "check_tree_viewer_copied");

  viewer->MenuAction("Collapse All")->trigger();
  EXPECT_FALSE(viewer->TreeView()->isExpanded(IndexOf(*viewer, u"Plant")));
  EXPECT_FALSE(Node(*viewer, u"Pumps")->Expanded());
  viewer->MenuAction("Expand All")->trigger();
  EXPECT_TRUE(viewer->TreeView()->isExpanded(IndexOf(*viewer, u"Pumps")));
  // Collapsing by hand reaches the model.
  viewer->TreeView()->collapse(IndexOf(*viewer, u"Mode"));
  EXPECT_FALSE(Node(*viewer, u"Mode")->Expanded());
}

TEST(CheckTreeViewerWindow, SavesAndLoadsThroughTheFileDialog) {
  auto viewer = ShowSample();
  const auto path = std::filesystem::temp_directory_path() / "vex_check_tree_viewer_qt.txt";
  std::filesystem::remove(path);
  ClickIndicator(*viewer, u"Weekly");
  auto choose = [&](const char* shot) {
    WhenModalShown([&, shot](QWidget* window) {
      auto* dialog = qobject_cast<QFileDialog*>(window);
      ASSERT_NE(dialog, nullptr);
      dialog->selectFile(QString::fromStdString(path.string()));
      SaveTestScreenshot(*dialog, shot);
      static_cast<QDialog*>(dialog)->accept();  // public in QDialog
    });
  };
  choose("check_tree_viewer_save_dialog");
  viewer->SaveButton()->click();
  ASSERT_TRUE(std::filesystem::exists(path));
  EXPECT_EQ(viewer->FileName(), FromUtf8(path.string()));

  TStringList saved;
  saved.LoadFromFile(path.string());
  EXPECT_EQ(saved[13], u"\t1#0|Weekly");

  ClickIndicator(*viewer, u"Weekly");
  EXPECT_FALSE(Node(*viewer, u"Weekly")->Checked());
  choose("check_tree_viewer_load_dialog");
  viewer->LoadButton()->click();
  EXPECT_TRUE(Node(*viewer, u"Weekly")->Checked());
  EXPECT_EQ(viewer->StatusText(0), "Nodes: 14");
  EXPECT_TRUE(viewer->ListEdit()->toPlainText().startsWith("[]0|Plant\n"));
  EXPECT_EQ(Node(*viewer, u"[]0|Plant")->Level(), 0);  // plain prefixes stay in the text
  SaveTestScreenshot(*viewer, "check_tree_viewer_loaded");
  std::filesystem::remove(path);
}

class CheckTreeViewerModal : public ::testing::Test {
 protected:
  void SetUp() override {
    App();
    InstallCheckTreeViewer();
  }
  void TearDown() override { UninstallCheckTreeViewer(); }
};

TEST_F(CheckTreeViewerModal, OkWritesTheTicksBackCancelWritesNothing) {
  TStringList lines;
  lines.SetText(kSample);
  WhenModalShown([](QWidget* window) {
    auto* viewer = qobject_cast<TCheckTreeViewer*>(window);
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(viewer->windowTitle(), "Pumps and modes");
    viewer->TreeView()->expandAll();
    QApplication::processEvents();
    ClickIndicator(*viewer, u"Off");
    ClickIndicator(*viewer, u"Pump 1: main feed");
    SaveTestScreenshot(*viewer, "check_tree_viewer_before_ok");
    viewer->OkButton()->click();
  });
  EXPECT_TRUE(EditObjAsCheckTree(&lines, u"", u"Pumps and modes", nullptr, false, 0));
  EXPECT_EQ(lines[2], u"\t\t0#2|Pump 1: main feed");
  EXPECT_EQ(lines[6], u"\t\t0@4|Automatic");
  EXPECT_EQ(lines[7], u"\t\t1@0|Off");
  EXPECT_EQ(lines[0], u"[]0|Plant");

  const String before = lines.Text();
  WhenModalShown([](QWidget* window) {
    auto* viewer = qobject_cast<TCheckTreeViewer*>(window);
    ASSERT_NE(viewer, nullptr);
    viewer->TreeView()->expandAll();
    QApplication::processEvents();
    ClickIndicator(*viewer, u"Daily");
    SaveTestScreenshot(*viewer, "check_tree_viewer_before_cancel");
    viewer->CancelButton()->click();
  });
  EXPECT_FALSE(EditObjAsCheckTree(&lines, u"", u"", nullptr, false, ctvExpanded));
  EXPECT_EQ(lines.Text(), before);
}

TEST_F(CheckTreeViewerModal, ImportsAndExports100000NodesThroughTheWindow) {
  // Six levels, six children per node, 100,000 nodes of unticked radios and ticked check boxes,
  // so the written file must equal the read one byte for byte.
  std::string text;
  int made = 0;
  auto add = [&](int level, auto&& self) -> void {
    if (made >= 100000) return;
    const int n = made++;
    text.append(static_cast<size_t>(level), '\t');
    text += std::string(n % 2 == 0 ? "1#" : "0@") + "1|Node " + std::to_string(n) + "\r\n";
    for (int i = 0; level < 5 && i < 6; ++i) self(level + 1, self);
  };
  while (made < 100000) add(0, add);
  const auto in = std::filesystem::temp_directory_path() / "vex_check_tree_100k_in.txt";
  const auto out = std::filesystem::temp_directory_path() / "vex_check_tree_100k_out.txt";
  std::FILE* file = std::fopen(in.string().c_str(), "wb");
  ASSERT_NE(file, nullptr);
  std::fwrite(text.data(), 1, text.size(), file);
  std::fclose(file);

  TCheckTreeViewer viewer;
  viewer.AcceptParams(nullptr, u"", u"", nullptr, ctvExpanded);
  viewer.show();
  QElapsedTimer timer;
  timer.start();
  viewer.LoadFromFile(FromUtf8(in.string()));
  QApplication::processEvents();
  const qint64 import_ms = timer.restart();
  viewer.SaveToFile(FromUtf8(out.string()));
  const qint64 export_ms = timer.elapsed();
  EXPECT_EQ(viewer.StatusText(0), "Nodes: 100000");
  EXPECT_EQ(std::filesystem::file_size(out), std::filesystem::file_size(in));
  std::printf("[ timing   ] window import of 100000 nodes: %lld ms, export: %lld ms\n",
              static_cast<long long>(import_ms), static_cast<long long>(export_ms));
  SaveTestScreenshot(viewer, "check_tree_viewer_100k");
  std::filesystem::remove(in);
  std::filesystem::remove(out);
}

}  // namespace
}  // namespace vex::qt
