//===- bench/RatioReporter.h - Side-by-side ratios for benchmarks -----------===//
//
// A console reporter that also remembers the real and CPU time of every benchmark
// (the median when repetitions are aggregated) and, after the run, prints
// the ratio of named pairs, so that each program states in one line how our
// code compares with its peer measured in the same run.
//
//===----------------------------------------------------------------------===//
#ifndef TARN_BENCH_RATIOREPORTER_H
#define TARN_BENCH_RATIOREPORTER_H

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tarnbench {

class RatioReporter : public benchmark::ConsoleReporter {
public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred)
        continue;
      const bool aggregate = run.run_type == Run::RT_Aggregate;
      if (aggregate && run.aggregate_name != "median")
        continue;
      // Without repetitions the single run stands for the median.
      if (!aggregate && run.repetitions > 1)
        continue;
      times_[run.run_name.function_name] = {run.GetAdjustedRealTime(), run.GetAdjustedCPUTime()};
    }
    ConsoleReporter::ReportRuns(runs);
  }

  /// Prints "numerator / denominator = ratio" of real and of CPU time for
  /// each pair that ran. On a shared machine the CPU-time ratio is the
  /// steadier one.
  void PrintRatios(const std::vector<std::pair<std::string, std::string>>& pairs) const {
    std::printf("\nRatios of medians (real time, CPU time):\n");
    for (const auto& pair : pairs) {
      const auto a = times_.find(pair.first);
      const auto b = times_.find(pair.second);
      if (a == times_.end() || b == times_.end() || b->second.real == 0 || b->second.cpu == 0)
        continue;
      std::printf("  %s / %s = %.3f real, %.3f cpu\n", pair.first.c_str(), pair.second.c_str(),
                  a->second.real / b->second.real, a->second.cpu / b->second.cpu);
    }
  }

private:
  struct Times {
    double real = 0;
    double cpu = 0;
  };
  std::map<std::string, Times> times_;
};

/// The main of a benchmark program that ends with the ratios of `pairs`.
inline int RunWithRatios(int argc, char** argv,
                         const std::vector<std::pair<std::string, std::string>>& pairs) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios(pairs);
  benchmark::Shutdown();
  return 0;
}

} // namespace tarnbench

#endif // TARN_BENCH_RATIOREPORTER_H
