//===- ConfigTestSupport.h - Helpers of the configuration tests -*- C++ -*-===//
//
// Deep comparison of items (operator== compares children by identity, so
// the tests need their own structural equality), capture of load failures,
// and scratch files.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TESTS_TEXT_CONFIGTESTSUPPORT_H
#define TARNUTILITIES_TESTS_TEXT_CONFIGTESTSUPPORT_H

#include "support/FailureOf.h"

#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "TarnUtilities/text/ZEL_ConfigFile.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

namespace config_test {

/// Kinds, texts and values agree over the whole tree. Doubles compare by
/// bits, so that -0.0 and 0.0 differ and NaN equals itself.
inline ::testing::AssertionResult DeepEqual(const ZEL_ConfigFileItem& a,
                                            const ZEL_ConfigFileItem& b,
                                            const std::string& path = "") {
  auto fail = [&](const char* what) {
    return ::testing::AssertionFailure() << what << " differ at '" << path << "'";
  };
  if (a.IsList() != b.IsList() || a.IsInteger() != b.IsInteger() ||
      a.IsDouble() != b.IsDouble())
    return fail("kinds");
  if (a.GetText() != b.GetText())
    return fail("texts");
  if (a.IsInteger() && a.AsInteger() != b.AsInteger())
    return fail("integers");
  if (a.IsDouble() && std::memcmp(&a.AsDouble(), &b.AsDouble(), sizeof(double)) != 0)
    return fail("doubles");
  if (a.length() != b.length())
    return fail("lengths");
  if (a.IsList())
    for (unsigned i = 0; i < a.length(); ++i) {
      auto child = DeepEqual(a[i], b[i], path + "[" + std::to_string(i) + "]");
      if (!child)
        return child;
    }
  return ::testing::AssertionSuccess();
}

inline ::testing::AssertionResult DeepEqual(const ZEL_ConfigFile& a, const ZEL_ConfigFile& b) {
  if (a.GetKeys() != b.GetKeys())
    return ::testing::AssertionFailure() << "keys differ";
  for (const std::string& key : a.GetKeys()) {
    auto item = DeepEqual(a[key], b[key], key);
    if (!item)
      return item;
  }
  return ::testing::AssertionSuccess();
}

inline ZEL_ConfigFile Load(const std::string& text) {
  ZEL_ConfigFile config;
  config.LoadText(text.c_str(), "t.cfg");
  return config;
}

/// What `out << x` writes, for files and items.
template <typename T> std::string Printed(const T& x) {
  std::ostringstream out;
  out << x;
  return out.str();
}

/// `run` throws a ZEL_Failure with this message, code and log header.
template <typename Run>
void ExpectFailure(Run&& run, const std::string& message, const char* code, const char* header) {
  const auto failure = tarn_test::FailureOf(run);
  ASSERT_TRUE(failure) << "no failure";
  EXPECT_EQ(failure->GetMessage(), message);
  EXPECT_EQ(failure->GetCode().GetCode(), code);
  EXPECT_EQ(failure->GetHeader(), header);
}

/// What a failed load threw.
struct LoadError {
  bool thrown = false;
  std::string message;
  std::string code;
  std::string header;
};

/// Loads `text` under the name "t.cfg" into `config` and reports the failure.
inline LoadError LoadAndCatch(ZEL_ConfigFile& config, const std::string& text) {
  LoadError error;
  try {
    config.LoadText(text.c_str(), "t.cfg");
  } catch (const ZEL_Failure& failure) {
    error.thrown = true;
    error.message = failure.GetMessage();
    error.code = failure.GetCode().GetCode();
    error.header = failure.GetHeader();
  }
  return error;
}

inline LoadError LoadAndCatch(const std::string& text) {
  ZEL_ConfigFile config;
  return LoadAndCatch(config, text);
}

/// A file in the test scratch directory holding `contents`; removed again
/// when the object goes.
class ScratchFile {
public:
  ScratchFile(const std::string& name, const std::string& contents)
      : path_(::testing::TempDir() + name) {
    std::ofstream(path_, std::ios::binary) << contents;
  }
  ~ScratchFile() { std::remove(path_.c_str()); }
  const std::string& path() const { return path_; }
  std::u16string widePath() const { return TarnStringUtil::utf8_to_wide(path_); }

private:
  std::string path_;
};

} // namespace config_test

#endif // TARNUTILITIES_TESTS_TEXT_CONFIGTESTSUPPORT_H
