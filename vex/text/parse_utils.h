// TParseUtils: the library's tokenizer. Cuts a string at a delimiter into a first and second
// token, walks delimited fields one by one, turns delimited name=value text into records and
// integer arrays, reads file-dialog filters and finds bracketed options.
//
//   TParseUtils::GetFirstToken(u" a = b = c", u'=')      // u"a"
//   TParseUtils::GetSecondToken(u" a = b = c", u'=', u"") // u"b = c"
//   TParseUtils::ExtractTokens(u"a; b;", u';')           // {u"a", u"b", u""}
//
// Positions are 1-based. "Trimmed" removes leading and trailing characters of code 32 or below.
// A position search from k finds the first occurrence at or after k and gives 0 when there is
// none (or when k is outside the string). No operation reads outside its strings: positions and
// indexes out of range give the empty or not-found result stated at the operation.
//
// Delimiters are single UTF-16 characters; pass them as u';' (a plain char literal would pick
// an integer overload where one exists).
#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "vex/companion/query_list.h"
#include "vex/core/base_types.h"
#include "vex/platform/string_list.h"
#include "vex/platform/types.h"
#include "vex/platform/variant.h"

namespace vex {

/// The result of TParseUtils::SplitStr.
struct TSplitResult {
  String s1;  ///< the part before the delimiter
  String s2;  ///< the part after it
  /// Bit 1 set when s1 is not empty, bit 2 when s2 is not empty.
  uint8_t flag = 0;
};

class TParseUtils {
 public:
  /// Called with a field's text and its 0-based index.
  using TFieldProc = std::function<void(const String& text, int32_t index)>;
  /// As TFieldProc; returning false stops the walk.
  using TFieldFunc = std::function<bool(const String& text, int32_t index)>;
  /// The fixed array that CopyTokens fills.
  static constexpr int32_t kMaxCopyTokens = 1024;
  using TTokenArray = std::array<String, kMaxCopyTokens>;

  // --- splitting at one position ------------------------------------------------------------

  /// p = 0 is taken as Length(S) + 1. For p >= 1: s1 := characters 1..p-1, s2 := characters
  /// from p + 1 - k to the end, both trimmed when DoTrim. For p < 0 every field is empty.
  static TSplitResult SplitStr(const String& S, int32_t p, int32_t k, bool DoTrim);
  /// Splits at the first Delim. Without one, s1 := S (trimmed when asked) and s2 is empty.
  static TSplitResult SplitStr(const String& S, Char Delim, bool DoTrim);
  /// s1 + Delim + s2, always with the delimiter.
  static String JoinParts(const TSplitResult& Parts, Char Delim);
  /// Left := the first a characters; Right := the characters from b + 1 to the end.
  static void SplitStrByPos(const String& S, int32_t a, int32_t b, String& Left, String& Right);
  /// q <= p: the characters before p. Otherwise the characters strictly between p and q.
  static String CopyToken(const String& S, int32_t p, int32_t q);
  /// S with characters p..q (inclusive) replaced by Text: Copy(S, 1, p - 1) + Text +
  /// Copy(S, q + 1).
  static String StuffToken(const String& S, const String& Text, int32_t p, int32_t q);

  // --- first, second and last tokens ---------------------------------------------------------

