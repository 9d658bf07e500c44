// A process killed while ApplyUpdates writes leaves the database as before or as after.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "vex/data/sqlite_dataset.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

constexpr int kRows = 40000;

// The child: appends kRows records in cached mode, tells the parent, then applies them.
[[noreturn]] void ApplyInChild(const String& file, int ready_fd) {
  TSQLiteDataSet ds(file, u"T");
  ds.SetCachedUpdates(true);
  ds.Open();
  for (int i = 0; i < kRows; ++i) {
    ds.Append();
    ds.FieldByName(u"Name").SetAsString(u"row " + IntToStr(i));
    ds.FieldByName(u"Qty").SetAsInteger(i);
    ds.Post();
  }
  char byte = 1;
  if (write(ready_fd, &byte, 1) != 1) _exit(3);
  ds.ApplyUpdates();
  _exit(0);
}

TEST(SQLiteKillTest, KilledApplyUpdatesLeavesBeforeOrAfter) {
  int before = 0, after = 0;
  for (int delay_ms : {0, 1, 3, 10, 30, 100, 400, 2000}) {
    String file = FromUtf8(::testing::TempDir() + "kill_" + std::to_string(getpid()) + ".db");
    std::filesystem::remove(ToUtf8(file));
    std::filesystem::remove(ToUtf8(file) + "-journal");
    TSQLiteDataSet::CreateTable(file, u"T", {{u"Name", ftWideString}, {u"Qty", ftInteger}});
    {
      TSQLiteDataSet seed(file, u"T");
      seed.Open();
      seed.Append();
      seed.FieldByName(u"Name").SetAsString(u"seed");
      seed.Post();
    }
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      close(fds[0]);
      ApplyInChild(file, fds[1]);
    }
    close(fds[1]);
    char byte = 0;
    ASSERT_EQ(read(fds[0], &byte, 1), 1);
    close(fds[0]);
    std::this_thread::sleep_for(std::chrono::milliseconds(delay_ms));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    TSQLiteDataSet check(file, u"T");
    check.Open();
    int32_t count = check.RecordCount();
    EXPECT_TRUE(count == 1 || count == kRows + 1) << "delay " << delay_ms << ": " << count;
    if (count == 1) ++before;
    if (count == kRows + 1) ++after;
  }
  // The kills must have landed on both sides of the commit for the test to mean anything.
  EXPECT_GT(before, 0);
  EXPECT_GT(after, 0);
}

}  // namespace
}  // namespace vex
