// vexc form describe / show on the sample forms and on damaged input.
#include <gtest/gtest.h>

#include <filesystem>

#include "run_vexc.h"

namespace vexc_test {
namespace {

TEST(FormWindowCommandsTest, DescribeListsEveryControlIndentedByDepth) {
  const Result r = RunVexc("form describe '" + Examples() + "/forms/order.dfm'");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.err, "");
  EXPECT_EQ(r.out.substr(0, r.out.find('\n', r.out.find("Place"))),
            "frmOrder:TForm\n\tCaption=Channel order\n\tPlace=x: 200; y: 120; w: 480; h: 300");
  EXPECT_NE(r.out.find("\t\t\tlbChannels:TListBox\n\t\t\t\tItems\n\t\t\t\t#9Beam 1\n"),
            std::string::npos)
      << r.out;
  EXPECT_NE(r.out.find("\t\tcbUnits:TComboBox\n"), std::string::npos);
  EXPECT_NE(r.out.find("\t\t\t\tStyle=csDropDownList\n"), std::string::npos);
}

TEST(FormWindowCommandsTest, DamagedFormLoadsWhatItCanAndNamesEachProblem) {
  const Result r = RunVexc("form describe '" + Examples() + "/forms/gauges.dfm'");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  const std::string file = Examples() + "/forms/gauges.dfm";
  EXPECT_NE(r.err.find(file + ":7: frmGauges.Colour: "), std::string::npos) << r.err;
  EXPECT_NE(r.err.find(file + ":15: TRadialGauge: Class TRadialGauge not found"), std::string::npos)
      << r.err;
  EXPECT_NE(r.err.find(file + ":22: TRadialGauge: Class TRadialGauge not found"), std::string::npos)
      << r.err;
  EXPECT_NE(r.err.find(file + ":20: gaugePressure.Needle: "), std::string::npos) << r.err;
  EXPECT_NE(r.err.find(file + ":34: btnClose.ModalResult: "), std::string::npos) << r.err;
  EXPECT_NE(r.out.find("\tgaugeFlow:TRadialGauge\n"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("\tbtnClose:TButton\n\t\tCaption=Close\n"), std::string::npos) << r.out;
}

TEST(FormWindowCommandsTest, UnreadableInputIsBadInputNamingTheFile) {
  const auto bad = WriteScratch("broken.dfm", "object frmX: TForm\n  Caption = \n");
  const Result r = RunVexc("form describe '" + bad.string() + "'");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("broken.dfm"), std::string::npos) << r.err;
  EXPECT_EQ(RunVexc("form describe /no/such/file.dfm").exit_code, 2);
  const auto truncated = WriteScratch("truncated.bin", std::string("TPF0\x05TForm", 10));
  EXPECT_EQ(RunVexc("form describe '" + truncated.string() + "'").exit_code, 2);
}

TEST(FormWindowCommandsTest, ShowRendersThePng) {
#ifndef VEXC_TEST_WITH_QT
  GTEST_SKIP() << "vexc built without Qt";
#endif
  const auto png = ScratchDir() / "order.png";
  std::filesystem::remove(png);
  const Result r =
      RunVexc("form show '" + Examples() + "/forms/order.dfm' --screenshot '" + png.string() + "'");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  ASSERT_TRUE(std::filesystem::exists(png));
  EXPECT_GT(std::filesystem::file_size(png), 1000u);
  EXPECT_EQ(ReadFile(png).substr(1, 3), "PNG");
}

}  // namespace
}  // namespace vexc_test
