//===- bench_geometry.cpp - Frames and affine maps against a hand loop ------===//
//
// Converts 10^6 points from a rotated Cartesian TarnCoordinateSystem to its
// parent frame and back, and applies a composed ZEL_TransformationMatrix
// (rotation, scaling, reflection, translation) to 10^6 points. Each is
// measured point by point through the public calls and through the batch
// forms, against a hand-written loop of the same 3x3 product and
// translation over plain doubles. The points are read from one array and
// written to another (48 MB of traffic per pass), as a program converting a
// mesh does.
//
//===----------------------------------------------------------------------===//
#include "RatioReporter.h"

#include "TarnUtilities/geometry/TarnCoordinateSystem.h"
#include "TarnUtilities/geometry/ZEL_TransformationMatrix.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

constexpr std::size_t kPoints = 1000000;

std::vector<TarnVector3d>& Points() {
  static std::vector<TarnVector3d> points = [] {
    std::mt19937 rng(1);
    std::uniform_real_distribution<double> d(-100, 100);
    std::vector<TarnVector3d> v(kPoints);
    for (TarnVector3d& p : v)
      p = TarnVector3d(d(rng), d(rng), d(rng));
    return v;
  }();
  return points;
}

const TarnCoordinateSystem& Frame() {
  static const TarnCoordinateSystem cs(TarnCoordinateSystem::CARTESIAN, {10, -20, 30}, {1, 2, 3},
                                       {-2, 0.5, 1});
  return cs;
}

const ZEL_TransformationMatrix& Composed() {
  static const ZEL_TransformationMatrix m = [] {
    ZEL_TransformationMatrix t;
    t.AddRotation({1, 1, 2}, 0.7);
    t.AddScaling({2, 0.5, 1.5});
    t.AddReflectionOnPlane({1, 0, 0}, {1, -1, 1});
    t.AddTranslation({3, -4, 5});
    return t;
  }();
  return m;
}

/// out = A in + b for a 3x3 row-major A: the peer of every case.
void HandAffine(const double* a, const double* b, const double* in, double* out, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i, in += 3, out += 3) {
    const double x = in[0], y = in[1], z = in[2];
    out[0] = a[0] * x + a[1] * y + a[2] * z + b[0];
    out[1] = a[3] * x + a[4] * y + a[5] * z + b[1];
    out[2] = a[6] * x + a[7] * y + a[8] * z + b[2];
  }
}

template <typename Body> void Run(benchmark::State& state, Body body) {
  const std::vector<TarnVector3d>& in = Points();
  std::vector<TarnVector3d> out(kPoints);
  for (auto _ : state) {
    body(in.data(), out.data());
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
}

void BM_ToParent_PerPoint(benchmark::State& state) {
  const TarnCoordinateSystem& cs = Frame();
  Run(state, [&](const TarnVector3d* in, TarnVector3d* out) {
    for (std::size_t i = 0; i < kPoints; ++i)
      out[i] = cs.ExpressInParentCartesianSystem(in[i]);
  });
}

void BM_ToParent_Batch(benchmark::State& state) {
  const TarnCoordinateSystem& cs = Frame();
  Run(state, [&](const TarnVector3d* in, TarnVector3d* out) {
    cs.ExpressInParentCartesianSystem(in, out, kPoints);
  });
}

void BM_ToParent_Hand(benchmark::State& state) {
  // Columns e1, e2, e3 and the origin as translation.
  const TarnCoordinateSystem& cs = Frame();
  double a[9], b[3];
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c)
      a[3 * r + c] = cs.GetAxis(c)[r];
    b[r] = cs.GetOrigin()[r];
  }
  Run(state, [&](const TarnVector3d* in, TarnVector3d* out) {
    HandAffine(a, b, in->data(), out->data(), kPoints);
  });
}

void BM_FromParent_PerPoint(benchmark::State& state) {
  const TarnCoordinateSystem& cs = Frame();
  Run(state, [&](const TarnVector3d* in, TarnVector3d* out) {
    for (std::size_t i = 0; i < kPoints; ++i)
      out[i] = cs.CalculateFromParentCartesianSystem(in[i]);
  });
}

void BM_FromParent_Batch(benchmark::State& state) {
  const TarnCoordinateSystem& cs = Frame();
  Run(state, [&](const TarnVector3d* in, TarnVector3d* out) {
    cs.CalculateFromParentCartesianSystem(in, out, kPoints);
  });
}

void BM_FromParent_Hand(benchmark::State& state) {
  // Rows e1, e2, e3 and the translation -(e_r . origin).
  const TarnCoordinateSystem& cs = Frame();
  double a[9], b[3];
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c)
      a[3 * r + c] = cs.GetAxis(r)[c];
    b[r] = -cs.GetAxis(r).Dot(cs.GetOrigin());
  }
  Run(state, [&](const TarnVector3d* in, TarnVector3d* out) {
    HandAffine(a, b, in->data(), out->data(), kPoints);
  });
}

void BM_Transform_PerPoint(benchmark::State& state) {
  const ZEL_TransformationMatrix& m = Composed();
  Run(state, [&](const TarnVector3d* in, TarnVector3d* out) {
    for (std::size_t i = 0; i < kPoints; ++i)
      out[i] = m * in[i];
  });
}

void BM_Transform_Batch(benchmark::State& state) {
  const ZEL_TransformationMatrix& m = Composed();
  Run(state, [&](const TarnVector3d* in, TarnVector3d* out) { m.ApplyTransformation(in, out, kPoints); });
}

void BM_Transform_Hand(benchmark::State& state) {
  const ZEL_TransformationMatrix& m = Composed();
  double a[9], b[3];
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c)
      a[3 * r + c] = m(r, c);
    b[r] = m(r, 3);
  }
  Run(state, [&](const TarnVector3d* in, TarnVector3d* out) {
    HandAffine(a, b, in->data(), out->data(), kPoints);
  });
}

} // namespace

BENCHMARK(BM_ToParent_PerPoint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToParent_Batch)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToParent_Hand)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FromParent_PerPoint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FromParent_Batch)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FromParent_Hand)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Transform_PerPoint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Transform_Batch)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Transform_Hand)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
  const char* target = "target <= 1.2";
  return tarnbench::RunWithRatios(argc, argv,
                                  {{"BM_ToParent_PerPoint", "BM_ToParent_Hand", target},
                                   {"BM_ToParent_Batch", "BM_ToParent_Hand", target},
                                   {"BM_FromParent_PerPoint", "BM_FromParent_Hand", target},
                                   {"BM_FromParent_Batch", "BM_FromParent_Hand", target},
                                   {"BM_Transform_PerPoint", "BM_Transform_Hand", target},
                                   {"BM_Transform_Batch", "BM_Transform_Hand", target}},
                                  [] { Points(); });
}
