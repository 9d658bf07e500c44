// vexc commands that read text: quoting, tokens, checksums, patterns and rules.
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
  auto r = RunVexc("tokens --delim ,",
                   "\xEF\xBB\xBF"
                   "a,b\r\nc\r\n");
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_EQ(r.out, "a\nb\nc\n");
}

TEST(VexcTokens, KeepsTheEmptyFieldAfterATrailingDelimiter) {
  // The token parser trims every field; --trim trims once more.
  EXPECT_EQ(RunVexc("tokens", "a; b ;c;\n").out, "a\nb\nc\n\n");
  EXPECT_EQ(RunVexc("tokens -t --delim '|'", "x | y\n").out, "x\ny\n");
  EXPECT_EQ(RunVexc("tokens --delim ab", "x").exit_code, 2);
}

// The CRC-16 check value of standard input is in its help example.
TEST(VexcChecksum, PrintsTheCheckValueAndStreamsAcrossBlockBoundaries) {
  EXPECT_EQ(RunVexc("crc32", "123456789").out, "CBF43926  -\n");
  // Larger than one read block, so the running registers are continued between blocks.
  std::string data(3 * (1 << 20) + 17, '\0');
  for (size_t i = 0; i < data.size(); ++i) data[i] = static_cast<char>(i * 131 + (i >> 9));
  auto file = WriteScratch("big.bin", data);
  auto piped = RunVexc("crc16", data);
  auto named = RunVexc("crc16 '" + file.string() + "'");
  ASSERT_EQ(named.exit_code, 0);
  EXPECT_EQ(named.out.substr(0, 4), piped.out.substr(0, 4));
  auto r32 = RunVexc("crc32 '" + file.string() + "'");
  EXPECT_EQ(r32.out, RunVexc("crc32", data).out.substr(0, 8) + "  " + file.string() + "\n");
}

TEST(VexcChecksum, CheckModeReportsMismatchWithExitOne) {
  auto a = WriteScratch("a.txt", "123456789");
  auto b = WriteScratch("b.txt", "12345678");
  auto sums =
      WriteScratch("sums.txt", "CBF43926  " + a.string() + "\r\ncbf43926  " + b.string() + "\n");
  auto r = RunVexc("crc32 --check '" + sums.string() + "'");
  EXPECT_EQ(r.exit_code, 1);
  EXPECT_EQ(r.out, a.string() + ": OK\n" + b.string() + ": FAILED\n");
  EXPECT_NE(r.err.find("1 checksum did not match"), std::string::npos);
}

TEST(VexcChecksum, UnreadableFilesAndMalformedCheckLines) {
  auto gone = WriteScratch("gone_sums.txt", "4B37  /nonexistent/x\n");
  auto r = RunVexc("crc16 -c '" + gone.string() + "'");
  EXPECT_EQ(r.exit_code, 1);
  EXPECT_EQ(r.out, "/nonexistent/x: FAILED open or read\n");
  auto ok = WriteScratch("nine.txt", "123456789");
  auto sums = WriteScratch("bad_sums.txt", "4B37  " + ok.string() + "\nnot a checksum line\n");
  r = RunVexc("crc16 -c '" + sums.string() + "'");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("bad_sums.txt:2:"), std::string::npos) << r.err;
  r = RunVexc("crc32 /nonexistent/file");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("/nonexistent/file: cannot open file"), std::string::npos);
}

// The identifiers' form is checked by the help example.
TEST(VexcLinkId, PrintsDistinctIdentifiers) {
  auto r = RunVexc("linkid -n 2");
  ASSERT_EQ(r.out.size(), 2u * 9u);
  EXPECT_NE(r.out.substr(0, 9), r.out.substr(9, 9));
  EXPECT_EQ(RunVexc("linkid -n 0").exit_code, 2);
}

TEST(VexcUsage, UnknownCommandAndVersion) {
  EXPECT_EQ(RunVexc("no-such-command").exit_code, 2);
  EXPECT_EQ(RunVexc("").exit_code, 2);
  auto v = RunVexc("--version");
  EXPECT_EQ(v.exit_code, 0);
  EXPECT_EQ(v.out.rfind("vexc ", 0), 0u);
}

