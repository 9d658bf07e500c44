// Format and IntToStr beside what a C++ user would otherwise write: snprintf into a char buffer
// followed by UTF-8 -> UTF-16 conversion, and std::to_chars followed by widening.
#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdint>
#include <cstdio>

#include "bench_ratios.h"
#include "vex/platform/format.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace {

const vex::String kName = u"channel";

void BM_Format_StringAndPaddedInt(benchmark::State& state) {
  int32_t i = 0;
  for (auto _ : state) {
    vex::String s = vex::Format(u"%s %.3d", {kName, i++ & 1023});
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(BM_Format_StringAndPaddedInt);

void BM_Snprintf_StringAndPaddedInt(benchmark::State& state) {
  const std::string name = vex::ToUtf8(kName);
  int32_t i = 0;
  for (auto _ : state) {
    char buf[64];
    const int n = std::snprintf(buf, sizeof buf, "%s %.3d", name.c_str(), i++ & 1023);
    vex::String s = vex::FromUtf8(std::string_view(buf, static_cast<size_t>(n)));
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(BM_Snprintf_StringAndPaddedInt);

void BM_Format_Float(benchmark::State& state) {
  double d = 0.1;
  for (auto _ : state) {
    vex::String s = vex::Format(u"%.2f", {d});
    d += 1.25;
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(BM_Format_Float);

void BM_Snprintf_Float(benchmark::State& state) {
  double d = 0.1;
  for (auto _ : state) {
    char buf[64];
    const int n = std::snprintf(buf, sizeof buf, "%.2f", d);
    vex::String s = vex::FromUtf8(std::string_view(buf, static_cast<size_t>(n)));
    d += 1.25;
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(BM_Snprintf_Float);

void BM_IntToStr(benchmark::State& state) {
  int32_t i = -500000;
  for (auto _ : state) {
    vex::String s = vex::IntToStr(i);
    i += 7919;
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(BM_IntToStr);

void BM_ToCharsThenFromUtf8(benchmark::State& state) {
  int32_t i = -500000;
  for (auto _ : state) {
    char buf[16];
    auto r = std::to_chars(buf, buf + sizeof buf, i);
    vex::String s = vex::FromUtf8(std::string_view(buf, static_cast<size_t>(r.ptr - buf)));
    i += 7919;
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(BM_ToCharsThenFromUtf8);

void BM_StrToInt(benchmark::State& state) {
  const vex::String text = u" -1234567";
  for (auto _ : state) benchmark::DoNotOptimize(vex::StrToInt(text));
}
BENCHMARK(BM_StrToInt);

void BM_ToUtf8ThenFromChars(benchmark::State& state) {
  const vex::String text = u"-1234567";
  for (auto _ : state) {
    const std::string utf8 = vex::ToUtf8(text);
    int32_t v = 0;
    std::from_chars(utf8.data(), utf8.data() + utf8.size(), v);
    benchmark::DoNotOptimize(v);
  }
}
BENCHMARK(BM_ToUtf8ThenFromChars);

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS(
    {"BM_Format_StringAndPaddedInt", "BM_Snprintf_StringAndPaddedInt", {}},
    {"BM_Format_Float", "BM_Snprintf_Float", {}}, {"BM_IntToStr", "BM_ToCharsThenFromUtf8", {}},
    {"BM_StrToInt", "BM_ToUtf8ThenFromChars", {}});
