#include "vex/platform/string_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "platform/golden_table.h"
#include "test_support.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/streams.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

// --- Reference results -------------------------------------------------------------------------
// tests/data/golden/string_list.tsv holds results of an independent Pascal string list
// (scripts/golden/generate_string_list.sh). Each row: operation, arguments, results; text is
// escaped (\\ \t \r \n \| \xHH), a list is "count:" followed by its items joined by '|'.

String Unescape(const std::string& field) { return FromUtf8(test::UnescapeGolden(field)); }

TStringDynArray ParseList(const std::string& field) {
  size_t colon = field.find(':');
  int count = std::stoi(field.substr(0, colon));
  TStringDynArray items;
  std::string item;
  std::string rest = field.substr(colon + 1);
  for (size_t i = 0; i < rest.size(); ++i) {
    if (rest[i] == '\\' && i + 1 < rest.size()) {
      item += rest[i];
      item += rest[++i];
    } else if (rest[i] == '|') {
      items.push_back(Unescape(item));
      item.clear();
    } else {
      item += rest[i];
    }
  }
  if (count > 0) items.push_back(Unescape(item));
  EXPECT_EQ(static_cast<int>(items.size()), count) << field;
  return items;
}

void Fill(TStrings& list, const TStringDynArray& items) {
  list.Clear();
  for (const String& s : items) list.Add(s);
}

Char CharField(const std::string& f) { return Unescape(f).at(0); }

// Runs one reference row and returns what this implementation gives, in the row's notation
// order, so a mismatch prints both.
void CheckGoldenRow(const std::vector<std::string>& r) {
  const std::string& op = r[0];
  SCOPED_TRACE(op + " " + (r.size() > 1 ? r[1] : ""));
  TStringList list;
  if (op == "text_split") {
    list.SetText(Unescape(r[1]));
    EXPECT_EQ(list.ToStringArray(), ParseList(r[2]));
  } else if (op == "text_join") {
    Fill(list, ParseList(r[1]));
    EXPECT_EQ(list.Text(), Unescape(r[2]));
  } else if (op == "comma_split") {
    list.SetCommaText(Unescape(r[1]));
    EXPECT_EQ(list.ToStringArray(), ParseList(r[2]));
  } else if (op == "comma_join") {
    Fill(list, ParseList(r[1]));
    EXPECT_EQ(list.CommaText(), Unescape(r[2]));
  } else if (op == "delim_split" || op == "delim_join") {
    list.SetDelimiter(CharField(r[1]));
    list.SetQuoteChar(CharField(r[2]));
    list.SetStrictDelimiter(r[3] == "1");
    if (op == "delim_split") {
      list.SetDelimitedText(Unescape(r[4]));
      EXPECT_EQ(list.ToStringArray(), ParseList(r[5]));
    } else {
      Fill(list, ParseList(r[4]));
      EXPECT_EQ(list.DelimitedText(), Unescape(r[5]));
    }
  } else if (op == "sort") {
    Fill(list, ParseList(r[1]));
    list.Sort();
    EXPECT_EQ(list.ToStringArray(), ParseList(r[2]));
  } else if (op == "sorted_add") {
    list.SetSorted(true);
    list.SetDuplicates(r[1] == "ignore" ? dupIgnore : (r[1] == "accept" ? dupAccept : dupError));
    std::string outcome = "ok";
    try {
      for (const String& s : ParseList(r[2])) list.Add(s);
    } catch (const EStringListError&) {
      outcome = "error";
    }
    EXPECT_EQ(outcome, r[3]);
    EXPECT_EQ(list.ToStringArray(), ParseList(r[4]));
  } else if (op == "find") {
    Fill(list, ParseList(r[1]));
    list.SetSorted(true);
    int32_t index = -5;
    bool found = list.Find(Unescape(r[2]), index);
    EXPECT_EQ(found, r[3] == "1");
    EXPECT_EQ(index, std::stoi(r[4]));
    EXPECT_EQ(list.IndexOf(Unescape(r[2])), std::stoi(r[5]));
  } else if (op == "indexof") {
    Fill(list, ParseList(r[1]));
    EXPECT_EQ(list.IndexOf(Unescape(r[2])), std::stoi(r[3]));
  } else if (op == "values") {
    Fill(list, ParseList(r[1]));
    EXPECT_EQ(list.Values(Unescape(r[2])), Unescape(r[3]));
    EXPECT_EQ(list.IndexOfName(Unescape(r[2])), std::stoi(r[4]));
  } else if (op == "names") {
    Fill(list, ParseList(r[1]));
    TStringDynArray names, values;
    for (int32_t i = 0; i < list.Count(); ++i) {
      names.push_back(list.Names(i));
      values.push_back(list.ValueFromIndex(i));
    }
    EXPECT_EQ(names, ParseList(r[2]));
    EXPECT_EQ(values, ParseList(r[3]));
  } else if (op == "set_value") {
    Fill(list, ParseList(r[1]));
    list.SetValues(Unescape(r[2]), Unescape(r[3]));
    EXPECT_EQ(list.ToStringArray(), ParseList(r[4]));
  } else {
    ADD_FAILURE() << "unknown operation " << op;
  }
}

