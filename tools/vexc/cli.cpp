#include "cli.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"

namespace vexc {

InputError::InputError(const std::string& file, int64_t line, const std::string& message)
    : std::runtime_error(file + ":" + std::to_string(line) + ": " + message) {}

InputError::InputError(const std::string& file, const std::string& message)
    : std::runtime_error(file + ": " + message) {}

Input::Input(const std::string& name) : name_(name) {
  if (name == "-") {
    name_ = "<stdin>";
    stream_ = &std::cin;
    return;
  }
  std::error_code ec;
  if (std::filesystem::is_directory(name, ec)) throw InputError(name, "is a directory");
  auto file = std::make_unique<std::ifstream>(name, std::ios::binary);
  if (!*file) throw InputError(name, "cannot open file");
  if (std::filesystem::is_regular_file(name, ec)) {
    size_ = static_cast<int64_t>(std::filesystem::file_size(name, ec));
    if (ec) size_ = -1;
  }
  owned_ = std::move(file);
  stream_ = owned_.get();
}

bool Input::ReadLine(vex::String& line) {
  if (!std::getline(*stream_, buffer_)) {
    if (stream_->bad()) throw InputError(name_, line_number_ + 1, "read error");
    return false;
  }
  ++line_number_;
  std::string_view bytes = buffer_;
  if (line_number_ == 1 && bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
  if (!bytes.empty() && bytes.back() == '\r') bytes.remove_suffix(1);
  try {
    line = vex::FromUtf8(bytes);
  } catch (const vex::EConvertError& e) {
    throw InputError(name_, line_number_, e.what());
  }
  return true;
}

std::vector<vex::String> Input::ReadAllLines() {
  std::vector<vex::String> lines;
  vex::String line;
  while (ReadLine(line)) lines.push_back(line);
  return lines;
}

vex::String Input::ReadAllText() {
  vex::String text;
  vex::String line;
  while (ReadLine(line)) {
    text += line;
    text += u"\r\n";
  }
  return text;
}

std::vector<std::string> InputNamesOrStdin(const std::vector<std::string>& names) {
  if (names.empty()) return {"-"};
  return names;
}

void WriteLine(const vex::String& text) { WriteLine(vex::ToUtf8(text, vex::TInvalidText::Replace)); }

void WriteLine(const std::string& utf8) {
  std::cout.write(utf8.data(), static_cast<std::streamsize>(utf8.size()));
  std::cout.put('\n');
}

Progress::Progress(const std::string& label, int64_t total)
    : label_(label), total_(total), enabled_(total > (int64_t{64} << 20) && isatty(2)) {}

Progress::~Progress() {
  if (enabled_ && last_percent_ >= 0) std::fprintf(stderr, "\r\033[K");
}

void Progress::Advance(int64_t bytes) {
  if (!enabled_) return;
  done_ += bytes;
  Draw();
}

void Progress::Draw() {
  int percent = static_cast<int>(done_ * 100 / total_);
  if (percent == last_percent_) return;
  last_percent_ = percent;
  constexpr int kWidth = 30;
  int filled = percent * kWidth / 100;
  std::fprintf(stderr, "\r%s [%s%s] %3d%%", label_.c_str(), std::string(filled, '#').c_str(),
               std::string(kWidth - filled, '.').c_str(), percent);
  std::fflush(stderr);
}

}  // namespace vexc
