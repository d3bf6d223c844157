//===- bench_parse.cpp - Decimal text to double ------------------------------===//
//
// TarnFormatUtil::str_to_double against glibc's strtod, std::from_chars
// (libstdc++) and fast_float::from_chars, on the shortest texts (written by
// std::to_chars) of the three sets of bench/NumberSets.h: random bit
// patterns, uniform [0, 1) and hundredths. Each iteration reads the whole set
// of 10^6 texts; items/s counts texts. After the table the program prints,
// per set, our median time divided by each peer's (below 1 means we are
// faster), in real and in CPU time. On a shared machine the CPU time is the
// steadier of the two.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnFormatUtil.h"

#include "NumberSets.h"
#include "RatioReporter.h"

#include <benchmark/benchmark.h>
#include <fast_float/fast_float.h>

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

template <class Parse> void RunOver(benchmark::State& state, Parse parse) {
  const int which = static_cast<int>(state.range(0));
  const tarnbench::TextSet& set = tarnbench::NumberTexts(which);
  for (auto _ : state) {
    double sum = 0;
    for (std::size_t i = 0; i < set.begins.size(); ++i)
      sum += parse(set.begins[i], set.ends[i]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * set.begins.size()));
  state.SetLabel(tarnbench::NumberSetName(which));
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
  b->ArgName("set")->DenseRange(0, tarnbench::kNumberSetCount - 1)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_StrToDouble)->Apply(SetNames);
BENCHMARK(BM_Strtod)->Apply(SetNames);
BENCHMARK(BM_StdFromChars)->Apply(SetNames);
BENCHMARK(BM_FastFloat)->Apply(SetNames);

// Our median time divided by every peer's, on every set.
std::vector<tarnbench::RatioPair> OursOverPeers() {
  std::vector<tarnbench::RatioPair> pairs;
  for (int set = 0; set < tarnbench::kNumberSetCount; ++set) {
    const std::string arg = "/set:" + std::to_string(set);
    const std::string name = tarnbench::NumberSetName(set);
    pairs.emplace_back("BM_StrToDouble" + arg, "BM_Strtod" + arg, name);
    pairs.emplace_back("BM_StrToDouble" + arg, "BM_StdFromChars" + arg, name);
    pairs.emplace_back("BM_StrToDouble" + arg, "BM_FastFloat" + arg, name + ", target <= 1.0");
  }
  return pairs;
}

} // namespace

int main(int argc, char** argv) {
  return tarnbench::RunWithRatios(argc, argv, OursOverPeers(), [] {
    for (int set = 0; set < tarnbench::kNumberSetCount; ++set)
      tarnbench::NumberTexts(set);
  });
}
