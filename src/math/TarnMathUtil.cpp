//===- TarnMathUtil.cpp - Cheap scalar functions ----------------------------===//
#include "TarnUtilities/math/TarnMathUtil.h"

#include <cmath>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

std::uint64_t Bits(double x) {
  std::uint64_t b;
  std::memcpy(&b, &x, sizeof b);
  return b;
}

double FromBits(std::uint64_t b) {
  double x;
  std::memcpy(&x, &b, sizeof x);
  return x;
}

/// sin t and cos t at one breakpoint t = k/16 of the first quadrant.
struct Breakpoint {
  double sin;
  double cos;
};

/// Breakpoints k = 0..25, sin and cos correctly rounded (computed with
/// mpmath at 200 bits: float(mpmath.nstr(mpmath.sin(mpf(k)/16), 50))).
constexpr Breakpoint kBreakpoints[26] = {
    {0.0, 1.0},
    {0.0624593178423802, 0.9980475107000991},
    {0.12467473338522769, 0.992197667229329},
    {0.18640329676226988, 0.9824733131012553},
    {0.24740395925452294, 0.9689124217106447},
    {0.30743851458038085, 0.9515679480481722},
    {0.36627252908604757, 0.9305076219123143},
    {0.42367625720393803, 0.9058136834259364},
    {0.479425538604203, 0.8775825618903728},
    {0.5333026735360201, 0.8459244992310679},
    {0.5850972729404622, 0.8109631195052179},
    {0.6346070800152693, 0.7728349461524715},
    {0.6816387600233341, 0.7316888688738209},
    {0.7260086552607126, 0.6876855622205048},
    {0.7675435022360271, 0.6409968581633251},
    {0.806081108260693, 0.5918050750924775},
    {0.8414709848078965, 0.5403023058681398},
    {0.8735749351670711, 0.4866896677019633},
    {0.9022675940990952, 0.4311765167986662},
    {0.9274369173848677, 0.37397963082453317},
    {0.9489846193555862, 0.3153223623952687},
    {0.9668265566961802, 0.2554337668888117},
    {0.9808930570231557, 0.19454770798898718},
    {0.9911291909537616, 0.13290194445282522},
    {0.9974949866040544, 0.0707372016677029},
    {0.9999655856782489, 0.008296231623858378},
};

/// kd as a table index; NaN, infinities and values beyond 64 bits give a
/// value above 25, as does any negative kd.
inline std::uint64_t TableIndex(double kd) {
#if defined(__SSE2__)
  // cvttsd2si gives INT64_MIN for NaN and out-of-range values, where a C++
  // conversion would be undefined.
  return static_cast<std::uint64_t>(_mm_cvttsd_si64(_mm_set_sd(kd)));
#else
  return kd >= 0.0 && kd <= 25.0 ? static_cast<std::uint64_t>(kd) : 26;
#endif
}

/// sincos outside the tables.
[[gnu::noinline]] void LibrarySinCos(double x, double& s, double& c) {
  s = std::sin(x);
  c = std::cos(x);
}

} // namespace

namespace TarnMathUtil {

double acosh(double x) {
  // Upper word of x as a signed integer: 0x3ff00000 is 1.0, 0x41b00000 is
  // 2^28, beyond which x*x - 1 rounds to x*x and the log is taken apart.
  const std::int32_t high = static_cast<std::int32_t>(Bits(x) >> 32);
  if (high < 0x3ff00000)
    return (x - x) / (x - x);
  if (high < 0x41b00000)
    return std::log(x + std::sqrt(x * x - 1.0));
  return std::log(x) + 0.6931471805599453; // ln 2
}

double rsqrt64(double x) {
  // Halving the exponent bits and subtracting from a tuned constant gives
  // 1/sqrt(x) to a few bits; each Newton step doubles the correct bits.
  double y = FromBits(0x5fe6eb50c7b537a9ULL - (Bits(x) >> 1));
  y = y * (1.5 - (0.5 * x) * y * y);
  y = y * (1.5 - (0.5 * x) * y * y);
  return y;
}

void sincos(double x, double& s, double& c) {
  // k = ceil(16x), the first breakpoint k/16 at or above x, as a lower-bound
  // search of the table would find it (0 for -1/16 < x <= 0). Computed in
  // floating point, which keeps the integer conversions off the path to d:
  // 16x is exact; adding and subtracting 1.5 * 2^52 rounds it to the nearest
  // integer (for |16x| < 2^51 the sum lies in [2^52, 2^53), where the
  // doubles are the integers), and one compare makes that the ceiling.
  const double scaled = 16.0 * x;
  const double nearest = (scaled + 0x1.8p52) - 0x1.8p52;
  const double kd = nearest + (nearest < scaled ? 1.0 : 0.0);
  const std::uint64_t k = TableIndex(kd);
  if (k > 25) // x <= -1/16, x > 25/16 or NaN
    return LibrarySinCos(x, s, c);
  const double sk = kBreakpoints[k].sin;
  const double ck = kBreakpoints[k].cos;
  // d = x - k/16, computed as (16x - k)/16: scaling by 16 commutes with
  // rounding, so this is the same double. d <= 0, |d| < 1/16.
  const double d = (scaled - kd) * 0.0625;
  const double z = d * d;
  // u = sin d - d and v = cos d - 1, minimax polynomials on |d| <= 1/16.
  const double u = ((0.00833333332990032 - z * 0.0001984071815851) * z - 0.16666666666666602) * (z * d);
  const double v = ((0.04166666664033 - z * 0.0013888423656) * z - 0.4999999999999958) * z;
  // sin(t + d) = S cos d + C sin d, cos(t + d) = C cos d - S sin d, with
  // the small corrections added last.
  s = ck * u + sk * v + (ck * d + sk);
  c = ck * v - sk * u + (ck - sk * d);
}

} // namespace TarnMathUtil
