//===- TarnApplicationUtil_test.cpp - Command line --------------------------===//
//
// The command line against GoogleTest's own record of the arguments, in this
// process and in a copy of it started with unusual arguments.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/system/TarnApplicationUtil.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

using testing::ElementsAre;
using namespace TarnApplicationUtil;

namespace {
std::u16string W(const std::string& s) { return TarnStringUtil::utf8_to_wide(s); }
} // namespace

TEST(TarnApplicationUtil, CommandLineMatchesTheProcessArguments) {
  const std::vector<std::string> expected = testing::internal::GetArgvs();
  // argv is not what is read: pass none.
  std::vector<std::u16string> wide;
  for (const std::string& arg : expected)
    wide.push_back(W(arg));
  EXPECT_EQ(commandline_to_wide(0, nullptr), wide);
}

TEST(TarnApplicationUtil, CommandLineWithUnusualArguments) {
  // The test above again, with an empty argument, spaces, UTF-8 and a byte
  // that is not UTF-8.
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ::execl("/proc/self/exe", "prog name",
            "--gtest_filter=TarnApplicationUtil.CommandLineMatchesTheProcessArguments", "",
            "a b", "\xC3\xA9t\xC3\xA9 \xF0\x9F\x98\x80", "\xFF", static_cast<char*>(nullptr));
    ::_exit(3);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(TarnApplicationUtil, ArgcCountsOnlyNonEmptyArguments) {
  std::vector<std::string> utf8 = {"stale"};
  std::vector<char*> pointers;
  int argc = -1;
  char** argv = nullptr;
  get_argc_argv({u"prog", u"", u"x \u00e9", u""}, utf8, pointers, argc, argv);
  EXPECT_EQ(argc, 2);
  EXPECT_THAT(utf8, ElementsAre("prog", "", "x \xC3\xA9", ""));
  ASSERT_NE(argv, nullptr);
  EXPECT_STREQ(argv[0], "prog");
  EXPECT_STREQ(argv[1], "x \xC3\xA9");
  EXPECT_EQ(argv[2], nullptr);

  get_argc_argv({}, utf8, pointers, argc, argv);
  EXPECT_EQ(argc, 0);
  EXPECT_TRUE(utf8.empty());
  EXPECT_EQ(argv[0], nullptr);
  // A lone surrogate is written as U+FFFD.
  get_argc_argv({std::u16string(1, char16_t(0xD800))}, utf8, pointers, argc, argv);
  EXPECT_STREQ(argv[0], "\xEF\xBF\xBD");
}
