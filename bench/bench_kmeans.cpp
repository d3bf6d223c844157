//===- bench_kmeans.cpp - 1-D k-means against a plain Lloyd iteration -------===//
//
// 10^6 values (a fixed mixture of 40 normal distributions of different
// widths and weights, and 5% uniform noise), k = 10 and k = 100, centers
// seeded by SeedCentersAdvanced; the object is built and seeded outside the
// timings.
//
//  - BM_KMeansRun: KMeansPlusPlus1D::CreateClusters until the assignment
//    repeats (limit 10^4); the counter gives the iterations.
//  - BM_KMeansPasses: CreateClusters with the limit kPasses - 1, which makes
//    kPasses assignment passes (one to the seeded centers, one per
//    iteration), so that it does the work of the peers' kPasses
//    iterations, plus its own set-up and final output.
//  - BM_PlainLloyd: kPasses iterations of the textbook Lloyd iteration on
//    the unsorted values from the same centers: every value compares its
//    distance to every center (lower index on a tie) and adds itself to its
//    cluster's sum, then the centers move to the means. A full run at
//    k = 100 would take minutes.
//  - BM_SortedCentersLloyd: the same with the nearest center found by
//    binary search over the midpoints of the sorted centers (O(log k) per
//    value): a stronger peer than the textbook one.
//
// Building the object (the sort) and seeding are measured on their own.
//
//===----------------------------------------------------------------------===//
#include "RatioReporter.h"

#include "TarnUtilities/numerics/KMeansPlusPlus1D.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

constexpr std::size_t kValues = 1000000;
constexpr std::size_t kLimit = 10000;
constexpr std::size_t kPasses = 20;

const std::vector<double>& Values() {
  static const std::vector<double> values = [] {
    std::mt19937_64 rng(20240825);
    std::vector<double> means, widths, weights;
    for (int c = 0; c < 40; ++c) {
      means.push_back(std::uniform_real_distribution<>(0, 1000)(rng));
      widths.push_back(std::uniform_real_distribution<>(0.5, 15)(rng));
      weights.push_back(std::uniform_real_distribution<>(0.2, 1)(rng));
    }
    std::discrete_distribution<int> pick(weights.begin(), weights.end());
    std::vector<double> v(kValues);
    for (double& x : v)
      x = std::uniform_real_distribution<>(0, 1)(rng) < 0.05
              ? std::uniform_real_distribution<>(-50, 1050)(rng)
              : std::normal_distribution<>(0, 1)(rng) * widths[pick(rng)] + means[pick(rng)];
    return v;
  }();
  return values;
}

/// The seeded object of each k, built outside every timing.
const KMeansPlusPlus1D& Seeded(std::size_t k) {
  static std::vector<std::pair<std::size_t, KMeansPlusPlus1D>> cache;
  for (const auto& [key, km] : cache)
    if (key == k)
      return km;
  KMeansPlusPlus1D km(Values());
  km.SeedCentersAdvanced(k);
  cache.emplace_back(k, std::move(km));
  return cache.back().second;
}

void BM_KMeansRun(benchmark::State& state) {
  const KMeansPlusPlus1D& km = Seeded(static_cast<std::size_t>(state.range(0)));
  std::vector<double> centers;
  std::vector<std::size_t> assignment;
  KMeansPlusPlus1D::CLUSTERING_INFO info;
  for (auto _ : state) {
    km.CreateClusters(kLimit, centers, assignment, info);
    benchmark::DoNotOptimize(centers.data());
  }
  state.counters["iterations"] = static_cast<double>(info.numIterations);
}

void BM_KMeansPasses(benchmark::State& state) {
  const KMeansPlusPlus1D& km = Seeded(static_cast<std::size_t>(state.range(0)));
  std::vector<double> centers;
  std::vector<std::size_t> assignment;
  KMeansPlusPlus1D::CLUSTERING_INFO info;
  for (auto _ : state) {
    km.CreateClusters(kPasses - 1, centers, assignment, info);
    benchmark::DoNotOptimize(centers.data());
  }
  state.counters["passes"] = static_cast<double>(info.numIterations + 1);
}

