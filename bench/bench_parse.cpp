//===- bench_parse.cpp - Decimal text to double ------------------------------===//
//
// TarnFormatUtil::str_to_double against glibc's strtod, std::from_chars
// (libstdc++) and fast_float::from_chars, on three sets of texts:
//   Random17  - 10^6 doubles of random bit patterns (every exponent), "%.17g"
//   Uniform17 - 10^6 doubles uniform in [0, 1), "%.17g"
//   Short     - 10^6 short texts such as "0.1", "1.5", "12345.0"
// Each iteration reads the whole set; items/s counts texts. After the table
// the program prints the ratio of each peer's median time to ours, in real
// and in CPU time (above 1 means we are faster). On a shared machine the CPU
// time is the steadier of the two.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnFormatUtil.h"

#include <benchmark/benchmark.h>
#include <fast_float/fast_float.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kTexts = 1000000;

// All texts back to back, each NUL-terminated, with their starts and ends.
struct TextSet {
  std::string storage;
  std::vector<std::size_t> offsets;
  std::vector<const char*> begins;
  std::vector<const char*> ends;

  void Add(const char* text) {
    offsets.push_back(storage.size());
    storage += text;
    storage += '\0';
  }
  void Finish() {
    for (std::size_t off : offsets) {
      begins.push_back(storage.data() + off);
      ends.push_back(storage.data() + off + std::strlen(storage.data() + off));
    }
  }
};

TextSet MakeRandom17() {
  TextSet set;
  std::mt19937_64 rng(17);
  char buf[40];
  while (set.offsets.size() < kTexts) {
    const std::uint64_t bits = rng();
    double x;
    std::memcpy(&x, &bits, sizeof x);
    if (!std::isfinite(x))
      continue;
    std::snprintf(buf, sizeof buf, "%.17g", x);
    set.Add(buf);
  }
  set.Finish();
  return set;
}

TextSet MakeUniform17() {
  TextSet set;
  std::mt19937_64 rng(1);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  char buf[40];
  for (std::size_t i = 0; i < kTexts; ++i) {
    std::snprintf(buf, sizeof buf, "%.17g", unit(rng));
    set.Add(buf);
  }
  set.Finish();
  return set;
}

TextSet MakeShort() {
  static const char* const kShort[] = {"0.1",   "1.5",  "12345.0", "2.5",    "100",
                                       "0.001", "3.75", "-42.0",   "1e5",    "0.25",
                                       "7",     "9.81", "1000.0",  "-0.5",   "123.456",
                                       "2e-3"};
  TextSet set;
  for (std::size_t i = 0; i < kTexts; ++i)
    set.Add(kShort[i % (sizeof kShort / sizeof kShort[0])]);
  set.Finish();
  return set;
}

const TextSet& Set(int which) {
  static const TextSet sets[] = {MakeRandom17(), MakeUniform17(), MakeShort()};
  return sets[which];
}

template <class Parse> void RunOver(benchmark::State& state, Parse parse) {
  const TextSet& set = Set(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    double sum = 0;
    for (std::size_t i = 0; i < set.begins.size(); ++i)
      sum += parse(set.begins[i], set.ends[i]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * set.begins.size()));
}

void BM_StrToDouble(benchmark::State& state) {
  RunOver(state, [](const char* b, const char*) { return TarnFormatUtil::str_to_double(b, nullptr); });
}

void BM_Strtod(benchmark::State& state) {
  RunOver(state, [](const char* b, const char*) { return std::strtod(b, nullptr); });
}

void BM_StdFromChars(benchmark::State& state) {
  RunOver(state, [](const char* b, const char* e) {
    double v = 0;
    std::from_chars(b, e, v);
    return v;
  });
}

void BM_FastFloat(benchmark::State& state) {
  RunOver(state, [](const char* b, const char* e) {
    double v = 0;
    fast_float::from_chars(b, e, v);
    return v;
  });
}

void SetNames(benchmark::internal::Benchmark* b) {
  b->ArgName("set")->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_StrToDouble)->Apply(SetNames);
BENCHMARK(BM_Strtod)->Apply(SetNames);
BENCHMARK(BM_StdFromChars)->Apply(SetNames);
BENCHMARK(BM_FastFloat)->Apply(SetNames);

// Keeps the median (or, without repetitions, the single) real time of each
// benchmark while printing the usual table.
class RatioReporter : public benchmark::ConsoleReporter {
public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
      if (median || run.run_type == Run::RT_Iteration)
        times_[run.run_name.function_name + "/" + run.run_name.args] = {run.GetAdjustedRealTime(),
                                                                        run.GetAdjustedCPUTime()};
    }
  }

  void PrintRatio(const std::string& peer, int set) const {
    static const char* const kSetNames[] = {"Random17", "Uniform17", "Short"};
    const std::string suffix = "/set:" + std::to_string(set);
    const auto a = times_.find("BM_StrToDouble" + suffix), b = times_.find(peer + suffix);
    if (a == times_.end() || b == times_.end() || a->second.real <= 0 || a->second.cpu <= 0)
      return;
    const double real = b->second.real / a->second.real, cpu = b->second.cpu / a->second.cpu;
    std::printf("ratio %-16s / BM_StrToDouble  %-10s real %6.2f  cpu %6.2f  (%s)\n",
                peer.c_str(), kSetNames[set], real, cpu,
                cpu >= 1 ? "ours faster or equal" : "ours slower");
  }

private:
  struct Times { double real, cpu; };
  std::map<std::string, Times> times_;
};

} // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\nmedian time of the peer divided by ours (set 0 Random17, 1 Uniform17, 2 Short):\n");
  for (int set = 0; set < 3; ++set)
    for (const char* peer : {"BM_Strtod", "BM_StdFromChars", "BM_FastFloat"})
      reporter.PrintRatio(peer, set);
  benchmark::Shutdown();
  return 0;
}
