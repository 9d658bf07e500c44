// TStringUtils: the string, quoting and list helpers that the text, pattern and data units share.
// Every operation is a static member; each group below is implemented in its own source file
// (string_utils_<group>.cpp).
#pragma once

#include <cstdint>

#include "vex/core/base_types.h"
#include "vex/platform/types.h"

namespace vex {

class TStrings;

class TStringUtils {
 public:
  // --- record wrappers (forwarders to the free functions of base_types.h) -------------------
  /// GetStrRec(S): S wrapped in a TStrRec.
  static TStrRec StrRec(const String& S);
  /// GetStrListRec(S): a new string list holding the lines of S; the record owns it.
  static TStrListRec StrListRec(const String& S);

  // --- characters, pieces and list searches -------------------------------------------------
  // Implemented in string_utils_text.cpp.

  /// Removes one pair of enclosing Quote strings: S without its first and last Length(Quote)
  /// characters when it starts and ends with Quote and is long enough to hold both; otherwise
  /// S unchanged. Nothing inside is un-doubled.
  ///
  ///   DequoteStr(u"'it''s'")   // u"it''s"
  static String DequoteStr(const String& S, const String& Quote = u"'");
  /// Position of the Index-th occurrence, counted from the end (1 = the last), of any character
  /// of Delimiters in S; 0 when there are fewer occurrences or Index < 1.
  static int32_t LastDelimiterEx(const String& Delimiters, const String& S, int32_t Index = 1);
  /// Exchanges the two strings.
  static void SwapStrings(String& S1, String& S2);
  /// Removes Prefix from the start of S when S starts with it (an empty Prefix does nothing);
  /// returns whether it did.
  static bool DeleteFirstChars(String& S, const String& Prefix);
  /// Removes the last character of S when it is C; returns whether it did.
  static bool DeleteLastChar(String& S, Char C);
  /// Index of the first element of Items, from Start and then every Step-th one, equal to Value
  /// ignoring ASCII case; -1 when none. Start < 0 is taken as 0, Step < 1 as 1.
  static int32_t IndexOfStrValueP(const TStringDynArray& Items, const String& Value,
                                  int32_t Start = 0, int32_t Step = 1);
  /// S without any occurrence of any character of Chars.
  ///
  ///   DeleteAllChars(u"0A 1B-2C", u" -")   // u"0A1B2C"
  static String DeleteAllChars(const String& S, const String& Chars);
  /// S with Chars inserted after every Count characters, between the groups only (nothing is
  /// added after the last group). Count < 1 or an empty Chars gives S unchanged.
  ///
  ///   InsertChars(u"0A1B2C", u" ", 2)   // u"0A 1B 2C"
  static String InsertChars(const String& S, const String& Chars, int32_t Count);
  /// True when S is not empty and its first character is one of Chars.
  ///
  ///   CheckForFirstChars(u"n0110", u"nt")   // true
  static bool CheckForFirstChars(const String& S, const String& Chars);
  /// Level tab characters; empty for Level <= 0.
  static String GetTabStr(int32_t Level);
  /// Index of the first line of List, from StartIndex on, for which Func(S, line) is not zero
  /// (S is the SubStr, the line the AText); -1 when none or when Func is empty.
  static int32_t IndexInListWithProc(const String& S, const TStrings& List,
                                     const TGetPosFunc& Func, int32_t StartIndex = 0);
  /// IndexInListWithProc with TCompareUtils::IntCompareFunc(CompareType, Options). lctRegExp
  /// has no comparison function here and gives -1 (patterns are matched by the pattern units).
  ///
  ///   IndexInListByParams(u"ab", list, lctStartsWith, {cmpIgnoreCase})  // first line "AB..."
  static int32_t IndexInListByParams(const String& S, const TStrings& List,
                                     TLineCompareType CompareType, TLineCompareOptions Options,
                                     int32_t StartIndex = 0);

  // --- quoting, packing and formatting ------------------------------------------------------

  /// Takes one pair of surrounding quotes off S: the first and last characters must be the same
  /// straight quote (" ' `) or an opening/closing pair (« », “ ”, „ “, „ ”, ‘ ’, ‹ ›). The two
  /// quote characters go to *Quotes (empty when S was not quoted) and the inside is returned.
  ///
  ///   RemoveQuotes(u"«Pump 3»", &q)   // u"Pump 3", q == u"«»"
  static String RemoveQuotes(const String& S, String* Quotes = nullptr);
  /// Puts S between quotes: a one-character Quotes on both sides, a longer one its first
  /// character before and its second after; an empty Quotes leaves S as it is. Quote
  /// characters inside S are not doubled, so RemoveQuotes gives S back.
  static String QuotedStr(const String& S, const String& Quotes = u"'");
  static String QuotedStr(const String& S, Char Quote);
  /// When S ends with C, returns that position (Length(S)) and, when DoDelete, removes the
  /// character from S; otherwise returns 0 and leaves S alone.
  static int32_t CheckForLastChar(String& S, Char C, bool DoDelete = false);
  /// Fills a two-argument number template such as "%s %.3d": Format(Fmt, {S, Value}) when
  /// Inverse (the number follows the text), Format(Fmt, {Value, S}) otherwise. A template
  /// with one placeholder ("%d") uses the value alone.
  static String ApplyFormat(const String& Fmt, const String& S, int32_t Value, bool Inverse);

  /// The length of the prefix that all lines of List share (case-sensitive), at most
  /// MaxCount, or 0 when that is below MinCount. A one-line list gives the line's length,
  /// raised to MinCount when shorter and capped at MaxCount; an empty list or a MinCount below
  /// 1 gives 0.
  static int32_t CommonCharCount(const TStrings& List, int32_t MinCount, int32_t MaxCount = 255);
  /// Packs the lines of Source into one line of Dest: their common prefix (CommonCharCount
  /// with a minimum of 1) followed by the remaining tails joined by "|" in braces.
  /// Dest is cleared first; a Source of fewer than two lines is copied unchanged.
  ///
  ///   {u"Pump A", u"Pump B"}   ->   u"Pump {A|B}"
  static void PackList(const TStrings& Source, TStrings& Dest);
};

}  // namespace vex
