//===- ZEL_PrecArith.cpp - Compensated dot product --------------------------===//
//
// Built with -ffp-contract=off and without fast-math (see CMakeLists.txt):
// a fused multiply-add in Split or TwoProduct, or a re-associated TwoSum,
// makes the error terms computed here wrong or zero.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/math/ZEL_PrecArith.h"

namespace {

/// Veltkamp's split: a = hi + lo, each half with at most 26 significant
/// bits, so that products of halves are exact. 134217729 = 2^27 + 1.
inline void Split(double a, double& hi, double& lo) {
  const double c = 134217729.0 * a;
  hi = c - (c - a);
  lo = a - hi;
}

/// Dekker's TwoProduct: p = fl(a*b) and the exact rounding error e, so that
/// p + e = a*b.
inline void TwoProduct(double a, double b, double& p, double& e) {
  p = a * b;
  double ah, al, bh, bl;
  Split(a, ah, al);
  Split(b, bh, bl);
  e = al * bl - (((p - ah * bh) - al * bh) - ah * bl);
}

/// Knuth's TwoSum: s = fl(a+b) and the exact rounding error e.
inline void TwoSum(double a, double b, double& s, double& e) {
  s = a + b;
  const double z = s - a;
  e = (a - (s - z)) + (b - z);
}

/// Dot2 over elements delivered by x(i), y(i); n >= 1.
template <typename Get> double Dot2(const Get& x, const Get& y, std::size_t n) {
  double p, s;
  TwoProduct(x(0), y(0), p, s);
  for (std::size_t i = 1; i < n; ++i) {
    double h, r, q;
    TwoProduct(x(i), y(i), h, r);
    TwoSum(p, h, p, q);
    s = s + (q + r);
  }
  return p + s;
}

/// Two doubles in one register (SSE2 on x86-64). The operations are the
/// same IEEE operations, element by element, as the scalar ones.
typedef double Pair __attribute__((vector_size(16)));

inline void SplitPair(Pair a, Pair& hi, Pair& lo) {
  const Pair c = 134217729.0 * a;
  hi = c - (c - a);
  lo = a - hi;
}

inline void TwoProductPair(Pair a, Pair b, Pair& p, Pair& e) {
  p = a * b;
  Pair ah, al, bh, bl;
  SplitPair(a, ah, al);
  SplitPair(b, bh, bl);
  e = al * bl - (((p - ah * bh) - al * bh) - ah * bl);
}

/// Dot2 on arrays; n >= 1. The products of two consecutive pairs are formed
/// together in one register; the running sum then takes them one by one in
/// index order, so the result is that of the scalar loop bit for bit.
double Dot2Arrays(const double* x, const double* y, std::size_t n) {
  double p, s;
  TwoProduct(x[0], y[0], p, s);
  std::size_t i = 1;
  for (; i + 2 <= n; i += 2) {
    Pair h, r;
    TwoProductPair(Pair{x[i], x[i + 1]}, Pair{y[i], y[i + 1]}, h, r);
    double q;
    TwoSum(p, h[0], p, q);
    s = s + (q + r[0]);
    TwoSum(p, h[1], p, q);
    s = s + (q + r[1]);
  }
  if (i < n) {
    double h, r, q;
    TwoProduct(x[i], y[i], h, r);
    TwoSum(p, h, p, q);
    s = s + (q + r);
  }
  return p + s;
}

} // namespace

namespace ZEL_PrecArith {

double dot2(const double* x, const double* y, std::size_t n) {
  if (n == 0)
    return 0.0;
  return Dot2Arrays(x, y, n);
}

double dot2(std::function<double(std::size_t)> x, std::function<double(std::size_t)> y,
            std::size_t n) {
  if (!x || !y)
    throw std::bad_function_call();
  if (n == 0)
    return 0.0;
  return Dot2(x, y, n);
}

} // namespace ZEL_PrecArith
