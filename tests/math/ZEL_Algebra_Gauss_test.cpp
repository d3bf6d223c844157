//===- ZEL_Algebra_Gauss_test.cpp - Gaussian elimination --------------------===//
//
// Oracles: LAPACK's dgesv on random well-conditioned systems, and a literal
// transcription of the elimination (rows through the permutation; for each
// pivot k, for each row i, for each column j), which the library must match
// bit for bit, in the solution and in what is left of the matrix.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/math/TarnUtilFullMatrix.h"
#include "TarnUtilities/math/ZEL_Algebra.h"
#include "support/FailureOf.h"

#include <gtest/gtest.h>
#include <lapacke.h>

#include <cmath>
#include <cstring>
#include <numeric>
#include <random>
#include <vector>

namespace {

/// The elimination as one would write it from its description, on a
/// column-major n x n array.
bool Transcription(std::vector<double>& A, std::size_t n, const std::vector<double>& b,
                   std::vector<double>& x) {
  auto at = [&](std::size_t r, std::size_t c) -> double& { return A[c * n + r]; };
  std::vector<double> bw = b;
  std::vector<std::size_t> p(n);
  std::iota(p.begin(), p.end(), 0);
  for (std::size_t k = 0; k < n; ++k) {
    std::size_t best = k;
    for (std::size_t i = k + 1; i < n; ++i)
      if (std::fabs(at(p[i], k)) > std::fabs(at(p[best], k)))
        best = i;
    if (!(std::fabs(at(p[best], k)) > 1e-16))
      return false;
    std::swap(p[k], p[best]);
    for (std::size_t i = k + 1; i < n; ++i) {
      if (!(std::fabs(at(p[i], k)) > 1e-16))
        continue;
      const double f = at(p[i], k) / at(p[k], k);
      at(p[i], k) = 0.0;
      for (std::size_t j = k + 1; j < n; ++j)
        at(p[i], j) -= f * at(p[k], j);
      bw[p[i]] -= f * bw[p[k]];
    }
  }
  for (std::size_t r = n; r-- > 0;) {
    double s = 0.0;
    for (std::size_t j = r + 1; j < n; ++j)
      s += at(p[r], j) * x[j];
    if (!(std::fabs(at(p[r], r)) > 1e-16))
      return false;
    x[r] = (bw[p[r]] - s) / at(p[r], r);
  }
  return true;
}

TarnUtilFullMatrix FromColumnMajor(const std::vector<double>& a, std::size_t n) {
  TarnUtilFullMatrix m(n, n);
  std::copy(a.begin(), a.end(), m.GetValues().data);
  return m;
}

bool SameBits(const double* a, const double* b, std::size_t n) {
  return std::memcmp(a, b, n * sizeof(double)) == 0;
}

/// Random column-major matrices of several kinds: dense, with exact zeros
/// and ties (small integers), with entries at the 1e-16 threshold, and
/// rank-deficient ones.
std::vector<double> RandomMatrix(std::mt19937_64& rng, std::size_t n, int kind) {
  std::uniform_real_distribution<double> real(-1.0, 1.0);
  std::uniform_int_distribution<int> small(-2, 2);
  const double thresholds[] = {0.0, 1e-17, 1e-16, 2e-16, -1e-16};
  std::vector<double> a(n * n);
  for (double& v : a)
    v = kind == 0 ? real(rng) : kind == 1 ? small(rng) : thresholds[rng() % 5] * (rng() % 3);
  if (kind == 3 && n > 1) // column 1 = 2 * column 0
    for (std::size_t r = 0; r < n; ++r)
      a[n + r] = 2 * a[r];
  return a;
}

} // namespace

