//===- ZEL_TransformationMatrix_test.cpp - Affine maps ----------------------===//
#include "TarnUtilities/geometry/ZEL_TransformationMatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

namespace {

using M = ZEL_TransformationMatrix;
const double kPi = 3.141592653589793;

void ExpectNear(const TarnVector3d& got, const TarnVector3d& want, double tol) {
  for (int i = 0; i < 3; ++i)
    EXPECT_NEAR(got[i], want[i], tol) << "component " << i;
}

} // namespace

// Random sequences of steps against the product of their 4x4 homogeneous
// matrices [B off; 0 1], built independently here: rotations from the unit
// quaternion, planes from the unit normal; a scaling is diag(s) with the
// offset that keeps t, a clear resets the product.
TEST(ZEL_TransformationMatrix, StepsAgainstHomogeneousProducts) {
  std::mt19937 rng(15);
  std::uniform_real_distribution<double> d(-1, 1), scale(0.5, 2);
  const auto vec = [&](double half) { return TarnVector3d(half * d(rng), half * d(rng), half * d(rng)); };
  for (int seq = 0; seq < 300; ++seq) {
    M m;
    long double h[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    for (int step = 0; step < 8; ++step) {
      const int kind = std::uniform_int_distribution<int>(0, 8)(rng);
      SCOPED_TRACE(::testing::Message() << "sequence " << seq << " step " << step << " kind " << kind);
      const TarnVector3d a = vec(2), b = vec(1), c = vec(1), p = vec(10), *v[3] = {&a, &b, &c};
      const TarnVector3d s = kind == 1 ? TarnVector3d(scale(rng), scale(rng), scale(rng))
                                       : TarnVector3d(1, 1, 1) * scale(rng);
      const double angle = kPi * d(rng);
      const long double n = a.Norm(), u[3] = {a[0] / n, a[1] / n, a[2] / n}, f = kind == 4 ? 1 : 2;
      const long double pu = p[0] * u[0] + p[1] * u[1] + p[2] * u[2], w = std::cos(angle / 2.0L);
      const long double x = u[0] * std::sin(angle / 2.0L), y = u[1] * std::sin(angle / 2.0L),
                        z = u[2] * std::sin(angle / 2.0L);
      const long double rot[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w)},
                                     {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w)},
                                     {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y)}};
      long double blk[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
      for (int r = 0; r < 3; ++r)
        for (int k = 0; k < 3; ++k)
          switch (kind) {
          case 0: blk[r][3] = a[r]; break;
          case 1: case 2: blk[r][k] = r == k ? s[r] : 0, blk[r][3] = (1 - s[r]) * h[r][3]; break;
          case 3: blk[r][k] = rot[r][k]; break;
          case 4: case 5: blk[r][k] -= f * u[r] * u[k], blk[r][3] = f * pu * u[r]; break;
          case 6: case 7: blk[r][k] = kind == 6 ? (*v[r])[k] : (*v[k])[r]; break;
          }
      switch (kind) {
      case 0: m.AddTranslation(a); break;
      case 1: m.AddScaling(s); break;
      case 2: m.AddScaling(s[0]); break;
      case 3: m.AddRotation(a, angle); break;
      case 4: m.AddProjectionOnPlane(p, a); break;
      case 5: m.AddReflectionOnPlane(p, a); break;
      case 6: m.AddCoordinateSystemTransformation(a, b, c); break;
      case 7: m.AddInverseCoordinateSystemTransformation(a, b, c); break;
      default: m.ClearTransformationMatrix();
      }
      long double prod[4][4], size = 1;
      for (int r = 0; r < 4; ++r)
        for (int k = 0; k < 4; ++k) {
          prod[r][k] = kind == 8 ? r == k : 0;
          for (int j = 0; j < 4 && kind != 8; ++j)
            prod[r][k] += blk[r][j] * h[j][k];
        }
      std::copy(&prod[0][0], &prod[0][0] + 16, &h[0][0]);
      for (int r = 0; r < 16; ++r)
        size = std::max(size, std::fabs(h[r / 4][r % 4]));
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

TEST(ZEL_TransformationMatrix, ReflectionTwiceGivesThePoint) {
  std::mt19937 rng(2);
  std::uniform_real_distribution<double> d(-5, 5);
  for (int k = 0; k < 200; ++k) {
    const TarnVector3d p(d(rng), d(rng), d(rng)), n(d(rng), d(rng), d(rng)), x(d(rng), d(rng), d(rng));
    M twice;
    twice.AddReflectionOnPlane(p, n);
    twice.AddReflectionOnPlane(p, n);
    ExpectNear(twice * x, x, 1e-12);
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
      {"rotate", [](M& m) { m.AddRotation({0, 0, 2}, kPi / 2); }, {1, 0, 0}, {0, 1, 0}},
      {"short axis", [](M& m) { m.AddRotation({0, 0, 1e-9}, 1.0); }, {1, 2, 3}, {1, 2, 3}},
      {"axis at the limit", [&](M& m) { m.AddRotation({axisLimit, 0, 0}, 1.0); }, {1, 2, 3}, {1, 2, 3}},
      {"projection", [](M& m) { m.AddProjectionOnPlane({0, 0, 5}, {0, 0, 3}); }, {1, 2, 3}, {1, 2, 5}},
      {"reflection", [](M& m) { m.AddReflectionOnPlane({0, 0, 5}, {0, 0, 3}); }, {1, 2, 3}, {1, 2, 7}},
      // 6e-9^2 + 8e-9^2 is exactly 1e-16: still no normal.
      {"normal at the limit", [](M& m) { m.AddReflectionOnPlane({0, 0, 5}, {6e-9, 8e-9, 0}); }, {1, 2, 3},
       {1, 2, 3}},
      {"normal at the limit", [](M& m) { m.AddProjectionOnPlane({0, 0, 5}, {6e-9, 8e-9, 0}); }, {1, 2, 3},
       {1, 2, 3}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    M m;
    row.build(m);
    ExpectNear(m * row.in, row.out, 1e-15);
  }

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
