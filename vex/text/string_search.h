// uStringSearch: every place of a search string in a text, found with the options of a find
// dialog (direction, case, whole word), recorded as TSearchInfo and rewritten, optionally
// through a caller's procedure. Plus position searches over the platform's SearchBuf.
//
//   TSearchInfoArray infos;
//   DetectStringPlaces(u"ab-ab", u"ab", {soDown}, infos);   // positions 1 and 4
//   ProcessStrWithProc(u"a-a", u"a", {soDown}, [](String& s) { s += s; });   // u"aa-aa"
//
// Matches never touch: the search after a match resumes one character past its end, so "ab" in
// "abab" is found once. Every search here starts at the beginning of the given text, so without
// soDown (a backward search from the start) nothing is found, except by GetTextPosEx.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "vex/core/base_types.h"
#include "vex/platform/search_buf.h"
#include "vex/platform/types.h"

namespace vex {

struct TStringSearch;

/// One match of a TStringSearch. An empty match has Success false and every other field zero
/// or empty.
struct TStringMatch {
  const TStringSearch* FOwner = nullptr;
  int32_t Index = 0;   ///< 1-based position in the whole text
  int32_t Length = 0;  ///< length of the search string
  String Value;        ///< the characters found
  bool Success = false;

  /// The next match of the same search, starting one character past the end of this one
  /// (0-based offset Index + Length); an empty match when this one was not found.
  TStringMatch NextMatch() const;
};

/// A search string with options, run over a text by Match. The text given to Match is
/// referenced, not copied, and every match points back to its search: both must outlive the
/// matches. A temporary text or a temporary search is therefore refused at compile time.
struct TStringSearch {
  TStringSearchOptions FOptions;
  String FPattern;
  int32_t FLength = 0;           ///< length of the current text
  const Char* Source = nullptr;  ///< characters of the current text

  TStringSearch(const String& Pattern, TStringSearchOptions Options);

  /// Remembers Text and returns GetMatch(0).
  TStringMatch Match(const String& Text) &;
  TStringMatch Match(const String&& Text) & = delete;
  TStringMatch Match(const String& Text) && = delete;
  /// Searches the current text from the 0-based offset Start to its end.
  TStringMatch GetMatch(int32_t Start) const&;
  TStringMatch GetMatch(int32_t Start) const&& = delete;
};

struct TSearchInfo {
  int32_t Index = 0;  ///< 1-based position
  int32_t Length = 0;
  String Value;  ///< the matched text

  friend bool operator==(const TSearchInfo&, const TSearchInfo&) = default;
};
using TSearchInfoArray = std::vector<TSearchInfo>;
using TSearchInfoArrays = std::vector<TSearchInfoArray>;

/// A procedure that may change the matched text it receives.
using TVarStringProc = std::function<void(String& S)>;

/// Replaces Infos by one entry per match of SearchStr in Text, in order.
void DetectStringPlaces(const String& Text, const String& SearchStr, TStringSearchOptions Options,
                        TSearchInfoArray& Infos);
/// Info := the first match, or with FindLast the last one; cleared when there is none.
/// Returns whether a match was found.
bool DetectStringInfos(const String& Text, const String& SearchStr, TStringSearchOptions Options,
                       TSearchInfo& Info, bool FindLast = false);
/// One entry of Infos per search string SearchStrs[0 .. LastIndex] (LastIndex is clamped to the
/// array), each holding the places of that string.
void DetectStringInfos(const String& Text, const TStringDynArray& SearchStrs, int32_t LastIndex,
                       TStringSearchOptions Options, TSearchInfoArrays& Infos);

/// For every info in order, the Length characters at Index + Offset are replaced by NewText, or
/// by the info's own Value when NewText is empty. Positions are not adjusted between
/// replacements; the caller passes positions that already account for earlier ones.
String ReplaceStrByInfos(const String& Text, const String& NewText, const TSearchInfoArray& Infos,
                         int32_t Offset);
/// Hands every match of SearchStr to Proc and puts what Proc leaves in its place.
String ProcessStrWithProc(const String& Text, const String& SearchStr, TStringSearchOptions Options,
                          const TVarStringProc& Proc);

/// Forward, case-insensitive search over the first Length(Text) - Start + 1 characters of Text:
/// Start shortens the searched stretch at its end, it does not move its beginning. Returns the
/// 1-based position, 0 when not found.
int32_t GetTextPos(const String& SubStr, const String& Text, int32_t Start);
/// SearchBuf over the first Length(Text) - Start characters of Text with the selection at the
/// 0-based offset Start. Returns the 0-based offset of the match; 0 also when there is none.
int32_t GetTextPosEx(const String& SubStr, const String& Text, int32_t Start,
                     TStringSearchOptions Options);
/// Positions (1-based) of SubStr in Text, stored in Positions; returns their count. After a
/// match the next stretch begins just past it but is shortened by the match's absolute
/// position, so late matches in long texts are missed ("ab" in "abababab": 1, 3, 5).
int32_t GetTextPositions(const String& SubStr, const String& Text, TIntegerDynArray& Positions,
                         int32_t Unused, TStringSearchOptions Options);
/// Replaces ReplacedLength characters at each of Positions (positions in Text as it was before
/// any replacement) by NewText, shifting later positions by the accepted replacements. Accept,
/// when given, may refuse a shifted position. Stops at the first accepted position below 1 or
/// whose stretch would run past the end. Returns the number of replacements.
int32_t StuffTextInPositions(String& Text, const String& NewText, int32_t ReplacedLength,
                             const TIntegerDynArray& Positions,
                             const TIntBoolFunc& Accept = nullptr);

}  // namespace vex
