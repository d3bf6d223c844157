//===- bench_search_tree.cpp - ZEL_SearchTree3D against nanoflann -----------===//
//
// Build time and nearest-point queries of ZEL_SearchTree3D and of nanoflann's
// KDTreeSingleIndexAdaptor, both with leaves of at most 12 points, on one
// thread, over two clouds of 10^6 points:
//
// - uniform: random points in the unit cube; queries random in the cube;
// - grid: the nodes of a 100 x 100 x 100 unit grid in row order (a
//   finite-element mesh); queries at random nodes moved by up to 0.3 on each
//   axis.
//
// A build is CreateTree on a tree that holds the points (the copy that gives
// it a fresh node array is not timed) against nanoflann's buildIndex. Query
// runs answer 100,000 queries per iteration; items/s is queries per second.
// Before the runs, the program checks that both libraries find a point at the
// same distance for every query.
//
//===----------------------------------------------------------------------===//
#include "RatioReporter.h"

#include "TarnUtilities/geometry/ZEL_SearchTree3D.h"

#include <benchmark/benchmark.h>
#include <nanoflann.hpp>

#include <cstdio>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr std::size_t kLeafSize = 12;
constexpr std::size_t kQueries = 100000;
constexpr int kGridSide = 100;
constexpr double kGridOffset = 0.3; // well inside half a grid step

struct Point {
  double x, y, z;
};

/// nanoflann's view of a point array.
struct CloudAdaptor {
  const std::vector<Point>* points;
  std::size_t kdtree_get_point_count() const { return points->size(); }
  double kdtree_get_pt(std::size_t i, std::size_t dim) const {
    const Point& p = (*points)[i];
    return dim == 0 ? p.x : dim == 1 ? p.y : p.z;
  }
  template <class Box> bool kdtree_get_bbox(Box&) const { return false; }
};

using PeerTree =
    nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<double, CloudAdaptor>,
                                        CloudAdaptor, 3, std::size_t>;

struct Scene {
  std::vector<Point> points;
  CloudAdaptor adaptor{&points}; // nanoflann keeps a reference to it
  std::vector<Point> queries;
  ZEL_SearchTree3D unbuilt; // the points, no tree
  ZEL_SearchTree3D built;
  std::unique_ptr<PeerTree> peer;
};

Scene g_Scenes[2]; // 0 uniform, 1 grid

void MakeScene(Scene& s, bool grid) {
  std::mt19937_64 rng(grid ? 2 : 1);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  std::uniform_real_distribution<double> offset(-kGridOffset, kGridOffset);
  if (grid) {
    for (int i = 0; i < kGridSide; ++i)
      for (int j = 0; j < kGridSide; ++j)
        for (int k = 0; k < kGridSide; ++k)
          s.points.push_back({double(i), double(j), double(k)});
    for (std::size_t q = 0; q < kQueries; ++q) {
      const Point& node = s.points[rng() % s.points.size()];
      s.queries.push_back({node.x + offset(rng), node.y + offset(rng), node.z + offset(rng)});
    }
  } else {
    for (int i = 0; i < kGridSide * kGridSide * kGridSide; ++i)
      s.points.push_back({unit(rng), unit(rng), unit(rng)});
    for (std::size_t q = 0; q < kQueries; ++q)
      s.queries.push_back({unit(rng), unit(rng), unit(rng)});
  }
  for (const Point& p : s.points)
    s.unbuilt.AddPoint(p.x, p.y, p.z);
  s.built = s.unbuilt;
  s.built.CreateTree(kLeafSize);
  s.peer = std::make_unique<PeerTree>(3, s.adaptor,
                                      nanoflann::KDTreeSingleIndexAdaptorParams(kLeafSize));
}

std::size_t PeerNearest(const PeerTree& tree, const Point& q) {
  std::size_t index = 0;
  double distance = 0;
  nanoflann::KNNResultSet<double, std::size_t> result(1);
  result.init(&index, &distance);
  tree.findNeighbors(result, &q.x, nanoflann::SearchParams());
  return index;
}

double Dist2(const Point& p, const Point& q) {
  return ((q.y - p.y) * (q.y - p.y) + (q.x - p.x) * (q.x - p.x)) + (q.z - p.z) * (q.z - p.z);
}

void Prepare() {
  for (int grid = 0; grid < 2; ++grid) {
    Scene& s = g_Scenes[grid];
    MakeScene(s, grid == 1);
    std::size_t differ = 0;
    for (const Point& q : s.queries)
      differ += Dist2(s.points[s.built.FindNearestPoint(q.x, q.y, q.z)], q) !=
                Dist2(s.points[PeerNearest(*s.peer, q)], q);
    if (differ)
      std::printf("WARNING: %zu of %zu answers differ in distance\n", differ, s.queries.size());
  }
}

void BM_TarnBuild(benchmark::State& state, int scene) {
  const Scene& s = g_Scenes[scene];
  for (auto _ : state) {
    state.PauseTiming();
    ZEL_SearchTree3D tree = s.unbuilt;
    state.ResumeTiming();
    tree.CreateTree(kLeafSize);
    benchmark::DoNotOptimize(tree.GetNodes().data());
    state.PauseTiming();
    tree = ZEL_SearchTree3D(); // freed outside the timing
    state.ResumeTiming();
  }
}

void BM_NanoflannBuild(benchmark::State& state, int scene) {
  const Scene& s = g_Scenes[scene];
  for (auto _ : state) {
    auto tree = std::make_unique<PeerTree>(
        3, s.adaptor,
        nanoflann::KDTreeSingleIndexAdaptorParams(
            kLeafSize, nanoflann::KDTreeSingleIndexAdaptorFlags::SkipInitialBuildIndex));
    tree->buildIndex();
    benchmark::DoNotOptimize(tree.get());
    state.PauseTiming(); // the destructor's frees are not timed
    tree.reset();
    state.ResumeTiming();
  }
}

void BM_TarnQuery(benchmark::State& state, int scene) {
  const Scene& s = g_Scenes[scene];
  for (auto _ : state)
    for (const Point& q : s.queries)
      benchmark::DoNotOptimize(s.built.FindNearestPoint(q.x, q.y, q.z));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(s.queries.size()));
}

void BM_NanoflannQuery(benchmark::State& state, int scene) {
  const Scene& s = g_Scenes[scene];
  for (auto _ : state)
    for (const Point& q : s.queries)
      benchmark::DoNotOptimize(PeerNearest(*s.peer, q));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(s.queries.size()));
}

} // namespace

// Scene 0 is the uniform cloud, scene 1 the grid.
BENCHMARK_CAPTURE(BM_TarnBuild, uniform, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TarnBuild, grid, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NanoflannBuild, uniform, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NanoflannBuild, grid, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TarnQuery, uniform, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_TarnQuery, grid, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NanoflannQuery, uniform, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_NanoflannQuery, grid, 1)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
  return tarnbench::RunWithRatios(
      argc, argv,
      {{"BM_TarnBuild/uniform", "BM_NanoflannBuild/uniform", "target <= 1.5"},
       {"BM_TarnBuild/grid", "BM_NanoflannBuild/grid", "target <= 1.5"},
       {"BM_TarnQuery/uniform", "BM_NanoflannQuery/uniform", "target <= 1.0"},
       {"BM_TarnQuery/grid", "BM_NanoflannQuery/grid", "target <= 1.0"}},
      Prepare);
}
