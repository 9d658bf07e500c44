// Str2Uni writes through a fixed buffer that is appended to the result whenever it fills, and
// moves a result that outgrows its first reservation; long texts cross many of those flushes and
// must still give exactly the list form's lines, joined, and the character-by-character form.
#include <gtest/gtest.h>

#include <random>

#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
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

// The quoted code form written one character at a time: a line holds 64 characters of the text,
// except that apostrophes never end one, so a row of them can push a line past 64; a plain
// character met on such a line closes it with an empty run.
String ReferenceStr2Uni(const String& s) {
  if (s.empty()) return u"''";
  String out;
  bool open = false;  // inside a quoted run
  size_t used = 0;    // characters of s on the current line
  auto close = [&] {
    if (open) out += u'\'';
    open = false;
  };
  auto next_line = [&] {
    out += u" +";
    used = 0;
  };
  for (size_t i = 0; i < s.size(); ++i) {
    const Char c = s[i];
    const bool plain = c >= 32 && c <= 127 && c != u'\'';
    if (plain && used >= 64) {
      out += u"''";
      next_line();
    }
    if (plain) {
      if (!open) out += u'\'';
      open = true;
      out += c;
    } else {
      close();
      out += u'#' + IntToStr(static_cast<int32_t>(c));
    }
    ++used;
    if (c != u'\'' && used >= 64 && i + 1 < s.size()) {
      close();
      next_line();
    }
  }
  close();
  return out;
}

TEST(Str2UniBuffer, RandomTextsEqualTheCharacterByCharacterForm) {
  // Rows of apostrophes are frequent enough to push lines past their limit.
  const std::u16string alphabet = u"ab c''''''\t\u00e9\u0416~";
  std::mt19937 rng(5);
  for (int round = 0; round < 300; ++round) {
    String text;
    const size_t length = rng() % (round < 250 ? 300 : 20000);
    for (size_t i = 0; i < length; ++i) text += alphabet[rng() % alphabet.size()];
    ASSERT_EQ(TConvertUtils::Str2Uni(text), ReferenceStr2Uni(text)) << round;
  }
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
