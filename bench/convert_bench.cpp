// Str2Uni and Uni2Str over 16 MB of mixed UTF-16 text (8 Mi code units: ASCII words, Cyrillic,
// apostrophes, line breaks and tabs), beside the printable-ASCII encoding a Qt user would reach
// for: UTF-8 plus percent-encoding, and back. Throughput is of the UTF-16 text in both
// directions (for Uni2Str: the bytes of the text it gives back).
#include <benchmark/benchmark.h>
#include <QByteArray>
#include <QString>

#include <random>

#include "bench_ratios.h"
#include "vex/text/convert_utils.h"

namespace {

constexpr size_t kUnits = 8u << 20;

const vex::String& Text() {
  static const vex::String text = [] {
    const char16_t* words[] = {u"Pump",   u"station", u"it's", u"Насос",   u"станция", u"\r\n",
                               u"\t",     u"value",   u"=",    u"«ok»",    u"level",   u"Ω",
                               u"name's", u"42",      u"flow", u"давление"};
    std::mt19937 rng(7);
    vex::String t;
    t.reserve(kUnits + 16);
    while (t.size() < kUnits) {
      t += words[rng() % std::size(words)];
      t += u' ';
    }
    t.resize(kUnits);
    return t;
  }();
  return text;
}

const vex::String& Coded() {
  static const vex::String coded = vex::TConvertUtils::Str2Uni(Text());
  return coded;
}

QString ToQString(const vex::String& s) {
  return QString(reinterpret_cast<const QChar*>(s.data()), static_cast<qsizetype>(s.size()));
}

void SetBytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * Text().size() * 2));
}

void BM_Str2Uni(benchmark::State& state) {
  const vex::String& text = Text();
  for (auto _ : state) {
    vex::String coded = vex::TConvertUtils::Str2Uni(text);
    benchmark::DoNotOptimize(coded.data());
  }
  SetBytes(state);
}

void BM_Uni2Str(benchmark::State& state) {
  const vex::String& coded = Coded();
  for (auto _ : state) {
    vex::String text = vex::TConvertUtils::Uni2Str(coded);
    benchmark::DoNotOptimize(text.data());
  }
  state.counters["coded_MB"] = static_cast<double>(coded.size() * 2) / 1e6;
  SetBytes(state);
}

void BM_QtPercentEncode(benchmark::State& state) {
  const QString text = ToQString(Text());
  for (auto _ : state) {
    QByteArray coded = text.toUtf8().toPercentEncoding();
    benchmark::DoNotOptimize(coded.data());
  }
  SetBytes(state);
}

void BM_QtPercentDecode(benchmark::State& state) {
  const QByteArray coded = ToQString(Text()).toUtf8().toPercentEncoding();
  for (auto _ : state) {
    QString text = QString::fromUtf8(QByteArray::fromPercentEncoding(coded));
    benchmark::DoNotOptimize(text.data());
  }
  SetBytes(state);
}

BENCHMARK(BM_Str2Uni)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QtPercentEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Uni2Str)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QtPercentDecode)->Unit(benchmark::kMillisecond);

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_Str2Uni", "BM_QtPercentEncode", vex::bench::SpeedAtLeast(1.0)},
                               {"BM_Uni2Str", "BM_QtPercentDecode", {}});
