//===- ZEL_Algebra_Gauss_test.cpp - Gaussian elimination --------------------===//
// Oracles: LAPACK's dgesv on well-conditioned systems, and a literal
// transcription of the elimination that the library must match bit for bit,
// in the solution and in what is left of the matrix.
//===----------------------------------------------------------------------===//
#include "TarnUtilities/math/TarnUtilFullMatrix.h"
#include "TarnUtilities/math/ZEL_Algebra.h"
#include "math/MathTestSupport.h"

#include <lapacke.h>

#include <numeric>

using math_test::SameBits;

namespace {

/// The elimination on a column-major n x n array: rows through the
/// permutation; for each pivot k, for each row i, for each column j.
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
    x[r] = (bw[p[r]] - s) / at(p[r], r);
  }
  return true;
}

TarnUtilFullMatrix FromColumnMajor(const std::vector<double>& a, std::size_t n) {
  TarnUtilFullMatrix m(n, n);
  std::copy(a.begin(), a.end(), m.GetValues().data);
  return m;
}

/// Random column-major matrices of several kinds: dense, with exact zeros
/// and ties (small integers), with entries at the 1e-16 threshold,
/// rank-deficient ones, and diagonally dominant ones (condition below 3).
std::vector<double> RandomMatrix(std::mt19937_64& rng, std::size_t n, int kind) {
  std::uniform_real_distribution<double> real(-1.0, 1.0);
  std::uniform_int_distribution<int> small(-2, 2);
  const double thresholds[] = {0.0, 1e-17, 1e-16, 2e-16, -1e-16};
  std::vector<double> a(n * n);
  for (double& v : a)
    v = kind == 1 ? small(rng) : kind == 2 ? thresholds[rng() % 5] * (rng() % 3) : real(rng);
  for (std::size_t r = 0; r < n; ++r)
    if (kind == 3 && n > 1) // column 1 = 2 * column 0
      a[n + r] = 2 * a[r];
    else if (kind == 4)
      a[r * n + r] += double(n);
  return a;
}

} // namespace

TEST(ZEL_AlgebraGauss, BitIdenticalToTheTranscriptionAndCloseToDgesv) {
  std::mt19937_64 rng(5);
  int solved = 0, refused = 0;
  for (int round = 0; round < 500; ++round) {
    const std::size_t n = 1 + rng() % (round < 350 ? 12 : 90);
    SCOPED_TRACE(testing::Message() << "round " << round << " n " << n);
    std::vector<double> a = RandomMatrix(rng, n, round % 5), b = RandomMatrix(rng, n, 0);
    b.resize(n);
    TarnUtilFullMatrix m = FromColumnMajor(a, n);
    std::vector<double> x(n, -7.0), expected(n, -7.0), lu = a, xl = b;
    const bool ok = ZEL_Algebra::Gauss(m, b.data(), x.data());
    ASSERT_EQ(ok, Transcription(a, n, b, expected));
    EXPECT_TRUE(SameBits(x.data(), expected.data(), n));
    EXPECT_TRUE(SameBits(m.GetValues().data, a.data(), n * n));
    (ok ? solved : refused)++;
    if (round % 5 != 4)
      continue;
    std::vector<lapack_int> ipiv(n);
    ASSERT_EQ(LAPACKE_dgesv(LAPACK_COL_MAJOR, n, 1, lu.data(), n, ipiv.data(), xl.data(), n), 0);
    for (std::size_t i = 0; i < n; ++i)
      EXPECT_NEAR(x[i], xl[i], 1e-14 * n) << i;
  }
  EXPECT_GT(solved, 200);
  EXPECT_GT(refused, 50);
}

TEST(ZEL_AlgebraGauss, ThresholdShapesAndTheMatrixInterface) {
  using V = std::vector<double>;
  V x{-1, -1};
  TarnUtilFullMatrix empty, wide(2, 3), tiny = FromColumnMajor({1e-16, -1e-16, 0, 1}, 2);
  EXPECT_FALSE(ZEL_Algebra::Gauss(tiny, V{2, 3}.data(), x.data())); // largest magnitude 1e-16
  EXPECT_TRUE(ZEL_Algebra::Gauss(empty, nullptr, nullptr));
  EXPECT_FALSE(ZEL_Algebra::Gauss(wide, x.data(), x.data()));
  TarnUtilFullMatrix upper = FromColumnMajor({1, 0, 1, 1}, 2);
  upper.Transpose(); // ignored: the stored [[1, 1], [0, 1]] is solved
  EXPECT_TRUE(ZEL_Algebra::Gauss(upper, V{2, 3}.data(), x.data()));
  EXPECT_EQ(x, (V{-1, 3}));

  // Through the interface the logical matrix is copied and A is kept.
  TarnUtilFullMatrix a = FromColumnMajor({2, 1, 0, 3}, 2); // [[2, 0], [1, 3]]
  const TarnUtilSparseMatrix& view = a;
  ASSERT_TRUE(ZEL_Algebra::Gauss(view, {4, 5}, x));
  EXPECT_EQ(x, (V{2, 1}));
  a.Transpose(); // [[2, 1], [0, 3]]
  ASSERT_TRUE(ZEL_Algebra::Gauss(view, {5, 3}, x));
  EXPECT_EQ(x, (V{2, 1}));
  EXPECT_EQ(a(0, 1), 1.0);
  V untouched{9};
  EXPECT_TRUE(ZEL_Algebra::Gauss(TarnUtilFullMatrix(4, 0), {}, untouched));
  EXPECT_FALSE(ZEL_Algebra::Gauss(TarnUtilFullMatrix(3, 2), {1, 2, 3}, untouched));
  EXPECT_EQ(untouched, V{9});
  EXPECT_EQ(tarn_test::FailureMessage([&] { ZEL_Algebra::Gauss(view, {1}, x); }),
            "Gauss: the right-hand side holds 1 elements, 2 are needed.");
  EXPECT_EQ(tarn_test::FailureMessage([&] { ZEL_Algebra::Gauss(view, {1, 2}, untouched); }),
            "Gauss: the solution vector holds 1 elements, 2 are needed.");
}

TEST(ZEL_AlgebraGauss, Vector3dSolvesEachComponentLikeGauss) {
  std::mt19937_64 rng(13);
  for (int round = 0; round < 40; ++round) {
    const std::size_t n = 1 + rng() % 20;
    const std::vector<double> a = RandomMatrix(rng, n, round % 3), r = RandomMatrix(rng, 2 * n, 0);
    std::vector<TarnVector3d> B(n), X(n);
    for (std::size_t i = 0; i < n; ++i)
      B[i] = TarnVector3d(r[3 * i], r[3 * i + 1], r[3 * i + 2]);
    const bool ok = ZEL_Algebra::Gauss_Vector3d(a, B, X);
    for (std::size_t c = 0; c < 3; ++c) {
      std::vector<double> bc(n), xc(n);
      for (std::size_t i = 0; i < n; ++i)
        bc[i] = B[i][c];
      TarnUtilFullMatrix m = FromColumnMajor(a, n); // A is read column by column
      ASSERT_EQ(ZEL_Algebra::Gauss(m, bc.data(), xc.data()), ok);
      for (std::size_t i = 0; ok && i < n; ++i)
        EXPECT_TRUE(SameBits(&X[i][c], &xc[i], 1)) << n << ": " << i << "," << c;
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
