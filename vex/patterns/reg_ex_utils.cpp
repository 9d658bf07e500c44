// TRegExUtils: common prefixes, number columns, name patterns and the grouping of numbered
// series in string lists.
#include "vex/patterns/reg_ex_utils.h"

#include <algorithm>

#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/text/integer_utils.h"
#include "vex/text/parse_utils.h"
#include "vex/text/string_utils.h"

namespace vex {

namespace {

const String kBrackets = u"[]";

bool IsDigit(Char c) { return c >= u'0' && c <= u'9'; }

// The pieces of one line of a series: the text before its value, the value's text and the text
// after it.
struct ItemParts {
  String left;
  String value;
  String right;
};

bool SplitBracketed(const String& item, ItemParts& parts) {
  return TParseUtils::SplitStrWithBracketsPtr(item, kBrackets, &parts.left, &parts.value,
                                              &parts.right);
}

bool SplitPlain(const String& item, const TRegEx& regex, ItemParts& parts) {
  return TRegExUtils::SplitStrIntoParts(item, String(), regex, parts.value, parts.right,
                                        parts.left);
}

// The test of a series member in plain mode: SplitStrIntoParts must split item into exactly
// prefix, a match and suffix. Decided on the match's place, without copying the pieces.
bool IsPlainMember(const String& item, const TRegEx& regex, const String& prefix,
                   const String& suffix, String& number) {
  if (prefix.empty() || !item.starts_with(prefix)) return false;
  const TRegExMatch match = regex.Match(item);
  if (!match.Success() || match.Index() != Length(prefix) + 1) return false;
  const auto after = static_cast<size_t>(match.Index() - 1 + match.Length());
  if (item.compare(after, String::npos, suffix) != 0) return false;
  number = match.Value();
  return true;
}

// Replaces the lines of list by those of lines, as one change.
void ReplaceLines(TStrings& list, const TStrings& lines) {
  TStringsUpdate update(list);
  list.Clear();
  list.AddStrings(lines);
}

}  // namespace

TRegEx TRegExUtils::NumberPattern() { return TRegEx(u"\\d+", {roNotEmpty}); }

bool TRegExUtils::IsCommonPart(const TStrings& List, int32_t N) {
  if (List.Count() < 2) return false;
  const String& first = List[0];
  if (Length(first) < N) return false;
  const String head = Copy(first, 1, N);
  for (int32_t i = 1; i < List.Count(); ++i) {
    if (!List[i].starts_with(head)) return false;
  }
  return true;
}

int32_t TRegExUtils::MostCommonCharCount(const TStrings& List, int32_t MinCount) {
  return TStringUtils::CommonCharCount(List, MinCount, 255);
}

String TRegExUtils::DetectIntegerRegion(const TStrings& List, int32_t Start, int32_t Count,
                                        int32_t CharPos) {
  TIntegerDynArray values;
  if (CharPos < 1) return String();
  // The digits that stand at CharPos: a run that starts exactly there.
  const TRegEx run_at(u"\\d+", {roAnchored, roNotEmpty});
  const int32_t first = std::max(Start, 0);
  const auto last = static_cast<int32_t>(std::min(int64_t{Start} + Count, int64_t{List.Count()}));
  for (int32_t i = first; i < last; ++i) {
    const TRegExMatch digits = run_at.Match(List[i], CharPos);
    const int32_t value = digits.Success() ? StrToIntDef(digits.Value(), -1) : -1;
    if (value >= 0) values.push_back(value);
  }
  // Each value goes in front of those before it: the reversed order is intended.
  std::reverse(values.begin(), values.end());
  return TIntegerUtils::GroupIntegers(values, 0);
}

int32_t TRegExUtils::GetMatchingCount(const TStrings& List, int32_t Start, const String& Pattern) {
  const TRegEx regex(Pattern);
  int32_t count = 0;
  for (int32_t i = std::max(Start, 0); i < List.Count(); ++i) {
    if (regex.IsMatch(List[i])) ++count;
  }
  return count;
}

String TRegExUtils::DetectIntPatternByStr(const String& S) {
  const TStringDynArray parts = NumberPattern().Split(S);
  if (parts.size() > 2) return String();
  String result = parts[0] + u"\\d+";
  if (parts.size() == 2) result += parts[1];
  return result;
}

String TRegExUtils::ReplaceIntPatternByStr(const String& S, const String& Prefix,
                                           const String& NewText, const String& Chars,
                                           int32_t* Value) {
  if (Value) *Value = -1;
  if (S.empty() || !S.starts_with(Prefix)) return S;
  const TRegEx regex(u"\\d+", {roNotEmpty});
  const int32_t after_prefix = Length(Prefix) + 1;
  const TRegExMatch match = regex.Match(S, after_prefix);
  if (!match.Success()) return S;
  if (!Prefix.empty() && match.Index() != after_prefix) return S;
  const int32_t number = StrToIntDef(match.Value(), -1);
  if (number < 0) {
    throw Exception(u"Error in TRegExUtils.ReplaceIntPatternByStr: Failed to convert int part");
  }
  if (Value) *Value = number;
  // With a prefix the prefix goes too; without one only the number is replaced.
  const int32_t span_start = Prefix.empty() ? match.Index() : 1;
  const int32_t span_end = match.Index() + match.Length() - 1;
  String replacement = NewText;
  if (number > 0 && number <= Length(Chars)) replacement += Chars[number - 1];
  return Copy(S, 1, span_start - 1) + replacement + Copy(S, span_end + 1);
}

bool TRegExUtils::SplitStrIntoParts(const String& S, const String& Hint, const TRegEx& RegEx,
                                    String& IntPart, String& RightPart, String& LeftPart) {
  const TRegExMatch match = RegEx.Match(S);
  if (!match.Success()) return false;
  LeftPart = Copy(S, 1, match.Index() - 1);
  RightPart = Copy(S, match.Index() + match.Length());
  IntPart = match.Value();
  if (LeftPart.empty()) return false;
  if (Hint.empty()) return true;
  const TRegExMatch hint_match = RegEx.Match(Hint);
  const String hint_left = hint_match.Success() ? Copy(Hint, 1, hint_match.Index() - 1) : Hint;
  return hint_left == LeftPart;
}

bool TRegExUtils::DetectIntPatternParts(const String& S, const String& S2, String& LeftPart,
                                        String& RightPart, std::optional<TRegEx>& RegEx) {
  RegEx.emplace(u"\\d+", TRegExOptions{roNotEmpty});
  const TStringDynArray parts = RegEx->Split(S);
  if (parts.size() != 2) return false;
  LeftPart = parts[0];
  RightPart = parts[1];
  return RegEx->Split(S2)[0] == LeftPart;
}

String TRegExUtils::DetectRegExPattern(const TStrings& List, int32_t Start, int32_t& CharPos,
                                       int32_t& IntLen, int32_t& MatchCount, bool DoCount) {
  MatchCount = 0;
  IntLen = 0;
  if (List.Count() < 2 || Start < 0 || Start >= List.Count()) return String();
  const int32_t common = MostCommonCharCount(List, 1);
  if (common == 0) return String();
  const String& item = List[Start];
  CharPos = common + 1;
  TParseUtils::DetectIntChars(item, CharPos);
  // Without a digit the tail is taken from the last common character on, as intended.
  if (CharPos == 0) return Copy(item, common);
  // The digit count is read from line 0 whatever Start is.
  const String& first = List[0];
  int32_t j = CharPos;
  while (j <= Length(first) && IsDigit(first[j - 1])) ++j;
  // Deliberate positions: the first digit stays before "\d+", one character after the digits
  // is skipped, and IntLen is one more than the digit count.
  IntLen = j - CharPos + 1;
  String result = Copy(item, 1, CharPos) + u"\\d+" + Copy(item, j + 1);
  if (DoCount) MatchCount = GetMatchingCount(List, Start, result);
  return result;
}

String TRegExUtils::DetectIntegerPattern(const TStrings& List, int32_t Start, int32_t& Count) {
  int32_t char_pos = 0;
  int32_t int_len = 0;
  int32_t match_count = 0;
  DetectRegExPattern(List, Start, char_pos, int_len, match_count, false);
  if (int_len <= 0) return String();
  if (Count == 0) Count = List.Count() - Start;
  String head;
  String rest;
  // Cut at IntLen (the digit count plus one) counted from the line's start, as intended.
  TParseUtils::SplitStrByPos(List[Start], int_len, int_len, head, rest);
  return head + u"{" + DetectIntegerRegion(List, Start, Count, char_pos) + u"}" + rest;
}

String TRegExUtils::GroupItemsWithRegEx(const TStrings& List, const TRegEx& RegEx,
                                        const String& Prefix, const String& Suffix, int32_t Start,
                                        int32_t& Count, const TIntStringFunc& IndexFunc) {
  Count = 0;
  const bool bracketed = static_cast<bool>(IndexFunc);
  TIntegerDynArray values;
  ItemParts parts;
  for (int32_t i = std::max(Start, 0); i < List.Count(); ++i) {
    const String& item = List[i];
    int32_t value;
    if (bracketed) {
      if (!item.starts_with(Prefix) || !SplitBracketed(item, parts)) break;
      if (parts.left != Prefix || parts.right != Suffix) break;
      value = IndexFunc(item);
      if (value < 0) break;
    } else {
      if (!IsPlainMember(item, RegEx, Prefix, Suffix, parts.value)) break;
      value = StrToInt(parts.value);
    }
    values.push_back(value);
    ++Count;
  }
  if (Count == 0) return String();
  std::sort(values.begin(), values.end());
  return TIntegerUtils::GroupIntegers(values, bracketed ? 0 : 1);
}

void TRegExUtils::GroupListWithRegEx(const TStrings& Source, TStrings& Dest, const TRegEx& RegEx,
                                     const String& Prefix, const String& Suffix) {
  int32_t i = 0;
  while (i < Source.Count()) {
    int32_t count = 0;
    const String group = GroupItemsWithRegEx(Source, RegEx, Prefix, Suffix, i, count);
    if (group.empty()) break;
    Dest.Add(Prefix + u"{" + group + u"}");
    i += count;
  }
}

void TRegExUtils::CompressListWithIntPattern(TStrings& List, const String& Hint,
                                             const String& Sample) {
  if (!Hint.empty() && Sample.starts_with(Hint)) {
    CompressListWithIntPatternAndHint(List, Hint, Sample);
  } else {
    CompressListWithIntPatternSmart(List, nullptr, false);
  }
}

void TRegExUtils::CompressListWithIntPatternAndHint(TStrings& List, const String& Hint,
                                                    const String& Sample) {
  const TRegEx regex = NumberPattern();
  ItemParts sample;
  if (!SplitStrIntoParts(Sample, Hint, regex, sample.value, sample.right, sample.left)) return;
  TStringList grouped;
  GroupListWithRegEx(List, grouped, regex, sample.left, sample.right);
  ReplaceLines(List, grouped);
}

void TRegExUtils::CompressListWithIntPatternSmart(TStrings& List, const TIntStringFunc& IndexFunc,
                                                  bool PackSame) {
  const int32_t count = List.Count();
  if (count == 0) return;
  const TRegEx regex = NumberPattern();
  TStringList lines;
  ItemParts parts;
  int32_t i = 0;
  while (i < count) {
    const String& item = List[i];
    const bool bracketed = IndexFunc && SplitBracketed(item, parts);
    if (!bracketed && !SplitPlain(item, regex, parts)) {
      lines.Add(item);
      ++i;
      continue;
    }
    int32_t members = 0;
    const String group = GroupItemsWithRegEx(List, regex, parts.left, parts.right, i, members,
                                             bracketed ? IndexFunc : TIntStringFunc());
    if (members == 0) {
      // Only a negative index for a bracketed line gets here; retrying it would never end.
      throw EListError(
          u"Error in TRegExUtils.CompressListWithIntPatternSmart: no index for "
          u"bracketed item \"" +
          item + u"\"");
    }
    if (members == 1) {
      lines.Add(bracketed ? parts.left + u"[" + group + u"]" + parts.right
                          : parts.left + group + parts.right);
    } else {
      lines.Add(bracketed ? parts.left + u"[<" + group + u">]" + parts.right
                          : parts.left + u"{" + group + u"}" + parts.right);
    }
    i += members;
  }
  if (PackSame && count >= 2 && lines.Count() == count) {
    TStringUtils::PackList(lines, List);
  } else {
    ReplaceLines(List, lines);
  }
}

}  // namespace vex
