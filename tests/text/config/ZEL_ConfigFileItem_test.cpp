//===- ZEL_ConfigFileItem_test.cpp - Typed access, comparison, printing -----===//
#include "ConfigTestSupport.h"

#include "TarnUtilities/text/ZEL_ConfigFileItem.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>

using config_test::DeepEqual;

namespace {
using config_test::Load;
using config_test::Printed;

struct Expected { const char* message; const char* code; };

void ExpectFailure(const std::function<void()>& action, const Expected& expected) {
  config_test::ExpectFailure(action, expected.message, expected.code,
                             "[%T|%n|%P|libzel_util|ZEL_ConfigFileItem] ");
}
} // namespace

TEST(ZEL_ConfigFileItem, ConversionFailuresNameTheKind) {
  const ZEL_ConfigFile config = Load("d = 3.\ne = 3e2\ns = 'x'\ni = x\nl = [1]\n");
  struct Case { const char* key; const char* toInt; const char* toDouble; };
  const Case cases[] = {
      {"d", "ZEL_ConfigFileItem of type double cannot be converted to int", nullptr},
      {"s", "ZEL_ConfigFileItem of type string cannot be converted to int",
       "ZEL_ConfigFileItem of type string cannot be converted to double"},
      {"l", "ZEL_ConfigFileItem of type list cannot be converted to int",
       "ZEL_ConfigFileItem of type list cannot be converted to double"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.key);
    const ZEL_ConfigFileItem& item = config[c.key];
    ExpectFailure([&] { (void)item.AsInteger(); }, {c.toInt, "192117270407"});
    if (c.toDouble != nullptr)
      ExpectFailure([&] { (void)item.AsDouble(); }, {c.toDouble, "192156270407"});
    else
      EXPECT_NO_THROW((void)item.AsDouble());
  }
}

TEST(ZEL_ConfigFileItem, IndexingChecksKindAndBounds) {
  const ZEL_ConfigFile config = Load("two = [1, 2]\nnone = []\nscalar = 5\n");
  EXPECT_EQ(config["two"][1].AsInteger(), 2);
  ExpectFailure([&] { (void)config["two"][2]; },
                {"Index 2 of ZEL_ConfigFileItem is out of bounds (0 < index < 1)",
                 "191919270407"});
  // An empty list has no valid index; the bound shown wraps around.
  ExpectFailure([&] { (void)config["none"][0]; },
                {"Index 0 of ZEL_ConfigFileItem is out of bounds (0 < index < "
                 "18446744073709551615)",
                 "191919270407"});
  ExpectFailure([&] { (void)config["scalar"][0]; },
                {"ZEL_ConfigFileItem is not a list", "191920270407"});
  EXPECT_EQ(config["scalar"].length(), 1u);
  EXPECT_EQ(config["scalar"].begin(), config["scalar"].end());
}

TEST(ZEL_ConfigFileItem, EqualityComparesChildrenByIdentity) {
  const ZEL_ConfigFile config = Load("a = 3\nb = 3\nc = +3\nd = 3.0\ne = 'x'\nf = x\n"
                                     "g = [1]\nh = [1]\ni = []\nj = []\nk = '3'\n");
  EXPECT_TRUE(config["a"] == config["b"]);
  EXPECT_FALSE(config["a"] == config["c"]); // same value, different text
  EXPECT_FALSE(config["a"] == config["d"]); // integer against double
  EXPECT_FALSE(config["a"] == config["k"]); // number against string of the same text
  EXPECT_TRUE(config["e"] == config["f"]);  // a string and an identifier of one text
  EXPECT_FALSE(config["g"] == config["h"]); // equal contents, different children
  EXPECT_TRUE(config["g"] == config["g"]);
  EXPECT_TRUE(config["i"] == config["j"]);  // no children to differ
  EXPECT_TRUE(config["g"] != config["h"]);

  ZEL_ConfigFileItem copy(config["g"]);
  EXPECT_FALSE(copy == config["g"]);
  EXPECT_TRUE(DeepEqual(copy, config["g"]));
}

TEST(ZEL_ConfigFileItem, NaNIsNeverEqual) {
  ZEL_ConfigFile config = Load("a = 1.0\n");
  config["a"].AsDouble() = std::nan("");
  EXPECT_FALSE(config["a"] == config["a"]);
}

TEST(ZEL_ConfigFileItem, CopyAssignmentCopiesTheTree) {
  ZEL_ConfigFile config = Load("a = [1, [2, 3]]\nb = 'x'\n");
  ZEL_ConfigFileItem item;
  item = config["a"];
  EXPECT_TRUE(DeepEqual(item, config["a"]));
  item[1][0].AsInteger() = 7;
  EXPECT_EQ(config["a"][1][0].AsInteger(), 2);

  // Assigning a descendant to its ancestor must not read freed children.
  item = item[1];
  ASSERT_EQ(item.length(), 2u);
  EXPECT_EQ(item[0].AsInteger(), 7);
  EXPECT_EQ(item[1].AsInteger(), 3);
  // Printing shows numbers as they were written, not their current values.
  EXPECT_EQ(Printed(item), "[2,3]");
  item = config["b"];
  EXPECT_FALSE(item.IsList());
  EXPECT_EQ(item.GetText(), "x");
}
