// TDialogUtils without a toolkit: composition as string logic, and showing through a recording
// dialog service that answers from a script.
#include "vex/ui/dialog_utils.h"

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <map>

#include "test_support.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

struct ShownBox {
  String caption;
  String text;
  TDialogIcon icon;
  TDialogButtons buttons;
  int32_t default_button;
};

// Records every window and answers from queues filled by the test.
class FakeDialogService : public IDialogService {
 public:
  std::vector<ShownBox> boxes;
  std::deque<TDialogAnswer> answers;
  std::vector<String> prompts;                        // "caption|prompt|initial value"
  std::deque<std::pair<bool, String>> input_replies;  // OK?, text typed
  std::vector<TTextViewerForm> viewers;               // as shown
  std::deque<std::pair<bool, String>> viewer_replies;
  String save_name;

  TDialogAnswer MessageBox(const String& Caption, const String& Text, TDialogIcon Icon,
                           TDialogButtons Buttons, int32_t DefaultButton) override {
    boxes.push_back({Caption, Text, Icon, Buttons, DefaultButton});
    return Pop(answers, daOK);
  }
  bool InputQuery(const String& Caption, const String& Prompt, String& Value) override {
    prompts.push_back(Caption + u"|" + Prompt + u"|" + Value);
    auto [ok, text] = Pop(input_replies, {false, String()});
    if (ok) Value = text;
    return ok;
  }
  bool TextViewer(TTextViewerForm& Viewer, const TCustomObjProc& Prepare) override {
    if (Prepare) Prepare(&Viewer);
    viewers.push_back(Viewer);
    auto [ok, text] = Pop(viewer_replies, {false, String()});
    if (ok) Viewer.Text = text;
    return ok;
  }
  bool SaveFileName(const String&, const String&, String& FileName) override {
    if (save_name.empty()) return false;
    FileName = save_name;
    return true;
  }

 private:
  template <class T>
  static T Pop(std::deque<T>& queue, T fallback) {
    if (queue.empty()) return fallback;
    T value = queue.front();
    queue.pop_front();
    return value;
  }
};

// A language function over a table that also records the keys it was asked for.
struct Lang {
  std::map<String, String> texts;
  std::vector<String> asked;
  TLangFunc Func() {
    return [this](const String& key) {
      asked.push_back(key);
      auto it = texts.find(key);
      return it == texts.end() ? String() : it->second;
    };
  }
};

class DialogUtilsTest : public ::testing::Test {
 protected:
  void SetUp() override { previous_ = SetDialogService(&service_); }
  void TearDown() override { SetDialogService(previous_); }
  FakeDialogService service_;
  IDialogService* previous_ = nullptr;
};

// --- Plain boxes ----------------------------------------------------------------------------

struct DispatchCase {
  TCustomDialogType type;
  TDialogAnswer answer;
  TDialogIcon icon;
  TDialogButtons buttons;
  int32_t default_button;
  int32_t result;
};

TEST_F(DialogUtilsTest, CustomInfoDialogPicksIconButtonsDefaultAndMapsTheAnswer) {
  const DispatchCase cases[] = {
      {dlgInfo, daOK, diInformation, dbOK, 0, -1},
      {dlgWarning, daOK, diWarning, dbOK, 0, -1},
      {dlgError, daOK, diError, dbOK, 0, -1},
      {dlgQuery, daYes, diQuestion, dbYesNo, 1, 1},
      {dlgQuery, daNo, diQuestion, dbYesNo, 1, 0},
      {dlgQuery, daCancel, diQuestion, dbYesNo, 1, 0},
      {dlgCancel, daYes, diQuestion, dbYesNoCancel, 2, 1},
      {dlgCancel, daNo, diQuestion, dbYesNoCancel, 2, 0},
      {dlgCancel, daCancel, diQuestion, dbYesNoCancel, 2, -1},
  };
  for (const auto& c : cases) {
    service_.boxes.clear();
    service_.answers = {c.answer};
    EXPECT_EQ(TDialogUtils::ShowCustomInfoDialog(u"C", u"M", c.type), c.result) << int(c.type);
    ASSERT_EQ(service_.boxes.size(), 1u);
    EXPECT_EQ(service_.boxes[0].icon, c.icon);
    EXPECT_EQ(service_.boxes[0].buttons, c.buttons);
    EXPECT_EQ(service_.boxes[0].default_button, c.default_button);
    EXPECT_EQ(service_.boxes[0].caption, u"C");
  }
  EXPECT_EQ(TDialogUtils::ShowCustomInfoDialog(u"C", u"M", dlgNumber), -1);
  EXPECT_EQ(service_.boxes.size(), 1u);  // dlgNumber shows nothing
}

