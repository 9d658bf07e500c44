// The toolkit-free control tree: parents beside owners, and form descriptions read into a tree.
#include "vex/ui/controls.h"
#include "vex/ui/form_reader.h"

#include <gtest/gtest.h>

#include "vex/platform/component_io.h"
#include "vex/platform/object_text.h"
#include "vex/platform/streams.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

std::unique_ptr<TComponent> ReadFormText(const std::string& text) {
  TStringStream source(FromUtf8(text));
  TMemoryStream binary;
  ObjectTextToBinary(source, binary);
  binary.SetPosition(0);
  return ReadComponent(binary);
}

std::string WriteFormText(TComponent& root) {
  TMemoryStream binary;
  WriteComponent(binary, root);
  binary.SetPosition(0);
  TStringStream text(u"");
  ObjectBinaryToText(binary, text);
  return ToUtf8(text.DataString());
}

const char* const kForm =
    "object frmSample: TForm\r\n"
    "  Left = 10\r\n"
    "  Top = 20\r\n"
    "  Width = 400\r\n"
    "  Height = 300\r\n"
    "  Caption = 'Sample'\r\n"
    "  object pnlTop: TPanel\r\n"
    "    Left = 0\r\n"
    "    Top = 0\r\n"
    "    Width = 400\r\n"
    "    Height = 41\r\n"
    "    Align = alTop\r\n"
    "    object btnOK: TButton\r\n"
    "      Left = 8\r\n"
    "      Top = 8\r\n"
    "      Width = 75\r\n"
    "      Height = 25\r\n"
    "      Caption = 'OK'\r\n"
    "      Default = True\r\n"
    "      Font.Style = [fsBold]\r\n"
    "    end\r\n"
    "  end\r\n"
    "  object pcMain: TPageControl\r\n"
    "    Left = 0\r\n"
    "    Top = 41\r\n"
    "    Width = 400\r\n"
    "    Height = 259\r\n"
    "    Align = alClient\r\n"
    "    ActivePage = tsList\r\n"
    "    object tsList: TTabSheet\r\n"
    "      Caption = 'List'\r\n"
    "      object lbNames: TListBox\r\n"
    "        Left = 0\r\n"
    "        Top = 0\r\n"
    "        Width = 392\r\n"
    "        Height = 231\r\n"
    "        Items.Strings = (\r\n"
    "          'Beam 1'\r\n"
    "          'Beam 2')\r\n"
    "      end\r\n"
    "    end\r\n"
    "  end\r\n"
    "end\r\n";

TEST(ControlsTest, ParentIsSeparateFromOwnerAndLetsGoOnFree) {
  TForm form(nullptr);
  auto* panel = new TPanel(&form);
  auto* button = new TButton(&form);
  panel->SetParent(&form);
  button->SetParent(panel);
  EXPECT_EQ(button->Owner(), &form);
  EXPECT_EQ(panel->ControlCount(), 1);
  button->SetParent(&form);
  EXPECT_EQ(panel->ControlCount(), 0);
  EXPECT_EQ(form.Controls(1), button);
  button->SetParent(panel);
  delete panel;  // the button stays owned by the form, out of any parent
  EXPECT_EQ(button->Parent(), nullptr);
  EXPECT_EQ(form.ControlCount(), 0);
  EXPECT_THROW(form.Controls(0), EListError);
}

TEST(ControlsTest, FormsAreListedGloballyWhileTheyLiveAndFontSizeFollowsHeight) {
  {
    TForm form(nullptr);
    form.SetName(u"frmGlobalListTest");
    EXPECT_EQ(FindGlobalComponent(u"FRMGLOBALLISTTEST"), &form);
  }
  EXPECT_EQ(FindGlobalComponent(u"frmGlobalListTest"), nullptr);
  TFont font;
  EXPECT_EQ(font.Size(), 8);
  font.SetSize(12);
  EXPECT_EQ(font.Height(), -16);
}

