//===- text/FloatingPointFormatter.cpp - Doubles to text ------------------===//
//
// Layouts over two digit sources: the shortest round-trip digits of the
// free-format generator, and exact decimal rounding for fixed precision and
// limited length.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/FloatingPointFormatter.h"

#include "ExactDecimal.h"
#include "ShortestDecimal.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

using tarn_detail::DecimalDigits;

namespace {

/// Texts of the values without digits.
const char* const kNaNText = "NaN";
const char* const kInfText = "Inf";

char* Put(char* p, const char* text, size_t n) {
  std::memcpy(p, text, n);
  return p + n;
}

char* PutChars(char* p, char c, int n) {
  for (int i = 0; i < n; ++i)
    *p++ = c;
  return p;
}

/// Writes "NaN", "Inf" or "-Inf" for a non-finite x.
char* PutNonFinite(char* p, double x) {
  if (std::isnan(x))
    return Put(p, kNaNText, 3);
  if (std::signbit(x))
    *p++ = '-';
  return Put(p, kInfText, 3);
}

/// Shortest digits of a finite x; zero gives "0" with exponent 0.
void Shortest(double x, DecimalDigits& d) {
  if (x == 0) {
    d.digits[0] = '0';
    d.count = 1;
    d.exponent = 0;
    return;
  }
  tarn_detail::ShortestDigits(tarn_detail::DecomposeDouble(x), d);
}

/// The length of an exponent's text (sign and digits) in a style.
int ExponentWidth(int exp, FloatingPointFormatter::ExponentStyle style) {
  const int a = exp < 0 ? -exp : exp;
  int digits = a >= 100 ? 3 : a >= 10 ? 2 : 1;
  if (style == FloatingPointFormatter::EXP_FORTRAN && digits < 2)
    digits = 2;
  return 1 + digits;
}

/// Writes the marker, sign and digits of an exponent.
char* PutExponent(char* p, int exp, FloatingPointFormatter::ExponentStyle style) {
  *p++ = style == FloatingPointFormatter::EXP_LOWER ? 'e' : 'E';
  *p++ = exp < 0 ? '-' : '+';
  const int a = exp < 0 ? -exp : exp;
  const int width = ExponentWidth(exp, style) - 1;
  if (width == 3)
    *p++ = char('0' + a / 100);
  if (width >= 2)
    *p++ = char('0' + a / 10 % 10);
  *p++ = char('0' + a % 10);
  return p;
}

/// Writes n <= 24 characters of src with two fixed-size copies that may
/// overlap (no loop, no call to memcpy for a length known only at run time).
char* PutFew(char* p, const char* src, int n) {
  if (n >= 8) {
    if (n > 16)
      std::memcpy(p, src, 16);
    else
      std::memcpy(p, src, 8);
    std::memcpy(p + n - 8, src + n - 8, 8);
  } else if (n >= 4) {
    std::memcpy(p, src, 4);
    std::memcpy(p + n - 4, src + n - 4, 4);
  } else if (n >= 2) {
    std::memcpy(p, src, 2);
    std::memcpy(p + n - 2, src + n - 2, 2);
  } else if (n == 1) {
    *p = *src;
  }
  return p + n;
}

/// "d1.d2...dn" or "d1.0" for one digit.
char* PutMantissa(char* p, const char* digits, int n) {
  *p++ = digits[0];
  *p++ = '.';
  if (n == 1) {
    *p++ = '0';
    return p;
  }
  return PutFew(p, digits + 1, n - 1);
}

/// Places the decimal point into an integer of digits so that `decimals`
/// digits follow it; trims trailing zeros (and a bare point) when asked.
std::string PlacePoint(std::string digits, int decimals, bool trimZeros) {
  if (decimals > 0) {
    if (static_cast<int>(digits.size()) <= decimals)
      digits.insert(0, static_cast<size_t>(decimals + 1) - digits.size(), '0');
    digits.insert(digits.size() - static_cast<size_t>(decimals), 1, '.');
    if (trimZeros) {
      digits.erase(digits.find_last_not_of('0') + 1);
      if (digits.back() == '.')
        digits.pop_back();
    }
  }
  return digits;
}

} // namespace

FloatingPointFormatter::FloatingPointFormatter() : m_PosExpFmtSwitch(4), m_NegExpFmtSwitch(2) {
  InitBignums();
}

void FloatingPointFormatter::InitBignums() { tarn_detail::InitPow5Bignums(); }

//===----------------------------------------------------------------------===//
// Free format
//===----------------------------------------------------------------------===//

