#include "vex/ui/dialog_utils.h"

#include <algorithm>

#include "vex/core/base_const.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"
#include "vex/platform/sysutils.h"
#include "vex/text/convert_utils.h"
#include "vex/text/parse_utils.h"

namespace vex {

namespace {

constexpr char16_t kLineBreakMarker[] = u"\\n";

// Every piece between delimiters, empty ones kept, nothing trimmed.
TStringDynArray SplitAll(const String& s, Char delim) {
  TStringDynArray pieces(1);
  for (Char c : s) {
    if (c == delim) {
      pieces.emplace_back();
    } else {
      pieces.back() += c;
    }
  }
  return pieces;
}

String Lang(const TLangFunc& lang_func, const String& key) {
  return lang_func ? lang_func(key) : String();
}

String SectionKey(const String& section, const String& ident) {
  return section + cLangKeySep + ident;
}

String ReplaceLineBreakMarkers(const String& s, const String& line_break) {
  return StringReplace(s, kLineBreakMarker, line_break, {rfReplaceAll});
}

bool Contains(const String& s, const String& part) { return s.find(part) != String::npos; }

// One message box through the installed service; daNone when there is none.
TDialogAnswer Box(const String& caption, const String& msg, TDialogIcon icon,
                  TDialogButtons buttons, int32_t default_button) {
  IDialogService* service = DialogService();
  return service ? service->MessageBox(caption, msg, icon, buttons, default_button) : daNone;
}

int32_t AnswerToResult(TDialogAnswer answer) {
  switch (answer) {
    case daOK:
    case daYes:
      return 1;
    case daNo:
      return 0;
    default:
      return -1;
  }
}

// The lines joined by CR LF, without a break after the last one (which an editor would show as
// an extra empty line).
String ListText(const TStrings& list) {
  String text = list.Text();
  if (text.ends_with(u"\r\n")) text.resize(text.size() - 2);
  return text;
}

bool ShowTextViewer(TStrings* list, const String& text, const String& caption,
                    const TCustomObjProc& obj_proc, bool read_only, TViewerButtons buttons) {
  IDialogService* service = DialogService();
  if (service == nullptr) return false;
  TTextViewerForm viewer;
  viewer.Caption = caption;
  viewer.Text = list ? ListText(*list) : text;
  viewer.ReadOnly = read_only;
  viewer.Buttons = buttons;
  const bool ok = service->TextViewer(viewer, obj_proc);
  if (ok && !read_only && list) list->SetText(viewer.Text);
  return ok;
}

}  // namespace

// --- Plain boxes ----------------------------------------------------------------------------

void TDialogUtils::ShowErrorDialog(const String& Caption, const String& Msg) {
  Box(Caption, Msg, diError, dbOK, 0);
}

void TDialogUtils::ShowInfoDialog(const String& Caption, const String& Msg) {
  Box(Caption, Msg, diInformation, dbOK, 0);
}

void TDialogUtils::ShowWarningDialog(const String& Caption, const String& Msg) {
  Box(Caption, Msg, diWarning, dbOK, 0);
}

bool TDialogUtils::ShowYesNoQuestionDialog(const String& Caption, const String& Msg) {
  return Box(Caption, Msg, diQuestion, dbYesNo, 1) == daYes;
}

int32_t TDialogUtils::ShowYesNoCancelDialog(const String& Caption, const String& Msg) {
  return AnswerToResult(Box(Caption, Msg, diQuestion, dbYesNoCancel, 2));
}

int32_t TDialogUtils::ShowYesNoCancelDialog() {
  return ShowYesNoCancelDialog(u"Confirm saving or cancel",
                               u"Some changes were made. Do you want to save changes?");
}

bool TDialogUtils::ShowOKCancelDialog(const String& Caption, const String& Msg) {
  return Box(Caption, Msg, diQuestion, dbOKCancel, 0) == daOK;
}

int32_t TDialogUtils::ShowCustomInfoDialog(const String& Caption, const String& Msg,
                                           TCustomDialogType DlgType) {
  if (DialogService() == nullptr) return -1;
  switch (DlgType) {
    case dlgInfo:
      ShowInfoDialog(Caption, Msg);
      return -1;
    case dlgWarning:
      ShowWarningDialog(Caption, Msg);
      return -1;
    case dlgError:
      ShowErrorDialog(Caption, Msg);
      return -1;
    case dlgQuery:
      return ShowYesNoQuestionDialog(Caption, Msg) ? 1 : 0;
    case dlgCancel:
      return ShowYesNoCancelDialog(Caption, Msg);
    default:
      return -1;
  }
}

// --- Composition from language keys ---------------------------------------------------------

TStringDynArray TDialogUtils::GetMessageArray(const String& Key, const String& Param,
                                              const TLangFunc& LangFunc) {
  auto format_param = [&Param](const String& s) {
    return Contains(s, u"%") && !Param.empty() ? Format(s, {Param}) : s;
  };
  const String text = Lang(LangFunc, Key);
  if (!Contains(text, String(1, cLangTextSep))) return {format_param(text)};
  TStringDynArray tokens = TParseUtils::ExtractTokens(text, cLangTextSep);
  if (tokens.size() == 2) tokens[1] = format_param(tokens[1]);
  return tokens;
}

int32_t TDialogUtils::ShowCustomInfoDialogEx(const String& Key, const String& Param,
                                             const TLangFunc& LangFunc, TCustomDialogType DlgType) {
  const TStringDynArray texts = GetMessageArray(Key, Param, LangFunc);
  return texts.size() == 2 ? ShowCustomInfoDialog(texts[0], texts[1], DlgType) : -1;
}

int32_t TDialogUtils::CustomInputQuery(const String& Key, const TLangFunc& LangFunc,
                                       String& Value) {
  const TStringDynArray texts = GetMessageArray(Key, String(), LangFunc);
  IDialogService* service = DialogService();
  if (texts.size() != 2 || service == nullptr) return -1;
  return service->InputQuery(texts[0], texts[1], Value) ? 1 : 0;
}

int32_t TDialogUtils::ShowCustomLangDialog(const String& Key, const TLangFunc& LangFunc,
                                           TCustomDialogType DlgType) {
  const TStringDynArray keys = TParseUtils::ExtractTokens(Key, cLangTextSep);
  if (keys.empty()) return -1;
  TStringDynArray texts = TParseUtils::ExtractTokens(Lang(LangFunc, keys[0]), cLangTextSep);
  if (texts.size() == 1 && keys.size() == 2) {
    // A bare message takes its caption from the caption ident in the message's section.
    const TStringDynArray section = TParseUtils::ExtractTokens(keys[0], cLangKeySep);
    const String caption =
        Lang(LangFunc, SectionKey(section.empty() ? String() : section[0], keys[1]));
    texts = {caption, texts[0]};
  }
  return texts.size() == 2 ? ShowCustomInfoDialog(texts[0], texts[1], DlgType) : -1;
}

String TDialogUtils::JoinedLangFunc(const String& Section, const String& Ident,
                                    const TLangFunc& LangFunc) {
  return Lang(LangFunc, SectionKey(Section, Ident));
}

String TDialogUtils::JoinLangValues(const String& Section, const String& MessageIdents,
                                    const TLangFunc& LangFunc) {
  const TStringDynArray parts = SplitAll(MessageIdents, u';');
  // A single ident keeps its "\n" markers as they are: deliberate, unlike the range form.
  if (parts.size() == 1) return JoinedLangFunc(Section, MessageIdents, LangFunc);
  const TStringDynArray range = SplitAll(parts[1], u'-');
  const int64_t first = StrToInt(range.front());
  const int64_t last = StrToInt(range.back());
  String result;
  for (int64_t i = first; i <= last; ++i) {
    const String text = JoinedLangFunc(Section, parts[0] + IntToStr(i), LangFunc);
    result += ReplaceLineBreakMarkers(text, u"\n");
  }
  return result;
}

int32_t TDialogUtils::ShowJoinedMessageDialog(const String& JoinedKey, const TLangFunc& LangFunc,
                                              TCustomDialogType DlgType) {
  const TStringDynArray tokens = SplitAll(JoinedKey, cLangKeySep);
  if (tokens.size() != 3) {
    throw Exception(u"ShowJoinedMessageDialog: Number of token count in CaptionMsgKey must be = 3");
  }
  const String caption = JoinedLangFunc(tokens[0], tokens[1], LangFunc);
  const String msg = JoinLangValues(tokens[0], tokens[2], LangFunc);
  return ShowCustomInfoDialog(caption, msg, DlgType);
}

String TDialogUtils::ReplaceArgsWithValues(const String& S, const TStringDynArray& Args) {
  // "%1" is replaced before "%10", so "%10" becomes the first argument and a "0": deliberate.
  String result = S;
  for (size_t i = 0; i < Args.size(); ++i) {
    result = StringReplace(result, u"%" + IntToStr(i + 1), Args[i], {rfReplaceAll});
  }
  return result;
}

TStringDynArray TDialogUtils::ComposeInfoDlgWithParams(const String& Key,
                                                       const TStringDynArray& Args,
                                                       const TLangFunc& LangFunc) {
  TStringDynArray texts = SplitAll(LangFunc ? LangFunc(Key) : Key, cLangTextSep);
  texts.resize(2);
  if (texts[0].empty()) texts[0] = u"Error Message";
  // "Uknown" is the message's own spelling, kept on purpose.
  if (texts[1].empty()) texts[1] = u"Uknown Error";
  texts[1] = ReplaceLineBreakMarkers(texts[1], u"\r\n");
  if (!Args.empty()) texts[1] = ReplaceArgsWithValues(texts[1], Args);
  return texts;
}

int32_t TDialogUtils::ShowCustomInfoDlgWithParams(const String& Key, const TStringDynArray& Args,
                                                  const TLangFunc& LangFunc,
                                                  TCustomDialogType DlgType) {
  const TStringDynArray texts = ComposeInfoDlgWithParams(Key, Args, LangFunc);
  return ShowCustomInfoDialog(texts[0], texts[1], DlgType);
}

int32_t TDialogUtils::ShowCustomInfoDlgFast(const String& Text, TCustomDialogType DlgType) {
  return ShowCustomInfoDlgWithParams(Text, {}, TLangFunc(), DlgType);
}

void TDialogUtils::ShowInfoWaitForEndDialogDef() {}

// --- Input prompts --------------------------------------------------------------------------

bool TDialogUtils::ShowStrQueryDialog(const String& Caption, const String& Prompt, String& Value) {
  IDialogService* service = DialogService();
  return service != nullptr && service->InputQuery(Caption, Prompt, Value);
}

bool TDialogUtils::InputInteger(const String& Caption, const String& Prompt,
                                const String& SuccessMsg, const String& ErrorMsg, int32_t Default,
                                int32_t Min, int32_t Max, int32_t& Value) {
  Value = Default;
  String text = IntToStr(Default);
  if (!ShowStrQueryDialog(Caption, Format(Prompt, {Min, Max}), text)) return false;
  int32_t number = 0;
  if (TryStrToInt(text, number) && Min <= number && number <= Max) {
    Value = number;
    if (!SuccessMsg.empty()) {
      ShowInfoDialog(Caption,
                     Contains(SuccessMsg, u"%d") ? Format(SuccessMsg, {number}) : SuccessMsg);
    }
    return true;
  }
  if (!ErrorMsg.empty()) ShowErrorDialog(Caption, ErrorMsg);
  return false;
}

bool TDialogUtils::QuickInputInteger(const String& Caption, const String& Prompt, int32_t& Value,
                                     bool AsHex) {
  String text = AsHex ? u"$" + IntToHex(static_cast<uint32_t>(Value), 6) : IntToStr(Value);
  if (!ShowStrQueryDialog(Caption, Prompt, text)) return false;
  TConvertUtils::TryStrToInt(text, &Value, true);
  return true;
}

// --- Text viewer ----------------------------------------------------------------------------

void TDialogUtils::ViewListAsText(TObject* List, const String& Text, const String& Caption,
                                  const TCustomObjProc& ObjProc) {
  ShowTextViewer(dynamic_cast<TStrings*>(List), Text, Caption, ObjProc, true, {vbOK});
}

bool TDialogUtils::EditListAsText(TObject* List, const String& Caption,
                                  const TCustomObjProc& ObjProc, bool ReadOnly,
                                  TViewerButtons Buttons) {
  return ShowTextViewer(dynamic_cast<TStrings*>(List), String(), Caption, ObjProc, ReadOnly,
                        Buttons);
}

bool TDialogUtils::EditStringAsText(const String& Text, const String& Caption,
                                    const TCustomObjProc& ObjProc, bool ReadOnly,
                                    TViewerButtons Buttons) {
  return ShowTextViewer(nullptr, Text, Caption, ObjProc, ReadOnly, Buttons);
}

bool TDialogUtils::EditListWithProc(const TStringsProc& FillProc, const String& Caption,
                                    const TCustomObjProc& ObjProc, bool ReadOnly,
                                    TViewerButtons Buttons) {
  if (!FillProc) return false;
  TStringList list;
  FillProc(list);
  return EditListAsText(&list, Caption, ObjProc, ReadOnly, Buttons);
}

bool TDialogUtils::SaveListAsText(TStrings& List, const String& DlgTitle, const String& FileFilter,
                                  String* FileName) {
  IDialogService* service = DialogService();
  if (service == nullptr) return false;
  String name = FileName ? *FileName : String();
  if (!service->SaveFileName(DlgTitle, FileFilter, name)) return false;
  List.SaveToFile(name);
  if (FileName) *FileName = name;
  return true;
}

}  // namespace vex