TEST(StringListGolden, MatchesReferenceResults) {
  auto rows = test::ReadGoldenTable("string_list");
  ASSERT_GE(rows.size(), 90u);
  for (const auto& row : rows) CheckGoldenRow(row);
}

// --- Behaviour that departs from the reference list on purpose ---------------------------------

TEST(StringListValues, SettingAnEmptyValueDeletesTheLineAndANewValueKeepsTheName) {
  TStringList list;
  list.SetCommaText(u"a=1,b=2,plain");
  list.SetValues(u"A", u"");
  EXPECT_EQ(list.CommaText(), u"b=2,plain");
  list.SetValues(u"zz", u"");  // absent: nothing happens
  EXPECT_EQ(list.Count(), 2);
  // A line without a separator has neither name nor value.
  EXPECT_EQ(list.Names(1) + list.ValueFromIndex(1), u"");
  EXPECT_EQ(list.IndexOfName(u"plain"), -1);
  list.SetValueFromIndex(0, u"");
  EXPECT_EQ(list.CommaText(), u"plain");
  list.SetValueFromIndex(-1, u"v");
  EXPECT_EQ(list[1], u"=v");
  list.Add(u"Key=old=x");
  list.SetValueFromIndex(2, u"new");
  EXPECT_EQ(list[2], u"Key=new");
}

TEST(StringListValues, CustomSeparatorAndNonAsciiNames) {
  TStringList list;
  list.SetNameValueSeparator(u':');
  list.Add(u"Ärger:1");
  list.Add(u"b=c:2");
  EXPECT_EQ(list.Values(u"ärger"), u"1");  // case-insensitive beyond ASCII
  EXPECT_EQ(list.Values(u"b=c"), u"2");
  list.SetCaseSensitive(true);
  EXPECT_EQ(list.Values(u"ärger"), u"");
  EXPECT_EQ(list.Values(u"Ärger"), u"1");
}

// --- Text ----------------------------------------------------------------------------------------

TEST(StringListText, CustomLineBreakAndTrailingBreak) {
  TStringList list;
  list.SetLineBreak(u"|");
  list.SetText(u"a|b\r\nc|");
  EXPECT_EQ(list.ToStringArray(), (TStringDynArray{u"a", u"b\r\nc"}));
  EXPECT_EQ(list.Text(), u"a|b\r\nc|");
  list.SetTrailingLineBreak(false);
  EXPECT_EQ(list.Text(), u"a|b\r\nc");
}

TEST(StringListText, NulIsAnOrdinaryCharacterInText) {
  TStringList list;
  list.SetText(String(u"a\0b\nc", 5));
  ASSERT_EQ(list.Count(), 2);
  EXPECT_EQ(list[0], String(u"a\0b", 3));
}

