// uRegExpUtils: matches, number formats and processing between matches. The rule tasks are in
// reg_exp_utils_tasks.cpp.
#include "vex/patterns/reg_exp_utils.h"

#include <algorithm>

#include "vex/platform/exceptions.h"
#include "vex/platform/sysutils.h"

namespace vex {
namespace {

// The library's fixed patterns, compiled once.
const String kNumberFormatPattern = u"\\%(\\.\\d+)?d";

const TRegEx& NumberFormatRe() {
  static const TRegEx re(kNumberFormatPattern);
  return re;
}
const TRegEx& DigitRunRe() {
  static const TRegEx re(u"\\d+");
  return re;
}
const TRegEx& TwoNumbersRe() {
  static const TRegEx re(u"\\s?\\d+\\D+\\d+");
  return re;
}
const TRegEx& FloatRe() {
  static const TRegEx re(u"[-+]?[0-9]+(\\.[0-9]+([eE][-+]?[0-9]+)?)?");
  return re;
}
const TRegEx& DigitDelimsRe() {
  static const TRegEx re(u"[\\s\\d\\\\\\,\\*\\@\\$\\%\\&\\!\\:\\#]+");
  return re;
}
const TRegEx& LatDigitDelimsRe() {
  static const TRegEx re(u"[\\s\\d\\\\\\,\\*\\@\\$\\%\\&\\!\\:\\#\\w]+");
  return re;
}

TRegExInfo InfoOf(const TRegExMatch& m) { return TRegExInfo{m.Index(), m.Length(), m.Value()}; }

void CollectPlaces(const TRegEx& re, const String& s, TRegExInfoArray& places) {
  places.clear();
  re.ForEachMatch(s, [&](const TRegExMatch& m) {
    places.push_back(InfoOf(m));
    return true;
  });
}

// s with the count units at 1-based index replaced by replacement.
String ReplaceSpan(const String& s, int32_t index, int32_t count, const String& replacement) {
  String result = s.substr(0, static_cast<size_t>(index - 1));
  result += replacement;
  result.append(s, static_cast<size_t>(index - 1 + count), String::npos);
  return result;
}

// The one digit run of s, or no match when s holds none or more than one.
TRegExMatch SingleDigitRun(const String& s) {
  TRegExMatch run = DigitRunRe().Match(s);
  if (run.Success() && DigitRunRe().NextMatch(run).Success()) return TRegExMatch();
  return run;
}

// "%.<length>d" for a run with a leading zero, "%d" otherwise.
String NumberFormatOf(const String& run) {
  if (!run.empty() && run[0] == u'0') return u"%." + IntToStr(Length(run)) + u"d";
  return u"%d";
}

void SplitWith(const TRegEx& re, const String& s, TSplitInfo& split) {
  split.Tokens.clear();
  split.Delims.clear();
  size_t cursor = 0;
  re.ForEachMatch(s, [&](const TRegExMatch& m) {
    const size_t start = static_cast<size_t>(m.Index() - 1);
    split.Tokens.push_back(s.substr(cursor, start - cursor));
    split.Delims.push_back(m.Value());
    cursor = start + static_cast<size_t>(m.Length());
    return true;
  });
  split.Tokens.push_back(s.substr(cursor));
}

String ProcessWith(const TRegEx& re, const String& s, const TRegExTokenProc& proc) {
  TSplitInfo split;
  SplitWith(re, s, split);
  if (proc) {
    for (String& token : split.Tokens) proc(&token);
  }
  return JoinTokensWithDelims(split);
}

}  // namespace

// --- Matches and splits ---------------------------------------------------------------------

bool IsNumberFormat(const String& s) { return NumberFormatRe().IsMatch(s); }

bool IsTwoNumbersFormat(const String& s, const String& delim) {
  return TRegEx(kNumberFormatPattern + delim + kNumberFormatPattern).IsMatch(s);
}

bool IsFloatNumber(const String& s) { return FloatRe().IsMatch(s); }

bool DetectPatternInfoPtr(const String& s, const String& pattern, PRegExInfo info) {
  const TRegExMatch m = TRegEx(pattern).Match(s);
  if (info != nullptr) *info = m.Success() ? InfoOf(m) : TRegExInfo();
  return m.Success();
}

bool DetectPatternInfo(const String& s, const String& pattern, TRegExInfo& info) {
  return DetectPatternInfoPtr(s, pattern, &info);
}

int32_t DetectPatternInfos(const String& s, const TStringDynArray& patterns,
                           TRegExInfoArray& infos) {
  infos.resize(patterns.size());
  int32_t found = 0;
  for (size_t i = 0; i < patterns.size(); ++i) {
    DetectPatternInfoPtr(s, patterns[i], &infos[i]);
    if (infos[i].Length > 0) ++found;
  }
  return found;
}

void DetectPatternPlaces(const String& s, const String& pattern, TRegExInfoArray& places) {
  CollectPlaces(TRegEx(pattern), s, places);
}

void ProcessPatternPlaces(const String& s, const String& pattern, const TRegExInfoProc& proc) {
  const TRegEx re(pattern);
  if (!proc) return;
  TRegExInfo record;
  re.ForEachMatch(s, [&](const TRegExMatch& m) {
    record = InfoOf(m);
    proc(&record);
    return true;
  });
}

void DetectFloatPlaces(const String& s, TRegExInfoArray& places) {
  String copy = s;
  std::replace(copy.begin(), copy.end(), u',', u'.');
  CollectPlaces(FloatRe(), copy, places);
}

// --- Number formats -------------------------------------------------------------------------

String DetectOneNumberFormat(const String& s, int32_t* value, String* format, Char ch) {
  const TRegExMatch run = SingleDigitRun(s);
  if (!run.Success()) return String();
  const String digits = run.Value();
  const int32_t number = StrToInt(digits);  // raises before any output is written
  const String number_format = NumberFormatOf(digits);
  if (format != nullptr) *format = number_format;
  if (value != nullptr) *value = number;
  return ReplaceSpan(s, run.Index(), run.Length(), ch != u'\0' ? String(1, ch) : number_format);
}

String DetectEndNumberFormat(const String& s, String* prefix, int32_t* value, bool* is_end) {
  const TRegExMatch run = SingleDigitRun(s);
  if (!run.Success() || run.Index() + run.Length() <= Length(s)) return String();
  const String digits = run.Value();
  const int32_t number = StrToInt(digits);
  const String number_format = NumberFormatOf(digits);
  // The run ends s, so a run that starts s is all of s and there is no text part; otherwise
  // the text part is what precedes the run, less its trailing whitespace.
  const bool number_follows_text = run.Index() > 1;
  String text_part;
  int32_t blank_count = 0;
  if (number_follows_text) {
    text_part = TrimRight(Copy(s, 1, run.Index() - 1));
    blank_count = run.Index() - 1 - Length(text_part);
  }
  String result = number_format;
  if (!text_part.empty()) {
    // Whatever whitespace stood there, the template gets the same number of plain blanks.
    result = u"%s" + StringOfChar(u' ', blank_count) + number_format;
  }
  if (prefix != nullptr) *prefix = text_part;
  if (value != nullptr) *value = number;
  if (is_end != nullptr) *is_end = number_follows_text;
  return result;
}

String DetectTwoNumbersFormat(const String& s, String* value, int32_t* index, Char ch) {
  if (DigitRunRe().CountMatches(s) != 2) return String();
  const TRegExMatch pair = TwoNumbersRe().Match(s);
  if (!pair.Success() || TwoNumbersRe().NextMatch(pair).Success()) return String();
  if (value != nullptr) *value = pair.Value();
  if (index != nullptr) *index = pair.Index();
  return ReplaceSpan(s, pair.Index(), pair.Length(), ch != u'\0' ? String(1, ch) : String());
}

// --- Processing between matches -------------------------------------------------------------

void SplitWithPattern(const String& s, const String& pattern, TSplitInfo& split) {
  SplitWith(TRegEx(pattern), s, split);
}

String JoinTokensWithDelims(const TSplitInfo& split) {
  const size_t tokens = split.Tokens.size();
  const size_t delims = split.Delims.size();
  if (tokens == 0 || tokens < delims) {
    throw ERangeError(u"JoinTokensWithDelims: " + IntToStr(static_cast<int32_t>(tokens)) +
                      u" tokens are too few for " + IntToStr(static_cast<int32_t>(delims)) +
                      u" delimiters");
  }
  size_t total = split.Tokens.back().size();
  for (size_t i = 0; i < delims; ++i) total += split.Tokens[i].size() + split.Delims[i].size();
  String result;
  result.reserve(total);
  for (size_t i = 0; i < delims; ++i) {
    result += split.Tokens[i];
    result += split.Delims[i];
  }
  // Deliberately the last token, not Tokens[delims]: extra tokens in the middle are dropped
  // and, with as many tokens as delimiters, the last one is written twice.
  result += split.Tokens.back();
  return result;
}

String ProcessWithPattern(const String& s, const String& pattern, const TRegExTokenProc& proc) {
  return ProcessWith(TRegEx(pattern), s, proc);
}

String ProcessWithDigitDelims(const String& s, const TRegExTokenProc& proc) {
  return ProcessWith(DigitDelimsRe(), s, proc);
}

String ProcessWithLatDigitDelims(const String& s, const TRegExTokenProc& proc) {
  return ProcessWith(LatDigitDelimsRe(), s, proc);
}

}  // namespace vex
