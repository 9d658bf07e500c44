#include "vex/platform/random.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace vex {

namespace {

// A 32-bit linear congruential generator: state = state * 134775813 + 1 (mod 2^32). It has the
// full period 2^32, and its high bits are well spread, which is what the draws below use.
constexpr uint32_t kMultiplier = 134775813u;
constexpr uint32_t kIncrement = 1u;

std::atomic<uint32_t> g_state{0};

uint32_t NextState(uint32_t state) { return state * kMultiplier + kIncrement; }

// Advances the shared state by one step and returns the new state.
uint32_t Step() {
  uint32_t current = g_state.load(std::memory_order_relaxed);
  uint32_t next = NextState(current);
  while (!g_state.compare_exchange_weak(current, next, std::memory_order_relaxed)) {
    next = NextState(current);
  }
  return next;
}

}  // namespace

void Randomize() {
  const auto now = std::chrono::high_resolution_clock::now().time_since_epoch().count();
  const auto wall = std::chrono::system_clock::now().time_since_epoch().count();
  const auto thread = std::hash<std::thread::id>{}(std::this_thread::get_id());
  // Fold the 64-bit clocks into 32 bits so that the nanoseconds count.
  uint64_t mix = static_cast<uint64_t>(now) ^ (static_cast<uint64_t>(wall) << 13) ^
                 (static_cast<uint64_t>(thread) * 0x9E3779B97F4A7C15ull);
  mix ^= mix >> 32;
  g_state.store(static_cast<uint32_t>(mix), std::memory_order_relaxed);
}

int32_t RandSeed() { return static_cast<int32_t>(g_state.load(std::memory_order_relaxed)); }

void SetRandSeed(int32_t Seed) {
  g_state.store(static_cast<uint32_t>(Seed), std::memory_order_relaxed);
}

int32_t Random(int32_t Range) {
  if (Range <= 0) return 0;
  // The high 32 bits of state * Range: uniform over 0 .. Range - 1 and driven by the state's
  // high bits, which are the better ones of a power-of-two LCG.
  const uint64_t product = static_cast<uint64_t>(Step()) * static_cast<uint32_t>(Range);
  return static_cast<int32_t>(product >> 32);
}

double Random() { return static_cast<double>(Step()) * (1.0 / 4294967296.0); }

}  // namespace vex
