// TParseUtils::ExtractTokens over 16 MB of ";"-separated short fields, beside what a C++ user
// would otherwise write: QString::split(';') with trimmed() on every piece, and a hand-written
// std::u16string_view loop that trims the fields and allocates nothing.
#include <benchmark/benchmark.h>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string_view>

#include "bench_ratios.h"
#include "vex/text/parse_utils.h"

namespace {

constexpr size_t kTextBytes = 16u << 20;  // UTF-16: 8 Mi code units

// Fields of 0 to 8 characters (letters, digits, now and then a blank at either end).
const vex::String& Text() {
  static const vex::String text = [] {
    std::mt19937 rng(42);
    const std::u16string_view alphabet = u"abcdefghijklmnopqrstuvwxyz0123456789";
    vex::String s;
    s.reserve(kTextBytes / 2 + 16);
    while (s.size() < kTextBytes / 2) {
      if (rng() % 8 == 0) s += u' ';
      for (unsigned n = rng() % 7; n > 0; --n) s += alphabet[rng() % alphabet.size()];
      if (rng() % 8 == 0) s += u' ';
      s += u';';
    }
    return s;
  }();
  return text;
}

void SetCounters(benchmark::State& state, size_t fields) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * Text().size() * 2));
  state.counters["fields"] = static_cast<double>(fields);
}

void BM_ExtractTokens_Library(benchmark::State& state) {
  const vex::String& text = Text();
  size_t fields = 0;
  for (auto _ : state) {
    vex::TStringDynArray tokens = vex::TParseUtils::ExtractTokens(text, u';');
    fields = tokens.size();
    benchmark::DoNotOptimize(tokens.data());
  }
  SetCounters(state, fields);
}

void BM_ExtractTokens_QtSplitTrimmed(benchmark::State& state) {
  const QString text = QString::fromStdU16String(Text());
  size_t fields = 0;
  for (auto _ : state) {
    QStringList tokens = text.split(u';');
    for (QString& token : tokens) token = token.trimmed();
    fields = static_cast<size_t>(tokens.size());
    benchmark::DoNotOptimize(tokens.data());
  }
  SetCounters(state, fields);
}

// The floor: finds and trims every field without storing anything.
void BM_ExtractTokens_StringViewLoop(benchmark::State& state) {
  const std::u16string_view text = Text();
  size_t fields = 0;
  for (auto _ : state) {
    size_t count = 0, chars = 0, start = 0;
    while (start <= text.size()) {
      size_t end = text.find(u';', start);
      if (end == std::u16string_view::npos) end = text.size();
      size_t b = start, e = end;
      while (b < e && text[b] <= u' ') ++b;
      while (e > b && text[e - 1] <= u' ') --e;
      chars += e - b;
      ++count;
      start = end + 1;
    }
    fields = count;
    benchmark::DoNotOptimize(chars);
  }
  SetCounters(state, fields);
}

}  // namespace

BENCHMARK(BM_ExtractTokens_Library)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ExtractTokens_QtSplitTrimmed)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ExtractTokens_StringViewLoop)->Unit(benchmark::kMillisecond);

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_ExtractTokens_Library", "BM_ExtractTokens_QtSplitTrimmed",
                                vex::bench::SpeedAtLeast(1.0)},
                               {"BM_ExtractTokens_Library", "BM_ExtractTokens_StringViewLoop",
                                vex::bench::TimeAtMost(3)});
