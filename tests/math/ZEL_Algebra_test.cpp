//===- ZEL_Algebra_test.cpp - Products, transposition and the 3x3 solve -----===//
//
// Oracles: TarnMatrix's own products (the same sums in the same order) and
// LAPACK's dgesv for the 3x3 solve; the trace lines are caught by a log
// listener.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/logging/ZEL_Logging.h"
#include "TarnUtilities/math/ZEL_Algebra.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "support/FailureOf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lapacke.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

template <std::size_t R, std::size_t C> TarnMatrix<R, C> Random(std::mt19937_64& rng) {
  std::uniform_real_distribution<double> d(0.5, 2.0);
  TarnMatrix<R, C> m;
  for (std::size_t i = 0; i < R * C; ++i)
    m[i] = rng() % 2 ? d(rng) : -d(rng);
  return m;
}

template <std::size_t R, std::size_t C> std::vector<double> Flat(const TarnMatrix<R, C>& m) {
  return std::vector<double>(m.data(), m.data() + R * C);
}

std::vector<std::string> g_lines;
void Collect(const char16_t* line) { g_lines.push_back(TarnStringUtil::wide_to_utf8(line)); }

} // namespace

TEST(ZEL_Algebra, ProductsAndTransposeMatchTarnMatrix) {
  std::mt19937_64 rng(17);
  for (int round = 0; round < 100; ++round) {
    const auto a = Random<2, 3>(rng);
    const auto b = Random<3, 4>(rng);
    std::vector<double> c{99}, at;
    ZEL_Algebra::MatrixMultiplication(Flat(a), 2, Flat(b), c);
    EXPECT_EQ(c, Flat(a * b));
    ZEL_Algebra::GetMatrixTranspose(Flat(b), 3, at);
    EXPECT_EQ(at, Flat(b.Transpose()));
    const auto x = Random<3, 1>(rng);
    EXPECT_EQ(ZEL_Algebra::DotProduct(Flat(x), {x[0], x[1], x[2], 7.0}), x.Dot(x));

    // W = A V, taken one component of the vectors at a time.
    const auto v = Random<3, 3>(rng); // row j holds V[j]
    std::vector<TarnVector3d> V = {{v(0, 0), v(0, 1), v(0, 2)},
                                   {v(1, 0), v(1, 1), v(1, 2)},
                                   {v(2, 0), v(2, 1), v(2, 2)}},
                              W;
    ZEL_Algebra::MatrixVectorMultiplication(Flat(a), V, W);
    ASSERT_EQ(W.size(), 2u);
    const auto expected = a * v;
    for (std::size_t i = 0; i < 2; ++i)
      EXPECT_EQ(W[i], TarnVector3d(expected(i, 0), expected(i, 1), expected(i, 2))) << i;
    // The output may be one of the inputs.
    std::vector<double> self = Flat(a);
    ZEL_Algebra::GetMatrixTranspose(self, 2, self);
    EXPECT_EQ(self, Flat(a.Transpose()));
    self = Flat(a);
    ZEL_Algebra::MatrixMultiplication(self, 2, Flat(b), self);
    EXPECT_EQ(self, Flat(a * b));
    const std::vector<TarnVector3d> original = V;
    ZEL_Algebra::MatrixVectorMultiplication({1, 0, 0, 0, 0, 1}, V, V);
    EXPECT_EQ(V, (std::vector<TarnVector3d>{original[0], original[2]}));
  }
  EXPECT_EQ(ZEL_Algebra::DotProduct({}, {}), 0.0);
  // A trailing element beyond rows * cols is not read: 5 elements, 2 rows.
  std::vector<double> at;
  ZEL_Algebra::GetMatrixTranspose({1, 2, 3, 4, 5}, 2, at);
  EXPECT_EQ(at, (std::vector<double>{1, 3, 2, 4, 0}));
}