TEST(ZEL_AlgebraGauss, BitIdenticalToTheTranscription) {
  std::mt19937_64 rng(5);
  std::uniform_real_distribution<double> real(-10.0, 10.0);
  int solved = 0, refused = 0;
  for (int round = 0; round < 400; ++round) {
    const std::size_t n = 1 + rng() % (round < 300 ? 12 : 90);
    const int kind = round % 4;
    SCOPED_TRACE(testing::Message() << "round " << round << " n " << n << " kind " << kind);
    std::vector<double> a = RandomMatrix(rng, n, kind), b(n);
    for (double& v : b)
      v = real(rng);
    TarnUtilFullMatrix m = FromColumnMajor(a, n);
    std::vector<double> x(n, -7.0), expected(n, -7.0);
    const bool ok = ZEL_Algebra::Gauss(m, b.data(), x.data());
    ASSERT_EQ(ok, Transcription(a, n, b, expected));
    EXPECT_TRUE(SameBits(x.data(), expected.data(), n));
    EXPECT_TRUE(SameBits(m.GetValues().data, a.data(), n * n));
    (ok ? solved : refused)++;
  }
  EXPECT_GT(solved, 150);
  EXPECT_GT(refused, 50);
}

TEST(ZEL_AlgebraGauss, AgreesWithDgesvOnWellConditionedSystems) {
  std::mt19937_64 rng(9);
  std::uniform_real_distribution<double> real(-1.0, 1.0);
  for (int round = 0; round < 60; ++round) {
    const int n = 1 + int(rng() % 80);
    SCOPED_TRACE(testing::Message() << "n " << n);
    std::vector<double> a(std::size_t(n) * n), b(n);
    for (double& v : a)
      v = real(rng);
    for (int i = 0; i < n; ++i)
      a[std::size_t(i) * n + i] += n; // diagonally dominant: condition number below 3
    for (double& v : b)
      v = real(rng);
    std::vector<double> lu = a, xl = b, x(n);
    std::vector<lapack_int> ipiv(n);
    ASSERT_EQ(LAPACKE_dgesv(LAPACK_COL_MAJOR, n, 1, lu.data(), n, ipiv.data(), xl.data(), n), 0);
    TarnUtilFullMatrix m = FromColumnMajor(a, n);
    ASSERT_TRUE(ZEL_Algebra::Gauss(m, b.data(), x.data()));
    for (int i = 0; i < n; ++i)
      EXPECT_NEAR(x[i], xl[i], 1e-14 * n) << i;
  }
}

TEST(ZEL_AlgebraGauss, PivotingThresholdsAndShapes) {
  double x[2] = {-1, -1};
  // [[0, 1], [1, 0]] (column-major {0, 1, 1, 0}) pivots on the second row.
  TarnUtilFullMatrix swap = FromColumnMajor({0, 1, 1, 0}, 2);
  const double b[2] = {2, 3};
  ASSERT_TRUE(ZEL_Algebra::Gauss(swap, b, x));
  EXPECT_EQ(x[0], 3.0);
  EXPECT_EQ(x[1], 2.0);
  // The stored array is used whatever the transposed flag says.
  TarnUtilFullMatrix upper = FromColumnMajor({1, 0, 1, 1}, 2); // [[1, 1], [0, 1]]
  upper.Transpose();
  ASSERT_TRUE(ZEL_Algebra::Gauss(upper, b, x));
  EXPECT_EQ(x[0], -1.0);
  EXPECT_EQ(x[1], 3.0);

  for (double pivot : {1e-16, 2e-16}) {
    TarnUtilFullMatrix tiny = FromColumnMajor({pivot, -pivot, 0, 1}, 2);
    EXPECT_EQ(ZEL_Algebra::Gauss(tiny, b, x), pivot > 1e-16) << pivot;
  }
  TarnUtilFullMatrix empty;
  x[0] = -1;
  EXPECT_TRUE(ZEL_Algebra::Gauss(empty, nullptr, x));
  EXPECT_EQ(x[0], -1.0);
  TarnUtilFullMatrix wide(2, 3);
  EXPECT_FALSE(ZEL_Algebra::Gauss(wide, b, x));
}

