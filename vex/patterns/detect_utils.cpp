// uDetectUtils: captions taken apart around their variable part and put together again.
#include "vex/patterns/detect_utils.h"

#include "vex/patterns/reg_exp_utils.h"
#include "vex/platform/format.h"
#include "vex/platform/sysutils.h"
#include "vex/text/parse_utils.h"
#include "vex/text/string_utils.h"

namespace vex {

namespace {

constexpr Char kBlank = u' ';

// The places of the three numbers of a title: the range markers when all three occur,
// otherwise every decimal number of the text.
TRegExInfoArray TitleNumberPlaces(const String& text) {
  static const TStringDynArray kMarkers = {u"\\@min", u"\\@max", u"\\@step"};
  TRegExInfoArray places;
  if (DetectPatternInfos(text, kMarkers, places) == 3) return places;
  DetectFloatPlaces(text, places);
  return places;
}

bool IsPreWord(const String& word, const TDetectLangParams& lang) {
  if (word == lang.MaskPreWord) return true;
  const auto index = static_cast<size_t>(lang.LangIdx);
  return index < lang.PreWords.size() && word == lang.PreWords[index];
}

// The 1-based position where a title is cut: before the word in front of the number at
// number_pos, and before the blanks in front of that word when it is a pre-word.
int32_t TitleCutPosition(const String& text, int32_t number_pos, const TDetectLangParams& lang) {
  int32_t p = number_pos - 1;  // 1-based; 0 means "before the text"
  while (p >= 1 && text[p - 1] == kBlank) --p;
  const int32_t word_end = p;
  while (p >= 1 && text[p - 1] != kBlank) --p;
  if (IsPreWord(Copy(text, p + 1, word_end - p), lang)) {
    while (p >= 1 && text[p - 1] == kBlank) --p;
  }
  return p + 1;
}

bool DetectMaskedTail(TDetectNumParams& num, Char mask_delim) {
  const TSplitResult parts = TParseUtils::SplitStr(num.s, mask_delim, true);
  const bool both = parts.flag == 3;
  if (!both || parts.s2.find(mask_delim) != String::npos) return false;
  num.s = parts.s1;
  num.MskVal = parts.s2;
  num.FormatType = dftMasked;
  return true;
}

bool DetectEndNumber(TDetectNumParams& num) {
  num.fmt = DetectEndNumberFormat(num.s, &num.StrVal, &num.IntVal, &num.Inverse);
  if (num.fmt.empty()) return false;
  num.s = num.StrVal;
  num.FormatType = dftEndNumber;
  return true;
}

// The detector handed back the removed part through StrVal: it moves to MskVal, and the text
// with its placeholder becomes both the text part and StrVal.
void KeepPlaceholderText(TDetectNumParams& num, const String& text, TDetectFormatType type) {
  num.s = text;
  num.MskVal = num.StrVal;
  num.StrVal = text;
  num.fmt.clear();
  num.FormatType = type;
}

bool DetectOneNumber(TDetectNumParams& num, Char placeholder) {
  num.StrVal.clear();
  // The number format comes back through StrVal and moves to MskVal.
  const String text = DetectOneNumberFormat(num.s, &num.IntVal, &num.StrVal, placeholder);
  if (text.empty()) return false;
  KeepPlaceholderText(num, text, dftOneNumber);
  return true;
}

bool DetectTwoNumbers(TDetectNumParams& num) {
  // The removed pair comes back through StrVal and moves to MskVal.
  const String text = DetectTwoNumbersFormat(num.s, &num.StrVal, &num.IntVal);
  if (text.empty()) return false;
  KeepPlaceholderText(num, text, dftTwoNumbers);
  return true;
}

String ReplaceFirstChar(const String& s, Char c, const String& replacement) {
  const size_t at = s.find(c);
  if (at == String::npos) return s;
  return s.substr(0, at) + replacement + s.substr(at + 1);
}

}  // namespace

void DetectNumberFormat(const String& S, const TDetectLangParams& LangParams,
                        TDetectNumParams& NumParams) {
  TDetectNumParams& num = NumParams;
  num = TDetectNumParams{};
  num.dqs = TStringUtils::RemoveQuotes(S, &num.Quotes);
  num.s = num.dqs;
  if (!LangParams.IntFormat.empty() && Pos(LangParams.IntFormat, num.dqs) > 0) {
    num.FormatType = dftIntFormat;
    return;
  }
  if (DetectMaskedTail(num, LangParams.MaskDelim)) return;
  num.UseNumTitle = IsNumTitleParams(num.s, LangParams, &num.MskVal);
  if (num.UseNumTitle) return;
  if (DetectEndNumber(num) || DetectOneNumber(num, LangParams.OneNumberChar) ||
      DetectTwoNumbers(num)) {
    return;
  }
  num.StrVal = num.s;
}

bool IsNumTitleParams(String& S, const TDetectLangParams& LangParams, String* Tail) {
  if (LangParams.LangIdx < 0) {
    return TStringUtils::CheckForLastChar(S, LangParams.NumTitleMark, true) > 0;
  }
  // Two blanks for each literal "\n" keep every position where it was.
  const String text = StringReplace(S, u"\\n", u"  ", {rfReplaceAll});
  const TRegExInfoArray places = TitleNumberPlaces(text);
  if (places.size() < 3) return false;
  const int32_t cut = TitleCutPosition(text, places[places.size() - 3].Index, LangParams);
  if (cut <= 1) return false;
  S = Copy(text, 1, cut - 1);
  if (Tail) *Tail = Copy(text, cut);
  return true;
}

void ApplyNumberFormat(const String& S, const TDetectLangParams& LangParams,
                       TDetectNumParams& NumParams) {
  TDetectNumParams& num = NumParams;
  num.s = S;
  if (num.UseNumTitle) num.s += LangParams.NumTitleMark;
  switch (num.FormatType) {
    case dftEndNumber:
      num.s = TStringUtils::ApplyFormat(num.fmt, num.s, num.IntVal, num.Inverse);
      break;
    case dftOneNumber:
      num.s = ReplaceFirstChar(num.s, LangParams.OneNumberChar, Format(num.MskVal, {num.IntVal}));
      break;
    case dftTwoNumbers:
      // A pair that stood at the start goes before the text, any other after it.
      num.s = num.IntVal <= 1 ? num.MskVal + num.s : num.s + num.MskVal;
      break;
    case dftMasked:
      num.s += LangParams.MaskDelim;
      num.s += num.MskVal;
      break;
    case dftIntFormat:
    case dftNone:
      break;
  }
  // Apostrophe quotes are deliberately not put back.
  if (!num.Quotes.empty() && num.Quotes[0] != u'\'') {
    num.s = TStringUtils::QuotedStr(num.s, num.Quotes);
  }
}

void ClearFormatType(TDetectNumParams& NumParams) {
  NumParams.FormatType = dftNone;
  NumParams.s = NumParams.dqs;
}

}  // namespace vex
