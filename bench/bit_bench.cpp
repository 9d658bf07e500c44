// TBitUtils::ProcessBits and CopyBits over 8 Mbit beside the per-bit loop a user would write
// from the definition. CopyBits is measured with source and destination at different bit
// offsets, so that every word has to be shifted.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <vector>

#include "bench_ratios.h"
#include "vex/numeric/bit_utils.h"

namespace {

constexpr int32_t kBits = 8 << 20;
constexpr size_t kBytes = kBits / 8 + 8;  // room for the offsets below

std::vector<uint8_t> RandomBytes(uint64_t seed) {
  std::vector<uint8_t> d(kBytes);
  std::mt19937_64 rng(seed);
  for (auto& b : d) b = static_cast<uint8_t>(rng());
  return d;
}

inline bool Get(const uint8_t* d, int32_t i) { return (d[i >> 3] >> (i & 7)) & 1; }
inline void Put(uint8_t* d, int32_t i, bool v) {
  const uint8_t mask = static_cast<uint8_t>(1u << (i & 7));
  d[i >> 3] = static_cast<uint8_t>(v ? d[i >> 3] | mask : d[i >> 3] & ~mask);
}

void BM_ProcessBitsXor_Library(benchmark::State& state) {
  auto a = RandomBytes(1), b = RandomBytes(2), dest = RandomBytes(3);
  for (auto _ : state) {
    vex::TBitUtils::ProcessBits(a.data(), b.data(), dest.data(), kBits, vex::bpXor);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kBits);
}

void BM_ProcessBitsXor_PerBitLoop(benchmark::State& state) {
  auto a = RandomBytes(1), b = RandomBytes(2), dest = RandomBytes(3);
  for (auto _ : state) {
    for (int32_t i = 0; i < kBits; ++i) Put(dest.data(), i, Get(a.data(), i) != Get(b.data(), i));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kBits);
}

void BM_CopyBitsShifted_Library(benchmark::State& state) {
  auto src = RandomBytes(4), dest = RandomBytes(5);
  for (auto _ : state) {
    vex::TBitUtils::CopyBits(src.data(), dest.data(), 3, 29, kBits, true);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kBits);
}

void BM_CopyBitsShifted_PerBitLoop(benchmark::State& state) {
  auto src = RandomBytes(4), dest = RandomBytes(5);
  for (auto _ : state) {
    for (int32_t i = 0; i < kBits; ++i) Put(dest.data(), 29 + i, Get(src.data(), 3 + i));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kBits);
}

BENCHMARK(BM_ProcessBitsXor_Library)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ProcessBitsXor_PerBitLoop)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CopyBitsShifted_Library)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CopyBitsShifted_PerBitLoop)->Unit(benchmark::kMicrosecond);

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_ProcessBitsXor_Library", "BM_ProcessBitsXor_PerBitLoop",
                                vex::bench::SpeedAtLeast(20)},
                               {"BM_CopyBitsShifted_Library", "BM_CopyBitsShifted_PerBitLoop",
                                vex::bench::SpeedAtLeast(20)});
