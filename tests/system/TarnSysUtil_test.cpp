//===- TarnSysUtil_test.cpp - Environment and process helpers ---------------===//
#include "TarnUtilities/system/TarnSysUtil.h"

#include <gtest/gtest.h>

#include <cstdlib>

TEST(TarnSysUtil, EnvFlagValues) {
  struct Case { const char* value; bool set; };
  const Case cases[] = {{"1", true}, {"-3", true}, {"yes", true}, {"t", true}, {"True", true},
                        {" Y \t", true}, {"+007", true}, {"0", false}, {"-0", false}, {"no", false},
                        {"on", false}, {"", false}, {"   ", false}, {"1x", false}, {"+", false},
                        {"99999999999999999999999999", true}};
  for (const Case& c : cases) {
    setenv("TARN_TEST_FLAG", c.value, 1);
    EXPECT_EQ(TarnSysUtil::is_env_flag_set("TARN_TEST_FLAG"), c.set) << c.value;
  }
  unsetenv("TARN_TEST_FLAG");
  EXPECT_FALSE(TarnSysUtil::is_env_flag_set("TARN_TEST_FLAG"));
  EXPECT_FALSE(TarnSysUtil::is_env_flag_set(nullptr));
}

TEST(TarnSysUtil, GetEnvVarDefaultsAndTrim) {
  unsetenv("TARN_TEST_VAR");
  EXPECT_EQ(TarnSysUtil::get_env_var("TARN_TEST_VAR"), "");
  EXPECT_EQ(TarnSysUtil::get_env_var("TARN_TEST_VAR", "dflt"), "dflt");
  EXPECT_FALSE(TarnSysUtil::is_env_var("TARN_TEST_VAR"));
  TarnSysUtil::set_env_var("TARN_TEST_VAR", "  v a\t");
  EXPECT_TRUE(TarnSysUtil::is_env_var("TARN_TEST_VAR"));
  EXPECT_EQ(TarnSysUtil::get_env_var("TARN_TEST_VAR"), "  v a\t");
  EXPECT_EQ(TarnSysUtil::get_env_var("TARN_TEST_VAR", nullptr, true), "v a");
  TarnSysUtil::set_env_var("TARN_TEST_VAR", "");
  EXPECT_EQ(TarnSysUtil::get_env_var("TARN_TEST_VAR", "dflt"), "dflt");
  unsetenv("TARN_TEST_VAR");
}

TEST(TarnSysUtil, WideFormsConvertNamesAndValues) {
  TarnSysUtil::set_env_var(u"TARN_TEST_W\u00c9", u" d\u00e9 \U0001F600\t");
  EXPECT_TRUE(TarnSysUtil::is_env_var(u"TARN_TEST_W\u00c9"));
  EXPECT_TRUE(TarnSysUtil::is_env_var("TARN_TEST_W\xC3\x89"));
  EXPECT_EQ(TarnSysUtil::get_env_var("TARN_TEST_W\xC3\x89"), " d\xC3\xA9 \xF0\x9F\x98\x80\t");
  EXPECT_EQ(TarnSysUtil::get_env_var(u"TARN_TEST_W\u00c9"), u" d\u00e9 \U0001F600\t");
  EXPECT_EQ(TarnSysUtil::get_env_var(u"TARN_TEST_W\u00c9", nullptr, true), u"d\u00e9 \U0001F600");
  // A value that is not UTF-8 is read as Latin-1.
  setenv("TARN_TEST_W", "\xE9t\xE9", 1);
  EXPECT_EQ(TarnSysUtil::get_env_var(u"TARN_TEST_W"), u"\u00e9t\u00e9");
  TarnSysUtil::set_env_var(u"TARN_TEST_W", u"");
  EXPECT_EQ(TarnSysUtil::get_env_var(u"TARN_TEST_W", u"dflt"), u"dflt");
  EXPECT_TRUE(TarnSysUtil::is_env_var(u"TARN_TEST_W"));
  TarnSysUtil::set_env_var(u"TARN_TEST_W", nullptr);
  EXPECT_FALSE(TarnSysUtil::is_env_var(u"TARN_TEST_W"));
  EXPECT_EQ(TarnSysUtil::get_env_var(u"TARN_TEST_W"), u"");
  EXPECT_EQ(TarnSysUtil::get_env_var(static_cast<const char16_t*>(nullptr), u"d"), u"d");
  EXPECT_FALSE(TarnSysUtil::is_env_var(static_cast<const char16_t*>(nullptr)));
  TarnSysUtil::set_env_var(static_cast<const char16_t*>(nullptr), u"x");
  unsetenv("TARN_TEST_W\xC3\x89");
}

TEST(TarnSysUtil, WideValuesAreCutWithoutSplittingAPair) {
  // 32,766 units, then a pair that would straddle the cut at 32,767.
  const std::string value = std::string(32766, 'v') + "\xF0\x9F\x98\x80" + "tail";
  setenv("TARN_TEST_LONG", value.c_str(), 1);
  EXPECT_EQ(TarnSysUtil::get_env_var(u"TARN_TEST_LONG"), std::u16string(32766, u'v'));
  const std::string shorter = std::string(32765, 'v') + "\xF0\x9F\x98\x80" + "tail";
  setenv("TARN_TEST_LONG", shorter.c_str(), 1);
  EXPECT_EQ(TarnSysUtil::get_env_var(u"TARN_TEST_LONG"), std::u16string(32765, u'v') + u"\U0001F600");
  unsetenv("TARN_TEST_LONG");
}
