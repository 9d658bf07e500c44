#include <gtest/gtest.h>

#include "vex/platform/exceptions.h"
#include "vex/platform/mem_dataset.h"

namespace vex {
namespace {

class MemDataSetTest : public ::testing::Test {
 protected:
  MemDataSetTest()
      : ds({{u"Id", ftAutoInc},
            {u"Name", ftWideString},
            {u"Qty", ftInteger},
            {u"Price", ftFloat},
            {u"Data", ftBlob}}) {
    ds.Open();
    for (const char16_t* name : {u"apple", u"Pear", u"plum"}) {
      ds.Append();
      ds.FieldByName(u"Name").SetAsString(name);
      ds.FieldByName(u"Qty").SetAsInteger(static_cast<int32_t>(ds.RecordCount()) * 10);
      ds.Post();
    }
  }
  TMemDataSet ds;
};

TEST_F(MemDataSetTest, WalksForwardAndBackWithEofAndBof) {
  String seen;
  for (ds.First(); !ds.Eof(); ds.Next()) seen += ds.FieldByName(u"Name").AsString() + u",";
  EXPECT_EQ(seen, u"apple,Pear,plum,");
  EXPECT_EQ(ds.RecNo(), 3);  // Next at the last record sets Eof without moving
  ds.Last();
  EXPECT_TRUE(ds.Eof());
  ds.Prior();
  ds.Prior();
  EXPECT_EQ(ds.FieldByName(u"Name").AsString(), u"apple");
  EXPECT_FALSE(ds.Bof());
  ds.Prior();
  EXPECT_TRUE(ds.Bof());
  EXPECT_EQ(ds.RecNo(), 1);
}

TEST_F(MemDataSetTest, AutoIncNumbersPostedRecordsFromOne) {
  ds.Last();
  EXPECT_EQ(ds.FieldByName(u"Id").AsInteger(), 3);
  ds.Delete();
  ds.Append();
  ds.Post();
  EXPECT_EQ(ds.FieldByName(u"Id").AsInteger(), 4);  // numbers are not reused
}

TEST_F(MemDataSetTest, CancelDropsEditAndInsertAndKeepsPosition) {
  ds.First();
  ds.Next();
  ds.Edit();
  ds.FieldByName(u"Name").SetAsString(u"changed");
  EXPECT_EQ(ds.State(), dsEdit);
  ds.Cancel();
  EXPECT_EQ(ds.FieldByName(u"Name").AsString(), u"Pear");
  ds.Append();
  EXPECT_TRUE(ds.FieldByName(u"Name").IsNull());
  ds.Cancel();
  EXPECT_EQ(ds.RecordCount(), 3);
  EXPECT_EQ(ds.FieldByName(u"Name").AsString(), u"Pear");
}

TEST_F(MemDataSetTest, InsertGoesBeforeTheCurrentRecordAndMovesPostTheEdit) {
  ds.First();
  ds.Next();
  ds.Insert();
  ds.FieldByName(u"Name").SetAsString(u"fig");
  ds.Next();  // posts first
  EXPECT_EQ(ds.State(), dsBrowse);
  String seen;
  for (ds.First(); !ds.Eof(); ds.Next()) seen += ds.FieldByName(u"Name").AsString() + u",";
  EXPECT_EQ(seen, u"apple,fig,Pear,plum,");
}

TEST_F(MemDataSetTest, WritingOutsideEditRaises) {
  EXPECT_THROW(ds.FieldByName(u"Name").SetAsString(u"x"), EDatabaseError);
}

TEST_F(MemDataSetTest, FieldByNameRaisesWithThePlatformWording) {
  EXPECT_EQ(ds.FindField(u"NAME"), ds.Fields(1));
  try {
    ds.FieldByName(u"Missing");
    FAIL();
  } catch (const EDatabaseError& e) {
    EXPECT_EQ(e.Message(), u"Field 'Missing' not found");
  }
}

TEST_F(MemDataSetTest, LocateConvertsKeysAndMatchesWholeValues) {
  ds.Last();
  EXPECT_TRUE(ds.Locate(u"Qty", u"10", {}));  // text key converted to the integer field
  EXPECT_EQ(ds.FieldByName(u"Name").AsString(), u"Pear");
  EXPECT_FALSE(ds.Locate(u"Name", u"pear", {}));
  EXPECT_EQ(ds.FieldByName(u"Name").AsString(), u"Pear");  // not found keeps the position
  EXPECT_FALSE(ds.Locate(u"Name", u"Pe", {}));
  EXPECT_TRUE(ds.Locate(u"Name", u"PL", {loCaseInsensitive, loPartialKey}));
  EXPECT_EQ(ds.RecNo(), 3);
  EXPECT_TRUE(ds.Locate(u"Name;Qty", VarArrayOf({u"apple", 0}), {}));
  EXPECT_EQ(ds.RecNo(), 1);
  EXPECT_TRUE(ds.Locate(u"Name", VarArrayOf({u"plum"}), {}));
  EXPECT_FALSE(ds.Locate(u"Qty", u"abc", {}));         // cannot be an integer: no match
  EXPECT_FALSE(ds.Locate(u"Name;Qty", u"apple", {}));  // one value for two fields
  EXPECT_TRUE(ds.Locate(u"Price", Null(), {}));        // null matches null
  EXPECT_THROW(ds.Locate(u"Nope", u"x", {}), EDatabaseError);
}

TEST_F(MemDataSetTest, BookmarksSurviveInsertsAndFailAfterDelete) {
  ds.First();
  ds.Next();
  TBookmark mark = ds.GetBookmark();
  ds.First();
  ds.Insert();
  ds.Post();
  ds.GotoBookmark(mark);
  EXPECT_EQ(ds.FieldByName(u"Name").AsString(), u"Pear");
  ds.Delete();
  EXPECT_FALSE(ds.BookmarkValid(mark));
  EXPECT_THROW(ds.GotoBookmark(mark), EDatabaseError);
}

TEST_F(MemDataSetTest, DeleteMovesToTheNextOrTheNewLast) {
  ds.First();
  ds.Delete();
  EXPECT_EQ(ds.FieldByName(u"Name").AsString(), u"Pear");
  ds.Last();
  ds.Delete();
  EXPECT_EQ(ds.FieldByName(u"Name").AsString(), u"Pear");
  ds.Delete();
  EXPECT_TRUE(ds.IsEmpty());
  EXPECT_TRUE(ds.Eof());
  EXPECT_THROW(ds.Delete(), EDatabaseError);
}

TEST_F(MemDataSetTest, BlobStreamsWriteOnReleaseAndReadBack) {
  ds.First();
  ds.Edit();
  {
    auto out = ds.CreateBlobStream(ds.FindField(u"Data"), bmWrite);
    out->WriteBuffer("\x00\x01\xff", 3);
  }
  ds.Post();
  auto in = ds.CreateBlobStream(ds.FindField(u"Data"), bmRead);
  EXPECT_EQ(in->Size(), 3);
  EXPECT_EQ(ds.FieldByName(u"Data").AsBytes(), (TBytes{0, 1, 255}));
  EXPECT_TRUE(ds.FieldByName(u"Data").IsBlob());
  EXPECT_THROW(ds.CreateBlobStream(ds.FindField(u"Data"), bmWrite), EDatabaseError);
  EXPECT_THROW(ds.CreateBlobStream(ds.FindField(u"Qty"), bmRead), EDatabaseError);
}

TEST_F(MemDataSetTest, ClosedDataSetHasNoFieldsAndKeepsItsRecords) {
  ds.Close();
  EXPECT_EQ(ds.FieldCount(), 0);
  EXPECT_THROW(ds.First(), EDatabaseError);
  ds.Open();
  EXPECT_EQ(ds.RecordCount(), 3);
  EXPECT_EQ(ds.FieldList().Text(), u"Id\r\nName\r\nQty\r\nPrice\r\nData\r\n");
  EXPECT_EQ(ds.FieldList().Objects(2), ds.Fields(2));
}

struct TextCase {
  TFieldType type;
  const char16_t* text;
  const char16_t* shown;  // nullptr: EConvertError
};

TEST(FieldTextTest, SetAsStringConvertsByTypeOrRaises) {
  const TextCase cases[] = {
      {ftInteger, u" 42", u"42"},
      {ftInteger, u"4x", nullptr},
      {ftSmallint, u"40000", nullptr},
      {ftLargeint, u"9000000000", u"9000000000"},
      {ftFloat, u"1.5", u"1.5"},
      {ftFloat, u"1,5", nullptr},
      {ftBoolean, u"true", u"True"},
      {ftBoolean, u"yes", nullptr},
      {ftInteger, u"", u""},
      {ftWideString, u"", u""},
      {ftDate, u"2024-02-29", u"29/02/2024"},
      {ftDateTime, u"29/02/2024 13:05:09", u"29/02/2024 13:05:09"},
      {ftDate, u"2023-02-29", nullptr},
      {ftMemo, u"line", u"line"},
      {ftBlob, u"\u00e9", u"\u00e9"},
  };
  for (const TextCase& c : cases) {
    TMemDataSet ds({{u"F", c.type}});
    ds.Open();
    ds.Append();
    TField& f = ds.FieldByName(u"F");
    if (c.shown == nullptr) {
      EXPECT_THROW(f.SetAsString(c.text), EConvertError) << static_cast<int>(c.type);
      continue;
    }
    f.SetAsString(c.text);
    ds.Post();
    EXPECT_EQ(f.AsString(), c.shown) << static_cast<int>(c.type);
  }
}

TEST(FieldTextTest, NullReadsAsZeroAndEmptyTextIsNullExceptForStrings) {
  TMemDataSet ds({{u"I", ftInteger}, {u"S", ftWideString}, {u"B", ftBlob}});
  ds.Open();
  ds.Append();
  ds.FieldByName(u"I").SetAsString(u"");
  ds.FieldByName(u"S").SetAsString(u"");
  ds.Post();
  EXPECT_TRUE(ds.FieldByName(u"I").IsNull());
  EXPECT_EQ(ds.FieldByName(u"I").AsInteger(), 0);
  EXPECT_FALSE(ds.FieldByName(u"S").IsNull());
  EXPECT_TRUE(ds.FieldByName(u"B").IsNull());
  EXPECT_EQ(ds.FieldByName(u"B").AsBytes(), TBytes{});
}

TEST(FieldTypeTest, KeepsThePlatformOrderAndBlobClasses) {
  EXPECT_EQ(static_cast<int>(ftAutoInc), 14);
  EXPECT_EQ(static_cast<int>(ftWideString), 24);
  EXPECT_EQ(static_cast<int>(ftLongWord), 42);
  EXPECT_EQ(static_cast<int>(ftSingle), 51);
  EXPECT_TRUE(IsBlobFieldType(ftWideMemo));
  EXPECT_FALSE(IsBlobFieldType(ftBytes));
  EXPECT_EQ(FieldTypeName(ftFMTBcd), u"ftFMTBcd");
}

}  // namespace
}  // namespace vex
