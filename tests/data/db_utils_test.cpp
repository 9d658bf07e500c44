#include "vex/data/db_utils.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "vex/data/sqlite_dataset.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/mem_dataset.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

using Columns = std::vector<std::pair<String, TFieldType>>;

const Columns kItems = {{u"Id", ftAutoInc},
                        {u"Name", ftWideString},
                        {u"Qty", ftInteger},
                        {u"Price", ftFloat},
                        {u"Data", ftBlob}};
const Columns kSettings = {
    {u"Section", ftWideString}, {u"Key", ftWideString}, {u"Value", ftWideString}};

String TempFile(const std::string& name) {
  return FromUtf8(::testing::TempDir() + std::to_string(getpid()) + "_" + name);
}

// Builds the same table in memory or in a fresh SQLite file.
std::unique_ptr<TDataSet> MakeTable(bool sqlite, const Columns& columns, const std::string& name) {
  if (!sqlite) {
    std::vector<TFieldDef> defs;
    for (const auto& [n, t] : columns) defs.push_back({n, t});
    return std::make_unique<TMemDataSet>(defs);
  }
  String file = TempFile(name + ".db");
  std::filesystem::remove(ToUtf8(file));
  TSQLiteDataSet::CreateTable(file, u"T", columns);
  return std::make_unique<TSQLiteDataSet>(file, u"T");
}

void AddItem(TDataSet& ds, const String& name, const Variant& qty, const Variant& price) {
  ds.Append();
  ds.FieldByName(u"Name").SetAsString(name);
  ds.FieldByName(u"Qty").SetAsVariant(qty);
  ds.FieldByName(u"Price").SetAsVariant(price);
  ds.Post();
}

class DbUtilsTest : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    std::string suffix = GetParam() ? "sql" : "mem";
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string base = std::string(info->name());
    for (char& c : base) c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    items = MakeTable(GetParam(), kItems, base + "_items_" + suffix);
    settings = MakeTable(GetParam(), kSettings, base + "_settings_" + suffix);
    items->Open();
    settings->Open();
    AddItem(*items, u"apple", 3, 1.5);
    AddItem(*items, u"pear", 7, Null());
    AddItem(*items, u"plum", 5, 0.25);
  }
  String Names() {
    String s;
    for (items->First(); !items->Eof(); items->Next())
      s += items->FieldByName(u"Name").AsString() + u",";
    return s;
  }
  std::unique_ptr<TDataSet> items, settings;
};

INSTANTIATE_TEST_SUITE_P(BothTables, DbUtilsTest, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "SQLite" : "Memory"; });

TEST_P(DbUtilsTest, BatchLocateCountsOnlyNamesFollowedBySemicolon) {
  EXPECT_EQ(TDBUtils::BatchLocateRecord(items.get(), u"Name", {u"pear"}), -1);
  EXPECT_EQ(TDBUtils::BatchLocateRecord(items.get(), u"Name;", {u"pear"}), 1);
  EXPECT_EQ(items->FieldByName(u"Qty").AsInteger(), 7);
  EXPECT_EQ(TDBUtils::BatchLocateRecord(items.get(), u"Name;Qty", {u"plum", 5}), -1);
  EXPECT_EQ(TDBUtils::BatchLocateRecord(items.get(), u"Name;Qty;", {u"plum", 5}), 1);
  EXPECT_EQ(TDBUtils::BatchLocateRecord(items.get(), u"Name;Qty;", {u"plum", 6}), -2);
  EXPECT_EQ(TDBUtils::BatchLocateRecord(items.get(), u"Nope;", {u"x"}), -1);
  TStringList not_a_dataset;
  EXPECT_EQ(TDBUtils::BatchLocateRecord(&not_a_dataset, u"Name;", {u"x"}), 0);
}

