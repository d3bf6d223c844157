//===- ZEL_ConfigFileErrors_test.cpp - Malformed configuration files --------===//
#include "ConfigTestSupport.h"

#include "TarnUtilities/text/ZEL_ConfigFile.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <random>
#include <set>
#include <string>

using config_test::LoadAndCatch;

namespace {
const char* const kSyntaxHeader = "[%T|%n|%P|LIBUTIL|TarnStringUtil] ";

/// An expected failure: its exact message, where '#' stands for the line
/// number of the case, and its code.
struct Error { const char* message; const char* code; };
const char* const kEnd = "unexpected end of configuration file t.cfg";

struct Case { const char* text; Error error; int line; };

void CheckCases(std::initializer_list<Case> cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << "text: \"" << c.text << "\"");
    std::string message = c.error.message;
    const std::size_t hash = message.find('#');
    if (hash != std::string::npos)
      message.replace(hash, 1, std::to_string(c.line));
    const auto error = LoadAndCatch(c.text);
    ASSERT_TRUE(error.thrown);
    EXPECT_EQ(error.message, message);
    EXPECT_EQ(error.code, c.error.code);
    EXPECT_EQ(error.header, kSyntaxHeader);
  }
}
} // namespace

// One row per message; '#' in the message stands for the line of the row.
TEST(ZEL_ConfigFileErrors, EveryMessage) {
  const char* const in = " in line # of configuration file t.cfg";
  const std::string redefined = std::string("redefinition of variable a") + in;
  const std::string unknownType = std::string("unknown token type in ConfigFile class") + in;
  CheckCases({
      {"a = 1\n\nb = 'x\\'", {"unterminated string constant in configuration file t.cfg (line #)",
                              "145528040507"}, 3},
      {"a = 'ab\\", {"unterminated string constant at the end of configuration file t.cfg",
                     "145528040507"}, 0},
      {"\na = 1e", {"no digits in numerical expression of configuration file t.cfg (line #)",
                    "145613040507"}, 2},
      {"\n\na = $\n", {"Unknown token in the configuration file t.cfg (line #)", "145613040507"}, 3},
      // A lexical error anywhere wins over a syntax error earlier in the file.
      {"1 = 2\nb = @", {"Unknown token in the configuration file t.cfg (line #)", "145613040507"}, 2},
      {"\n\n= 2", {"no valid identifier as first token of line # in configuration file t.cfg",
                   "145649040507"}, 3},
      {"a = 1\nb = 2\na = 3", {redefined.c_str(), "145710040507"}, 3},
      // Redefinition is found before the missing "=".
      {"a = 1\na", {redefined.c_str(), "145710040507"}, 2},
      {"x = 0\n\nabc", {"Missing = character in line # of configuration file t.cfg",
                        "14574004052007"}, 3},
      {"a = 1 2", {"expected newline after definition of a in line # of configuration file t.cfg",
                   "145802040507"}, 1},
      {"a = [1,\n=]", {"unexpected character = in line # of configuration file t.cfg",
                       "150155040507"}, 2},
      {"\na =", {unknownType.c_str(), "150155040507"}, 2},
      {"a = [1,\n]", {unknownType.c_str(), "150155040507"}, 2},
      {"a = [1,\n2\n3]", {"expected character , in line # of configuration file t.cfg",
                          "150111040507"}, 3},
      // Unbalanced brackets: three places where the tokens can run out.
      {"a = [", {kEnd, "145900040507"}, 0},
      {"a = [1", {kEnd, "145950040507"}, 0},
      {"a = [1,", {kEnd, "145920040507"}, 0},
  });
}

TEST(ZEL_ConfigFileErrors, IntegerOverflowFails) {
  CheckCases({{"a = 1\nb = [0, -2147483649]",
               {"integer constant -2147483649 out of range in line # of configuration file t.cfg",
                "150230040507"},
               2}});
  // Written as a double, the same value is fine.
  ZEL_ConfigFile config;
  config.LoadText("a = 2147483648.0\nb = 00000000000000000000000000000042\n", "t.cfg");
  EXPECT_EQ(config["a"].AsDouble(), 2147483648.0);
  EXPECT_EQ(config["b"].AsInteger(), 42);
}