  /// Trimmed text before the first Delim; all of S (trimmed) when there is none.
  static String GetFirstToken(const String& S, Char Delim);
  /// Finds the first character of Delims at or after StartPos; when found at p, the text
  /// before p (trimmed when DoTrim), else S unchanged. *FoundPos gets p (0 when none).
  static String GetFirstTokenEx(const String& S, const String& Delims, int32_t StartPos = 1,
                                bool DoTrim = true, int32_t* FoundPos = nullptr);
  /// Trimmed text after the first Delim; Default when that is empty.
  static String GetSecondToken(const String& S, Char Delim, const String& Default = String());
  /// Trimmed text after the first Delim; all of S, untouched, when that is empty.
  static String GetSecondTokenSafe(const String& S, Char Delim);
  /// GetFirstToken(S, '=').
  static String GetNameToken(const String& S);
  /// GetSecondToken(S, '=', empty).
  static String GetValueToken(const String& S);
  /// Drops one pair of enclosing "'" from S, splits the rest at the first Delim with trimming
  /// and returns the right part when the left part equals Name exactly; else empty.
  static String GetValueTokenEx(const String& S, const String& Name, Char Delim = u'=');
  /// Token + Delim + the trimmed text after the first Delim of S; the token alone when that
  /// text is empty (the delimiter is dropped too).
  static String SetFirstToken(const String& S, const String& Token, Char Delim);
  /// p = 0: Token alone. p = 1: Token + S. Otherwise the first p - 1 characters of S are
  /// replaced by Token.
  static String SetFirstToken(const String& S, const String& Token, int32_t p);
  static String SetFirstToken(const String& S, const String& Token, char Delim) = delete;
  /// Trimmed text before the first Delim + Delim + Token, always with the delimiter.
  static String SetSecondToken(const String& S, const String& Token, Char Delim);
  /// The text after the last Delim, up to the next EndDelim (to the end when EndDelim is 0).
  /// Default when that text is empty, when there is no Delim or when EndDelim is not found.
  static String GetLastToken(const String& S, Char Delim, Char EndDelim = 0,
                             const String& Default = String());
  /// The text before the last Delim; S unchanged when there is none. *Found tells which.
  static String CutLastToken(const String& S, Char Delim, bool* Found = nullptr);

  // --- splitting in place --------------------------------------------------------------------

  /// Tail := empty; when Delim occurs, Tail := the text after its last occurrence and S is cut
  /// to the text before it. No trimming.
  static void SplitWithLastChar(String& S, Char Delim, String& Tail);
  /// As SplitWithLastChar, at the Index-th occurrence of Delim counted from the end (see
  /// TStringUtils::LastDelimiterEx); when found and DoSwap, S and Tail are exchanged.
  static void SplitWithLastCharEx(String& S, Char Delim, int32_t Index, String& Tail,
                                  bool DoSwap = false);
  /// SplitWithLastCharEx on a copy of S; the head is stored through Head when given.
  static void SplitWithLastCharPtr(const String& S, Char Delim, int32_t Index, String& Tail,
                                   bool DoSwap = false, String* Head = nullptr);
  /// Head := S. When Delim occurs at p: S := the text after p, Head := the text before p.
  /// When it does not: S := empty (Head holds everything). No trimming.
  static void SplitWithFirstChar(String& S, Char Delim, String& Head);
  /// i := 0-based index of the first Delim (-1 when absent). Absent: Left := S, Right := empty.
  /// Present: Left := the first i characters, Right := the i + 1 characters that start at the
  /// delimiter itself. An empty Right becomes DefRight. Returns i.
  static int32_t Split(const String& S, String& Left, String& Right, Char Delim,
                       const String& DefRight = String());
  /// Head/Tail := the text before/after the first Delim, both trimmed when DoTrim; without a
  /// delimiter Head := S and Tail := empty.
  static void SplitStrWithChar(const String& S, Char Delim, String& Head, String& Tail,
                               bool DoTrim = true);
  /// Splits at Delim1 into A and the rest; the rest is split again at Delim2 into B and C
  /// (C empty when Delim2 is 0 or absent).
  static void SplitStrWithTwoChars(const String& S, Char Delim1, Char Delim2, String& A, String& B,
                                   String& C, bool DoTrim = true);
  /// SplitStrWithTwoChars into s1, s2 and s3.
  static TSplitRec SplitStr2Rec(const String& S, Char Delim1, Char Delim2, bool DoTrim = true);
  /// Reads "index.name=value" (split with trimming at the first "." and then the first "=").
  /// The index is converted with StrToInt (EConvertError when it is not an integer), passed
  /// through MapFunc when given, and returned; Value becomes an integer variant when the value
  /// text is an integer, else a string variant.
  ///
  ///   SplitPropStr(u"2.Width=40", name, value)   // 2, name u"Width", value 40
  static int32_t SplitPropStr(const String& S, String& Name, Variant& Value,
                              const TIntMapFunc& MapFunc = nullptr);

