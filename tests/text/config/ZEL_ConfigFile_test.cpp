//===- ZEL_ConfigFile_test.cpp - Loading and looking up definitions ---------===//
#include "support/FailureOf.h"
#include "ConfigTestSupport.h"

#include "TarnUtilities/text/ZEL_ConfigFile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

using config_test::DeepEqual;
using config_test::LoadAndCatch;
using config_test::ScratchFile;

using config_test::Load;
using config_test::Printed;

namespace {
const char* const kHeader = "[%T|%n|%P|libzel_util|ZEL_ConfigFile] ";
} // namespace

TEST(ZEL_ConfigFile, IntegerLimitsAndNegativeZero) {
  const ZEL_ConfigFile config = Load("max = 2147483647\nmin = -2147483648\nnz = -0\n");
  EXPECT_EQ(config["min"].AsInteger(), -2147483647 - 1);
  EXPECT_EQ(config["min"].AsDouble(), -2147483648.0);
  EXPECT_EQ(config["nz"].AsInteger(), 0);
  EXPECT_TRUE(std::signbit(config["nz"].AsDouble()));
}

TEST(ZEL_ConfigFile, LineNumbersContinueAfterAContinuedString) {
  ZEL_ConfigFile config;
  const auto error = LoadAndCatch(config, "a = 'x\\\ny\\\nz'\nb = 1 2\n");
  EXPECT_EQ(config["a"].GetText(), "xyz");
  EXPECT_EQ(error.message, "expected newline after definition of b in line 4 of configuration "
                           "file t.cfg");
}

TEST(ZEL_ConfigFile, ManyKeysAllFound) {
  // Enough keys for several growths of the index.
  std::string text;
  for (int i = 0; i < 5000; ++i)
    text += "k" + std::to_string(i * 7919 % 5000) + " = " + std::to_string(i) + "\n";
  const ZEL_ConfigFile config = Load(text);
  ASSERT_EQ(config.size(), 5000u);
  for (int i = 0; i < 5000; ++i) {
    const std::string key = "k" + std::to_string(i * 7919 % 5000);
    ASSERT_TRUE(config.has_key(key)) << key;
    EXPECT_EQ(config[key].AsInteger(), i);
    EXPECT_EQ(config.GetKeys()[i], key);
  }
  EXPECT_FALSE(config.has_key("k5000"));
}

TEST(ZEL_ConfigFile, UndefinedKeyThrows) {
  const ZEL_ConfigFile config = Load("a = 1\n");
  config_test::ExpectFailure([&] { (void)config["nope"]; },
                             "tried to access undefined configuration key nope", "190715270407",
                             kHeader);
  ZEL_ConfigFile empty;
  EXPECT_THROW(empty["a"], ZEL_Failure);
}