// --- Errors --------------------------------------------------------------------------------------

TEST(StringListErrors, BadIndexNamesTheIndex) {
  TStringList list;
  list.Add(u"x");
  EXPECT_EQ(test::MessageOf<EStringListError>([&] { list.Strings(3); }),
            u"List index out of bounds (3)");
  EXPECT_THROW(list.Delete(-1), EStringListError);
  EXPECT_THROW(list.Insert(2, u"y"), EStringListError);
  EXPECT_THROW(list.Exchange(0, 1), EStringListError);
  EXPECT_THROW(list.SetObjects(1, nullptr), EStringListError);
  list.Insert(1, u"y");  // Count() itself is a valid insert position
  EXPECT_EQ(list.Count(), 2);
}

TEST(StringListErrors, SortedListRefusesPositionalChanges) {
  TStringList list;
  list.SetSorted(true);
  list.Add(u"b");
  list.Add(u"a");
  EXPECT_THROW(list.Insert(0, u"c"), EStringListError);
  EXPECT_THROW(list.SetStrings(0, u"z"), EStringListError);
  EXPECT_THROW(list.Move(0, 1), EStringListError);
  list.SetDuplicates(dupError);
  EXPECT_EQ(test::MessageOf<EStringListError>([&] { list.Add(u"A"); }),
            u"String list does not allow duplicates");
}

// --- Sorting and searching -----------------------------------------------------------------------

std::vector<String> RandomWords(size_t n, unsigned seed) {
  std::mt19937 rng(seed);
  const std::u16string alphabet = u"aAbB-_ 1é";
  std::vector<String> words;
  for (size_t i = 0; i < n; ++i) {
    String w;
    size_t len = rng() % 4;
    for (size_t j = 0; j < len; ++j) w += alphabet[rng() % alphabet.size()];
    words.push_back(w);
  }
  return words;
}

TEST(StringListSorted, LookupsAgreeWithALinearScanUnderTheSameComparison) {
  for (bool case_sensitive : {false, true}) {
    TStringList list;
    list.SetCaseSensitive(case_sensitive);
    list.SetSorted(true);
    list.SetDuplicates(dupAccept);
    auto words = RandomWords(300, case_sensitive ? 7 : 8);
    for (const String& w : words) list.Add(w);
    auto compare = case_sensitive ? AnsiCompareStr : AnsiCompareText;
    for (int32_t i = 1; i < list.Count(); ++i) {
      ASSERT_LE(compare(list[i - 1], list[i]), 0) << i;
    }
    for (const String& probe : RandomWords(200, 99)) {
      int32_t expected = -1;
      for (int32_t i = 0; i < list.Count() && expected < 0; ++i) {
        if (compare(list[i], probe) == 0) expected = i;
      }
      EXPECT_EQ(list.IndexOf(probe), expected) << ToUtf8(probe);
    }
  }
}

// Comparisons and lookups take a shortcut for printable ASCII; it must agree exactly with the
// collation functions, or sorting, Find and IndexOf would disagree with each other.
class ComparingList : public TStringList {
 public:
  using TStringList::CompareStrings;
};

String RandomText(std::mt19937& rng, const std::u16string& alphabet) {
  String s;
  for (size_t i = rng() % 5; i > 0; --i) s += alphabet[rng() % alphabet.size()];
  return s;
}

std::u16string PrintableAscii() {
  std::u16string all;
  for (Char c = 0x20; c < 0x7F; ++c) all += c;
  return all;
}