TEST_F(DialogUtilsTest, QuestionBoxesAreTrueOnlyForTheirAffirmativeButton) {
  service_.answers = {daYes, daNo, daOK, daCancel};
  EXPECT_TRUE(TDialogUtils::ShowYesNoQuestionDialog(u"C", u"M"));
  EXPECT_FALSE(TDialogUtils::ShowYesNoQuestionDialog(u"C", u"M"));
  EXPECT_TRUE(TDialogUtils::ShowOKCancelDialog(u"C", u"M"));
  EXPECT_FALSE(TDialogUtils::ShowOKCancelDialog(u"C", u"M"));
  EXPECT_EQ(service_.boxes[2].buttons, dbOKCancel);
  EXPECT_EQ(service_.boxes[2].default_button, 0);

  service_.answers = {daNo};
  EXPECT_EQ(TDialogUtils::ShowYesNoCancelDialog(), 0);
  EXPECT_EQ(service_.boxes.back().caption, u"Confirm saving or cancel");
  EXPECT_EQ(service_.boxes.back().text, u"Some changes were made. Do you want to save changes?");
}

TEST(DialogUtilsWithoutService, EveryShowAnswersAtOnceWithNothingShown) {
  IDialogService* previous = SetDialogService(nullptr);
  String text = u"kept";
  int32_t value = 5;
  TStringList list;
  list.SetText(u"a");
  EXPECT_EQ(TDialogUtils::ShowCustomInfoDlgFast(u"T|M", dlgQuery), -1);
  EXPECT_EQ(TDialogUtils::ShowCustomInfoDialog(u"T", u"M", dlgCancel), -1);
  EXPECT_EQ(TDialogUtils::ShowYesNoCancelDialog(), -1);
  EXPECT_FALSE(TDialogUtils::ShowYesNoQuestionDialog(u"T", u"M"));
  EXPECT_FALSE(TDialogUtils::ShowOKCancelDialog(u"T", u"M"));
  EXPECT_FALSE(TDialogUtils::ShowStrQueryDialog(u"T", u"P", text));
  EXPECT_EQ(TDialogUtils::CustomInputQuery(
                u"k", [](const String&) { return u"C|P"; }, text),
            -1);
  EXPECT_FALSE(TDialogUtils::InputInteger(u"T", u"P", u"", u"", 3, 1, 10, value));
  EXPECT_EQ(value, 3);
  EXPECT_FALSE(TDialogUtils::QuickInputInteger(u"T", u"P", value, false));
  EXPECT_FALSE(TDialogUtils::EditListAsText(&list, u"T", nullptr, false, {vbOK, vbCancel}));
  EXPECT_FALSE(TDialogUtils::SaveListAsText(list, u"T", u"Text|*.txt|"));
  EXPECT_EQ(text, u"kept");
  TDialogUtils::ShowInfoWaitForEndDialogDef();  // callable, does nothing
  SetDialogService(previous);
}

// --- Composition ----------------------------------------------------------------------------

TEST_F(DialogUtilsTest, FastDialogSplitsCaptionAndMessageWithDefaultsAndLineBreaks) {
  struct Case {
    const char16_t* text;
    const char16_t* caption;
    const char16_t* message;
  };
  const Case cases[] = {
      {u"Title|Line one\\nLine two", u"Title", u"Line one\r\nLine two"},
      {u"", u"Error Message", u"Uknown Error"},
      {u"A|B|C", u"A", u"B"},
      {u"Only caption", u"Only caption", u"Uknown Error"},
      {u"|msg", u"Error Message", u"msg"},
      {u" Spaced | kept ", u" Spaced ", u" kept "},
  };
  for (const auto& c : cases) {
    service_.boxes.clear();
    EXPECT_EQ(TDialogUtils::ShowCustomInfoDlgFast(c.text, dlgError), -1);
    ASSERT_EQ(service_.boxes.size(), 1u);
    EXPECT_EQ(service_.boxes[0].caption, c.caption) << ToUtf8(c.text);
    EXPECT_EQ(service_.boxes[0].text, c.message) << ToUtf8(c.text);
    EXPECT_EQ(service_.boxes[0].icon, diError);
  }
}

