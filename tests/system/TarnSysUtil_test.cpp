//===- TarnSysUtil_test.cpp - Environment and process helpers ---------------===//
#include "TarnUtilities/system/TarnSysUtil.h"

#include <gtest/gtest.h>

#include <cstdlib>

TEST(TarnSysUtil, EnvFlagValues) {
  struct Case { const char* value; bool set; };
  const Case cases[] = {{"1", true},     {"-3", true},   {"yes", true},  {"t", true},
                        {"True", true},  {" Y \t", true}, {"+007", true}, {"0", false},
                        {"-0", false},   {"no", false},  {"on", false},  {"", false},
                        {"   ", false},  {"1x", false},  {"+", false},
                        {"99999999999999999999999999", true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.value);
    setenv("TARN_TEST_FLAG", c.value, 1);
    EXPECT_EQ(TarnSysUtil::is_env_flag_set("TARN_TEST_FLAG"), c.set);
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

TEST(TarnSysUtil, UserAndMemoryAreReported) {
  EXPECT_FALSE(TarnSysUtil::get_username().empty());
  EXPECT_GT(TarnSysUtil::get_free_phys_mem_bytes(), 0u);
}