TEST(ZEL_AlgebraGauss, MatrixInterfaceFormCopiesAndChecksSizes) {
  TarnUtilFullMatrix a = FromColumnMajor({2, 1, 0, 3}, 2); // [[2, 0], [1, 3]]
  const TarnUtilFullMatrix before = a;
  std::vector<double> x(2);
  ASSERT_TRUE(ZEL_Algebra::Gauss(static_cast<const TarnUtilSparseMatrix&>(a), {4, 5}, x));
  EXPECT_EQ(x, (std::vector<double>{2, 1}));
  EXPECT_TRUE(SameBits(a.GetValues().data, before.GetValues().data, 4));
  // Through the interface the logical matrix is copied: [[2, 1], [0, 3]].
  a.Transpose();
  ASSERT_TRUE(ZEL_Algebra::Gauss(static_cast<const TarnUtilSparseMatrix&>(a), {5, 3}, x));
  EXPECT_EQ(x, (std::vector<double>{2, 1}));

  std::vector<double> untouched{9};
  EXPECT_TRUE(ZEL_Algebra::Gauss(TarnUtilFullMatrix(4, 0), {}, untouched));
  EXPECT_EQ(untouched, std::vector<double>{9});
  EXPECT_FALSE(ZEL_Algebra::Gauss(TarnUtilFullMatrix(3, 2), {1, 2, 3}, untouched));
  EXPECT_EQ(tarn_test::FailureMessage([&] { ZEL_Algebra::Gauss(a, {1}, x); }),
            "Gauss: the right-hand side holds 1 elements, 2 are needed.");
  EXPECT_EQ(tarn_test::FailureMessage([&] { ZEL_Algebra::Gauss(a, {1, 2}, untouched); }),
            "Gauss: the solution vector holds 1 elements, 2 are needed.");
}

TEST(ZEL_AlgebraGauss, Vector3dSolvesEachComponentLikeGauss) {
  std::mt19937_64 rng(13);
  std::uniform_real_distribution<double> real(-1.0, 1.0);
  for (int round = 0; round < 40; ++round) {
    const std::size_t n = 1 + rng() % 20;
    SCOPED_TRACE(n);
    std::vector<double> a = RandomMatrix(rng, n, round % 3);
    std::vector<TarnVector3d> B(n), X(n);
    for (auto& v : B)
      v = TarnVector3d(real(rng), real(rng), real(rng));
    const bool ok = ZEL_Algebra::Gauss_Vector3d(a, B, X);
    for (std::size_t c = 0; c < 3; ++c) {
      std::vector<double> bc(n), xc(n);
      for (std::size_t i = 0; i < n; ++i)
        bc[i] = B[i][c];
      TarnUtilFullMatrix m = FromColumnMajor(a, n); // A is read column by column
      ASSERT_EQ(ZEL_Algebra::Gauss(m, bc.data(), xc.data()), ok);
      for (std::size_t i = 0; ok && i < n; ++i)
        EXPECT_TRUE(SameBits(&X[i][c], &xc[i], 1)) << i << "," << c;
    }
  }
  std::vector<TarnVector3d> X(1), none;
  EXPECT_FALSE(ZEL_Algebra::Gauss_Vector3d({}, none, X));
  EXPECT_TRUE(ZEL_Algebra::Gauss_Vector3d({1}, none, X));
  EXPECT_EQ(tarn_test::FailureMessage([&] { ZEL_Algebra::Gauss_Vector3d({1, 2, 3}, {{}, {}}, X); }),
            "Gauss_Vector3d: the matrix holds 3 elements, 4 are needed.");
  EXPECT_EQ(tarn_test::FailureMessage([&] { ZEL_Algebra::Gauss_Vector3d({1, 0, 0, 1}, {{}, {}}, X); }),
            "Gauss_Vector3d: the solution holds 1 elements, 2 are needed.");
}
