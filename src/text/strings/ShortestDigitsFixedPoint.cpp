//===- text/ShortestDigitsFixedPoint.cpp - Free-format digits, exact path -===//
//
// The exact path of the shortest-digit generator, used where the one-product
// method of ShortestDigits.cpp does not decide (powers of two, and values
// within 2^-63 units of one of its decisions), and by the tests as its
// reference. It is the free-format digit generator of ShortestDigitsBignum.cpp
// run on 128-bit fixed-point approximations of its ratios instead of big
// numbers.
// With N = 124 fraction bits, R = r/s, M+ = m+/s and M- = m-/s are computed
// from a 128-bit table of powers of ten, each from below and with a known
// bound on its error. Every decision of the generator (the digit, the two
// termination tests, the final rounding) is taken only when it holds for
// every value inside those bounds; otherwise the big-number path decides.
// The digits are therefore exactly those of the big-number path; the bounds
// grow tenfold per digit and stay below 2^60 units of 2^-124, so the fallback
// is taken only for values within about 2^-64 of a decision boundary --
// exact ties among them.
//
// While the half-gaps times 10^c stay below one, the termination tests of c
// consecutive digits reduce to two tests on the remainder after the last of
// them and the trailing zeros or nines of those c digits (see ChunkStep), so
// most of a double's digits come from one 128-by-64-bit product; the last
// one or two are generated singly.
//
// Values whose digits end exactly (1.5, 12345.0) fall on a decision boundary
// here; they are read off their short decimal expansion, or decided exactly
// on 128-bit integers, before big numbers are needed.
//
//===----------------------------------------------------------------------===//
#include "ShortestDigitsInternal.h"

#include "TarnUtilities/math/TarnBigInteger.h"

#include <cstring>
#include <memory>

