#include "vex/viewers/check_tv.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "vex/companion/query_list.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

void SetLines(TStringList& lines, const String& text) {
  lines.Clear();
  lines.SetText(text);
}

TCheckTreeNode* Import(TCheckTree& tree, const String& text) {
  TStringList lines;
  SetLines(lines, text);
  ImportTreeFromList(tree, lines);
  return tree.GetFirstNode();
}

String Export(const TCheckTree& tree) {
  TQueryList list;
  ExportTreeToQueryList(tree, list);
  return list.ExportToStrWithTabs();
}

struct DecodeCase {
  const char16_t* key;
  bool matched;
  TNodeDataRec data;
  const char16_t* text;
};

TEST(CheckTreeKeys, DecodesThePatternWhereverItStarts) {
  const DecodeCase cases[] = {
      {u"1#3|Motor", true, {nkCheckBox, 2, true}, u"Motor"},
      {u"0@0|Off", true, {nkRadio, -1, false}, u"Off"},
      {u"x1#2|Name", true, {nkCheckBox, 1, true}, u"Name"},  // leading x dropped
      {u"[]0|Group", false, {}, u"[]0|Group"},               // plain prefix never matches
      {u"0#0012|a", true, {nkCheckBox, 11, false}, u"a"},
      {u"1@1|", true, {nkRadio, 0, true}, u""},
      {u"0#1|a1@2|b", true, {nkCheckBox, 0, false}, u"a1@2|b"},      // first match only
      {u"1#99999999999|Big", true, {nkCheckBox, -1, true}, u"Big"},  // digits out of range
      {u"2#1|x", false, {}, u"2#1|x"},
      {u"1#|x", false, {}, u"1#|x"},
      {u"1$1|x", false, {}, u"1$1|x"},
      {u"", false, {}, u""},
  };
  for (const auto& c : cases) {
    TNodeDataRec data{7, 7, true};
    String text = u"stale";
    EXPECT_EQ(DecodeNodeKey(c.key, data, text), c.matched) << ToUtf8(c.key);
    EXPECT_EQ(data, c.data) << ToUtf8(c.key);
    EXPECT_EQ(text, c.text) << ToUtf8(c.key);
  }
}

TEST(CheckTreeKeys, EncodesKindCheckedAndImagePlusOne) {
  EXPECT_EQ(EncodeNodeKey(nkCheckBox, 2, true, u"Motor"), u"1#3|Motor");
  EXPECT_EQ(EncodeNodeKey(nkRadio, -1, false, u"Off"), u"0@0|Off");
  EXPECT_EQ(EncodeNodeKey(nkPlain, -1, true, u"Group"), u"[]0|Group");  // checked not written
  EXPECT_EQ(EncodeNodeKey(nkPlain, 2147483647, false, u"x"), u"[]2147483648|x");
}

// Every node in order as "level kind checked image text", kind 0 plain, 1 box, 2 radio.
std::vector<std::string> Shape(const TCheckTree& tree) {
  std::vector<std::string> out;
  for (int32_t i = 0; i < tree.Count(); ++i) {
    const TCheckTreeNode* n = tree.Items(i);
    out.push_back(std::to_string(n->Level()) + " " + std::to_string(n->Kind()) + " " +
                  (n->Checked() ? "+" : "-") + " " + std::to_string(n->ImageIndex()) + " " +
                  ToUtf8(n->Text()));
  }
  return out;
}

