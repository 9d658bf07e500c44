// The check tree's import and export of a 100,000-node tree six levels deep, through tab-indented
// lines, beside what a C++ user would otherwise write: std::getline and std::regex_search over
// UTF-8 into a tree of unique_ptr nodes, and a recursive walk that appends the keys.
#include <benchmark/benchmark.h>

#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "bench_ratios.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"
#include "vex/viewers/check_tv.h"

namespace {

constexpr int kNodes = 100000;
constexpr int kLevels = 6;
constexpr int kBranching = 6;

// 100,000 keys in tab-indented lines: roots with six children per node down to level 5, the
// kinds cycling through check box, radio and plain.
vex::String TreeText() {
  std::string text;
  int made = 0;
  auto add = [&](int level, auto&& self) -> void {
    if (made >= kNodes) return;
    const int n = made++;
    const char* prefix = n % 3 == 0 ? "1#" : n % 3 == 1 ? "0@" : "[]";
    text.append(static_cast<size_t>(level), '\t');
    text += prefix + std::to_string(n % 5) + "|Node " + std::to_string(n) + "\r\n";
    if (level + 1 < kLevels) {
      for (int i = 0; i < kBranching; ++i) self(level + 1, self);
    }
  };
  while (made < kNodes) add(0, add);
  return vex::FromUtf8(text);
}

void BM_CheckTreeImport(benchmark::State& state) {
  vex::TStringList lines;
  lines.SetText(TreeText());
  for (auto _ : state) {
    vex::TCheckTree tree;
    vex::ImportTreeFromList(tree, lines);
    benchmark::DoNotOptimize(tree.RootCount());
  }
  state.SetItemsProcessed(state.iterations() * kNodes);
}
BENCHMARK(BM_CheckTreeImport)->Unit(benchmark::kMillisecond);

void BM_CheckTreeExport(benchmark::State& state) {
  vex::TStringList lines;
  lines.SetText(TreeText());
  vex::TCheckTree tree;
  vex::ImportTreeFromList(tree, lines);
  for (auto _ : state) {
    vex::TStringList out;
    vex::ExportTreeToList(tree, out);
    benchmark::DoNotOptimize(out.Count());
  }
  state.SetItemsProcessed(state.iterations() * kNodes);
}
BENCHMARK(BM_CheckTreeExport)->Unit(benchmark::kMillisecond);

struct Node {
  std::string text;
  int kind = 0;
  int image = -1;
  bool checked = false;
  std::vector<std::unique_ptr<Node>> children;
};

std::unique_ptr<Node> RegexImport(const std::string& text) {
  static const std::regex key_re(R"(([01])([@#])(\d+)(\|))");
  auto root = std::make_unique<Node>();
  std::vector<Node*> last;
  std::istringstream in(text);
  std::string line;
  std::smatch m;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const size_t tabs = line.find_first_not_of('\t');
    if (tabs == std::string::npos) continue;
    const size_t depth = std::min(tabs, last.size());
    last.resize(depth);
    Node* parent = depth == 0 ? root.get() : last.back();
    auto node = std::make_unique<Node>();
    const std::string key = line.substr(tabs);
    if (std::regex_search(key, m, key_re)) {
      node->checked = m[1] == "1";
      node->kind = m[2] == "#" ? 1 : 2;
      node->image = std::stoi(m[3]) - 1;
      node->text = m.suffix();
    } else {
      node->text = key;
    }
    parent->children.push_back(std::move(node));
    last.push_back(parent->children.back().get());
  }
  return root;
}

void BM_RegexTreeImportUtf8(benchmark::State& state) {
  const std::string text = vex::ToUtf8(TreeText());
  for (auto _ : state) benchmark::DoNotOptimize(RegexImport(text)->children.size());
  state.SetItemsProcessed(state.iterations() * kNodes);
}
BENCHMARK(BM_RegexTreeImportUtf8)->Unit(benchmark::kMillisecond);

void RegexExport(const Node& node, size_t depth, std::string& out) {
  for (const auto& child : node.children) {
    out.append(depth, '\t');
    if (child->kind == 0) {
      out += "[]";
    } else {
      out += child->checked ? '1' : '0';
      out += child->kind == 1 ? '#' : '@';
    }
    out += std::to_string(child->image + 1) + "|" + child->text + "\r\n";
    RegexExport(*child, depth + 1, out);
  }
}

void BM_RecursiveTreeExportUtf8(benchmark::State& state) {
  const auto root = RegexImport(vex::ToUtf8(TreeText()));
  for (auto _ : state) {
    std::string out;
    RegexExport(*root, 0, out);
    benchmark::DoNotOptimize(out.size());
  }
  state.SetItemsProcessed(state.iterations() * kNodes);
}
BENCHMARK(BM_RecursiveTreeExportUtf8)->Unit(benchmark::kMillisecond);

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_CheckTreeImport", "BM_RegexTreeImportUtf8", {}},
                               {"BM_CheckTreeExport", "BM_RecursiveTreeExportUtf8", {}});
