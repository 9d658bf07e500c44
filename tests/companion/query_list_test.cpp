#include "vex/companion/query_list.h"

#include <gtest/gtest.h>

#include <string>

#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"

namespace vex {
namespace {

// Builds the canonical export text from lines written with '\t' and joined by CR LF.
String Lines(std::initializer_list<const char16_t*> lines) {
  String text;
  for (const char16_t* line : lines) {
    text += line;
    text += u"\r\n";
  }
  return text;
}

// A compact picture of a tree: "key(child,child(grandchild))", for comparing shapes.
String Shape(const TQueryList& list) {
  String s;
  for (int32_t i = 0; i < list.Count(); ++i) {
    if (i > 0) s += u',';
    s += list.Keys(i);
    if (const TQueryList* sub = list.SubList(i)) s += u"(" + Shape(*sub) + u")";
  }
  return s;
}

TEST(QueryListTabs, ImportBuildsTheTreeByLeadingTabs) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"a\r\n\tb\r\n\t\tc\r\n\td\r\ne\r\n");
  EXPECT_EQ(Shape(list), u"a(b(c),d),e");
}

TEST(QueryListTabs, JumpOfSeveralLevelsCountsAsOne) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"a\n\t\t\tb\n\t\t\t\t\tc\n\td\n\t\t\t\t\t\te");
  EXPECT_EQ(Shape(list), u"a(b(c),d(e))");
  // The first line is at depth 0 whatever its tabs.
  list.ImportFromStrWithTabs(u"\t\tx\n\t\ty\n");
  EXPECT_EQ(Shape(list), u"x(y)");
}

TEST(QueryListTabs, SkipsLinesThatAreEmptyAfterTheirTabs) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"\n\t\t\na\n\n\t\t\n\tb\n\t\n c\n");
  // " c" keeps its blank: only tabs count as indentation and nothing is trimmed.
  EXPECT_EQ(Shape(list), u"a(b), c");
}

TEST(QueryListTabs, AcceptsCrLfLfAndCrLineBreaks) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"a\r\n\tb\r\tc\n\t\td\r\n\r\ne");
  EXPECT_EQ(Shape(list), u"a(b,c(d)),e");
}

TEST(QueryListTabs, ExportWritesDepthTabsKeyAndCrLf) {
  TQueryList list;
  list.Add(u"a")->SubList()->Add(u"b=1")->SubList()->Add(u"c");
  list.Add(u"d");
  EXPECT_EQ(list.ExportToStrWithTabs(), Lines({u"a", u"\tb=1", u"\t\tc", u"d"}));
  TQueryList empty;
  EXPECT_EQ(empty.ExportToStrWithTabs(), u"");
}

TEST(QueryListTabs, ImportOfAnExportGivesTheSameTree) {
  const String texts[] = {
      Lines({u"a"}),
      Lines({u"a", u"\tb", u"\t\tc", u"\t\t\td", u"e", u"\tf", u"\tg"}),
      Lines({u"x=1", u"x=1", u"\ty = 2 ", u"\t\t=", u"\t\t\t\t", u"z"}),
      Lines({u"\u0416\u0443\u043a", u"\t\U0001F600", u"\t\t a b"}),
  };
  for (const String& text : texts) {
    TQueryList first;
    first.ImportFromStrWithTabs(text);
    const String exported = first.ExportToStrWithTabs();
    TQueryList second;
    second.ImportFromStrWithTabs(exported);
    EXPECT_EQ(Shape(second), Shape(first));
    EXPECT_EQ(second.ExportToStrWithTabs(), exported);
  }
}

TEST(QueryListTabs, ImportReplacesThePreviousContent) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"a\n\tb\n");
  list.ImportFromStrWithTabs(u"c\n");
  EXPECT_EQ(Shape(list), u"c");
  list.ImportFromStrWithTabs(u"");
  EXPECT_EQ(list.Count(), 0);
}

TEST(QueryListTabs, StringListImportAndExportMatchTheText) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"a\n\tb\n\t\tc\nd\n");
  TStringList lines;
  lines.Add(u"old");
  int changes = 0;
  lines.OnChange = [&changes](TObject*) { ++changes; };
  list.ExportToListWithTabs(lines);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(lines.Text(), list.ExportToStrWithTabs());

  TQueryList back;
  back.ImportFromListWithTabs(lines);
  EXPECT_EQ(Shape(back), u"a(b(c)),d");
}

