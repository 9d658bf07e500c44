// CRC-32 by the shared engine against zlib, over every path of the engine: tables, slicing and
// carry-less folding, with their boundaries at every alignment.
#include <gtest/gtest.h>
#include <zlib.h>

#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "vex/numeric/crc_utils.h"
#include "vex/text/crc_engine.h"

namespace vex {
namespace {

constexpr TReflectedCrc kCrc32(0xEDB88320, 32);

uint32_t Zlib(const uint8_t* p, size_t n, uint32_t crc = 0) {
  return static_cast<uint32_t>(crc32(crc, p, static_cast<uInt>(n)));
}

std::vector<uint8_t> RandomBytes(size_t n, unsigned seed) {
  std::mt19937 rng(seed);
  std::vector<uint8_t> data(n);
  for (auto& b : data) b = static_cast<uint8_t>(rng());
  return data;
}

// Each buffer is copied into a heap block of exactly its length, so that a read beyond it is
// caught by the address sanitizer.
TEST(Crc32Folding, MatchesZlibForEveryLengthTo4096AtEveryAlignment) {
  const std::vector<uint8_t> source = RandomBytes(4096, 32);
  for (size_t offset = 0; offset < 16; ++offset) {
    for (size_t n = 0; n <= 4096; ++n) {
      std::unique_ptr<uint8_t[]> exact(new uint8_t[n + offset]);
      std::memcpy(exact.get() + offset, source.data(), n);
      const uint8_t* p = exact.get() + offset;
      ASSERT_EQ(TCRCUtils::CalcCRC32(p, static_cast<uint32_t>(n)), Zlib(p, n))
          << "n=" << n << " off=" << offset;
    }
  }
}

// The table path is what CPUs without carry-less multiplication take; both paths must give the
// same register from any starting value, and a register must continue across pieces.
TEST(Crc32Folding, TablePathAndFoldedPathAgreeAndContinueAcrossPieces) {
  const std::vector<uint8_t> data = RandomBytes(100000, 7);
  const uint32_t whole = Zlib(data.data(), data.size());
  EXPECT_EQ(~kCrc32.UpdateByTable(0xFFFFFFFF, data.data(), data.size()), whole);
  for (size_t cut : {size_t{1}, size_t{63}, size_t{64}, size_t{129}, size_t{4097}, size_t{99999}}) {
    const uint32_t first = Zlib(data.data(), cut);
    EXPECT_EQ(UpdateCrc32(first, data.data() + cut, data.size() - cut), whole) << cut;
  }
  std::mt19937 rng(3);
  for (size_t n : {size_t{128}, size_t{191}, size_t{256}, size_t{1000}, size_t{65536}}) {
    const uint32_t reg = static_cast<uint32_t>(rng());
    EXPECT_EQ(kCrc32.Update(reg, data.data(), n), kCrc32.UpdateByTable(reg, data.data(), n)) << n;
  }
  // All-zero and all-one data are where a folding constant off by one bit still often agrees.
  for (uint8_t fill : {uint8_t{0}, uint8_t{0xFF}}) {
    const std::vector<uint8_t> flat(777, fill);
    EXPECT_EQ(TCRCUtils::CalcCRC32(flat.data(), 777), Zlib(flat.data(), 777)) << int{fill};
    EXPECT_EQ(kCrc32.Update(0, flat.data(), 777), kCrc32.UpdateByTable(0, flat.data(), 777));
  }
}

}  // namespace
}  // namespace vex
