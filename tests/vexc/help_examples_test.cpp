// Every example shown by 'vexc <command> --help' and in the README is run and must print what
// it shows. An example is a block of "$ command" lines, each followed by the exact standard
// output of the command (see docs/DESIGN.md, the command-line tool).
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "vexc/run_vexc.h"

namespace vexc_test {
namespace {

namespace fs = std::filesystem;

struct Step {
  std::string command;
  std::string expected;  // standard output, one "\n" per line
};

struct Example {
  std::string where;  // "vexc group --help", "README.md:57"
  std::vector<Step> steps;
};

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// Reads "$ command" lines and the output lines after each; indent is the prefix every line of
// the block carries. Trailing empty lines end the block and are not output.
std::vector<Step> ParseSteps(const std::vector<std::string>& block, const std::string& indent) {
  std::vector<Step> steps;
  size_t end = block.size();
  while (end > 0 && block[end - 1].find_first_not_of(' ') == std::string::npos) --end;
  for (size_t i = 0; i < end; ++i) {
    const std::string line = block[i].substr(std::min(indent.size(), block[i].size()));
    if (line.rfind("$ ", 0) == 0) {
      steps.push_back({line.substr(2), ""});
    } else if (!steps.empty()) {
      steps.back().expected += line + "\n";
    }
  }
  return steps;
}

// The names listed under "Subcommands:" in a help text.
std::vector<std::string> Subcommands(const std::string& help) {
  std::vector<std::string> names;
  bool in_list = false;
  for (const std::string& line : Lines(help)) {
    if (line == "Subcommands:" || line == "SUBCOMMANDS:") {
      in_list = true;
    } else if (in_list && line.rfind("  ", 0) == 0 && line.size() > 2 && line[2] != ' ') {
      names.push_back(line.substr(2, line.find(' ', 2) - 2));
    } else if (in_list && !line.empty() && line[0] != ' ') {
      in_list = false;
    }
  }
  return names;
}

// The "Example:" footer of a help text: the indented lines after it.
std::vector<Step> HelpExample(const std::string& help) {
  const std::vector<std::string> lines = Lines(help);
  std::vector<std::string> block;
  bool in_block = false;
  for (const std::string& line : lines) {
    if (line == "Example:" || line == "Examples:") {
      in_block = true;
    } else if (in_block && (line.empty() || line.rfind("  ", 0) == 0)) {
      block.push_back(line);
    } else if (in_block) {
      break;
    }
  }
  return ParseSteps(block, "  ");
}

// Walks the command tree from "vexc --help"; every command without subcommands is a leaf.
void CollectHelpExamples(const std::string& path, std::vector<Example>& examples,
                         std::vector<std::string>& leaves_without_example) {
  const Result help = RunVexc(path + " --help");
  ASSERT_EQ(help.exit_code, 0) << path << " --help: " << help.err;
  const std::vector<std::string> children = Subcommands(help.out);
  for (const std::string& child : children) {
    CollectHelpExamples(path.empty() ? child : path + " " + child, examples,
                        leaves_without_example);
  }
  if (path.empty()) return;
  Example example{"vexc " + path + " --help", HelpExample(help.out)};
  if (example.steps.empty()) {
    if (children.empty()) leaves_without_example.push_back(path);
    return;
  }
  examples.push_back(std::move(example));
}

// The ```console blocks of the README.
std::vector<Example> ReadmeExamples() {
  std::vector<Example> examples;
  const std::vector<std::string> lines =
      Lines(ReadFile(std::string(VEX_SOURCE_DIR) + "/README.md"));
  for (size_t i = 0; i < lines.size(); ++i) {
    if (lines[i] != "```console") continue;
    const size_t start = i + 1;
    std::vector<std::string> block;
    for (++i; i < lines.size() && lines[i] != "```"; ++i) block.push_back(lines[i]);
    examples.push_back({"README.md:" + std::to_string(start), ParseSteps(block, "")});
  }
  return examples;
}

// Runs the steps in order, in a fresh copy of examples/, with this build's vexc first on the
// path. Returns a description of every difference.
std::string RunExample(const Example& example) {
  const fs::path dir = ScratchDir() / "example";
  fs::remove_all(dir);
  fs::copy(Examples(), dir, fs::copy_options::recursive);
  const std::string path = fs::path(VEXC_PATH).parent_path().string();
  std::string failures;
  for (const Step& step : example.steps) {
    WriteScratch("step.sh", "set -eo pipefail\ncd '" + dir.string() + "'\nexport PATH='" + path +
                                "':\"$PATH\" QT_QPA_PLATFORM=offscreen\n" + step.command + "\n");
    const fs::path out = ScratchDir() / "step.out";
    const std::string run = "timeout 60 bash '" + (ScratchDir() / "step.sh").string() +
                            "' </dev/null >'" + out.string() + "' 2>&1";
    const int status = std::system(run.c_str());
    const std::string actual = ReadFile(out);
    if (status != 0 || actual != step.expected) {
      failures += example.where + ": $ " + step.command + "\n  shows:\n" + step.expected +
                  "  prints (status " + std::to_string(status) + "):\n" + actual;
    }
  }
  return failures;
}

TEST(VexcExamples, EveryHelpAndReadmeExamplePrintsWhatItShows) {
  std::vector<Example> examples;
  std::vector<std::string> without;
  CollectHelpExamples("", examples, without);
  ASSERT_FALSE(HasFatalFailure());
  EXPECT_TRUE(without.empty()) << "commands without an example, first: " << without.front();
  const std::vector<Example> readme = ReadmeExamples();
  EXPECT_FALSE(readme.empty()) << "the README shows no console example";
  examples.insert(examples.end(), readme.begin(), readme.end());
  ASSERT_GT(examples.size(), 10u);
  for (const Example& example : examples) {
    EXPECT_EQ(RunExample(example), "");
  }
}

}  // namespace
}  // namespace vexc_test
