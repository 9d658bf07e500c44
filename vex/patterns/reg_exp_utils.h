// uRegExpUtils: numbers inside names turned into format templates, texts cut at the matches of
// a pattern, and search-and-replace rule lists.
//
//   DetectOneNumberFormat(u"File_007.txt", &value, &format)     // u"File_%.3d.txt", 7, u"%.3d"
//   DetectEndNumberFormat(u"Item 7", &prefix)                   // u"%s %d", prefix u"Item"
//   SplitWithPattern(u"12ab", u"\\d+", split)                   // tokens {"", "ab"}, delims {"12"}
//
//   TRegExTaskArray tasks{TRegExTask(u"Ch\\d+", u"Channel"), TRegExTask(u"Beam", u"Gate")};
//   ReplaceStrWithTaskArray(u"Ch12 Beam", tasks)                // u"Channel Gate"
//
// Every pattern is matched by TRegEx (regex.h): case-sensitive, single-line, not anchored,
// "\d", "\s", "\w" ASCII-only; positions are 1-based. A pattern that does not compile raises
// ERegExError. Optional outputs are pointers; nullptr means "not wanted" and nothing is
// written through it. Every operation is safe to call from several threads on different data.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "vex/patterns/regex.h"
#include "vex/platform/types.h"

namespace vex {

class TStrings;
class TQueryList;

// --- Matches and splits ---------------------------------------------------------------------

/// One match of a pattern: 1-based Index, Length and the matched Value. All zero/empty means
/// "no match".
struct TRegExInfo {
  int32_t Index = 0;
  int32_t Length = 0;
  String Value;

  friend bool operator==(const TRegExInfo&, const TRegExInfo&) = default;
};
using PRegExInfo = TRegExInfo*;
/// Matches of a pattern in left-to-right order, non-overlapping.
using TRegExInfoArray = std::vector<TRegExInfo>;

/// A text cut at the matches of a pattern. With n >= 1 matches, Tokens has n + 1 elements,
/// Tokens[i] is the text before Delims[i] and the last token the text after the last match;
/// without a match Tokens is the whole text and Delims is empty. Tokens[0] + Delims[0] + ... +
/// Delims[n-1] + Tokens[n] is the text.
struct TSplitInfo {
  TStringDynArray Tokens;
  TStringDynArray Delims;
};

/// Called once per match with a record that is reused for the next match (copy what you keep).
using TRegExInfoProc = std::function<void(PRegExInfo info)>;
/// Called once per token with the token, which it may rewrite in place.
using TRegExTokenProc = std::function<void(String* token)>;

/// True when s contains a number placeholder: "%d" or "%.<digits>d" ("%5d" and "%s" do not
/// count).
bool IsNumberFormat(const String& s);
/// True when "\%(\.\d+)?d" + delim + "\%(\.\d+)?d" matches in s. delim is spliced into the
/// pattern unescaped: pattern syntax in it acts as pattern syntax (and may raise ERegExError).
bool IsTwoNumbersFormat(const String& s, const String& delim);
/// True when s contains a decimal number anywhere: a "contains a number" test, so "abc1" is
/// true and "abc" false.
bool IsFloatNumber(const String& s);

/// Finds the first match of pattern in s; returns whether there is one. When info is given it
/// receives the match, or an all-zero record when there is none.
bool DetectPatternInfoPtr(const String& s, const String& pattern, PRegExInfo info = nullptr);
/// As DetectPatternInfoPtr, always writing info.
bool DetectPatternInfo(const String& s, const String& pattern, TRegExInfo& info);
/// Resizes infos to the number of patterns and fills infos[i] with the first match of
/// patterns[i] (zeroed when none). Returns how many entries have a Length above 0, so a
/// pattern that only matches the empty string fills its entry but is not counted.
int32_t DetectPatternInfos(const String& s, const TStringDynArray& patterns,
                           TRegExInfoArray& infos);
/// Replaces places by every match of pattern in s, in order.
void DetectPatternPlaces(const String& s, const String& pattern, TRegExInfoArray& places);
/// Calls proc for every match of pattern in s, in order. Changes proc makes to the record do
/// not affect s or the walk.
void ProcessPatternPlaces(const String& s, const String& pattern, const TRegExInfoProc& proc);
/// Replaces places by every decimal number in a copy of s whose "," are turned into ".", so
/// "1,5 and 2" gives "1.5" at 1 and "2" at 9 (positions are the same in s and the copy).
void DetectFloatPlaces(const String& s, TRegExInfoArray& places);

// --- Number formats -------------------------------------------------------------------------
// A digit run is a match of "\d+". The number format of a run is "%.<length>d" when it starts
// with "0" ("007" -> "%.3d", "0" -> "%.1d") and "%d" otherwise. A run that does not fit a
// 32-bit signed integer raises EConvertError, and then nothing is written to the outputs.

/// For s with exactly one digit run: returns s with the run replaced by its number format, or
/// by ch when ch is not u'\0' ("File_007.txt" -> "File_%.3d.txt", or "File_*.txt" with '*');
/// value receives the number and format the number format. Empty result, nothing written,
/// when s holds no run or more than one.
String DetectOneNumberFormat(const String& s, int32_t* value = nullptr, String* format = nullptr,
                             Char ch = u'\0');
/// For s whose one digit run ends the text: the template "%s" + blanks + number format, where
/// blanks are as many U+0020 as there were whitespace characters (code <= 32) between the text
/// and the number ("File 007" -> "%s %.3d", "Ch.12" -> "%s%d", "Port\t3" -> "%s %d"), or the
/// number format alone when there is no text before the number ("42" -> "%d"). prefix receives
/// the text before the number without its trailing whitespace, value the number, is_end
/// whether the run starts after position 1. Empty result, nothing written, unless s holds
/// exactly one run and it ends s.
String DetectEndNumberFormat(const String& s, String* prefix = nullptr, int32_t* value = nullptr,
                             bool* is_end = nullptr);
/// For s with exactly two digit runs: finds "\s?\d+\D+\d+" (an optional whitespace, the first
/// run, what lies between, the second run); value receives the matched text and index its
/// 1-based position. Returns s with the matched text removed, or replaced by ch when ch is not
/// u'\0' ("Beam 3-7" -> "Beam", value " 3-7", index 5). Empty result, nothing written,
/// otherwise.
String DetectTwoNumbersFormat(const String& s, String* value = nullptr, int32_t* index = nullptr,
                              Char ch = u'\0');

// --- Processing between matches -------------------------------------------------------------

/// Cuts s at every match of pattern into split (see TSplitInfo).
void SplitWithPattern(const String& s, const String& pattern, TSplitInfo& split);
/// Tokens[0] + Delims[0] + ... + Tokens[k] + Delims[k] for every delimiter, then the last
/// token. Raises ERangeError when a token it needs is missing (no tokens at all, or fewer
/// tokens than delimiters). With as many tokens as delimiters the last token is written twice,
/// as the rule above says.
String JoinTokensWithDelims(const TSplitInfo& split);
/// Splits s with pattern, calls proc on every token in order (also on empty tokens, and on the
/// whole text when nothing matches; proc may rewrite the token), and joins the result with the
/// unchanged delimiters.
String ProcessWithPattern(const String& s, const String& pattern, const TRegExTokenProc& proc);
/// ProcessWithPattern with "[\s\d\\\,\*\@\$\%\&\!\:\#]+": proc sees the runs between
/// whitespace, digits and the symbols \ , * @ $ % & ! : # ("ab 12 cd" -> tokens "ab", "cd").
String ProcessWithDigitDelims(const String& s, const TRegExTokenProc& proc);
/// As ProcessWithDigitDelims with word characters (ASCII letters, digits, "_") also taken as
/// delimiters: proc sees only the runs of other characters, in practice non-Latin letters and
/// punctuation.
String ProcessWithLatDigitDelims(const String& s, const TRegExTokenProc& proc);

// --- Search-and-replace rules ---------------------------------------------------------------

/// One search-and-replace rule. A SubText with a backslash is a regular expression (compiled
/// once, into re); any other SubText is plain text, so "a.b" matches only those three
/// characters while "a\.b" is a pattern.
struct TRegExTask {
  /// Set only for a pattern rule.
  std::optional<TRegEx> re;
  String SubText;
  /// The replacement; a pattern rule expands group references as TRegEx::Replace does.
  String Replace;
  /// True for a plain-text rule.
  bool SystemRep = true;

