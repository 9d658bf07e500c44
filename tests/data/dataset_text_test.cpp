// The streamed dataset text file against the whole-file way of reading and writing it, and the
// SQLite table's block reads and encoded cached inserts against the values they stand for.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "vex/data/db_utils.h"
#include "vex/data/sqlite_dataset.h"
#include "vex/platform/datetime.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/ini_file.h"
#include "vex/platform/mem_dataset.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

std::string TempPath(const std::string& name) {
  return ::testing::TempDir() + std::to_string(getpid()) + "_text_" + name;
}

void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

std::unique_ptr<TMemDataSet> Table() {
  auto ds = std::make_unique<TMemDataSet>(
      std::vector<TFieldDef>{{u"Id", ftInteger}, {u"Name", ftWideString}, {u"Price", ftFloat}});
  ds->Open();
  return ds;
}

String Records(TDataSet& ds) {
  TStringList lines;
  TDBUtils::SaveDataSetInStrings(&ds, lines, true, u'|', false, true);
  return lines.Text();
}

// The loader as the whole-file section reader defines it.
void ReferenceLoad(const String& file, TDataSet& ds, TStrings& data) {
  TStringList names;
  TMemIniFile ini(file);
  ini.ReadSection(u"Fields", names);
  ini.ReadSectionValues(u"Data", data);
  for (int32_t i = 0; i < data.Count(); ++i) {
    size_t equals = data[i].find(u'=');
    ds.Append();
    TDBUtils::SetListFieldsStrVal(
        &ds, &names, equals == String::npos ? String() : data[i].substr(equals + 1), u'|');
    ds.Post();
  }
}

std::string Utf16Le(const std::string& ascii) {
  std::string out = "\xFF\xFE";
  for (char c : ascii) out += std::string{c, '\0'};
  return out;
}

std::string LongFile() {
  std::string text = "[Fields]\r\nId=0\r\nName=1\r\n\r\n[Data]\r\n";
  for (int i = 0; i < 60000; ++i) text += std::to_string(i) + "=" + std::to_string(i) + "|n\r\n";
  return text;
}

TEST(DataSetTextFileTest, StreamedLoadReadsEveryFileAsTheSectionFileReaderDoes) {
  const std::pair<const char*, std::string> cases[] = {
      {"plain",
       "[Fields]\r\nId=0\r\nName=1\r\nPrice=2\r\n\r\n[Data]\r\n0=1|a|1.5\r\n1=2|b|<NULL>\r\n"},
      {"line ends, comments, blanks and spaces",
       "; c\n[ fields ]\n Id = 0 \rName=1\n\n[DATA]\n ; skip\n  0 = 7 | x y |2 \n1=8\nno equals\n"},
      {"byte-order mark and non-ASCII text",
       "\xEF\xBB\xBF[Fields]\nName=0\nId=1\n[Data]\n0=Z\xC3\xBCrich|5\n1=\xE6\x97\xA5|6\n"},
      {"malformed UTF-8 at line ends",
       "[Fields]\nName=0\n[Data]\n0=a\xFF\xFE b\n1=\xC3\n2=\xE2\x82\r\n3=\xF0"},
      {"only the first section of a name counts",
       "[Fields]\nId=0\n[Data]\n0=1\n[Fields]\nName=0\n[Data]\n0=2\n[data]\n0=3\n"},
      {"records before the field names", "[Data]\n0=1|a\n[Fields]\nId=0\nName=1\n"},
      {"no field names", "[Data]\n0=1\n1=2\n"},
      {"no records", "[Fields]\nId=0\n"},
      {"UTF-16", Utf16Le("[Fields]\r\nId=0\r\n[Data]\r\n0=4\r\n")},
      {"longer than a read block", LongFile()},
  };
  for (const auto& [name, bytes] : cases) {
    SCOPED_TRACE(name);
    std::string path = TempPath("load.txt");
    WriteBytes(path, bytes);
    auto streamed = Table(), plain = Table(), reference = Table();
    TStringList work, expected_work;
    work.Add(u"dropped");
    TDBUtils::LoadDataSetFromFile(FromUtf8(path), streamed.get(), work);
    TDBUtils::LoadDataSetFromFile(FromUtf8(path), plain.get());
    ReferenceLoad(FromUtf8(path), *reference, expected_work);
    EXPECT_EQ(Records(*streamed), Records(*reference));
    EXPECT_EQ(Records(*plain), Records(*reference));
    EXPECT_EQ(work.Text(), expected_work.Text());
  }
  auto missing = Table();
  TStringList work;
  work.Add(u"dropped");
  TDBUtils::LoadDataSetFromFile(FromUtf8(TempPath("none/x.txt")), missing.get(), work);
  EXPECT_EQ(missing->RecordCount(), 0);
  EXPECT_EQ(work.Count(), 0);
}

