//===- tests/support/FailureOf.h - Catching a ZEL_Failure in tests -*- C++ -*-===//
//
// Runs a piece of code that is meant to throw a ZEL_Failure and hands the
// failure back, so that a test can check its message, code and header in
// plain assertions: no failure at all gives an empty optional.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TESTS_SUPPORT_FAILUREOF_H
#define TARNUTILITIES_TESTS_SUPPORT_FAILUREOF_H

#include "TarnUtilities/logging/ZEL_Failure.h"

#include <optional>
#include <string>
#include <utility>

namespace tarn_test {

/// The ZEL_Failure that `run()` throws, or nothing if it returns normally.
template <typename Run> std::optional<ZEL_Failure> FailureOf(Run&& run) {
  try {
    std::forward<Run>(run)();
  } catch (const ZEL_Failure& failure) {
    return failure;
  }
  return std::nullopt;
}

/// The message of the ZEL_Failure that `run()` throws, or "<no failure>".
template <typename Run> std::string FailureMessage(Run&& run) {
  const std::optional<ZEL_Failure> failure = FailureOf(std::forward<Run>(run));
  return failure ? failure->GetMessage() : std::string("<no failure>");
}

} // namespace tarn_test

#endif
