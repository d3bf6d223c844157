//===- bench_strings.cpp - Splitting and integer reading ---------------------===//
//
// TarnStringTokenizer::SplitLine and TarnStringUtil::Split against a plain
// std::string::find split and std::istringstream splitting (and, for a set
// of several separators, SplitLine against find_first_of), and
// TarnStringUtil::ToInt against std::from_chars and strtol. Every program
// prints, after the usual table, the ratio of each peer's median time to
// ours (above 1 means we are faster). CPU time is compared: on a shared
// machine the wall-clock time also counts the waits for a core.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnStringTokenizer.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

// 64 lines of 24 comma-separated fields of typical numeric-table width.
const std::vector<std::string>& Lines() {
  static const std::vector<std::string> lines = [] {
    std::mt19937 rng(1);
    std::uniform_int_distribution<int> value(-99999, 999999);
    std::vector<std::string> out;
    for (int l = 0; l < 64; ++l) {
      std::string line;
      for (int f = 0; f < 24; ++f) {
        if (f)
          line += ',';
        line += (f % 4 == 0) ? "NODE_" + std::to_string(l * 24 + f)
                             : std::to_string(value(rng)) + "." + std::to_string(f);
      }
      out.push_back(line);
    }
    return out;
  }();
  return lines;
}

std::size_t TotalFields() { return Lines().size() * 24; }

// ---------------------------------------------------------------- splitting

void BM_SplitLine(benchmark::State& state) {
  TarnStringTokenizer tok(1024, ",");
  for (auto _ : state) {
    for (const std::string& line : Lines()) {
      const std::size_t n = tok.SplitLine(line.c_str());
      for (std::size_t i = 0; i < n; ++i)
        benchmark::DoNotOptimize(tok.GetToken(i));
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * TotalFields()));
}
BENCHMARK(BM_SplitLine);

// The plain split: std::string::find on one separator, tokens copied into a
// reused vector of strings.
void BM_FindSplit(benchmark::State& state) {
  std::vector<std::string> tokens;
  for (auto _ : state) {
    for (const std::string& line : Lines()) {
      tokens.clear();
      std::size_t start = 0;
      for (;;) {
        const std::size_t end = line.find(',', start);
        if (end == std::string::npos) {
          tokens.emplace_back(line, start);
          break;
        }
        tokens.emplace_back(line, start, end - start);
        start = end + 1;
      }
      benchmark::DoNotOptimize(tokens.data());
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * TotalFields()));
}
BENCHMARK(BM_FindSplit);

// Several separators: the tokenizer's table walk against find_first_of.
void BM_SplitLineMultiSep(benchmark::State& state) {
  TarnStringTokenizer tok(1024, ",; ");
  for (auto _ : state) {
    for (const std::string& line : Lines()) {
      const std::size_t n = tok.SplitLine(line.c_str());
      for (std::size_t i = 0; i < n; ++i)
        benchmark::DoNotOptimize(tok.GetToken(i));
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * TotalFields()));
}
BENCHMARK(BM_SplitLineMultiSep);

void BM_FindFirstOfSplit(benchmark::State& state) {
  std::vector<std::string> tokens;
  for (auto _ : state) {
    for (const std::string& line : Lines()) {
      tokens.clear();
      std::size_t start = 0;
      for (;;) {
        const std::size_t end = line.find_first_of(",; ", start);
        if (end == std::string::npos) {
          tokens.emplace_back(line, start);
          break;
        }
        tokens.emplace_back(line, start, end - start);
        start = end + 1;
      }
      benchmark::DoNotOptimize(tokens.data());
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * TotalFields()));
}
BENCHMARK(BM_FindFirstOfSplit);

void BM_TarnSplit(benchmark::State& state) {
  std::vector<std::string> tokens;
  for (auto _ : state) {
    for (const std::string& line : Lines()) {
      TarnStringUtil::Split(line, ",", tokens);
      benchmark::DoNotOptimize(tokens.data());
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * TotalFields()));
}
BENCHMARK(BM_TarnSplit);

void BM_IstringstreamSplit(benchmark::State& state) {
  std::vector<std::string> tokens;
  std::string token;
  for (auto _ : state) {
    for (const std::string& line : Lines()) {
      tokens.clear();
      std::istringstream in(line);
      while (std::getline(in, token, ','))
        tokens.push_back(token);
      benchmark::DoNotOptimize(tokens.data());
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * TotalFields()));
}
BENCHMARK(BM_IstringstreamSplit);

// ---------------------------------------------------------------- integers

const std::vector<std::string>& Numbers() {
  static const std::vector<std::string> numbers = [] {
    std::mt19937 rng(2);
    std::uniform_int_distribution<int> value(-2000000000, 2000000000);
    std::uniform_int_distribution<int> shift(0, 30);
    std::vector<std::string> out;
    for (int i = 0; i < 1024; ++i)
      out.push_back(std::to_string(value(rng) >> shift(rng)));
    return out;
  }();
  return numbers;
}

void BM_ToInt(benchmark::State& state) {
  for (auto _ : state) {
    for (const std::string& s : Numbers()) {
      int v;
      benchmark::DoNotOptimize(TarnStringUtil::ToInt(s, v));
      benchmark::DoNotOptimize(v);
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * Numbers().size()));
}
BENCHMARK(BM_ToInt);

void BM_FromChars(benchmark::State& state) {
  for (auto _ : state) {
    for (const std::string& s : Numbers()) {
      int v;
      benchmark::DoNotOptimize(std::from_chars(s.data(), s.data() + s.size(), v));
      benchmark::DoNotOptimize(v);
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * Numbers().size()));
}
BENCHMARK(BM_FromChars);

void BM_Strtol(benchmark::State& state) {
  for (auto _ : state) {
    for (const std::string& s : Numbers()) {
      long v = std::strtol(s.c_str(), nullptr, 10);
      benchmark::DoNotOptimize(v);
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * Numbers().size()));
}
BENCHMARK(BM_Strtol);

// ---------------------------------------------------------------- ratios

// Keeps the median (or, without repetitions, the single) CPU time of each
// benchmark while printing the usual table.
class RatioReporter : public benchmark::ConsoleReporter {
public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
      if (median || run.run_type == Run::RT_Iteration)
        times_[run.run_name.function_name] = run.GetAdjustedCPUTime();
    }
  }

  void PrintRatio(const char* ours, const char* peer) const {
    const auto a = times_.find(ours), b = times_.find(peer);
    if (a == times_.end() || b == times_.end() || a->second <= 0)
      return;
    std::printf("ratio %-22s / %-16s = %6.2f  (%s)\n", peer, ours, b->second / a->second,
                b->second >= a->second ? "ours faster or equal" : "ours slower");
  }

private:
  std::map<std::string, double> times_;
};

} // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\nmedian time of the peer divided by ours:\n");
  reporter.PrintRatio("BM_SplitLine", "BM_FindSplit");
  reporter.PrintRatio("BM_SplitLine", "BM_IstringstreamSplit");
  reporter.PrintRatio("BM_SplitLineMultiSep", "BM_FindFirstOfSplit");
  reporter.PrintRatio("BM_TarnSplit", "BM_FindSplit");
  reporter.PrintRatio("BM_TarnSplit", "BM_IstringstreamSplit");
  reporter.PrintRatio("BM_ToInt", "BM_FromChars");
  reporter.PrintRatio("BM_ToInt", "BM_Strtol");
  benchmark::Shutdown();
  return 0;
}
