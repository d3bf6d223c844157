//===- bench_format.cpp - Free format against peer shortest printers ------===//
//
// Formats 10^6 random finite doubles (random bit patterns) and a set of short
// doubles (0.1, 1.5, 12345.0, ...) with FloatingPointFormatter::WriteFreeFormat,
// std::to_chars (shortest), Dragonbox (when found) and snprintf("%.17g").
// items_per_second is the figure to compare (its inverse is the time per
// value); docs/performance.md gives the ratios.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/FloatingPointFormatter.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <vector>

#ifdef TARN_HAVE_DRAGONBOX
#include <dragonbox/dragonbox_to_chars.h>
#endif

namespace {

const std::vector<double>& RandomDoubles() {
  static const std::vector<double> values = [] {
    std::vector<double> v;
    v.reserve(1000000);
    std::mt19937_64 rng(12345);
    while (v.size() < 1000000) {
      const uint64_t b = rng();
      double d;
      std::memcpy(&d, &b, sizeof d);
      if (std::isfinite(d))
        v.push_back(d);
    }
    return v;
  }();
  return values;
}

const std::vector<double>& ShortDoubles() {
  static const std::vector<double> values = [] {
    const double base[] = {0.1, 1.5, 12345.0, 0.25, 3.75, 100.0, 2.5e-3, 42.0, 0.001, 7.125};
    std::vector<double> v;
    for (int i = 0; i < 100000; ++i)
      v.push_back(base[i % 10]);
    return v;
  }();
  return values;
}

template <class Write>
void Run(benchmark::State& state, const std::vector<double>& values, Write write) {
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
}

const FloatingPointFormatter& Formatter() {
  static const FloatingPointFormatter f;
  return f;
}

char* Ours(char* buf, double x) { return Formatter().WriteFreeFormat(buf, x); }
char* ToChars(char* buf, double x) {
  return std::to_chars(buf, buf + FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE, x).ptr;
}
char* Printf17g(char* buf, double x) { return buf + std::snprintf(buf, 32, "%.17g", x); }
#ifdef TARN_HAVE_DRAGONBOX
char* Dragonbox(char* buf, double x) { return jkj::dragonbox::to_chars_n(x, buf); }
#endif

void BM_Random_Tarn(benchmark::State& s) { Run(s, RandomDoubles(), Ours); }
void BM_Random_ToChars(benchmark::State& s) { Run(s, RandomDoubles(), ToChars); }
void BM_Random_Snprintf17g(benchmark::State& s) { Run(s, RandomDoubles(), Printf17g); }
void BM_Short_Tarn(benchmark::State& s) { Run(s, ShortDoubles(), Ours); }
void BM_Short_ToChars(benchmark::State& s) { Run(s, ShortDoubles(), ToChars); }
void BM_Short_Snprintf17g(benchmark::State& s) { Run(s, ShortDoubles(), Printf17g); }
#ifdef TARN_HAVE_DRAGONBOX
void BM_Random_Dragonbox(benchmark::State& s) { Run(s, RandomDoubles(), Dragonbox); }
void BM_Short_Dragonbox(benchmark::State& s) { Run(s, ShortDoubles(), Dragonbox); }
#endif

} // namespace

BENCHMARK(BM_Random_Tarn)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Random_ToChars)->Unit(benchmark::kMillisecond);
#ifdef TARN_HAVE_DRAGONBOX
BENCHMARK(BM_Random_Dragonbox)->Unit(benchmark::kMillisecond);
#endif
BENCHMARK(BM_Random_Snprintf17g)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Short_Tarn)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Short_ToChars)->Unit(benchmark::kMillisecond);
#ifdef TARN_HAVE_DRAGONBOX
BENCHMARK(BM_Short_Dragonbox)->Unit(benchmark::kMillisecond);
#endif
BENCHMARK(BM_Short_Snprintf17g)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