TEST(CheckTreeImport, BuildsNodesLevelsAndOrder) {
  TCheckTree tree;
  Import(tree, u"1#3|Motor\r\n\t0@0|Slow\r\n\t1@0|Fast\r\n\t\t\t[]0|Deep\r\nplain\r\n\r\n\t0#1|x");
  // A jump of three levels counts as one; a plain prefix stays in the text.
  EXPECT_EQ(Shape(tree),
            (std::vector<std::string>{"0 1 + 2 Motor", "1 2 - -1 Slow", "1 2 + -1 Fast",
                                      "2 0 - -1 []0|Deep", "0 0 - -1 plain", "1 1 - 0 x"}));
  ASSERT_EQ(tree.RootCount(), 2);
  TCheckTreeNode* motor = tree.Items(0);
  TCheckTreeNode* slow = motor->GetFirstChild();
  TCheckTreeNode* fast = slow->GetNextSibling();
  EXPECT_TRUE(motor->CheckBox() && slow->RadioItem() && !fast->CheckBox());
  EXPECT_EQ(motor->Parent(), nullptr);
  EXPECT_EQ(slow->Parent(), motor);
  EXPECT_EQ(fast->GetPrevSibling(), slow);
  EXPECT_EQ(fast->GetFirstChild(), tree.Items(3));
  TCheckTreeNode* plain = motor->GetNextSibling();
  EXPECT_EQ(plain->GetNextSibling(), nullptr);
  EXPECT_EQ(plain->Item(0), tree.Items(5));
  for (int32_t i = 0; i < tree.Count(); ++i) {
    EXPECT_EQ(tree.Items(i)->AbsoluteIndex(), i);
    EXPECT_TRUE(tree.Items(i)->Expanded());
  }
  EXPECT_THROW(tree.Items(6), EListError);
  EXPECT_THROW(motor->Item(2), EListError);
}

TEST(CheckTreeImport, ReplacesTheTreeAndKeepsOneTickedRadioPerGroup) {
  TCheckTree tree;
  Import(tree, u"old\r\n\tchild");
  Import(tree, u"1@1|A\r\n1@1|B\r\n1#1|C\r\n\t1@1|D");
  ASSERT_EQ(tree.Count(), 4);
  EXPECT_FALSE(tree.Items(0)->Checked());  // B, ticked later, took the group over
  EXPECT_TRUE(tree.Items(1)->Checked());
  EXPECT_TRUE(tree.Items(2)->Checked());  // check boxes are not part of a radio group
  EXPECT_TRUE(tree.Items(3)->Checked());  // another parent, another group
  EXPECT_EQ(tree.Selected(), nullptr);
}

TEST(CheckTreeExport, WritesKeysDepthFirstAndMergesEqualSiblings) {
  TCheckTree tree;
  TCheckTreeNode* motor = tree.AddChild(nullptr, u"Motor");
  motor->SetCheckBox(true);
  motor->SetChecked(true);
  motor->SetImageIndex(2);
  TCheckTreeNode* a = tree.AddChild(motor, u"Same");
  tree.AddChild(a, u"first");
  TCheckTreeNode* b = tree.AddChild(motor, u"Same");
  tree.AddChild(b, u"first");
  tree.AddChild(b, u"second");
  TCheckTreeNode* radio = tree.AddChild(nullptr, u"Off");
  radio->SetRadioItem(true);
  EXPECT_EQ(Export(tree),
            u"1#3|Motor\r\n\t[]0|Same\r\n\t\t[]0|first\r\n\t\t[]0|second\r\n0@0|Off\r\n");
}

TEST(CheckTreeExport, PlainNodesGrowAPrefixEveryRoundTrip) {
  TCheckTree tree;
  Import(tree, u"[]0|Group\r\n\t1#3|Motor");
  EXPECT_EQ(tree.GetFirstNode()->Text(), u"[]0|Group");
  EXPECT_EQ(Export(tree), u"[]0|[]0|Group\r\n\t1#3|Motor\r\n");
  TStringList lines;
  ExportTreeToList(tree, lines);
  ASSERT_EQ(lines.Count(), 2);
  EXPECT_EQ(lines[1], u"\t1#3|Motor");
}

TEST(CheckTreeExport, MergesWideLevelsThroughTheIndex) {
  // More siblings than the linear lookup handles, with every key twice.
  TCheckTree tree;
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 50; ++i) {
      TCheckTreeNode* node = tree.AddChild(nullptr, u"n" + IntToStr(i));
      tree.AddChild(node, u"c" + IntToStr(round));
    }
  }
  TQueryList list;
  ExportTreeToQueryList(tree, list);
  ASSERT_EQ(list.Count(), 50);
  for (int i = 0; i < 50; ++i) {
    EXPECT_EQ(list.Keys(i), u"[]0|n" + IntToStr(i));
    ASSERT_NE(list.SubList(i), nullptr);
    EXPECT_EQ(list.SubList(i)->Count(), 2);
  }
}

