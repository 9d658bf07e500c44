// The control-tree operations on live Qt widgets, offscreen, with a screenshot of each window.
#include "vex/qt/widget_controls.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "qt_test_support.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"
#include "vex/text/convert_utils.h"
#include "vex/ui/form_reader.h"
#include "vex/ui/vcl_utils.h"

namespace vex::qt {
namespace {

using test::App;
using test::SaveTestScreenshot;

// A window with a button, a label, a list and a tab widget of two pages.
struct Window {
  QApplication& app = App();
  QWidget window;
  QPushButton* ok = new QPushButton("OK", &window);
  QLabel* label = new QLabel("Channels", &window);
  QListWidget* list = new QListWidget(&window);
  QTabWidget* tabs = new QTabWidget(&window);

  Window() {
    window.setObjectName("frmQt");
    window.setWindowTitle("Widgets");
    ok->setObjectName("btnOK");
    ok->setGeometry(10, 20, 300, 40);
    label->setObjectName("lblChannels");
    label->setAlignment(Qt::AlignRight);
    label->setGeometry(10, 70, 300, 20);
    list->setObjectName("lstChannels");
    list->addItems({"Beam 1", "Beam 2"});
    list->setGeometry(10, 100, 300, 80);
    tabs->setObjectName("pcPages");
    tabs->setGeometry(320, 20, 200, 160);
    auto* first = new QWidget();
    first->setObjectName("tsFirst");
    tabs->addTab(first, "First");
    window.resize(540, 200);
    window.show();
  }
};

TEST(WidgetControlsTest, DescribesARealWindow) {
  Window w;
  auto tree = WrapWidgetTree(&w.window);
  TStringList lines;
  TControl* ok = nullptr;
  TVclUtils::EnumNestedControlsWithFunc(tree.get(), [&](TControl* c) {
    if (c->ControlName() == u"btnOK") ok = c;
    return false;
  });
  ASSERT_NE(ok, nullptr);
  EXPECT_EQ(ok->Parent(), tree.get());
  EXPECT_EQ(ok->Owner(), tree.get());
  EXPECT_TRUE(TVclUtils::GetControlPropList(ok, {cptName, cptCaption, cptPlace, cptParent}, lines,
                                            0, u'=', true, true));
  EXPECT_EQ(lines.Text(),
            u"btnOK:QPushButton\r\n\tCaption=OK\r\n\tPlace=x: 10; y: 20; w: 300; "
            u"h: 40\r\n\tParent=" +
                TConvertUtils::PtrToStr(tree.get()) + u"\r\n");

  auto* list = dynamic_cast<TControl*>(tree->FindComponent(u"lstChannels"));
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(TVclUtils::GetPropTypeValueStr(list, cptItems, u'=', true), u"Items=Beam 1\r\nBeam 2");
  auto* label = dynamic_cast<TControl*>(tree->FindComponent(u"lblChannels"));
  EXPECT_EQ(TVclUtils::GetPropTypeValueStr(label, cptAlign, u'=', true), u"Align=taRightJustify");
  EXPECT_EQ(TVclUtils::GetPropTypeValueStr(tree.get(), cptCaption, u'=', true), u"Caption=Widgets");
  EXPECT_EQ(TVclUtils::GetPropTypeValueStr(tree.get(), cptHandle, u'=', true),
            u"Handle=" + TConvertUtils::PtrToStr(reinterpret_cast<void*>(w.window.winId())));
  // The tab widget's children are its pages, not Qt's own helper widgets.
  auto* pages = dynamic_cast<TWinControl*>(tree->FindComponent(u"pcPages"));
  ASSERT_NE(pages, nullptr);
  ASSERT_EQ(pages->ControlCount(), 1);
  EXPECT_EQ(pages->Controls(0)->GetText(), u"First");
  SaveTestScreenshot(w.window, "widget_controls_window");
}

TEST(WidgetControlsTest, CreatesRealWidgetsAndPagesOnlyInTabWidgets) {
  Window w;
  auto tree = WrapWidgetTree(&w.window);
  TControl* button = TVclUtils::CreateControlByClassAndName(
      tree.get(), tree.get(), TButton::StaticClassInfo(), u"btnApply", u"Apply");
  auto* made = w.window.findChild<QPushButton*>("btnApply");
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->text(), "Apply");
  EXPECT_EQ(button->ClassName(), u"QPushButton");
  EXPECT_THROW(TVclUtils::CreateControlByClassAndName(tree.get(), tree.get(),
                                                      TEdit::StaticClassInfo(), u"BTNAPPLY", u""),
               EComponentError);

