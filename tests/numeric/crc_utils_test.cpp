#include "vex/numeric/crc_utils.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <set>
#include <vector>

#include "vex/platform/random.h"
#include "vex/text/mem_utils.h"

namespace vex {
namespace {

const char kCheck[] = "123456789";
const uint8_t* Check() { return reinterpret_cast<const uint8_t*>(kCheck); }

// The definition of CRC-16/MODBUS, one bit at a time.
uint16_t BitwiseCrc16(uint16_t crc, const uint8_t* p, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    crc ^= p[i];
    for (int bit = 0; bit < 8; ++bit) {
      crc = static_cast<uint16_t>((crc & 1) ? (crc >> 1) ^ 0xA001 : crc >> 1);
    }
  }
  return crc;
}

// The definition of CRC-32 (ISO-HDLC), one bit at a time.
uint32_t BitwiseCrc32(const uint8_t* p, size_t n) {
  uint32_t crc = 0xFFFFFFFFu;
  for (size_t i = 0; i < n; ++i) {
    crc ^= p[i];
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) ? (crc >> 1) ^ 0xEDB88320u : crc >> 1;
  }
  return ~crc;
}

TEST(CRCUtils, CheckValues) {
  EXPECT_EQ(TCRCUtils::CalcCRC32(kCheck, 9), 0xCBF43926u);
  EXPECT_EQ(TCRCUtils::CalcCRC16(kCheck, 9), 0x4B37);
  EXPECT_EQ(TMemUtils::CRC16_Of_Data(Check(), 9), 0x4B37);
  EXPECT_EQ(TMemUtils::CRC16_Update(0xFFFF, Check(), 9), 0x4B37);
}

TEST(CRCUtils, EmptyOrNullBuffersGiveTheInitialValuesWithoutReading) {
  EXPECT_EQ(TCRCUtils::CalcCRC32(kCheck, 0), 0u);
  EXPECT_EQ(TCRCUtils::CalcCRC32(nullptr, 0), 0u);
  EXPECT_EQ(TCRCUtils::CalcCRC32(nullptr, 100), 0u);
  EXPECT_EQ(TCRCUtils::CalcCRC16(kCheck, 0), 0xFFFF);
  EXPECT_EQ(TCRCUtils::CalcCRC16(nullptr, 100), 0xFFFF);
  EXPECT_EQ(TMemUtils::CRC16_Of_Data(nullptr, 9), 0xFFFF);
  EXPECT_EQ(TMemUtils::CRC16_Of_Data(Check(), 0), 0xFFFF);
  // A negative count must not be taken as a huge length: the pointer is past the end of
  // everything it may read.
  const uint8_t* past_the_end = Check() + sizeof kCheck;
  EXPECT_EQ(TMemUtils::CRC16_Of_Data(past_the_end, -1), 0xFFFF);
  EXPECT_EQ(TMemUtils::CRC16_Of_Data(past_the_end, INT32_MIN), 0xFFFF);
  EXPECT_EQ(TMemUtils::CRC16_Update(0x1234, nullptr, 0), 0x1234);
}

// Every length from 0 to 1024 at every start offset within a 16-byte line covers the table,
// the slicing and the folding paths and all their boundaries. Each buffer is copied into a heap
// block of exactly its length, so that a read beyond it is caught by the address sanitizer.
TEST(CRCUtils, Crc16MatchesTheBitwiseDefinitionForEveryLengthAndAlignment) {
  std::mt19937 rng(16);
  std::vector<uint8_t> source(1024 + 16);
  for (auto& b : source) b = static_cast<uint8_t>(rng());
  for (size_t offset = 0; offset < 16; ++offset) {
    for (size_t n = 0; n <= 1024; ++n) {
      std::unique_ptr<uint8_t[]> exact(new uint8_t[n + offset]);
      std::memcpy(exact.get() + offset, source.data(), n);
      const uint8_t* p = exact.get() + offset;
      const uint16_t want = BitwiseCrc16(0xFFFF, p, n);
      ASSERT_EQ(TMemUtils::CRC16_Update(0xFFFF, p, n), want) << "n=" << n << " off=" << offset;
      if (n > 0) {
        ASSERT_EQ(TCRCUtils::CalcCRC16(p, static_cast<uint32_t>(n)), want) << n;
        ASSERT_EQ(TMemUtils::CRC16_Of_Data(p, static_cast<int32_t>(n)), want) << n;
      }
    }
  }
}

TEST(CRCUtils, Crc16ContinuesARegisterAcrossPieces) {
  std::mt19937 rng(5);
  std::vector<uint8_t> data(100000);
  for (auto& b : data) b = static_cast<uint8_t>(rng());
  const uint16_t whole = TCRCUtils::CalcCRC16(data.data(), static_cast<uint32_t>(data.size()));
  EXPECT_EQ(whole, BitwiseCrc16(0xFFFF, data.data(), data.size()));
  for (size_t cut : {size_t{1}, size_t{63}, size_t{129}, size_t{4097}, size_t{99999}}) {
    const uint16_t first = TMemUtils::CRC16_Update(0xFFFF, data.data(), cut);
    EXPECT_EQ(TMemUtils::CRC16_Update(first, data.data() + cut, data.size() - cut), whole) << cut;
  }
  // All-zero and all-one data are where a folding constant off by one bit still often agrees.
  for (uint8_t fill : {uint8_t{0}, uint8_t{0xFF}}) {
    std::vector<uint8_t> flat(777, fill);
    EXPECT_EQ(TMemUtils::CRC16_Update(0, flat.data(), flat.size()),
              BitwiseCrc16(0, flat.data(), flat.size()));
  }
}

TEST(CRCUtils, Crc32MatchesTheBitwiseDefinition) {
  std::mt19937 rng(32);
  std::vector<uint8_t> data(3000);
  for (auto& b : data) b = static_cast<uint8_t>(rng());
  for (size_t n : {size_t{1}, size_t{2}, size_t{15}, size_t{64}, size_t{1000}, size_t{2999}}) {
    EXPECT_EQ(TCRCUtils::CalcCRC32(data.data() + 1, static_cast<uint32_t>(n)),
              BitwiseCrc32(data.data() + 1, n))
        << n;
  }
}

TEST(CRCUtils, LinkIdStringsHaveEightUpperCaseHexDigits) {
  for (int i = 0; i < 200; ++i) {
    const String with = TCRCUtils::NewLinkIDStr(true);
    const String without = TCRCUtils::NewLinkIDStr(false);
    ASSERT_EQ(with.size(), 9u);
    ASSERT_EQ(with[0], u'$');
    ASSERT_EQ(without.size(), 8u);
    for (Char c : with.substr(1) + without) {
      ASSERT_TRUE((c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'F')) << static_cast<int>(c);
    }
  }
}

TEST(CRCUtils, LinkIdsSpreadAndDrawFromTheSharedGenerator) {
  SetRandSeed(77);
  std::set<int32_t> ids;
  for (int i = 0; i < 1000; ++i) ids.insert(TCRCUtils::CreateLinkID());
  EXPECT_GT(ids.size(), 990u);  // equal ids need an equal time and an equal draw
  // One draw per identifier.
  SetRandSeed(77);
  for (int i = 0; i < 1000; ++i) Random(2);
  const int32_t after_draws = RandSeed();
  SetRandSeed(77);
  for (int i = 0; i < 1000; ++i) TCRCUtils::CreateLinkID();
  EXPECT_EQ(RandSeed(), after_draws);
}

}  // namespace
}  // namespace vex
