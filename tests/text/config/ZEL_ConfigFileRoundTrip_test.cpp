//===- ZEL_ConfigFileRoundTrip_test.cpp - Generated files, printed and reread ===//
//
// A generator writes random configuration files together with a model of
// what they define. Each file must load to its model (number values checked
// against strtod), and printing the loaded configuration and loading the
// printout must give the same keys, kinds, texts and values.
//
// The number of files is small by default; set TARN_LONG_TESTS=1 in the
// environment for a long run.
//
//===----------------------------------------------------------------------===//
#include "ConfigTestSupport.h"

#include "TarnUtilities/text/ZEL_ConfigFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <set>
#include <string>
#include <vector>

using config_test::DeepEqual;
using config_test::Printed;

namespace {

struct Node {
  enum Kind { Integer, Double, String, List } kind = String;
  std::string text;
  std::int32_t integer = 0;
  std::vector<Node> children;
};

class Generator {
public:
  explicit Generator(unsigned seed) : random_(seed) {}

  /// Writes a file of `count` definitions; `model` receives key and value of each.
  std::string File(int count, std::vector<std::pair<std::string, Node>>& model) {
    lineEnd_ = Chance(4) ? "\r\n" : "\n";
    std::set<std::string> used;
    std::string text;
    for (int i = 0; i < count; ++i) {
      text += Filler();
      std::string key;
      do
        key = Identifier();
      while (!used.insert(key).second);
      Node value;
      text += Blanks() + key + Blanks() + "=" + Blanks() + Value(value, 0) + Blanks();
      if (Chance(4))
        text += "# trailing = [comment]";
      if (i + 1 < count || Chance(2))
        text += lineEnd_;
      model.emplace_back(key, std::move(value));
    }
    return text;
  }

private:
  bool Chance(unsigned n) { return random_() % n == 0; }
  unsigned Below(unsigned n) { return random_() % n; }

  std::string Blanks() {
    static const char* const runs[] = {"", "", " ", "\t", "  \t ", "\v", "\f "};
    return runs[Below(7)];
  }

  std::string Filler() {
    std::string text;
    while (Chance(3))
      text += (Chance(2) ? Blanks() + "# comment 'x" : Blanks()) + lineEnd_;
    return text;
  }

  std::string Identifier() {
    static const std::string first = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_";
    static const std::string rest = first + "0123456789";
    std::string name(1, first[Below(first.size())]);
    for (unsigned n = Below(12); n > 0; --n)
      name += rest[Below(rest.size())];
    return name;
  }

  std::string Digits(unsigned minimum, unsigned maximum) {
    std::string digits;
    for (unsigned n = minimum + Below(maximum - minimum + 1); n > 0; --n)
      digits += static_cast<char>('0' + Below(10));
    return digits;
  }

  std::string Value(Node& node, int depth) {
    switch (Below(depth < 4 ? 6 : 5)) {
    case 0:
    case 1: return IntegerValue(node);
    case 2: return DoubleValue(node);
    case 3: return StringValue(node);
    case 4:
      node.kind = Node::String;
      node.text = Identifier();
      return node.text;
    default: return ListValue(node, depth);
    }
  }

  std::string IntegerValue(Node& node) {
    std::uniform_int_distribution<std::int32_t> all(INT32_MIN, INT32_MAX);
    const std::int32_t value = Chance(2) ? all(random_) : static_cast<std::int32_t>(Below(100));
    std::string magnitude = std::to_string(value < 0 ? -std::int64_t(value) : value);
    if (Chance(5))
      magnitude = std::string(Below(4), '0') + magnitude;
    std::string text = value < 0 ? "-" + magnitude : (Chance(5) ? "+" : "") + magnitude;
    node.kind = Node::Integer;
    node.integer = value;
    node.text = text;
    return text;
  }

  std::string DoubleValue(Node& node) {
    std::string text = Chance(3) ? "-" : (Chance(4) ? "+" : "");
    switch (Below(4)) {
    case 0: text += Digits(1, 20) + "." + Digits(0, 20); break;
    case 1: text += Digits(0, 6) + "." + Digits(1, 20); break;
    case 2: text += Digits(1, 25); break;
    default: text += Digits(1, 3) + "." + Digits(0, 3); break;
    }
    const bool needsExponent = text.find('.') == std::string::npos;
    if (needsExponent || Chance(2)) {
      text += Chance(2) ? "e" : "E";
      text += Chance(2) ? "-" : (Chance(2) ? "+" : "");
      text += std::to_string(Below(290));
    }
    node.kind = Node::Double;
    node.text = text;
    return text;
  }

