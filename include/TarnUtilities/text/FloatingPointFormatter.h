//===- TarnUtilities/text/FloatingPointFormatter.h - Doubles to text -*- C++ -*-===//
//
// FloatingPointFormatter prints doubles exactly: free format writes the
// shortest digits that read back as the same double, fixed-precision format
// rounds the exact binary value to a number of decimals, and limited-length
// format writes the most precise text that fits into a field. Reading text
// back into numbers is left to TarnFormatUtil.
//
// Example:
//   FloatingPointFormatter fmt;
//   char buf[FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE];
//   *fmt.WriteFreeFormat(buf, 0.1) = '\0';            // "0.1"
//   fmt.WriteFreeFormat(buf, 100000.0);               // "1.0e+5"
//   fmt.WriteFixedPrecFormat(buf, 2.675, 2, FloatingPointFormatter::EXP_LOWER,
//                            false);                  // "2.67" (2.67499999...)
//   fmt.WriteLimitedLength(buf, 3.14159265, 6, FloatingPointFormatter::EXP_LOWER,
//                          FloatingPointFormatter::PAD_NONE, ' '); // "3.1416"
//
// Every Write function writes a terminating NUL after the text and returns
// the end of the text (the position of that NUL).
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_FLOATINGPOINTFORMATTER_H
#define TARNUTILITIES_TEXT_FLOATINGPOINTFORMATTER_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <cstdint>

class TARN_API FloatingPointFormatter {
public:
  /// The most significant digits a double ever needs to read back.
  static constexpr int DOUBLE_MAX_NUM_SIGNIFICAND = 17;
  /// Digits (of 64 bits) of the digit generator's big numbers.
  static constexpr int BIGSIZE = 24;
  /// Entries of the table of powers of five, 5^0 .. 5^324.
  static constexpr int MAX_FIVE = 325;
  /// Room that WriteFreeFormat may need, terminator included, whatever the
  /// switches: "-" + 309 digits + ".0" for the largest doubles.
  static constexpr size_t FREE_FORMAT_BUFFER_SIZE = 320;
  /// Precisions above this are treated as this many decimals.
  static constexpr int MAX_FIXED_PRECISION = 340;
  /// Room that WriteFixedPrecFormat and WriteScientificFormat may need.
  static constexpr size_t FIXED_FORMAT_BUFFER_SIZE = MAX_FIXED_PRECISION + 32;

  /// How an exponent is written.
  enum ExponentStyle {
    EXP_LOWER = 0,   ///< "e", sign, digits:             1.5e+3, 2.0e-12
    EXP_UPPER = 1,   ///< "E", sign, digits:             1.5E+3, 2.0E-12
    EXP_FORTRAN = 2, ///< "E", sign, at least 2 digits:  1.5E+03, 2.0E-12
  };

  /// Where a limited-length text is padded up to its field width.
  enum PaddingOption {
    PAD_NONE = 0,  ///< no padding: the text may be shorter than the field
    PAD_RIGHT = 1, ///< text first, pad characters after it (left-aligned)
    PAD_LEFT = 2,  ///< pad characters first, then the text (right-aligned)
  };

  FloatingPointFormatter();

  /// The largest decimal exponent still written positionally (default 4).
  void SetPosExpFmtSwitch(int value) { m_PosExpFmtSwitch = value; }
  int GetPosExpFmtSwitch() const { return m_PosExpFmtSwitch; }
  /// The largest count of zeros after the point still written positionally
  /// for values of two or more digits (default 2).
  void SetNegExpFmtSwitch(int value) { m_NegExpFmtSwitch = value; }
  int GetNegExpFmtSwitch() const { return m_NegExpFmtSwitch; }

  /// Shortest round-trip digits d1...dn of x = d1.d2...dn * 10^k, laid out
  /// positionally for small |k| and scientifically otherwise:
  ///   0.0 => "0.0"      -0.0 => "-0.0"     1.5 => "1.5"      5.0 => "5.0"
  ///   1234.5 => "1234.5"   12000.0 => "12000.0"   100000.0 => "1.0e+5"
  ///   0.015 => "0.015"     0.0015 => "1.5e-3"
  ///   0.0001 => "0.0001" (one digit: bounded by the positive switch)
  /// NaN and infinities are written as "NaN", "Inf" and "-Inf".
  /// buf needs FREE_FORMAT_BUFFER_SIZE characters; the text and its
  /// terminator may be shorter than the characters changed, which are never
  /// more than max(25, length + 1).
  char* WriteFreeFormat(char* buf, double x) const;

  /// x rounded exactly to `precision` decimals, ties to even (as printf's
  /// "%.*f"); with trimZeros, trailing zeros after the point are removed, and
  /// the point with them when nothing follows it. Magnitudes of 10^17 and
  /// above are written as WriteScientificFormat would, in `style`.
  ///   (2.5, 0) => "2"    (0.125, 2) => "0.12"    (1.5, 3) => "1.500"
  ///   (1.5, 3, trimZeros) => "1.5"    (2.0, 3, trimZeros) => "2"
  /// A negative precision counts as 0, one above MAX_FIXED_PRECISION as
  /// MAX_FIXED_PRECISION. buf needs FIXED_FORMAT_BUFFER_SIZE characters.
  char* WriteFixedPrecFormat(char* buf, double x, int precision, ExponentStyle style,
                             bool trimZeros) const;

  /// x rounded exactly to one digit before and `precision` digits after the
  /// point, with an exponent in `style` (ties to even, as printf's "%.*e"):
  ///   (12345.0, 2, EXP_LOWER) => "1.23e+4"   (0.0, 1, EXP_FORTRAN) => "0.0E+00"
  char* WriteScientificFormat(char* buf, double x, int precision, ExponentStyle style) const;

  /// The most precise text of x that fits into `length` characters, sign
  /// included, then padded to `length` with padChar as `padding` says.
  /// Positional notation is used when it shows all shortest digits, or at
  /// least as many significant digits as the exponent form; otherwise the
  /// exponent form with as many digits as fit, trying exponents of 2, 3 and
  /// 4 characters (sign and digits). Trailing zeros are trimmed; ".0" is
  /// kept when it fits. A value that cannot be shown fills the field with
  /// '*'. buf needs max(length, 8) + 1 characters.
  ///   (3.14159265, 6) => "3.1416"     (123456789.0, 6) => "1.2e+8"
  ///   (1.0, 8) => "1.0"               (-0.000012346, 9) => "-1.235e-5"
  ///   (1.5, 6, EXP_LOWER, PAD_LEFT, ' ') => "   1.5"
  char* WriteLimitedLength(char* buf, double x, size_t length, ExponentStyle style,
                           PaddingOption padding, char padChar) const;

private:
  /// Builds the digit generator's shared table of powers of five once.
  static void InitBignums();

  int32_t m_PosExpFmtSwitch;
  int32_t m_NegExpFmtSwitch;
};

#endif // TARNUTILITIES_TEXT_FLOATINGPOINTFORMATTER_H