  // --- walking delimited fields --------------------------------------------------------------

  /// Takes the field that starts at Position: the trimmed text up to the next Delim. After a
  /// non-empty field Position steps over its delimiter, except when that delimiter is the last
  /// character of S; after an empty field it steps one past the delimiter (or past the end).
  /// So "a;b;" gives "a", "b", "" and "a;b" gives "a", "b". A Position below 1 is taken as 1.
  static String ExtractParamField(const String& S, int32_t& Position, Char Delim);
  /// The field with 0-based Index (empty fields count); empty when S ends first.
  static String ExtractParamFieldByIndex(const String& S, int32_t Index, Char Delim);
  /// Calls Proc for every field with its index; returns the number of fields (0 for empty S).
  static int32_t ExtractParamFields(const String& S, const TFieldProc& Proc, Char Delim);
  /// As ExtractParamFields; every field is split at ValueDelim with trimming into key and value
  /// (key := the field, value := empty when it has no ValueDelim).
  static int32_t ExtractParamFieldsEx(const String& S, const TRefKeyValStrProc& Proc, Char Delim,
                                      Char ValueDelim = u'=');
  /// As ExtractParamFields, stopping at the first field for which Func returns false. Returns
  /// the number of fields for which it returned true.
  static int32_t ExtractParamFieldsWithFunc(const String& S, const TFieldFunc& Func, Char Delim);
  /// The fields, in order, as a new array.
  static TStringDynArray ExtractTokens(const String& S, Char Delim);
  /// The fields, each trimmed again before it is stored.
  static TStringDynArray ExtractTrimmedTokens(const String& S, Char Delim);
  /// Clears Tokens, fills it with the fields and returns its length.
  static int32_t ExtractParamFieldsToArray(const String& S, TStringDynArray& Tokens, Char Delim);
  /// Clears List and adds the fields as lines, in one update bracket. Returns the field count.
  static int32_t ExtractParamFieldsToList(const String& S, TStrings& List, Char Delim);
  /// Copies the first (at most kMaxCopyTokens) fields into Tokens, clears the remaining
  /// elements, and returns the number copied.
  static int32_t CopyTokens(const String& S, TTokenArray& Tokens, Char Delim);
  /// The fields converted strictly to integers (StrToInt); a field that is not an integer, an
  /// empty one included, raises EConvertError.
  static TIntegerDynArray SplitIntoIntegers(const String& S, Char Delim);
  /// As SplitIntoIntegers, but a field that is not an integer becomes 0.
  static TIntegerDynArray ExtractIntegers(const String& S, Char Delim);
  /// As ExtractIntegers, each value kept in its low 8 bits.
  static TBytes ExtractBytes(const String& S, Char Delim);
  /// Calls Proc with every element and its 0-based index, in order.
  static void EnumStringItems(const TStringDynArray& Items, const TFieldProc& Proc);
  /// The first three fields as s1, s2 and s3 (empty where S has fewer).
  static TSplitRec ExtractTokensRec(const String& S, Char Delim);

  // --- name=value lookups --------------------------------------------------------------------

  /// Index of the first element whose text before its first Delim (trimmed) equals Name exactly
  /// and, when RequireValue, whose trimmed text after it is not empty; -1 when none. The right
  /// part of the element found is stored through Value when given.
  static int32_t IndexOfName(const TStringDynArray& Items, const String& Name,
                             String* Value = nullptr, Char Delim = u'=', bool RequireValue = false);
  /// IndexOfName over ExtractTokens(S, Delim), with "=" between names and values.
  static int32_t IndexOfNameInStr(const String& S, const String& Name, Char Delim,
                                  String* Value = nullptr, bool RequireValue = false);
  /// The first non-empty value of Name among name=value elements; empty when none.
  static String GetParamValue(const TStringDynArray& Items, const String& Name);
  /// For every key, the value of the first field of S of the form key, ValueDelim, value (see
  /// IndexOfName); empty for keys not found. One element per key, in order.
  static TStringDynArray ExtractValuesByKeys(const String& S, const TStringDynArray& Keys,
                                             Char Delim, Char ValueDelim = u'=');
  /// Splits the non-empty fields of S at their first ValueDelim with trimming into Names and
  /// Values (a field without ValueDelim gives the field as name and an empty value). Both
  /// arrays are cleared first. Returns the number of pairs.
  static int32_t SplitIntoNamesAndValues(const String& S, TStringDynArray& Names,
                                         TStringDynArray& Values, Char Delim,
                                         Char ValueDelim = u'=');
  /// Names[i] + ValueDelim + Values[i], joined by Delim, for the pairs both arrays hold.
  static String JoinNamesAndValues(const TStringDynArray& Names, const TStringDynArray& Values,
                                   Char Delim, Char ValueDelim = u'=');
  /// Every field of S (as the field walk gives it, trimmed) replaced by Func(field), the
  /// results joined by Delim. An empty Func keeps the fields as they are.
  static String ReplaceTokens(const String& S, const TGetSubTextFunc& Func, Char Delim);

