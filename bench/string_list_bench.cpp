// TStringList against the plain standard-library alternatives a C++ user would write:
// appending lines, sorting and binary-searching them, and looking up name=value lines.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "bench_ratios.h"
#include "vex/platform/string_list.h"

namespace {

using vex::String;

String Line(int i) {
  std::string digits = std::to_string(i);
  return u"line " + String(digits.begin(), digits.end());
}

std::vector<String> ShuffledLines(int n) {
  std::vector<String> lines;
  lines.reserve(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) lines.push_back(Line(i));
  std::shuffle(lines.begin(), lines.end(), std::mt19937(42));
  return lines;
}

std::vector<String> Probes(const std::vector<String>& lines, int n) {
  std::mt19937 rng(7);
  std::vector<String> probes;
  for (int i = 0; i < n; ++i) probes.push_back(lines[rng() % lines.size()]);
  return probes;
}

// --- Add -----------------------------------------------------------------------------------------

constexpr int kAddCount = 1'000'000;

void BM_StringListAdd(benchmark::State& state) {
  const auto lines = ShuffledLines(kAddCount);
  for (auto _ : state) {
    vex::TStringList list;
    for (const String& s : lines) list.Add(s);
    benchmark::DoNotOptimize(list.Count());
  }
  state.SetItemsProcessed(state.iterations() * kAddCount);
}
BENCHMARK(BM_StringListAdd)->Unit(benchmark::kMillisecond);

void BM_VectorPushBack(benchmark::State& state) {
  const auto lines = ShuffledLines(kAddCount);
  for (auto _ : state) {
    std::vector<String> list;
    for (const String& s : lines) list.push_back(s);
    benchmark::DoNotOptimize(list.size());
  }
  state.SetItemsProcessed(state.iterations() * kAddCount);
}
BENCHMARK(BM_VectorPushBack)->Unit(benchmark::kMillisecond);

// --- Sorting and sorted lookups ------------------------------------------------------------------

void BM_StringListSort(benchmark::State& state) {
  const auto lines = ShuffledLines(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    vex::TStringList list;
    for (const String& s : lines) list.Add(s);
    state.ResumeTiming();
    list.SetSorted(true);
    benchmark::DoNotOptimize(list.Count());
  }
}
BENCHMARK(BM_StringListSort)->Arg(100'000)->Unit(benchmark::kMillisecond);

void BM_VectorSort(benchmark::State& state) {
  const auto lines = ShuffledLines(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<String> list = lines;
    state.ResumeTiming();
    std::sort(list.begin(), list.end());
    benchmark::DoNotOptimize(list.data());
  }
}
BENCHMARK(BM_VectorSort)->Arg(100'000)->Unit(benchmark::kMillisecond);

void BM_StringListSortedIndexOf(benchmark::State& state) {
  const auto lines = ShuffledLines(static_cast<int>(state.range(0)));
  const auto probes = Probes(lines, 1000);
  vex::TStringList list;
  for (const String& s : lines) list.Add(s);
  list.SetSorted(true);
  for (auto _ : state) {
    for (const String& p : probes) benchmark::DoNotOptimize(list.IndexOf(p));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(probes.size()));
}
BENCHMARK(BM_StringListSortedIndexOf)->Arg(100'000);

void BM_VectorLowerBound(benchmark::State& state) {
  const auto lines = ShuffledLines(static_cast<int>(state.range(0)));
  const auto probes = Probes(lines, 1000);
  std::vector<String> list = lines;
  std::sort(list.begin(), list.end());
  for (auto _ : state) {
    for (const String& p : probes) {
      auto it = std::lower_bound(list.begin(), list.end(), p);
      benchmark::DoNotOptimize(it != list.end() && *it == p ? it - list.begin() : -1);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(probes.size()));
}
BENCHMARK(BM_VectorLowerBound)->Arg(100'000);

// --- Values ----------------------------------------------------------------------------------

std::vector<String> Pairs(int n) {
  std::vector<String> pairs;
  for (int i = 0; i < n; ++i) {
    std::string digits = std::to_string(i);
    String d(digits.begin(), digits.end());
    pairs.push_back(u"Setting" + d + u"=value " + d);
  }
  return pairs;
}

std::vector<String> PairNames(int n) {
  std::mt19937 rng(11);
  std::vector<String> names;
  for (int i = 0; i < 1000; ++i) {
    std::string digits = std::to_string(rng() % static_cast<unsigned>(n));
    names.push_back(u"Setting" + String(digits.begin(), digits.end()));
  }
  return names;
}

void BM_StringListValues(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  vex::TStringList list;
  for (const String& s : Pairs(n)) list.Add(s);
  const auto names = PairNames(n);
  for (auto _ : state) {
    for (const String& name : names) benchmark::DoNotOptimize(list.Values(name));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(names.size()));
}
BENCHMARK(BM_StringListValues)->Arg(1000);

void BM_VectorFindValue(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::vector<String> list = Pairs(n);
  const auto names = PairNames(n);
  for (auto _ : state) {
    for (const String& name : names) {
      auto it = std::find_if(list.begin(), list.end(), [&](const String& line) {
        return line.size() > name.size() && line[name.size()] == u'=' &&
               line.compare(0, name.size(), name) == 0;
      });
      benchmark::DoNotOptimize(it == list.end() ? String() : it->substr(name.size() + 1));
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(names.size()));
}
BENCHMARK(BM_VectorFindValue)->Arg(1000);

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_StringListAdd", "BM_VectorPushBack", {}},
                               {"BM_StringListSort/100000", "BM_VectorSort/100000",
                                vex::bench::TimeAtMost(1.5)},
                               {"BM_StringListSortedIndexOf/100000", "BM_VectorLowerBound/100000",
                                vex::bench::TimeAtMost(1.5)},
                               {"BM_StringListValues/1000", "BM_VectorFindValue/1000",
                                vex::bench::TimeAtMost(1.5)});
