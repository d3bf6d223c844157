//===- ExactSum.cpp - Exact sums of scaled doubles --------------------------===//
//
// A double is m * 2^e with an integer significand m < 2^53 and e >= -1074.
// count * m fits into 117 bits, which are added into the limbs at bit
// position e + 1074 with carry (or subtracted with borrow) up to the top.
//
//===----------------------------------------------------------------------===//
#include "numerics/ExactSum.h"

#include <cassert>
#include <cmath>
#include <cstring>

namespace tarn_detail {

namespace {
// A 128-bit product of the 53-bit significand and the 64-bit count (GCC and
// Clang have the type; __extension__ keeps -Wpedantic quiet about it).
__extension__ typedef unsigned __int128 Wide;
} // namespace

void ExactSum::Add(double value, std::uint64_t count, bool subtract) {
  assert(std::isfinite(value) && "ExactSum holds finite values only");
  if (value == 0.0 || count == 0)
    return;
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  const bool negative = (bits >> 63) != subtract;
  const unsigned biased = static_cast<unsigned>(bits >> 52) & 0x7FFu;
  std::uint64_t significand = bits & ((std::uint64_t(1) << 52) - 1);
  // Subnormals (biased exponent 0) have no hidden bit and the exponent of
  // the smallest normal; the bit position counts from 2^-1074.
  unsigned position = 0;
  if (biased != 0) {
    significand |= std::uint64_t(1) << 52;
    position = biased - 1;
  }

  const Wide product = static_cast<Wide>(significand) * count;
  const auto low = static_cast<std::uint64_t>(product);
  const auto high = static_cast<std::uint64_t>(product >> 64); // below 2^53
  const unsigned limb = position / 64;
  const unsigned shift = position % 64;
  // The product shifted into three consecutive limbs.
  std::uint64_t words[3] = {low << shift, high << shift, 0};
  if (shift != 0) {
    words[1] |= low >> (64 - shift);
    words[2] = high >> (64 - shift);
  }

  std::uint64_t carry = 0;
  for (int i = 0; limb + i < kLimbs; ++i) {
    const std::uint64_t word = i < 3 ? words[i] : 0;
    if (i >= 3 && carry == 0)
      break;
    std::uint64_t& target = limbs_[limb + i];
    if (!negative) {
      const std::uint64_t sum = target + word;
      const std::uint64_t next = (sum < word) + (sum + carry < sum);
      target = sum + carry;
      carry = next;
    } else {
      const std::uint64_t diff = target - word;
      const std::uint64_t next = (target < word) + (diff < carry);
      target = diff - carry;
      carry = next;
    }
  }
}

int ExactSum::Sign() const {
  if (limbs_[kLimbs - 1] >> 63)
    return -1;
  for (const std::uint64_t limb : limbs_)
    if (limb != 0)
      return 1;
  return 0;
}

} // namespace tarn_detail
