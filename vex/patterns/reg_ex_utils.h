// TRegExUtils: series of numbered names in a string list ("Beam 1", "Beam 2", "Beam 3") found
// and compressed into one line that names the common text once and writes the numbers in the
// integer-group notation of TIntegerUtils::GroupIntegers ("1-3,5"; a full run from the base is
// written as its last value alone).
//
//   TStringList list;                       // Beam 1, Beam 2, Beam 3, Gate, Beam 7
//   TRegExUtils::CompressListWithIntPatternSmart(list);
//   // -> Beam {3}, Gate, Beam 7
//
// Lines written: "%s{%s}%s" (text before, group, text after) for a plain series, "%s{%s}" for
// the series of a hinted walk, "%s[<%s>]%s" for several bracketed items, "%s[%s]%s" for one
// bracketed item and "%s%s%s" for one plain item. The number pattern is "\d+" (ASCII digits),
// never matching the empty string. Patterns are case-sensitive. List indexes are 0-based,
// text positions 1-based.
#pragma once

#include <cstdint>
#include <optional>

#include "vex/core/base_types.h"
#include "vex/patterns/regex.h"
#include "vex/platform/types.h"

namespace vex {

class TStrings;

class TRegExUtils {
 public:
  /// The number pattern of the grouping operations: "\d+" that never matches empty text.
  static TRegEx NumberPattern();

  /// True when List has at least two lines, its first line has at least N characters, and
  /// every other line starts with the first N characters of the first (case-sensitive).
  static bool IsCommonPart(const TStrings& List, int32_t N);
  /// The length of the prefix common to all lines (at most 255), or 0 when it is shorter than
  /// MinCount. A one-line list gives the line's length raised to MinCount; an empty list or a
  /// MinCount below 1 gives 0.
  static int32_t MostCommonCharCount(const TStrings& List, int32_t MinCount);

  /// For lines Start .. Start + Count - 1 (those that exist), reads the run of digits that
  /// starts exactly at CharPos; a line without one (or with one too long for 32 bits) is
  /// skipped. The values are collected in reverse line order, deliberately, and written in
  /// group notation with base 0: "1", "2", "3" at CharPos give "3,2,1".
  static String DetectIntegerRegion(const TStrings& List, int32_t Start, int32_t Count,
                                    int32_t CharPos);
  /// How many lines from Start to the end Pattern matches anywhere (not only consecutive ones).
  /// Raises ERegExError when Pattern does not compile.
  static int32_t GetMatchingCount(const TStrings& List, int32_t Start, const String& Pattern);

  /// S with its number replaced by "\d+" ("Item12" -> "Item\d+", "A1B" -> "A\d+B"); "\d+" is
  /// appended to a text without a number, and a text with two or more numbers gives empty.
  /// The text parts are not escaped.
  static String DetectIntPatternByStr(const String& S);
  /// When S starts with Prefix and the number right after it is N (or, with an empty Prefix,
  /// at the first number of S): replaces Prefix and the number (only the number when Prefix is
  /// empty) by NewText followed by the N-th character of Chars (1-based), or by NewText alone
  /// when Chars is shorter than N or N is 0. *Value receives N, or -1 when nothing was
  /// replaced. A number that does not fit 32 bits raises Exception "Error in
  /// TRegExUtils.ReplaceIntPatternByStr: Failed to convert int part".
  ///
  ///   ReplaceIntPatternByStr(u"Ch3x", u"Ch", u"Channel ", u"ABCDE")   // u"Channel Cx"
  static String ReplaceIntPatternByStr(const String& S, const String& Prefix, const String& NewText,
                                       const String& Chars, int32_t* Value = nullptr);