namespace tarn_detail {
namespace {

__extension__ typedef unsigned __int128 u128;

constexpr int kFracBits = 124;
constexpr u128 kOne = u128(1) << kFracBits;
constexpr u128 kFracMask = kOne - 1;

/// Decimal exponents the generator can meet: the smallest subnormal gives an
/// estimate of -323, the largest double 309 after the fixup.
constexpr int kMinK = -325;
constexpr int kMaxK = 311;

/// 10^-k = t * 2^-b with t in [2^127, 2^128), t rounded down.
struct ScaledPow10 {
  u128 t;
  int b;
};

/// The top 128 bits of a value of at least 128 bits.
u128 Top128(const TarnBigInteger& v) {
  const uint64_t low = v.NumBits() - 128;
  u128 out = 0;
  for (int i = 127; i >= 0; --i) {
    const uint64_t bit = low + uint64_t(i);
    out = (out << 1) | ((v.GetDigit(bit / 32) >> (bit % 32)) & 1);
  }
  return out;
}

/// Built once, exactly, with big integers.
const ScaledPow10* Pow10Table() {
  static const std::unique_ptr<ScaledPow10[]> table = [] {
    std::unique_ptr<ScaledPow10[]> t(new ScaledPow10[kMaxK - kMinK + 1]);
    for (int k = kMinK; k <= kMaxK; ++k) {
      ScaledPow10& e = t[k - kMinK];
      TarnBigInteger p(1);
      const uint64_t n = static_cast<uint64_t>(k < 0 ? -k : k);
      p.Pow5Mult(n);
      p.Pow2Mult(n);
      const int len = static_cast<int>(p.NumBits());
      if (k == 0) {
        e.t = u128(1) << 127;
        e.b = 127;
      } else if (k > 0) {
        // t = floor(2^(127 + len) / 10^k), in (2^127, 2^128).
        TarnBigInteger num(1);
        num.Pow2Mult(static_cast<uint64_t>(127 + len));
        num.Div(p, nullptr);
        e.t = Top128(num);
        e.b = 127 + len;
      } else {
        // t = floor(10^n * 2^(128 - len)).
        if (len < 128)
          p.Pow2Mult(static_cast<uint64_t>(128 - len));
        e.t = Top128(p);
        e.b = 128 - len;
      }
    }
    return t;
  }();
  return table.get();
}

/// Outcome of a test on approximate values: certainly true, certainly false,
/// or undecided within the error bounds.
enum class Certain { True, False, Unknown };

/// R + M+ against one (the high end of the interval reaching the next
/// power of ten, or the high termination test).
Certain HighTest(u128 r, u128 mp, u128 errSum, bool accept) {
  const u128 sum = r + mp;
  if (accept ? sum >= kOne : sum > kOne)
    return Certain::True;
  if (sum + errSum <= kOne)
    return Certain::False;
  return Certain::Unknown;
}

/// R against M- (the low termination test).
Certain LowTest(u128 r, u128 mm, u128 errR, u128 errM) {
  if (r + errR <= mm)
    return Certain::True;
  if (r >= mm + errM)
    return Certain::False;
  return Certain::Unknown;
}

/// Most digits a double needs; the error bounds above rely on it.
constexpr int kMaxDigits = 17;

/// Digits written by one step of the generator, and whether it terminated;
/// count -1 when the step could not be decided within the error bounds.
struct Step {
  int count;
  bool done;
};
constexpr Step kUndecided = {-1, false};

/// The integer part and fraction of r * m, for r < 2^124 and any 64-bit m.
inline void MulFraction(u128 r, uint64_t m, uint64_t& whole, u128& frac) {
  const u128 lo = u128(static_cast<uint64_t>(r)) * m;
  const u128 mid = u128(static_cast<uint64_t>(r >> 64)) * m + (lo >> 64);
  whole = static_cast<uint64_t>(mid >> (kFracBits - 64));
  frac = ((mid & ((u128(1) << (kFracBits - 64)) - 1)) << 64) | static_cast<uint64_t>(lo);
}

/// One digit: R, M+ and M- times ten, the digit certain, then the two
/// termination tests and, when both hold, the final rounding 2R < 1.
Step DigitStep(const BinaryValue& v, u128& r, u128& mp, u128& mm, uint64_t& eR, uint64_t& eM,
               char* out) {
  r *= 10;
  const int d = static_cast<int>(r >> kFracBits);
  r &= kFracMask;
  eR *= 10;
  if (r + eR > kOne)
    return kUndecided; // the digit itself is undecided
  mp *= 10;
  mm = v.lowerCloser ? mm * 10 : mp;
  eM *= 10;
  const Certain tc1 = LowTest(r, mm, eR, eM);
  const Certain tc2 = HighTest(r, mp, eR + eM, v.acceptBounds);
  if (tc1 == Certain::Unknown || tc2 == Certain::Unknown)
    return kUndecided;
  if (tc1 == Certain::False && tc2 == Certain::False) {
    *out = char('0' + d);
    return {1, false};
  }
  int last = d;
  if (tc1 == Certain::True && tc2 == Certain::True) {
    if (2 * (r + eR) <= kOne)
      last = d;
    else if (2 * r >= kOne)
      last = d + 1;
    else
      return kUndecided;
  } else if (tc2 == Certain::True) {
    last = d + 1;
  }
  *out = char('0' + last);
  return {1, true};
}

/// c >= 2 digits at once, when 10^c * M+ (bounds included) is below one.
///
/// Let D be the c-digit integer part of 10^c * R and R' its fraction. After
/// the j-th of these digits the remainder times 10^(c-j) is
/// (D mod 10^(c-j)) + R', and the half-gaps times 10^(c-j) are 10^c M- and
/// 10^c M+, both below one. So for j < c the low test holds exactly when D
/// ends in c-j zeros and R' < 10^c M- (the low test after the last digit),
/// and the high test exactly when D ends in c-j nines and
/// R' + 10^c M+ > 1 (the high test after the last digit). The generator
/// stops at the first such j; both tests cannot hold there before the
/// last digit (no number ends in both zeros and nines), so the final
/// rounding only arises after the last digit, as in DigitStep.
Step ChunkStep(const BinaryValue& v, int c, u128& r, u128& mp, u128& mm, uint64_t& eR,
               uint64_t& eM, char* out) {
  const uint64_t scale = kPow10U64[c];
  uint64_t digits;
  u128 rc;
  MulFraction(r, scale, digits, rc);
  const uint64_t eRc = eR * scale, eMc = eM * scale;
  if (rc + eRc > kOne)
    return kUndecided; // a digit is undecided
  const u128 mpc = mp * scale;
  const u128 mmc = v.lowerCloser ? mm * scale : mpc;
  const Certain low = LowTest(rc, mmc, eRc, eMc);
  const Certain high = HighTest(rc, mpc, eRc + eMc, v.acceptBounds);
  if (low == Certain::Unknown || high == Certain::Unknown)
    return kUndecided;
  if (low == Certain::False && high == Certain::False) {
    WriteDigits(out, digits, c);
    r = rc;
    mp = mpc;
    mm = mmc;
    eR = eRc;
    eM = eMc;
    return {c, false};
  }
  int j = c;
  if (low == Certain::True && digits % 10 == 0) {
    while (j > 1 && digits % 10 == 0) {
      digits /= 10;
      --j;
    }
  } else if (high == Certain::True && digits % 10 == 9) {
    while (j > 1 && digits % 10 == 9) {
      digits /= 10;
      --j;
    }
    ++digits;
  } else if (low == Certain::True && high == Certain::True) {
    // The final rounding: the upper digit unless 2R' < 1.
    if (2 * (rc + eRc) > kOne) {
      if (2 * rc < kOne)
        return kUndecided;
      ++digits;
    }
  } else if (high == Certain::True) {
    ++digits;
  }
  if (digits >= kPow10U64[j])
    return kUndecided; // a carry out of the last digit; the generator never makes one
  WriteDigits(out, digits, j);
  return {j, true};
}

/// Runs the generator on 128-bit values; false when a step is undecided.
bool ShortestDigits128(const BinaryValue& v, DecimalDigits& out) {
  const uint64_t V = v.f << 2; // v in units of 2^(e-2)
  int k = EstimateK(v);
  u128 r = 0, mp = 0, mm = 0, errR = 0;
  const u128 errM = 2;
  for (int attempt = 0;; ++attempt) {
    if (k < kMinK || k > kMaxK || attempt > 1)
      return false;
    const ScaledPow10& p = Pow10Table()[k - kMinK];
    // R * 2^N = V * t / 2^sh.
    const int sh = p.b + 2 - v.e - kFracBits;
    if (sh < 1 || sh > 127)
      return false;
    const u128 p0 = u128(V) * static_cast<uint64_t>(p.t);
    const u128 a = u128(V) * static_cast<uint64_t>(p.t >> 64) + (p0 >> 64);
    const uint64_t low = static_cast<uint64_t>(p0);
    r = sh >= 64 ? a >> (sh - 64) : (a << (64 - sh)) | (low >> sh);
    // Truncating t (error < 1) loses up to V / 2^sh, truncating the shift
    // up to 1 more.
    errR = (u128(V) >> sh) + 2;
    const u128 unit = p.t >> sh;     // 2^(e-2) / 10^k, i.e. a quarter gap
    mp = p.t >> (sh - 1);            // half-gap above: 2^(e-1)
    mm = v.lowerCloser ? unit : mp;  // half-gap below
    const Certain fix = HighTest(r, mp, errR + errM, v.acceptBounds);
    if (fix == Certain::Unknown)
      return false;
    if (fix == Certain::False)
      break;
    ++k;
  }

  // A double needs at most 17 digits, so the bounds stay below
  // 4 * 10^17 < 2^59 and fit one 64-bit word.
  if (errR > 4)
    return false;
  uint64_t eR = static_cast<uint64_t>(errR), eM = static_cast<uint64_t>(errM);
  int n = 0;
  for (;;) {
    // While 10^c * M+ stays below one, c digits are taken in one step (see
    // ChunkStep); the last digit or two, where it does not, one at a time.
    int c = FloorLog10Pow2(kFracBits - BitLength128(mp + eM));
    if (c > kMaxDigits - n)
      c = kMaxDigits - n;
    const Step step = c >= 2 ? ChunkStep(v, c, r, mp, mm, eR, eM, out.digits + n)
                             : DigitStep(v, r, mp, mm, eR, eM, out.digits + n);
    if (step.count < 0)
      return false;
    n += step.count;
    if (step.done)
      break;
    if (n >= kMaxDigits)
      return false;
  }
  out.count = n;
  out.exponent = k - 1;
  return true;
}

} // namespace

void ShortestDigitsExact(const BinaryValue& v, DecimalDigits& out) {
  if (MayBeShortDecimal(v) && ShortDecimalDigits(v, out))
    return;
  if (!ShortestDigits128(v, out) && !ShortestDigitsExact128(v, out))
    ShortestDigitsBignum(v, out);
}

} // namespace tarn_detail
