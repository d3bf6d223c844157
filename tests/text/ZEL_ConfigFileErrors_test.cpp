//===- ZEL_ConfigFileErrors_test.cpp - Malformed configuration files --------===//
#include "ConfigTestSupport.h"

#include "TarnUtilities/text/ZEL_ConfigFile.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>

using config_test::LoadAndCatch;

namespace {
const char* const kSyntaxHeader = "[%T|%n|%P|LIBUTIL|TarnStringUtil] ";

struct Case {
  const char* text;
  const char* message;
  const char* code;
};

void CheckCases(const Case* begin, const Case* end) {
  for (const Case* c = begin; c != end; ++c) {
    SCOPED_TRACE(::testing::Message() << "text: \"" << c->text << "\"");
    const auto error = LoadAndCatch(c->text);
    ASSERT_TRUE(error.thrown);
    EXPECT_EQ(error.message, c->message);
    EXPECT_EQ(error.code, c->code);
    EXPECT_EQ(error.header, kSyntaxHeader);
  }
}
} // namespace

TEST(ZEL_ConfigFileErrors, LexicalErrors) {
  const Case cases[] = {
      // Unterminated string constants
      {"a = \"abc\n", "unterminated string constant in configuration file t.cfg (line 1)",
       "145528040507"},
      {"a = 'abc\"\n", "unterminated string constant in configuration file t.cfg (line 1)",
       "145528040507"},
      {"a = 1\n\nb = 'x\\'", "unterminated string constant in configuration file t.cfg (line 3)",
       "145528040507"},
      {"a = 'ab\\\ncd\n", "unterminated string constant in configuration file t.cfg (line 2)",
       "145528040507"},
      {"a = 'ab\\", "unterminated string constant at the end of configuration file t.cfg",
       "145528040507"},
      {"a = 'ab\\\ncd\\", "unterminated string constant at the end of configuration file t.cfg",
       "145528040507"},
      // Numbers without digits
      {"a = +", "no digits in numerical expression of configuration file t.cfg (line 1)",
       "145613040507"},
      {"a = -x", "no digits in numerical expression of configuration file t.cfg (line 1)",
       "145613040507"},
      {"a = .", "no digits in numerical expression of configuration file t.cfg (line 1)",
       "145613040507"},
      {"a = +.e5", "no digits in numerical expression of configuration file t.cfg (line 1)",
       "145613040507"},
      {"\na = 1e", "no digits in numerical expression of configuration file t.cfg (line 2)",
       "145613040507"},
      {"a = 1e+", "no digits in numerical expression of configuration file t.cfg (line 1)",
       "145613040507"},
      {"a = 2.5E-x", "no digits in numerical expression of configuration file t.cfg (line 1)",
       "145613040507"},
      {"a = [1, 2, -]", "no digits in numerical expression of configuration file t.cfg (line 1)",
       "145613040507"},
      // Characters that start no token
      {"\n\na = $\n", "Unknown token in the configuration file t.cfg (line 3)", "145613040507"},
      {"a = 1;", "Unknown token in the configuration file t.cfg (line 1)", "145613040507"},
      {"a = {1}", "Unknown token in the configuration file t.cfg (line 1)", "145613040507"},
      {"a = \xc3\xa9", "Unknown token in the configuration file t.cfg (line 1)", "145613040507"},
      {"a = \x01", "Unknown token in the configuration file t.cfg (line 1)", "145613040507"},
      {"caf\xc3\xa9 = 1", "Unknown token in the configuration file t.cfg (line 1)",
       "145613040507"},
      // A lexical error anywhere wins over a syntax error earlier in the file.
      {"1 = 2\nb = @", "Unknown token in the configuration file t.cfg (line 2)", "145613040507"},
  };
  CheckCases(std::begin(cases), std::end(cases));
}