TEST(VexcDetect, DetectThenApplyGivesTheCaptionsBack) {
  auto detected = RunVexc("detect '" + Examples() + "/captions.txt'");
  ASSERT_EQ(detected.exit_code, 0) << detected.err;
  auto applied = RunVexc("apply", detected.out);
  ASSERT_EQ(applied.exit_code, 0) << applied.err;
  EXPECT_EQ(applied.out, ReadFile(Examples() + "/captions.txt"));
}

TEST(VexcDetect, TranslatedWordsTakeTheNumberBack) {
  auto detected = RunVexc("detect", "File_007.txt\n\"Channel 12\"\n");
  ASSERT_EQ(detected.exit_code, 0);
  EXPECT_EQ(detected.out.substr(0, detected.out.find('\t', 11)), "one-number\tFile_#.txt");
  std::string edited = detected.out;
  edited.replace(edited.find("File_"), 5, "Datei_");
  edited.replace(edited.find("\tChannel\t"), 9, "\tKanal\t");
  auto applied = RunVexc("apply", edited);
  EXPECT_EQ(applied.out, "Datei_007.txt\n\"Kanal 12\"\n");
}

TEST(VexcDetect, TabsAndBackslashesInCaptionsSurviveTheColumns) {
  auto detected = RunVexc("detect", "a\\b\tc 5\n");
  ASSERT_EQ(detected.exit_code, 0);
  EXPECT_EQ(RunVexc("apply", detected.out).out, "a\\b\tc 5\n");
}

TEST(VexcDetect, OversizedNumberAndBrokenApplyInputAreBadInput) {
  auto big = RunVexc("detect", "ok 1\nItem 99999999999\n");
  EXPECT_EQ(big.exit_code, 2);
  EXPECT_NE(big.err.find("<stdin>:2:"), std::string::npos) << big.err;
  auto broken = RunVexc("apply", "one-number\tonly three\tcolumns\n");
  EXPECT_EQ(broken.exit_code, 2);
  EXPECT_NE(broken.err.find("<stdin>:1: not a line of 'vexc detect' output"), std::string::npos);
  EXPECT_EQ(RunVexc("detect --mask-delim ab", "x").exit_code, 2);
}

TEST(VexcReplace, AppliesRuleLinesInOrderAndCountsMatches) {
  auto r = RunVexc("replace --count --rules '" + Examples() + "/rules.csv'",
                   "Ch7  Beam   Ch12\nnothing\n");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.out, "Channel 7 Gate Channel 12\nnothing\n");
  EXPECT_NE(r.err.find("3 rule matches on 1 of 2 lines (3 rules)"), std::string::npos);
}

TEST(VexcReplace, RuleTreeSelectsEntriesByKey) {
  const std::string tree = "--rules-tree '" + Examples() + "/rules.tree' --list-key Rules";
  EXPECT_EQ(RunVexc("replace " + tree, "Ch7 Beam\n").out, "Channel 7 Gate\n");
  EXPECT_EQ(RunVexc("replace " + tree + " --key Beams", "Ch7 Beam\n").out, "Ch7 Gate\n");
}

TEST(VexcReplace, BadPatternNamesTheRuleLine) {
  auto rules = WriteScratch("bad_rules.csv", "Beam,Gate\n(\\d,x\n");
  auto r = RunVexc("replace --rules '" + rules.string() + "'", "Beam\n");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("bad_rules.csv:2:"), std::string::npos) << r.err;
  EXPECT_EQ(RunVexc("replace", "x").exit_code, 2);  // no rules given
}

TEST(VexcBits, AnswersWithExitCodeAndRejectsUnknownNames) {
  const std::string m = "'" + Examples() + "/matrix.txt'";
  auto set = RunVexc("bits " + m + " Pump Stop");
  EXPECT_EQ(set.exit_code, 0);
  EXPECT_EQ(set.out, "true\n");
  auto clear = RunVexc("bits " + m + " Valve Reset");
  EXPECT_EQ(clear.exit_code, 1);
  EXPECT_EQ(clear.out, "false\n");
  EXPECT_EQ(RunVexc("bits " + m + " Nobody Stop").exit_code, 2);
  auto bad = WriteScratch("wide.txt",
                          "Options\n\tHeaders=H\n\tTitles=T\n\tChars=.X\nH\n\ta\n"
                          "T\n\tr\nBitLines\n\tXX\n");
  auto r = RunVexc("bits '" + bad.string() + "' r a");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("not a valid bit matrix"), std::string::npos);
}

}  // namespace
}  // namespace vexc_test