TEST(QueryListTabs, LargeFlatAndWideInputsImportQuickly) {
  String text;
  for (int i = 0; i < 100000; ++i) {
    text += (i % 10 == 0) ? u"group" : u"\titem";
    text += u"\r\n";
  }
  TQueryList list;
  list.ImportFromStrWithTabs(text);
  ASSERT_EQ(list.Count(), 10000);
  EXPECT_EQ(list.SubList(9999)->Count(), 9);
  EXPECT_EQ(list.ExportToStrWithTabs(), text);
}

TEST(QueryListTabs, DeepInputsNeitherRecurseNorCrash) {
  // Depth grows by one per line, so the text is quadratic in the depth; 3000 levels keeps the
  // test small while being far beyond what a recursive walk on a small stack survives with
  // sanitizers.
  const int depth = 3000;
  String text;
  for (int i = 0; i < depth; ++i) text += String(static_cast<size_t>(i), u'\t') + u"k\n";
  // A line with a huge run of tabs is one level below the previous line.
  text += String(100000, u'\t') + u"deepest\n";
  TQueryList list;
  list.ImportFromStrWithTabs(text);
  const TQueryList* level = &list;
  int levels = 0;
  while (level != nullptr && level->Count() > 0) {
    ++levels;
    level = level->SubList(level->Count() - 1);
  }
  EXPECT_EQ(levels, depth + 1);
  TQueryList again;
  again.ImportFromStrWithTabs(list.ExportToStrWithTabs());
  EXPECT_EQ(again.ExportToStrWithTabs(), list.ExportToStrWithTabs());
}

TEST(QueryListTree, HundredThousandLevelsCopyClearAndDestroySafely) {
  auto list = std::make_unique<TQueryList>();
  TQueryList* level = list.get();
  for (int i = 0; i < 100000; ++i) level = level->Add(u"n")->SubList();
  level->Add(u"leaf");
  TQueryList copy;
  copy.Assign(*list);
  String path;
  for (int i = 0; i < 100000; ++i) path += u"n.";
  ASSERT_NE(copy.GetItemByPath(path + u"leaf"), nullptr);
  EXPECT_EQ(copy.GetItemByPath(path + u"leaf")->Key(), u"leaf");
  list.reset();  // destruction of the original
  copy.Clear();
  EXPECT_EQ(copy.Count(), 0);
}

TEST(QueryListTree, AssignMakesAnIndependentDeepCopy) {
  TQueryList source;
  source.ImportFromStrWithTabs(u"a\n\tb=1\n\t\tc\nd\n");
  source.FindItem(u"d")->SubList();  // an empty child list is part of the tree too
  TQueryList copy;
  copy.Add(u"stale");
  copy.Assign(source);
  EXPECT_EQ(Shape(copy), u"a(b=1(c)),d()");

  source.GetItemList(u"a")->SetValue(u"b", u"2");
  source.GetItemList(u"a")->SubList(0)->Add(u"new");
  source.Delete(1);
  EXPECT_EQ(Shape(copy), u"a(b=1(c)),d()");
  EXPECT_NE(copy.Items(0), source.Items(0));
}

TEST(QueryListTree, AssignFromOwnSubtreeOrSelfIsSafe) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"a\n\tb\n\t\tc\nd\n");
  list.Assign(list);
  EXPECT_EQ(Shape(list), u"a(b(c)),d");
  list.Assign(*list.SubList(0));
  EXPECT_EQ(Shape(list), u"b(c)");
}

TEST(QueryListTree, IndexAccessorsRaiseOnBadIndex) {
  TQueryList list;
  list.Add(u"a");
  EXPECT_THROW(list.Keys(1), EListError);
  EXPECT_THROW(list.Items(-1), EListError);
  EXPECT_THROW(list.Delete(1), EListError);
  EXPECT_THROW(list.Insert(2, u"x"), EListError);
  try {
    list.Keys(7);
    FAIL();
  } catch (const EListError& e) {
    EXPECT_EQ(e.Message(), u"List index out of bounds (7)");
  }
}

