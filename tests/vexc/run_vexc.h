// Runs the built vexc with arguments and standard input, capturing its output and exit code.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace vexc_test {

struct Result {
  int exit_code = -1;
  std::string out;
  std::string err;
};

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

inline std::filesystem::path ScratchDir() {
  auto dir = std::filesystem::temp_directory_path() / ("vexc_test_" + std::to_string(getpid()));
  std::filesystem::create_directories(dir);
  return dir;
}

inline std::filesystem::path WriteScratch(const std::string& name, const std::string& bytes) {
  auto path = ScratchDir() / name;
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

/// args is appended to the program path as shell words (quote them yourself).
inline Result RunVexc(const std::string& args, const std::string& stdin_bytes = "") {
  auto dir = ScratchDir();
  auto in = WriteScratch("stdin", stdin_bytes);
  auto out = dir / "stdout";
  auto err = dir / "stderr";
  std::string cmd = std::string("'") + VEXC_PATH + "' " + args + " <'" + in.string() + "' >'" +
                    out.string() + "' 2>'" + err.string() + "'";
  int status = std::system(cmd.c_str());
  Result r;
  r.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  r.out = ReadFile(out);
  r.err = ReadFile(err);
  return r;
}

inline std::string Examples() { return std::string(VEX_SOURCE_DIR) + "/examples"; }

}  // namespace vexc_test
