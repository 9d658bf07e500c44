// A benchmark main that ends each run with the ratio of every library benchmark to the
// alternative it is measured beside, and the target that ratio is held to:
//
//   VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_Str2Uni", "BM_QtPercentEncode", SpeedAtLeast(1.0)});
//
// prints, after Google Benchmark's own table,
//   BM_Str2Uni vs BM_QtPercentEncode   speed 1.12x   target speed >= 1.00x   met
// Times are medians when the run has repetitions (--benchmark_repetitions), otherwise the mean
// of the runs; benchmarks timed on the wall clock (UseRealTime, UseManualTime) compare wall
// time, the others CPU time. Speed is the alternative's time divided by the library's.
#pragma once

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

namespace vex::bench {

/// What a ratio is held to: a least speed (alternative time / library time), a greatest time
/// (library time / alternative time), or nothing (reported only).
struct TTarget {
  enum TKind { Report, SpeedAtLeast, TimeAtMost } Kind = Report;
  double Value = 0;
};
inline TTarget SpeedAtLeast(double v) { return {TTarget::SpeedAtLeast, v}; }
inline TTarget TimeAtMost(double v) { return {TTarget::TimeAtMost, v}; }

/// One pair: benchmark names are the function name plus "/args" when the benchmark has any.
struct TRatio {
  std::string Library;
  std::string Alternative;
  TTarget Target;
};

/// The console reporter, remembering the time of every benchmark it prints.
class TRatioReporter : public benchmark::ConsoleReporter {
 public:
  explicit TRatioReporter(std::vector<TRatio> ratios)
      : ConsoleReporter(isatty(fileno(stdout)) ? OO_Color : OO_None), ratios_(std::move(ratios)) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.error_occurred) continue;
      const bool wall =
          run.run_name.time_type == "real_time" || run.run_name.time_type == "manual_time";
      const double seconds = (wall ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime()) *
                             benchmark::GetTimeUnitMultiplier(run.time_unit);
      TTimes& times = times_[Key(run)];
      if (run.run_type == Run::RT_Aggregate) {
        if (run.aggregate_name == "median") times.Median = seconds;
      } else {
        times.Runs.push_back(seconds);
      }
    }
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    if (times_.empty()) return;
    std::printf("\nRatios (speed = the alternative's time / the library's time):\n");
    for (const TRatio& ratio : ratios_) PrintRatio(ratio);
  }

 private:
  struct TTimes {
    double Median = -1;
    std::vector<double> Runs;
  };

  static std::string Key(const Run& run) {
    return run.run_name.args.empty() ? run.run_name.function_name
                                     : run.run_name.function_name + "/" + run.run_name.args;
  }

  // The median aggregate when there is one, otherwise the mean of the runs; -1 when not run.
  double TimeOf(const std::string& name) const {
    auto it = times_.find(name);
    if (it == times_.end()) return -1;
    if (it->second.Median > 0) return it->second.Median;
    const std::vector<double>& runs = it->second.Runs;
    if (runs.empty()) return -1;
    double sum = 0;
    for (double r : runs) sum += r;
    return sum / static_cast<double>(runs.size());
  }

  void PrintRatio(const TRatio& ratio) const {
    const double library = TimeOf(ratio.Library);
    const double alternative = TimeOf(ratio.Alternative);
    if (library <= 0 && alternative <= 0) return;  // neither was selected by the filter
    std::printf("  %s vs %s   ", ratio.Library.c_str(), ratio.Alternative.c_str());
    if (library <= 0 || alternative <= 0) {
      std::printf("not run\n");
      return;
    }
    const double speed = alternative / library;
    std::printf("speed %.2fx   time %.2fx", speed, 1 / speed);
    switch (ratio.Target.Kind) {
      case TTarget::Report:
        std::printf("\n");
        break;
      case TTarget::SpeedAtLeast:
        std::printf("   target speed >= %.2fx   %s\n", ratio.Target.Value,
                    speed >= ratio.Target.Value ? "met" : "NOT MET");
        break;
      case TTarget::TimeAtMost:
        std::printf("   target time <= %.2fx   %s\n", ratio.Target.Value,
                    1 / speed <= ratio.Target.Value ? "met" : "NOT MET");
        break;
    }
  }

  std::vector<TRatio> ratios_;
  std::map<std::string, TTimes> times_;
};

/// Runs the benchmarks selected on the command line and prints the ratios at the end.
inline int RunWithRatios(int argc, char** argv, std::initializer_list<TRatio> ratios) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  TRatioReporter reporter{std::vector<TRatio>(ratios)};
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}

}  // namespace vex::bench

#define VEX_BENCHMARK_MAIN_WITH_RATIOS(...) \
  int main(int argc, char** argv) { return vex::bench::RunWithRatios(argc, argv, {__VA_ARGS__}); }