namespace {

/// The free layout of the digits d1..dn of d1.d2...dn * 10^k (see
/// WriteFreeFormat) after the sign.
char* PutFreeLayout(char* p, const char* dig, int n, int k, int posSwitch, int negSwitch) {
  if (k > 0 && k <= posSwitch) {
    // Rules for n >= 2 and n == 1 agree on the positive side.
    if (n <= k + 1) {
      p = PutFew(p, dig, n);
      p = PutChars(p, '0', k + 1 - n);
      return Put(p, ".0", 2);
    }
    // k + 1 < n <= 17 digits before the point, the rest after it.
    p = PutFew(p, dig, k + 1);
    *p++ = '.';
    return PutFew(p, dig + k + 1, n - k - 1);
  }
  if (k < 0 && n - k <= FloatingPointFormatter::DOUBLE_MAX_NUM_SIGNIFICAND &&
      -k <= (n >= 2 ? negSwitch : posSwitch)) {
    // A single digit is bounded by the positive switch on purpose.
    p = Put(p, "0.", 2);
    p = PutChars(p, '0', -k - 1);
    return PutFew(p, dig, n);
  }
  p = PutMantissa(p, dig, n);
  return k != 0 ? PutExponent(p, k, FloatingPointFormatter::EXP_LOWER) : p;
}

} // namespace

namespace {

/// The digits of the exponents 0 to 324 without leading zeros, each
/// followed by NUL bytes up to four characters: "5", "12", "308".
struct ExponentTexts {
  char text[325][4];
  constexpr ExponentTexts() : text() {
    for (int a = 0; a < 325; ++a) {
      int i = 0;
      if (a >= 100)
        text[a][i++] = static_cast<char>('0' + a / 100);
      if (a >= 10)
        text[a][i++] = static_cast<char>('0' + a / 10 % 10);
      text[a][i] = static_cast<char>('0' + a % 10);
    }
  }
};
constexpr ExponentTexts kExponentTexts;

/// Writes "e", the sign and the digits of a decimal exponent (|exp| <= 324)
/// and a terminator with three fixed-size stores; returns the end of the
/// text, before the terminator.
char* PutShortExponent(char* p, int exp) {
  const unsigned a = static_cast<unsigned>(exp < 0 ? -exp : exp);
  p[0] = 'e';
  p[1] = exp < 0 ? '-' : '+';
  std::memcpy(p + 2, kExponentTexts.text[a], 4);
  return p + 3 + (a >= 10) + (a >= 100);
}

void Store16(char* p, tarn_detail::UInt128 x) { std::memcpy(p, &x, 16); }

/// The free layout from digits in registers, with 16-character stores. It
/// writes nothing beyond p + 24 (p + k + 18 at most for positional text
/// with 1 <= k <= 6, p + 24 for the exponent form), so the caller checks
/// k against 6 and -6 first (the default switches are 4 and 2).
char* PutFreeLayoutFast(char* p, const tarn_detail::DigitRegisters& d, bool positional) {
  const int n = d.count, k = d.exponent;
  if (positional && k > 0) {
    p[0] = d.first;
    Store16(p + 1, d.rest); // with '0' characters beyond the digits
    if (n <= k + 1) {
      std::memcpy(p + k + 1, ".0", 2);
      return p + k + 3;
    }
    // The digits after the point move one place up.
    Store16(p + k + 2, d.rest >> (8 * k));
    p[k + 1] = '.';
    return p + n + 1;
  }
  if (positional) {
    std::memcpy(p, "0.000000", 8); // "0." and up to six zeros
    p[1 - k] = d.first;
    Store16(p + 2 - k, d.rest);
    return p + 1 - k + n;
  }
  p[0] = d.first;
  p[1] = '.';
  Store16(p + 2, d.rest);
  p = n == 1 ? p + 3 : p + n + 1; // "d.0": the '0' is already there
  return k != 0 ? PutShortExponent(p, k) : p;
}

} // namespace