/// kPasses iterations of Lloyd's iteration from the seeded centers (fewer
/// if no value changes its cluster). `finder.Prepare(centers)` runs
/// once per iteration, `finder(x)` then gives the cluster of a value.
template <typename Finder> std::size_t Lloyd(std::size_t k, Finder finder) {
  const std::vector<double>& values = Values();
  std::vector<double> centers = Seeded(k).GetSeededCenters();
  std::vector<double> sums(centers.size());
  std::vector<std::size_t> counts(centers.size());
  std::vector<std::size_t> cluster(values.size(), centers.size());
  std::size_t iterations = 0;
  for (bool changed = true; changed && iterations < kPasses;) {
    ++iterations;
    changed = false;
    finder.Prepare(centers);
    std::fill(sums.begin(), sums.end(), 0.0);
    std::fill(counts.begin(), counts.end(), 0);
    for (std::size_t i = 0; i < values.size(); ++i) {
      const std::size_t c = finder(values[i]);
      changed |= c != cluster[i];
      cluster[i] = c;
      sums[c] += values[i];
      ++counts[c];
    }
    for (std::size_t c = 0; c < centers.size(); ++c)
      if (counts[c] > 0)
        centers[c] = sums[c] / static_cast<double>(counts[c]);
  }
  benchmark::DoNotOptimize(centers.data());
  return iterations;
}

template <typename Finder> void TimeLloyd(benchmark::State& state) {
  const auto k = static_cast<std::size_t>(state.range(0));
  std::size_t passes = 0;
  for (auto _ : state)
    passes = Lloyd(k, Finder{});
  state.counters["passes"] = static_cast<double>(passes);
}

/// Compares the distance to every center; the lower index wins a tie.
struct EveryCenter {
  const std::vector<double>* centers = nullptr;
  void Prepare(const std::vector<double>& c) { centers = &c; }
  std::size_t operator()(double x) const {
    const std::vector<double>& c = *centers;
    std::size_t best = 0;
    double bestDistance = std::fabs(x - c[0]);
    for (std::size_t j = 1; j < c.size(); ++j) {
      const double d = std::fabs(x - c[j]);
      if (d < bestDistance) {
        bestDistance = d;
        best = j;
      }
    }
    return best;
  }
};

/// Centers stay ascending under Lloyd's update in one dimension, so the
/// clusters are separated by the midpoints of neighbouring centers; a value
/// exactly on one goes to the lower center.
struct Midpoints {
  std::vector<double> mid;
  void Prepare(const std::vector<double>& c) {
    mid.resize(c.size() - 1);
    for (std::size_t j = 0; j + 1 < c.size(); ++j)
      mid[j] = c[j] + (c[j + 1] - c[j]) / 2;
  }
  std::size_t operator()(double x) const {
    return static_cast<std::size_t>(std::lower_bound(mid.begin(), mid.end(), x) - mid.begin());
  }
};

void BM_PlainLloyd(benchmark::State& state) { TimeLloyd<EveryCenter>(state); }
void BM_SortedCentersLloyd(benchmark::State& state) { TimeLloyd<Midpoints>(state); }

void BM_Construct(benchmark::State& state) {
  for (auto _ : state) {
    KMeansPlusPlus1D km(Values());
    benchmark::DoNotOptimize(km.GetNumDistinctValues());
  }
}

void BM_SeedCentersAdvanced(benchmark::State& state) {
  KMeansPlusPlus1D km(Values());
  for (auto _ : state) {
    km.SeedCentersAdvanced(static_cast<std::size_t>(state.range(0)));
    benchmark::DoNotOptimize(km.GetSeededCenters().data());
  }
}

} // namespace

BENCHMARK(BM_KMeansRun)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_KMeansPasses)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlainLloyd)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SortedCentersLloyd)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Construct)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SeedCentersAdvanced)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
  const char* target = "20 iterations each, target <= 1.0";
  return tarnbench::RunWithRatios(
      argc, argv,
      {{"BM_KMeansPasses/10", "BM_PlainLloyd/10", target},
       {"BM_KMeansPasses/100", "BM_PlainLloyd/100", target},
       {"BM_KMeansPasses/10", "BM_SortedCentersLloyd/10", "20 iterations each"},
       {"BM_KMeansPasses/100", "BM_SortedCentersLloyd/100", "20 iterations each"}});
}
