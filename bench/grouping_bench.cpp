// CompressListWithIntPatternSmart on 100 thousand and 1 million numbered names (the time must grow
// linearly), beside the same walk written over a QStringList with QRegularExpression.
//
//   vex_grouping_bench --benchmark_repetitions=3 --benchmark_report_aggregates_only=true
#include <benchmark/benchmark.h>

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "bench_ratios.h"
#include "vex/patterns/reg_ex_utils.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"

namespace {

constexpr int32_t kSeriesLength = 40;

// Letters only, so that the first number of a name is its series number.
vex::String Letters(int32_t n) {
  vex::String out;
  do {
    out += static_cast<vex::Char>(u'a' + n % 26);
    n /= 26;
  } while (n > 0);
  return out;
}

// Series of kSeriesLength names ("Node bc ch1.dat" .. "Node bc ch40.dat") with a gap in every
// fifth series and a name without a number after every tenth.
void FillNames(vex::TStrings& list, int32_t count) {
  list.BeginUpdate();
  list.Clear();
  for (int32_t i = 0; list.Count() < count; ++i) {
    const int32_t series = i / kSeriesLength;
    const int32_t number = i % kSeriesLength + 1;
    if (series % 5 == 4 && number == 7) continue;
    list.Add(u"Node " + Letters(series) + u" ch" + vex::IntToStr(number) + u".dat");
    if (series % 10 == 9 && number == kSeriesLength) list.Add(u"Gate " + Letters(series));
  }
  list.EndUpdate();
}

void BM_CompressListWithIntPatternSmart(benchmark::State& state) {
  const auto count = static_cast<int32_t>(state.range(0));
  vex::TStringList source;
  FillNames(source, count);
  vex::TStringList list;
  for (auto _ : state) {
    state.PauseTiming();
    list.Assign(source);
    state.ResumeTiming();
    vex::TRegExUtils::CompressListWithIntPatternSmart(list);
    benchmark::DoNotOptimize(list.Count());
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_CompressListWithIntPatternSmart)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);

// --- the same walk over a QStringList ---------------------------------------------------------

QString QtGroup(std::vector<int>& values) {
  std::sort(values.begin(), values.end());
  const bool full_run = values.size() >= 2 && values.front() == 1 &&
                        values.back() - values.front() + 1 == static_cast<int>(values.size());
  if (full_run) return QString::number(values.back());
  QString out;
  for (size_t i = 0; i < values.size();) {
    size_t last = i;
    while (last + 1 < values.size() && values[last + 1] == values[last] + 1) ++last;
    if (i > 0) out += u',';
    out += QString::number(values[i]);
    if (last > i) out += u'-' + QString::number(values[last]);
    i = last + 1;
  }
  return out;
}

void QtCompress(QStringList& list) {
  static const QRegularExpression number(QStringLiteral("\\d+"));
  QStringList lines;
  std::vector<int> values;
  qsizetype i = 0;
  while (i < list.size()) {
    const QRegularExpressionMatch m = number.match(list[i]);
    if (!m.hasMatch() || m.capturedStart() == 0) {
      lines.append(list[i++]);
      continue;
    }
    const QString left = list[i].left(m.capturedStart());
    const QString right = list[i].mid(m.capturedEnd());
    values.clear();
    qsizetype j = i;
    for (; j < list.size(); ++j) {
      const QRegularExpressionMatch n = number.match(list[j]);
      if (!n.hasMatch() || QStringView(list[j]).left(n.capturedStart()) != left ||
          QStringView(list[j]).mid(n.capturedEnd()) != right) {
        break;
      }
      values.push_back(n.captured().toInt());
    }
    const QString group = QtGroup(values);
    lines.append(values.size() == 1 ? left + group + right : left + u'{' + group + u'}' + right);
    i = j;
  }
  list = lines;
}

void BM_QStringListLoop(benchmark::State& state) {
  const auto count = static_cast<int32_t>(state.range(0));
  vex::TStringList names;
  FillNames(names, count);
  QStringList source;
  source.reserve(count);
  for (int32_t i = 0; i < names.Count(); ++i) {
    source.append(QString::fromUtf16(names[i].data(), static_cast<qsizetype>(names[i].size())));
  }
  QStringList list;
  for (auto _ : state) {
    state.PauseTiming();
    list = source;
    list.detach();
    state.ResumeTiming();
    QtCompress(list);
    benchmark::DoNotOptimize(list.size());
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_QStringListLoop)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS(
    {"BM_CompressListWithIntPatternSmart/100000", "BM_QStringListLoop/100000", {}},
    {"BM_CompressListWithIntPatternSmart/1000000", "BM_QStringListLoop/1000000", {}},
    {"BM_CompressListWithIntPatternSmart/1000000", "BM_CompressListWithIntPatternSmart/100000",
     vex::bench::TimeAtMost(12)});