TEST_P(DbUtilsTest, BatchCreateLocateVarsLeavesTrailingSemicolonForMissingLastName) {
  String key_fields = u"X;";
  Variant keys;
  EXPECT_EQ(TDBUtils::BatchCreateLocateVars(items.get(), {u"Name", u"", u"Qty", u"Missing"},
                                            {u"plum", u"5"}, key_fields, keys),
            2);
  EXPECT_EQ(key_fields, u"X;Name;Qty;");
  EXPECT_EQ(keys, VarArrayOf({u"plum", u"5"}));
  EXPECT_EQ(TDBUtils::BatchLocateRecordStr(items.get(), {u"Name", u"Qty"}, {u"plum", u"5"}), 1);
  EXPECT_EQ(TDBUtils::BatchLocateRecordStr(items.get(), {u"Nope"}, {u"x"}), -1);
  EXPECT_EQ(TDBUtils::SplitStrAndLocateRecord(items.get(), u"Name=pear; Qty=7"), 1);
  EXPECT_EQ(items->RecNo(), 2);
  EXPECT_EQ(TDBUtils::SplitStrAndLocateRecord(items.get(), u""), 0);
}

TEST_P(DbUtilsTest, PrepareDataSetSplitsValuesAtBarThenBackslash) {
  Variant keys;
  TDBUtils::PrepareDataSet(settings.get(), u"Section;Key", u"a\\b", keys);
  EXPECT_EQ(keys, VarArrayOf({u"a", u"b"}));
  TDBUtils::PrepareDataSet(settings.get(), u"Section;Key", u"a|b\\c", keys);
  EXPECT_EQ(keys, VarArrayOf({u"a", u"b\\c"}));
  TDBUtils::PrepareDataSet(settings.get(), u"Section;Key", u"a", keys, true);
  EXPECT_TRUE(keys.IsNull());  // counts differ: nothing appended
  EXPECT_EQ(settings->RecordCount(), 0);
  TDBUtils::PrepareDataSet(settings.get(), u"Section;Key", u"s|k", keys, true);
  EXPECT_EQ(settings->RecordCount(), 1);
  TDBUtils::PrepareDataSet(settings.get(), u"Section;Key", u"s|k", keys, true);
  EXPECT_EQ(settings->RecordCount(), 1);
  EXPECT_TRUE(settings->FieldByName(u"Value").IsNull());
}

TEST_P(DbUtilsTest, SettingsWriteCreatesThenUpdatesAndReadFallsBackToDefault) {
  const String hostile = u"it's; DROP TABLE \"T\"; --|x";
  EXPECT_TRUE(TDBUtils::WriteDataAsStringDef(settings.get(), u"Main\\Width", u"640"));
  EXPECT_TRUE(TDBUtils::WriteDataAsStringDef(settings.get(), u"Main\\Width", u"800"));
  EXPECT_TRUE(TDBUtils::WriteDataAsStringDef(settings.get(), u"Main\\O'Brien;", hostile));
  EXPECT_EQ(settings->RecordCount(), 2);
  EXPECT_EQ(TDBUtils::ReadDataToStringDef(settings.get(), u"Main\\Width"), u"800");
  EXPECT_EQ(TDBUtils::ReadDataToStringDef(settings.get(), u"Main\\O'Brien;"), hostile);
  EXPECT_EQ(TDBUtils::ReadDataToStringDef(settings.get(), u"Main\\Height", u"480"), u"480");
  EXPECT_EQ(TDBUtils::ReadDataToStringDef(settings.get(), u"NoKey", u"d"), u"d");
  EXPECT_EQ(TDBUtils::ReadDataToStringDef(settings.get(), u""), hostile);  // current record
  EXPECT_EQ(TDBUtils::ReadDataToString(settings.get(), u"Nope", u"", u"", u"d"), u"d");
  EXPECT_FALSE(TDBUtils::WriteDataAsString(settings.get(), u"Nope", u"v", u"", u""));
  settings->Close();
  EXPECT_FALSE(TDBUtils::WriteDataAsStringDef(settings.get(), u"Main\\Width", u"1"));
  EXPECT_EQ(TDBUtils::ReadDataToStringDef(settings.get(), u"Main\\Width", u"d"), u"d");
  settings->Open();  // a SQLite table reads back what was written to the file
  EXPECT_EQ(TDBUtils::ReadDataToStringDef(settings.get(), u"Main\\Width"), u"800");
}

