//===- TarnUtilities/math/ZEL_PrecArith.h - Compensated dot product -*- C++ -*-===//
//
// dot2 is the compensated dot product Dot2 of Ogita, Rump and Oishi
// ("Accurate sum and dot product", SIAM J. Sci. Comput. 26(6), 2005): the
// result is as accurate as if the sum were computed in twice the working
// precision and then rounded to double,
//
//   |dot2(x, y) - x.y| <= eps |x.y| + gamma(n)^2 |x|.|y|,
//   eps = 2^-53, gamma(n) = n eps / (1 - n eps),
//
// so (1e16, 1, -1e16).(1, 1, 1) gives 1.0 where a plain loop gives 0.0.
//
// The error terms exist only in strict IEEE double arithmetic: the
// implementation is compiled without fused multiply-add contraction and
// without fast-math, whatever the flags of the rest of the build.
//
// n = 0 gives 0.0 without reading x or y.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_MATH_ZEL_PRECARITH_H
#define TARNUTILITIES_MATH_ZEL_PRECARITH_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <functional>

namespace ZEL_PrecArith {

/// Sum of x[i]*y[i] for i < n, compensated (see above).
TARN_API double dot2(const double* x, const double* y, std::size_t n);

/// The same with the i-th elements delivered by x(i) and y(i), called in
/// increasing i. An empty function object throws std::bad_function_call
/// (also for n = 0).
TARN_API double dot2(std::function<double(std::size_t)> x, std::function<double(std::size_t)> y,
                     std::size_t n);

} // namespace ZEL_PrecArith

#endif // TARNUTILITIES_MATH_ZEL_PRECARITH_H
