//===- tool/Arguments.h - Command-line arguments of tarnutil ----*- C++ -*-===//
//
// The small argument reader every subcommand of tarnutil shares: the words
// after the subcommand's name, taken one at a time, with options recognised
// by their exact spelling ("--fixed 3" or "--fixed=3") and counts checked as
// they are read. A word that cannot be read is a UsageError (exit code 2);
// a file whose contents are wrong is an InputError (exit code 1).
//
// Example, for "tarnutil fmt --fixed 2 1.5 -3":
//   Arguments args({"--fixed", "2", "1.5", "-3"});
//   std::string value;
//   args.TakeOption("--fixed", value)     => true, value "2"
//   args.Rest()                           => {"1.5", "-3"}
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTIL_ARGUMENTS_H
#define TARNUTIL_ARGUMENTS_H

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tarnutil {

/// The exit codes of tarnutil.
enum ExitCode : int { kExitOk = 0, kExitBadInput = 1, kExitUsage = 2 };

/// A command line that cannot be understood: tarnutil exits with kExitUsage.
class UsageError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// Input that cannot be used (a file that cannot be read, a bad value in a
/// file): tarnutil exits with kExitBadInput.
class InputError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

class Arguments {
public:
  explicit Arguments(std::vector<std::string> words) : words_(std::move(words)) {}

  /// The words not taken yet, in order.
  const std::vector<std::string>& Words() const { return words_; }

  /// True when "--help" or "-h" is among the words.
  bool WantsHelp() const;

  /// Removes every "name VALUE" and "name=VALUE" and returns their values in
  /// order. A name without its value is a UsageError.
  std::vector<std::string> TakeAll(const std::string& name);

  /// Removes "name VALUE" (or "name=VALUE"): true and value set when it was
  /// there. Given twice, or without its value, it is a UsageError.
  bool TakeOption(const std::string& name, std::string& value);

  /// Removes the flag "name": true when it was there.
  bool TakeFlag(const std::string& name);

  /// The words left, "--" removed. A word that still looks like an option
  /// ("--x", or "-" and a letter) is a UsageError: it is unknown. A "-" and
  /// a digit or a point is a negative number and is kept.
  std::vector<std::string> Rest() const;

private:
  std::vector<std::string> words_;
};

/// The whole-number value of text in [low, high]; a UsageError naming
/// `what` otherwise.   ("3", 0, 9, "--fixed") => 3;  ("x", ...) => throws
long long ParseCount(const std::string& text, long long low, long long high, const std::string& what);

/// The exact double of a decimal number, "NaN" or "Inf" (any case, with a
/// sign); false for anything else, including trailing text.
///   "0.1" => 0.1;  "-inf" => -Inf;  "1e400" => Inf;  "1.5x", "" => false
bool ParseNumber(const std::string& text, double& value);

} // namespace tarnutil

#endif // TARNUTIL_ARGUMENTS_H
