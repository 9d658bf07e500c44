#include "vex/platform/ini_file.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "vex/platform/exceptions.h"
#include "vex/platform/streams.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

// The shape of a dataset text file: a "Fields" section of name=index lines, then the records.
const char16_t kDatasetFile[] =
    u"[Fields]\r\n"
    u"ID=0\r\n"
    u"Name=1\r\n"
    u"Note=2\r\n"
    u"\r\n"
    u"[Data]\r\n"
    u"0=1|Ann|<NULL>\r\n"
    u"1=2|Bob = Jr|<BLOB>\r\n";

TStringDynArray Lines(const TStrings& list) { return list.ToStringArray(); }

TEST(MemIniFile, ReadsTheDatasetFileShape) {
  TMemIniFile ini;
  ini.LoadFromString(kDatasetFile);
  TStringList list;
  ini.ReadSections(list);
  EXPECT_EQ(Lines(list), (TStringDynArray{u"Fields", u"Data"}));
  ini.ReadSection(u"fields", list);
  EXPECT_EQ(Lines(list), (TStringDynArray{u"ID", u"Name", u"Note"}));
  ini.ReadSectionValues(u"DATA", list);
  // Only the blanks around the first "=" go; later ones are part of the value.
  EXPECT_EQ(Lines(list), (TStringDynArray{u"0=1|Ann|<NULL>", u"1=2|Bob = Jr|<BLOB>"}));
  EXPECT_EQ(ini.ReadString(u"Data", u"1", u""), u"2|Bob = Jr|<BLOB>");
}

TEST(MemIniFile, ParsingTrimsSkipsCommentsAndKeepsRawLines) {
  TMemIniFile ini;
  ini.LoadFromString(
      u"orphan=1\n"
      u"  [ Main ]  \n"
      u"  key one  =  value 1  \n"
      u"; comment=x\n"
      u"# not a comment\n"
      u"   raw line   \n"
      u"[\n"
      u"\tempty=\n");
  TStringList list;
  ini.ReadSections(list);
  EXPECT_EQ(Lines(list), (TStringDynArray{u"Main"}));
  ini.ReadSectionValues(u"Main", list);
  EXPECT_EQ(Lines(list), (TStringDynArray{u"key one=value 1", u"# not a comment", u"raw line", u"[",
                                          u"empty="}));
  ini.ReadSection(u"Main", list);
  EXPECT_EQ(Lines(list), (TStringDynArray{u"key one", u"", u"", u"", u"empty"}));
  EXPECT_EQ(ini.ReadString(u"main", u"KEY ONE", u"d"), u"value 1");
  EXPECT_EQ(ini.ReadString(u"main", u"empty", u"d"), u"");  // present but empty: not the default
  EXPECT_EQ(ini.ReadString(u"main", u"raw line", u"d"), u"d");
  EXPECT_EQ(ini.ReadString(u"none", u"x", u"d"), u"d");
  EXPECT_FALSE(ini.ValueExists(u"main", u"raw line"));
  EXPECT_TRUE(ini.ValueExists(u"main", u"Empty"));
}

TEST(MemIniFile, NumbersAndBooleans) {
  TMemIniFile ini;
  ini.LoadFromString(u"[N]\nd=42\nneg=-7\nhex=0x1F\ndollar=$10\nbad=12a\nt=true\none=1\nzero=0\n");
  EXPECT_EQ(ini.ReadInteger(u"N", u"d", -1), 42);
  EXPECT_EQ(ini.ReadInteger(u"N", u"neg", -1), -7);
  EXPECT_EQ(ini.ReadInteger(u"N", u"hex", -1), 31);
  EXPECT_EQ(ini.ReadInteger(u"N", u"dollar", -1), 16);
  EXPECT_EQ(ini.ReadInteger(u"N", u"bad", -1), -1);
  EXPECT_EQ(ini.ReadInteger(u"N", u"missing", 5), 5);
  EXPECT_TRUE(ini.ReadBool(u"N", u"one", false));
  EXPECT_FALSE(ini.ReadBool(u"N", u"zero", true));
  EXPECT_TRUE(ini.ReadBool(u"N", u"t", true));  // "true" is not a number: the default
  EXPECT_FALSE(ini.ReadBool(u"N", u"t", false));
  ini.WriteInteger(u"N", u"d", -3);
  ini.WriteBool(u"N", u"new", true);
  EXPECT_EQ(ini.ReadString(u"N", u"d", u""), u"-3");
  EXPECT_EQ(ini.ReadString(u"n", u"NEW", u""), u"1");
}