TEST_P(DbUtilsTest, SaveObjectEditsFoundRecordOrAppendsAndCancelsOnFailure) {
  int calls = 0;
  TDataSetProc proc = [&calls](TDataSet* ds) {
    ++calls;
    ds->FieldByName(u"Price").SetAsFloat(9);
  };
  EXPECT_TRUE(TDBUtils::SaveObjectToDataSet(items.get(), u"Name", {u"pear"}, proc));
  EXPECT_TRUE(TDBUtils::SaveObjectToDataSet(items.get(), u"Name", {u"fig"}, proc));
  EXPECT_EQ(items->RecordCount(), 4);
  EXPECT_EQ(calls, 2);
  EXPECT_TRUE(TDBUtils::LoadObjectFromDataSet(items.get(), u"Name", {u"pear"}, nullptr));
  EXPECT_EQ(items->FieldByName(u"Price").AsFloat(), 9);
  EXPECT_FALSE(TDBUtils::SaveObjectToDataSetEx(items.get(), u"Name;Nope", {u"x", 1}, proc, false,
                                               false));
  EXPECT_EQ(items->State(), dsBrowse);
  EXPECT_EQ(items->RecordCount(), 4);
  EXPECT_TRUE(TDBUtils::AssignValuesInDataSet(items.get(), u"Name;Qty", {u"pear", 7}, true));
  EXPECT_FALSE(TDBUtils::AssignValuesInDataSet(items.get(), u"Name;Qty", {u"pear", 8}, true));
  EXPECT_FALSE(TDBUtils::AssignValuesInDataSet(items.get(), u"Name", {u"pear", 8}, true));
  String text = u"a\r\nb\r\n";
  EXPECT_TRUE(TDBUtils::LoadSaveStringInDataSet(settings.get(), u"Section;Key", u"Value",
                                                {u"s", u"k"}, text, false));
  TStringList list;
  EXPECT_TRUE(
      TDBUtils::LoadListFromDataSet(settings.get(), u"Section;Key", {u"s", u"k"}, list, u"Value"));
  EXPECT_EQ(list.Count(), 2);
  EXPECT_FALSE(
      TDBUtils::LoadListFromDataSet(settings.get(), u"Section;Key", {u"s", u"x"}, list, u"Value"));
  EXPECT_EQ(TDBUtils::FindRecordsInDataSet(items.get(), u"Qty", {7}, list, u"Name", true), 1);
  EXPECT_EQ(list.Text(), u"pear\r\n");
}

TEST_P(DbUtilsTest, WalksRestorePositionAndControlsWhenTheCallbackRaises) {
  items->First();
  items->Next();
  EXPECT_THROW(TDBUtils::ProcessDataSetValues(
                   items.get(),
                   [](TDataSet* ds) {
                     if (ds->RecNo() == 3) throw Exception("stop");
                     return true;
                   },
                   true),
               Exception);
  EXPECT_EQ(items->RecNo(), 2);
  EXPECT_FALSE(items->ControlsDisabled());
  EXPECT_THROW(TDBUtils::ProcessFieldValues(
                   items->FindField(u"Qty"),
                   [](TField* f) {
                     if (f->AsInteger() == 5) throw Exception("stop");
                     return true;
                   },
                   false),
               Exception);
  EXPECT_EQ(items->RecNo(), 2);
  EXPECT_FALSE(items->ControlsDisabled());
}

TEST_P(DbUtilsTest, ProcessFieldValuesCountsEveryRecordPlusTheAccepted) {
  items->Last();
  auto all = [](TField*) { return true; };
  EXPECT_EQ(TDBUtils::ProcessFieldValues(items->FindField(u"Qty"), all, false), 6);
  EXPECT_EQ(TDBUtils::ProcessFieldValues(items->FindField(u"Qty"), nullptr, false), 3);
  EXPECT_EQ(TDBUtils::ProcessFieldValues(items->FindField(u"Data"), all, false), -1);
  EXPECT_EQ(TDBUtils::ProcessFieldValues(nullptr, all, true), -1);
  EXPECT_EQ(items->RecNo(), 3);
  EXPECT_EQ(
      TDBUtils::ProcessDataSetValues(
          items.get(), [](TDataSet* ds) { return ds->FieldByName(u"Qty").AsInteger() > 3; }, false),
      2);
  EXPECT_TRUE(items->Eof());  // not kept
  TStringList list;
  EXPECT_EQ(TDBUtils::SaveFieldValuesToList(items.get(), list, u""), 6);
  EXPECT_EQ(list.Text(), u"1\r\n2\r\n3\r\n");
  EXPECT_EQ(TDBUtils::SaveFieldValuesToList(items.get(), list, u"Nope"), -1);
  EXPECT_EQ(TDBUtils::GetListItemsFast2(items.get(), list, u"Name", u"Qty"), 3);
  EXPECT_EQ(list.Text(), u"apple=3\r\npear=7\r\nplum=5\r\n");
  EXPECT_EQ(
      TDBUtils::CollectDataSetValues(
          items.get(), [](TDataSet* ds) { return ds->FieldByName(u"Price").AsString(); }, list),
      3);
  EXPECT_EQ(list.Text(), u"apple=3\r\npear=7\r\nplum=5\r\n1.5\r\n\r\n0.25\r\n");
}

