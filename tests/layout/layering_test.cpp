// Checks the shape of the source tree: no header or source includes a higher layer, and the
// umbrella header includes every public header of vex::common (and compiles, since it is
// included here).
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "vex/vex.h"

namespace fs = std::filesystem;

namespace {

// Lowest first: a file may include its own layer and any layer before it.
const std::vector<std::string> kLayers = {"platform", "companion", "core",    "text", "numeric",
                                          "patterns", "data",      "ui",      "viewers", "qt"};

int LayerIndex(const std::string& layer) {
  auto it = std::find(kLayers.begin(), kLayers.end(), layer);
  return it == kLayers.end() ? -1 : static_cast<int>(it - kLayers.begin());
}

std::vector<std::string> IncludedVexHeaders(const fs::path& file) {
  static const std::regex include_re(R"(^\s*#\s*include\s*"(vex/[^"]+)\")");
  std::vector<std::string> result;
  std::ifstream in(file);
  std::string line;
  std::smatch m;
  while (std::getline(in, line)) {
    if (std::regex_search(line, m, include_re)) result.push_back(m[1]);
  }
  return result;
}

std::string LayerOfInclude(const std::string& include) {
  // "vex/<layer>/file.h"
  auto first = include.find('/');
  auto second = include.find('/', first + 1);
  return second == std::string::npos ? "" : include.substr(first + 1, second - first - 1);
}

const fs::path kVexDir = fs::path(VEX_SOURCE_DIR) / "vex";

}  // namespace

TEST(Layering, NoFileIncludesAHigherLayer) {
  std::vector<std::string> violations;
  int files = 0;
  for (const auto& layer : kLayers) {
    fs::path dir = kVexDir / layer;
    if (!fs::exists(dir)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(dir)) {
      auto ext = entry.path().extension();
      if (ext != ".h" && ext != ".cpp") continue;
      ++files;
      for (const auto& inc : IncludedVexHeaders(entry.path())) {
        const std::string target = LayerOfInclude(inc);
        if (LayerIndex(target) > LayerIndex(layer)) {
          violations.push_back(entry.path().string() + " includes " + inc);
        }
        if (inc == "vex/vex.h") violations.push_back(entry.path().string() + " includes vex/vex.h");
      }
    }
  }
  EXPECT_GT(files, 0);
  EXPECT_TRUE(violations.empty()) << [&] {
    std::string s;
    for (const auto& v : violations) s += v + "\n";
    return s;
  }();
}

TEST(Layering, UmbrellaHeaderIncludesEveryPublicHeader) {
  auto included = IncludedVexHeaders(kVexDir / "vex.h");
  std::set<std::string> in_umbrella(included.begin(), included.end());
  std::vector<std::string> missing;
  for (const auto& layer : kLayers) {
    if (layer == "qt") continue;  // the Qt module has its own headers and target
    fs::path dir = kVexDir / layer;
    if (!fs::exists(dir)) continue;
    for (const auto& entry : fs::directory_iterator(dir)) {
      if (entry.path().extension() != ".h") continue;
      std::string rel = "vex/" + layer + "/" + entry.path().filename().string();
      if (!in_umbrella.count(rel)) missing.push_back(rel);
    }
  }
  std::sort(missing.begin(), missing.end());
  EXPECT_TRUE(missing.empty()) << [&] {
    std::string s = "missing from vex/vex.h:\n";
    for (const auto& m : missing) s += "  " + m + "\n";
    return s;
  }();
}

TEST(Layering, ALowerLayerIncludingAHigherOneIsDetected) {
  EXPECT_EQ(LayerOfInclude("vex/text/parse_utils.h"), "text");
  EXPECT_LT(LayerIndex("platform"), LayerIndex("companion"));
  EXPECT_LT(LayerIndex("core"), LayerIndex("text"));
  EXPECT_EQ(LayerIndex("nonsense"), -1);
}