TEST(QueryListTree, GetItemByIndexReportsKeyAndChildList) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"rule\n\tSubText=a\nplain\n");
  String key = u"untouched";
  TQueryList* items = nullptr;
  EXPECT_TRUE(list.GetItemByIndex(0, key, items));
  EXPECT_EQ(key, u"rule");
  ASSERT_NE(items, nullptr);
  EXPECT_EQ(items->GetValue(u"SubText"), u"a");
  EXPECT_FALSE(list.GetItemByIndex(1, key, items));
  EXPECT_EQ(key, u"plain");
  EXPECT_EQ(items, nullptr);
  key = u"untouched";
  EXPECT_FALSE(list.GetItemByIndex(2, key, items));
  EXPECT_FALSE(list.GetItemByIndex(-1, key, items));
  EXPECT_EQ(key, u"untouched");
}

TEST(QueryListTree, InsertDeleteKeepOtherItemPointers) {
  TQueryList list;
  TQueryItem* a = list.Add(u"a");
  TQueryItem* c = list.Add(u"c");
  TQueryItem* b = list.Insert(1, u"b");
  EXPECT_EQ(Shape(list), u"a,b,c");
  list.Delete(0);
  EXPECT_EQ(list.Items(0), b);
  EXPECT_EQ(list.Items(1), c);
  (void)a;
}

TEST(QueryListKeys, LookupsCompareWholeKeysCaseSensitively) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"Alpha\nalpha\nAlphabet\nalpha\n");
  EXPECT_EQ(list.IndexOfKey(u"alpha"), 1);
  EXPECT_EQ(list.IndexOfKey(u"Alph"), -1);
  EXPECT_EQ(list.IndexOfKey(u"ALPHA"), -1);
  EXPECT_EQ(list.FindItem(u"alpha"), list.Items(1));
  EXPECT_EQ(list.FindItem(u"beta"), nullptr);
}

TEST(QueryListKeys, FindOrCreateAppendsOnlyWhenMissing) {
  TQueryList list;
  TQueryItem* first = list.FindOrCreate(u"g");
  EXPECT_EQ(list.FindOrCreate(u"g"), first);
  list.FindOrCreate(u"G");
  EXPECT_EQ(Shape(list), u"g,G");
  EXPECT_EQ(list.GetItemList(u"g"), nullptr);  // no child list until one is asked for
  TQueryList* sub = first->SubList();
  EXPECT_EQ(list.GetItemList(u"g"), sub);
  EXPECT_EQ(first->SubList(), sub);
}

TEST(QueryListValues, ValueIsTextAfterFirstEqualsOfFirstMatchingName) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"url=http://h/?a=1&b=2\nurl=second\nname\nname =x\n=empty name\n");
  EXPECT_EQ(list.GetValue(u"url"), u"http://h/?a=1&b=2");
  EXPECT_EQ(list.GetValue(u"name"), u"");           // a line without "=" has no name
  EXPECT_EQ(list.GetValue(u"name", u"def"), u"def");
  EXPECT_EQ(list.GetValue(u"name "), u"x");         // nothing is trimmed
  EXPECT_EQ(list.GetValue(u""), u"empty name");
  EXPECT_EQ(list.IndexOfName(u"url"), 0);
  EXPECT_EQ(list.Names(0), u"url");
  EXPECT_EQ(list.ValueFromIndex(0), u"http://h/?a=1&b=2");
  EXPECT_EQ(list.Names(2), u"");
  EXPECT_EQ(list.ValueFromIndex(2), u"");
}

TEST(QueryListValues, SetValueRewritesFirstMatchInPlaceOrAppends) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"a=1\n\tchild\nb=2\na=3\nc\n");
  list.SetValue(u"a", u"x=y");
  list.SetValue(u"c", u"4");
  EXPECT_EQ(Shape(list), u"a=x=y(child),b=2,a=3,c,c=4");
  EXPECT_EQ(list.GetValue(u"a"), u"x=y");
}

TEST(QueryListPaths, GetItemByPathFollowsWholeKeys) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"a\n\tb\n\t\tc=1\nx.y\n\tz\n");
  ASSERT_NE(list.GetItemByPath(u"a.b"), nullptr);
  EXPECT_EQ(list.GetItemByPath(u"a.b")->Key(), u"b");
  EXPECT_EQ(list.GetItemByPath(u"a.b.c=1")->Key(), u"c=1");
  EXPECT_EQ(list.GetItemByPath(u"a.c"), nullptr);
  EXPECT_EQ(list.GetItemByPath(u"a.b.c.d"), nullptr);
  EXPECT_EQ(list.GetItemByPath(u"x.y"), nullptr);
  EXPECT_EQ(list.GetItemByPath(u"x.y/z", u"/")->Key(), u"z");
  EXPECT_EQ(list.GetItemByPath(u"x.y", u"")->Key(), u"x.y");
}

