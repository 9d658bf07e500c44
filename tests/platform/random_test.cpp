#include "vex/platform/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <thread>
#include <vector>

namespace vex {
namespace {

TEST(Random, SameSeedGivesSameSequenceAndTheSeedAdvancesWithEveryDraw) {
  SetRandSeed(12345);
  std::vector<int32_t> first;
  for (int i = 0; i < 100; ++i) first.push_back(Random(1000));
  SetRandSeed(12345);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(Random(1000), first[i]) << i;
  SetRandSeed(-7);
  EXPECT_EQ(RandSeed(), -7);
  EXPECT_EQ(RandSeed(), -7);  // reading does not draw
  Random(10);
  EXPECT_NE(RandSeed(), -7);
  const int32_t after_one = RandSeed();
  SetRandSeed(-7);
  Random();
  EXPECT_EQ(RandSeed(), after_one);  // integer and double draws take one step each
}

TEST(Random, IntegerDrawsStayInRangeAndCoverIt) {
  SetRandSeed(1);
  std::vector<int> hits(7, 0);
  for (int i = 0; i < 7000; ++i) {
    const int32_t r = Random(7);
    ASSERT_GE(r, 0);
    ASSERT_LT(r, 7);
    ++hits[r];
  }
  for (int h : hits) EXPECT_GT(h, 800);  // about 1000 each
  EXPECT_EQ(Random(1), 0);
  EXPECT_EQ(Random(0), 0);
  EXPECT_EQ(Random(-5), 0);
  for (int i = 0; i < 1000; ++i) {
    const int32_t r = Random(2147483647);
    ASSERT_GE(r, 0);
  }
}

TEST(Random, DoubleDrawsLieInUnitInterval) {
  SetRandSeed(99);
  double lo = 1, hi = 0, sum = 0;
  for (int i = 0; i < 10000; ++i) {
    const double r = Random();
    ASSERT_GE(r, 0.0);
    ASSERT_LT(r, 1.0);
    lo = std::min(lo, r);
    hi = std::max(hi, r);
    sum += r;
  }
  EXPECT_LT(lo, 0.01);
  EXPECT_GT(hi, 0.99);
  EXPECT_NEAR(sum / 10000, 0.5, 0.02);
}

TEST(Random, RandomizeChangesTheSeed) {
  SetRandSeed(0);
  std::set<int32_t> seeds;
  for (int i = 0; i < 5; ++i) {
    Randomize();
    seeds.insert(RandSeed());
    std::this_thread::sleep_for(std::chrono::microseconds(50));
  }
  EXPECT_GT(seeds.size(), 1u);
}

// The generator has full period, so concurrent draws from one seed are a permutation of the
// same number of sequential steps: no step is lost or handed out twice.
TEST(Random, ConcurrentDrawsTakeDistinctSteps) {
  constexpr int kThreads = 4;
  constexpr int kDraws = 5000;
  SetRandSeed(2024);
  std::vector<std::vector<double>> drawn(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&drawn, t] {
      for (int i = 0; i < kDraws; ++i) drawn[t].push_back(Random());
    });
  }
  for (auto& th : threads) th.join();
  std::multiset<double> concurrent;
  for (const auto& v : drawn) concurrent.insert(v.begin(), v.end());

  SetRandSeed(2024);
  std::multiset<double> sequential;
  for (int i = 0; i < kThreads * kDraws; ++i) sequential.insert(Random());
  EXPECT_EQ(concurrent, sequential);
}

}  // namespace
}  // namespace vex
