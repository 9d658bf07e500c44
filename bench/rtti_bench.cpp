// TRttiUtils::WriteVariableToList of a dynamic array of 1,000,000 four-field records, beside
// the loop a user would write by hand to put the same lines (and the same kind tags) into a
// TStringList. Both fill a fresh list per iteration inside one update.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench_ratios.h"
#include "vex/data/rtti_utils.h"
#include "vex/platform/format.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"

namespace bench_rtti {

struct TSample {
  int32_t Id;
  int64_t Stamp;
  double Value;
  vex::String Name;
};
VEX_DESCRIBE_RECORD(TSample, Id, Stamp, Value, Name)

}  // namespace bench_rtti

namespace {

using namespace vex;
using bench_rtti::TSample;

constexpr int kRecords = 1000000;

const std::vector<TSample>& Samples() {
  static const std::vector<TSample> samples = [] {
    std::vector<TSample> v;
    v.reserve(kRecords);
    for (int i = 0; i < kRecords; ++i) {
      v.push_back({i * 7 - 3000000, int64_t{1700000000000} + i, i / 64.0 + 0.125,
                   u"sensor " + IntToStr(i % 977)});
    }
    return v;
  }();
  return samples;
}

void BM_WriteVariableToList(benchmark::State& state) {
  const std::vector<TSample>& samples = Samples();
  for (auto _ : state) {
    TStringList list;
    TRttiUtils::WriteVariableToList(TypeInfo<std::vector<TSample>>(), &samples, u"Samples", list);
    benchmark::DoNotOptimize(list.Count());
  }
  state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK(BM_WriteVariableToList)->Unit(benchmark::kMillisecond)->UseRealTime();

void AddLine(TStrings& list, const String& prefix, const char16_t* field, const String& value,
             TTypeKind kind) {
  list.AddObject(prefix + field + u" = " + value, TStrings::TagToObject(kind));
}

void HandWritten(const std::vector<TSample>& samples, TStringList& list) {
  TStringsUpdate update(list);
  for (size_t i = 0; i < samples.size(); ++i) {
    const TSample& s = samples[i];
    const String prefix = u"Samples[" + IntToStr(static_cast<int64_t>(i)) + u"].";
    AddLine(list, prefix, u"Id", IntToStr(s.Id), tkInteger);
    AddLine(list, prefix, u"Stamp", IntToStr(s.Stamp), tkInt64);
    AddLine(list, prefix, u"Value", FloatToStr(s.Value), tkFloat);
    AddLine(list, prefix, u"Name", s.Name, tkUString);
  }
}

// The two lists must agree line for line and tag for tag, or the comparison means nothing.
bool SameOutput() {
  const std::vector<TSample> head(Samples().begin(), Samples().begin() + 2000);
  TStringList walked;
  TStringList by_hand;
  TRttiUtils::WriteVariableToList(TypeInfo<std::vector<TSample>>(), &head, u"Samples", walked);
  HandWritten(head, by_hand);
  if (walked.Count() != by_hand.Count()) return false;
  for (int32_t i = 0; i < walked.Count(); ++i) {
    if (walked[i] != by_hand[i] || walked.Objects(i) != by_hand.Objects(i)) return false;
  }
  return true;
}

void BM_HandWrittenLoop(benchmark::State& state) {
  if (!SameOutput()) {
    state.SkipWithError("the hand-written lines differ from WriteVariableToList's");
    return;
  }
  const std::vector<TSample>& samples = Samples();
  for (auto _ : state) {
    TStringList list;
    HandWritten(samples, list);
    benchmark::DoNotOptimize(list.Count());
  }
  state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK(BM_HandWrittenLoop)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_WriteVariableToList", "BM_HandWrittenLoop", {}});