TEST(ControlsTest, FormDescriptionReadsIntoALiveTreeAndWritesBackTheSame) {
  auto root = ReadFormText(kForm);
  auto* form = dynamic_cast<TForm*>(root.get());
  ASSERT_NE(form, nullptr);
  EXPECT_EQ(form->GetText(), u"Sample");
  auto* ok = dynamic_cast<TButton*>(form->FindComponent(u"btnOK"));
  ASSERT_NE(ok, nullptr);
  EXPECT_EQ(ok->Parent(), form->FindComponent(u"pnlTop"));
  EXPECT_EQ(ok->Owner(), form);
  EXPECT_TRUE(ok->Default());
  EXPECT_TRUE(ok->Font()->Style().Contains(fsBold));
  auto* pages = dynamic_cast<TPageControl*>(form->FindComponent(u"pcMain"));
  ASSERT_NE(pages, nullptr);
  EXPECT_EQ(pages->PageCount(), 1);
  EXPECT_EQ(pages->ActivePage(), form->FindComponent(u"tsList"));
  auto* names = dynamic_cast<TListBox*>(form->FindComponent(u"lbNames"));
  ASSERT_NE(names, nullptr);
  EXPECT_EQ(names->Items()->Count(), 2);
  EXPECT_EQ(names->Parent(), pages->Pages(0));

  EXPECT_EQ(WriteFormText(*form), kForm);
}

TEST(FormReaderTest, UnknownClassesStandInAndProblemsCarryTheirLines) {
  const std::string text =
      "object frmBad: TForm\r\n"      // 1
      "  Caption = 'Still read'\r\n"  // 2
      "  Colour = 5\r\n"              // 3
      "  object btnA: TButton\r\n"    // 4
      "    Width = 90\r\n"            // 5
      "    Caption = 12\r\n"          // 6
      "  end\r\n"                     // 7
      "  object gadget: TGadget\r\n"  // 8
      "    Left = 7\r\n"              // 9
      "    Speed = 3\r\n"             // 10
      "  end\r\n"                     // 11
      "end\r\n";
  std::vector<TFormProblem> problems;
  auto root = ReadFormDescription(TBytes(text.begin(), text.end()), problems);
  ASSERT_NE(root, nullptr);
  auto* gadget = dynamic_cast<TUnknownControl*>(root->FindComponent(u"gadget"));
  ASSERT_NE(gadget, nullptr);
  EXPECT_EQ(gadget->ClassName(), u"TGadget");
  EXPECT_EQ(gadget->Left(), 7);
  EXPECT_EQ(gadget->Parent(), root.get());

  ASSERT_EQ(problems.size(), 4u);
  struct Expected {
    int32_t line;
    const Char* component;
    const Char* property;
  };
  const Expected expected[] = {{3, u"frmBad", u"Colour"},
                               {6, u"btnA", u"Caption"},
                               {8, u"TGadget", u""},
                               {10, u"gadget", u"Speed"}};
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(problems[i].Line, expected[i].line) << ToUtf8(problems[i].Message);
    EXPECT_EQ(problems[i].Component, expected[i].component);
    EXPECT_EQ(problems[i].Property, expected[i].property);
  }
}

TEST(FormReaderTest, ReadsTheBinaryFormToo) {
  const std::string text = "object frmB: TForm\r\n  Caption = 'B'\r\nend\r\n";
  TStringStream source(FromUtf8(text));
  TMemoryStream binary;
  ObjectTextToBinary(source, binary);
  binary.SetPosition(0);
  TBytes bytes(static_cast<size_t>(binary.Size()));
  binary.ReadBuffer(bytes.data(), binary.Size());
  std::vector<TFormProblem> problems;
  auto root = ReadFormDescription(bytes, problems);
  EXPECT_TRUE(problems.empty());
  EXPECT_EQ(dynamic_cast<TForm*>(root.get())->GetText(), u"B");
  const std::string broken = "object frmB: TForm\r\n  Caption = \r\n";
  EXPECT_THROW(ReadFormDescription(TBytes(broken.begin(), broken.end()), problems), Exception);
}

}  // namespace
}  // namespace vex
