// vexc form: conversion, check, describe and show, on the sample forms and on damaged input.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "vexc/run_vexc.h"

namespace vexc_test {
namespace {

std::string Login() { return Examples() + "/forms/login.dfm"; }

TEST(VexcForm, ConvertsBothWaysAndBack) {
  auto bin = RunVexc("form tobinary '" + Login() + "'");
  ASSERT_EQ(bin.exit_code, 0) << bin.err;
  EXPECT_EQ(bin.out.substr(0, 4), "TPF0");
  auto file = WriteScratch("login.bin", bin.out);
  auto text = RunVexc("form totext '" + file.string() + "'");
  ASSERT_EQ(text.exit_code, 0) << text.err;
  EXPECT_EQ(text.out, ReadFile(Login()));
  // Either form is accepted by either command: text in, text out rewrites it.
  EXPECT_EQ(RunVexc("form totext -", ReadFile(Login())).out, text.out);
  EXPECT_EQ(RunVexc("form tobinary -", bin.out).out, bin.out);
  auto out = ScratchDir() / "login_out.txt";
  EXPECT_EQ(RunVexc("form totext '" + file.string() + "' -o '" + out.string() + "'").exit_code, 0);
  EXPECT_EQ(ReadFile(out), text.out);
}

// Designer text passing the check is in the help example.
TEST(VexcForm, CheckShowsTheFirstDifference) {
  // LF line ends compare equal; a float in general format does not come back.
  auto lf = RunVexc("form check -", "object A: TA\n  X = 1\nend\n");
  EXPECT_EQ(lf.exit_code, 0) << lf.out;
  auto bad = RunVexc("form check -", "object A: TA\n  X = 1\n  F = 0.5\nend\n");
  EXPECT_EQ(bad.exit_code, 1);
  EXPECT_EQ(bad.out,
            "<stdin>:3: differs\n  file:        F = 0.5\n  rewritten: "
            "  F = 0.500000000000000000\n");
  EXPECT_EQ(RunVexc("form check --general-floats -", "object A: TA\n  F = 0.5\nend\n").exit_code,
            0);
  auto older = RunVexc("form check --older '" + Examples() + "/forms/older_settings.dfm'");
  EXPECT_EQ(older.exit_code, 0) << older.out << older.err;
}

TEST(VexcForm, ErrorsNameTheFileAndLine) {
  auto bad_text = WriteScratch("bad.dfm", "object A: TA\n  X = 1\n  Y = )\nend\n");
  auto r = RunVexc("form tobinary '" + bad_text.string() + "'");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find(bad_text.string() + ":3: Invalid property value"), std::string::npos)
      << r.err;
  auto cut = RunVexc("form totext -", std::string("TPF0\x06TForm1\x05", 12));
  EXPECT_EQ(cut.exit_code, 2);
  EXPECT_NE(cut.err.find("<stdin>: Stream read error"), std::string::npos) << cut.err;
}

TEST(FormWindowCommandsTest, DescribeListsEveryControlIndentedByDepth) {
  const Result r = RunVexc("form describe '" + Examples() + "/forms/order.dfm'");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.err, "");
  EXPECT_EQ(r.out.substr(0, r.out.find('\n', r.out.find("Place"))),
            "frmOrder:TForm\n\tCaption=Channel order\n\tPlace=x: 200; y: 120; "
            "w: 480; h: 300");
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

// The help examples only list the files; these must be real pictures.
TEST(FormWindowCommandsTest, ScreenshotsOfAFormAndACheckTreeArePngs) {
#ifndef VEXC_TEST_WITH_QT
  GTEST_SKIP() << "vexc built without Qt";
#endif
  for (const std::string& command : {"form show '" + Examples() + "/forms/order.dfm'",
                                     "checktree '" + Examples() + "/checktree.txt'"}) {
    const auto png = ScratchDir() / "shot.png";
    std::filesystem::remove(png);
    const Result r = RunVexc(command + " --screenshot '" + png.string() + "'");
    ASSERT_EQ(r.exit_code, 0) << command << ": " << r.err;
    const std::string bytes = ReadFile(png);
    EXPECT_GT(bytes.size(), 1000u) << command;
    EXPECT_EQ(bytes.substr(1, 3), "PNG") << command;
  }
}

}  // namespace
}  // namespace vexc_test