TEST(StringListSearch, AsciiShortcutAgreesWithTheCollation) {
  std::mt19937 rng(3);
  const std::u16string alphabets[] = {PrintableAscii(), u"aAbB0 -_'", u"aA", u"aA\u00E9\u0301\x01b",
                                      std::u16string(u"a\0=b", 4)};
  for (bool case_sensitive : {false, true}) {
    ComparingList list;
    list.SetCaseSensitive(case_sensitive);
    auto collate = case_sensitive ? AnsiCompareStr : AnsiCompareText;
    for (const auto& alphabet : alphabets) {
      for (int round = 0; round < 5000; ++round) {
        String a = RandomText(rng, alphabet);
        String b = RandomText(rng, alphabet);
        int32_t expected = collate(a, b);
        ASSERT_EQ(list.CompareStrings(a, b), expected) << ToUtf8(a) << " / " << ToUtf8(b);
        list.Clear();
        list.Add(a);
        list.Add(a + u"=v");
        ASSERT_EQ(list.IndexOf(b), expected == 0 ? 0 : -1) << ToUtf8(a) << " / " << ToUtf8(b);
        if (a.find(u'=') == String::npos && b.find(u'=') == String::npos) {
          ASSERT_EQ(list.IndexOfName(b), expected == 0 ? 1 : -1) << ToUtf8(a) << " / " << ToUtf8(b);
        }
      }
    }
  }
}

std::vector<String> AllPairs() {
  std::vector<String> pairs;
  for (Char x = 0x20; x < 0x7F; ++x) {
    for (Char y = 0x20; y < 0x7F; ++y) pairs.push_back(String{x, y});
  }
  return pairs;
}

// Lists of printable ASCII lines sort and search by a fast path of their own; it must give
// exactly the order of the collation functions, for every pair of characters.
TEST(StringListCollation, SortAndFindFollowTheCollationOnEveryPairOfCharacters) {
  std::vector<String> pairs = AllPairs();
  std::shuffle(pairs.begin(), pairs.end(), std::mt19937(5));
  for (bool case_sensitive : {false, true}) {
    auto collate = case_sensitive ? AnsiCompareStr : AnsiCompareText;
    TStringList list;
    list.SetCaseSensitive(case_sensitive);
    list.SetDuplicates(dupAccept);
    for (const String& s : pairs) list.Add(s);
    list.SetSorted(true);
    for (int32_t i = 1; i < list.Count(); ++i) {
      ASSERT_LE(collate(list[i - 1], list[i]), 0)
          << ToUtf8(list[i - 1]) << " / " << ToUtf8(list[i]);
    }
    // Every line is found, at the first line the collation calls equal to it.
    for (int32_t i = 0; i < list.Count(); ++i) {
      int32_t at = -1;
      ASSERT_TRUE(list.Find(list[i], at)) << ToUtf8(list[i]);
      ASSERT_EQ(collate(list[at], list[i]), 0);
      ASSERT_TRUE(at == 0 || collate(list[at - 1], list[i]) < 0) << ToUtf8(list[i]);
    }
  }
}

TEST(StringListSorted, CaseSensitivityChangeResorts) {
  TStringList list;
  list.SetCommaText(u"b,B,a,A");
  list.SetSorted(true);
  EXPECT_EQ(list.IndexOf(u"a"), 0);  // "a" and "A" are equal case-insensitively
  list.SetCaseSensitive(true);
  for (int32_t i = 1; i < list.Count(); ++i) EXPECT_LT(AnsiCompareStr(list[i - 1], list[i]), 0);
  EXPECT_EQ(list[list.IndexOf(u"B")], u"B");
}

TEST(StringListSorted, CustomSortReceivesIndexesIntoTheList) {
  TStringList list;
  list.SetCommaText(u"ccc,a,bb");
  list.CustomSort([](TStringList& l, int32_t i, int32_t j) {
    return static_cast<int32_t>(l[i].size()) - static_cast<int32_t>(l[j].size());
  });
  EXPECT_EQ(list.CommaText(), u"a,bb,ccc");
}

TEST(StringListSorted, AddedObjectStaysWithItsLine) {
  TStringList list;
  list.SetSorted(true);
  list.AddObject(u"b", TStrings::TagToObject(2));
  list.AddObject(u"a", TStrings::TagToObject(1));
  EXPECT_EQ(TStrings::ObjectToTag(list.Objects(0)), 1);
  EXPECT_EQ(list.IndexOfObject(TStrings::TagToObject(2)), 1);
}

