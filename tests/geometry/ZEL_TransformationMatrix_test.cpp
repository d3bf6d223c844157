//===- ZEL_TransformationMatrix_test.cpp - Affine maps ----------------------===//
#include "TarnUtilities/geometry/ZEL_TransformationMatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

namespace {

using M = ZEL_TransformationMatrix;
using H4 = long double[4][4];
const double kPi = 3.141592653589793;

void ExpectNear(const TarnVector3d& got, const TarnVector3d& want, double tol) {
  for (int i = 0; i < 3; ++i)
    EXPECT_NEAR(got[i], want[i], tol) << "component " << i;
}

/// h = [l off; 0 1] * h, for a 3x3 block l given by its elements l(r, c).
void LeftMultiply(H4& h, const std::function<long double(int, int)>& l, const long double off[3]) {
  long double s[4][4] = {{0}}, out[4][4];
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c)
      s[r][c] = l(r, c);
    s[r][3] = off[r];
  }
  s[3][3] = 1;
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) {
      out[r][c] = 0;
      for (int k = 0; k < 4; ++k)
        out[r][c] += s[r][k] * h[k][c];
    }
  std::copy(&out[0][0], &out[0][0] + 16, &h[0][0]);
}

} // namespace

// Random sequences of steps against the product of their 4x4 homogeneous
// matrices, built independently here: rotations from the unit quaternion,
// planes from the unit normal. Scalings scale the linear block only.
TEST(ZEL_TransformationMatrix, StepsAgainstHomogeneousProducts) {
  std::mt19937 rng(15);
  std::uniform_real_distribution<double> d(-1, 1), scale(0.5, 2);
  const auto vec = [&](double half) { return TarnVector3d(half * d(rng), half * d(rng), half * d(rng)); };
  const long double zero[3] = {0, 0, 0};
  for (int seq = 0; seq < 300; ++seq) {
    M m;
    H4 h = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    for (int step = 0; step < 8; ++step) {
      const int kind = std::uniform_int_distribution<int>(0, 8)(rng);
      const TarnVector3d a = vec(2), b = vec(1), c = vec(1), p = vec(10);
      SCOPED_TRACE(::testing::Message() << "sequence " << seq << " step " << step << " kind " << kind);
      const long double ua = a.Norm(), u[3] = {a[0] / ua, a[1] / ua, a[2] / ua};
      const long double pu = p[0] * u[0] + p[1] * u[1] + p[2] * u[2];
      const auto eye = [](int r, int k) { return (long double)(r == k); };
      if (kind == 0) {
        m.AddTranslation(a);
        const long double off[3] = {a[0], a[1], a[2]};
        LeftMultiply(h, eye, off);
      } else if (kind <= 2) {
        const TarnVector3d s = kind == 1 ? TarnVector3d(scale(rng), scale(rng), scale(rng))
                                         : TarnVector3d(1, 1, 1) * scale(rng);
        kind == 1 ? m.AddScaling(s) : m.AddScaling(s[0]);
        for (int r = 0; r < 3; ++r)
          for (int k = 0; k < 3; ++k)
            h[r][k] *= s[r];
      } else if (kind == 3) {
        const double angle = kPi * d(rng);
        m.AddRotation(a, angle);
        const long double w = std::cos(angle / 2.0L), sh = std::sin(angle / 2.0L);
        const long double x = u[0] * sh, y = u[1] * sh, z = u[2] * sh;
        const long double rot[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w)},
                                       {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w)},
                                       {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y)}};
        LeftMultiply(h, [&](int r, int k) { return rot[r][k]; }, zero);
      } else if (kind <= 5) {
        const long double f = kind == 4 ? 1 : 2;
        kind == 4 ? m.AddProjectionOnPlane(p, a) : m.AddReflectionOnPlane(p, a);
        const long double off[3] = {f * pu * u[0], f * pu * u[1], f * pu * u[2]};
        LeftMultiply(h, [&](int r, int k) { return (r == k) - f * u[r] * u[k]; }, off);
      } else if (kind <= 7) {
        const TarnVector3d* v[3] = {&a, &b, &c};
        kind == 6 ? m.AddCoordinateSystemTransformation(a, b, c)
                  : m.AddInverseCoordinateSystemTransformation(a, b, c);
        LeftMultiply(h, [&](int r, int k) { return kind == 6 ? (*v[r])[k] : (*v[k])[r]; }, zero);
      } else {
        m.ClearTransformationMatrix();
        for (int r = 0; r < 4; ++r)
          for (int k = 0; k < 4; ++k)
            h[r][k] = r == k;
      }
      long double size = 1;
      for (int r = 0; r < 4; ++r)
        for (int k = 0; k < 4; ++k)
          size = std::max(size, std::fabs(h[r][k]));
      for (size_t r = 0; r < 5; ++r)
        for (size_t k = 0; k < 5; ++k)
          EXPECT_NEAR(m(r, k), r < 4 && k < 4 ? double(h[r][k]) : 0.0, 1e-13 * double(size)) << r << "," << k;
    }
    // Applied to a point (column form, in a batch and in place) and to a row vector.
    const TarnVector3d x = vec(10), x2 = vec(10);
    const TarnVector3d mx = m * x;
    TarnVector3d y = x, batch[3] = {x2, x, x};
    m.ApplyTransformation(y);
    m.ApplyTransformation(batch, batch, 2);
    EXPECT_EQ(y, mx);
    EXPECT_EQ(batch[0], m * x2);
    EXPECT_EQ(batch[1], mx);
    EXPECT_EQ(batch[2], x);
    TarnRowVector3d q(x[0], x[1], x[2]);
    m.ApplyTransformation(q);
    for (int r = 0; r < 3; ++r) {
      long double col = h[r][3], row = h[r][3];
      for (int k = 0; k < 3; ++k) {
        col += h[r][k] * x[k];
        row += h[k][r] * x[k];
      }
      EXPECT_NEAR(mx[r], double(col), 1e-11 * (1 + std::fabs(double(col))));
      EXPECT_NEAR(q[r], double(row), 1e-11 * (1 + std::fabs(double(row))));
    }
  }
}