TEST(QueryListPaths, ValueByPathReadsNameInTheLastList) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"Rec\n\tField='a.b'\n\tSub\n\t\tN=5\nTop=1\n");
  EXPECT_EQ(list.GetValueByPath(u"Rec.Field"), u"'a.b'");
  EXPECT_EQ(list.GetValueByPath(u"Rec.Sub.N"), u"5");
  EXPECT_EQ(list.GetValueByPath(u"Top"), u"1");
  EXPECT_EQ(list.GetValueByPath(u"Rec.Missing", u"dflt"), u"dflt");
  EXPECT_EQ(list.GetValueByPath(u"Nope.Sub.N", u"dflt"), u"dflt");
  EXPECT_EQ(list.GetValueByPath(u"Rec|Sub|N", u"", u"|"), u"5");
}

TEST(QueryListPaths, SetValueByPathCreatesMissingItems) {
  TQueryList list;
  list.ImportFromStrWithTabs(u"Rec\n\tA=1\n");
  list.SetValueByPath(u"Rec.A", u"2");
  list.SetValueByPath(u"Rec.Arr[0].X", u"7");
  list.SetValueByPath(u"Rec.Arr[0].Y", u"8");
  list.SetValueByPath(u"Top", u"t");
  EXPECT_EQ(list.ExportToStrWithTabs(),
            Lines({u"Rec", u"\tA=2", u"\tArr[0]", u"\t\tX=7", u"\t\tY=8", u"Top=t"}));
  EXPECT_EQ(list.GetValueByPath(u"Rec.Arr[0].Y"), u"8");
}

TEST(QueryGroupList, SectionsGiveListsStringsAndValues) {
  TQueryGroupList doc;
  doc.ImportFromStrWithTabs(
      u"Options\n\tHeaders=Cols\n\tChars=.X\nCols\n\tA\n\tB\n\tC\nEmpty\nBitLines\n\tX.X\n");
  ASSERT_NE(doc.GetItemList(u"Cols"), nullptr);
  EXPECT_EQ(doc.GetItemList(u"Cols")->Count(), 3);
  EXPECT_EQ(doc.GetItemList(u"Nope"), nullptr);
  EXPECT_EQ(doc.GetValueByKey(u"Options", u"Headers"), u"Cols");
  EXPECT_EQ(doc.GetValueByKey(u"Options", u"Titles"), u"");
  EXPECT_EQ(doc.GetValueByKey(u"Nope", u"Headers", u"d"), u"d");

  TStrings* cols = doc.GetItemStrings(u"Cols");
  ASSERT_NE(cols, nullptr);
  EXPECT_EQ(cols->Text(), u"A\r\nB\r\nC\r\n");
  EXPECT_EQ(cols->IndexOf(u"a"), -1);  // case-sensitive like the keys
  EXPECT_EQ(doc.GetItemStrings(u"Nope"), nullptr);
  ASSERT_NE(doc.GetItemStrings(u"Empty"), nullptr);
  EXPECT_EQ(doc.GetItemStrings(u"Empty")->Count(), 0);

  TStringList mine;
  mine.Add(u"kept");
  EXPECT_FALSE(doc.GetItemStrings(u"Nope", mine));
  EXPECT_EQ(mine.Count(), 1);
  EXPECT_TRUE(doc.GetItemStrings(u"BitLines", mine));
  EXPECT_EQ(mine.Text(), u"X.X\r\n");
}

TEST(QueryGroupList, ItemStringsSurviveReimportAndRefreshOnNextCall) {
  TQueryGroupList doc;
  doc.ImportFromStrWithTabs(u"Rows\n\tR1\n\tR2\n");
  TStrings* rows = doc.GetItemStrings(u"Rows");
  doc.ImportFromStrWithTabs(u"Rows\n\tS1\n");
  EXPECT_EQ(rows->Count(), 2);  // still valid, not yet refreshed
  EXPECT_EQ(doc.GetItemStrings(u"Rows"), rows);
  EXPECT_EQ(rows->Text(), u"S1\r\n");
}

}  // namespace
}  // namespace vex