TEST_P(DbUtilsTest, MaxValueStartsFromTheDeliberateValuesAndRefusesOtherTypes) {
  double max = 0;
  EXPECT_TRUE(TDBUtils::GetMaxValueFromDataSet(items.get(), u"Qty", max));
  EXPECT_EQ(max, 7);
  EXPECT_TRUE(TDBUtils::GetMaxValueFromDataSet(items.get(), u"Price", max));
  EXPECT_EQ(max, 1.5);
  EXPECT_FALSE(TDBUtils::GetMaxValueFromDataSet(items.get(), u"Id", max));
  EXPECT_FALSE(TDBUtils::GetMaxValueFromDataSet(items.get(), u"Name", max));
  EXPECT_FALSE(TDBUtils::GetMaxValueFromDataSet(items.get(), u"Nope", max));
  while (!items->IsEmpty()) items->Delete();
  EXPECT_TRUE(TDBUtils::GetMaxValueFromDataSet(items.get(), u"Qty", max));
  EXPECT_EQ(max, -2147483646.0);
  EXPECT_TRUE(TDBUtils::GetMaxValueFromDataSet(items.get(), u"Price", max));
  EXPECT_EQ(max, -1.7976931348623157e308);
}

TEST_P(DbUtilsTest, BlobsMoveThroughStreamsBuffersAndLists) {
  TField* data = items->FindField(u"Data");
  items->First();
  EXPECT_EQ(TDBUtils::GetBlobDataSize(data), -1);  // null blob
  TBytes ten = {0, 1, 2, 3, 4, 5, 6, 7, 8, 255};
  EXPECT_EQ(TDBUtils::WriteBlobData(data, ten, true), 10);
  EXPECT_EQ(items->State(), dsBrowse);
  EXPECT_EQ(TDBUtils::GetBlobDataSize(data), 10);
  uint8_t buffer[10] = {};
  EXPECT_EQ(TDBUtils::ReadBlobData(data, buffer, 10, -1), -1);
  EXPECT_EQ(TDBUtils::ReadBlobData(data, buffer, 8, -1), 2);
  EXPECT_EQ(buffer[1], 255);
  EXPECT_EQ(TDBUtils::ReadBlobData(data, buffer, 5, 6), -1);
  EXPECT_EQ(TDBUtils::ReadBlobData(items->FindField(u"Qty"), buffer, 0, 1), -1);
  EXPECT_EQ(TDBUtils::WriteBlobData(data, TBytes{}, true), 0);
  EXPECT_EQ(TDBUtils::WriteBlobData(data, ten.data(), 2, 3, true), 3);
  TMemoryStream out;
  EXPECT_EQ(TDBUtils::ReadBlobData(items.get(), u"Data", &out), 3);
  EXPECT_EQ(out.Memory()[0], 2);
  TStringList lines;
  lines.SetText(u"x=1\r\ny=\u00e9\r\n");
  EXPECT_GT(TDBUtils::WriteListText(items.get(), u"Data", lines, true), 0);
  TStringList back;
  TDBUtils::ReadListText(items.get(), u"Data", back);
  EXPECT_EQ(back.Text(), lines.Text());
  EXPECT_EQ(TDBUtils::WriteMemBlobData(data, nullptr, true), -1);
  items->Next();
  EXPECT_EQ(TDBUtils::InitTableData(items.get(), u"Name", u"pear", u"Data", 4, 0xAB), 4);
  EXPECT_EQ(TDBUtils::InitTableData(items.get(), u"Name", u"pear", u"Data", 9, 0), 4);
  EXPECT_EQ(TDBUtils::InitTableData(items.get(), u"Name", u"none", u"Data", 9, 0), -1);
  items->Close();
  items->Open();  // survives reopening (written to the file for SQLite)
  items->Next();
  EXPECT_EQ(items->FieldByName(u"Data").AsBytes(), TBytes(4, 0xAB));
}

