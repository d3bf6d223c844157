//===- DecimalBigPath.cpp - Exact decimal to binary with big integers ------===//
//
// The conversion that always answers: the decimal's digits as a big integer,
// scaled by powers of five and two and divided, so that a 64-bit quotient
// and the remainder decide the rounding exactly.
//
// A note about long inputs: only the first kMaxBigDigits significant digits
// enter the big integer. Every double and every midpoint between two
// adjacent doubles has at most 767 significant decimal digits, so none of
// them lies strictly between the decimal D cut after 800 digits and D cut
// plus one unit of its 800th digit. When a non-zero digit was cut, appending
// the digit 1 in place of the rest gives a number on the same side of every
// double and every midpoint, hence the same rounding; and the work stays
// bounded however many digits the text holds.
//
//===----------------------------------------------------------------------===//
#include "text/strings/DecimalToDouble.h"

#include "TarnUtilities/math/TarnBigInteger.h"

#include <cassert>

namespace TarnFormatDetail {
namespace {

constexpr std::int64_t kMaxBigDigits = 800;

// Decimal digits per MultAdd step: 10^9 < 2^32.
constexpr int kChunkDigits = 9;
constexpr std::uint32_t kChunkPow10[] = {1,      10,      100,      1000,      10000,
                                         100000, 1000000, 10000000, 100000000, 1000000000};

// Reads up to kMaxBigDigits significant digits of d into n and returns how
// many went in; a final digit 1 stands for any non-zero digits cut off.
std::int64_t ReadSignificantDigits(const DecimalText& d, TarnBigInteger& n) {
  std::int64_t used = 0;
  std::uint32_t chunk = 0;
  int chunkLength = 0;
  bool cutNonZero = false;
  for (const char* p = d.digitsBegin; p != d.digitsEnd; ++p) {
    if (*p == '.')
      continue;
    if (used == kMaxBigDigits) {
      if (*p != '0') {
        cutNonZero = true;
        break;
      }
      continue;
    }
    chunk = chunk * 10 + static_cast<std::uint32_t>(*p - '0');
    ++used;
    if (++chunkLength == kChunkDigits) {
      n.MultAdd(kChunkPow10[kChunkDigits], chunk);
      chunk = 0;
      chunkLength = 0;
    }
  }
  n.MultAdd(kChunkPow10[chunkLength], chunk);
  if (cutNonZero) {
    n.MultAdd(10, 1);
    ++used;
  }
  return used;
}

} // namespace

std::uint64_t BigDecimalToBits(const DecimalText& d) {
  TarnBigInteger a;
  const std::int64_t used = ReadSignificantDigits(d, a);
  // The value is a * 10^e = (a / b) * 2^e with b = 1 or b = 5^-e.
  const std::int64_t e = d.leadExponent - (used - 1);
  TarnBigInteger b(1);
  if (e >= 0)
    a.Pow5Mult(static_cast<std::uint64_t>(e));
  else
    b.Pow5Mult(static_cast<std::uint64_t>(-e));
  // Scale by 2^s so that the quotient has 63 or 64 bits: a / b lies in
  // (2^(bits(a)-bits(b)-1), 2^(bits(a)-bits(b)+1)).
  const std::int64_t s =
      63 - (static_cast<std::int64_t>(a.NumBits()) - static_cast<std::int64_t>(b.NumBits()));
  if (s > 0)
    a.Pow2Mult(static_cast<std::uint64_t>(s));
  else if (s < 0)
    b.Pow2Mult(static_cast<std::uint64_t>(-s));
  TarnBigInteger remainder;
  a.Div(b, &remainder);
  assert(a.NumBits() >= 63 && a.NumBits() <= 64 && "quotient must have 63 or 64 bits");
  return RoundToDoubleBits(a.ToUint64(), e - s, !remainder.IsZero());
}

} // namespace TarnFormatDetail