TEST(ZEL_TransformationMatrix, PlanesReflectTwiceAndProjectOnto) {
  std::mt19937 rng(2);
  std::uniform_real_distribution<double> d(-5, 5);
  for (int k = 0; k < 200; ++k) {
    const TarnVector3d p(d(rng), d(rng), d(rng)), n(d(rng), d(rng), d(rng)), x(d(rng), d(rng), d(rng));
    M twice, proj;
    twice.AddReflectionOnPlane(p, n);
    twice.AddReflectionOnPlane(p, n);
    ExpectNear(twice * x, x, 1e-12);
    proj.AddProjectionOnPlane(p, n);
    const TarnVector3d onPlane = proj * x;
    EXPECT_NEAR((onPlane - p).Dot(n), 0.0, 1e-12);
    ExpectNear((x - onPlane).Cross(n), TarnVector3d(), 1e-12);
  }
}

TEST(ZEL_TransformationMatrix, EdgeCases) {
  const double inf = std::numeric_limits<double>::infinity(), nan = std::nan("");
  const double axisLimit = 9.99999993922529e-9; // 1e-8f
  struct Row {
    const char* what;
    std::function<void(M&)> build;
    TarnVector3d in, out;
  };
  const Row rows[] = {
      {"new object", [](M&) {}, {1, 2, 3}, {1, 2, 3}},
      {"translate, scale", [](M& m) { m.AddTranslation({1, 2, 3}), m.AddScaling(2.0); }, {0, 0, 0}, {1, 2, 3}},
      {"scale, translate", [](M& m) { m.AddScaling(2.0), m.AddTranslation({1, 2, 3}); }, {1, 1, 1}, {3, 4, 5}},
      {"translate, scale rows", [](M& m) { m.AddTranslation({1, 1, 1}), m.AddScaling({1, 2, 3}); },
       {1, 1, 1}, {2, 3, 4}},
      {"rotate", [](M& m) { m.AddRotation({0, 0, 2}, kPi / 2); }, {1, 0, 0}, {0, 1, 0}},
      {"rotate, translate", [](M& m) { m.AddRotation({0, 0, 1}, kPi / 2), m.AddTranslation({1, 0, 0}); },
       {1, 0, 0}, {1, 1, 0}},
      {"translate, rotate", [](M& m) { m.AddTranslation({1, 0, 0}), m.AddRotation({0, 0, 1}, kPi / 2); },
       {1, 0, 0}, {0, 2, 0}},
      {"short axis", [](M& m) { m.AddRotation({0, 0, 1e-9}, 1.0); }, {1, 2, 3}, {1, 2, 3}},
      {"axis at the limit", [&](M& m) { m.AddRotation({axisLimit, 0, 0}, 1.0); }, {1, 2, 3}, {1, 2, 3}},
      {"axis above the limit", [&](M& m) { m.AddRotation({std::nextafter(axisLimit, 1.0), 0, 0}, kPi / 2); },
       {0, 1, 0}, {0, 0, 1}},
      {"projection", [](M& m) { m.AddProjectionOnPlane({0, 0, 5}, {0, 0, 3}); }, {1, 2, 3}, {1, 2, 5}},
      {"reflection", [](M& m) { m.AddReflectionOnPlane({0, 0, 5}, {0, 0, 3}); }, {1, 2, 3}, {1, 2, 7}},
      // 6e-9^2 + 8e-9^2 is exactly 1e-16: still no normal.
      {"normal at the limit", [](M& m) { m.AddReflectionOnPlane({0, 0, 5}, {6e-9, 8e-9, 0}); }, {1, 2, 3},
       {1, 2, 3}},
      {"projection, short normal", [](M& m) { m.AddProjectionOnPlane({0, 0, 5}, {6e-9, 8e-9, 0}); },
       {1, 2, 3}, {1, 2, 3}},
      {"normal above the limit", [](M& m) { m.AddProjectionOnPlane({0, 0, 5}, {0, 0, 1.01e-8}); },
       {1, 2, 3}, {1, 2, 5}},
      {"rows frame", [](M& m) { m.AddCoordinateSystemTransformation({0, 1, 0}, {0, 0, 1}, {1, 0, 0}); },
       {1, 2, 3}, {2, 3, 1}},
      {"columns frame",
       [](M& m) { m.AddInverseCoordinateSystemTransformation({0, 1, 0}, {0, 0, 1}, {1, 0, 0}); }, {1, 2, 3},
       {3, 1, 2}},
      {"clear", [](M& m) { m.AddTranslation({1, 2, 3}), m.AddRotation({1, 1, 0}, 1), m.ClearTransformationMatrix(); },
       {1, 2, 3}, {1, 2, 3}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    M m;
    row.build(m);
    ExpectNear(m * row.in, row.out, 1e-15);
  }

  const M identity;
  EXPECT_EQ(identity(3, 3), 1.0);
  EXPECT_EQ(identity(3, 0), 0.0);
  // The row form applies L transposed.
  M rot;
  rot.AddRotation({0, 0, 1}, kPi / 2);
  TarnRowVector3d q(1, 0, 0);
  rot.ApplyTransformation(q);
  EXPECT_NEAR(q[0], 0, 1e-15);
  EXPECT_NEAR(q[1], -1, 1e-15);
  // Clearing multiplies t by 0: NaN and infinities leave NaN.
  M clear;
  clear.AddTranslation({nan, inf, -7});
  clear.ClearTransformationMatrix();
  EXPECT_TRUE(std::isnan(clear(0, 3)) && std::isnan(clear(1, 3)));
  EXPECT_EQ(clear(2, 3), 0.0);
  // A NaN axis or an infinite angle is used as given: L becomes NaN.
  for (const auto& [axis, angle] : {std::pair<TarnVector3d, double>{{nan, 0, 1}, 1.0}, {{0, 0, 1}, inf}}) {
    M m;
    m.AddRotation(axis, angle);
    EXPECT_TRUE(std::isnan(m(0, 0)));
  }
}