// --- Objects and ownership -----------------------------------------------------------------------

class Counted : public TObject {
 public:
  explicit Counted(int& alive) : alive_(alive) { ++alive_; }
  ~Counted() override { --alive_; }

 private:
  int& alive_;
};

TEST(StringListObjects, OwnedObjectsAreFreedOnDeleteClearAndDestruction) {
  int alive = 0;
  Counted keep(alive);
  {
    TStringList not_owning;
    not_owning.AddObject(u"x", &keep);
    not_owning.Clear();
  }
  EXPECT_EQ(alive, 1);
  alive = 0;
  {
    TStringList list(true);
    for (int i = 0; i < 4; ++i) list.AddObject(u"x", new Counted(alive));
    list.Move(0, 3);  // moving must not free
    list.Exchange(0, 1);
    EXPECT_EQ(alive, 4);
    list.Delete(0);
    EXPECT_EQ(alive, 3);
    list.SetStrings(0, u"y");
    list.Clear();
    EXPECT_EQ(alive, 0);
    list.AddObject(u"z", new Counted(alive));
  }
  EXPECT_EQ(alive, 0);
}

// --- Moving lines --------------------------------------------------------------------------------

TEST(StringListMove, MovesInBothDirections) {
  TStringList list;
  list.SetCommaText(u"a,b,c,d");
  list.Move(0, 2);
  EXPECT_EQ(list.CommaText(), u"b,c,a,d");
  list.Move(3, 0);
  EXPECT_EQ(list.CommaText(), u"d,b,c,a");
  list.Exchange(0, 3);
  EXPECT_EQ(list.CommaText(), u"a,b,c,d");
  list.AddStrings(list);  // adding a list to itself doubles it
  EXPECT_EQ(list.CommaText(), u"a,b,c,d,a,b,c,d");
}

// --- Notifications -------------------------------------------------------------------------------

struct Events {
  int changing = 0;
  int changed = 0;
  void Attach(TStrings& list) {
    list.OnChanging = [this](TObject*) { ++changing; };
    list.OnChange = [this](TObject* sender) {
      EXPECT_NE(sender, nullptr);
      ++changed;
    };
  }
};

TEST(StringListNotify, EachChangeFiresOncePairOutsideUpdates) {
  TStringList list;
  Events ev;
  ev.Attach(list);
  list.Add(u"a");
  list.SetObjects(0, nullptr);
  EXPECT_EQ(ev.changing, 2);
  EXPECT_EQ(ev.changed, 2);
  TStringList empty;
  Events none;
  none.Attach(empty);
  empty.Clear();
  EXPECT_EQ(none.changed, 0);
}

TEST(StringListNotify, NestedUpdatesFireOnceForTheOutermost) {
  TStringList list;
  Events ev;
  ev.Attach(list);
  list.BeginUpdate();
  list.BeginUpdate();
  list.SetText(u"a\nb\nc");
  list.Delete(0);
  list.EndUpdate();
  EXPECT_EQ(ev.changed, 0);
  EXPECT_EQ(list.UpdateCount(), 1);
  list.EndUpdate();
  EXPECT_EQ(ev.changing, 1);
  EXPECT_EQ(ev.changed, 1);
  list.EndUpdate();  // unbalanced: ignored
  EXPECT_EQ(list.UpdateCount(), 0);
  list.SetCommaText(u"x,y,z");
  EXPECT_EQ(ev.changed, 2);
}

TEST(StringListNotify, UpdateEndsEvenWhenAnErrorEscapes) {
  TStringList list;
  list.SetSorted(true);
  list.SetDuplicates(dupError);
  EXPECT_THROW(list.SetCommaText(u"a,a"), EStringListError);
  EXPECT_EQ(list.UpdateCount(), 0);
}

// --- Assign and Equals ---------------------------------------------------------------------------

