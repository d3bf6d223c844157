//===- ZEL_PrecArith_test.cpp - Compensated dot product against GMP ---------===//
//
// Oracle: the exact rational dot product. Test vectors come from Ogita, Rump
// and Oishi's generator GenDot (section 6 of their paper), cancelling down to
// condition numbers up to 1e30; the error of dot2 must stay within
// eps |x.y| + gamma(n)^2 |x|.|y| (not so with FMA contraction, docs/algebra.md).
//===----------------------------------------------------------------------===//
#include "TarnUtilities/math/ZEL_PrecArith.h"

#include "math/MathTestSupport.h"

#include <gmpxx.h>

#include <stdexcept>

namespace {

mpq_class ExactDot(const std::vector<double>& x, const std::vector<double>& y, std::size_t n) {
  mpq_class sum = 0;
  for (std::size_t i = 0; i < n; ++i)
    sum += mpq_class(x[i]) * mpq_class(y[i]);
  return sum;
}

/// GenDot(n, cond): pairs whose dot product has a condition number
/// 2 |x|.|y| / |x.y| of about cond.
void GenDot(std::size_t n, double cond, std::mt19937_64& rng, std::vector<double>& x,
            std::vector<double>& y) {
  std::uniform_real_distribution<double> u(-1.0, 1.0), half(0, std::log2(cond) / 2);
  const std::size_t n2 = (n + 1) / 2;
  x.assign(n, 0.0);
  y.assign(n, 0.0);
  for (std::size_t i = 0; i < n2; ++i) {
    const int e = i == 0 ? int(std::lround(half.b())) + 1 : i == n2 - 1 ? 0 : int(std::lround(half(rng)));
    x[i] = std::ldexp(u(rng), e);
    y[i] = std::ldexp(u(rng), e);
  }
  // The second half cancels the sum down to values of decreasing exponent.
  mpq_class sum = ExactDot(x, y, n2);
  for (std::size_t i = n2; i < n; ++i) {
    const double steps = double(n - n2 - 1);
    const int e = steps == 0 ? 0 : int(std::lround(half.b() * double(n - 1 - i) / steps));
    x[i] = std::ldexp(u(rng), e);
    y[i] = mpq_class((mpq_class(std::ldexp(u(rng), e)) - sum) / mpq_class(x[i])).get_d();
    sum += mpq_class(x[i]) * mpq_class(y[i]);
  }
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
        const mpq_class bound = // rounded up generously by 1%
            (mpq_class(eps) * abs(exact) + mpq_class(gamma * gamma) * absolute) * mpq_class(101, 100);
        const double got = ZEL_PrecArith::dot2(x.data(), y.data(), n);
        EXPECT_LE(abs(mpq_class(got) - exact), bound) << got << " vs " << exact.get_d();
        EXPECT_EQ(ZEL_PrecArith::dot2([&](std::size_t i) { return x[i]; }, [&](std::size_t i) { return y[i]; }, n),
                  got);
        if (exact != 0)
          hardest = std::max(hardest, mpq_class(2 * absolute / abs(exact)).get_d());
      }
  EXPECT_GT(hardest, 1e28); // the generator did reach the ill-conditioned end
}

TEST(ZEL_PrecArith, CancellationAndEdgeCases) {
  const double x[] = {1e16, 1.0, -1e16}, ones[] = {1.0, 1.0, 1.0};
  EXPECT_EQ(ZEL_PrecArith::dot2(x, ones, 3), 1.0); // plain summation gives 0.0
  // a*a - fl(a*a) is exactly the rounding error of the product.
  const double a = 1.0 + std::ldexp(1.0, -30), u[] = {a, -(a * a)}, v[] = {a, 1.0};
  EXPECT_EQ(ZEL_PrecArith::dot2(u, v, 2), std::ldexp(1.0, -60));
  EXPECT_EQ(ZEL_PrecArith::dot2(nullptr, nullptr, 0), 0.0);
  auto never = [](std::size_t) -> double { throw std::logic_error("read with n = 0"); };
  EXPECT_EQ(ZEL_PrecArith::dot2(never, never, 0), 0.0);
  EXPECT_THROW(ZEL_PrecArith::dot2(never, nullptr, 0), std::bad_function_call);
}
