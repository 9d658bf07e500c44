// The binary Free Pascal's ObjectTextToBinary wrote for texts that use only the value kinds on
// which it agrees with this library (tests/data/golden/object_stream, made by
// scripts/golden/generate_object_stream.sh): ours must be the same bytes, both from our text
// and from the text Free Pascal's ObjectBinaryToText wrote in its own layout.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "vex/platform/object_text.h"

namespace vex {
namespace {

namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

std::string ToBinary(const std::string& text) {
  TStringStream in(text), out;
  ObjectTextToBinary(in, out);
  return std::string(reinterpret_cast<const char*>(out.Memory()), static_cast<size_t>(out.Size()));
}

TEST(ObjectTextGolden, BinaryEqualsFreePascalsByteForByte) {
  int compared = 0;
  for (const auto& entry :
       fs::directory_iterator(fs::path(VEX_TEST_DATA_DIR) / "golden" / "object_stream")) {
    if (entry.path().extension() != ".txt") continue;
    SCOPED_TRACE(entry.path().filename().string());
    fs::path golden = entry.path();
    golden.replace_extension(".bin");
    ASSERT_TRUE(fs::exists(golden));
    std::string want = ReadFile(golden);
    EXPECT_EQ(ToBinary(ReadFile(entry.path())), want);
    fs::path fpc_text = entry.path();
    fpc_text.replace_extension(".fpc");
    EXPECT_EQ(ToBinary(ReadFile(fpc_text)), want);
    ++compared;
  }
  EXPECT_GE(compared, 5);
}

}  // namespace
}  // namespace vex
