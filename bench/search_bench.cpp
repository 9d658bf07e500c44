// DetectStringPlaces over 16 MB of UTF-16 text (8 Mi code units), case-sensitive and
// case-insensitive, beside the QString::indexOf loop a Qt user would write for the same result:
// every place with its position, length and matched text, resuming one character past a match.
#include <benchmark/benchmark.h>
#include <QString>

#include <random>
#include <vector>

#include "bench_ratios.h"
#include "vex/text/string_search.h"

namespace {

constexpr size_t kUnits = 8u << 20;  // 16 MB of UTF-16
const vex::String kPattern = u"channel";

const vex::String& Text() {
  static const vex::String text = [] {
    const char16_t* words[] = {
        u"the",   u"pump", u"Channel",  u"valve", u"sensor",  u"reading", u"and",    u"канал",
        u"насос", u"of",   u"pressure", u"level", u"CHANNEL", u"alarm",   u"датчик", u"channel",
        u"flow",  u"set",  u"point",    u"limit", u"Дата",    u"name",    u"value"};
    std::mt19937 rng(42);
    vex::String t;
    t.reserve(kUnits + 16);
    while (t.size() < kUnits) {
      t += words[rng() % std::size(words)];
      t += (rng() % 12 == 0) ? u", " : u" ";
    }
    t.resize(kUnits);
    return t;
  }();
  return text;
}

struct QtInfo {
  qsizetype index;
  qsizetype length;
  QString value;
};

void RunLibrary(benchmark::State& state, vex::TStringSearchOptions options) {
  const vex::String& text = Text();
  vex::TSearchInfoArray infos;
  for (auto _ : state) {
    vex::DetectStringPlaces(text, kPattern, options, infos);
    benchmark::DoNotOptimize(infos.data());
  }
  state.counters["places"] = static_cast<double>(infos.size());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size() * 2));
}

void RunQt(benchmark::State& state, Qt::CaseSensitivity cs) {
  const vex::String& text = Text();
  const QString qtext(reinterpret_cast<const QChar*>(text.data()),
                      static_cast<qsizetype>(text.size()));
  const QString qpattern(reinterpret_cast<const QChar*>(kPattern.data()),
                         static_cast<qsizetype>(kPattern.size()));
  std::vector<QtInfo> infos;
  for (auto _ : state) {
    infos.clear();
    for (qsizetype i = qtext.indexOf(qpattern, 0, cs); i >= 0;
         i = qtext.indexOf(qpattern, i + qpattern.size() + 1, cs)) {
      infos.push_back({i + 1, qpattern.size(), qtext.mid(i, qpattern.size())});
    }
    benchmark::DoNotOptimize(infos.data());
  }
  state.counters["places"] = static_cast<double>(infos.size());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size() * 2));
}

void BM_DetectStringPlaces_MatchCase(benchmark::State& s) {
  RunLibrary(s, {vex::soDown, vex::soMatchCase});
}
void BM_QStringIndexOf_MatchCase(benchmark::State& s) { RunQt(s, Qt::CaseSensitive); }
void BM_DetectStringPlaces_IgnoreCase(benchmark::State& s) { RunLibrary(s, {vex::soDown}); }
void BM_QStringIndexOf_IgnoreCase(benchmark::State& s) { RunQt(s, Qt::CaseInsensitive); }

BENCHMARK(BM_DetectStringPlaces_MatchCase)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QStringIndexOf_MatchCase)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DetectStringPlaces_IgnoreCase)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QStringIndexOf_IgnoreCase)->Unit(benchmark::kMillisecond);

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_DetectStringPlaces_MatchCase", "BM_QStringIndexOf_MatchCase",
                                vex::bench::SpeedAtLeast(1.0)},
                               {"BM_DetectStringPlaces_IgnoreCase", "BM_QStringIndexOf_IgnoreCase",
                                vex::bench::SpeedAtLeast(1.0)});
