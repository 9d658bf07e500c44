#include <gtest/gtest.h>

#include <string>

#include "vexc/run_vexc.h"

namespace vexc_test {
namespace {

TEST(VexcQuote, QuotesEveryLineWithPrefixAndRoundTrips) {
  const std::string text = "it's\r\nTab\there\n\xD0\x9A\xD0\xB0\xD0\xBD\xD0\xB0\xD0\xBB 5\n";
  auto quoted = RunVexc("quote --prefix '  '", text);
  ASSERT_EQ(quoted.exit_code, 0);
  EXPECT_EQ(quoted.out, "  'it'#39's'\n  'Tab'#9'here'\n  #1050#1072#1085#1072#1083' 5'\n");
  auto back = RunVexc("unquote", quoted.out);
  EXPECT_EQ(back.exit_code, 0);
  EXPECT_EQ(back.out, "it's\nTab\there\n\xD0\x9A\xD0\xB0\xD0\xBD\xD0\xB0\xD0\xBB 5\n");
}

TEST(VexcQuote, LongLinesAreCutIntoJoinedPiecesThatDecodeLineByLine) {
  const std::string long_line(150, 'x');
  auto quoted = RunVexc("quote", long_line + "\n");
  ASSERT_EQ(quoted.exit_code, 0);
  EXPECT_NE(quoted.out.find(" +\n"), std::string::npos);
  auto back = RunVexc("unquote", quoted.out);
  ASSERT_EQ(back.exit_code, 0);
  std::string joined;
  for (char c : back.out) {
    if (c != '\n') joined += c;
  }
  EXPECT_EQ(joined, long_line);
}

TEST(VexcQuote, InvalidQuotedTextNamesFileAndLine) {
  auto file = WriteScratch("bad_quoted.txt", "'ok'\n'ok'#13\n'unterminated\n");
  auto r = RunVexc("unquote '" + file.string() + "'");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("bad_quoted.txt:3: ConvertAsUnicode: Invalid String"), std::string::npos)
      << r.err;
  EXPECT_EQ(r.out, "ok\nok\r\n");
}

TEST(VexcInput, MalformedUtf8IsReportedWithItsLine) {
  auto r = RunVexc("tokens", "fine\nbad \xC3\x28 byte\n");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("<stdin>:2:"), std::string::npos) << r.err;
}

TEST(VexcInput, ByteOrderMarkAndCrLfAreAccepted) {
  auto r = RunVexc("tokens --delim ,", "\xEF\xBB\xBF" "a,b\r\nc\r\n");
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_EQ(r.out, "a\nb\nc\n");
}

TEST(VexcTokens, KeepsTheEmptyFieldAfterATrailingDelimiter) {
  // The token parser trims every field; --trim trims once more.
  EXPECT_EQ(RunVexc("tokens", "a; b ;c;\n").out, "a\nb\nc\n\n");
  EXPECT_EQ(RunVexc("tokens -t --delim '|'", "x | y\n").out, "x\ny\n");
  EXPECT_EQ(RunVexc("tokens --delim ab", "x").exit_code, 2);
}

}  // namespace
}  // namespace vexc_test