  std::string StringValue(Node& node) {
    // Double quotes are left out: printing does not escape them.
    static const std::string plain = "abcXYZ019 #=[],.+-_'\t\\\n\xc3\xa9\xe2\x82\xac";
    const char quote = Chance(2) ? '"' : '\'';
    std::string source(1, quote);
    node.kind = Node::String;
    for (unsigned n = Below(16); n > 0; --n) {
      const char c = plain[Below(plain.size())];
      node.text += c;
      if (c == '\n')
        source += "\\n";
      else if (c == '\\' || c == quote || (Chance(8) && c != 'n'))
        source += std::string("\\") + c;
      else
        source += c;
      if (Chance(20))
        source += "\\" + lineEnd_; // continued on the next line
    }
    return source + quote;
  }

  std::string ListValue(Node& node, int depth) {
    node.kind = Node::List;
    std::string text = "[" + Blanks();
    if (Chance(3))
      text += lineEnd_;
    for (unsigned n = Below(5); n > 0; --n) {
      node.children.emplace_back();
      text += Value(node.children.back(), depth + 1);
      if (n > 1)
        text += Blanks() + (Chance(4) ? lineEnd_ + "," : ",") + (Chance(4) ? lineEnd_ : Blanks());
    }
    if (Chance(3))
      text += lineEnd_;
    return text + Blanks() + "]";
  }

  std::mt19937 random_;
  std::string lineEnd_ = "\n";
};

::testing::AssertionResult Matches(const ZEL_ConfigFileItem& item, const Node& node) {
  auto fail = [&](const char* what) {
    return ::testing::AssertionFailure() << what << " of '" << node.text << "'";
  };
  switch (node.kind) {
  case Node::Integer:
    if (!item.IsInteger() || item.AsInteger() != node.integer ||
        item.AsDouble() != static_cast<double>(node.integer))
      return fail("integer");
    break;
  case Node::Double:
    if (item.IsInteger() || !item.IsDouble() ||
        item.AsDouble() != std::strtod(node.text.c_str(), nullptr))
      return fail("double");
    break;
  case Node::String:
    if (!item.IsString())
      return fail("string kind");
    break;
  case Node::List:
    if (!item.IsList() || item.length() != node.children.size())
      return fail("list");
    for (unsigned i = 0; i < node.children.size(); ++i) {
      auto child = Matches(item[i], node.children[i]);
      if (!child)
        return child;
    }
    return ::testing::AssertionSuccess();
  }
  if (item.GetText() != node.text)
    return fail("text");
  return ::testing::AssertionSuccess();
}

} // namespace

TEST(ZEL_ConfigFileRoundTrip, GeneratedFilesLoadToTheirModelAndSurvivePrinting) {
  const char* longRun = std::getenv("TARN_LONG_TESTS");
  const int files = (longRun != nullptr && *longRun != '\0' && *longRun != '0') ? 200000 : 2000;
  for (int seed = 1; seed <= files; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    Generator generator(seed);
    std::vector<std::pair<std::string, Node>> model;
    const std::string text = generator.File(1 + seed % 25, model);

    ZEL_ConfigFile loaded;
    ASSERT_NO_THROW(loaded.LoadText(text.c_str(), "generated.cfg")) << text;
    ASSERT_EQ(loaded.size(), model.size()) << text;
    for (std::size_t i = 0; i < model.size(); ++i) {
      ASSERT_EQ(loaded.GetKeys()[i], model[i].first);
      ASSERT_TRUE(Matches(loaded[model[i].first], model[i].second)) << text;
    }

    const std::string printed = Printed(loaded);
    ZEL_ConfigFile reloaded;
    ASSERT_NO_THROW(reloaded.LoadText(printed.c_str(), "printed.cfg")) << printed;
    ASSERT_TRUE(DeepEqual(loaded, reloaded)) << text << "\n----\n" << printed;
    ASSERT_EQ(Printed(reloaded), printed);
  }
}