  auto* panel = dynamic_cast<TWinControl*>(tree->FindComponent(u"btnOK"));
  EXPECT_EQ(TVclUtils::CreateControlByClassAndName(tree.get(), panel, TTabSheet::StaticClassInfo(),
                                                   u"tsX", u"X"),
            nullptr);
  auto* pages = dynamic_cast<TWinControl*>(tree->FindComponent(u"pcPages"));
  TControl* sheet = TVclUtils::CreateControlByClassAndName(
      tree.get(), pages, TTabSheet::StaticClassInfo(), u"tsSecond", u"Second");
  ASSERT_NE(sheet, nullptr);
  EXPECT_EQ(w.tabs->count(), 2);
  EXPECT_EQ(w.tabs->tabText(1), "Second");
  w.tabs->setCurrentIndex(1);
  SaveTestScreenshot(w.window, "widget_controls_created");
}

TEST(WidgetControlsTest, WindowPlacementSavesAndRestoresGeometryAndState) {
  Window w;
  w.window.setGeometry(40, 50, 500, 300);
  QApplication::processEvents();
  auto tree = WrapWidgetTree(&w.window);
  String text;
  ASSERT_TRUE(TVclUtils::SaveLoadWindowPos(text, tree.get(), true));
  EXPECT_EQ(text, u"44,0,1,-1,-1,-1,-1,40,50,540,350");

  String maximised = u"44,0,3,-1,-1,-1,-1,60,70,460,370";
  QWidget other;
  other.show();
  auto other_tree = WrapWidgetTree(&other);
  ASSERT_TRUE(TVclUtils::SaveLoadWindowPos(maximised, other_tree.get(), false));
  QApplication::processEvents();
  EXPECT_TRUE(other.windowState() & Qt::WindowMaximized);
  String again;
  TVclUtils::SaveLoadWindowPos(again, other_tree.get(), true);
  EXPECT_EQ(again, maximised);

  String normal = u"44,0,1,-1,-1,-1,-1,60,70,460,370";
  ASSERT_TRUE(TVclUtils::SaveLoadWindowPos(normal, other_tree.get(), false));
  QApplication::processEvents();
  EXPECT_FALSE(other.windowState() & Qt::WindowMaximized);
  EXPECT_EQ(other.geometry(), QRect(60, 70, 400, 300));

  String child_pos;
  auto* ok = dynamic_cast<TControl*>(tree->FindComponent(u"btnOK"));
  ASSERT_TRUE(TVclUtils::SaveLoadControlPos(child_pos, ok, true));
  EXPECT_EQ(child_pos, u"10,20,310,60");
  String moved = u"5,5,105,105";
  ASSERT_TRUE(TVclUtils::SaveLoadControlPos(moved, ok, false));
  EXPECT_EQ(w.ok->geometry(), QRect(20, 20, 85, 85));
}

TEST(WidgetControlsTest, BuildsWidgetsForAFormDescriptionWithPlaceholders) {
  App();
  const std::string text =
      "object frmOrder: TForm\r\n"
      "  Width = 360\r\n"
      "  Height = 220\r\n"
      "  Caption = 'Order'\r\n"
      "  object pnlTop: TPanel\r\n"
      "    Height = 40\r\n"
      "    Align = alTop\r\n"
      "    Caption = ''\r\n"
      "    object lblName: TLabel\r\n"
      "      Left = 8\r\n"
      "      Top = 12\r\n"
      "      Width = 60\r\n"
      "      Height = 16\r\n"
      "      Caption = 'Name:'\r\n"
      "    end\r\n"
      "    object edtName: TEdit\r\n"
      "      Left = 72\r\n"
      "      Top = 8\r\n"
      "      Width = 200\r\n"
      "      Height = 24\r\n"
      "      Text = 'Beam 7'\r\n"
      "    end\r\n"
      "  end\r\n"
      "  object chart: TFancyChart\r\n"
      "    Align = alClient\r\n"
      "  end\r\n"
      "end\r\n";
  std::vector<TFormProblem> problems;
  auto form = ReadFormDescription(TBytes(text.begin(), text.end()), problems);
  ASSERT_EQ(problems.size(), 1u);
  auto window = BuildFormWidgets(*dynamic_cast<TControl*>(form.get()));
  window->show();
  QApplication::processEvents();
  EXPECT_EQ(window->windowTitle(), "Order");
  auto* edit = window->findChild<QLineEdit*>("edtName");
  ASSERT_NE(edit, nullptr);
  EXPECT_EQ(edit->text(), "Beam 7");
  auto* panel = window->findChild<QWidget*>("pnlTop");
  ASSERT_NE(panel, nullptr);
  EXPECT_EQ(panel->geometry(), QRect(0, 0, 360, 40));
  auto* chart = window->findChild<QWidget*>("chart");
  ASSERT_NE(chart, nullptr);
  EXPECT_EQ(chart->geometry(), QRect(0, 40, 360, 180));
  auto* placeholder = chart->findChild<QLabel*>();
  ASSERT_NE(placeholder, nullptr);
  EXPECT_EQ(placeholder->text(), "chart: TFancyChart");
  SaveTestScreenshot(*window, "form_with_placeholder");
}

}  // namespace
}  // namespace vex::qt
