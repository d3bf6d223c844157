//===- bench/RatioReporter.h - Side-by-side ratios for benchmarks -----------===//
//
// A console reporter that also remembers the real and CPU time of every benchmark
// (the median when repetitions are aggregated) and, after the run, prints
// the ratio of named pairs, so that each program states in one line how our
// code compares with its peer measured in the same run. Every benchmark
// program prints its ratios through it.
//
//===----------------------------------------------------------------------===//
#ifndef TARN_BENCH_RATIOREPORTER_H
#define TARN_BENCH_RATIOREPORTER_H

#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tarnbench {

/// Two benchmarks whose median times are divided, numerator by denominator,
/// and an optional note printed after the ratio (a target, say). A benchmark
/// with arguments is named with them: "BM_StrToDouble/set:0".
struct RatioPair {
  RatioPair(std::string numerator, std::string denominator, std::string note = "")
      : numerator(std::move(numerator)), denominator(std::move(denominator)),
        note(std::move(note)) {}
  std::string numerator;
  std::string denominator;
  std::string note;
};

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
      std::string name = run.run_name.function_name;
      if (!run.run_name.args.empty())
        name += "/" + run.run_name.args;
      times_[name] = {run.GetAdjustedRealTime(), run.GetAdjustedCPUTime()};
    }
    ConsoleReporter::ReportRuns(runs);
  }

  /// Prints "numerator / denominator = ratio" of real and of CPU time for
  /// each pair that ran, followed by the pair's note in parentheses. On a
  /// shared machine the CPU-time ratio is the steadier one.
  void PrintRatios(const std::vector<RatioPair>& pairs) const {
    std::printf("\nRatios of medians (real time, CPU time):\n");
    for (const RatioPair& pair : pairs) {
      const auto a = times_.find(pair.numerator);
      const auto b = times_.find(pair.denominator);
      if (a == times_.end() || b == times_.end() || b->second.real == 0 || b->second.cpu == 0)
        continue;
      std::printf("  %s / %s = %.3f real, %.3f cpu", pair.numerator.c_str(),
                  pair.denominator.c_str(), a->second.real / b->second.real,
                  a->second.cpu / b->second.cpu);
      if (!pair.note.empty())
        std::printf("  (%s)", pair.note.c_str());
      std::printf("\n");
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
/// `prepare`, if given, runs after the arguments are accepted and before the
/// first benchmark (to generate input files outside the timings, say).
inline int RunWithRatios(int argc, char** argv, const std::vector<RatioPair>& pairs,
                         const std::function<void()>& prepare = nullptr) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  if (prepare)
    prepare();
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios(pairs);
  benchmark::Shutdown();
  return 0;
}

} // namespace tarnbench

#endif // TARN_BENCH_RATIOREPORTER_H