  /// Cuts S at the first match of RegEx into LeftPart, the matched IntPart and RightPart; all
  /// three stay untouched when there is no match. True only when LeftPart is not empty (a name
  /// that begins with its number never splits) and, when Hint is not empty, Hint's text before
  /// its first match (all of Hint without one) equals LeftPart.
  static bool SplitStrIntoParts(const String& S, const String& Hint, const TRegEx& RegEx,
                                String& IntPart, String& RightPart, String& LeftPart);
  /// Creates the number pattern into RegEx and splits S at its numbers. Only when S holds
  /// exactly one number: stores the texts before and after it and returns whether S2's text
  /// before its first number equals LeftPart. False otherwise.
  static bool DetectIntPatternParts(const String& S, const String& S2, String& LeftPart,
                                    String& RightPart, std::optional<TRegEx>& RegEx);

  /// Builds a pattern from line Start at the column of its first digit after the lines'
  /// common prefix (see the source for the exact positions, which are kept as they are);
  /// CharPos receives that column, IntLen the digit count of line 0 there plus one, and, when
  /// DoCount, MatchCount the number of lines from Start that the pattern matches. Empty (with
  /// IntLen and MatchCount 0) for lists of fewer than two lines or without a common prefix.
  static String DetectRegExPattern(const TStrings& List, int32_t Start, int32_t& CharPos,
                                   int32_t& IntLen, int32_t& MatchCount, bool DoCount);
  /// "%s{%s}%s" of line Start cut after IntLen characters, with the DetectIntegerRegion of
  /// Count lines (all from Start when Count is 0, which is then stored) between the pieces.
  /// Empty when DetectRegExPattern finds no number column.
  static String DetectIntegerPattern(const TStrings& List, int32_t Start, int32_t& Count);

  /// Collects the series that begins at line Start: consecutive lines that start with Prefix,
  /// split (at "[]" when IndexFunc is given, else at their first number) into exactly Prefix,
  /// a value and Suffix. The value is IndexFunc(line) (a negative one ends the series) or the
  /// number (one that does not fit 32 bits raises EConvertError). Count receives the length
  /// of the series; the result is the values sorted ascending in group notation, with base 0
  /// when IndexFunc is given and base 1 otherwise, or empty when Count is 0.
  static String GroupItemsWithRegEx(const TStrings& List, const TRegEx& RegEx, const String& Prefix,
                                    const String& Suffix, int32_t Start, int32_t& Count,
                                    const TIntStringFunc& IndexFunc = nullptr);
  /// Adds Prefix + "{" + group + "}" to Dest for each series of Source from line 0 on (the
  /// suffix is not written). The walk stops at the first line that does not belong to a series.
  static void GroupListWithRegEx(const TStrings& Source, TStrings& Dest, const TRegEx& RegEx,
                                 const String& Prefix, const String& Suffix);

  /// CompressListWithIntPatternAndHint when Hint is not empty and Sample starts with it,
  /// otherwise CompressListWithIntPatternSmart without an index function and without packing.
  static void CompressListWithIntPattern(TStrings& List, const String& Hint, const String& Sample);
  /// Splits Sample at its number (with Hint, see SplitStrIntoParts) and replaces List by the
  /// GroupListWithRegEx of its series with Sample's texts before and after the number. Lines
  /// from the first that does not fit onwards are dropped. List is unchanged when Sample does
  /// not split.
  static void CompressListWithIntPatternAndHint(TStrings& List, const String& Hint,
                                                const String& Sample);
  /// Replaces every series of consecutive lines that differ only in their number by one line
  /// ("%s{%s}%s", or "%s%s%s" for a series of one, whose number loses its leading zeros);
  /// with IndexFunc, lines with a "[...]" part are grouped by IndexFunc's values ("%s[<%s>]%s",
  /// or "%s[%s]%s" for one). Other lines are copied. When nothing was compressed in a list of
  /// at least two lines and PackSame is set, the list is packed by TStringUtils::PackList.
  /// IndexFunc must give a value of 0 or more for every bracketed line; a negative one raises
  /// EListError naming the line (the walk could not advance past it).
  static void CompressListWithIntPatternSmart(TStrings& List,
                                              const TIntStringFunc& IndexFunc = nullptr,
                                              bool PackSame = false);
};

}  // namespace vex
