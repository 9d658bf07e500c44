// The real forms saved by designers (kept outside the project, read when present): text ->
// binary -> text gives every file back byte for byte after line-ending normalisation.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "vex/platform/object_text.h"

namespace vex {
namespace {

namespace fs = std::filesystem;

// The forms written by older designers: general-format floats, raw code-page bytes.
const std::set<std::string> kOlderForms = {"18", "19", "20", "26", "27", "34"};

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

std::string WithCrLf(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r') continue;
    if (text[i] == '\n') out += '\r';
    out += text[i];
  }
  return out;
}

TEST(ObjectTextCorpus, RealFormsComeBackByteForByte) {
  fs::path dir = fs::path(VEX_SOURCE_DIR) / ".." / "shared" / "corpus" / "forms";
  if (!fs::exists(dir)) GTEST_SKIP() << "no form corpus at " << dir;
  int checked = 0;
  for (const auto& entry : fs::directory_iterator(dir)) {
    if (entry.path().extension() != ".dfm") continue;
    std::string name = entry.path().filename().string();
    TObjectTextOptions options;
    if (kOlderForms.count(name.substr(0, 2))) options = TObjectTextOptions::OlderDesigner();
    // Only the forms with raw bytes need the raw writer; the others write #n codes.
    if (name.substr(0, 2) != "18" && name.substr(0, 2) != "27") options.raw_code_page = false;
    std::string original = WithCrLf(ReadFile(entry.path()));
    TStringStream text(original), binary, back;
    try {
      ObjectTextToBinary(text, binary, options);
      binary.SetPosition(0);
      ObjectBinaryToText(binary, back, options);
    } catch (const std::exception& e) {
      ADD_FAILURE() << name << ": " << e.what();
      continue;
    }
    std::string result = back.DataString().empty()
                             ? ""
                             : std::string(reinterpret_cast<const char*>(back.Memory()),
                                           static_cast<size_t>(back.Size()));
    if (result != original) {
      size_t i = 0;
      while (i < result.size() && i < original.size() && result[i] == original[i]) ++i;
      size_t line =
          static_cast<size_t>(std::count(original.begin(), original.begin() + i, '\n')) + 1;
      size_t from = original.rfind('\n', i) + 1;
      ADD_FAILURE() << name << " differs at line " << line
                    << ":\n  want: " << original.substr(from, original.find('\n', i) - from)
                    << "\n  got:  " << result.substr(from, result.find('\n', i) - from);
      continue;
    }
    ++checked;
  }
  EXPECT_EQ(checked, 35);
}

}  // namespace
}  // namespace vex
