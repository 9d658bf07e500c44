// TDialogUtils: modal messages, yes/no questions, input prompts and the text viewer. Messages
// are composed from language keys (the host's language function turns a key into
// "Caption|Message" text, with "%1".."%n" argument places and literal "\n" line-break markers);
// the composition is plain string logic, the showing goes through the installed dialog
// service, and with no service installed every show answers -1 / false at once.
//
//   TDialogUtils::ShowCustomInfoDlgFast(u"Title|Line one\\nLine two", dlgInfo);   // -> -1
//   TDialogUtils::ReplaceArgsWithValues(u"%1 of %2", {u"3", u"7"});              // "3 of 7"
#pragma once

#include <cstdint>
#include <functional>

#include "vex/core/base_types.h"
#include "vex/platform/string_list.h"
#include "vex/platform/types.h"
#include "vex/ui/dialog_service.h"

namespace vex {

/// The host's language function: the text for a language key ("Section\Ident"), usually
/// "Caption|Message". The library never caches its results.
using TLangFunc = std::function<String(const String& Key)>;
/// Fills a string list (EditListWithProc).
using TStringsProc = std::function<void(TStrings& List)>;

class TDialogUtils {
 public:
  // --- Plain boxes ------------------------------------------------------------------------
  // Results: 1 Yes / OK, 0 No, -1 Cancel, closed, or nothing shown.

  static void ShowErrorDialog(const String& Caption, const String& Msg);
  static void ShowInfoDialog(const String& Caption, const String& Msg);
  static void ShowWarningDialog(const String& Caption, const String& Msg);
  /// Yes / No with No as the default; true only for Yes.
  static bool ShowYesNoQuestionDialog(const String& Caption, const String& Msg);
  /// Yes / No / Cancel with Cancel as the default: 1, 0 or -1.
  static int32_t ShowYesNoCancelDialog(const String& Caption, const String& Msg);
  /// The save prompt: "Confirm saving or cancel" / "Some changes were made. Do you want to save
  /// changes?".
  static int32_t ShowYesNoCancelDialog();
  /// OK / Cancel with OK as the default; true only for OK.
  static bool ShowOKCancelDialog(const String& Caption, const String& Msg);
  /// dlgInfo, dlgWarning, dlgError: the matching box, -1. dlgQuery: the Yes/No question, 1 or
  /// 0. dlgCancel: the Yes/No/Cancel box, 1, 0 or -1. Any other type: nothing shown, -1.
  static int32_t ShowCustomInfoDialog(const String& Caption, const String& Msg,
                                      TCustomDialogType DlgType);

  // --- Composition from language keys ---------------------------------------------------

  /// LangFunc(Key) split at "|" (trimmed tokens). With exactly two tokens the second, and
  /// with no "|" the whole text, is formatted with Param as its one string argument when it
  /// holds "%" and Param is not empty. A placeholder that does not fit raises EConvertError.
  static TStringDynArray GetMessageArray(const String& Key, const String& Param,
                                         const TLangFunc& LangFunc);
  /// GetMessageArray; with two strings shows them as caption and message, else returns -1.
  static int32_t ShowCustomInfoDialogEx(const String& Key, const String& Param,
                                        const TLangFunc& LangFunc, TCustomDialogType DlgType);
  /// The input prompt with caption and prompt from the key's text: 1 OK (Value edited),
  /// 0 Cancel, -1 when the text is not "Caption|Prompt" (nothing shown).
  static int32_t CustomInputQuery(const String& Key, const TLangFunc& LangFunc, String& Value);
  /// Key "Section\Message|CaptionIdent": a message text without "|" takes its caption from
  /// "Section\CaptionIdent"; a "Caption|Message" text is shown as it is.
  static int32_t ShowCustomLangDialog(const String& Key, const TLangFunc& LangFunc,
                                      TCustomDialogType DlgType);
  /// LangFunc(Section + "\" + Ident).
  static String JoinedLangFunc(const String& Section, const String& Ident,
                               const TLangFunc& LangFunc);
  /// "Ident" gives LangFunc(Section\Ident) unchanged; "Prefix;First-Last" joins the texts of
  /// Section\Prefix<First> .. Section\Prefix<Last> with each "\n" marker made a line feed (an
  /// empty text when First > Last). A bound that is not an integer raises EConvertError.
  static String JoinLangValues(const String& Section, const String& MessageIdents,
                               const TLangFunc& LangFunc);
  /// Key "Section\CaptionIdent\MessageIdents": caption from JoinedLangFunc, message from
  /// JoinLangValues. Another number of "\" tokens raises Exception.
  static int32_t ShowJoinedMessageDialog(const String& JoinedKey, const TLangFunc& LangFunc,
                                         TCustomDialogType DlgType);
  /// Replaces "%1", "%2", ... by the arguments, in ascending order, every occurrence.
  static String ReplaceArgsWithValues(const String& S, const TStringDynArray& Args);
  /// Caption and message from LangFunc(Key), or from Key itself when LangFunc is empty;
  /// defaults "Error Message" / "Uknown Error"; "\n" markers become CR LF; arguments replaced.
  static int32_t ShowCustomInfoDlgWithParams(const String& Key, const TStringDynArray& Args,
                                             const TLangFunc& LangFunc, TCustomDialogType DlgType);
  /// ShowCustomInfoDlgWithParams of the text itself ("Caption|Message"), without arguments.
  static int32_t ShowCustomInfoDlgFast(const String& Text, TCustomDialogType DlgType);
  /// Kept as an operation that does nothing, on purpose.
  static void ShowInfoWaitForEndDialogDef();