TEST(DataSetTextFileTest, AFailingRecordStopsTheLoadButTheWorkListGetsTheWholeSection) {
  std::string path = TempPath("bad.txt");
  WriteBytes(path, "[Fields]\nId=0\n[Data]\n0=1\n1=x\n2=3\n[Other]\n0=9\n");
  for (bool with_list : {true, false}) {
    auto ds = Table();
    TStringList work;
    EXPECT_THROW(with_list ? TDBUtils::LoadDataSetFromFile(FromUtf8(path), ds.get(), work)
                           : TDBUtils::LoadDataSetFromFile(FromUtf8(path), ds.get()),
                 EConvertError);
    ds->Cancel();
    EXPECT_EQ(ds->RecordCount(), 1);
    EXPECT_EQ(work.Text(), with_list ? u"0=1\r\n1=x\r\n2=3\r\n" : u"");
  }
}

// A SQLite table whose stored values do not all match their declared types.
std::string MixedTable() {
  std::string path = TempPath("mixed.db");
  std::filesystem::remove(path);
  sqlite3* db = nullptr;
  sqlite3_open(path.c_str(), &db);
  const char* sql =
      "CREATE TABLE t (I INTEGER, L BIGINT, F REAL, S TEXT, D DATE, B BOOLEAN, X BLOB);"
      "INSERT INTO t VALUES (1, 1099511627776, 0.1, 'plain', '2024-02-03', 1, X'00FF');"
      "INSERT INTO t VALUES ('abc', -5, 3, 42, '2024-01-05 10:00', 0, NULL);"
      "INSERT INTO t VALUES (NULL, NULL, 1e300, 'Z\xC3\xBCrich', NULL, NULL, X'41');"
      "INSERT INTO t VALUES (4294967296, 7, -0.0, CAST(X'FF41' AS TEXT), 45000.5, 'yes', '');"
      "INSERT INTO t VALUES (2.5, 'text', 'x', '', '', 2, 'memo');";
  EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(db);
  return path;
}

TEST(DataSetTextFileTest, StreamedDumpWritesTheTextOfTheFieldsAndTheListLayout) {
  std::string db = MixedTable();
  TSQLiteDataSet ds(FromUtf8(db), u"t");
  ds.Open();
  TStringList built;
  TDBUtils::SaveDataSetInStrings(&ds, built, true, u'|', false, true);
  std::string expected = TempPath("built.txt"), streamed = TempPath("streamed.txt");
  built.SaveToFile(expected);
  TDBUtils::SaveDataSetToFile(FromUtf8(streamed), &ds);
  EXPECT_EQ(ReadBytes(streamed), ReadBytes(expected));
  EXPECT_TRUE(ds.Eof());

  // With a work list, its layout decides the file and it ends holding every line.
  TStringList work;
  work.SetWriteBOM(true);
  work.SetLineBreak(u"\n");
  work.SetTrailingLineBreak(false);
  work.Add(u"dropped");
  TDBUtils::SaveDataSetToFile(FromUtf8(streamed), &ds, work);
  String joined;
  for (int32_t i = 0; i < built.Count(); ++i) joined += (i > 0 ? u"\n" : u"") + built[i];
  EXPECT_EQ(work.Text(), joined);
  work.SaveToFile(expected);
  EXPECT_EQ(ReadBytes(streamed), ReadBytes(expected));
}

TEST(SQLiteBlockReadTest, WalksBothWaysJumpsAndSeesRowsThatHaveGone) {
  std::string path = TempPath("walk.db");
  std::filesystem::remove(path);
  sqlite3* db = nullptr;
  sqlite3_open(path.c_str(), &db);
  sqlite3_exec(db, "CREATE TABLE t (N INTEGER, S TEXT); BEGIN", nullptr, nullptr, nullptr);
  constexpr int kRows = 5000;
  for (int i = 0; i < kRows; ++i) {
    std::string sql =
        "INSERT INTO t VALUES (" + std::to_string(i) + ", 's" + std::to_string(i) + "')";
    sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
  }
  sqlite3_exec(db, "COMMIT; DELETE FROM t WHERE N % 97 = 0", nullptr, nullptr, nullptr);
  TSQLiteDataSet ds(FromUtf8(path), u"t");
  ds.Open();
  int expected = 1, seen = 0;
  TBookmark mark;
  for (ds.First(); !ds.Eof(); ds.Next(), ++expected, ++seen) {
    if (expected % 97 == 0) ++expected;
    ASSERT_EQ(ds.FieldByName(u"N").AsInteger(), expected);
    ASSERT_EQ(ds.FieldByName(u"S").AsString(), u"s" + IntToStr(expected));
    if (expected == 2500) mark = ds.GetBookmark();
  }
  EXPECT_EQ(seen, ds.RecordCount());
  for (ds.Last(); !ds.Bof(); ds.Prior()) {
    --expected;
    if (expected % 97 == 0) --expected;
    ASSERT_EQ(ds.FieldByName(u"N").AsInteger(), expected);
  }
  ds.GotoBookmark(mark);
  EXPECT_EQ(ds.FieldByName(u"S").AsString(), u"s2500");
  EXPECT_EQ(ds.MoveBy(-1000), -1000);
  EXPECT_EQ(ds.FieldByName(u"N").AsInteger(), 1490);  // ten deleted rows in between
  // A row another connection deletes after Open reads as nulls; its neighbours are unharmed.
  sqlite3_exec(db, "DELETE FROM t WHERE N = 4002", nullptr, nullptr, nullptr);
  sqlite3_close(db);
  EXPECT_TRUE(ds.Locate(u"N", 4001, {}));
  EXPECT_EQ(ds.FieldByName(u"S").AsString(), u"s4001");
  ds.Next();
  EXPECT_TRUE(ds.FieldByName(u"N").IsNull());
  ds.Next();
  EXPECT_EQ(ds.FieldByName(u"N").AsInteger(), 4003);
}