char* FloatingPointFormatter::WriteFreeFormat(char* buf, double x) const {
  uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  char* p = buf;
  const uint64_t magnitude = bits & ~(uint64_t(1) << 63);
  const uint64_t infinity = uint64_t(0x7FF) << 52;
  if (magnitude >= infinity) {
    p = PutNonFinite(p, x);
    *p = '\0';
    return p;
  }
  if (bits != magnitude)
    *p++ = '-';
  tarn_detail::DecimalValue fast;
  tarn_detail::DigitRegisters regs;
  if (magnitude != 0 && tarn_detail::ShortestDecimalFast(tarn_detail::DecomposeDoubleBits(bits), fast) &&
      tarn_detail::DigitsInRegisters(fast.m, fast.exponent, regs)) {
    const int n = regs.count, k = regs.exponent;
    const bool aboveOne = k > 0 && k <= m_PosExpFmtSwitch;
    // A single digit is bounded by the positive switch on purpose.
    const bool belowOne = k < 0 && n - k <= DOUBLE_MAX_NUM_SIGNIFICAND &&
                          -k <= (n >= 2 ? m_NegExpFmtSwitch : m_PosExpFmtSwitch);
    if ((!aboveOne || k <= 6) && (!belowOne || k >= -6)) {
      p = PutFreeLayoutFast(p, regs, aboveOne || belowOne);
      *p = '\0';
      return p;
    }
  }
  // Everything else: the digits in a buffer (from either path), laid out
  // with copies of their exact lengths.
  char text[24];
  tarn_detail::DigitRun run;
  DecimalDigits d;
  if (magnitude != 0 && tarn_detail::ShortestDecimalFast(tarn_detail::DecomposeDoubleBits(bits), fast)) {
    run = tarn_detail::SignificantDigits(text, fast.m, fast.exponent);
  } else {
    Shortest(x, d);
    run = {d.digits, d.count, d.exponent};
  }
  p = PutFreeLayout(p, run.first, run.count, run.exponent, m_PosExpFmtSwitch, m_NegExpFmtSwitch);
  *p = '\0';
  return p;
}

//===----------------------------------------------------------------------===//
// Fixed precision and scientific
//===----------------------------------------------------------------------===//

char* FloatingPointFormatter::WriteScientificFormat(char* buf, double x, int precision,
                                                    ExponentStyle style) const {
  char* p = buf;
  if (!std::isfinite(x)) {
    p = PutNonFinite(p, x);
    *p = '\0';
    return p;
  }
  precision = std::clamp(precision, 0, MAX_FIXED_PRECISION);
  if (std::signbit(x))
    *p++ = '-';
  std::string digits;
  int exp = 0;
  if (x == 0) {
    digits.assign(static_cast<size_t>(precision) + 1, '0');
  } else {
    DecimalDigits d;
    Shortest(x, d);
    tarn_detail::RoundedSignificant(x, precision + 1, d.exponent, digits, exp);
  }
  *p++ = digits[0];
  if (precision > 0) {
    *p++ = '.';
    p = Put(p, digits.data() + 1, static_cast<size_t>(precision));
  }
  p = PutExponent(p, exp, style);
  *p = '\0';
  return p;
}

char* FloatingPointFormatter::WriteFixedPrecFormat(char* buf, double x, int precision,
                                                   ExponentStyle style, bool trimZeros) const {
  if (std::isfinite(x) && std::fabs(x) >= 1e17) {
    char* end = WriteScientificFormat(buf, x, precision, style);
    if (!trimZeros)
      return end;
    // Trim the mantissa's trailing zeros, keeping the exponent.
    char* e = std::find_if(buf, end, [](char c) { return c == 'e' || c == 'E'; });
    char* m = e;
    while (m > buf && m[-1] == '0')
      --m;
    if (m > buf && m[-1] == '.')
      --m;
    const size_t expLen = static_cast<size_t>(end - e);
    std::memmove(m, e, expLen);
    m[expLen] = '\0';
    return m + expLen;
  }
  char* p = buf;
  if (!std::isfinite(x)) {
    p = PutNonFinite(p, x);
    *p = '\0';
    return p;
  }
  precision = std::clamp(precision, 0, MAX_FIXED_PRECISION);
  if (std::signbit(x))
    *p++ = '-';
  const std::string text = PlacePoint(tarn_detail::RoundedDecimal(x, precision), precision, trimZeros);
  p = Put(p, text.data(), text.size());
  *p = '\0';
  return p;
}

//===----------------------------------------------------------------------===//
// Limited length
//===----------------------------------------------------------------------===//

