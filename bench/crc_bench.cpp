// CRC-16/MODBUS and CRC-32 over 64 MiB: the library beside what a C++ user would otherwise
// write or call. CRC-16 against the bitwise loop of its definition and the common byte-table
// loop; CRC-32 against zlib's crc32 called directly (the library must cost nothing on top).
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <array>
#include <cstdint>
#include <random>
#include <vector>

#include "bench_ratios.h"
#include "vex/numeric/crc_utils.h"

namespace {

constexpr size_t kSize = size_t{64} << 20;

const std::vector<uint8_t>& Buffer() {
  static const std::vector<uint8_t> data = [] {
    std::vector<uint8_t> d(kSize);
    std::mt19937_64 rng(42);
    for (auto& b : d) b = static_cast<uint8_t>(rng());
    return d;
  }();
  return data;
}

uint16_t Crc16Bitwise(const uint8_t* p, size_t n) {
  uint16_t crc = 0xFFFF;
  for (size_t i = 0; i < n; ++i) {
    crc ^= p[i];
    for (int bit = 0; bit < 8; ++bit) {
      crc = static_cast<uint16_t>((crc & 1) ? (crc >> 1) ^ 0xA001 : crc >> 1);
    }
  }
  return crc;
}

uint16_t Crc16ByteTable(const uint8_t* p, size_t n) {
  static const std::array<uint16_t, 256> table = [] {
    std::array<uint16_t, 256> t{};
    for (unsigned b = 0; b < 256; ++b) {
      uint16_t crc = static_cast<uint16_t>(b);
      for (int bit = 0; bit < 8; ++bit) {
        crc = static_cast<uint16_t>((crc & 1) ? (crc >> 1) ^ 0xA001 : crc >> 1);
      }
      t[b] = crc;
    }
    return t;
  }();
  uint16_t crc = 0xFFFF;
  for (size_t i = 0; i < n; ++i)
    crc = static_cast<uint16_t>((crc >> 8) ^ table[(crc ^ p[i]) & 0xFF]);
  return crc;
}

template <class F>
void Run(benchmark::State& state, F f) {
  const auto& data = Buffer();
  for (auto _ : state) benchmark::DoNotOptimize(f(data.data(), data.size()));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(kSize));
}

void BM_Crc16_Library(benchmark::State& state) {
  Run(state, [](const uint8_t* p, size_t n) {
    return vex::TCRCUtils::CalcCRC16(p, static_cast<uint32_t>(n));
  });
}
void BM_Crc16_BitwiseLoop(benchmark::State& state) { Run(state, Crc16Bitwise); }
void BM_Crc16_ByteTableLoop(benchmark::State& state) { Run(state, Crc16ByteTable); }

void BM_Crc32_Library(benchmark::State& state) {
  Run(state, [](const uint8_t* p, size_t n) {
    return vex::TCRCUtils::CalcCRC32(p, static_cast<uint32_t>(n));
  });
}
void BM_Crc32_ZlibDirect(benchmark::State& state) {
  Run(state, [](const uint8_t* p, size_t n) {
    return crc32(crc32(0L, Z_NULL, 0), p, static_cast<uInt>(n));
  });
}

BENCHMARK(BM_Crc16_Library)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Crc16_BitwiseLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Crc16_ByteTableLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Crc32_Library)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Crc32_ZlibDirect)->Unit(benchmark::kMillisecond);

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_Crc16_Library", "BM_Crc16_BitwiseLoop",
                                vex::bench::SpeedAtLeast(10)},
                               {"BM_Crc16_Library", "BM_Crc16_ByteTableLoop", {}},
                               {"BM_Crc32_Library", "BM_Crc32_ZlibDirect",
                                vex::bench::SpeedAtLeast(3)});
