//===- ZEL_PrecArith_test.cpp - Compensated dot product against GMP ---------===//
//
// Oracle: the exact rational dot product (GMP mpq_class). Test vectors come
// from Ogita, Rump and Oishi's generator GenDot (section 6 of their paper):
// half the pairs of random size, the other half chosen so that the sum
// cancels down to a prescribed condition number, up to 1e30. The error of
// dot2 must stay within eps |x.y| + gamma(n)^2 |x|.|y|.
//
// This bound fails when the file is built with fused multiply-add
// contraction (cmake -DTARN_DOT2_CONTRACT_DEMO=ON, see docs/algebra.md).
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/math/ZEL_PrecArith.h"

#include <gmpxx.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <random>
#include <vector>

namespace {

mpq_class ExactDot(const std::vector<double>& x, const std::vector<double>& y, std::size_t n) {
  mpq_class sum = 0;
  for (std::size_t i = 0; i < n; ++i)
    sum += mpq_class(x[i]) * mpq_class(y[i]);
  return sum;
}

/// GenDot(n, cond): vectors whose dot product has about that condition
/// number 2 |x|.|y| / |x.y|.
void GenDot(std::size_t n, double cond, std::mt19937_64& rng, std::vector<double>& x,
            std::vector<double>& y) {
  std::uniform_real_distribution<double> u(-1.0, 1.0);
  const double b = std::log2(cond);
  const std::size_t n2 = (n + 1) / 2;
  x.assign(n, 0.0);
  y.assign(n, 0.0);
  for (std::size_t i = 0; i < n2; ++i) {
    int e = int(std::lround(std::uniform_real_distribution<double>(0, b / 2)(rng)));
    if (i == 0)
      e = int(std::lround(b / 2)) + 1;
    if (i == n2 - 1)
      e = 0;
    x[i] = std::ldexp(u(rng), e);
    y[i] = std::ldexp(u(rng), e);
  }
  mpq_class sum = ExactDot(x, y, n2);
  for (std::size_t i = n2; i < n; ++i) {
    const std::size_t steps = n - n2;
    const int e = steps == 1 ? 0 : int(std::lround(b / 2 * double(n - 1 - i) / double(steps - 1)));
    x[i] = std::ldexp(u(rng), e);
    const mpq_class target = mpq_class(std::ldexp(u(rng), e)) - sum;
    y[i] = mpq_class(target / mpq_class(x[i])).get_d();
    sum += mpq_class(x[i]) * mpq_class(y[i]);
  }
  std::vector<std::size_t> order(n);
  std::iota(order.begin(), order.end(), 0);
  std::shuffle(order.begin(), order.end(), rng);
  std::vector<double> xs(n), ys(n);
  for (std::size_t i = 0; i < n; ++i) {
    xs[i] = x[order[i]];
    ys[i] = y[order[i]];
  }
  x.swap(xs);
  y.swap(ys);
}

} // namespace

TEST(ZEL_PrecArith, ErrorBoundHoldsOnIllConditionedDotProducts) {
  std::mt19937_64 rng(2024);
  const double eps = std::ldexp(1.0, -53);
  double hardest = 0;
  for (double cond = 1e4; cond <= 1e30; cond *= 1e2)
    for (std::size_t n : {3, 20, 100, 400})
      for (int trial = 0; trial < 4; ++trial) {
        SCOPED_TRACE(testing::Message() << "cond " << cond << " n " << n << " trial " << trial);
        std::vector<double> x, y;
        GenDot(n, cond, rng, x, y);
        const mpq_class exact = ExactDot(x, y, n);
        mpq_class absolute = 0;
        for (std::size_t i = 0; i < n; ++i)
          absolute += abs(mpq_class(x[i]) * mpq_class(y[i]));
        const double gamma = n * eps / (1 - n * eps);
        // The bound rounded up generously: a factor of 1.01 on top.
        const mpq_class bound = (mpq_class(eps) * abs(exact) + mpq_class(gamma * gamma) * absolute) *
                                mpq_class(101, 100);
        const double got = ZEL_PrecArith::dot2(x.data(), y.data(), n);
        EXPECT_LE(abs(mpq_class(got) - exact), bound) << got << " vs " << exact.get_d();
        const double viaFunctions = ZEL_PrecArith::dot2([&](std::size_t i) { return x[i]; },
                                                        [&](std::size_t i) { return y[i]; }, n);
        EXPECT_EQ(viaFunctions, got);
        if (exact != 0)
          hardest = std::max(hardest, mpq_class(2 * absolute / abs(exact)).get_d());
      }
  EXPECT_GT(hardest, 1e28); // the generator did reach the ill-conditioned end
}

TEST(ZEL_PrecArith, CancellationAndEdgeCases) {
  const double x[] = {1e16, 1.0, -1e16}, ones[] = {1.0, 1.0, 1.0};
  EXPECT_EQ(ZEL_PrecArith::dot2(x, ones, 3), 1.0);
  EXPECT_EQ(x[0] * ones[0] + x[1] * ones[1] + x[2] * ones[2], 0.0); // what plain summation gives
  // a*a - fl(a*a) is exactly the rounding error of the product.
  const double a = 1.0 + std::ldexp(1.0, -30);
  const double p = a * a;
  const double u[] = {a, -p}, v[] = {a, 1.0};
  EXPECT_EQ(ZEL_PrecArith::dot2(u, v, 2), std::ldexp(1.0, -60));

  EXPECT_EQ(ZEL_PrecArith::dot2(nullptr, nullptr, 0), 0.0);
  auto never = [](std::size_t) -> double { throw std::logic_error("read with n = 0"); };
  EXPECT_EQ(ZEL_PrecArith::dot2(never, never, 0), 0.0);
  EXPECT_THROW(ZEL_PrecArith::dot2(std::function<double(std::size_t)>(), never, 0),
               std::bad_function_call);
  EXPECT_THROW(ZEL_PrecArith::dot2(never, nullptr, 5), std::bad_function_call);
}