TEST(ZEL_ConfigFile, LoadingAppendsAndRedefinitionSpansLoads) {
  ZEL_ConfigFile config = Load("a = 1\n");
  config.LoadText("b = 2\n", "second.cfg");
  EXPECT_EQ(config.GetKeys(), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(tarn_test::FailureMessage([&] { config.LoadText("c = 3\na = 4\n", "third.cfg"); }),
            "redefinition of variable a in line 2 of configuration file third.cfg");
  // No rollback: c, parsed before the error, stays; a keeps its first value.
  EXPECT_EQ(config.GetKeys(), (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(config["a"].AsInteger(), 1);
}

TEST(ZEL_ConfigFile, CopyIsDeepAndIndependent) {
  ZEL_ConfigFile original = Load("a = [1, [2, 'x']]\nb = 2.5\n");
  ZEL_ConfigFile copy(original);
  EXPECT_TRUE(DeepEqual(copy, original));
  copy["a"][1][0].AsInteger() = 99;
  EXPECT_EQ(original["a"][1][0].AsInteger(), 2);

  ZEL_ConfigFile assigned = Load("z = 0\n");
  assigned = original;
  EXPECT_TRUE(DeepEqual(assigned, original));
  EXPECT_FALSE(assigned.has_key("z"));
  assigned.LoadText("c = 1\n", "t.cfg"); // the copied index works for new keys
  EXPECT_TRUE(assigned.has_key("c"));
  EXPECT_FALSE(original.has_key("c"));
  assigned = assigned; // self-assignment keeps everything
  EXPECT_EQ(assigned.size(), 3u);
}

TEST(ZEL_ConfigFile, PrintWritesOneLinePerDefinition) {
  const ZEL_ConfigFile config = Load("n = +007\nd = 1.50e3\nid = name\ns = 'a\\nb\\\\c\"d'\n"
                                     "l = [ 1 , [ ], [x, 'y' ] ]\n");
  EXPECT_EQ(Printed(config), "n = +007\nd = 1.50e3\nid = \"name\"\ns = \"a\\nb\\\\c\"d\"\n"
                             "l = [1,[],[\"x\",\"y\"]]\n");
  std::ostringstream viaPrint;
  config.print(viaPrint);
  EXPECT_EQ(viaPrint.str(), Printed(config));
}

TEST(ZEL_ConfigFile, MissingFileThrows) {
  const std::string name = ::testing::TempDir() + "no_such_dir/missing.cfg";
  ZEL_ConfigFile config;
  config_test::ExpectFailure([&] { config.LoadFile(name); },
                             "Could not open the configuration file " + name +
                                 " for reading.\nSystem error message: No such file or directory",
                             "145331040507", kHeader);
  EXPECT_THROW(config.LoadFile(static_cast<const char16_t*>(nullptr)), ZEL_Failure);
  EXPECT_EQ(config.size(), 0u);
}

TEST(ZEL_ConfigFile, NameWithAZeroInsideIsRefused) {
  ScratchFile file("config_zero_name.cfg", "a = 1\n");
  const std::string cut = file.path() + std::string(1, '\0') + "more";
  const std::string expected = "Could not open the configuration file " + file.path() +
                               " for reading.\nSystem error message: Invalid argument";
  ZEL_ConfigFile config;
  EXPECT_EQ(tarn_test::FailureMessage([&] { config.LoadFile(cut); }), expected);
  std::u16string wide = file.widePath() + u'\0' + u"more";
  EXPECT_EQ(tarn_test::FailureMessage([&] { config.LoadFile(wide); }), expected);
  EXPECT_EQ(config.size(), 0u);
}

TEST(ZEL_ConfigFile, NonAsciiFileNamesAppearAsUtf8) {
  ScratchFile file("konfig_\xc3\xa9_\xe2\x82\xac.cfg", "a = 1\nb\n");
  EXPECT_EQ(file.widePath().size(), file.path().size() - 3); // two- and three-byte letters
  EXPECT_EQ(tarn_test::FailureMessage([&] { ZEL_ConfigFile config(file.widePath()); }),
            "Missing = character in line 2 of configuration file " + file.path());
}

// Files start with a UTF-8 byte-order mark, which is skipped.
TEST(ZEL_ConfigFile, EveryLineEndFormWorks) {
  for (const char* end : {"\n", "\r\n", "\r", "\n\r"}) {
    SCOPED_TRACE(::testing::PrintToString(end));
    const std::string e = end;
    ScratchFile file("config_line_ends.cfg", "\xEF\xBB\xBF" "a = 'x\\" + e + "y'" + e + e + "b = [1," + e +
                                                 "2]" + e + "c = 1 2" + e);
    ZEL_ConfigFile config;
    EXPECT_EQ(tarn_test::FailureMessage([&] { config.LoadFile(file.path()); }),
              "expected newline after definition of c in line 6 of " "configuration file " + file.path());
    EXPECT_EQ(config["a"].GetText(), "xy");
    EXPECT_EQ(config["b"].length(), 2u);
  }
}

// A NUL byte is no character of the format, wherever it stands outside a
// comment; the line loader keeps it, so only files can hold one.
TEST(ZEL_ConfigFile, NulBytesAreUnknownTokens) {
  struct Case { std::string text; int line; };
  using namespace std::string_literals;
  const Case cases[] = {
      {"\0"s, 1}, {"a = 1\nb = 'x\0y'\n"s, 2}, {"a = 1\n\r\0\r\n"s, 2}, {"a = [1,\n\0]"s, 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.text));
    ScratchFile file("config_nul.cfg", c.text);
    config_test::ExpectFailure([&] { ZEL_ConfigFile{}.LoadFile(file.path()); },
                               "Unknown token in the configuration file " + file.path() +
                                   " (line " + std::to_string(c.line) + ")",
                               "145613040507", "[%T|%n|%P|LIBUTIL|TarnStringUtil] ");
  }
  ScratchFile comment("config_nul_comment.cfg", "a = 1 # c\0mment\n"s);
  ZEL_ConfigFile config;
  config.LoadFile(comment.path());
  EXPECT_EQ(config["a"].AsInteger(), 1);
}

TEST(ZEL_ConfigFile, ExampleFileLoadsAndReloadsFromItsPrintout) {
  ZEL_ConfigFile config;
  config.LoadFile(std::string(TARN_SOURCE_DIR) + "/examples/data/optimisation.cfg");
  EXPECT_EQ(config.GetKeys().front(), "job_name");
  EXPECT_EQ(config["max_iterations"].AsInteger(), 200);
  EXPECT_EQ(config["convergence_tol"].AsDouble(), 1.0e-6);
  EXPECT_EQ(config["result_directory"].GetText(), "results\\run_07");
  EXPECT_EQ(config["description"].GetText(),
            "Minimum mass of the outer wing box under three load cases, with buckling and "
            "strain limits");
  EXPECT_EQ(config["design_variables"].length(), 5u);
  EXPECT_EQ(config["design_variables"][2][0].GetText(), "spar_web");
  EXPECT_EQ(config["load_cases"][1][2].AsDouble(), -1.0);

  ZEL_ConfigFile reloaded;
  reloaded.LoadText(Printed(config).c_str(), "printed");
  EXPECT_TRUE(DeepEqual(config, reloaded));
}