TEST_P(DbUtilsTest, StreamSettingsNeedThreeFieldsAndTwoPathParts) {
  TSQLiteDataSet* unused = nullptr;
  (void)unused;
  auto blobs = MakeTable(GetParam(), {{u"S", ftWideString}, {u"K", ftWideString}, {u"B", ftBlob}},
                         std::string("stream_") + (GetParam() ? "sql" : "mem"));
  blobs->Open();
  TStringStream in(std::string("payload"));
  EXPECT_EQ(TDBUtils::ReadWriteDataToStreamDef(blobs.get(), &in, false, u"S;K", u"a\\b"), -1);
  EXPECT_EQ(TDBUtils::ReadWriteDataToStreamDef(blobs.get(), &in, false, u"S;K;B", u"a"), -1);
  // Not found: no record is created for stream settings.
  EXPECT_EQ(TDBUtils::ReadWriteDataToStreamDef(blobs.get(), &in, false, u"S;K;B", u"a\\b"), -1);
  blobs->Append();
  blobs->FieldByName(u"S").SetAsString(u"a");
  blobs->FieldByName(u"K").SetAsString(u"b");
  blobs->Post();
  EXPECT_EQ(TDBUtils::ReadWriteDataToStreamDef(blobs.get(), &in, false, u"S;K;B", u"a\\b"), 7);
  TStringStream out;
  EXPECT_EQ(TDBUtils::ReadWriteDataToStreamDef(blobs.get(), &out, true, u"S;K;B", u"a|b"), 7);
  EXPECT_EQ(out.DataString(), u"payload");
}

TEST_P(DbUtilsTest, RecordTextMarksNullsAndBlobsWithoutEscaping) {
  auto two = MakeTable(GetParam(), {{u"A", ftWideString}, {u"B", ftInteger}},
                       std::string("two_") + (GetParam() ? "sql" : "mem"));
  two->Open();
  two->Append();
  two->Post();
  EXPECT_EQ(TDBUtils::GetListFieldsStrVal(two.get(), &two->FieldList(), u";", nullptr, false),
            u"<NULL>;<NULL>");
  items->First();
  TStringList names;
  names.SetText(u"Name\r\nNope\r\nData\r\nQty");
  EXPECT_EQ(TDBUtils::GetListFieldsStrVal(items.get(), &names, u", ", nullptr, true),
            u"Name=apple, Data=<NULL>, Qty=3");
  TRefObjBoolFunc no_blobs = [](TObject* f) { return !static_cast<TField*>(f)->IsBlob(); };
  items->Edit();
  items->FieldByName(u"Data").SetAsString(u"x|y");
  items->Post();
  EXPECT_EQ(TDBUtils::GetListFieldsStrVal(items.get(), &names, u"|", nullptr, false),
            u"apple|<BLOB>|3");
  EXPECT_EQ(TDBUtils::GetListFieldsStrVal(items.get(), &names, u"|", no_blobs, false), u"apple|3");
  EXPECT_EQ(TDBUtils::GetListFieldsStrVal(nullptr, &names, u"|", nullptr, false), u"");
}

