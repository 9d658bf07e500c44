// Runs the field walkers, splitters and bracket operations of TParseUtils on arbitrary text.
// The first four bytes choose the delimiter, the value delimiter and two positions; the rest is
// the text, decoded as UTF-8 with replacement. Nothing may crash or read outside a string, the
// pieces of every split must put the text back together, and the name/value split and join
// must be a fixed point after one round.
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "vex/companion/query_list.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"
#include "vex/text/parse_utils.h"

#include "fuzz_support.h"

namespace {

using vex_fuzz::Check;

using vex::Char;
using vex::String;
using vex::TParseUtils;


// Delimiters worth trying: the usual ones, brackets, blanks and NUL.
constexpr Char kDelims[] = {u';', u',', u'=',  u'|',  u'.', u'(', u')',  u'[',
                            u']', u' ', u'\t', u'\0', u'a', u'0', u'\'', u'\xFFFD'};

Char PickDelim(uint8_t b) { return kDelims[b % (sizeof(kDelims) / sizeof(kDelims[0]))]; }

// Mostly small positions around the text, now and then the extremes of the range.
int32_t PickPosition(uint8_t b) {
  if (b == 0x80) return INT_MIN;
  if (b == 0x7F) return INT_MAX;
  return static_cast<int8_t>(b);
}

bool IsTrimmed(const String& s) { return s.empty() || (s.front() > 32 && s.back() > 32); }

void CheckFieldWalk(const String& s, Char delim) {
  const vex::TStringDynArray tokens = TParseUtils::ExtractTokens(s, delim);
  int32_t count = 0;
  TParseUtils::ExtractParamFields(
      s,
      [&](const String& field, int32_t index) {
        Check(index == count && static_cast<size_t>(index) < tokens.size());
        Check(field == tokens[static_cast<size_t>(index)]);
        ++count;
      },
      delim);
  Check(static_cast<size_t>(count) == tokens.size());
  size_t total = 0;
  for (const String& t : tokens) {
    Check(IsTrimmed(t) && t.find(delim) == String::npos);
    total += t.size();
  }
  Check(total <= s.size());
  for (size_t i = 0; i < tokens.size() && i < 4; ++i) {
    Check(TParseUtils::ExtractParamFieldByIndex(s, static_cast<int32_t>(i), delim) == tokens[i]);
  }

  // The scan position only moves forward and stops just past the end.
  int32_t position = 1;
  while (position <= static_cast<int32_t>(s.size())) {
    const int32_t before = position;
    TParseUtils::ExtractParamField(s, position, delim);
    Check(position > before && position <= static_cast<int32_t>(s.size()) + 2);
  }

  Check(TParseUtils::ExtractIntegers(s, delim).size() == tokens.size());
  Check(TParseUtils::ExtractBytes(s, delim).size() == tokens.size());
  try {
    Check(TParseUtils::SplitIntoIntegers(s, delim).size() == tokens.size());
  } catch (const vex::EConvertError&) {
  }
  try {
    Check(TParseUtils::SplitIntoValueRecs(s, delim).size() == tokens.size());
  } catch (const vex::EConvertError&) {
  }
  Check(TParseUtils::SplitIntoNameValueArray(s, delim, true, u'=').size() == tokens.size());
}

void CheckNamesAndValues(const String& s, Char delim, Char value_delim) {
  vex::TStringDynArray names, values;
  TParseUtils::SplitIntoNamesAndValues(s, names, values, delim, value_delim);
  Check(names.size() == values.size());
  // Joining and splitting again gives the same pairs when the delimiters are not blanks.
  if (delim > 32 && value_delim > 32 && delim != value_delim) {
    const String joined = TParseUtils::JoinNamesAndValues(names, values, delim, value_delim);
    vex::TStringDynArray names2, values2;
    TParseUtils::SplitIntoNamesAndValues(joined, names2, values2, delim, value_delim);
    Check(names2 == names && values2 == values);
  }
  vex::TQueryList list;
  vex::TStringDynArray items;
  TParseUtils::ExportPropValuesFromArray(TParseUtils::ExtractTokens(s, delim), list, value_delim,
                                         u'=');
  TParseUtils::ImportPropValuesToArray(items, list, value_delim, u'=');
}

void CheckSplits(const String& s, Char delim, int32_t p, int32_t q) {
  const bool has_delim = s.find(delim) != String::npos;
  String joined = TParseUtils::JoinParts(TParseUtils::SplitStr(s, delim, false), delim);
  Check(has_delim ? joined == s : joined == s + delim);

  String head, tail;
  TParseUtils::SplitStrWithChar(s, delim, head, tail, false);
  Check(has_delim ? head + delim + tail == s : head == s && tail.empty());

  String left, right;
  const int32_t i = TParseUtils::Split(s, left, right, delim, u"");
  Check(i == (has_delim ? static_cast<int32_t>(s.find(delim)) : -1));
  Check(left == s.substr(0, i < 0 ? s.size() : static_cast<size_t>(i)));

  bool found = false;
  const String cut = TParseUtils::CutLastToken(s, delim, &found);
  Check(found == has_delim && (!found || s.compare(0, cut.size(), cut) == 0));

  String rest = s;
  TParseUtils::SplitWithLastCharEx(rest, delim, q, tail, false);
  Check(rest == s ? tail.empty() : rest + delim + tail == s);

  Check(TParseUtils::CopyToken(s, p, q).size() <= s.size());
  Check(TParseUtils::StuffToken(s, u"#", p, q).size() <= 2 * s.size() + 1);
  Check(TParseUtils::SetFirstToken(s, u"#", p).size() <= s.size() + 1);
  TParseUtils::SplitStrByPos(s, p, q, left, right);
  Check(left.size() <= s.size() && right.size() <= s.size());
  const vex::TSplitResult at = TParseUtils::SplitStr(s, p, q, true);
  Check(IsTrimmed(at.s1) && IsTrimmed(at.s2));

  int32_t position = p;
  const int32_t digit = TParseUtils::DetectIntChars(s, position);
  Check(digit == 0 ||
        (s[static_cast<size_t>(digit) - 1] >= u'0' && s[static_cast<size_t>(digit) - 1] <= u'9'));
  int32_t index = 0;
  const String delims = String(1, delim) + u"=";
  const int32_t at_min = TParseUtils::MinPosAndIndexOfChar(s, delims, p, &index);
  Check(at_min == 0 ? index == -1 : s[static_cast<size_t>(at_min) - 1] == delims[index]);
  TParseUtils::PosAndIndexOfChar(s, delims, p, &index);
  TParseUtils::GetFirstTokenEx(s, delims, p, true, &index);
  TParseUtils::GetLastToken(s, delim, u')', u"");
  TParseUtils::GetValueTokenEx(s, u"a", delim);
}

void CheckBrackets(const String& s, const String& brackets, int32_t p) {
  int32_t open = -1, close = -1;
  const String options = TParseUtils::ExtractOptionsWithBracketsEx(open, close, s, brackets, p);
  if (!options.empty()) {
    Check(open > 0 && close > open &&
          s.substr(static_cast<size_t>(open), static_cast<size_t>(close - open - 1)) == options);
  }
  String left, inner, right;
  if (TParseUtils::SplitStrWithBracketsPtr(s, brackets, &left, &inner, &right, p)) {
    const Char closing = brackets.size() > 1 ? brackets[1] : brackets[0];
    Check(left + brackets[0] + inner + closing + right == s);
  }
  String head;
  const String tail = TParseUtils::ExtractStrAndOptionsWithBrackets(head, s, brackets);
  Check(s.compare(0, head.size(), head) == 0 && tail.size() <= s.size());
}

void CheckFilters(const String& s, int32_t p) {
  TParseUtils::IndexOfFileExt(s, u"txt");
  TParseUtils::GetFileExtByIndex(s, p, true);
  TParseUtils::GetFileExtByIndex(s, p, false);
  const vex::TStringDynArray tokens = TParseUtils::ExtractTokens(s, u'|');
  const int32_t i = TParseUtils::GetExtIndexInArray(u"txt", tokens);
  Check(i == -1 || (i % 2 == 1 && static_cast<size_t>(i) < tokens.size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 4 || size > 4096) return 0;
  const Char delim = PickDelim(data[0]);
  const Char value_delim = PickDelim(data[1]);
  const int32_t p = PickPosition(data[2]);
  const int32_t q = PickPosition(data[3]);
  const String s =
      vex::FromUtf8(std::string_view(reinterpret_cast<const char*>(data) + 4, size - 4),
                    vex::TInvalidText::Replace);

  CheckFieldWalk(s, delim);
  CheckNamesAndValues(s, delim, value_delim);
  CheckSplits(s, delim, p, q);
  CheckBrackets(s, String{delim, value_delim}, p);
  CheckBrackets(s, String(1, delim), p);
  CheckFilters(s, p);
  return 0;
}
