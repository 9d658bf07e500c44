// uDetectUtils: a caption taken apart for translation and put together again. DetectNumberFormat
// takes the variable part (a number, a pair of numbers, a masked tail, a numbered-title tail)
// out of the caption, so that only the fixed words go to the dictionary; ApplyNumberFormat puts
// it back into the translated words.
//
//   TDetectLangParams lang;                 // defaults: '#' for a single number, '|' masks
//   TDetectNumParams num;
//   DetectNumberFormat(u"File_007.txt", lang, num);   // num.s == u"File_#.txt"
//   ApplyNumberFormat(u"Datei_#.txt", lang, num);     // num.s == u"Datei_007.txt"
//
// The rules are tried in order: a marker of an already formatted text, a masked tail, a
// numbered title, a number that ends the text, a single number, a pair of numbers. Numbers are
// runs of ASCII digits; one too long for a 32-bit integer raises EConvertError.
#pragma once

#include <cstdint>

#include "vex/platform/types.h"

namespace vex {

/// Per-language settings of caption detection, read only. The defaults suit captions in any
/// language with the numbered-title rule in its last-character form (LangIdx -1).
struct TDetectLangParams {
  /// Index into PreWords of the caption's language; negative means "no pre-word rule": a
  /// numbered title is then a text that ends with NumTitleMark.
  int32_t LangIdx = -1;
  /// Per language, the word that introduces the numbers of a numbered title ("Range from 0 to
  /// 10 step 2"). The defaults are Russian, Ukrainian and English.
  TStringDynArray PreWords = {u"\u043E\u0442", u"\u0432\u0456\u0434", u"from"};
  /// The closing mark of a numbered title when LangIdx is negative.
  Char NumTitleMark = u':';
  /// The placeholder put into the text in place of a single number.
  Char OneNumberChar = u'#';
  /// The delimiter between a text and its masked tail ("Pressure|P1").
  Char MaskDelim = u'|';
  /// A marker whose presence makes the text "already formatted"; empty never occurs.
  String IntFormat = u"%d";
  /// A pre-word accepted in every language besides PreWords[LangIdx]; empty for none.
  String MaskPreWord;
};

/// Which rule took a caption apart.
enum TDetectFormatType : uint8_t {
  dftNone,
  dftEndNumber,
  dftOneNumber,
  dftTwoNumbers,
  dftIntFormat,
  dftMasked
};

/// The state that travels from DetectNumberFormat to ApplyNumberFormat.
struct TDetectNumParams {
  /// The quote characters removed from the caption (empty when it was not quoted).
  String Quotes;
  /// The variable part kept aside: masked tail, number format, two-number text or
  /// numbered-title tail.
  String MskVal;
  /// The number template of dftEndNumber ("%s %d", "%.3d").
  String fmt;
  /// The text to translate (for dftOneNumber and dftTwoNumbers the text with the placeholder).
  String StrVal;
  /// The caption without its quotes.
  String dqs;
  /// After detection the text part; after application the whole caption.
  String s;
  /// The number; for dftTwoNumbers the position where the two numbers stood.
  int32_t IntVal = 0;
  /// dftEndNumber: true when the number follows a text.
  bool Inverse = false;
  /// The caption is a numbered title.
  bool UseNumTitle = false;
  TDetectFormatType FormatType = dftNone;
};

/// Takes S apart into NumParams (every field is reset first). Raises EConvertError when the
/// number it would keep does not fit a 32-bit integer.
void DetectNumberFormat(const String& S, const TDetectLangParams& LangParams,
                        TDetectNumParams& NumParams);
/// Puts the variable part that NumParams kept back into S, the new text part, and stores the
/// caption in NumParams.s, quoted again unless the quotes were apostrophes.
void ApplyNumberFormat(const String& S, const TDetectLangParams& LangParams,
                       TDetectNumParams& NumParams);
/// Recognises a numbered title. With LangIdx 0 or more: S (each literal "\n" taken as two
/// blanks) holding at least three numbers, or the markers "@min", "@max" and "@step", is cut
/// before the word that precedes the third number from the end (and before the blanks in
/// front of it when that word is the language's pre-word or MaskPreWord); *Tail gets the cut
/// part. With a negative LangIdx: S ends with NumTitleMark, which is removed. False, with S
/// untouched, otherwise.
bool IsNumTitleParams(String& S, const TDetectLangParams& LangParams, String* Tail = nullptr);
/// Treats the caption as having no variable part: FormatType := dftNone, s := dqs.
void ClearFormatType(TDetectNumParams& NumParams);

}  // namespace vex
