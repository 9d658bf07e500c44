#include "vex/numeric/bit_utils.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "vex/platform/exceptions.h"

namespace vex {
namespace {

// --- per-bit reference implementations: the definitions, one bit at a time --------------------

bool RefGet(const uint8_t* d, int64_t i) { return (d[i / 8] >> (i % 8)) & 1; }
void RefSet(uint8_t* d, int64_t i, bool v) {
  if (v) {
    d[i / 8] = static_cast<uint8_t>(d[i / 8] | (1u << (i % 8)));
  } else {
    d[i / 8] = static_cast<uint8_t>(d[i / 8] & ~(1u << (i % 8)));
  }
}

void RefCopyBits(const uint8_t* src, uint8_t* dest, int ss, int ds, int count, bool per_bit) {
  if (count < 1) return;
  const bool first = RefGet(src, ss);
  for (int i = 0; i < count; ++i) RefSet(dest, ds + i, per_bit ? RefGet(src, ss + i) : first);
}

void RefProcessBits(const uint8_t* a, const uint8_t* b, uint8_t* dest, int count,
                    TBitProcType op) {
  if (op == bpNone) return;
  for (int i = 0; i < count; ++i) {
    const bool x = RefGet(a, i), y = RefGet(b, i);
    RefSet(dest, i, op == bpAnd ? (x && y) : op == bpOr ? (x || y) : (x != y));
  }
}

// Heap buffer of exactly n bytes, so that the address sanitizer reports any touch beyond it.
struct ExactBuffer {
  explicit ExactBuffer(size_t n, std::mt19937& rng) : size(n), data(new uint8_t[n]) {
    for (size_t i = 0; i < n; ++i) data[i] = static_cast<uint8_t>(rng());
  }
  std::vector<uint8_t> Copy() const { return {data.get(), data.get() + size}; }
  size_t size;
  std::unique_ptr<uint8_t[]> data;
};

size_t BytesFor(int last_bit_exclusive) { return static_cast<size_t>((last_bit_exclusive + 7) / 8); }

// --- single bits -------------------------------------------------------------------------------

TEST(BitUtilsSingle, Bit33IsBit1OfTheSecondWord) {
  uint32_t words[2] = {0, 2};
  EXPECT_TRUE(TBitUtils::GetBit(words, 33));
  EXPECT_FALSE(TBitUtils::GetBit(words, 32));
  EXPECT_FALSE(TBitUtils::GetBit(words, 1));
}

TEST(BitUtilsSingle, SetAndClearKeepTheOtherBits) {
  uint32_t words[2] = {0xF0F0F0F0u, 0};
  TBitUtils::SetBit(words, 0, true);
  TBitUtils::SetBitFalse(words, 31);
  TBitUtils::SetBitTrue(words, 63);
  TBitUtils::SetBit(words, 4, false);
  EXPECT_EQ(words[0], 0x70F0F0E1u);
  EXPECT_EQ(words[1], 0x80000000u);
}

// --- sizing ------------------------------------------------------------------------------------

TEST(BitUtilsSizing, MaxBitAndMaxBitSafe) {
  struct Case { uint32_t v; int32_t max_bit, max_bit_safe; };
  const Case cases[] = {{0, -1, -1},  {1, 0, 1},     {2, 1, 1},      {3, 1, 2},
                        {4, 2, 2},    {5, 2, 3},     {8, 3, 3},      {15, 3, 4},
                        {1024, 10, 10}, {1025, 10, 11}, {0x80000000u, 31, 31},
                        {0x80000001u, 31, 32}, {0xFFFFFFFFu, 31, 32}};
  for (const auto& c : cases) {
    EXPECT_EQ(TBitUtils::MaxBit(c.v), c.max_bit) << c.v;
    EXPECT_EQ(TBitUtils::MaxBitSafe(c.v), c.max_bit_safe) << c.v;
  }
}

TEST(BitUtilsSizing, StepsCoverTheTotal) {
  EXPECT_EQ(TBitUtils::GetMaxSize(10, 3), 4);
  EXPECT_EQ(TBitUtils::GetLastStep(10, 3), 1);
  EXPECT_EQ(TBitUtils::GetMaxSize(9, 3), 3);
  EXPECT_EQ(TBitUtils::GetLastStep(9, 3), 3);
  EXPECT_EQ(TBitUtils::GetMaxSize(0, 5), 0);
  EXPECT_EQ(TBitUtils::GetLastStep(0, 5), 5);
  EXPECT_EQ(TBitUtils::GetMaxSize(0xFFFFFFFFu, 0xFFFFFFFFu), 1);
  EXPECT_THROW(TBitUtils::GetMaxSize(10, 0), EDivByZero);
  EXPECT_THROW(TBitUtils::GetLastStep(10, 0), EDivByZero);
}

TEST(BitUtilsSizing, ByteSizesFollowTheHighestBitIndex) {
  EXPECT_EQ(TBitUtils::ByteSize(0), 0);
  EXPECT_EQ(TBitUtils::ByteSize(1), 1);
  EXPECT_EQ(TBitUtils::ByteSize(8), 1);
  EXPECT_EQ(TBitUtils::ByteSize(9), 2);
  EXPECT_EQ(TBitUtils::MaxByteSize(0), -1);
  EXPECT_EQ(TBitUtils::MaxByteSize(1), 0);
  EXPECT_EQ(TBitUtils::MaxByteSize(2), 1);
  EXPECT_EQ(TBitUtils::MaxByteSize(256), 1);  // index 8, not 9 bits
  EXPECT_EQ(TBitUtils::MaxByteSize(512), 2);
  EXPECT_EQ(TBitUtils::MaxSizeByItemBits(0, 4), -1);
  EXPECT_EQ(TBitUtils::MaxSizeByItemBits(1, 4), 0);
  EXPECT_EQ(TBitUtils::MaxSizeByItemBits(1u << 9, 4), 3);  // index 9 in steps of 4
  EXPECT_THROW(TBitUtils::MaxSizeByItemBits(1u << 9, 0), EDivByZero);
}

// --- runs: fixed cases ------------------------------------------------------------------------

TEST(BitUtilsRuns, SelectBitsTakesAtMost32) {
  const uint32_t words[2] = {0xF0000000u, 0x5u};
  EXPECT_EQ(TBitUtils::SelectBits(words, 28, 7), 0x5F);
  EXPECT_EQ(TBitUtils::SelectBits(words, 0, 40), static_cast<int32_t>(0xF0000000u));
}

TEST(BitUtilsRuns, CompareBitsReportsEveryIndexInOrder) {
  const uint8_t a = 0x05, b = 0x06;
  std::vector<std::tuple<int32_t, bool, bool>> seen;
  TBitUtils::CompareBits(&a, &b, 3, [&](int32_t i, bool x, bool y) { seen.emplace_back(i, x, y); });
  const std::vector<std::tuple<int32_t, bool, bool>> expected = {
      {0, true, false}, {1, false, true}, {2, true, true}};
  EXPECT_EQ(seen, expected);
  TBitUtils::CompareBits(&a, &b, 3, nullptr);  // no procedure: nothing to call
}

// --- runs: the word-wise paths against the per-bit definitions --------------------------------

class BitRunsRandomized : public ::testing::Test {
 protected:
  std::mt19937 rng{20261121};
  int Uniform(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); }
  // Mostly short runs where the edges matter, some long ones for the bulk path.
  int RunLength() { return Uniform(0, 3) == 0 ? Uniform(0, 2000) : Uniform(0, 140); }
};

// Separate buffers, then source and destination as different pointers into one block
// (overlapping in any way, the same pointer included).
TEST_F(BitRunsRandomized, CopyBitsSeparateAndOverlapping) {
  for (int iter = 0; iter < 6000; ++iter) {
    const int count = RunLength(), ss = Uniform(0, 100), ds = Uniform(0, 100);
    const bool per_bit = Uniform(0, 4) != 0;
    if (iter % 2 == 0) {
      ExactBuffer src(BytesFor(ss + std::max(count, 1)), rng);
      ExactBuffer dest(BytesFor(ds + std::max(count, 1)), rng);
      std::vector<uint8_t> expected = dest.Copy();
      RefCopyBits(src.data.get(), expected.data(), ss, ds, count, per_bit);
      TBitUtils::CopyBits(src.data.get(), dest.data.get(), ss, ds, count, per_bit);
      ASSERT_EQ(dest.Copy(), expected) << "ss=" << ss << " ds=" << ds << " count=" << count;
      continue;
    }
    const int src_byte = Uniform(0, 20), dest_byte = Uniform(0, 3) == 0 ? src_byte : Uniform(0, 20);
    ExactBuffer buf(BytesFor(std::max(src_byte, dest_byte) * 8 + std::max(ss, ds) + std::max(count, 1)),
                    rng);
    std::vector<uint8_t> expected = buf.Copy();
    RefCopyBits(expected.data() + src_byte, expected.data() + dest_byte, ss, ds, count, true);
    TBitUtils::CopyBits(buf.data.get() + src_byte, buf.data.get() + dest_byte, ss, ds, count,
                        true);
    ASSERT_EQ(buf.Copy(), expected) << "src " << src_byte << ":" << ss << " dest " << dest_byte
                                    << ":" << ds << " count=" << count;
  }
  const uint8_t src = 0x02;  // count 0 writes nothing
  uint8_t dest = 0xC0;
  TBitUtils::CopyBits(&src, &dest, 0, 0, 0, true);
  EXPECT_EQ(dest, 0xC0);
}

TEST_F(BitRunsRandomized, ProcessBitsSeparateAndOverlapping) {
  const TBitProcType ops[] = {bpNone, bpAnd, bpOr, bpXor};
  for (int iter = 0; iter < 3000; ++iter) {
    const int count = RunLength();
    const TBitProcType op = ops[Uniform(0, 3)];
    const int a_at = Uniform(0, 24), b_at = Uniform(0, 24), d_at = Uniform(0, 24);
    const size_t size = BytesFor(24 * 8 + std::max(count, 1));
    ExactBuffer buf(size, rng);
    std::vector<uint8_t> expected = buf.Copy();
    if (Uniform(0, 1) == 0) {  // all three in one block, overlapping in any way
      RefProcessBits(expected.data() + a_at, expected.data() + b_at, expected.data() + d_at,
                     count, op);
      TBitUtils::ProcessBits(buf.data.get() + a_at, buf.data.get() + b_at, buf.data.get() + d_at,
                             count, op);
      ASSERT_EQ(buf.Copy(), expected) << a_at << " " << b_at << " " << d_at << " n=" << count;
    } else {  // separate operands of exactly the named size
      ExactBuffer a(BytesFor(std::max(count, 1)), rng), b(BytesFor(std::max(count, 1)), rng);
      ExactBuffer dest(BytesFor(std::max(count, 1)), rng);
      std::vector<uint8_t> want = dest.Copy();
      RefProcessBits(a.data.get(), b.data.get(), want.data(), count, op);
      TBitUtils::ProcessBits(a.data.get(), b.data.get(), dest.data.get(), count, op);
      ASSERT_EQ(dest.Copy(), want) << "n=" << count;
    }
  }
}

TEST_F(BitRunsRandomized, SetBitsSelectBitsAndMaxActiveBit) {
  for (int iter = 0; iter < 3000; ++iter) {
    const int start = Uniform(0, 100), count = Uniform(0, 40);
    const uint32_t value = Uniform(0, 3) == 0 ? static_cast<uint32_t>(Uniform(0, 1))
                                              : static_cast<uint32_t>(rng());
    ExactBuffer buf(BytesFor(start + std::max(count, 32) + 1), rng);
    std::vector<uint8_t> expected = buf.Copy();
    if (value <= 1) {
      RefSet(expected.data(), start, value == 1);
    } else {
      const int n = count == 0 ? TBitUtils::MaxBit(value) : count;
      for (int i = 0; i < n; ++i) RefSet(expected.data(), start + i, i < 32 && ((value >> i) & 1));
    }
    TBitUtils::SetBits(buf.data.get(), start, value, count);
    ASSERT_EQ(buf.Copy(), expected) << "start=" << start << " value=" << value << " n=" << count;

    const int sel = std::min(count, 32);
    uint32_t want = 0;
    for (int i = 0; i < sel; ++i) want |= static_cast<uint32_t>(RefGet(expected.data(), start + i)) << i;
    ASSERT_EQ(static_cast<uint32_t>(TBitUtils::SelectBits(buf.data.get(), start, count)), want);
  }
  for (int iter = 0; iter < 1000; ++iter) {
    const int count = RunLength();
    ExactBuffer buf(BytesFor(std::max(count, 1)), rng);
    std::memset(buf.data.get(), 0, buf.size);
    if (count > 0 && Uniform(0, 3) != 0) {  // one or two set bits somewhere
      RefSet(buf.data.get(), Uniform(0, count - 1), true);
      RefSet(buf.data.get(), Uniform(0, count - 1), true);
    }
    int want = -1;
    for (int i = 0; i < count && want < 0; ++i) {
      if (RefGet(buf.data.get(), i)) want = i;
    }
    ASSERT_EQ(TBitUtils::MaxActiveBit(buf.data.get(), count), want) << "n=" << count;
  }
}

}  // namespace
}  // namespace vex
