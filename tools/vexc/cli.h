// Shared plumbing of the vexc subcommands: reading UTF-8 input from files or standard input,
// writing UTF-8 output, the errors that map to exit codes, and the progress bar.
//
// Exit codes: 0 success, 1 a check failed, 2 bad usage or bad input.
#pragma once

#include <CLI/CLI.hpp>

#include <cstdint>
#include <functional>
#include <istream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "vex/platform/types.h"

namespace vexc {

constexpr int kExitOk = 0;
constexpr int kExitCheckFailed = 1;
constexpr int kExitBadInput = 2;

/// Bad input: the message names the file and, where there is one, the line.
class InputError : public std::runtime_error {
 public:
  InputError(const std::string& file, int64_t line, const std::string& message);
  InputError(const std::string& file, const std::string& message);
};

/// One named input: a file, or standard input for "-".
class Input {
 public:
  /// Opens the file (or standard input for "-"); raises InputError when it cannot be read.
  explicit Input(const std::string& name);

  const std::string& Name() const { return name_; }
  std::istream& Stream() { return *stream_; }
  /// Size in bytes when known (regular files), otherwise -1.
  int64_t Size() const { return size_; }

  /// Reads the next line as UTF-16: a UTF-8 byte-order mark at the start is skipped, a CR
  /// before the LF is dropped. Returns false at the end. Invalid UTF-8 raises InputError
  /// naming the file and line.
  bool ReadLine(vex::String& line);
  /// Line number of the line last read (1-based).
  int64_t LineNumber() const { return line_number_; }
  /// Reads every remaining line.
  std::vector<vex::String> ReadAllLines();
  /// Reads every remaining line into one text, each line ended by CR LF (the line break the
  /// library's tab-indented documents use).
  vex::String ReadAllText();

 private:
  std::string name_;
  std::unique_ptr<std::istream> owned_;
  std::istream* stream_ = nullptr;
  int64_t size_ = -1;
  int64_t line_number_ = 0;
  std::string buffer_;
};

/// The inputs named on the command line, or standard input when none are named.
std::vector<std::string> InputNamesOrStdin(const std::vector<std::string>& names);

/// Writes UTF-16 text to standard output as UTF-8, followed by a line feed.
void WriteLine(const vex::String& text);
void WriteLine(const std::string& utf8);

/// Progress on standard error for large inputs: shown only when standard error is a terminal
/// and the total is over 64 MiB; cleared when done.
class Progress {
 public:
  Progress(const std::string& label, int64_t total);
  ~Progress();
  void Advance(int64_t bytes);

 private:
  void Draw();
  std::string label_;
  int64_t total_;
  int64_t done_ = 0;
  int last_percent_ = -1;
  bool enabled_;
};

/// A subcommand: registers its options on the app and returns the action to run once parsed.
using Action = std::function<int()>;
using Register = std::function<void(CLI::App& app, Action& action)>;

/// Subcommands, each defined in its own cmd_<name>.cpp.
void RegisterChecksumCommands(CLI::App& app, Action& action);
void RegisterTextCommands(CLI::App& app, Action& action);
void RegisterReplaceCommand(CLI::App& app, Action& action);
void RegisterPatternCommands(CLI::App& app, Action& action);
/// form totext|tobinary|check: component streams and their description text.
void RegisterFormCommands(CLI::App& app, Action& action);
/// form show|describe: a form description read into a control tree (show needs Qt).
void RegisterFormWindowCommands(CLI::App& app, Action& action);
/// table dump|load and settings get|set over SQLite tables.
void RegisterTableCommands(CLI::App& app, Action& action);
/// message: a message box composed from a language file (needs Qt to show it).
void RegisterMessageCommands(CLI::App& app, Action& action);
/// checktree: the check tree viewer, its normal form and its node split.
void RegisterCheckTreeCommands(CLI::App& app, Action& action);

}  // namespace vexc