TEST(ZEL_Algebra, ArgumentsThatCannotDescribeAMatrixFail) {
  std::vector<double> out{5};
  std::vector<TarnVector3d> w(1);
  const struct {
    std::function<void()> call;
    const char* message;
  } cases[] = {
      {[&] { ZEL_Algebra::DotProduct({1, 2}, {1}); },
       "DotProduct: the second vector has 1 elements, fewer than the 2 of the first."},
      {[&] { ZEL_Algebra::GetMatrixTranspose({1}, 0, out); },
       "GetMatrixTranspose: the row count is 0."},
      {[&] { ZEL_Algebra::MatrixMultiplication({1}, 0, {1}, out); },
       "MatrixMultiplication: the row count is 0."},
      {[&] { ZEL_Algebra::MatrixMultiplication({1, 2}, 3, {1}, out); },
       "MatrixMultiplication: 2 elements cannot form 3 rows."},
      {[&] { ZEL_Algebra::MatrixVectorMultiplication({1}, {}, w); },
       "MatrixVectorMultiplication: the vector column is empty."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    const auto failure = tarn_test::FailureOf(c.call);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->GetMessage(), c.message);
    EXPECT_EQ(failure->GetHeader(), "[%T|%n|%P|TarnUtilities|ZEL_Algebra]");
  }
  EXPECT_EQ(out, std::vector<double>{5});
  EXPECT_EQ(w.size(), 1u);
}

TEST(ZEL_Algebra, SolveSystem3x3AgainstDgesv) {
  std::mt19937_64 rng(23);
  for (int round = 0; round < 300; ++round) {
    const TarnVector3d a[3] = {Random<3, 1>(rng), Random<3, 1>(rng), Random<3, 1>(rng)};
    const TarnVector3d b = Random<3, 1>(rng);
    std::vector<double> lu = {a[0][0], a[0][1], a[0][2], a[1][0], a[1][1],
                              a[1][2], a[2][0], a[2][1], a[2][2]}; // column-major
    std::vector<double> xl = {b[0], b[1], b[2]};
    lapack_int ipiv[3];
    if (LAPACKE_dgesv(LAPACK_COL_MAJOR, 3, 1, lu.data(), 3, ipiv, xl.data(), 3) != 0)
      continue;
    const double det = a[0].Dot(a[1].Cross(a[2]));
    if (std::fabs(det) < 0.1)
      continue; // keep to well-conditioned systems
    TarnVector3d x;
    ASSERT_TRUE(ZEL_Algebra::SolveSystem3x3(a, b, x, 1e-12));
    for (int k = 0; k < 3; ++k)
      EXPECT_NEAR(x[k], xl[k], 1e-12 * (1 + std::fabs(xl[k]))) << round;
  }
  const TarnVector3d identity[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  TarnVector3d x(7, 7, 7);
  ASSERT_TRUE(ZEL_Algebra::SolveSystem3x3(identity, {1, 2, 3}, x, 0.5));
  EXPECT_EQ(x, TarnVector3d(1, 2, 3));
  x = TarnVector3d(7, 7, 7);
  EXPECT_FALSE(ZEL_Algebra::SolveSystem3x3(identity, {1, 2, 3}, x, 1.5));
  EXPECT_EQ(x, TarnVector3d(7, 7, 7));
}

TEST(ZEL_Algebra, SolveSystem3x3TraceMessagesFireOnFiniteValues) {
  ZEL_LogConfig config;
  config.level = ZEL_Loglevels::TRACE;
  ZEL_Logging::Init("algebra", config, u".");
  ZEL_Logging::SetListener(&Collect);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const TarnVector3d identity[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  const TarnVector3d withNaN[3] = {{nan, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  const std::string rightSide = "|TarnUtilities|ZEL_Algebra]Right side contains NaN(s) values!";
  const std::string determinant = "|TarnUtilities|ZEL_Algebra]determinant is NaN!";
  const struct {
    const TarnVector3d* a;
    TarnVector3d b;
    int rightSideLines, determinantLines;
  } cases[] = {
      {identity, {1, 2, 3}, 1, 1},       // finite right side: one line, not three
      {identity, {nan, inf, -inf}, 0, 1}, // no finite component: silent
      {identity, {nan, inf, 4}, 1, 1},    // the last component is finite
      {withNaN, {nan, nan, nan}, 0, 0},   // NaN determinant: silent
  };
  for (const auto& c : cases) {
    g_lines.clear();
    TarnVector3d x;
    ZEL_Algebra::SolveSystem3x3(c.a, c.b, x, 0.0);
    int right = 0, det = 0;
    for (const std::string& line : g_lines) {
      EXPECT_THAT(line, testing::StartsWith("(TRACE"));
      right += line.find(rightSide) != std::string::npos;
      det += line.find(determinant) != std::string::npos;
    }
    EXPECT_EQ(right, c.rightSideLines) << c.b[0] << " " << c.b[1] << " " << c.b[2];
    EXPECT_EQ(det, c.determinantLines);
    EXPECT_EQ(g_lines.size(), std::size_t(right + det));
  }
  ZEL_Logging::RemoveListener();
  ZEL_Logging::Release();
}
