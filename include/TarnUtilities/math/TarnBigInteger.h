//===- TarnUtilities/math/TarnBigInteger.h - Unsigned big integers -*- C++ -*-===//
//
// TarnBigInteger is an unsigned arbitrary-precision integer made for exact
// conversions between binary floating point and decimal text: it multiplies
// by powers of two and five, divides by small and big values, prints itself in
// decimal and binary, and turns itself into a correctly rounded double.
//
// Digits are 32 bits wide, least significant first. Values below 2^512 live
// in an inline buffer; larger ones in a heap block whose capacity is a power
// of two. It deliberately offers no subtraction, no signs and no general
// addition: conversions never need them.
//
// Example:
//   TarnBigInteger v(3);
//   v.Pow5Mult(2);            // 75
//   v.Pow2Mult(4);            // 1200
//   v.ToDouble(-3, 0)         => 150.0
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_MATH_TARNBIGINTEGER_H
#define TARNUTILITIES_MATH_TARNBIGINTEGER_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

class TARN_API TarnBigInteger {
public:
  static constexpr uint64_t MIN_DIG_CAPACITY = 16;
  static constexpr unsigned NUM_DIGIT_BITS = 32;
  static constexpr uint64_t BI_BASE = 0x100000000ULL;
  static constexpr uint32_t BI_DIGIT_MASK = 0xFFFFFFFFU;
  static constexpr unsigned NUM_PRECOMPUTED_POW5_SQR = 12;
  /// Digits of the largest table record, 5^16384 (1189 digits), plus one.
  static constexpr unsigned POW5_SQR_DIGITS = 1190;

  /// One record of the table of 5^(8 * 2^k): msb index and digits.
  struct BiConstPow5Sqr {
    uint64_t msbIdx;
    uint32_t digits[POW5_SQR_DIGITS];
  };

  /// @name Construction
  /// @{
  TarnBigInteger();
  TarnBigInteger(uint64_t value); // NOLINT: implicit on purpose, like an integer
  /// Any other integer type, converted to uint64_t as the built-in conversion
  /// does. It makes a literal 0 mean zero, where it would otherwise be as good
  /// a null pointer for the text constructor: TarnBigInteger(0) => 0.
  template <typename Int, std::enable_if_t<std::is_integral_v<Int>, int> = 0>
  TarnBigInteger(Int value) // NOLINT: implicit on purpose, like an integer
      : TarnBigInteger(static_cast<uint64_t>(value)) {}
  /// Reads decimal digits: "12345678901234567890" => 12345678901234567890.
  /// Characters are not validated: each one adds (c - '0') modulo 2^32 as if
  /// it were a digit, so only digits should be passed. A null pointer or an
  /// empty text gives zero.
  explicit TarnBigInteger(const char* decimal);
  TarnBigInteger(const TarnBigInteger& other);
  TarnBigInteger(TarnBigInteger&& other) noexcept;
  TarnBigInteger& operator=(const TarnBigInteger& other);
  TarnBigInteger& operator=(TarnBigInteger&& other) noexcept;
  TarnBigInteger& operator=(uint64_t value);
  ~TarnBigInteger();
  /// @}

  /// The smallest power of two not below n, but at least 16: 5 => 16, 17 => 32.
  static uint64_t RoundCapacity(uint64_t n);
  /// Grows the digit buffer to hold at least n digits (value unchanged).
  void WarrantDigCapacity(uint64_t n);
  uint64_t GetCapacity() const { return m_Capacity; }
  uint64_t GetMsbIdx() const { return m_MsbIdx; }
  /// Digit i (0 = least significant); i must not exceed the capacity.
  uint32_t GetDigit(uint64_t i) const { return m_Digits[i]; }

  /// @name Arithmetic, in place
  /// @{
  /// value += a
  void Add(uint32_t a);
  /// value = value * m + a
  void MultAdd(uint32_t m, uint32_t a);
  /// value = value * other
  void Mult(const TarnBigInteger& other);
  /// value = value * 2^n
  void Pow2Mult(uint64_t n);
  /// value = value * 5^n, with a table of 5^(8 * 2^k) for few multiplications.
  void Pow5Mult(uint64_t n);
  /// value = value / d, returns value % d. Throws ZEL_Failure when d is 0.
  uint32_t Div(uint32_t d);
  /// value = value / 2, returns the bit shifted out.
  uint32_t Div2();
  /// value = value / divisor; *remainder (when not null) = value % divisor.
  /// Throws ZEL_Failure when the divisor is zero. remainder may not be this.
  void Div(const TarnBigInteger& divisor, TarnBigInteger* remainder);
  /// @}

  /// @name Queries and output
  /// @{
  bool IsZero() const { return m_MsbIdx == 0 && m_Digits[0] == 0; }
  void SetZero();
  /// Bit length: 0 => 0, 1 => 1, 2^32 => 33.
  uint64_t NumBits() const;
  /// The low 64 bits.
  uint64_t ToUint64() const;
  bool operator==(const TarnBigInteger& other) const;
  bool operator!=(const TarnBigInteger& other) const { return !(*this == other); }
  bool operator<(const TarnBigInteger& other) const;

  /// The double nearest to value * 2^e2. A positive sticky says that the
  /// exact quantity lies above the integer (digits were dropped before): a
  /// cut-off half then rounds up, and an integer that fits exactly is raised
  /// by one unit in the last place. Exact ties round to even. Results above
  /// the largest double are +infinity, below half the smallest subnormal +0,
  /// and zero gives +0. In the subnormal range the final shift rounds half up
  /// a second time; callers wanting one correct rounding there pass an integer
  /// of exactly the subnormal's significant bits.
  ///   TarnBigInteger(2^53 + 1).ToDouble(0, 0) => 2^53
  ///   TarnBigInteger(2^53 + 1).ToDouble(0, 1) => 2^53 + 2
  double ToDouble(int64_t e2, int sticky) const;
  /// Decimal digits without leading zeros; zero gives "0".
  void PrintAsDec(std::string& out) const;
  /// Binary digits without leading zeros; zero gives "0".
  void PrintAsBin(std::string& out) const;
  /// Writes the value to standard output as one record of a C table:
  ///   5^8 => "    {  0, { 0x0005F5E1 } }\n"
  void Dump() const;
  /// @}

private:
  TarnBigInteger(const TarnBigInteger& other, uint64_t minCapacity);
  TarnBigInteger(const uint32_t* digits, uint64_t msbIdx, uint64_t minCapacity);

  void AdjustMsbIdx();
  bool OnHeap() const { return m_Digits != m_Inline; }
  void ReleaseHeap();
  /// value = value * (digits[0..msbIdx]), using scratch when it is large
  /// enough (scratchSize digits), else a scratch block of its own.
  void Mult(const uint32_t* digits, uint64_t msbIdx, uint32_t* scratch, uint64_t scratchSize);
  void SetFromUint64(uint64_t value);

  static const BiConstPow5Sqr* Pow5SqrTable();

  uint32_t* m_Digits;
  uint64_t m_Capacity;
  uint64_t m_MsbIdx;
  uint32_t m_Inline[MIN_DIG_CAPACITY];
};

#endif // TARNUTILITIES_MATH_TARNBIGINTEGER_H
