// vexc: runs vexCommon's main jobs (checksums, quoting, tokens, rule tables, caption detection,
// numbered-name grouping, bit matrices) on files and pipes.
#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>

#include "cli.h"
#include "vex/platform/exceptions.h"

int main(int argc, char** argv) {
  CLI::App app{"vexc - run vexCommon's text, number and pattern jobs on files and pipes.\n"
               "Input is UTF-8 (with or without a byte-order mark, LF or CR LF line ends) from\n"
               "the files named, or standard input; output is UTF-8 on standard output.\n"
               "Exit codes: 0 success, 1 a check failed, 2 bad usage or bad input."};
  app.set_version_flag("--version", std::string("vexc ") + VEXC_VERSION);
  app.require_subcommand(1);
  app.footer("Run 'vexc <command> --help' for a command's options and an example.");

  vexc::Action action;
  vexc::RegisterChecksumCommands(app, action);
  vexc::RegisterTextCommands(app, action);
  vexc::RegisterReplaceCommand(app, action);
  vexc::RegisterPatternCommands(app, action);
  vexc::RegisterFormCommands(app, action);
  vexc::RegisterFormWindowCommands(app, action);
  vexc::RegisterTableCommands(app, action);
  vexc::RegisterMessageCommands(app, action);
  vexc::RegisterCheckTreeCommands(app, action);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    int code = app.exit(e);
    return code == 0 ? vexc::kExitOk : vexc::kExitBadInput;
  }
  try {
    return action ? action() : vexc::kExitOk;
  } catch (const vexc::InputError& e) {
    std::cerr << "vexc: " << e.what() << "\n";
  } catch (const vex::Exception& e) {
    std::cerr << "vexc: " << e.what() << "\n";
  } catch (const std::exception& e) {
    std::cerr << "vexc: " << e.what() << "\n";
  }
  return vexc::kExitBadInput;
}
