#include <gtest/gtest.h>

#include <cctype>
#include <string>

#include "vexc/run_vexc.h"

namespace vexc_test {
namespace {

TEST(VexcChecksum, PrintsCheckValuesForStandardInput) {
  auto r32 = RunVexc("crc32", "123456789");
  EXPECT_EQ(r32.exit_code, 0);
  EXPECT_EQ(r32.out, "CBF43926  -\n");
  auto r16 = RunVexc("crc16 -", "123456789");
  EXPECT_EQ(r16.exit_code, 0);
  EXPECT_EQ(r16.out, "4B37  -\n");
}

TEST(VexcChecksum, StreamsAcrossBlockBoundaries) {
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
  auto sums = WriteScratch("sums.txt", "CBF43926  " + a.string() + "\r\ncbf43926  " + b.string() +
                                           "\n");
  auto r = RunVexc("crc32 --check '" + sums.string() + "'");
  EXPECT_EQ(r.exit_code, 1);
  EXPECT_EQ(r.out, a.string() + ": OK\n" + b.string() + ": FAILED\n");
  EXPECT_NE(r.err.find("1 checksum did not match"), std::string::npos);
}

TEST(VexcChecksum, UnreadableListedFileFailsTheCheck) {
  auto sums = WriteScratch("gone_sums.txt", "4B37  /nonexistent/x\n");
  auto r = RunVexc("crc16 -c '" + sums.string() + "'");
  EXPECT_EQ(r.exit_code, 1);
  EXPECT_EQ(r.out, "/nonexistent/x: FAILED open or read\n");
}

TEST(VexcChecksum, MalformedCheckLineNamesFileAndLine) {
  auto ok = WriteScratch("nine.txt", "123456789");
  auto sums = WriteScratch("bad_sums.txt", "4B37  " + ok.string() + "\nnot a checksum line\n");
  auto r = RunVexc("crc16 -c '" + sums.string() + "'");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("bad_sums.txt:2:"), std::string::npos) << r.err;
}

TEST(VexcChecksum, MissingFileIsBadInput) {
  auto r = RunVexc("crc32 /nonexistent/file");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("/nonexistent/file: cannot open file"), std::string::npos);
}

TEST(VexcLinkId, PrintsWellFormedDistinctIdentifiers) {
  auto r = RunVexc("linkid -n 3 --dollar");
  ASSERT_EQ(r.exit_code, 0);
  ASSERT_EQ(r.out.size(), 3u * 10u);  // "$" + 8 digits + "\n"
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(r.out[i * 10], '$');
    for (int j = 1; j <= 8; ++j) EXPECT_TRUE(std::isxdigit(uint8_t(r.out[i * 10 + j])));
  }
  EXPECT_NE(r.out.substr(0, 10), r.out.substr(10, 10));
  EXPECT_EQ(RunVexc("linkid").out.size(), 9u);
  EXPECT_EQ(RunVexc("linkid -n 0").exit_code, 2);
}

TEST(VexcUsage, UnknownCommandAndVersion) {
  EXPECT_EQ(RunVexc("no-such-command").exit_code, 2);
  EXPECT_EQ(RunVexc("").exit_code, 2);
  auto v = RunVexc("--version");
  EXPECT_EQ(v.exit_code, 0);
  EXPECT_EQ(v.out.rfind("vexc ", 0), 0u);
  auto help = RunVexc("crc32 --help");
  EXPECT_EQ(help.exit_code, 0);
  EXPECT_NE(help.out.find("Example"), std::string::npos);
}

}  // namespace
}  // namespace vexc_test
