// TQueryList's tab-indented import and export and its path lookup, each beside what a C++ user
// would otherwise write: a hand-rolled tree of unique_ptr nodes fed from std::getline, and a
// std::map keyed by the full dotted path.
#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "bench_ratios.h"
#include "vex/companion/query_list.h"
#include "vex/platform/unicode.h"

namespace {

// 100000 lines: 1000 sections of 10 groups of 9 name=value lines.
vex::String SettingsText() {
  vex::String text;
  for (int s = 0; s < 1000; ++s) {
    text += u"Section" + vex::FromUtf8(std::to_string(s)) + u"\r\n";
    for (int g = 0; g < 10; ++g) {
      text += u"\tGroup" + vex::FromUtf8(std::to_string(g)) + u"\r\n";
      for (int k = 0; k < 8; ++k) {
        text += u"\t\tKey" + vex::FromUtf8(std::to_string(k)) + u"=value of some length\r\n";
      }
    }
  }
  return text;
}

struct Node {
  std::string key;
  std::vector<std::unique_ptr<Node>> children;
};

// The same import rules as TQueryList (tabs give depth, jumps clamp, blank lines skipped) on
// UTF-8 text, as a user would write it with std::getline.
std::unique_ptr<Node> NaiveImport(const std::string& text) {
  auto root = std::make_unique<Node>();
  std::vector<Node*> last;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    size_t tabs = line.find_first_not_of('\t');
    if (tabs == std::string::npos) continue;
    const size_t depth = std::min(tabs, last.size());
    last.resize(depth);
    Node* parent = depth == 0 ? root.get() : last.back();
    parent->children.push_back(std::make_unique<Node>());
    parent->children.back()->key = line.substr(tabs);
    last.push_back(parent->children.back().get());
  }
  return root;
}

void BM_QueryListImport(benchmark::State& state) {
  const vex::String text = SettingsText();
  for (auto _ : state) {
    vex::TQueryList list;
    list.ImportFromStrWithTabs(text);
    benchmark::DoNotOptimize(list.Count());
  }
  state.SetItemsProcessed(state.iterations() * 100000);
}
BENCHMARK(BM_QueryListImport)->Unit(benchmark::kMillisecond);

void BM_NaiveTreeImportUtf8(benchmark::State& state) {
  const std::string text = vex::ToUtf8(SettingsText());
  for (auto _ : state) {
    auto root = NaiveImport(text);
    benchmark::DoNotOptimize(root->children.size());
  }
  state.SetItemsProcessed(state.iterations() * 100000);
}
BENCHMARK(BM_NaiveTreeImportUtf8)->Unit(benchmark::kMillisecond);

void BM_QueryListExport(benchmark::State& state) {
  vex::TQueryList list;
  list.ImportFromStrWithTabs(SettingsText());
  for (auto _ : state) benchmark::DoNotOptimize(list.ExportToStrWithTabs().size());
  state.SetItemsProcessed(state.iterations() * 100000);
}
BENCHMARK(BM_QueryListExport)->Unit(benchmark::kMillisecond);

void NaiveExport(const Node& node, size_t depth, std::string& out) {
  for (const auto& child : node.children) {
    out.append(depth, '\t');
    out += child->key;
    out += "\r\n";
    NaiveExport(*child, depth + 1, out);
  }
}

void BM_NaiveTreeExportUtf8(benchmark::State& state) {
  const auto root = NaiveImport(vex::ToUtf8(SettingsText()));
  for (auto _ : state) {
    std::string out;
    NaiveExport(*root, 0, out);
    benchmark::DoNotOptimize(out.size());
  }
  state.SetItemsProcessed(state.iterations() * 100000);
}
BENCHMARK(BM_NaiveTreeExportUtf8)->Unit(benchmark::kMillisecond);

// A value three levels down in a tree of 1000 sections, each with 10 groups of 8 names: the
// scans are linear per level, against a balanced-tree lookup of the whole path.
void BM_QueryListGetValueByPath(benchmark::State& state) {
  vex::TQueryList list;
  list.ImportFromStrWithTabs(SettingsText());
  const vex::String path = u"Section500.Group9.Key7";
  for (auto _ : state) benchmark::DoNotOptimize(list.GetValueByPath(path));
}
BENCHMARK(BM_QueryListGetValueByPath);

void BM_MapGetByFullPath(benchmark::State& state) {
  std::map<vex::String, vex::String> map;
  for (int s = 0; s < 1000; ++s) {
    for (int g = 0; g < 10; ++g) {
      for (int k = 0; k < 8; ++k) {
        map[u"Section" + vex::FromUtf8(std::to_string(s)) + u".Group" +
            vex::FromUtf8(std::to_string(g)) + u".Key" + vex::FromUtf8(std::to_string(k))] =
            u"value of some length";
      }
    }
  }
  const vex::String path = u"Section500.Group9.Key7";
  for (auto _ : state) benchmark::DoNotOptimize(map.find(path)->second);
}
BENCHMARK(BM_MapGetByFullPath);

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS(
    {"BM_QueryListImport", "BM_NaiveTreeImportUtf8", vex::bench::SpeedAtLeast(0.8)},
    {"BM_QueryListExport", "BM_NaiveTreeExportUtf8", vex::bench::SpeedAtLeast(0.8)},
    {"BM_QueryListGetValueByPath", "BM_MapGetByFullPath", vex::bench::TimeAtMost(3)});
