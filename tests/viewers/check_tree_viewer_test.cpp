#include "vex/viewers/check_tree_viewer.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "vex/companion/query_list.h"
#include "vex/platform/streams.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

// Stands in for a window: ticks the first node the way a click would, then answers.
class FakeViewer : public ICheckTreeViewerService {
 public:
  bool ShowCheckTreeViewer(TCheckTreeViewerForm& form, const TCustomObjProc& Prepare) override {
    ++shown;
    if (Prepare) Prepare(&form);
    caption = form.Caption;
    read_only = form.Tree.ReadOnly();
    if (form.Tree.GetFirstNode() != nullptr) form.Tree.ToggleByUser(*form.Tree.GetFirstNode());
    return answer_ok;
  }
  bool answer_ok = true;
  int shown = 0;
  String caption;
  bool read_only = false;
};

class CheckTreeViewerTest : public ::testing::Test {
 protected:
  void SetUp() override { previous_ = SetCheckTreeViewerService(&viewer_); }
  void TearDown() override { SetCheckTreeViewerService(previous_); }
  FakeViewer viewer_;
  ICheckTreeViewerService* previous_ = nullptr;
};

const String kTree = u"0#1|Pumps\r\n\t1@0|Fast\r\n";

TEST_F(CheckTreeViewerTest, OkWritesTheEditedTreeBackIntoEachKindOfObject) {
  TStringList lines;
  lines.SetText(kTree);
  EXPECT_TRUE(EditObjAsCheckTree(&lines, u"", u"", nullptr, false, 0));
  EXPECT_EQ(lines.Text(), u"1#1|Pumps\r\n\t1@0|Fast\r\n");
  EXPECT_EQ(viewer_.caption, u"Check Tree Viewer");

  // Lines of tabs only are skipped, so the stream starts longer than the new content and must
  // end with it.
  TStringStream stream(ToUtf8(kTree) + std::string(100, '\t') + "\r\n\r\n");
  EXPECT_TRUE(EditObjAsCheckTree(&stream, u"", u"Pumps", nullptr, false, 0));
  stream.SetPosition(0);
  TStringList from_stream;
  from_stream.LoadFromStream(stream);
  EXPECT_EQ(from_stream.Text(), u"1#1|Pumps\r\n\t1@0|Fast\r\n");
  EXPECT_EQ(stream.Size(), 22);
  EXPECT_EQ(viewer_.caption, u"Pumps");

  TQueryList list;
  list.ImportFromStrWithTabs(kTree);
  EXPECT_TRUE(EditObjAsCheckTree(&list, u"", u"", nullptr, false, 0));
  EXPECT_EQ(list.ExportToStrWithTabs(), u"1#1|Pumps\r\n\t1@0|Fast\r\n");
}

TEST_F(CheckTreeViewerTest, CancelReadOnlyAndNoServiceWriteNothing) {
  TStringList lines;
  lines.SetText(kTree);
  viewer_.answer_ok = false;
  EXPECT_FALSE(EditObjAsCheckTree(&lines, u"", u"", nullptr, false, 0));
  EXPECT_EQ(lines.Text(), kTree);

  viewer_.answer_ok = true;
  EXPECT_TRUE(ViewObjAsCheckTree(&lines, u"", u"", nullptr, 0));
  EXPECT_TRUE(viewer_.read_only);
  EXPECT_EQ(lines.Text(), kTree);
  // ReadOnly false clears a read-only bit given in the options.
  EXPECT_TRUE(EditObjAsCheckTree(&lines, u"", u"", nullptr, false, ctvReadOnly));
  EXPECT_FALSE(viewer_.read_only);

  SetCheckTreeViewerService(nullptr);
  lines.SetText(kTree);
  EXPECT_FALSE(EditObjAsCheckTree(&lines, u"", u"", nullptr, false, 0));
  EXPECT_EQ(lines.Text(), kTree);
  EXPECT_EQ(viewer_.shown, 3);
}

TEST_F(CheckTreeViewerTest, CallbackGetsThePreparedFormOnce) {
  int calls = 0;
  EXPECT_TRUE(EditObjAsCheckTree(
      nullptr, kTree, u"",
      [&](TObject* obj) {
        ++calls;
        auto* form = dynamic_cast<TCheckTreeViewerForm*>(obj);
        ASSERT_NE(form, nullptr);
        EXPECT_EQ(form->ListText, kTree);
        EXPECT_EQ(form->Tree.Count(), 2);
        form->Caption = u"Adjusted";
      },
      false, 0));
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(viewer_.caption, u"Adjusted");
}

TEST(CheckTreeViewerForm, AcceptParamsSetsStateAndStatusTexts) {
  TCheckTreeViewerForm form;
  AcceptParams(form, nullptr, kTree + u"\r\n", u"", ctvReadOnly);
  EXPECT_TRUE(form.Tree.ReadOnly());
  EXPECT_FALSE(form.Tree.Items(0)->Expanded());
  EXPECT_EQ(form.Tree.Selected(), form.Tree.Items(0));
  EXPECT_EQ(form.Caption, u"Check Tree Viewer");
  EXPECT_EQ(NodesStatusText(form.Tree), u"Nodes: 2");
  EXPECT_EQ(LinesStatusText(form.ListText), u"Lines: 3");
  EXPECT_EQ(IndexStatusText(*form.Tree.Items(1)), u"Index: 1");
  EXPECT_EQ(CopiedCharsText(u"Fast"), u"Copied chars: 4");

  TCheckTreeViewerForm expanded;
  AcceptParams(expanded, nullptr, u"", u"Empty", ctvExpanded);
  EXPECT_EQ(expanded.Tree.Selected(), nullptr);
  EXPECT_EQ(expanded.Caption, u"Empty");
  AcceptParams(expanded, nullptr, kTree, u"", ctvExpanded);
  EXPECT_TRUE(expanded.Tree.Items(0)->Expanded());
  EXPECT_FALSE(LoadTreeFromObject(expanded, &expanded));  // not a list or a stream
  EXPECT_EQ(expanded.Tree.Count(), 2);
}

TEST(CheckTreeViewerForm, SavesAndLoadsUtf8Files) {
  const auto path = std::filesystem::temp_directory_path() / "vex_check_tree_viewer_test.txt";
  TCheckTreeViewerForm form;
  AcceptParams(form, nullptr, u"1#0|Größe\r\n\t0@0|Ω\r\n", u"", 0);
  SaveTreeToFile(form, FromUtf8(path.string()));
  TCheckTreeViewerForm loaded;
  LoadTreeFromFile(loaded, FromUtf8(path.string()));
  EXPECT_EQ(loaded.ListText, u"1#0|Größe\r\n\t0@0|Ω\r\n");
  EXPECT_EQ(loaded.Tree.Items(1)->Text(), u"Ω");
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace vex
