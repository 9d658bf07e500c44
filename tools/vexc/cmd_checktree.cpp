// vexc checktree: the check tree viewer over a tab-indented file, the file's normal form (what
// the viewer writes back when OK is pressed on an untouched tree) and its split into names and
// node data.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cli.h"
#include "vex/companion/query_list.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"
#include "vex/viewers/check_tree_viewer.h"
#include "vex/viewers/check_tv.h"
#include "window_app.h"

#ifdef VEXC_WITH_QT
#include "vex/qt/check_tree_viewer.h"
#endif

namespace vexc {
namespace {

struct Options {
  std::string file;
  std::string screenshot;
  bool normalize = false;
  bool split = false;
};

void ReadLines(const std::string& name, vex::TStringList& lines) {
  Input input(name);
  for (const auto& line : input.ReadAllLines()) lines.Add(line);
}

int Normalize(const std::string& file) {
  vex::TStringList lines;
  ReadLines(file, lines);
  vex::TCheckTree tree;
  vex::ImportTreeFromList(tree, lines);
  vex::TStringList out;
  vex::ExportTreeToList(tree, out);
  for (int32_t i = 0; i < out.Count(); ++i) WriteLine(out[i]);
  return kExitOk;
}

// One line per name, parents first: its depth in tabs, the name, then the node data after a
// tab. Walked with an explicit stack, so a file of any depth is safe.
void WriteSplit(const vex::TQueryList& root, const vex::TNodeDataDictionary& data) {
  std::vector<std::pair<const vex::TQueryList*, int32_t>> stack{{&root, 0}};
  while (!stack.empty()) {
    auto& [list, next] = stack.back();
    if (next >= list->Count()) {
      stack.pop_back();
      continue;
    }
    const vex::TQueryItem* item = list->Items(next++);
    vex::TNodeDataRec rec;
    data.TryGetValue(item, rec);
    WriteLine(vex::String(stack.size() - 1, u'\t') + item->Key() + u"\tkind=" +
              vex::IntToStr(int32_t{rec.Kind}) + u" image=" + vex::IntToStr(rec.ImageIndex) +
              u" checked=" + (rec.Checked ? u"1" : u"0"));
    if (item->Items() != nullptr) stack.emplace_back(item->Items(), 0);
  }
}

int Split(const std::string& file) {
  vex::TStringList lines;
  ReadLines(file, lines);
  vex::TQueryList source;
  source.ImportFromListWithTabs(lines);
  vex::TQueryList names;
  vex::TNodeDataDictionary data;
  try {
    vex::SplitNodesAndData(source, &names, &data);
  } catch (const vex::EListError&) {
    throw InputError(file, "two items under one parent split to the same name");
  }
  WriteSplit(names, data);
  return kExitOk;
}

int ShowWindow(const Options& options);

}  // namespace

void RegisterCheckTreeCommands(CLI::App& app, Action& action) {
  auto options = std::make_shared<Options>();
  auto* cmd = app.add_subcommand(
      "checktree",
      "open the check tree viewer on a tab-indented file of node keys (1#3|Motor is a ticked "
      "check box with image 2, 0@0|Off an unticked radio button, []0|Group a plain node) and "
      "write the edited tree back on OK");
  cmd->add_option("file", options->file, "the tab-indented UTF-8 file; '-' reads standard input")
      ->required();
  cmd->add_option("--screenshot", options->screenshot,
                  "render the viewer offscreen into this PNG file and exit");
  cmd->add_flag("--normalize", options->normalize,
                "write the file as the viewer writes it back, without a window");
  cmd->add_flag("--split", options->split,
                "write the names of the nodes, prefixes and ': comments' removed, each with its "
                "kind (0 plain, 1 check box, 2 radio), image and checked state");
  cmd->footer(
      "Examples:\n"
      "  $ vexc checktree --normalize checktree.txt | sed -n 1,3p\n"
      "  []0|Plant\n"
      "  \t1#1|Pumps\n"
      "  \t\t1#2|Pump 1: main feed"
#ifdef VEXC_WITH_QT
      "\n"
      "  $ vexc checktree checktree.txt --screenshot tree.png && ls tree.png\n"
      "  tree.png"
#endif
  );
  cmd->callback([&action, options] {
    action = [options] {
      if (options->normalize && options->split) {
        throw InputError(options->file, "--normalize and --split exclude each other");
      }
      if (options->normalize) return Normalize(options->file);
      if (options->split) return Split(options->file);
      return ShowWindow(*options);
    };
  });
}

namespace {

#ifdef VEXC_WITH_QT

// Shows the viewer on the file; on OK the edited tree is written back to it (to standard output
// when the file is "-"). With a screenshot path the window is rendered offscreen instead.
int ShowWindow(const Options& options) {
  vex::TStringList lines;
  ReadLines(options.file, lines);
  WindowApp app(options.screenshot);
  const uint8_t flags = vex::ctvShowLoad | vex::ctvShowSave | vex::ctvExpanded;
  const vex::String caption = u"Check Tree Viewer - " + vex::FromUtf8(options.file);
  if (app.Offscreen()) {
    auto viewer = vex::qt::CreateCheckTreeViewer(&lines, u"", caption, nullptr, flags);
    return app.ShowWindow(*viewer);
  }
  if (!vex::EditObjAsCheckTree(&lines, u"", caption, nullptr, false, flags)) return kExitOk;
  if (options.file == "-") {
    for (int32_t i = 0; i < lines.Count(); ++i) WriteLine(lines[i]);
  } else {
    lines.SaveToFile(options.file);
  }
  return kExitOk;
}

#else

int ShowWindow(const Options& options) {
  throw InputError(options.file,
                   "this vexc was built without Qt: the viewer window is not available (use "
                   "--normalize or --split)");
}

#endif

}  // namespace

}  // namespace vexc
