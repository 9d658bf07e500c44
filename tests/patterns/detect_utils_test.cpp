#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "vex/patterns/detect_utils.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

TDetectNumParams Detect(const String& caption, const TDetectLangParams& lang = {}) {
  TDetectNumParams num;
  DetectNumberFormat(caption, lang, num);
  return num;
}

String Apply(const String& text, TDetectNumParams num, const TDetectLangParams& lang = {}) {
  ApplyNumberFormat(text, lang, num);
  return num.s;
}

TDetectLangParams English() {
  TDetectLangParams lang;
  lang.LangIdx = 2;  // PreWords[2] == "from"
  return lang;
}

// The fields detection fills, as "type|s|MskVal|fmt|IntVal|Inverse".
std::string Fields(const TDetectNumParams& n) {
  return std::to_string(n.FormatType) + "|" + ToUtf8(n.s) + "|" + ToUtf8(n.MskVal) + "|" +
         ToUtf8(n.fmt) + "|" + std::to_string(n.IntVal) + "|" + (n.Inverse ? "inverse" : "");
}

// --- taking apart ----------------------------------------------------------------------------

TEST(DetectNumberFormat, EachShapeFillsItsFieldsAndPutsTheNumberBack) {
  struct Case {
    const char16_t* caption;
    std::string fields;
    const char16_t* str_val;  // nullptr: not pinned
    const char16_t* translated;
    const char16_t* applied;
  };
  const std::string end = std::to_string(dftEndNumber), one = std::to_string(dftOneNumber),
                    two = std::to_string(dftTwoNumbers);
  const Case cases[] = {
      {u"Item 7", end + "|Item||%s %d|7|inverse", u"Item", u"Posten", u"Posten 7"},
      {u"007", end + "|||%.3d|7|", u"", u"", u"007"},
      {u"File_007.txt", one + "|File_#.txt|%.3d||7|", u"File_#.txt", u"Datei_#.txt",
       u"Datei_007.txt"},
      // Only the first placeholder is filled.
      {u"File_007.txt", one + "|File_#.txt|%.3d||7|", u"File_#.txt", u"# and #", u"007 and #"},
      {u"Beam 3-7", two + "|Beam| 3-7||5|", nullptr, u"Strahl", u"Strahl 3-7"},
      {u"3-7 beams", two + "| beams|3-7||1|", nullptr, u" Strahlen", u"3-7 Strahlen"},
  };
  for (const Case& c : cases) {
    const TDetectNumParams num = Detect(c.caption);
    EXPECT_EQ(Fields(num), c.fields) << ToUtf8(c.caption);
    if (c.str_val != nullptr) {
      EXPECT_EQ(num.StrVal, c.str_val) << ToUtf8(c.caption);
    }
    EXPECT_EQ(Apply(c.translated, num), c.applied) << ToUtf8(c.caption);
  }
  // A pair from the middle is appended at the end.
  EXPECT_EQ(Apply(u"From items", Detect(u"From 3 to 7 items")), u"From items 3 to 7");
}

TEST(DetectNumberFormat, MaskedTailWinsOverNumbers) {
  const TDetectNumParams num = Detect(u"Pressure 3 | P12");
  EXPECT_EQ(Fields(num), std::to_string(dftMasked) + "|Pressure 3|P12||0|");
  EXPECT_EQ(Apply(u"Druck 3", num), u"Druck 3|P12");
  // Two delimiters, or an empty side, are no mask.
  EXPECT_EQ(Detect(u"a|b|c").FormatType, dftNone);
  EXPECT_EQ(Detect(u" |P12").FormatType, dftEndNumber);
}

TEST(DetectNumberFormat, FormattedTextIsLeftWhole) {
  const TDetectNumParams num = Detect(u"\u00ABItem %d of 5\u00BB");
  EXPECT_EQ(Fields(num), std::to_string(dftIntFormat) + "|Item %d of 5|||0|");
  EXPECT_EQ(num.StrVal, u"");
  EXPECT_EQ(Apply(num.s, num), u"\u00ABItem %d of 5\u00BB");
  TDetectLangParams no_marker;
  no_marker.IntFormat.clear();
  EXPECT_EQ(Detect(u"Item %d of 5", no_marker).FormatType, dftEndNumber);
}

TEST(DetectNumberFormat, TextWithoutVariablePartIsTranslatedWhole) {
  for (const String caption : {u"Settings", u"1 of 2 of 3", u"", u"3-7"}) {
    const TDetectNumParams num = Detect(caption);
    EXPECT_EQ(num.FormatType, dftNone) << ToUtf8(caption);
    EXPECT_EQ(num.StrVal, caption);
    EXPECT_EQ(Apply(caption, num), caption);
  }
}

TEST(DetectNumberFormat, ClearsEveryFieldFirst) {
  TDetectNumParams num;
  DetectNumberFormat(u"\"Item 7:\"", {}, num);
  EXPECT_TRUE(num.UseNumTitle);
  DetectNumberFormat(u"Gate", {}, num);
  EXPECT_FALSE(num.UseNumTitle);
  EXPECT_TRUE(num.Quotes.empty());
  EXPECT_EQ(Fields(num), std::to_string(dftNone) + "|Gate|||0|");
}