  /// For every element, in order: Value when ValuesOnly, else JoinFields ("name=value", or the
  /// bare value when the name is empty); joined by Delim.
  static String JoinValueRecs(const TNameValueIntArray& Recs, Char Delim, bool ValuesOnly = false);
  /// Clears List, then for every element "group", Delim1, "key", Delim2, "value" (split with
  /// trimming) sets key to value in the sub-list of the item named group (created when
  /// missing).
  static void ExportPropValuesFromArray(const TStringDynArray& Items, TQueryList& List,
                                        Char Delim1 = u'.', Char Delim2 = u'=');
  /// The inverse of ExportPropValuesFromArray: clears Items and appends group + Delim1 + name +
  /// Delim2 + value for every name=value line under every group of List.
  static void ImportPropValuesToArray(TStringDynArray& Items, const TQueryList& List,
                                      Char Delim1 = u'.', Char Delim2 = u'=');

  // --- name/value records --------------------------------------------------------------------

  /// One TNameValue::Create(field, DoSwap, ValueDelim) per field of S.
  static TNameValueArray SplitIntoNameValueArray(const String& S, Char RecDelim, bool DoSwap,
                                                 Char ValueDelim = u'=');
  /// A TNameValueArrayRec with both delimiters holding the pairs of S.
  static TNameValueArrayRec SplitIntoNameValueRecs(const String& S, Char RecDelim,
                                                   Char ValueDelim = u'=');
  /// The same with names and values exchanged.
  static TNameValueArrayRec SplitIntoNameValueRecsInv(const String& S, Char RecDelim,
                                                      Char ValueDelim = u'=');
  /// The same with the exchange chosen by DoSwap.
  static TNameValueArrayRec SplitIntoNameValueRecsSep(const String& S, Char RecDelim,
                                                      Char ValueDelim, bool DoSwap);
  /// Every field split at "=" with trimming. With a non-empty right side: Name := left, Value
  /// := StrToInt(right) (EConvertError when it is not an integer). Without one: an integer left
  /// side gives an empty Name and that Value; anything else is the Name with Value -1.
  static TNameValueIntArray SplitIntoValueRecs(const String& S, Char RecDelim);
  /// SplitIntoValueRecs in a TNameValueIntArrayRec with both delimiters (ValueDelim is only
  /// stored).
  static TNameValueIntArrayRec SplitIntoValueRecsInt(const String& S, Char RecDelim,
                                                     Char ValueDelim = u'=');

  // --- integers ------------------------------------------------------------------------------