TEST_P(DbUtilsTest, SetListFieldsSkipsMissingFieldsAndLetsABlobAbsorbTokens) {
  TStringList names;
  names.SetText(u"Nope\r\nName\r\nQty\r\nPrice");
  items->Append();
  EXPECT_EQ(TDBUtils::SetListFieldsStrVal(items.get(), &names, u"kiwi|<NULL>|2.5", u'|'), 3);
  EXPECT_EQ(items->FieldByName(u"Name").AsString(), u"kiwi");
  EXPECT_TRUE(items->FieldByName(u"Qty").IsNull());
  EXPECT_THROW(TDBUtils::SetListFieldsStrVal(items.get(), &names, u"x|y", u'|'), EConvertError);
  names.SetText(u"Name\r\nData\r\nQty");
  EXPECT_EQ(TDBUtils::SetListFieldsStrVal(items.get(), &names, u"fig|<BLOB>|4", u'|'), 1);
  EXPECT_TRUE(items->FieldByName(u"Data").IsNull());
  EXPECT_EQ(items->FieldByName(u"Qty").AsString(), u"");  // the blob took "4" as well
  names.SetText(u"Name\r\nQty");
  EXPECT_EQ(TDBUtils::SetListFieldsStrVal(items.get(), &names, u"fig|<BLOB>|4", u'|'), 2);
  EXPECT_EQ(items->FieldByName(u"Qty").AsInteger(), 4);  // "<BLOB>" is skipped, not set
  items->Cancel();
}

TEST_P(DbUtilsTest, TextFileRoundTripsAndAppends) {
  items->First();
  items->Edit();
  items->FieldByName(u"Name").SetAsString(u"O'Brien; DROP TABLE \"T\";--");
  items->Post();
  TStringList work;
  String first = TempFile("round1.txt"), second = TempFile("round2.txt");
  TDBUtils::SaveDataSetToFile(first, items.get(), work);
  EXPECT_EQ(work[0], u"[Fields]");
  EXPECT_EQ(work[1], u"Id=0");
  EXPECT_EQ(work[6], u"");
  EXPECT_EQ(work[7], u"[Data]");
  EXPECT_EQ(work[8], u"0=1|O'Brien; DROP TABLE \"T\";--|3|1.5|<NULL>");
  EXPECT_EQ(work[9], u"1=2|pear|7|<NULL>|<NULL>");
  auto copy = MakeTable(GetParam(), kItems, std::string("copy_") + (GetParam() ? "sql" : "mem"));
  TDBUtils::LoadDataSetFromFile(first, copy.get(), work);
  EXPECT_EQ(copy->RecordCount(), 3);
  TDBUtils::SaveDataSetToFile(second, copy.get(), work);
  TStringList a, b;
  a.LoadFromFile(first);
  b.LoadFromFile(second);
  EXPECT_EQ(a.Text(), b.Text());
  if (GetParam()) {
    // The file's ids are taken as they are, so a second load collides with the first.
    EXPECT_THROW(TDBUtils::LoadDataSetFromFile(first, copy.get(), work), EDatabaseError);
    copy->Cancel();
    EXPECT_EQ(copy->RecordCount(), 3);
  } else {
    TDBUtils::LoadDataSetFromFile(first, copy.get(), work);  // appended, not replaced
    EXPECT_EQ(copy->RecordCount(), 6);
  }
}

TEST_P(DbUtilsTest, BarInsideAValueShiftsLaterFieldsOnLoading) {
  items->First();
  items->Edit();
  items->FieldByName(u"Name").SetAsString(u"a|9");
  items->Post();
  TStringList work;
  String file = TempFile("bar.txt");
  TDBUtils::SaveDataSetToFile(file, items.get(), work);
  auto copy =
      MakeTable(GetParam(), {{u"Id", ftInteger}, {u"Name", ftWideString}, {u"Qty", ftInteger}},
                std::string("bar_") + (GetParam() ? "sql" : "mem"));
  TDBUtils::LoadDataSetFromFile(file, copy.get(), work);
  copy->First();
  EXPECT_EQ(copy->FieldByName(u"Name").AsString(), u"a");
  EXPECT_EQ(copy->FieldByName(u"Qty").AsInteger(), 9);
}