namespace {

/// Number of significant digits in a digit string: "000120" => 3 ("120").
int SignificantDigits(const std::string& digits) {
  const size_t first = digits.find_first_not_of('0');
  return first == std::string::npos ? 0 : static_cast<int>(digits.size() - first);
}

/// Positional text of |x| within `room` characters; empty when impossible.
/// sig receives the significant digits it shows, exact when all shortest
/// digits are shown.
std::string FixedCandidate(double x, const DecimalDigits& d, int room, int& sig, bool& exact) {
  exact = false;
  sig = 0;
  const int n = d.count, k = d.exponent;
  const int intLen = k >= 0 ? k + 1 : 1;
  if (intLen > room)
    return std::string();
  std::string full;
  if (k >= 0) {
    full.assign(d.digits, static_cast<size_t>(std::min(n, k + 1)));
    full.append(static_cast<size_t>(std::max(0, k + 1 - n)), '0');
    if (n > k + 1) {
      full += '.';
      full.append(d.digits + k + 1, static_cast<size_t>(n - k - 1));
    }
  } else {
    full = "0.";
    full.append(static_cast<size_t>(-k - 1), '0');
    full.append(d.digits, static_cast<size_t>(n));
  }
  if (static_cast<int>(full.size()) <= room) {
    exact = true;
    sig = n;
    if (full.find('.') == std::string::npos && static_cast<int>(full.size()) + 2 <= room)
      full += ".0";
    return full;
  }
  // Round to the decimals that fit; a carry may lengthen the integer part.
  for (int decimals = std::max(0, room - intLen - 1); decimals >= 0; --decimals) {
    const std::string digits = tarn_detail::RoundedDecimal(x, decimals);
    std::string text = PlacePoint(digits, decimals, true);
    if (static_cast<int>(text.size()) > room)
      continue;
    sig = SignificantDigits(digits);
    if (text.find('.') == std::string::npos && static_cast<int>(text.size()) + 2 <= room)
      text += ".0";
    return text;
  }
  return std::string();
}

/// Exponent-form text of |x| within `room` characters; empty when impossible.
std::string ExponentCandidate(double x, const DecimalDigits& d, int room,
                              FloatingPointFormatter::ExponentStyle style, int& sig) {
  sig = 0;
  const int minWidth = style == FloatingPointFormatter::EXP_FORTRAN ? 3 : 2;
  for (int width = minWidth; width <= 4; ++width) {
    const int mantissaRoom = room - 1 - width;
    if (mantissaRoom < 1)
      return std::string();
    const int p = mantissaRoom >= 3 ? mantissaRoom - 1 : 1;
    std::string digits;
    int exp;
    if (d.count <= p) {
      digits.assign(d.digits, static_cast<size_t>(d.count));
      exp = d.exponent;
    } else {
      tarn_detail::RoundedSignificant(x, p, d.exponent, digits, exp);
    }
    if (ExponentWidth(exp, style) > width)
      continue; // the exponent needs a wider form
    sig = static_cast<int>(digits.size());
    digits.erase(std::max<size_t>(1, digits.find_last_not_of('0') + 1));
    std::string text(1, digits[0]);
    if (digits.size() > 1)
      text += '.' + digits.substr(1);
    else if (mantissaRoom >= 3)
      text += ".0";
    char e[8];
    char* end = PutExponent(e, exp, style);
    text.append(e, static_cast<size_t>(end - e));
    return text;
  }
  return std::string();
}

} // namespace

char* FloatingPointFormatter::WriteLimitedLength(char* buf, double x, size_t length,
                                                 ExponentStyle style, PaddingOption padding,
                                                 char padChar) const {
  const int len = static_cast<int>(std::min<size_t>(length, 1u << 20));
  std::string text;
  if (!std::isfinite(x)) {
    char tmp[8];
    text.assign(tmp, static_cast<size_t>(PutNonFinite(tmp, x) - tmp));
  } else {
    const bool neg = std::signbit(x);
    const int room = len - (neg ? 1 : 0);
    DecimalDigits d;
    Shortest(x, d);
    int fixedSig = 0, expSig = 0;
    bool exact = false;
    std::string fixed = room > 0 ? FixedCandidate(x, d, room, fixedSig, exact) : std::string();
    std::string expo;
    if (!exact && room > 0)
      expo = ExponentCandidate(x, d, room, style, expSig);
    const std::string& best = (!fixed.empty() && (exact || fixedSig >= expSig || expo.empty())) ? fixed : expo;
    if (!best.empty())
      text = (neg ? "-" : "") + best;
  }
  if (static_cast<int>(text.size()) > len || text.empty())
    text.assign(static_cast<size_t>(len), '*');
  const int pad = padding == PAD_NONE ? 0 : len - static_cast<int>(text.size());
  char* p = buf;
  if (padding == PAD_LEFT)
    p = PutChars(p, padChar, pad);
  p = Put(p, text.data(), text.size());
  if (padding == PAD_RIGHT)
    p = PutChars(p, padChar, pad);
  *p = '\0';
  return p;
}
