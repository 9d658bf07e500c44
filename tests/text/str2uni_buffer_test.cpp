// Str2Uni writes through a fixed buffer that is appended to the result whenever it fills; long
// texts cross many of those flushes and must still give exactly the list form's lines, joined.
#include <gtest/gtest.h>

#include <random>

#include "vex/platform/string_list.h"
#include "vex/text/convert_utils.h"

namespace vex {
namespace {

String JoinedLines(const String& s) {
  TStringList list;
  TConvertUtils::WriteStr2Uni(s, list);
  String joined;
  for (int32_t i = 0; i < list.Count(); ++i) joined += list[i];
  return joined;
}

TEST(Str2UniBuffer, LongTextsEqualTheJoinedLinesAndDecodeBack) {
  // Apostrophes and codes of every length, and runs cut at the line limit.
  const std::u16string alphabet = u"ab c'\t\r\n\u00e9\u0416\uffff~Z9";
  std::mt19937 rng(21);
  for (size_t length : {size_t{4000}, size_t{4097}, size_t{30000}, size_t{100000}}) {
    String text;
    for (size_t i = 0; i < length; ++i) text += alphabet[rng() % alphabet.size()];
    const String coded = TConvertUtils::Str2Uni(text);
    ASSERT_EQ(coded, JoinedLines(text)) << length;
    ASSERT_EQ(TConvertUtils::Uni2Str(coded), text) << length;
  }
  // One long run of plain characters, and one of codes only.
  for (const String& text : {String(50000, u'x'), String(50000, u'\u0416')}) {
    ASSERT_EQ(TConvertUtils::Str2Uni(text), JoinedLines(text));
  }
}

}  // namespace
}  // namespace vex