TEST_P(DbUtilsTest, EmptyTableHasNoDataSectionAndALeadingBlobSetsNothing) {
  auto empty = MakeTable(GetParam(), {{u"B", ftBlob}, {u"N", ftWideString}},
                         std::string("blobfirst_") + (GetParam() ? "sql" : "mem"));
  empty->Open();
  TStringList work;
  String file = TempFile("blobfirst.txt");
  TDBUtils::SaveDataSetToFile(file, empty.get(), work);
  EXPECT_EQ(work.Text(), u"[Fields]\r\nB=0\r\nN=1\r\n");
  TStringList lines;
  lines.SetText(u"[Fields]\r\nB=0\r\nN=1\r\n\r\n[Data]\r\n0=<BLOB>|text\r\n1=<NULL>|more\r\n");
  lines.SaveToFile(file);
  TDBUtils::LoadDataSetFromFile(file, empty.get(), work);
  EXPECT_EQ(empty->RecordCount(), 2);
  for (empty->First(); !empty->Eof(); empty->Next()) {
    EXPECT_TRUE(empty->FieldByName(u"N").IsNull());
    EXPECT_TRUE(empty->FieldByName(u"B").IsNull());
  }
  TStringList target;
  TDBUtils::SaveStringItemsAsIniSection(lines, target, u"", false);
  EXPECT_EQ(target[1], u"1=B=0");
}

// --- SQLite only -------------------------------------------------------------------------------

class SQLiteDataSetTest : public ::testing::Test {
 protected:
  void SetUp() override {
    file = TempFile(std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) +
                    ".db");
    std::filesystem::remove(ToUtf8(file));
    TSQLiteDataSet::CreateTable(file, u"T", kItems);
  }
  String file;
};

TEST_F(SQLiteDataSetTest, FieldTypesComeFromDeclaredTypes) {
  TSQLiteDataSet ds(file, u"T");
  ds.Open();
  EXPECT_EQ(ds.FieldByName(u"Id").DataType(), ftAutoInc);
  EXPECT_EQ(ds.FieldByName(u"Name").DataType(), ftWideString);
  EXPECT_EQ(ds.FieldByName(u"Qty").DataType(), ftInteger);
  EXPECT_EQ(ds.FieldByName(u"Price").DataType(), ftFloat);
  EXPECT_EQ(ds.FieldByName(u"Data").DataType(), ftBlob);
  const std::pair<const char16_t*, TFieldType> cases[] = {
      {u"bigint", ftLargeint}, {u"VARCHAR(20)", ftWideString}, {u"DATETIME", ftDateTime},
      {u"date", ftDate},       {u"BOOLEAN", ftBoolean},        {u"", ftBlob},
      {u"DOUBLE", ftFloat},    {u"MEMO", ftWideMemo},          {u"CURRENCY", ftCurrency}};
  for (auto [declared, type] : cases)
    EXPECT_EQ(TSQLiteDataSet::FieldTypeOf(declared), type) << ToUtf8(declared);
}

TEST_F(SQLiteDataSetTest, OpenFailuresRaiseSQLiteMessages) {
  TSQLiteDataSet missing_table(file, u"Nope");
  try {
    missing_table.Open();
    FAIL();
  } catch (const EDatabaseError& e) {
    EXPECT_EQ(e.Message(), u"no such table: Nope");
  }
  EXPECT_FALSE(missing_table.Active());
  TSQLiteDataSet missing_file(TempFile("none/x.db"), u"T");
  EXPECT_THROW(missing_file.Open(), EDatabaseError);
  String corrupt = TempFile("corrupt.db");
  TStringList junk;
  junk.SetText(std::u16string(5000, u'x'));
  junk.SaveToFile(corrupt);
  TSQLiteDataSet bad(corrupt, u"T");
  EXPECT_THROW(bad.Open(), EDatabaseError);
  TStringList back;
  back.LoadFromFile(corrupt);
  EXPECT_EQ(back.Text(), junk.Text());  // nothing written
}

TEST_F(SQLiteDataSetTest, AutocommitWritesEveryPostAndDelete) {
  TSQLiteDataSet writer(file, u"T"), reader(file, u"T");
  writer.Open();
  AddItem(writer, u"a", 1, 1.0);
  AddItem(writer, u"b", 2, 2.0);
  EXPECT_EQ(writer.FieldByName(u"Id").AsInteger(), 2);
  writer.First();
  writer.Delete();
  reader.Open();
  EXPECT_EQ(reader.RecordCount(), 1);
  EXPECT_EQ(reader.FieldByName(u"Name").AsString(), u"b");
}

