#include "vex/numeric/bit_matrix.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vex {
namespace {

struct Doc {
  String headers_key = u"Cols";
  String titles_key = u"Rows";
  String chars = u".X";
  std::vector<String> cols = {u"A", u"B", u"C"};
  std::vector<String> rows = {u"R1", u"R2"};
  std::vector<String> lines = {u"X.X", u".XX"};
  bool with_options = true;
  bool with_bit_lines = true;

  String Text() const {
    String t;
    if (with_options) {
      t += u"Options\r\n";
      if (!headers_key.empty()) t += u"\tHeaders=" + headers_key + u"\r\n";
      if (!titles_key.empty()) t += u"\tTitles=" + titles_key + u"\r\n";
      t += u"\tChars=" + chars + u"\r\n";
    }
    auto section = [&t](const String& name, const std::vector<String>& items) {
      t += name + u"\r\n";
      for (const auto& item : items) t += u"\t" + item + u"\r\n";
    };
    section(u"Cols", cols);
    section(u"Rows", rows);
    if (with_bit_lines) section(u"BitLines", lines);
    section(u"Extra", {u"one", u"two"});
    return t;
  }
};

TEST(BitMatrix, EmptyMatrixAnswersTheDefault) {
  TBitMatrix m;
  EXPECT_EQ(m.Titles(), nullptr);
  EXPECT_FALSE(m.BitValue(0, 0));
  EXPECT_FALSE(m.BitValue(u"R1", u"A"));
  EXPECT_EQ(m.GetListItems(u"Extra"), nullptr);
  EXPECT_EQ(m.LoadValues(), 0);
  m.SetDefValue(true);
  EXPECT_TRUE(m.BitValue(0, 0));
}

TEST(BitMatrix, LoadsTheExampleAndAnswersByNameAndIndex) {
  TBitMatrix m;
  ASSERT_EQ(m.LoadFromStr(Doc().Text()), 1);
  ASSERT_NE(m.Headers(), nullptr);
  ASSERT_NE(m.Titles(), nullptr);
  EXPECT_EQ(m.Headers()->Count(), 3);
  EXPECT_EQ(m.Titles()->Count(), 2);
  const bool expected[2][3] = {{true, false, true}, {false, true, true}};
  const char16_t* cols[] = {u"A", u"B", u"C"};
  const char16_t* rows[] = {u"R1", u"R2"};
  for (int r = 0; r < 2; ++r) {
    for (int c = 0; c < 3; ++c) {
      EXPECT_EQ(m.BitValue(r, c), expected[r][c]) << r << "," << c;
      EXPECT_EQ(m.BitValue(rows[r], cols[c]), expected[r][c]) << r << "," << c;
    }
  }
  EXPECT_EQ(m.IndexOfHeader(u"C"), 2);
  EXPECT_EQ(m.IndexOfTitle(u"R2"), 1);
  EXPECT_EQ(m.IndexOfTitle(u"r2"), -1);  // the document's lists compare case-sensitively
}

TEST(BitMatrix, OutsideTheTableAnswersTheDefault) {
  TBitMatrix m;
  ASSERT_EQ(m.LoadFromStr(Doc().Text()), 1);
  for (bool def : {false, true}) {
    m.SetDefValue(def);
    EXPECT_EQ(m.BitValue(-1, 0), def);
    EXPECT_EQ(m.BitValue(2, 0), def);   // one row too far
    EXPECT_EQ(m.BitValue(0, 3), def);   // one column too far, though the row word has 32 bits
    EXPECT_EQ(m.BitValue(u"R9", u"A"), def);
    EXPECT_EQ(m.BitValue(u"R1", u"Z"), def);
  }
  m.SetDefValue(true);
  EXPECT_FALSE(m.BitValue(u"R1", u"B"));  // a real clear cell is not the default
}

TEST(BitMatrix, MalformedDocumentsFailTheLoad) {
  struct Case {
    const char* what;
    Doc doc;
  };
  std::vector<Case> cases;
  auto add = [&cases](const char* what, auto change) {
    Doc d;
    change(d);
    cases.push_back({what, d});
  };
  add("no Options", [](Doc& d) { d.with_options = false; });
  add("no Headers key", [](Doc& d) { d.headers_key.clear(); });
  add("Headers names no section", [](Doc& d) { d.headers_key = u"Nope"; });
  add("Titles names no section", [](Doc& d) { d.titles_key = u"Nope"; });
  add("no BitLines", [](Doc& d) { d.with_bit_lines = false; });
  add("three lines for two titles", [](Doc& d) { d.lines.push_back(u"XXX"); });
  add("short line", [](Doc& d) { d.lines[1] = u"XX"; });
  add("equal chars", [](Doc& d) { d.chars = u"XX"; });
  add("one char", [](Doc& d) { d.chars = u"X"; });
  add("unknown cell", [](Doc& d) { d.lines[1] = u".-X"; });
  for (const auto& c : cases) {
    TBitMatrix m;
    EXPECT_EQ(m.LoadFromStr(c.doc.Text()), 0) << c.what;
  }
  TBitMatrix m;
  EXPECT_EQ(m.LoadFromStr(u""), 0);
  Doc empty;  // empty sections are an empty table, not an error
  empty.rows.clear();
  empty.lines.clear();
  EXPECT_EQ(m.LoadFromStr(empty.Text()), 1);
  EXPECT_EQ(m.Titles()->Count(), 0);
  EXPECT_EQ(m.LoadFromStr(u"Options\r\n\tHeaders=Options\r\n\tTitles=Options\r\n"), 0);
}

TEST(BitMatrix, AtMost32Columns) {
  Doc d;
  d.cols.clear();
  for (int i = 0; i < 32; ++i) d.cols.push_back(u"C" + String(1, static_cast<Char>(u'A' + i)));
  d.lines = {String(31, u'.') + u"X", u"X" + String(31, u'.')};
  TBitMatrix m;
  ASSERT_EQ(m.LoadFromStr(d.Text()), 1);
  EXPECT_TRUE(m.BitValue(0, 31));
  EXPECT_TRUE(m.BitValue(1, 0));
  d.cols.push_back(u"C33");
  d.lines = {String(33, u'.'), String(33, u'X')};
  EXPECT_EQ(m.LoadFromStr(d.Text()), 0);
}

TEST(BitMatrix, FailedLoadKeepsTheNewListsAndTheRowsItGotTo) {
  TBitMatrix m;
  ASSERT_EQ(m.LoadFromStr(Doc().Text()), 1);

  // Fails at the line count: the new headers are in place, the old rows still answer.
  Doc wider;
  wider.cols = {u"P", u"Q", u"R", u"S"};
  wider.lines = {u"XXXX"};
  EXPECT_EQ(m.LoadFromStr(wider.Text()), 0);
  EXPECT_EQ(m.Headers()->Count(), 4);
  EXPECT_TRUE(m.BitValue(0, 0));  // row R1 of the first load: X.X
  EXPECT_FALSE(m.BitValue(0, 3));  // still a three-column table

  // Fails at an unknown cell: the rows are filled all the same, the stray cell stays clear.
  Doc stray;
  stray.lines = {u"XXX", u"?X."};
  EXPECT_EQ(m.LoadFromStr(stray.Text()), 0);
  EXPECT_TRUE(m.BitValue(u"R1", u"B"));
  EXPECT_FALSE(m.BitValue(u"R2", u"A"));
  EXPECT_TRUE(m.BitValue(u"R2", u"B"));
}

TEST(BitMatrix, ReloadReusesTheDocumentAndReadsFurtherSections) {
  TBitMatrix m;
  ASSERT_EQ(m.LoadFromStr(Doc().Text()), 1);
  TStrings* extra = m.GetListItems(u"Extra");
  ASSERT_NE(extra, nullptr);
  EXPECT_EQ(extra->Count(), 2);
  EXPECT_EQ(m.GetListItems(u"Missing"), nullptr);
  TStrings* headers = m.Headers();

  Doc other;
  other.lines = {u"...", u"XXX"};
  ASSERT_EQ(m.LoadFromStr(other.Text()), 1);
  // The same document hands out the same list objects; had it been replaced, these would
  // dangle (and the address sanitizer would say so on the reads below).
  EXPECT_EQ(m.GetListItems(u"Extra"), extra);
  EXPECT_EQ(m.Headers(), headers);
  EXPECT_EQ(extra->Count(), 2);
  EXPECT_FALSE(m.BitValue(u"R1", u"A"));
  EXPECT_TRUE(m.BitValue(u"R2", u"A"));
}

}  // namespace
}  // namespace vex
