//===- ZEL_Algebra_test.cpp - Products, transposition and the 3x3 solve -----===//
// Oracles: TarnMatrix's products (the same sums in the same order) and
// LAPACK's dgesv; the trace lines are caught by a log listener.
//===----------------------------------------------------------------------===//
#include "TarnUtilities/logging/ZEL_Logging.h"
#include "TarnUtilities/math/ZEL_Algebra.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "math/MathTestSupport.h"

#include <lapacke.h>

namespace {

template <std::size_t R, std::size_t C> TarnMatrix<R, C> Random(std::mt19937_64& rng) {
  TarnMatrix<R, C> m; // magnitudes in [0.5, 2]: no zero, so no sign-of-zero differences
  for (std::size_t i = 0; i < R * C; ++i)
    m[i] = std::uniform_real_distribution<double>(0.5, 2.0)(rng) * (rng() % 2 ? 1 : -1);
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
    const auto v = Random<3, 3>(rng); // row j holds V[j]
    std::vector<double> c{99}, at;
    ZEL_Algebra::MatrixMultiplication(Flat(a), 2, Flat(b), c);
    EXPECT_EQ(c, Flat(a * b));
    ZEL_Algebra::GetMatrixTranspose(Flat(b), 3, at);
    EXPECT_EQ(at, Flat(b.Transpose()));
    const auto x = Random<3, 1>(rng);
    EXPECT_EQ(ZEL_Algebra::DotProduct(Flat(x), {x[0], x[1], x[2], 7.0}), x.Dot(x));
    // Outputs may be inputs.
    std::vector<TarnVector3d> V = {{v(0, 0), v(0, 1), v(0, 2)}, {v(1, 0), v(1, 1), v(1, 2)},
                                   {v(2, 0), v(2, 1), v(2, 2)}};
    const auto w = a * v;
    ZEL_Algebra::MatrixVectorMultiplication(Flat(a), V, V);
    ASSERT_EQ(V.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i)
      EXPECT_EQ(V[i], TarnVector3d(w(i, 0), w(i, 1), w(i, 2))) << i;
    c = Flat(a);
    ZEL_Algebra::MatrixMultiplication(c, 2, Flat(b), c);
    EXPECT_EQ(c, Flat(a * b));
    c = Flat(a);
    ZEL_Algebra::GetMatrixTranspose(c, 2, c);
    EXPECT_EQ(c, Flat(a.Transpose()));
  }
  EXPECT_EQ(ZEL_Algebra::DotProduct({}, {}), 0.0);
  std::vector<double> at; // 5 elements as 2 rows: the fifth is not read
  ZEL_Algebra::GetMatrixTranspose({1, 2, 3, 4, 5}, 2, at);
  EXPECT_EQ(at, (std::vector<double>{1, 3, 2, 4, 0}));
}

TEST(ZEL_Algebra, ArgumentsThatCannotDescribeAMatrixFail) {
  std::vector<double> out{5};
  std::vector<TarnVector3d> w(1);
  const std::pair<std::function<void()>, const char*> cases[] = {
      {[&] { ZEL_Algebra::DotProduct({1, 2}, {1}); },
       "DotProduct: the second vector has 1 elements, fewer than the 2 of the first."},
      {[&] { ZEL_Algebra::GetMatrixTranspose({1}, 0, out); }, "GetMatrixTranspose: the row count is 0."},
      {[&] { ZEL_Algebra::MatrixMultiplication({1}, 0, {1}, out); },
       "MatrixMultiplication: the row count is 0."},
      {[&] { ZEL_Algebra::MatrixMultiplication({1, 2}, 3, {1}, out); },
       "MatrixMultiplication: 2 elements cannot form 3 rows."},
      {[&] { ZEL_Algebra::MatrixVectorMultiplication({1}, {}, w); },
       "MatrixVectorMultiplication: the vector column is empty."},
  };
  for (const auto& [call, message] : cases) {
    const auto failure = tarn_test::FailureOf(call);
    ASSERT_TRUE(failure) << message;
    EXPECT_EQ(failure->GetMessage(), message);
    EXPECT_EQ(failure->GetHeader(), "[%T|%n|%P|TarnUtilities|ZEL_Algebra]");
  }
  EXPECT_TRUE(out == std::vector<double>{5} && w.size() == 1u);
}

