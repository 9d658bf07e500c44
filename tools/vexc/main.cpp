// vexc: runs the library's main jobs on files and pipes.
#include <CLI/CLI.hpp>

#include <iostream>

int main(int argc, char** argv) {
  CLI::App app{"vexc - run vexCommon's text, number and pattern jobs on files and pipes"};
  app.set_version_flag("--version", std::string("vexc ") + VEXC_VERSION);
  app.require_subcommand(0, 1);
  CLI11_PARSE(app, argc, argv);
  if (app.get_subcommands().empty()) std::cout << app.help();
  return 0;
}