TEST(ZEL_ConfigFileErrors, DefinitionErrors) {
  const Case cases[] = {
      {"1 = 2", "no valid identifier as first token of line 1 in configuration file t.cfg",
       "145649040507"},
      {"\n\n= 2", "no valid identifier as first token of line 3 in configuration file t.cfg",
       "145649040507"},
      {"'a' = 1", "no valid identifier as first token of line 1 in configuration file t.cfg",
       "145649040507"},
      {"a = 1\n[b] = 1",
       "no valid identifier as first token of line 2 in configuration file t.cfg",
       "145649040507"},
      {"a = 1\nb = 2\na = 3", "redefinition of variable a in line 3 of configuration file t.cfg",
       "145710040507"},
      {"a = 1\na", "redefinition of variable a in line 2 of configuration file t.cfg",
       "145710040507"},
      {"a 1", "Missing = character in line 1 of configuration file t.cfg", "14574004052007"},
      {"a\nb = 1", "Missing = character in line 1 of configuration file t.cfg", "14574004052007"},
      {"x = 0\n\nabc", "Missing = character in line 3 of configuration file t.cfg",
       "14574004052007"},
      {"a : 1", "Unknown token in the configuration file t.cfg (line 1)", "145613040507"},
      {"a = 1 2",
       "expected newline after definition of a in line 1 of configuration file t.cfg",
       "145802040507"},
      {"a = x y",
       "expected newline after definition of a in line 1 of configuration file t.cfg",
       "145802040507"},
      {"a = [1]\nb = [2] [3]",
       "expected newline after definition of b in line 2 of configuration file t.cfg",
       "145802040507"},
      {"a = 1.5.3",
       "expected newline after definition of a in line 1 of configuration file t.cfg",
       "145802040507"},
      {"a = 1 = 2",
       "expected newline after definition of a in line 1 of configuration file t.cfg",
       "145802040507"},
      {"a = 1e5e",
       "expected newline after definition of a in line 1 of configuration file t.cfg",
       "145802040507"},
      {"a = 'x''y'",
       "expected newline after definition of a in line 1 of configuration file t.cfg",
       "145802040507"},
  };
  CheckCases(std::begin(cases), std::end(cases));
}

TEST(ZEL_ConfigFileErrors, ValueErrors) {
  const Case cases[] = {
      {"a = = 1", "unexpected character = in line 1 of configuration file t.cfg",
       "150155040507"},
      {"a = [1,\n=]", "unexpected character = in line 2 of configuration file t.cfg",
       "150155040507"},
      {"a =", "unknown token type in ConfigFile class", "150155040507"},
      {"a = ]", "unknown token type in ConfigFile class", "150155040507"},
      {"a = ,", "unknown token type in ConfigFile class", "150155040507"},
      {"a = [,]", "unknown token type in ConfigFile class", "150155040507"},
      {"a = [1,]", "unknown token type in ConfigFile class", "150155040507"},
      {"a = [1,,2]", "unknown token type in ConfigFile class", "150155040507"},
      {"a = [1 2]", "expected character , in line 1 of configuration file t.cfg",
       "150111040507"},
      {"a = [1,\n2\n3]", "expected character , in line 3 of configuration file t.cfg",
       "150111040507"},
      {"a = [[1] [2]]", "expected character , in line 1 of configuration file t.cfg",
       "150111040507"},
      {"a = [1 = 2]", "expected character , in line 1 of configuration file t.cfg",
       "150111040507"},
      // Unbalanced brackets: three places where the tokens can run out
      {"a = [", "unexpected end of configuration file t.cfg", "145900040507"},
      {"a = [\n\n", "unexpected end of configuration file t.cfg", "145900040507"},
      {"a = [1", "unexpected end of configuration file t.cfg", "145950040507"},
      {"a = [[1], [2]\n\n", "unexpected end of configuration file t.cfg", "145950040507"},
      {"a = [1,", "unexpected end of configuration file t.cfg", "145920040507"},
      {"a = [1,\n", "unexpected end of configuration file t.cfg", "145920040507"},
  };
  CheckCases(std::begin(cases), std::end(cases));
}

TEST(ZEL_ConfigFileErrors, IntegerOverflowFails) {
  const Case cases[] = {
      {"a = 2147483648",
       "integer constant 2147483648 out of range in line 1 of configuration file t.cfg",
       "150230040507"},
      {"a = 1\nb = [0, -2147483649]",
       "integer constant -2147483649 out of range in line 2 of configuration file t.cfg",
       "150230040507"},
      {"a = +99999999999999999999999",
       "integer constant +99999999999999999999999 out of range in line 1 of configuration "
       "file t.cfg",
       "150230040507"},
  };
  CheckCases(std::begin(cases), std::end(cases));
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

  for (int depth : {257, 5000, 1000000}) {
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
