#include <gtest/gtest.h>

#include <string>

#include "vexc/run_vexc.h"

namespace vexc_test {
namespace {

TEST(VexcCheckTree, NormalizeWritesWhatAnUntouchedViewerWritesBack) {
  // Prefixes before a key are dropped, depth jumps flatten, equal siblings merge, the second ticked
  // radio of a group wins, and a plain node keeps its text and gains a prefix.
  auto file =
      WriteScratch("tree.txt", "x1#3|Motor\n\t\t\t1@0|A\n\t1@0|B\r\n1#3|Motor\n\t0#1|c\n\nGroup\n");
  auto r = RunVexc("checktree --normalize '" + file.string() + "'");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.out, "1#3|Motor\n\t0@0|A\n\t1@0|B\n\t0#1|c\n[]0|Group\n");
  auto again = RunVexc("checktree --normalize -", r.out);
  EXPECT_EQ(again.out, "1#3|Motor\n\t0@0|A\n\t1@0|B\n\t0#1|c\n[]0|[]0|Group\n");
}

TEST(VexcCheckTree, SplitWritesNamesWithTheirNodeData) {
  auto r = RunVexc("checktree --split -", "1#3|Motor: speed\n\t0@0|Fast : x\nplain\n");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(r.out,
            "Motor\tkind=1 image=2 checked=1\n\tFast\tkind=2 image=-1 checked=0\n"
            "plain\tkind=0 image=0 checked=0\n");
  auto clash = RunVexc("checktree --split -", "1#1|A: x\n0#1|A: y\n");
  EXPECT_EQ(clash.exit_code, 2);
  EXPECT_NE(clash.err.find("same name"), std::string::npos) << clash.err;
}

TEST(VexcCheckTree, BadUsageFails) {
  EXPECT_EQ(RunVexc("checktree --normalize --split -", "a\n").exit_code, 2);
  EXPECT_EQ(RunVexc("checktree --normalize /nonexistent/tree.txt").exit_code, 2);
  EXPECT_EQ(RunVexc("checktree --normalize -", "\xff\xfe\n").exit_code, 2);
}

}  // namespace
}  // namespace vexc_test
