// Lookups in long query lists go through hash indexes; these tests change such lists in every
// way the interface allows and check each lookup against a plain scan of the keys.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <thread>
#include <vector>

#include "vex/companion/query_list.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

String Num(unsigned n) {
  const std::string digits = std::to_string(n);
  return String(digits.begin(), digits.end());
}

int32_t ScanKey(const TQueryList& list, const String& key) {
  for (int32_t i = 0; i < list.Count(); ++i) {
    if (list.Keys(i) == key) return i;
  }
  return -1;
}

int32_t ScanName(const TQueryList& list, const String& name) {
  for (int32_t i = 0; i < list.Count(); ++i) {
    const String& key = list.Keys(i);
    const size_t eq = key.find(u'=');
    if (eq != String::npos && key.compare(0, eq, name) == 0 && eq == name.size()) return i;
  }
  return -1;
}

// Keys are drawn from a small set so that duplicates (first one wins) are common; about half
// are name=value lines.
String RandomKey(std::mt19937& rng) {
  const String name = u"k" + Num(rng() % 40);
  return rng() % 2 ? name : name + u"=" + Num(rng() % 5);
}

void ExpectLookupsAgreeWithAScan(const TQueryList& list, int step) {
  for (unsigned n = 0; n < 40; ++n) {
    const String name = u"k" + Num(n);
    ASSERT_EQ(list.IndexOfKey(name), ScanKey(list, name)) << ToUtf8(name) << " step " << step;
    ASSERT_EQ(list.IndexOfName(name), ScanName(list, name)) << ToUtf8(name) << " step " << step;
    for (unsigned v = 0; v < 5; ++v) {
      const String key = name + u"=" + Num(v);
      ASSERT_EQ(list.IndexOfKey(key), ScanKey(list, key)) << ToUtf8(key) << " step " << step;
    }
  }
}

TEST(QueryListIndex, LookupsFollowEveryKindOfChange) {
  std::mt19937 rng(9);
  TQueryList list;
  for (int i = 0; i < 60; ++i) list.Add(RandomKey(rng));
  for (int step = 0; step < 400; ++step) {
    const int32_t count = list.Count();
    const int32_t at = count == 0 ? 0 : static_cast<int32_t>(rng() % static_cast<unsigned>(count));
    switch (rng() % 8) {
      case 0:
        list.Add(RandomKey(rng));
        break;
      case 1:
        list.Insert(at, RandomKey(rng));
        break;
      case 2:
        if (count > 20) list.Delete(at);
        break;
      case 3:
        list.SetValue(u"k" + Num(rng() % 40), Num(rng() % 5));
        break;
      case 4:
        if (count > 0) list.Items(at)->SetKey(RandomKey(rng));
        break;
      case 5:
        list.FindOrCreate(RandomKey(rng));
        break;
      case 6: {
        TQueryList copy;
        copy.Assign(list);
        if (count > 0) copy.Delete(0);
        list.Assign(copy);
        break;
      }
      case 7:  // every item replaced by a re-import
        list.ImportFromStrWithTabs(list.ExportToStrWithTabs());
        break;
    }
    ExpectLookupsAgreeWithAScan(list, step);
  }
}

TEST(QueryListIndex, ImportedItemsKeepTheirListsIndexCurrent) {
  String text;
  for (unsigned i = 0; i < 20; ++i) text += u"k" + Num(i) + u"\n";
  for (unsigned i = 0; i < 20; ++i) text += u"\tc" + Num(i) + u"\n";
  TQueryList list;
  list.ImportFromStrWithTabs(text);
  TQueryList& children = *list.SubList(19);
  ASSERT_EQ(list.IndexOfKey(u"k5"), 5);
  ASSERT_EQ(children.IndexOfKey(u"c7"), 7);
  list.Items(5)->SetKey(u"x");
  children.Items(7)->SetKey(u"y");
  EXPECT_EQ(list.IndexOfKey(u"x"), 5);
  EXPECT_EQ(list.IndexOfKey(u"k5"), -1);
  EXPECT_EQ(children.IndexOfKey(u"y"), 7);
  EXPECT_EQ(children.IndexOfKey(u"c7"), -1);
}

TEST(QueryListIndex, PathsThroughLongLevels) {
  TQueryList list;
  for (unsigned s = 0; s < 30; ++s) {
    for (unsigned k = 0; k < 20; ++k) {
      list.SetValueByPath(u"S" + Num(s) + u".K" + Num(k), Num(s * 100 + k));
    }
  }
  EXPECT_EQ(list.Count(), 30);
  EXPECT_EQ(list.GetValueByPath(u"S17.K19"), u"1719");
  EXPECT_EQ(list.GetValueByPath(u"S17.K20", u"none"), u"none");
  EXPECT_EQ(list.GetValueByPath(u"S30.K1", u"none"), u"none");
  list.SetValueByPath(u"S17.K19", u"x");
  EXPECT_EQ(list.GetValueByPath(u"S17.K19"), u"x");
  EXPECT_EQ(list.GetItemByPath(u"S3.K2=302"), list.GetItemList(u"S3")->Items(2));
}

// Readers that meet a list without an index race to build it; all must see the same answers.
TEST(QueryListIndex, ConcurrentFirstLookupsAgree) {
  for (int round = 0; round < 20; ++round) {
    TQueryList list;
    for (unsigned i = 0; i < 200; ++i) list.SetValue(u"n" + Num(i), Num(i));
    std::vector<int> wrong(4, 0);
    std::vector<std::thread> readers;
    for (size_t t = 0; t < wrong.size(); ++t) {
      readers.emplace_back([&list, &wrong, t] {
        for (unsigned i = 0; i < 200; ++i) {
          if (list.IndexOfName(u"n" + Num(i)) != static_cast<int32_t>(i)) ++wrong[t];
          if (list.GetValue(u"n" + Num(i)) != Num(i)) ++wrong[t];
        }
      });
    }
    for (auto& r : readers) r.join();
    for (int w : wrong) ASSERT_EQ(w, 0);
  }
}

}  // namespace
}  // namespace vex
