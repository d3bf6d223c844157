//===- DecimalScanner.h - Lexical scan of a decimal number ------*- C++ -*-===//
//
// The front end of the decimal reader: one pass over the characters that
// finds where the number ends and collects what the conversion needs (the
// first 19 significant digits as an integer, the decimal exponent of the
// first significant digit, whether non-zero digits were left out) without
// converting anything. The conversion itself lives in DecimalToDouble.h.
//
// The scanner reads either up to a NUL (Unbounded) or at most a given count
// of characters (Bounded); both are instantiations of one template so the
// NUL-terminated path pays nothing for the bound check.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_TEXT_DECIMALSCANNER_H
#define TARNUTILITIES_SRC_TEXT_DECIMALSCANNER_H

#include <cstdint>

namespace TarnFormatDetail {

/// Significant digits that fit in a uint64_t whatever they are:
/// 10^19 - 1 < 2^64 - 1.
constexpr int kMaxWDigits = 19;

/// Exponents are accumulated up to this bound and then saturate. It is far
/// beyond every exponent that can change a result (|10^x| for x outside
/// [-400, 400] is 0 or infinity for any text that fits in memory), and small
/// enough that adding any possible digit count to it stays inside int64_t.
constexpr std::int64_t kExponentSaturation = 1000000000000000000 / 10; // 1e17

/// What the scanner found at the start of the text.
struct DecimalText {
  enum Kind { kNone, kNumber, kInfinity, kNaN };
  Kind kind = kNone;
  bool negative = false;
  /// Just after the last character that belongs to the number (the start of
  /// the text when kind is kNone).
  const char* end = nullptr;

  // The fields below are meaningful for kNumber only.

  /// The first min(digitCount, 19) significant digits as an integer.
  std::uint64_t w = 0;
  /// Number of significant digits: from the first non-zero digit to the last
  /// digit of the mantissa, trailing zeros included. 0 for a zero value.
  std::int64_t digitCount = 0;
  /// Decimal exponent of the first significant digit: the value lies in
  /// [10^leadExponent, 10^(leadExponent+1)).
  std::int64_t leadExponent = 0;
  /// True when a non-zero digit beyond the first 19 was left out of w.
  bool truncated = false;
  /// The first significant digit and the end of the mantissa (the exponent
  /// letter or the end). Between them lie digits and at most one '.'.
  const char* digitsBegin = nullptr;
  const char* digitsEnd = nullptr;

  /// Decimal exponent of the last digit held in w: value ~ w * 10^WExponent().
  std::int64_t WExponent() const {
    const std::int64_t held = digitCount < kMaxWDigits ? digitCount : kMaxWDigits;
    return leadExponent - (held - 1);
  }
};

/// Reads characters up to the terminating NUL.
struct Unbounded {
  char operator()(const char* p) const { return *p; }
};

/// Reads characters before `limit`; at `limit` it reports a NUL.
struct Bounded {
  const char* limit;
  char operator()(const char* p) const { return p < limit ? *p : '\0'; }
};

inline bool IsDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

inline char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }

/// Matches `word` (lower case) at p ignoring ASCII case; returns the number of
/// characters matched when the whole word is there, else 0.
template <class Peek> int MatchWord(const char* p, const char* word, Peek peek) {
  int i = 0;
  for (; word[i] != '\0'; ++i)
    if (LowerAscii(peek(p + i)) != word[i])
      return 0;
  return i;
}

/// Scans the number at s: [+-] digits [. digits] [(e|E) [+-] digits], with at
/// least one mantissa digit, or the words inf, infinity, nan (any case). An
/// exponent without digits is not part of the number.
template <class Peek> DecimalText ScanDecimal(const char* s, Peek peek) {
  DecimalText d;
  d.end = s;
  const char* p = s;
  char c = peek(p);
  if (c == '+' || c == '-') {
    d.negative = (c == '-');
    c = peek(++p);
  }

  if (c == 'i' || c == 'I' || c == 'n' || c == 'N') {
    if (int n = MatchWord(p, "inf", peek)) {
      d.kind = DecimalText::kInfinity;
      p += n;
      p += MatchWord(p, "inity", peek);
      d.end = p;
    } else if (int m = MatchWord(p, "nan", peek)) {
      d.kind = DecimalText::kNaN;
      d.end = p + m;
    }
    return d;
  }

  bool anyDigit = false;
  while (c == '0') { // leading zeros carry no information
    anyDigit = true;
    c = peek(++p);
  }
  d.digitsBegin = p;

  std::uint64_t w = 0;
  std::int64_t count = 0;
  bool truncated = false;
  // Reads a run of digits: the first kMaxWDigits into w, the rest only
  // counted (noting whether any of them is not zero).
  const auto readDigits = [&] {
    while (IsDigit(c) && count < kMaxWDigits) {
      w = w * 10 + static_cast<unsigned>(c - '0');
      ++count;
      c = peek(++p);
    }
    while (IsDigit(c)) {
      truncated |= (c != '0');
      ++count;
      c = peek(++p);
    }
  };
  const char* runStart = p;
  readDigits();
  const std::int64_t intDigits = p - runStart;
  std::int64_t zerosAfterPoint = 0;
  anyDigit |= intDigits > 0;

  if (c == '.') {
    c = peek(++p);
    const char* fracStart = p;
    if (count == 0) {
      while (c == '0')
        c = peek(++p);
      zerosAfterPoint = p - fracStart;
      d.digitsBegin = p;
    }
    readDigits();
    anyDigit |= p > fracStart;
  }
  if (!anyDigit)
    return d; // no digit at all: "", ".", "+.", "e5"

  d.kind = DecimalText::kNumber;
  d.digitsEnd = p;
  d.w = w;
  d.digitCount = count;
  d.truncated = truncated;
  d.leadExponent = intDigits > 0 ? intDigits - 1 : -(zerosAfterPoint + 1);

  if (c == 'e' || c == 'E') {
    const char* q = p + 1;
    char e = peek(q);
    bool negativeExponent = false;
    if (e == '+' || e == '-') {
      negativeExponent = (e == '-');
      e = peek(++q);
    }
    if (IsDigit(e)) {
      std::int64_t exponent = 0;
      do {
        if (exponent < kExponentSaturation)
          exponent = exponent * 10 + (e - '0');
        e = peek(++q);
      } while (IsDigit(e));
      d.leadExponent += negativeExponent ? -exponent : exponent;
      p = q;
    }
  }
  d.end = p;
  return d;
}

} // namespace TarnFormatDetail

#endif // TARNUTILITIES_SRC_TEXT_DECIMALSCANNER_H
