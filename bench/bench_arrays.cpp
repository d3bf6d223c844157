//===- bench_arrays.cpp - PushBack against std::vector ----------------------===//
//
// Appends 10^8 integers one by one to an empty ZEL_IntArray and to an empty
// std::vector<int>, and 10^7 doubles to ZEL_DoubleArray and
// std::vector<double>. Growth, reallocation and page faults are part of
// what is measured, as they are in a program that fills an array.
//
//===----------------------------------------------------------------------===//
#include "RatioReporter.h"

#include "TarnUtilities/container/ZEL_DoubleArray.h"
#include "TarnUtilities/container/ZEL_IntArray.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr int kInts = 100000000;
constexpr int kDoubles = 10000000;

void BM_ZelIntArray_PushBack(benchmark::State& state) {
  for (auto _ : state) {
    ZEL_IntArray a;
    for (int i = 0; i < kInts; ++i)
      a.PushBack(i);
    benchmark::DoNotOptimize(a.data);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kInts);
}

void BM_StdVectorInt_PushBack(benchmark::State& state) {
  for (auto _ : state) {
    std::vector<int> v;
    for (int i = 0; i < kInts; ++i)
      v.push_back(i);
    benchmark::DoNotOptimize(v.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kInts);
}

void BM_ZelDoubleArray_PushBack(benchmark::State& state) {
  for (auto _ : state) {
    ZEL_DoubleArray a;
    for (int i = 0; i < kDoubles; ++i)
      a.PushBack(i * 0.5);
    benchmark::DoNotOptimize(a.data);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kDoubles);
}

void BM_StdVectorDouble_PushBack(benchmark::State& state) {
  for (auto _ : state) {
    std::vector<double> v;
    for (int i = 0; i < kDoubles; ++i)
      v.push_back(i * 0.5);
    benchmark::DoNotOptimize(v.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kDoubles);
}

} // namespace

BENCHMARK(BM_ZelIntArray_PushBack)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StdVectorInt_PushBack)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ZelDoubleArray_PushBack)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StdVectorDouble_PushBack)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
  return tarnbench::RunWithRatios(argc, argv,
                                  {{"BM_ZelIntArray_PushBack", "BM_StdVectorInt_PushBack"},
                                   {"BM_ZelDoubleArray_PushBack", "BM_StdVectorDouble_PushBack"}});
}
