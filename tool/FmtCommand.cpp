//===- tool/FmtCommand.cpp - tarnutil fmt --------------------------------===//
//
// Prints numbers in the library's formats: the shortest round-trip text
// (free format), a fixed number of decimals, scientific notation, or the
// most precise text that fits a field width. The numbers are read exactly.
//
//===----------------------------------------------------------------------===//
#include "Commands.h"

#include <TarnUtilities/text/FloatingPointFormatter.h>

#include <cstdio>
#include <string>
#include <vector>

namespace tarnutil {
namespace {

const char kHelp[] =
    "usage: tarnutil fmt [--fixed P | --sci P | --width N] NUMBER...\n"
    "\n"
    "Prints each NUMBER on a line of its own in one of the library's formats:\n"
    "  (default)    the shortest text that reads back as the same double:\n"
    "               0.1 => 0.1, 100000 => 1.0e+5, 0.0015 => 1.5e-3\n"
    "  --fixed P    rounded exactly to P decimals (0..340): 2.675 --fixed 2 => 2.67\n"
    "  --sci P      one digit, P decimals and an exponent: 12345 --sci 2 => 1.23e+4\n"
    "  --width N    the most precise text in N characters (1..512), right-aligned;\n"
    "               a value that cannot fit is N '*'\n"
    "A NUMBER is read as its nearest double (1e400 => Inf); NaN and Inf are\n"
    "accepted in any case. Put \"--\" before numbers that begin with \"-\" and a\n"
    "letter (-inf).\n";

// Field widths above this are refused: the formatter's buffer is sized per
// call, and no table of the suite has columns this wide.
constexpr long long kMaxWidth = 512;

int Run(Arguments& args) {
  std::string fixed;
  std::string sci;
  std::string width;
  const bool hasFixed = args.TakeOption("--fixed", fixed);
  const bool hasSci = args.TakeOption("--sci", sci);
  const bool hasWidth = args.TakeOption("--width", width);
  if (int(hasFixed) + int(hasSci) + int(hasWidth) > 1)
    throw UsageError("--fixed, --sci and --width exclude each other");
  const std::vector<std::string> numbers = args.Rest();
  if (numbers.empty())
    throw UsageError("fmt needs at least one NUMBER");

  int precision = 0;
  if (hasFixed || hasSci)
    precision = static_cast<int>(ParseCount(hasFixed ? fixed : sci, 0,
                                            FloatingPointFormatter::MAX_FIXED_PRECISION,
                                            hasFixed ? "--fixed" : "--sci"));
  const std::size_t fieldWidth =
      hasWidth ? static_cast<std::size_t>(ParseCount(width, 1, kMaxWidth, "--width")) : 0;

  // Every number is checked before anything is printed.
  std::vector<double> values;
  for (const std::string& text : numbers) {
    double value = 0.0;
    if (!ParseNumber(text, value))
      throw InputError("'" + text + "' is not a number");
    values.push_back(value);
  }

  const FloatingPointFormatter formatter;
  std::vector<char> buffer(FloatingPointFormatter::FIXED_FORMAT_BUFFER_SIZE + kMaxWidth + 8);
  for (const double value : values) {
    char* text = buffer.data();
    if (hasFixed)
      formatter.WriteFixedPrecFormat(text, value, precision, FloatingPointFormatter::EXP_LOWER, false);
    else if (hasSci)
      formatter.WriteScientificFormat(text, value, precision, FloatingPointFormatter::EXP_LOWER);
    else if (hasWidth)
      formatter.WriteLimitedLength(text, value, fieldWidth, FloatingPointFormatter::EXP_LOWER,
                                   FloatingPointFormatter::PAD_LEFT, ' ');
    else
      formatter.WriteFreeFormat(text, value);
    std::puts(text);
  }
  return kExitOk;
}

} // namespace

const Command kFmtCommand = {"fmt", "print numbers in the library's number formats", kHelp, Run};

} // namespace tarnutil