TEST_F(DialogUtilsTest, DialogWithParamsLooksTheKeyUpAndReplacesArguments) {
  Lang lang;
  lang.texts[u"E\\Open"] = u"Open|Cannot open %1:\\n%2";
  EXPECT_EQ(TDialogUtils::ShowCustomInfoDlgWithParams(u"E\\Open", {u"a.txt", u"denied"},
                                                      lang.Func(), dlgWarning),
            -1);
  ASSERT_EQ(service_.boxes.size(), 1u);
  EXPECT_EQ(service_.boxes[0].caption, u"Open");
  EXPECT_EQ(service_.boxes[0].text, u"Cannot open a.txt:\r\ndenied");
  // An argument that itself carries "\n" is not turned into a line break.
  EXPECT_EQ(TDialogUtils::ComposeInfoDlgWithParams(u"E\\Open", {u"x\\n", u""}, lang.Func())[1],
            u"Cannot open x\\n:\r\n");
}

TEST(DialogComposition, ReplaceArgsWithValuesReplacesInAscendingOrder) {
  EXPECT_EQ(TDialogUtils::ReplaceArgsWithValues(u"%1 of %2", {u"3", u"7"}), u"3 of 7");
  EXPECT_EQ(TDialogUtils::ReplaceArgsWithValues(u"%1,%1 %3", {u"x", u"y", u"z"}), u"x,x z");
  EXPECT_EQ(TDialogUtils::ReplaceArgsWithValues(u"[%1] %2", {u"%2", u"b"}), u"[b] b");
  EXPECT_EQ(TDialogUtils::ReplaceArgsWithValues(u"%1 %2", {}), u"%1 %2");
  EXPECT_EQ(TDialogUtils::ReplaceArgsWithValues(u"%2", {u"only"}), u"%2");
  // Deliberately "%1" is replaced before "%10": "%10" reads as "%1" + "0".
  EXPECT_EQ(TDialogUtils::ReplaceArgsWithValues(
                u"%10", {u"A", u"B", u"C", u"D", u"E", u"F", u"G", u"H", u"I", u"J", u"K"}),
            u"A0");
}

TEST(DialogComposition, JoinLangValuesJoinsARangeAndLeavesASingleIdentAlone) {
  Lang lang;
  lang.texts = {{u"S\\L1", u"one\\n"},
                {u"S\\L2", u"two\\n"},
                {u"S\\L3", u"three"},
                {u"S\\L", u"single\\nline"},
                {u"S\\L5", u"five"}};
  EXPECT_EQ(TDialogUtils::JoinLangValues(u"S", u"L;1-3", lang.Func()), u"one\ntwo\nthree");
  EXPECT_EQ(lang.asked, (std::vector<String>{u"S\\L1", u"S\\L2", u"S\\L3"}));
  EXPECT_EQ(TDialogUtils::JoinLangValues(u"S", u"L;3-1", lang.Func()), u"");
  EXPECT_EQ(TDialogUtils::JoinLangValues(u"S", u"L", lang.Func()), u"single\\nline");
  EXPECT_EQ(TDialogUtils::JoinLangValues(u"S", u"L;5", lang.Func()), u"five");
  EXPECT_EQ(TDialogUtils::JoinedLangFunc(u"S", u"L5", lang.Func()), u"five");
  EXPECT_THROW(TDialogUtils::JoinLangValues(u"S", u"L;a-2", lang.Func()), EConvertError);
  EXPECT_THROW(TDialogUtils::JoinLangValues(u"S", u"L;1-", lang.Func()), EConvertError);
}