TEST(DetectNumberFormat, RaisesForANumberBeyond32Bits) {
  EXPECT_THROW(Detect(u"Item 99999999999"), EConvertError);
  EXPECT_THROW(Detect(u"Item 99999999999 x"), EConvertError);
  EXPECT_EQ(Detect(u"Item 99999999999-1").FormatType,
            dftTwoNumbers);  // a pair is not read
}

// --- quotes ----------------------------------------------------------------------------------

TEST(ApplyNumberFormat, PutsQuotesBackExceptApostrophes) {
  const TDetectNumParams quoted = Detect(u"\"Pump 3\"");
  EXPECT_EQ(quoted.Quotes, u"\"\"");
  EXPECT_EQ(quoted.dqs, u"Pump 3");
  EXPECT_EQ(Apply(u"Pumpe", quoted), u"\"Pumpe 3\"");
  EXPECT_EQ(Apply(u"Pumpe", Detect(u"\u00ABPump 3\u00BB")), u"\u00ABPumpe 3\u00BB");
  const TDetectNumParams apostrophes = Detect(u"'Pump 3'");
  EXPECT_EQ(apostrophes.Quotes, u"''");
  EXPECT_EQ(Apply(u"Pumpe", apostrophes), u"Pumpe 3");
}

// --- numbered titles -------------------------------------------------------------------------

TEST(IsNumTitleParams, WithoutLanguageTheClosingMarkMakesATitle) {
  String s = u"Step 3:";
  EXPECT_TRUE(IsNumTitleParams(s, {}));
  EXPECT_EQ(s, u"Step 3");
  s = u"Step: 3";
  EXPECT_FALSE(IsNumTitleParams(s, {}));
  EXPECT_EQ(s, u"Step: 3");
  const TDetectNumParams num = Detect(u"Step 3:");
  EXPECT_TRUE(num.UseNumTitle);
  EXPECT_EQ(num.FormatType, dftNone);
  EXPECT_EQ(Apply(u"Schritt 3", num), u"Schritt 3:");
}

TEST(IsNumTitleParams, CutsBeforeThePreWordOfTheThirdNumberFromTheEnd) {
  String s = u"Range from 0 to 100 step 5";
  String tail;
  EXPECT_TRUE(IsNumTitleParams(s, English(), &tail));
  EXPECT_EQ(s, u"Range");
  EXPECT_EQ(tail, u" from 0 to 100 step 5");
  // Any other word before the numbers is cut off without the blanks before it.
  s = u"Range  over 1,5 2 3";
  EXPECT_TRUE(IsNumTitleParams(s, English(), &tail));
  EXPECT_EQ(s, u"Range  ");
  EXPECT_EQ(tail, u"over 1,5 2 3");
  // Only the last three numbers count.
  s = u"Zone 4 from 1 to 9 step 2";
  EXPECT_TRUE(IsNumTitleParams(s, English(), &tail));
  EXPECT_EQ(s, u"Zone 4");
}

TEST(IsNumTitleParams, UsesTheRangeMarkersAndTheCommonPreWord) {
  TDetectLangParams lang = English();
  lang.LangIdx = 0;  // Russian pre-word; "from" only as the common one
  String s = u"Scale from @min to @max step @step 1 2 3";
  String tail;
  EXPECT_TRUE(IsNumTitleParams(s, lang, &tail));
  EXPECT_EQ(s, u"Scale ");  // "from" is not the Russian pre-word
  lang.MaskPreWord = u"from";
  s = u"Scale from @min to @max step @step 1 2 3";
  EXPECT_TRUE(IsNumTitleParams(s, lang, &tail));
  EXPECT_EQ(s, u"Scale");
  EXPECT_EQ(tail, u" from @min to @max step @step 1 2 3");
  s = u"\u0428\u043A\u0430\u043B\u0430 \u043E\u0442 1 \u0434\u043E 5 "
      u"\u0448\u0430\u0433 1";
  EXPECT_TRUE(IsNumTitleParams(s, lang, &tail));
  EXPECT_EQ(s, u"\u0428\u043A\u0430\u043B\u0430");
}

TEST(IsNumTitleParams, ReadsLiteralLineBreaksAsTwoBlanks) {
  String s = u"Range\\nfrom 1 to 2 step 3";
  String tail;
  EXPECT_TRUE(IsNumTitleParams(s, English(), &tail));
  EXPECT_EQ(s, u"Range");
  EXPECT_EQ(tail, u"  from 1 to 2 step 3");
}

TEST(IsNumTitleParams, NeedsThreeNumbersAndTextBeforeThem) {
  String s = u"Range from 1 to 2";
  EXPECT_FALSE(IsNumTitleParams(s, English()));
  s = u"from 1 to 2 step 3";
  EXPECT_FALSE(IsNumTitleParams(s, English()));
  s = u"1 2 3";
  EXPECT_FALSE(IsNumTitleParams(s, English()));
  EXPECT_EQ(s, u"1 2 3");
  s = u"Range from 1 to 2 step 3";
  TDetectLangParams unknown_language = English();
  unknown_language.LangIdx = 7;  // no pre-word: the word "from" is cut off alone
  EXPECT_TRUE(IsNumTitleParams(s, unknown_language));
  EXPECT_EQ(s, u"Range ");
}

