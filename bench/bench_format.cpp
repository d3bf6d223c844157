//===- bench_format.cpp - Free format against peer shortest printers ------===//
//
// Prints each set of bench/NumberSets.h (random bit patterns, uniform [0, 1),
// hundredths) with FloatingPointFormatter::WriteFreeFormat, std::to_chars
// (shortest; libstdc++'s Ryu) and, when its package is installed, Dragonbox
// (jkj::dragonbox::to_chars_n, a benchmark peer only). One iteration prints
// the whole set of 10^6 values. After the table the program prints, per set,
// our median time divided by each peer's (below 1 means we are faster).
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/FloatingPointFormatter.h"

#include "NumberSets.h"
#include "RatioReporter.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <string>
#include <vector>

#ifdef TARN_HAVE_DRAGONBOX
#include <dragonbox/dragonbox_to_chars.h>
#endif

namespace {

template <class Write> void Run(benchmark::State& state, Write write) {
  const int set = static_cast<int>(state.range(0));
  const std::vector<double>& values = tarnbench::NumberSet(set);
  char buf[FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE];
  size_t total = 0;
  for (auto _ : state) {
    for (double x : values) {
      char* end = write(buf, x);
      total += static_cast<size_t>(end - buf);
      benchmark::DoNotOptimize(buf);
    }
  }
  benchmark::DoNotOptimize(total);
  state.SetItemsProcessed(static_cast<int64_t>(values.size()) * state.iterations());
  state.SetLabel(tarnbench::NumberSetName(set));
}

const FloatingPointFormatter& Formatter() {
  static const FloatingPointFormatter f;
  return f;
}

void BM_WriteFreeFormat(benchmark::State& s) {
  Run(s, [](char* buf, double x) { return Formatter().WriteFreeFormat(buf, x); });
}

void BM_ToChars(benchmark::State& s) {
  Run(s, [](char* buf, double x) {
    return std::to_chars(buf, buf + FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE, x).ptr;
  });
}

#ifdef TARN_HAVE_DRAGONBOX
void BM_Dragonbox(benchmark::State& s) {
  Run(s, [](char* buf, double x) { return jkj::dragonbox::to_chars_n(x, buf); });
}
#endif

void Sets(benchmark::internal::Benchmark* b) {
  b->ArgName("set")->DenseRange(0, tarnbench::kNumberSetCount - 1)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_WriteFreeFormat)->Apply(Sets);
BENCHMARK(BM_ToChars)->Apply(Sets);
#ifdef TARN_HAVE_DRAGONBOX
BENCHMARK(BM_Dragonbox)->Apply(Sets);
#endif

std::vector<tarnbench::RatioPair> OursOverPeers() {
  std::vector<tarnbench::RatioPair> pairs;
  for (int set = 0; set < tarnbench::kNumberSetCount; ++set) {
    const std::string arg = "/set:" + std::to_string(set);
    const std::string name = tarnbench::NumberSetName(set);
    pairs.emplace_back("BM_WriteFreeFormat" + arg, "BM_ToChars" + arg, name + ", target <= 1.0");
    pairs.emplace_back("BM_WriteFreeFormat" + arg, "BM_Dragonbox" + arg, name + ", target <= 1.2");
  }
  return pairs;
}

} // namespace

int main(int argc, char** argv) {
  return tarnbench::RunWithRatios(argc, argv, OursOverPeers(), [] {
    for (int set = 0; set < tarnbench::kNumberSetCount; ++set)
      tarnbench::NumberSet(set);
  });
}