TEST_F(DialogUtilsTest, JoinedMessageDialogNeedsExactlyThreeKeyTokens) {
  Lang lang;
  lang.texts = {{u"S\\C", u"Caption"}, {u"S\\L1", u"a"}, {u"S\\L2", u"b"}};
  for (const char16_t* bad : {u"S\\C", u"S\\C\\L\\X", u""}) {
    EXPECT_EQ(test::MessageOf<Exception>(
                  [&] { TDialogUtils::ShowJoinedMessageDialog(bad, lang.Func(), dlgInfo); }),
              u"ShowJoinedMessageDialog: Number of token count in "
              u"CaptionMsgKey must be = 3");
  }
  EXPECT_TRUE(service_.boxes.empty());
  service_.answers = {daYes};
  EXPECT_EQ(TDialogUtils::ShowJoinedMessageDialog(u"S\\C\\L;1-2", lang.Func(), dlgQuery), 1);
  ASSERT_EQ(service_.boxes.size(), 1u);
  EXPECT_EQ(service_.boxes[0].caption, u"Caption");
  EXPECT_EQ(service_.boxes[0].text, u"ab");
}

TEST_F(DialogUtilsTest, LangDialogTakesTheCaptionFromTheCaptionIdentOnlyWhenNeeded) {
  Lang lang;
  lang.texts = {{u"S\\M", u"Text"}, {u"S\\C", u"From caption ident"}, {u"S\\Both", u"Cap|Body"}};
  EXPECT_EQ(TDialogUtils::ShowCustomLangDialog(u"S\\M|C", lang.Func(), dlgInfo), -1);
  ASSERT_EQ(service_.boxes.size(), 1u);
  EXPECT_EQ(service_.boxes[0].caption, u"From caption ident");
  EXPECT_EQ(service_.boxes[0].text, u"Text");

  lang.asked.clear();
  TDialogUtils::ShowCustomLangDialog(u"S\\Both|C", lang.Func(), dlgInfo);
  EXPECT_EQ(service_.boxes[1].caption, u"Cap");
  EXPECT_EQ(service_.boxes[1].text, u"Body");
  EXPECT_EQ(lang.asked, std::vector<String>{u"S\\Both"});  // never asks for S\C

  // A bare message without a caption ident, or no text at all: nothing shown.
  EXPECT_EQ(TDialogUtils::ShowCustomLangDialog(u"S\\M", lang.Func(), dlgInfo), -1);
  EXPECT_EQ(TDialogUtils::ShowCustomLangDialog(u"S\\Missing|C", lang.Func(), dlgInfo), -1);
  EXPECT_EQ(service_.boxes.size(), 2u);
}

TEST_F(DialogUtilsTest, MessageArrayFormatsTheMessageWithTheParameter) {
  Lang lang;
  lang.texts = {{u"k\\two", u"Cap|File %s is missing"},
                {u"k\\plain", u"Hello %s"},
                {u"k\\three", u"A|B %s|C"},
                {u"k\\int", u"Cap|Count %d"},
                {u"k\\spaced", u" Cap | Msg "}};
  using A = TStringDynArray;
  EXPECT_EQ(TDialogUtils::GetMessageArray(u"k\\two", u"a.txt", lang.Func()),
            (A{u"Cap", u"File a.txt is missing"}));
  EXPECT_EQ(TDialogUtils::GetMessageArray(u"k\\two", u"", lang.Func()),
            (A{u"Cap", u"File %s is missing"}));
  EXPECT_EQ(TDialogUtils::GetMessageArray(u"k\\plain", u"you", lang.Func()), A{u"Hello you"});
  EXPECT_EQ(TDialogUtils::GetMessageArray(u"k\\three", u"x", lang.Func()),
            (A{u"A", u"B %s", u"C"}));
  EXPECT_EQ(TDialogUtils::GetMessageArray(u"k\\spaced", u"", lang.Func()), (A{u"Cap", u"Msg"}));
  EXPECT_THROW(TDialogUtils::GetMessageArray(u"k\\int", u"x", lang.Func()), EConvertError);

  EXPECT_EQ(TDialogUtils::ShowCustomInfoDialogEx(u"k\\two", u"b", lang.Func(), dlgWarning), -1);
  ASSERT_EQ(service_.boxes.size(), 1u);
  EXPECT_EQ(service_.boxes[0].text, u"File b is missing");
  EXPECT_EQ(TDialogUtils::ShowCustomInfoDialogEx(u"k\\three", u"", lang.Func(), dlgQuery), -1);
  EXPECT_EQ(TDialogUtils::ShowCustomInfoDialogEx(u"k\\plain", u"", lang.Func(), dlgQuery), -1);
  EXPECT_EQ(service_.boxes.size(), 1u);
}

