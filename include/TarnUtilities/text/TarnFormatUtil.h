//===- TarnUtilities/text/TarnFormatUtil.h - Numbers from text -*- C++ -*-===//
//
// Text to number: tests whether a text is an integer or a decimal number,
// and converts decimal text to the nearest double exactly (every input is
// rounded correctly, to nearest with ties to even, whatever its length).
// Also two small number-to-text helpers: the shortest text of a float and a
// padded integer.
//
// Example:
//   const char* end;
//   TarnFormatUtil::str_to_double("2.5e-3 m", &end)  => 0.0025, end at " m"
//   TarnFormatUtil::is_double("1.5E+3")              => true
//   TarnFormatUtil::is_int("-42")                    => true
//
// Number syntax read here: an optional '+' or '-', decimal digits with at
// most one '.', at least one digit, then optionally 'e' or 'E', an optional
// sign and at least one digit. Blanks are never skipped; callers that allow
// them (TarnStringUtil::ToDouble) skip them first.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARNFORMATUTIL_H
#define TARNUTILITIES_TEXT_TARNFORMATUTIL_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <string>

class TARN_API TarnFormatUtil {
public:
  /// The text printed for a NaN value.
  static constexpr const char* NAN_STRING = "NaN";
  /// The text printed for an infinite value (with '-' before it when negative).
  static constexpr const char* INF_STRING = "Inf";

  /// What a text holds, as found by is_valid_double.
  enum NumericValueState {
    NVS_INVALID = 0,   ///< not a number: bad syntax, trailing characters, empty
    NVS_VALID = 1,     ///< a decimal number with a finite double value
    NVS_OVERFLOW = 2,  ///< a decimal number too large: it rounds to infinity
    NVS_UNDERFLOW = 3, ///< a decimal number other than zero that rounds to 0.0
    NVS_NAN = 4,       ///< the word "nan" in any case, with optional sign
    NVS_INFINITE = 5   ///< "inf" or "infinity" in any case, with optional sign
  };

  /// @name Classifying text
  /// Each function looks at the whole text (up to its NUL) or at exactly its
  /// first n characters; a null pointer is never a number.
  /// @{

  /// True when the text is an optional sign followed by decimal digits.
  /// Any number of digits is accepted.
  ///   "42", "-7", "+007" => true;  "", "+", "4 2", " 4", "1e3", "1.0" => false
  static bool is_int(const char* s);
  static bool is_int(const char* s, std::size_t n);

  /// True when the text is a decimal number of the syntax above, integers
  /// included, whatever its magnitude. The words "nan" and "inf" are not.
  ///   "1", "-0.5", ".5", "5.", "1e300", "1E-3", "1e999" => true
  ///   "", ".", "e5", "1e", "1e+", "1.2.3", "0x10", "inf", " 1" => false
  static bool is_double(const char* s);
  static bool is_double(const char* s, std::size_t n);

  /// Classifies the first n characters as a whole.
  ///   "1.5" => NVS_VALID;  "1e400" => NVS_OVERFLOW;  "1e-400" => NVS_UNDERFLOW
  ///   "0e-400" => NVS_VALID;  "-Inf" => NVS_INFINITE;  "NaN" => NVS_NAN
  ///   "1.5x", "" => NVS_INVALID
  static NumericValueState is_valid_double(const char* s, std::size_t n);
  /// @}

  /// Converts the number at the start of s to the nearest double (ties to
  /// even) and stores in *end (when end is not null) the position just after
  /// the last character used. Digits beyond what a double can hold are still
  /// taken into account, so the result is correctly rounded for every input.
  /// Magnitudes beyond the largest double give +-infinity, those below half
  /// the smallest subnormal give +-0.0. Besides the number syntax above it
  /// reads "inf", "infinity" and "nan" in any case, with an optional sign.
  /// When no number starts at s (or s is null) the result is 0.0 and *end = s.
  ///   "0.1"      => 0.1                    "-1e-400" => -0.0
  ///   "1e999999999999" => inf              "12abc"   => 12.0, end at "abc"
  ///   "1e+x"     => 1.0, end at "e+x"      " 1"      => 0.0, end at " 1"
  static double str_to_double(const char* s, const char** end);

  /// The shortest text that reads back as the same float, laid out like the
  /// free format of FloatingPointFormatter with its default switches.
  /// NaN gives NAN_STRING, infinities INF_STRING with their sign.
  ///   0.1f => "0.1";  1e10f => "1.0e+10";  -2.5f => "-2.5";  0.0f => "0.0"
  static std::string float_to_str(float value);

  /// The value in signed decimal, filled with `fill` to at least `width`
  /// characters; never cut. With fillLeft the fill goes before the number
  /// (right-aligned; a '0' fill goes after the sign), otherwise after it.
  ///   (42, ' ', 5, true) => "   42";  (-42, '0', 5, true) => "-0042"
  ///   (42, '*', 4, false) => "42**";  (12345, ' ', 2, true) => "12345"
  static std::string int_to_str(int value, char fill, int width, bool fillLeft);

  /// @name Lists of numbers
  /// The values in their order, separated by ", "; no values give "".
  /// @{

  /// Runs of three or more consecutive ascending values become "first-last".
  ///   {1, 2, 3, 4, 5, 7, 9, 10, 11, 12} => "1-5, 7, 9-12"
  ///   {7, 8, 3} => "7, 8, 3";  {-3, -2, -1} => "-3--1"
  static std::string int_list_to_str(const int* values, std::size_t count);
  /// Each value's shortest round-trip text (free format); NaN and
  /// infinities as NAN_STRING and INF_STRING.
  ///   {0.1, 2.0, 1e5, -inf} => "0.1, 2.0, 1.0e+5, -Inf"
  static std::string double_list_to_str(const double* values, std::size_t count);
  /// @}
};

#endif // TARNUTILITIES_TEXT_TARNFORMATUTIL_H