TEST(MemIniFile, SectionsRepeatedOrEmpty) {
  TMemIniFile ini;
  ini.LoadFromString(u"[A]\nx=1\n[Empty]\n[a]\nx=2\ny=3\n");
  TStringList list;
  ini.ReadSections(list);
  EXPECT_EQ(Lines(list), (TStringDynArray{u"A", u"Empty", u"a"}));
  // Lookups find the first section of a name; the repeated header's lines stay in the file.
  EXPECT_EQ(ini.ReadString(u"a", u"x", u""), u"1");
  EXPECT_EQ(ini.ReadString(u"a", u"y", u"none"), u"none");
  EXPECT_TRUE(ini.SectionExists(u"a"));
  EXPECT_FALSE(ini.SectionExists(u"Empty"));  // no lines: counts as absent
  EXPECT_FALSE(ini.SectionExists(u"Other"));
  ini.EraseSection(u"A");
  EXPECT_EQ(ini.ReadString(u"a", u"y", u"none"), u"3");
}

TEST(MemIniFile, WritesDeletesAndWritesBack) {
  TMemIniFile ini;
  ini.LoadFromString(u"[S]\nk=1\nK=2\n");
  ini.WriteString(u"s", u"K", u"new");  // replaces the first line of that key, in place
  ini.WriteString(u"T", u"a", u"b");    // adds section and key
  ini.DeleteKey(u"S", u"k");
  ini.DeleteKey(u"None", u"k");
  TStringList out;
  out.Add(u"kept");
  ini.GetStrings(out);  // appends
  EXPECT_EQ(Lines(out), (TStringDynArray{u"kept", u"[S]", u"K=2", u"", u"[T]", u"a=b", u""}));
}

TEST(MemIniFile, CaseSensitiveNames) {
  TMemIniFile ini;
  ini.LoadFromString(u"[S]\nKey=1\n");
  ini.SetCaseSensitive(true);
  EXPECT_EQ(ini.ReadString(u"S", u"key", u"d"), u"d");
  EXPECT_EQ(ini.ReadString(u"s", u"Key", u"d"), u"d");
  EXPECT_EQ(ini.ReadString(u"S", u"Key", u"d"), u"1");
}

TEST(MemIniFile, FileRoundTripThroughUpdateFile) {
  std::string path = ::testing::TempDir() + "ini_file_test.ini";
  std::remove(path.c_str());
  {
    TMemIniFile ini(path);  // missing file: empty
    TStringList list;
    ini.ReadSections(list);
    EXPECT_EQ(list.Count(), 0);
    ini.WriteString(u"Пункт", u"ключ", u"значение");
    ini.UpdateFile();
  }
  TMemIniFile again(FromUtf8(path));
  EXPECT_EQ(again.ReadString(u"ПУНКТ", u"КЛЮЧ", u""), u"значение");
  TStringStream stream(std::string("\xEF\xBB\xBF[X]\r\ny=z\r\n"));
  again.LoadFromStream(stream);
  EXPECT_EQ(again.ReadString(u"X", u"y", u""), u"z");
  again.Rename(FromUtf8(path), true);
  EXPECT_EQ(again.ReadString(u"X", u"y", u"gone"), u"gone");
  std::remove(path.c_str());
  TMemIniFile nowhere(::testing::TempDir() + "no_such_dir/x.ini");
  EXPECT_THROW(nowhere.UpdateFile(), EFCreateError);
}

}  // namespace
}  // namespace vex