  /// An empty plain rule (never matches).
  TRegExTask() = default;
  /// A rule of the kind that sub_text calls for. Raises ERegExError when sub_text has a
  /// backslash and does not compile.
  TRegExTask(const String& sub_text, const String& replace);

  /// Plain rule: SubText occurs in s (case-sensitive; an empty SubText never matches).
  /// Pattern rule: re matches anywhere in s (a pattern rule without re never matches).
  bool IsMatching(const String& s) const;
  /// is_match := IsMatching(s). Returns s when it does not match; otherwise s with every
  /// occurrence of SubText (left to right, inserted text not rescanned) or every match of re
  /// replaced by Replace.
  String ReplaceStr(const String& s, bool& is_match) const;
  /// ReplaceStr in place: rewrites text when the rule matches and returns whether it did.
  bool ApplyTo(String& text) const;
};
using TRegExTaskArray = std::vector<TRegExTask>;

/// Rebuilds tasks from a keyed list: the entries of source's sub-list under list_key (of source
/// itself when list_key is empty; nothing when there is no such sub-list) that have an item
/// list, restricted to the entries whose key is key when key is not empty. Each becomes a
/// rule from the values under "SubText" and "Replace" (empty when absent). A bad pattern
/// raises ERegExError; the rules before it stay in tasks.
void ImportRegExpArray(const TQueryList& source, TRegExTaskArray& tasks, const String& list_key,
                       const String& key);
/// Rebuilds tasks from comma-separated lines list[start] .. list[end_index - 1] (end_index -1
/// means the item count): a line that is blank after trimming is skipped; otherwise it is split
/// at every "," (no quoting or trimming, empty fields kept) and, when it has at least col + 1
/// fields, field col is the SubText and field col + 1 (empty when missing) the replacement.
/// A negative col yields no rules. An index outside the list raises the list's
/// EStringListError. A bad pattern raises ERegExError; the rules before it stay in tasks.
void FillRegExpArray(const TStrings& list, TRegExTaskArray& tasks, int32_t col = 0,
                     int32_t end_index = -1, int32_t start = 0);
/// Index of the first rule that matches s; -1 when none does (also for no rules).
int32_t GetMatchIndexByTaskArray(const String& s, const TRegExTaskArray& tasks);
/// Applies every rule in order, each to the output of the ones before it; count receives how
/// many rules matched. An empty s is returned as it is, with a count of 0.
String ReplaceStrWithTaskArray(const String& s, const TRegExTaskArray& tasks,
                               int32_t* count = nullptr);
/// Replaces every line of list, first to last, by ReplaceStrWithTaskArray of it.
void ReplaceStringsWithTaskArray(TStrings& list, const TRegExTaskArray& tasks);

}  // namespace vex
