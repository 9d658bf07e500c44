#include <gtest/gtest.h>

#include <string>

#include "vexc/run_vexc.h"

namespace vexc_test {
namespace {

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

TEST(VexcGroup, CompressesSeriesOfNumberedNames) {
  auto r = RunVexc("group '" + Examples() + "/names.txt'");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.out, "Beam {4}\nGate 7\nCh{1-3,7}\nPump\n");
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
  auto bad = WriteScratch("wide.txt", "Options\n\tHeaders=H\n\tTitles=T\n\tChars=.X\nH\n\ta\n"
                                      "T\n\tr\nBitLines\n\tXX\n");
  auto r = RunVexc("bits '" + bad.string() + "' r a");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("not a valid bit matrix"), std::string::npos);
}

}  // namespace
}  // namespace vexc_test
