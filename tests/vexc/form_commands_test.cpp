#include <gtest/gtest.h>

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

TEST(VexcForm, CheckPassesOnDesignerTextAndShowsTheFirstDifference) {
  auto ok = RunVexc("form check '" + Login() + "'");
  EXPECT_EQ(ok.exit_code, 0);
  EXPECT_EQ(ok.out, Login() + ": OK (text)\n");
  // LF line ends compare equal; a float in general format does not come back.
  auto lf = RunVexc("form check -", "object A: TA\n  X = 1\nend\n");
  EXPECT_EQ(lf.exit_code, 0) << lf.out;
  auto bad = RunVexc("form check -", "object A: TA\n  X = 1\n  F = 0.5\nend\n");
  EXPECT_EQ(bad.exit_code, 1);
  EXPECT_EQ(
      bad.out,
      "<stdin>:3: differs\n  file:        F = 0.5\n  rewritten:   F = 0.500000000000000000\n");
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

}  // namespace
}  // namespace vexc_test
