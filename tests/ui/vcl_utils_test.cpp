// TVclUtils over the toolkit-free control tree.
#include "vex/ui/vcl_utils.h"

#include <gtest/gtest.h>

#include "test_support.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"
#include "vex/text/convert_utils.h"
#include "vex/ui/controls.h"

namespace vex {
namespace {

// A form with a named panel holding a button and an unnamed label, and a list box.
struct Tree {
  TForm form{nullptr};
  TPanel* panel = new TPanel(&form);
  TButton* ok = new TButton(&form);
  TLabel* label = new TLabel(&form);
  TListBox* list = new TListBox(&form);

  Tree() {
    form.SetName(u"frmMain");
    panel->SetName(u"pnlTop");
    panel->SetParent(&form);
    ok->SetName(u"btnOK");
    ok->SetParent(panel);
    ok->SetText(u"OK");
    ok->SetBounds(10, 20, 300, 40);
    label->SetParent(panel);
    list->SetName(u"lstItems");
    list->SetParent(&form);
    list->Items()->Add(u"one");
    list->Items()->Add(u"two");
  }
};

TEST(VclUtilsTest, PropTypeValueStrByKind) {
  Tree t;
  struct Case {
    TControl* control;
    TControlPropType kind;
    bool skip_empty;
    String expected;
  };
  const Case cases[] = {
      {t.ok, cptCaption, true, u"Caption=OK"},
      {t.ok, cptName, true, u"Name=btnOK"},
      {t.label, cptName, true, u"Name=$Empty"},
      {t.ok, cptClassName, true, u"ClassName=TButton"},
      {t.ok, cptCoord, true, u"Coord=x: 10; y: 20"},
      {t.ok, cptSize, true, u"Size=w: 300; h: 40"},
      {t.ok, cptPlace, true, u"Place=x: 10; y: 20; w: 300; h: 40"},
      {t.ok, cptParent, true, u"Parent=" + TConvertUtils::PtrToStr(t.panel)},
      {t.ok, cptOwner, true, u"Owner=" + TConvertUtils::PtrToStr(&t.form)},
      {t.ok, cptFont, true, u"Font=" + TConvertUtils::PtrToStr(t.ok->Font())},
      {t.ok, cptAlign, true, u"Align=alNone"},
      {t.list, cptItems, true, u"Items=one\r\ntwo"},
      {t.list, cptStyle, true, u"Style=lbStandard"},
      // Color is never read; properties a control lacks read as empty.
      {t.ok, cptColor, true, u""},
      {t.ok, cptColor, false, u"Color="},
      {t.ok, cptText, true, u""},
      {t.ok, cptMultiLine, false, u"MultiLine="},
      {t.ok, cptItems, false, u"Items="},
      // A label has no window, so no handle.
      {t.label, cptHandle, false, u"Handle="},
      {nullptr, cptName, false, u""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(TVclUtils::GetPropTypeValueStr(c.control, c.kind, u'=', c.skip_empty), c.expected)
        << ToUtf8(ControlPropTypeLabel(c.kind));
  }
  const String handle = TVclUtils::GetPropTypeValueStr(t.ok, cptHandle, u':', true);
  EXPECT_EQ(handle, u"Handle:" + TConvertUtils::PtrToStr(reinterpret_cast<void*>(t.ok->Handle())));
  EXPECT_NE(t.ok->Handle(), t.panel->Handle());
}

TEST(VclUtilsTest, ControlPropStrKeepsBlankLinesButNoTrailingBreak) {
  Tree t;
  EXPECT_EQ(TVclUtils::GetControlPropStr(t.ok, {cptName, cptColor, cptCoord}, u"\t", u'='),
            u"\tName=btnOK\r\n\t\r\n\tCoord=x: 10; y: 20");
  EXPECT_EQ(TVclUtils::GetControlPropStr(t.ok, {cptCoord, cptColor, cptText}, u"", u'='),
            u"Coord=x: 10; y: 20");
  EXPECT_EQ(TVclUtils::GetControlPropStr(nullptr, {cptName}, u"", u'='), u"");
}

TEST(VclUtilsTest, ControlPropStrWithLevelIndentsUnderTheName) {
  Tree t;
  EXPECT_EQ(TVclUtils::GetControlPropStrWithLevel(t.ok, {cptName, cptCaption}, 1, u'=', true),
            u"\tbtnOK\r\n\t\tName=btnOK\r\n\t\tCaption=OK");
  EXPECT_EQ(TVclUtils::GetControlPropStrWithLevel(t.ok, {cptCaption}, 2, u'=', false),
            u"\t\tCaption=OK");
}

TEST(VclUtilsTest, ControlPropListWritesItemsBehindLiteralHashNine) {
  Tree t;
  TStringList list;
  EXPECT_TRUE(TVclUtils::GetControlPropList(t.list, {cptName, cptItems, cptColor, cptStyle}, list,
                                            1, u'=', true, true));
  EXPECT_EQ(list.Text(),
            u"\tlstItems:TListBox\r\n\t\tItems\r\n\t\t#9one\r\n\t\t#9two\r\n"
            u"\t\tStyle=lbStandard\r\n");

  list.Clear();
  TVclUtils::GetControlPropList(t.ok, {cptName, cptColor, cptItems}, list, 0, u':', false, false);
  EXPECT_EQ(list.Text(), u"Name:btnOK\r\nColor:\r\nItems\r\n");
  EXPECT_FALSE(TVclUtils::GetControlPropList(nullptr, {cptName}, list, 0, u'=', true, true));
  EXPECT_EQ(list.Count(), 3);
}

TEST(VclUtilsTest, MinInfoAndDefNameNullAndUnnamedControls) {
  Tree t;
  EXPECT_EQ(TVclUtils::GetMinControlInfo(t.ok), u"btnOK:TButton");
  EXPECT_EQ(TVclUtils::GetMinControlInfo(nullptr), u"<Empty:Empty>");
  TPanel unnamed(nullptr);
  EXPECT_EQ(TVclUtils::GetMinControlInfo(&unnamed), u"$Empty:TPanel");
  EXPECT_EQ(TVclUtils::GetControlPropStrDef(t.ok, u"> "), u"> btnOK: TButton");
}

TEST(VclUtilsTest, EnumNestedControlsIsPreOrderAndStopsAtTrue) {
  Tree t;
  std::vector<String> seen;
  EXPECT_FALSE(TVclUtils::EnumNestedControlsWithFunc(&t.form, [&](TControl* c) {
    seen.push_back(TVclUtils::GetMinControlInfo(c));
    return false;
  }));
  EXPECT_EQ(seen, (std::vector<String>{u"frmMain:TForm", u"pnlTop:TPanel", u"btnOK:TButton",
                                       u"$Empty:TLabel", u"lstItems:TListBox"}));
  seen.clear();
  EXPECT_TRUE(TVclUtils::EnumNestedControlsWithFunc(&t.form, [&](TControl* c) {
    seen.push_back(c->ControlName());
    return c == t.ok;
  }));
  EXPECT_EQ(seen.back(), u"btnOK");
  EXPECT_EQ(seen.size(), 3u);
}

TEST(VclUtilsTest, CreateControlByClassAndName) {
  Tree t;
  TControl* edit = TVclUtils::CreateControlByClassAndName(
      &t.form, t.panel, TEdit::StaticClassInfo(), u"edtName", u"");
  ASSERT_NE(edit, nullptr);
  EXPECT_EQ(edit->Owner(), &t.form);
  EXPECT_EQ(edit->Parent(), t.panel);
  TControl* button = TVclUtils::CreateControlByClassAndName(
      &t.form, t.panel, TButton::StaticClassInfo(), u"", u"Apply");
  EXPECT_EQ(button->GetText(), u"Apply");
  EXPECT_EQ(button->Name(), u"");

  EXPECT_EQ(test::MessageOf<EComponentError>([&] {
              TVclUtils::CreateControlByClassAndName(&t.form, t.panel, TEdit::StaticClassInfo(),
                                                     u"EDTNAME", u"");
            }),
            u"Component with name EDTNAME already exists");

  // A tab sheet only inside a page control, where it becomes a page.
  EXPECT_EQ(TVclUtils::CreateControlByClassAndName(&t.form, t.panel, TTabSheet::StaticClassInfo(),
                                                   u"tsOne", u"One"),
            nullptr);
  EXPECT_EQ(t.form.FindComponent(u"tsOne"), nullptr);
  auto* pages = new TPageControl(&t.form);
  pages->SetParent(&t.form);
  auto* sheet = dynamic_cast<TTabSheet*>(TVclUtils::CreateControlByClassAndName(
      &t.form, pages, TTabSheet::StaticClassInfo(), u"tsOne", u"One"));
  ASSERT_NE(sheet, nullptr);
  EXPECT_EQ(sheet->PageControl(), pages);
  EXPECT_EQ(pages->PageCount(), 1);
  EXPECT_EQ(sheet->GetText(), u"One");
}

TEST(VclUtilsTest, UniqueNameOverTheThreeLookups) {
  TForm owner(nullptr);
  (new TEdit(&owner))->SetName(u"Edit1");
  (new TEdit(&owner))->SetName(u"Edit2");
  EXPECT_EQ(TVclUtils::GetUniqueName(&owner, u"Edit", u"Edit1"), u"Edit3");
  EXPECT_EQ(TVclUtils::GetUniqueName(&owner, u"Edit", u"edit2"), u"Edit3");
  EXPECT_EQ(TVclUtils::GetUniqueName(&owner, u"Edit", u"Name"), u"Name");
  TForm empty(nullptr);
  EXPECT_EQ(TVclUtils::GetUniqueName(&empty, u"Edit", u""), u"Edit1");

  TStringList names;
  names.Add(u"Item1");
  EXPECT_EQ(TVclUtils::GetUniqueName(&names, u"Item", u""), u"Item2");

  // Null context and other objects look among the live forms.
  TForm form(nullptr);
  form.SetName(u"frmUniqueTest");
  EXPECT_EQ(TVclUtils::GetUniqueName(nullptr, u"frmUniqueTest", u"frmUniqueTest"),
            u"frmUniqueTest1");
  TObject other;
  EXPECT_EQ(TVclUtils::GetUniqueName(&other, u"F", u"frmUniqueTest"), u"F1");
}

TEST(VclUtilsTest, WindowPositionRoundTripsAndRejectsBadRecords) {
  TForm form(nullptr);
  form.SetBounds(100, 50, 640, 480);
  String text;
  EXPECT_TRUE(TVclUtils::SaveLoadWindowPos(text, &form, true));
  EXPECT_EQ(text, u"44,0,1,-1,-1,-1,-1,100,50,740,530");

  TForm other(nullptr);
  String saved = u"44,0,3,-1,-1,-8,-8,10,20,410,320";
  EXPECT_TRUE(TVclUtils::SaveLoadWindowPos(saved, &other, false));
  EXPECT_EQ(other.WindowState(), wsMaximized);
  EXPECT_EQ(other.Width(), 400);
  String again;
  TVclUtils::SaveLoadWindowPos(again, &other, true);
  EXPECT_EQ(again, saved);

  for (String bad : {u"44,0,1,-1,-1,-1,-1,1,2,3", u"40,0,1,-1,-1,-1,-1,1,2,3,4",
                     u"44,0,1,-1,-1,-1,-1,1,2,3,x", u"", u"44,0,1,-1,-1,-1,-1,1,2,3,4,5"}) {
    EXPECT_FALSE(TVclUtils::SaveLoadWindowPos(bad, &other, false)) << ToUtf8(bad);
  }
  EXPECT_EQ(other.Left(), 10);
  TLabel label(nullptr);
  EXPECT_FALSE(TVclUtils::SaveLoadWindowPos(text, &label, true));
}

TEST(VclUtilsTest, ControlPositionTwentyPixelRules) {
  TPanel panel(nullptr);
  panel.SetBounds(30, 40, 100, 50);
  String text = u"unchanged";
  EXPECT_TRUE(TVclUtils::SaveLoadControlPos(text, &panel, true));
  EXPECT_EQ(text, u"30,40,130,90");

  panel.SetBounds(0, 0, 20, 100);
  text = u"unchanged";
  EXPECT_FALSE(TVclUtils::SaveLoadControlPos(text, &panel, true));
  EXPECT_EQ(text, u"unchanged");

  String load = u"5,5,105,105";
  EXPECT_TRUE(TVclUtils::SaveLoadControlPos(load, &panel, false));
  EXPECT_EQ(panel.BoundsRect().Left, 20);
  EXPECT_EQ(panel.BoundsRect().Top, 20);
  EXPECT_EQ(panel.BoundsRect().Right, 105);
  EXPECT_EQ(panel.BoundsRect().Bottom, 105);

  for (String bad : {u"0,0,15,200", u"0,0,200,20", u"1,2,3", u"1,2,300,400,5", u"a,b,c,d"}) {
    EXPECT_FALSE(TVclUtils::SaveLoadControlPos(bad, &panel, false)) << ToUtf8(bad);
  }
  EXPECT_EQ(panel.BoundsRect().Right, 105);
}

}  // namespace
}  // namespace vex
