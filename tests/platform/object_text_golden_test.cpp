// The binary Free Pascal's ObjectTextToBinary wrote for texts that use only the value kinds on
// which it agrees with this library (tests/data/golden/object_stream, made by
// scripts/golden/generate_object_stream.sh): ours must be the same bytes.
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

TEST(ObjectTextGolden, BinaryEqualsFreePascalsByteForByte) {
  int compared = 0;
  for (const auto& entry :
       fs::directory_iterator(fs::path(VEX_TEST_DATA_DIR) / "golden" / "object_stream")) {
    if (entry.path().extension() != ".txt") continue;
    SCOPED_TRACE(entry.path().filename().string());
    fs::path golden = entry.path();
    golden.replace_extension(".bin");
    ASSERT_TRUE(fs::exists(golden));
    TStringStream text(ReadFile(entry.path())), binary;
    ObjectTextToBinary(text, binary);
    std::string ours(reinterpret_cast<const char*>(binary.Memory()),
                     static_cast<size_t>(binary.Size()));
    EXPECT_EQ(ours, ReadFile(golden));
    ++compared;
  }
  EXPECT_GE(compared, 5);
}

}  // namespace
}  // namespace vex