TEST(SQLiteBlockReadTest, CachedInsertsKeepTheirValuesUntilAppliedAndTheTableKeepsThemAfter) {
  std::string path = TempPath("cache.db");
  std::filesystem::remove(path);
  TSQLiteDataSet::CreateTable(FromUtf8(path), u"T",
                              {{u"Id", ftAutoInc},
                               {u"I", ftInteger},
                               {u"L", ftLargeint},
                               {u"F", ftFloat},
                               {u"D", ftDateTime},
                               {u"B", ftBoolean},
                               {u"S", ftWideString},
                               {u"M", ftWideMemo},
                               {u"X", ftBlob}});
  TSQLiteDataSet ds(FromUtf8(path), u"T");
  ds.SetCachedUpdates(true);
  ds.Open();
  const TDateTime when = EncodeDateTime(2024, 2, 29, 13, 14, 15, 16);
  const String texts[] = {u"Z\u00FCrich", String(u"a") + Char(0xD800) + u"b", u""};
  for (const String& text : texts) {
    ds.Append();
    ds.FieldByName(u"I").SetAsInteger(-5);
    ds.FieldByName(u"L").SetAsLargeInt(int64_t{1} << 40);
    ds.FieldByName(u"F").SetAsFloat(0.1);
    ds.FieldByName(u"D").SetAsVariant(Variant::FromDate(when));
    ds.FieldByName(u"B").SetAsBoolean(true);
    ds.FieldByName(u"S").SetAsString(text);
    ds.FieldByName(u"M").SetAsString(u"line\r\n\u65E5");
    ds.FieldByName(u"X").SetAsBytes({0, 255, 1});
    ds.Post();
  }
  ds.Append();
  ds.Post();  // every value null
  ds.First();
  ds.Next();
  EXPECT_EQ(ds.FieldByName(u"S").AsString(), texts[1]);  // exact before it is written
  ds.First();
  ds.Edit();
  ds.FieldByName(u"I").SetAsInteger(6);
  ds.Post();
  auto check = [&](bool applied) {
    ds.First();
    for (int record = 0; record < 3; ++record, ds.Next()) {
      SCOPED_TRACE(record);
      EXPECT_EQ(ds.FieldByName(u"Id").IsNull(), !applied);
      EXPECT_EQ(ds.FieldByName(u"I").AsInteger(), record == 0 ? 6 : -5);
      EXPECT_EQ(ds.FieldByName(u"L").AsLargeInt(), int64_t{1} << 40);
      EXPECT_EQ(ds.FieldByName(u"F").AsFloat(), 0.1);
      EXPECT_EQ(ds.FieldByName(u"D").AsVariant(), Variant::FromDate(when));
      EXPECT_TRUE(ds.FieldByName(u"B").AsBoolean());
      // A lone surrogate cannot be stored as UTF-8: the table has U+FFFD in its place.
      String stored = record == 1 && applied ? String(u"a\uFFFDb") : texts[record];
      EXPECT_EQ(ds.FieldByName(u"S").AsString(), stored);
      EXPECT_EQ(ds.FieldByName(u"M").AsString(), u"line\r\n\u65E5");
      EXPECT_EQ(ds.FieldByName(u"X").AsBytes(), (TBytes{0, 255, 1}));
    }
    for (int32_t i = 1; i < ds.FieldCount(); ++i) EXPECT_TRUE(ds.Fields(i)->IsNull());
  };
  check(false);
  ds.Last();
  ds.Delete();  // a pending insert that never reaches the table
  ds.Append();
  ds.Post();
  ds.ApplyUpdates();
  check(true);
  TSQLiteDataSet reopened(FromUtf8(path), u"T");
  reopened.Open();
  EXPECT_EQ(reopened.RecordCount(), 4);
  reopened.Last();
  EXPECT_EQ(reopened.FieldByName(u"Id").AsInteger(), 4);
  reopened.Prior();
  EXPECT_EQ(reopened.FieldByName(u"S").AsString(), u"");
  EXPECT_FALSE(reopened.FieldByName(u"S").IsNull());
}

}  // namespace
}  // namespace vex