TEST(ZEL_Algebra, SolveSystem3x3AgainstDgesv) {
  std::mt19937_64 rng(23);
  for (int round = 0; round < 300; ++round) {
    const TarnVector3d a[3] = {Random<3, 1>(rng), Random<3, 1>(rng), Random<3, 1>(rng)};
    TarnVector3d x, b = Random<3, 1>(rng), xl = b; // a[k] is column k: column-major as is
    TarnMatrix3x3d lu(a[0][0], a[0][1], a[0][2], a[1][0], a[1][1], a[1][2], a[2][0], a[2][1], a[2][2]);
    lapack_int ipiv[3];
    if (std::fabs(a[0].Dot(a[1].Cross(a[2]))) < 0.1 ||
        LAPACKE_dgesv(LAPACK_COL_MAJOR, 3, 1, lu.data(), 3, ipiv, xl.data(), 3) != 0)
      continue; // keep to well-conditioned systems
    ASSERT_TRUE(ZEL_Algebra::SolveSystem3x3(a, b, x, 1e-12));
    for (int k = 0; k < 3; ++k)
      EXPECT_NEAR(x[k], xl[k], 1e-12 * (1 + std::fabs(xl[k]))) << round;
  }
  const TarnVector3d identity[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  TarnVector3d x(7, 7, 7);
  EXPECT_FALSE(ZEL_Algebra::SolveSystem3x3(identity, {1, 2, 3}, x, 1.5));
  EXPECT_EQ(x, TarnVector3d(7, 7, 7));
  ASSERT_TRUE(ZEL_Algebra::SolveSystem3x3(identity, {1, 2, 3}, x, 1.0)); // tolerance = |det|
  EXPECT_EQ(x, TarnVector3d(1, 2, 3));
}

TEST(ZEL_Algebra, SolveSystem3x3TraceMessagesFireOnFiniteValues) {
  ZEL_LogConfig config;
  config.level = ZEL_Loglevels::TRACE;
  ZEL_Logging::Init("algebra", config, u".");
  ZEL_Logging::SetListener(&Collect);
  const double nan = std::nan(""), inf = HUGE_VAL;
  const TarnVector3d identity[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                     withNaN[3] = {{nan, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  const std::string right = "Right side contains NaN(s) values!", det = "determinant is NaN!";
  const struct {
    const TarnVector3d* a;
    TarnVector3d b;
    std::vector<std::string> lines;
  } cases[] = {
      {identity, {1, 2, 3}, {right, det}},     // finite right side: one line, not three
      {identity, {nan, inf, -inf}, {det}},     // no finite component: silent
      {identity, {nan, inf, 4}, {right, det}}, // the last component is finite
      {withNaN, {nan, nan, nan}, {}},          // NaN determinant: silent
  };
  for (const auto& c : cases) {
    g_lines.clear();
    TarnVector3d x;
    ZEL_Algebra::SolveSystem3x3(c.a, c.b, x, 0.0);
    ASSERT_EQ(g_lines.size(), c.lines.size()) << c.b[2];
    for (std::size_t i = 0; i < g_lines.size(); ++i) // "(TRACE   ) [time|name|pid|...]text\n"
      EXPECT_TRUE(g_lines[i].rfind("(TRACE   ) [", 0) == 0 &&
                  g_lines[i].find("|TarnUtilities|ZEL_Algebra]" + c.lines[i] + "\n") != std::string::npos)
          << g_lines[i];
  }
  ZEL_Logging::RemoveListener();
  ZEL_Logging::Release();
}