  /// Element Index of SplitIntoIntegers(S, Delim); Index < 0 means the last. -1 when out of
  /// range; *Found tells which.
  static int32_t GetIntValue(const String& S, Char Delim, int32_t Index, bool* Found = nullptr);
  /// Replaces element Index (Index < 0: the last) of SplitIntoIntegers(S, Delim) and returns
  /// the array joined with "|" whatever Delim was; S unchanged when out of range. *Done tells
  /// which.
  static String SetIntValue(const String& S, Char Delim, int32_t Index, int32_t Value,
                            bool* Done = nullptr);
  /// TNameValueInt::Create(S, false) with Value replaced, as JoinFields; *Done := true.
  static String SetEquIntValue(const String& S, int32_t Value, bool* Done = nullptr);
  /// Position := the first position at or after Position of a digit "0".."9" (0 when none);
  /// returns it.
  static int32_t DetectIntChars(const String& S, int32_t& Position);
  /// The position of the first character of S at or after StartPos that is one of Chars (0
  /// when none); *Index gets its 0-based index in Chars (-1 when none).
  static int32_t MinPosAndIndexOfChar(const String& S, const String& Chars, int32_t StartPos = 1,
                                      int32_t* Index = nullptr);
  /// Tries the characters of Chars in order and gives the position, at or after StartPos, of
  /// the first one that occurs (0 when none); *Index gets its 0-based index in Chars (-1).
  static int32_t PosAndIndexOfChar(const String& S, const String& Chars, int32_t StartPos = 1,
                                   int32_t* Index = nullptr);

  // --- file-dialog filters ("Text files (*.txt)|*.txt|All (*.*)|*.*") -----------------------

  /// One "%s (*%s)|*%s|" entry per description/extension pair (at most MaxCount unless it is
  /// 0), with the final "|" removed.
  static String MakeFileFilter(const TStringDynArray& Descriptions,
                               const TStringDynArray& Extensions, uint8_t MaxCount = 0);
  /// The 1-based pair number whose pattern is "*." + Ext (ignoring ASCII case; a leading "."
  /// of Ext is optional); 0 when not found, when Ext is empty or the filter is not valid.
  static int32_t IndexOfFileExt(const String& Filter, const String& Ext);
  /// The token index of the first pattern equal to "*." + Ext ignoring ASCII case; -1 when none
  /// or when Tokens is not a valid filter (an even count of at least 2). The Boolean is unused.
  static int32_t GetExtIndexInArray(const String& Ext, const TStringDynArray& Tokens,
                                    bool WithDot = false);
  /// The pattern of pair Number (1-based) without its "*" (WithDot) or "*."; empty when out of
  /// range or when Tokens is not a valid filter.
  static String GetExtFromArray(int32_t Number, const TStringDynArray& Tokens, bool WithDot);
  /// GetExtFromArray on the filter's tokens.
  static String GetFileExtByIndex(const String& Filter, int32_t Number, bool WithDot);

  // --- bracketed options ("()" or "[]": first character opens, second closes) ---------------

  /// The text between the first opening bracket at or after StartPos and the next closing one;
  /// empty when either is missing or Brackets has fewer than two characters. No nesting.
  static String ExtractOptionsWithBrackets(const String& S, const String& Brackets,
                                           int32_t StartPos = 1);
  /// As ExtractOptionsWithBrackets; OpenPos gets the opening position (0 when none) and, once
  /// one was found, ClosePos the closing one (0 when none).
  static String ExtractOptionsWithBracketsEx(int32_t& OpenPos, int32_t& ClosePos, const String& S,
                                             const String& Brackets, int32_t StartPos = 1);
  /// Head := the text before the first opening bracket; the result is the text up to a final
  /// closing bracket (or the first one after the opening when S does not end with one).
  /// Both empty unless S has more than two characters and Brackets more than one.
  static String ExtractStrAndOptionsWithBrackets(String& Head, const String& S,
                                                 const String& Brackets);
  /// Finds the first opening bracket at or after StartPos and the next closing one (a
  /// one-character Brackets uses it for both). True with both positions stored when found;
  /// false with the positions untouched otherwise.
  static bool SplitStrWithBrackets(const String& S, const String& Brackets, int32_t& OpenPos,
                                   int32_t& ClosePos, int32_t StartPos = 1);
  /// SplitStrWithBrackets, storing the text before the opening bracket, between the brackets
  /// and after the closing one through the pointers that are given. Nothing is stored when
  /// the brackets are not found.
  static bool SplitStrWithBracketsPtr(const String& S, const String& Brackets,
                                      String* Left = nullptr, String* Inner = nullptr,
                                      String* Right = nullptr, int32_t StartPos = 1);
};

}  // namespace vex