TEST(ZEL_ConfigFileErrors, NestingIsBounded) {
  auto nested = [](int depth) {
    return "a = " + std::string(depth, '[') + std::string(depth, ']') + "\n";
  };
  ZEL_ConfigFile config;
  config.LoadText(nested(256).c_str(), "t.cfg");
  const ZEL_ConfigFileItem* item = &config["a"];
  for (int level = 1; level < 256; ++level)
    item = &(*item)[0];
  EXPECT_EQ(item->length(), 0u);
  ZEL_ConfigFile copy(config); // copying and destroying the deepest tree is fine
  EXPECT_EQ(copy.size(), 1u);

  for (int depth : {257, 1000000}) {
    SCOPED_TRACE(depth);
    const auto error = LoadAndCatch(nested(depth));
    EXPECT_EQ(error.message,
              "lists nested deeper than 256 levels in line 1 of configuration file t.cfg");
    EXPECT_EQ(error.code, "150245040507");
    EXPECT_EQ(error.header, kSyntaxHeader);
  }
  // Unclosed brackets fail the same way, before the end is reached.
  EXPECT_EQ(LoadAndCatch("a = " + std::string(100000, '[')).code, "150245040507");
}

TEST(ZEL_ConfigFileErrors, DefinitionsBeforeAParseErrorStay) {
  ZEL_ConfigFile config;
  auto error = LoadAndCatch(config, "a = 1\nb = 2 3\nc = 4\n");
  EXPECT_EQ(error.code, "145802040507");
  // b is complete before the rest of its line is examined.
  EXPECT_EQ(config.GetKeys(), (std::vector<std::string>{"a", "b"}));

  ZEL_ConfigFile lexed;
  error = LoadAndCatch(lexed, "a = 1\nb = 2\nc = ?\n");
  EXPECT_EQ(error.code, "145613040507");
  EXPECT_EQ(lexed.size(), 0u); // the lexer runs over the whole file first
}

// Random bytes and random damage to a valid file: every load either succeeds
// or throws a ZEL_Failure with one of the reader's own codes.
TEST(ZEL_ConfigFileErrors, GarbageNeverEscapesAsAnythingElse) {
  const std::set<std::string> knownCodes = {
      "145528040507", "145613040507", "145649040507", "145710040507", "14574004052007",
      "145802040507", "145900040507", "145950040507", "145920040507", "150111040507",
      "150155040507", "150230040507", "150245040507"};
  const std::string valid = "# settings\nn = 12\nx = -1.5e3\ns = 'a\\'b\\\\'\n"
                            "l = [1, [2.5, \"q\"],\n  id, []]\n";
  const std::string alphabet = "[],=#'\"\\ \t\n\r.+-eE09az_";
  std::mt19937 random(20240501);
  int failures = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    if (round % 3 == 0) {
      text.resize(random() % 200);
      for (char& c : text)
        c = static_cast<char>(random() % 256);
    } else {
      text = valid;
      for (int edits = 1 + random() % 4; edits > 0; --edits) {
        const std::size_t at = random() % (text.size() + 1);
        const char c = round % 3 == 1 ? alphabet[random() % alphabet.size()]
                                      : static_cast<char>(random() % 256);
        if (random() % 2 == 0 && at < text.size())
          text.erase(at, 1);
        else
          text.insert(at, 1, c);
      }
    }
    const auto error = LoadAndCatch(text);
    if (error.thrown) {
      ++failures;
      ASSERT_TRUE(knownCodes.count(error.code)) << "code " << error.code << " for " << text;
      ASSERT_EQ(error.header, kSyntaxHeader);
    }
  }
  EXPECT_GT(failures, 1000);
}