TEST(CheckTree, DeepTreesImportExportAndFreeWithoutRecursion) {
  const int depth = 100000;
  TQueryList list;
  TQueryList* level = &list;
  for (int i = 0; i < depth; ++i) level = level->Add(u"0#1|n")->SubList();
  {
    TCheckTree tree;
    ImportTreeFromQueryList(tree, list);
    ASSERT_EQ(tree.Count(), depth);
    EXPECT_EQ(tree.Items(depth - 1)->Level(), depth - 1);
    TQueryList back;
    ExportTreeToQueryList(tree, back);
    const TQueryList* walk = &back;
    int levels = 0;
    while (walk != nullptr && walk->Count() == 1) {
      ++levels;
      walk = walk->SubList(0);
    }
    EXPECT_EQ(levels, depth);
  }
}

TEST(CheckTreeToggle, CascadesToCheckBoxesEightLevelsDown) {
  TCheckTree tree;
  TCheckTreeNode* top = tree.AddChild(nullptr, u"top");
  top->SetCheckBox(true);
  std::vector<TCheckTreeNode*> chain{top};
  for (int i = 1; i <= 9; ++i) {
    TCheckTreeNode* node = tree.AddChild(chain.back(), u"n" + IntToStr(i));
    if (i != 3) node->SetCheckBox(true);  // level 3 is plain: the cascade passes through it
    chain.push_back(node);
  }
  TCheckTreeNode* radio = tree.AddChild(top, u"radio");
  radio->SetRadioItem(true);

  EXPECT_TRUE(tree.ToggleByUser(*top));
  EXPECT_TRUE(top->Checked());
  for (int i = 1; i <= 8; ++i) EXPECT_EQ(chain[i]->Checked(), i != 3) << i;
  EXPECT_FALSE(chain[9]->Checked());
  EXPECT_FALSE(radio->Checked());

  EXPECT_TRUE(tree.ToggleByUser(*top));
  for (int i = 0; i <= 8; ++i) EXPECT_FALSE(chain[i]->Checked()) << i;

  tree.SetCascadeLevels(0);
  EXPECT_TRUE(tree.ToggleByUser(*chain[1]));
  EXPECT_FALSE(chain[2]->Checked());
}

TEST(CheckTreeToggle, RadioTakesOverItsGroupAndStaysTicked) {
  TCheckTree tree;
  Import(tree, u"g\r\n\t1@0|a\r\n\t0@0|b\r\n\t0#0|box\r\nplain");
  TCheckTreeNode* a = tree.Items(1);
  TCheckTreeNode* b = tree.Items(2);
  EXPECT_TRUE(tree.ToggleByUser(*b));
  EXPECT_FALSE(a->Checked());
  EXPECT_TRUE(b->Checked());
  EXPECT_TRUE(tree.ToggleByUser(*b));
  EXPECT_TRUE(b->Checked());
  EXPECT_FALSE(tree.ToggleByUser(*tree.Items(4)));  // plain
  tree.SetReadOnly(true);
  EXPECT_FALSE(tree.ToggleByUser(*a));
  EXPECT_FALSE(a->Checked());
}

