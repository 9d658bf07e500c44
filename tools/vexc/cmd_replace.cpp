// vexc replace: applies a rule table (plain and pattern search-and-replace rules) to every line.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli.h"
#include "vex/companion/query_list.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"
#include "vex/patterns/reg_exp_utils.h"

namespace vexc {
namespace {

struct ReplaceOptions {
  std::vector<std::string> files;
  std::string rules;
  int col = 0;
  std::string rules_tree;
  std::string list_key;
  std::string key;
  bool count = false;
};

// Loads comma-separated rule lines one at a time, so that a bad pattern names its line.
vex::TRegExTaskArray LoadRuleLines(const std::string& file, int col) {
  Input input(file);
  vex::TStringList lines;
  vex::String line;
  while (input.ReadLine(line)) lines.Add(line);
  vex::TRegExTaskArray tasks;
  for (int32_t i = 0; i < lines.Count(); ++i) {
    vex::TRegExTaskArray one;
    try {
      vex::FillRegExpArray(lines, one, col, i + 1, i);
    } catch (const vex::ERegExError& e) {
      throw InputError(input.Name(), i + 1, e.what());
    }
    tasks.insert(tasks.end(), one.begin(), one.end());
  }
  return tasks;
}

vex::TRegExTaskArray LoadRuleTree(const ReplaceOptions& o) {
  Input input(o.rules_tree);
  vex::TQueryList tree;
  tree.ImportFromStrWithTabs(input.ReadAllText());
  vex::TRegExTaskArray tasks;
  try {
    vex::ImportRegExpArray(tree, tasks, vex::FromUtf8(o.list_key), vex::FromUtf8(o.key));
  } catch (const vex::ERegExError& e) {
    throw InputError(input.Name(), e.what());
  }
  return tasks;
}

int RunReplace(const ReplaceOptions& o) {
  const vex::TRegExTaskArray tasks =
      o.rules_tree.empty() ? LoadRuleLines(o.rules, o.col) : LoadRuleTree(o);
  int64_t matches = 0, changed_lines = 0, lines = 0;
  for (const auto& name : InputNamesOrStdin(o.files)) {
    Input input(name);
    vex::String line;
    while (input.ReadLine(line)) {
      int32_t count = 0;
      WriteLine(vex::ReplaceStrWithTaskArray(line, tasks, &count));
      matches += count;
      changed_lines += count > 0;
      ++lines;
    }
  }
  if (o.count) {
    std::cerr << matches << " rule matches on " << changed_lines << " of " << lines
              << " lines (" << tasks.size() << " rules)\n";
  }
  return kExitOk;
}

}  // namespace

void RegisterReplaceCommand(CLI::App& app, Action& action) {
  auto o = std::make_shared<ReplaceOptions>();
  auto* cmd = app.add_subcommand(
      "replace",
      "apply a rule table to every input line: each rule replaces a plain text, or, when its "
      "search text has a backslash, a regular expression; every rule sees the output of the "
      "rules before it");
  cmd->add_option("files", o->files, "files to read; none or '-' reads standard input");
  auto* rules = cmd->add_option("-r,--rules", o->rules,
                                "rule table: lines 'search,replacement' (no quoting; empty "
                                "lines skipped)");
  cmd->add_option("--col", o->col, "the column of the search text in each rule line (0-based)")
      ->check(CLI::NonNegativeNumber);
  auto* tree = cmd->add_option("--rules-tree", o->rules_tree,
                               "rule tree: tab-indented keyed list whose entries hold "
                               "'SubText=...' and 'Replace=...'");
  cmd->add_option("--list-key", o->list_key, "with --rules-tree: the entry holding the rules");
  cmd->add_option("--key", o->key, "with --rules-tree: take only the rules under this key");
  cmd->add_flag("--count", o->count, "report on standard error how many rules matched");
  rules->excludes(tree);
  tree->excludes(rules);
  cmd->footer(
      "Example:\n  $ printf 'Ch\\\\d+,Channel\\nBeam,Gate\\n' > my-rules.csv\n"
      "  $ echo 'Ch12 Beam' | vexc replace --rules my-rules.csv\n  Channel Gate");
  cmd->callback([&action, o] {
    if (o->rules.empty() && o->rules_tree.empty()) {
      throw CLI::RequiredError("--rules or --rules-tree");
    }
    action = [o] { return RunReplace(*o); };
  });
}

}  // namespace vexc