TEST(DetectNumberFormat, TitleWithLanguageKeepsItsTailAside) {
  const TDetectNumParams num = Detect(u"Range from 0 to 100 step 5", English());
  EXPECT_TRUE(num.UseNumTitle);
  EXPECT_EQ(num.s, u"Range");
  EXPECT_EQ(num.MskVal, u" from 0 to 100 step 5");
  // Putting together adds the mark; the tail is the caller's to put back.
  EXPECT_EQ(Apply(u"Bereich", num, English()), u"Bereich:");
}

TEST(ClearFormatType, FallsBackToTheUnquotedText) {
  TDetectNumParams num = Detect(u"\"Item 7\"");
  ClearFormatType(num);
  EXPECT_EQ(num.FormatType, dftNone);
  EXPECT_EQ(num.s, u"Item 7");
  EXPECT_EQ(Apply(u"Posten 7", num), u"\"Posten 7\"");
}

// --- round trip over a corpus ----------------------------------------------------------------
//
// Putting the untouched text part back gives the caption again, except for the shapes below, where
// the rules deliberately lose or move something.

struct Shape {
  const char* name;
  bool (*applies)(const TDetectNumParams& num, const TDetectLangParams& lang);
};

bool IsBlankRun(const String& s) { return s.find_first_not_of(u' ') == String::npos; }

const Shape kLossyShapes[] = {
    {"end number after whitespace other than blanks, or after whitespace alone",
     [](const TDetectNumParams& num, const TDetectLangParams&) {
       if (num.FormatType != dftEndNumber) return false;
       const size_t digits = num.dqs.size() - num.dqs.find_last_not_of(u"0123456789") - 1;
       const String gap =
           num.dqs.substr(num.StrVal.size(), num.dqs.size() - num.StrVal.size() - digits);
       return !IsBlankRun(gap) || (num.StrVal.empty() && !gap.empty());
     }},
    {"blanks around the mask delimiter are dropped",
     [](const TDetectNumParams& num, const TDetectLangParams& lang) {
       return num.FormatType == dftMasked && num.dqs != num.s + lang.MaskDelim + num.MskVal;
     }},
    {"a pair of numbers inside the text moves to its end",
     [](const TDetectNumParams& num, const TDetectLangParams&) {
       return num.FormatType == dftTwoNumbers && num.IntVal > 1 &&
              num.IntVal + Length(num.MskVal) - 1 != Length(num.dqs);
     }},
    {"the placeholder character already occurs in the caption",
     [](const TDetectNumParams& num, const TDetectLangParams& lang) {
       return num.FormatType == dftOneNumber && num.dqs.find(lang.OneNumberChar) != String::npos;
     }},
    {"apostrophe quotes are not put back",
     [](const TDetectNumParams& num, const TDetectLangParams&) {
       return !num.Quotes.empty() && num.Quotes[0] == u'\'';
     }},
    {"a numbered title with a pre-word rule keeps its tail for the caller",
     [](const TDetectNumParams& num, const TDetectLangParams& lang) {
       return num.UseNumTitle && lang.LangIdx >= 0;
     }},
};

std::vector<String> ReadCaptions() {
  std::ifstream file(std::string(VEX_TEST_DATA_DIR) + "/detect/captions.txt", std::ios::binary);
  std::vector<String> captions;
  std::string line;
  while (std::getline(file, line)) {
    if (!line.empty()) captions.push_back(FromUtf8(line));
  }
  return captions;
}

TEST(DetectRoundTrip, CaptionsComeBackExceptForTheListedShapes) {
  const std::vector<String> captions = ReadCaptions();
  ASSERT_GE(captions.size(), 200u);
  std::map<std::string, int> losses;
  int same = 0;
  int total = 0;
  for (const TDetectLangParams& lang : {TDetectLangParams{}, English()}) {
    for (const String& caption : captions) {
      ++total;
      TDetectNumParams num;
      ASSERT_NO_THROW(DetectNumberFormat(caption, lang, num)) << ToUtf8(caption);
      const TDetectNumParams detected = num;
      ApplyNumberFormat(num.s, lang, num);
      if (num.s == caption) {
        ++same;
        continue;
      }
      bool explained = false;
      for (const Shape& shape : kLossyShapes) {
        if (shape.applies(detected, lang)) {
          ++losses[shape.name];
          explained = true;
        }
      }
      EXPECT_TRUE(explained) << "\"" << ToUtf8(caption) << "\" came back as \"" << ToUtf8(num.s)
                             << "\" (LangIdx " << lang.LangIdx << ")";
    }
  }
  // Every listed shape really occurs in the corpus, and it stays the exception.
  for (const Shape& shape : kLossyShapes) EXPECT_GT(losses[shape.name], 0) << shape.name;
  EXPECT_GE(same * 10, total * 8) << same << " of " << total;
}

}  // namespace
}  // namespace vex
