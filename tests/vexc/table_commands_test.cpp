#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "vexc/run_vexc.h"

namespace vexc_test {
namespace {

std::string Db(const std::string& name) {
  auto path = ScratchDir() / name;
  std::filesystem::remove(path);
  return path.string();
}

std::string Quote(const std::string& s) { return "'" + s + "'"; }

TEST(TableCommandsTest, LoadThenDumpGivesTheSampleBackWithDatesInLocalForm) {
  std::string db = Db("shop.db");
  Result load =
      RunVexc("table load " + Quote(db) + " Items " + Quote(Examples() + "/shop_items.txt") +
              " --create --type Id=autoinc --type Qty=integer --type Price=float");
  ASSERT_EQ(load.exit_code, 0) << load.err;
  Result dump = RunVexc("table dump " + Quote(db) + " Items");
  ASSERT_EQ(dump.exit_code, 0) << dump.err;
  EXPECT_EQ(dump.out, ReadFile(Examples() + "/shop_items.txt"));  // Added stays text here
  auto file = ScratchDir() / "dump.txt";
  EXPECT_EQ(RunVexc("table dump " + Quote(db) + " Items " + Quote(file.string())).exit_code, 0);
  EXPECT_EQ(ReadFile(file), dump.out);
}

TEST(TableCommandsTest, FailedLoadNamesFileAndLineAndChangesNothing) {
  std::string db = Db("bad.db");
  std::string sample = Examples() + "/shop_items.txt";
  ASSERT_EQ(RunVexc("table load " + Quote(db) + " Items " + Quote(sample) +
                    " --create --type Id=autoinc --type Qty=integer")
                .exit_code,
            0);
  std::string before = RunVexc("table dump " + Quote(db) + " Items").out;
  std::string bad = Examples() + "/shop_items_bad.txt";
  Result r = RunVexc("table load " + Quote(db) + " Items " + Quote(bad));
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("shop_items_bad.txt:11: 'twelve' is not a valid integer value"),
            std::string::npos)
      << r.err;
  EXPECT_EQ(RunVexc("table dump " + Quote(db) + " Items").out, before);
  // A duplicate key fails only when the transaction runs: still all or nothing.
  r = RunVexc("table load " + Quote(db) + " Items " + Quote(sample));
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("UNIQUE"), std::string::npos) << r.err;
  EXPECT_EQ(RunVexc("table dump " + Quote(db) + " Items").out, before);
}

TEST(TableCommandsTest, MissingTableOrFileIsBadInput) {
  std::string db = Db("none.db");
  Result r = RunVexc("table dump " + Quote(db) + " Items");
  EXPECT_EQ(r.exit_code, 2);
  r = RunVexc("table load " + Quote(db) + " Items /no/such/file.txt");
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("/no/such/file.txt"), std::string::npos);
  r = RunVexc("table load " + Quote(db) + " Items " + Quote(Examples() + "/shop_items.txt"));
  EXPECT_EQ(r.exit_code, 2);  // no --create: the table must exist
}

TEST(SettingsCommandsTest, SetOverwritesAndGetFallsBackToTheDefault) {
  std::string db = Db("settings.db");
  EXPECT_EQ(RunVexc("settings set " + Quote(db) + " 'Main\\Width' 640").exit_code, 0);
  EXPECT_EQ(RunVexc("settings set " + Quote(db) + " 'Main\\Width' \"it's; --\"").exit_code, 0);
  EXPECT_EQ(RunVexc("settings get " + Quote(db) + " 'Main\\Width'").out, "it's; --\n");
  EXPECT_EQ(RunVexc("settings get " + Quote(db) + " 'Main|Width'").out, "it's; --\n");
  EXPECT_EQ(RunVexc("settings get " + Quote(db) + " 'Main\\Height' --default 480").out, "480\n");
  EXPECT_EQ(RunVexc("settings set " + Quote(db) + " Width 1").exit_code, 2);
  std::string dump = RunVexc("table dump " + Quote(db) + " Settings").out;
  EXPECT_NE(dump.find("0=Main|Width|it's; --"), std::string::npos) << dump;
  EXPECT_EQ(dump.find("1="), std::string::npos);
}

}  // namespace
}  // namespace vexc_test