// --- Input prompts --------------------------------------------------------------------------

TEST_F(DialogUtilsTest, CustomInputQueryShowsCaptionAndPromptFromTheKey) {
  Lang lang;
  lang.texts = {{u"Q\\Name", u"Rename|New name:"}, {u"Q\\Bad", u"no bar"}};
  String value = u"old";
  service_.input_replies = {{true, u"new"}, {false, u"ignored"}};
  EXPECT_EQ(TDialogUtils::CustomInputQuery(u"Q\\Name", lang.Func(), value), 1);
  EXPECT_EQ(value, u"new");
  EXPECT_EQ(TDialogUtils::CustomInputQuery(u"Q\\Name", lang.Func(), value), 0);
  EXPECT_EQ(value, u"new");
  EXPECT_EQ(TDialogUtils::CustomInputQuery(u"Q\\Bad", lang.Func(), value), -1);
  EXPECT_EQ(service_.prompts,
            (std::vector<String>{u"Rename|New name:|old", u"Rename|New name:|new"}));
}

TEST_F(DialogUtilsTest, InputIntegerAcceptsOnlyIntegersInsideTheBounds) {
  struct Case {
    const char16_t* typed;
    bool ok;
    int32_t value;
  };
  const Case cases[] = {{u"10", true, 10}, {u"1", true, 1},   {u"$A", true, 10},
                        {u"-3", false, 7}, {u"11", false, 7}, {u"abc", false, 7},
                        {u"", false, 7},   {u"5x", false, 7}};
  for (const auto& c : cases) {
    service_.boxes.clear();
    service_.prompts.clear();
    service_.input_replies = {{true, c.typed}};
    int32_t value = -99;
    EXPECT_EQ(TDialogUtils::InputInteger(u"Level", u"From %d to %d:", u"Set to %d", u"Bad", 7, 1,
                                         10, value),
              c.ok)
        << ToUtf8(c.typed);
    EXPECT_EQ(value, c.value);
    EXPECT_EQ(service_.prompts, std::vector<String>{u"Level|From 1 to 10:|7"});
    ASSERT_EQ(service_.boxes.size(), 1u);
    EXPECT_EQ(service_.boxes[0].icon, c.ok ? diInformation : diError);
    EXPECT_EQ(service_.boxes[0].text, c.ok ? u"Set to " + IntToStr(c.value) : String(u"Bad"));
  }
}

TEST_F(DialogUtilsTest, InputIntegerShowsNoBoxForEmptyMessagesOrCancel) {
  int32_t value = 0;
  service_.input_replies = {{true, u"4"}, {true, u"x"}, {false, u"4"}};
  EXPECT_TRUE(TDialogUtils::InputInteger(u"C", u"P", u"", u"", 2, 0, 9, value));
  EXPECT_EQ(value, 4);
  EXPECT_FALSE(TDialogUtils::InputInteger(u"C", u"P", u"", u"", 2, 0, 9, value));
  EXPECT_FALSE(TDialogUtils::InputInteger(u"C", u"P", u"Ok", u"Bad", 2, 0, 9, value));
  EXPECT_EQ(value, 2);
  EXPECT_TRUE(service_.boxes.empty());
  // A success text without "%d" is shown as it stands.
  service_.input_replies = {{true, u"3"}};
  EXPECT_TRUE(TDialogUtils::InputInteger(u"C", u"P", u"Done 100%", u"", 2, 0, 9, value));
  EXPECT_EQ(service_.boxes.at(0).text, u"Done 100%");
}

TEST_F(DialogUtilsTest, QuickInputIntegerOffersHexOrDecimalAndRaisesOnBadText) {
  int32_t value = 255;
  service_.input_replies = {{true, u"$10"}};
  EXPECT_TRUE(TDialogUtils::QuickInputInteger(u"C", u"P", value, true));
  EXPECT_EQ(service_.prompts.back(), u"C|P|$0000FF");
  EXPECT_EQ(value, 16);

  value = -1;
  service_.input_replies = {{false, u""}};
  EXPECT_FALSE(TDialogUtils::QuickInputInteger(u"C", u"P", value, true));
  EXPECT_EQ(service_.prompts.back(), u"C|P|$FFFFFFFF");
  EXPECT_EQ(value, -1);

  value = 42;
  service_.input_replies = {{true, u"abc"}};
  EXPECT_EQ(test::MessageOf<EConvertError>(
                [&] { TDialogUtils::QuickInputInteger(u"C", u"P", value, false); }),
            u"Conversion to integer error in: abc");
  EXPECT_EQ(service_.prompts.back(), u"C|P|42");
}