  /// The caption and message ShowCustomInfoDlgWithParams shows, without showing them.
  static TStringDynArray ComposeInfoDlgWithParams(const String& Key, const TStringDynArray& Args,
                                                  const TLangFunc& LangFunc);

  // --- Input prompts --------------------------------------------------------------------

  /// The input prompt; true for OK, and then Value holds the edited text.
  static bool ShowStrQueryDialog(const String& Caption, const String& Prompt, String& Value);
  /// Asks for an integer in Min..Max (Prompt is formatted with Min and Max, two "%d"). Value
  /// becomes the number on success, else stays Default; SuccessMsg (formatted with the number
  /// when it holds "%d") and ErrorMsg are shown when not empty.
  static bool InputInteger(const String& Caption, const String& Prompt, const String& SuccessMsg,
                           const String& ErrorMsg, int32_t Default, int32_t Min, int32_t Max,
                           int32_t& Value);
  /// Asks for an integer starting from Value ("$" and 6+ hex digits when AsHex). True when OK
  /// was pressed; text that is not an integer raises "Conversion to integer error in: ...".
  static bool QuickInputInteger(const String& Caption, const String& Prompt, int32_t& Value,
                                bool AsHex);

  // --- Text viewer ----------------------------------------------------------------------

  /// Shows the lines of List (a TStrings), or Text when List is not one, read-only.
  static void ViewListAsText(TObject* List, const String& Text, const String& Caption,
                             const TCustomObjProc& ObjProc);
  /// Shows the lines of List (a TStrings); true when closed with OK, and then, unless
  /// ReadOnly, the edited lines are written back into List.
  static bool EditListAsText(TObject* List, const String& Caption, const TCustomObjProc& ObjProc,
                             bool ReadOnly, TViewerButtons Buttons);
  /// Shows Text; true when closed with OK. The edited text is not handed back.
  static bool EditStringAsText(const String& Text, const String& Caption,
                               const TCustomObjProc& ObjProc, bool ReadOnly,
                               TViewerButtons Buttons);
  /// Fills a temporary list with FillProc and edits it with EditListAsText; false without
  /// showing anything when FillProc is empty.
  static bool EditListWithProc(const TStringsProc& FillProc, const String& Caption,
                               const TCustomObjProc& ObjProc, bool ReadOnly,
                               TViewerButtons Buttons);
  /// Asks for a file name (DlgTitle, FileFilter as "Description|*.ext|") starting from
  /// *FileName when given, and saves List there as UTF-8. True when saved; *FileName receives
  /// the name.
  static bool SaveListAsText(TStrings& List, const String& DlgTitle, const String& FileFilter,
                             String* FileName = nullptr);
};

}  // namespace vex