TEST(StringListAssign, CopiesLinesObjectsAndSettings) {
  TStringList source;
  source.SetCaseSensitive(true);
  source.SetDuplicates(dupAccept);
  source.SetSorted(true);
  source.SetDelimiter(u';');
  source.SetQuoteChar(u'\'');
  source.SetNameValueSeparator(u':');
  source.SetLineBreak(u"\n");
  source.AddObject(u"b", TStrings::TagToObject(5));
  source.Add(u"a");
  source.Add(u"a");
  TStringList target;
  target.Add(u"old");
  target.Assign(source);
  EXPECT_TRUE(target.Equals(source));
  EXPECT_TRUE(target.Sorted());
  EXPECT_TRUE(target.CaseSensitive());
  EXPECT_EQ(target.Duplicates(), dupAccept);
  EXPECT_EQ(target.Delimiter(), u';');
  EXPECT_EQ(target.QuoteChar(), u'\'');
  EXPECT_EQ(target.NameValueSeparator(), u':');
  EXPECT_EQ(target.Text(), u"a\na\nb\n");
  EXPECT_EQ(TStrings::ObjectToTag(target.Objects(2)), 5);
  EXPECT_THROW(target.SetStrings(0, u"A"), EStringListError);  // target is sorted now
}

TEST(StringListAssign, EqualsComparesLinesExactly) {
  TStringList a, b;
  a.SetCommaText(u"x,y");
  b.SetCommaText(u"x,Y");
  EXPECT_FALSE(a.Equals(b));
  b.SetCommaText(u"x,y");
  b.SetObjects(0, TStrings::TagToObject(1));
  EXPECT_TRUE(a.Equals(b));
}

// --- Streams -------------------------------------------------------------------------------------

TEST(StringListStream, LoadSkipsByteOrderMarkAndReplacesBadBytes) {
  TStringStream in(std::string("\xEF\xBB\xBFone\r\ntw\xFFo\n"));
  TStringList list;
  list.LoadFromStream(in);
  EXPECT_EQ(list.ToStringArray(), (TStringDynArray{u"one", u"tw\uFFFDo"}));
}

TEST(StringListStream, LoadReadsFromThePositionAndUnderstandsUtf16) {
  TStringStream in(std::string("skip|a\nb"));
  in.SetPosition(5);
  TStringList list;
  list.LoadFromStream(in);
  EXPECT_EQ(list.CommaText(), u"a,b");
  TStringStream utf16(
      std::string("\xFF\xFE"
                  "a\0\n\0\x16\x04",
                  8));
  list.LoadFromStream(utf16);
  EXPECT_EQ(list.ToStringArray(), (TStringDynArray{u"a", u"\u0416"}));
}

TEST(StringListStream, SaveWritesUtf8AndOptionalByteOrderMark) {
  TStringList list;
  list.SetCommaText(u"Жук,x");
  TStringStream out;
  list.SaveToStream(out);
  EXPECT_EQ(out.DataString(), u"Жук\r\nx\r\n");
  EXPECT_EQ(out.Size(), 11);
  list.SetWriteBOM(true);
  TStringStream bom;
  list.SaveToStream(bom);
  EXPECT_EQ(bom.Size(), 14);
  EXPECT_EQ(bom.Memory()[0], 0xEF);
}

TEST(StringListStream, FileRoundTripAndMissingFileError) {
  std::string path = ::testing::TempDir() + "string_list_test.txt";
  TStringList list;
  list.SetCommaText(u"\"a b\",c=d,é");
  list.SaveToFile(path);
  TStringList back;
  back.LoadFromFile(path);
  EXPECT_TRUE(back.Equals(list));
  std::remove(path.c_str());
  const String message = test::MessageOf<EFOpenError>([&] { back.LoadFromFile(path); });
  EXPECT_EQ(ToUtf8(message).rfind("Cannot open file \"" + path + "\". ", 0), 0u) << ToUtf8(message);
}

}  // namespace
}  // namespace vex