TEST_F(SQLiteDataSetTest, CachedUpdatesApplyInOneTransactionOrNotAtAll) {
  {
    TSQLiteDataSet ds(file, u"T");
    ds.Open();
    AddItem(ds, u"keep", 1, 1.0);
  }
  TSQLiteDataSet ds(file, u"T");
  ds.SetCachedUpdates(true);
  ds.Open();
  AddItem(ds, u"new", 2, 2.0);
  ds.First();
  ds.Edit();
  ds.FieldByName(u"Name").SetAsString(u"changed");
  ds.Post();
  EXPECT_TRUE(ds.UpdatesPending());
  EXPECT_THROW(ds.SetCachedUpdates(false), EDatabaseError);
  // A second record with the id of the first violates the primary key at ApplyUpdates.
  ds.Append();
  ds.FieldByName(u"Id").SetAsInteger(1);
  ds.Post();
  EXPECT_THROW(ds.ApplyUpdates(), EDatabaseError);
  TSQLiteDataSet check(file, u"T");
  check.Open();
  EXPECT_EQ(check.RecordCount(), 1);
  EXPECT_EQ(check.FieldByName(u"Name").AsString(), u"keep");
  check.Close();
  ds.Last();
  ds.Delete();
  ds.ApplyUpdates();
  EXPECT_FALSE(ds.UpdatesPending());
  ds.Last();
  EXPECT_EQ(ds.FieldByName(u"Id").AsInteger(), 2);  // numbered at apply time
  check.Open();
  EXPECT_EQ(check.RecordCount(), 2);
  EXPECT_EQ(check.FieldByName(u"Name").AsString(), u"changed");
  ds.First();
  ds.Delete();
  AddItem(ds, u"dropped", 3, 3.0);
  ds.CancelUpdates();
  EXPECT_EQ(ds.RecordCount(), 2);
}

TEST_F(SQLiteDataSetTest, FailedLoadLeavesTheTableAsItWas) {
  String text = u"[Fields]\r\nId=0\r\nName=1\r\nQty=2\r\n\r\n[Data]\r\n";
  for (int i = 0; i < 2000; ++i) {
    text += IntToStr(i) + u"=|n" + IntToStr(i) + u"|" + (i == 1000 ? String(u"x") : IntToStr(i)) + u"\r\n";
  }
  TStringList lines;
  lines.SetText(text);
  String data = TempFile("bad_load.txt");
  lines.SaveToFile(data);
  TSQLiteDataSet ds(file, u"T");
  ds.SetCachedUpdates(true);
  TStringList work;
  EXPECT_THROW(TDBUtils::LoadDataSetFromFile(data, &ds, work), EConvertError);
  EXPECT_EQ(ds.RecordCount(), 1000);
  ds.Cancel();
  ds.CancelUpdates();
  EXPECT_EQ(ds.RecordCount(), 0);
  TSQLiteDataSet check(file, u"T");
  check.Open();
  EXPECT_EQ(check.RecordCount(), 0);
}

TEST_F(SQLiteDataSetTest, LocateUsesTheDatabaseAndAgreesWithTheCache) {
  TSQLiteDataSet ds(file, u"T");
  ds.Open();
  for (int i = 0; i < 50; ++i) AddItem(ds, u"n" + IntToStr(i % 10), i, Null());
  EXPECT_TRUE(ds.Locate(u"Name;Qty", VarArrayOf({u"n3", u"13"}), {}));
  EXPECT_EQ(ds.RecNo(), 14);
  EXPECT_TRUE(ds.Locate(u"Name", u"n3", {}));
  EXPECT_EQ(ds.RecNo(), 4);
  EXPECT_FALSE(ds.Locate(u"Name", u"N3", {}));
  EXPECT_TRUE(ds.Locate(u"Name", u"N3", {loCaseInsensitive}));
  EXPECT_EQ(ds.RecNo(), 4);
  ds.SetCachedUpdates(true);
  ds.First();
  ds.Edit();
  ds.FieldByName(u"Name").SetAsString(u"n3");
  ds.Post();
  ds.Last();
  EXPECT_TRUE(ds.Locate(u"Name", u"n3", {}));  // the pending change is seen
  EXPECT_EQ(ds.RecNo(), 1);
}

}  // namespace
}  // namespace vex