TEST(CheckTreeSplit, StripsPrefixesAndNamesAndRecordsData) {
  TQueryList source;
  source.ImportFromStrWithTabs(
      u"1#3|Motor: speed\r\n\t0@0|Fast  : 10\r\n\t:x\r\nplain\r\n\ta b:\r\n1#3|Motor:again\r\n");
  TQueryList destination;
  TNodeDataDictionary data;
  EXPECT_THROW(SplitNodesAndData(source, &destination, &data), EListError);  // Motor twice

  data.Clear();
  source.Delete(2);
  SplitNodesAndData(source, &destination, &data);
  EXPECT_EQ(destination.ExportToStrWithTabs(), u"Motor\r\n\tFast\r\n\t:x\r\nplain\r\n\ta b\r\n");
  EXPECT_EQ(data.Count(), 5);
  TNodeDataRec rec;
  ASSERT_TRUE(data.TryGetValue(destination.Items(0), rec));
  EXPECT_EQ(rec, (TNodeDataRec{nkCheckBox, 2, true}));
  ASSERT_TRUE(data.TryGetValue(destination.SubList(0)->Items(0), rec));
  EXPECT_EQ(rec, (TNodeDataRec{nkRadio, -1, false}));
  ASSERT_TRUE(data.TryGetValue(destination.Items(1), rec));
  EXPECT_EQ(rec, TNodeDataRec{});

  // Without a destination the source is rewritten, merging names that became equal.
  TQueryList in_place;
  in_place.ImportFromStrWithTabs(u"1#1|A: x\r\n\tc\r\n0#1|A: y\r\n\td\r\n");
  SplitNodesAndData(in_place, nullptr, nullptr);
  EXPECT_EQ(in_place.ExportToStrWithTabs(), u"A\r\n\tc\r\n\td\r\n");
}

TEST(CheckTreeFind, MatchesLevelAndWholeTextInOrder) {
  TCheckTree tree;
  Import(tree, u"Root\r\n\tChild=1\r\n\t\tLeaf=x=y\r\n\tchild\r\nOther\r\n\tLeaf=x=y");
  EXPECT_EQ(tree.FindNode(0, u"Other"), tree.Items(4));
  EXPECT_EQ(tree.FindNode(1, u"Leaf=x=y"), tree.Items(5));
  EXPECT_EQ(tree.FindNode(-1, u"Leaf=x=y"), tree.Items(2));
  EXPECT_EQ(tree.FindNode(1, u"Child"), nullptr);    // whole text only
  EXPECT_EQ(tree.FindNode(1, u"CHILD=1"), nullptr);  // case-sensitive
  EXPECT_EQ(tree.FindNode(0, u"Child=1"), nullptr);  // exists only at level 1
  EXPECT_EQ(NodePath(*tree.Items(2)), u"Root/Child=1/Leaf");
  EXPECT_EQ(NodePath(*tree.Items(0)), u"Root");
  EXPECT_EQ(FindNodeFailureMessage(1, u"it's"),
            u"Failed to find node with level 1 and text 'it''s'");
}

class RecordingObserver : public TCheckTreeObserver {
 public:
  void TreeChanging() override { events.push_back("changing"); }
  void TreeChanged() override { events.push_back("changed"); }
  void NodeChanged(TCheckTreeNode& node) override { events.push_back(ToUtf8(node.Text())); }
  void ExpansionChanged(TCheckTreeNode* node) override {
    events.push_back(node == nullptr ? "all" : "one");
  }
  void SelectionChanged() override { events.push_back("selected"); }
  std::vector<std::string> events;
};

TEST(CheckTreeObserver, HearsOneBracketPerImportAndEachUserChange) {
  TCheckTree tree;
  RecordingObserver observer;
  tree.SetObserver(&observer);
  Import(tree, u"0@0|a\r\n1@0|b\r\n0#0|c");
  EXPECT_EQ(observer.events, (std::vector<std::string>{"changing", "changed"}));
  observer.events.clear();
  tree.ToggleByUser(*tree.Items(0));
  EXPECT_EQ(observer.events, (std::vector<std::string>{"b", "a"}));
  observer.events.clear();
  tree.FullCollapse();
  tree.Items(2)->SetExpanded(true);
  tree.SetSelected(tree.Items(2));
  tree.SetSelected(tree.Items(2));
  EXPECT_EQ(observer.events, (std::vector<std::string>{"all", "one", "selected"}));
  EXPECT_FALSE(tree.Items(0)->Expanded());
  tree.Clear();
  EXPECT_EQ(tree.Count(), 0);
  EXPECT_EQ(tree.GetFirstNode(), nullptr);
}

}  // namespace
}  // namespace vex
