//===- bench_algebra.cpp - Dense kernels against their peers ----------------===//
//
// Side by side, in one run:
//   - ZEL_Algebra::Gauss against LAPACK's dgesv (LAPACKE, column-major, one
//     right-hand side) at n = 10, 50, 200 on diagonally dominant systems;
//     both copy the matrix and the right side into their work arrays first.
//   - TarnAlgorithmUtil::radix_sort_ascending against std::sort on 10^7
//     uniformly random non-negative ints (the copy of the input is not timed).
//   - TarnMathUtil::sincos against std::sin plus std::cos on 4096 arguments
//     spread over [0, 1.5625].
//   - ZEL_PrecArith::dot2 against std::inner_product on 4096 pairs.
//
//===----------------------------------------------------------------------===//
#include "RatioReporter.h"

#include "TarnUtilities/math/TarnAlgorithmUtil.h"
#include "TarnUtilities/math/TarnMathUtil.h"
#include "TarnUtilities/math/TarnUtilFullMatrix.h"
#include "TarnUtilities/math/ZEL_Algebra.h"
#include "TarnUtilities/math/ZEL_PrecArith.h"

#include <benchmark/benchmark.h>
#include <lapacke.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <numeric>
#include <random>
#include <vector>

namespace {

/// A diagonally dominant column-major n x n system and its right side.
struct System {
  explicit System(int n) : n(n), a(std::size_t(n) * n), b(n) {
    std::mt19937_64 rng(42);
    std::uniform_real_distribution<double> d(-1.0, 1.0);
    for (double& v : a)
      v = d(rng);
    for (int i = 0; i < n; ++i)
      a[std::size_t(i) * n + i] += n;
    for (double& v : b)
      v = d(rng);
  }
  int n;
  std::vector<double> a, b;
};

void BM_Gauss(benchmark::State& state) {
  const System sys(int(state.range(0)));
  TarnUtilFullMatrix m(sys.n, sys.n);
  std::vector<double> x(sys.n);
  for (auto _ : state) {
    std::memcpy(m.GetValues().data, sys.a.data(), sys.a.size() * sizeof(double));
    benchmark::DoNotOptimize(ZEL_Algebra::Gauss(m, sys.b.data(), x.data()));
    benchmark::ClobberMemory();
  }
}

void BM_Dgesv(benchmark::State& state) {
  const System sys(int(state.range(0)));
  std::vector<double> lu(sys.a.size()), x(sys.n);
  std::vector<lapack_int> ipiv(sys.n);
  for (auto _ : state) {
    std::memcpy(lu.data(), sys.a.data(), sys.a.size() * sizeof(double));
    std::memcpy(x.data(), sys.b.data(), sys.b.size() * sizeof(double));
    benchmark::DoNotOptimize(
        LAPACKE_dgesv(LAPACK_COL_MAJOR, sys.n, 1, lu.data(), sys.n, ipiv.data(), x.data(), sys.n));
    benchmark::ClobberMemory();
  }
}

constexpr std::size_t kSortCount = 10000000;

const std::vector<int>& SortInput() {
  static const std::vector<int> input = [] {
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> d(0, INT_MAX);
    std::vector<int> v(kSortCount);
    for (int& x : v)
      x = d(rng);
    return v;
  }();
  return input;
}

template <typename Sort> void SortBenchmark(benchmark::State& state, Sort sort) {
  std::vector<int> v(kSortCount);
  for (auto _ : state) {
    state.PauseTiming();
    std::copy(SortInput().begin(), SortInput().end(), v.begin());
    state.ResumeTiming();
    sort(v);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kSortCount);
}

void BM_RadixSort(benchmark::State& state) {
  SortBenchmark(state, [](std::vector<int>& v) {
    TarnAlgorithmUtil::radix_sort_ascending(v.data(), v.size());
  });
}

void BM_StdSort(benchmark::State& state) {
  SortBenchmark(state, [](std::vector<int>& v) { std::sort(v.begin(), v.end()); });
}

constexpr std::size_t kScalarCount = 4096;

std::vector<double> Uniform(double lo, double hi, unsigned seed) {
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<double> d(lo, hi);
  std::vector<double> v(kScalarCount);
  for (double& x : v)
    x = d(rng);
  return v;
}

void BM_SinCos(benchmark::State& state) {
  const std::vector<double> xs = Uniform(0.0, 1.5625, 1);
  for (auto _ : state) {
    double sum = 0;
    for (double x : xs) {
      double s, c;
      TarnMathUtil::sincos(x, s, c);
      sum += s + c;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kScalarCount);
}

void BM_StdSinPlusCos(benchmark::State& state) {
  const std::vector<double> xs = Uniform(0.0, 1.5625, 1);
  for (auto _ : state) {
    double sum = 0;
    for (double x : xs)
      sum += std::sin(x) + std::cos(x);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kScalarCount);
}

void BM_Dot2(benchmark::State& state) {
  const std::vector<double> x = Uniform(-1, 1, 2), y = Uniform(-1, 1, 3);
  for (auto _ : state)
    benchmark::DoNotOptimize(ZEL_PrecArith::dot2(x.data(), y.data(), kScalarCount));
  state.SetItemsProcessed(state.iterations() * kScalarCount);
}

void BM_PlainDot(benchmark::State& state) {
  const std::vector<double> x = Uniform(-1, 1, 2), y = Uniform(-1, 1, 3);
  for (auto _ : state)
    benchmark::DoNotOptimize(std::inner_product(x.begin(), x.end(), y.begin(), 0.0));
  state.SetItemsProcessed(state.iterations() * kScalarCount);
}

} // namespace

BENCHMARK(BM_Gauss)->Arg(10)->Arg(50)->Arg(200);
BENCHMARK(BM_Dgesv)->Arg(10)->Arg(50)->Arg(200);
BENCHMARK(BM_RadixSort)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StdSort)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SinCos);
BENCHMARK(BM_StdSinPlusCos);
BENCHMARK(BM_Dot2);
BENCHMARK(BM_PlainDot);

int main(int argc, char** argv) {
  return tarnbench::RunWithRatios(
      argc, argv,
      {{"BM_Gauss/10", "BM_Dgesv/10"},
       {"BM_Gauss/50", "BM_Dgesv/50"},
       {"BM_Gauss/200", "BM_Dgesv/200", "target <= 1.5"},
       {"BM_RadixSort", "BM_StdSort", "target <= 0.5"},
       {"BM_SinCos", "BM_StdSinPlusCos", "target <= 0.5"},
       {"BM_Dot2", "BM_PlainDot", "target <= 4"}},
      [] { SortInput(); });
}