// --- Text viewer ----------------------------------------------------------------------------

TEST_F(DialogUtilsTest, EditListAsTextWritesBackOnlyOnOkWhenEditable) {
  struct Case {
    bool ok;
    bool read_only;
    const char16_t* expected;
  };
  const Case cases[] = {
      {true, false, u"x\r\ny\r\n"}, {false, false, u"a\r\nb\r\n"}, {true, true, u"a\r\nb\r\n"}};
  for (const auto& c : cases) {
    TStringList list;
    list.SetText(u"a\r\nb");
    service_.viewer_replies = {{c.ok, u"x\r\ny"}};
    EXPECT_EQ(TDialogUtils::EditListAsText(&list, u"Edit", nullptr, c.read_only, {vbOK, vbCancel}),
              c.ok);
    EXPECT_EQ(list.Text(), c.expected);
    EXPECT_EQ(service_.viewers.back().Text, u"a\r\nb");
    EXPECT_EQ(service_.viewers.back().ReadOnly, c.read_only);
  }
}

TEST_F(DialogUtilsTest, TextViewerVariantsShowTheirContentAndCallTheHostCallbackFirst) {
  TStringList list;
  list.SetText(u"one");
  int prepared = 0;
  const TCustomObjProc prepare = [&](TObject* obj) {
    ++prepared;
    ASSERT_NE(dynamic_cast<TTextViewerForm*>(obj), nullptr);
    dynamic_cast<TTextViewerForm*>(obj)->Caption += u"!";
  };
  TDialogUtils::ViewListAsText(&list, u"ignored", u"View", prepare);
  EXPECT_EQ(service_.viewers.back().Text, u"one");
  EXPECT_EQ(service_.viewers.back().Caption, u"View!");
  EXPECT_TRUE(service_.viewers.back().ReadOnly);
  EXPECT_EQ(service_.viewers.back().Buttons, TViewerButtons{vbOK});

  TDialogUtils::ViewListAsText(nullptr, u"plain text", u"View", nullptr);
  EXPECT_EQ(service_.viewers.back().Text, u"plain text");

  service_.viewer_replies = {{true, u"edited"}};
  EXPECT_TRUE(TDialogUtils::EditStringAsText(u"text", u"S", prepare, false, {vbOK}));
  EXPECT_EQ(service_.viewers.back().Text, u"text");
  EXPECT_EQ(prepared, 2);

  EXPECT_FALSE(TDialogUtils::EditListWithProc(nullptr, u"P", nullptr, false, {vbOK}));
  EXPECT_EQ(service_.viewers.size(), 3u);
  service_.viewer_replies = {{true, u"z"}};
  EXPECT_TRUE(TDialogUtils::EditListWithProc([](TStrings& l) { l.Add(u"filled"); }, u"P", nullptr,
                                             false, {vbOK}));
  EXPECT_EQ(service_.viewers.back().Text, u"filled");
}

TEST_F(DialogUtilsTest, SaveListAsTextWritesTheChosenFile) {
  const auto path = std::filesystem::temp_directory_path() / "vex_dialog_utils_save.txt";
  TStringList list;
  list.SetText(u"line 1\r\nline 2");
  String name = u"start.txt";
  EXPECT_FALSE(TDialogUtils::SaveListAsText(list, u"Save", u"Text|*.txt|", &name));
  EXPECT_EQ(name, u"start.txt");
  service_.save_name = FromUtf8(path.string());
  EXPECT_TRUE(TDialogUtils::SaveListAsText(list, u"Save", u"Text|*.txt|", &name));
  EXPECT_EQ(name, service_.save_name);
  TStringList back;
  back.LoadFromFile(path.string());
  EXPECT_EQ(back.Text(), list.Text());
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace vex
