// vexc message: composition printed without a toolkit, bad language files, and (when built with Qt)
// the box rendered offscreen into a PNG.
#include <gtest/gtest.h>

#include <filesystem>

#include "run_vexc.h"

namespace {

using vexc_test::Examples;
using vexc_test::RunVexc;
using vexc_test::WriteScratch;

std::string Lang() { return "--lang '" + Examples() + "/messages.lang'"; }

// One argument is in the help example; here two, and a key the file lacks.
TEST(VexcMessage, PrintsTheComposedCaptionAndMessage) {
  auto r = RunVexc("message 'Query\\Save' " + Lang() + " --arg Beam --arg 3 --print");
  EXPECT_EQ(r.out, "Save changes\nBeam has 3 unsaved changes.\r\nSave them now?\n");

  r = RunVexc("message 'No\\Such' " + Lang() + " --print");
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_EQ(r.out, "Error Message\nUknown Error\n");
}

TEST(VexcMessage, RejectsMalformedLanguageFilesAndUnknownTypes) {
  auto bad = WriteScratch("bad.lang", "Errors\\A=ok\nno equals sign here\n");
  auto r = RunVexc("message 'Errors\\A' --lang '" + bad.string() + "' --print");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("bad.lang:2"), std::string::npos) << r.err;

  r = RunVexc("message 'Errors\\A' --lang /nonexistent/x.lang --print");
  EXPECT_EQ(r.exit_code, 2);
  r = RunVexc("message 'Errors\\A' " + Lang() + " --type nonsense --print");
  EXPECT_EQ(r.exit_code, 2);
}

#ifdef VEXC_TEST_WITH_QT
TEST(VexcMessage, RendersTheBoxOffscreenIntoAPng) {
  const auto png = vexc_test::ScratchDir() / "message_box.png";
  std::filesystem::remove(png);
  auto r = RunVexc("message 'Errors\\NoFile' " + Lang() + " --arg a.txt --type error " +
                   "--screenshot '" + png.string() + "'");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  ASSERT_TRUE(std::filesystem::exists(png));
  EXPECT_GT(std::filesystem::file_size(png), 1000u);
  EXPECT_NE(r.out.find(png.string()), std::string::npos);
}
#endif

}  // namespace
