//===- TarnFileUtil_Copy_test.cpp - Copying and the same-file test ----------===//
//
// A copy never truncates or loses its source, whatever the two names are
// (relative and absolute spellings, "..", hard and symbolic links).
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/system/TarnFileUtil.h"
#include "system/FileTestHelpers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using testing::HasSubstr;
using tarn_test::CapturedLog;
using tarn_test::ReadFile;
using tarn_test::TempDir;
using tarn_test::WriteFile;

namespace {

// Bytes of every value, more than one copy block long.
std::string BinaryContent(std::size_t size) {
  std::mt19937 rng(42);
  std::string bytes(size, '\0');
  for (char& c : bytes)
    c = static_cast<char>(rng());
  return bytes;
}

} // namespace

TEST(TarnFileUtilCopy, CopiesEveryByteAndReplacesTheWholeTarget) {
  TempDir dir;
  const std::string content = BinaryContent(3 * 1048576 + 17);
  for (const std::string& source : {content, std::string("short"), std::string()}) {
    SCOPED_TRACE(source.size());
    WriteFile(dir / "src \xC3\xA9", source);
    WriteFile(dir / "dst \xE2\x82\xAC", std::string(100000, 'L'));
    EXPECT_TRUE(TarnFileUtil::FileCopy(dir.Wide("src \xC3\xA9"), dir.Wide("dst \xE2\x82\xAC")));
    EXPECT_EQ(ReadFile(dir / "dst \xE2\x82\xAC"), source);
    EXPECT_EQ(ReadFile(dir / "src \xC3\xA9"), source);
  }
}

TEST(TarnFileUtilCopy, FailsWithoutTouchingAnythingForBadNames) {
  TempDir dir;
  ::mkdir((dir / "d").c_str(), 0755);
  ::mkdir((dir / "ro").c_str(), 0555);
  WriteFile(dir / "src", "data");
  ::chmod((dir / "src").c_str(), 0644);
  const std::u16string src = dir.Wide("src"), dst = dir.Wide("dst");
  // A zero inside either name must not cut it short.
  const std::pair<std::u16string, std::u16string> cases[] = {
      {dir.Wide("missing"), dst}, {dir.Wide("d"), dst}, {u"", dst}, {src + u'\0', dst},
      {src, dst + u'\0' + u"x"}, {src, dir.Wide("no/parent")}, {src, dir.Wide("d")}, {src, u""}};
  for (const auto& [from, to] : cases)
    EXPECT_FALSE(TarnFileUtil::FileCopy(from, to)) << TarnStringUtil::wide_to_utf8(to);
  EXPECT_FALSE(TarnFileUtil::FileExists(dir / "dst"));
  tarn_test::OpenToEveryone(dir);
  EXPECT_TRUE(tarn_test::RunUnprivileged(
      [&dir] { return !TarnFileUtil::FileCopy(dir.Wide("src"), dir.Wide("ro/dst")); }));
  EXPECT_FALSE(TarnFileUtil::FileExists(dir / "ro/dst"));
  EXPECT_EQ(ReadFile(dir / "src"), "data");
}

TEST(TarnFileUtilCopy, RunningOutOfRoomPartWayFails) {
  TempDir dir;
  const std::string content = BinaryContent(3 * 1048576 + 17);
  WriteFile(dir / "src", content);
  EXPECT_FALSE(TarnFileUtil::FileCopy(dir.Wide("src"), u"/dev/full"));
  // A file-size limit stops the copy after 1 MiB + 5 bytes, in a child
  // process so that the limit stays there.
  const pid_t child = ::fork();
  if (child == 0) {
    ::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit limit = {1048576 + 5, 1048576 + 5};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::_exit(TarnFileUtil::FileCopy(dir.Wide("src"), dir.Wide("dst")) ? 1 : 0);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  EXPECT_EQ(ReadFile(dir / "dst"), content.substr(0, 1048576 + 5));
  EXPECT_EQ(ReadFile(dir / "src"), content);
}

TEST(TarnFileUtilCopy, OntoItselfUnderAnyNameLeavesTheFileIntact) {
  TempDir dir;
  ::mkdir((dir / "sub dir").c_str(), 0755);
  const std::string content = BinaryContent(5000);
  WriteFile(dir / "sub dir/f \xC3\xA9", content);
  ::link((dir / "sub dir/f \xC3\xA9").c_str(), (dir / "hard").c_str());
  ::symlink((dir / "sub dir/f \xC3\xA9").c_str(), (dir / "soft").c_str());
  tarn_test::ScopedCwd cwd(dir / "sub dir");

  struct Case { std::u16string a, b; };
  const Case cases[] = {{u"f \u00e9", dir.Wide("sub dir/f \xC3\xA9")},
                        {dir.Wide("sub dir/f \xC3\xA9"), u"f \u00e9"},
                        {u"f \u00e9", u"../sub dir/f \u00e9"}, {u"f \u00e9", u"f \u00e9"},
                        {u"f \u00e9", dir.Wide("hard")}, {dir.Wide("soft"), u"f \u00e9"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(TarnStringUtil::wide_to_utf8(c.a) + " | " + TarnStringUtil::wide_to_utf8(c.b));
    EXPECT_TRUE(TarnFileUtil::IsSameOneFile(c.a, c.b));
    CapturedLog log;
    EXPECT_FALSE(TarnFileUtil::FileCopy(c.a, c.b));
    EXPECT_THAT(log.Take(), HasSubstr("(ERROR   ) ["));
    EXPECT_EQ(ReadFile(dir / "sub dir/f \xC3\xA9"), content);
  }
  CapturedLog log;
  EXPECT_FALSE(TarnFileUtil::FileCopy(u"f \u00e9", dir.Wide("hard")));
  EXPECT_THAT(log.Take(),
              HasSubstr("|LIBUTIL|TarnFileUtil] Failed to perform a file-copy operation!\n"
                        "Source file \"f \xC3\xA9\" and target file \"" + dir / "hard" +
                        "\" refer to\nthe same file on disk.\n"));
}

TEST(TarnFileUtilCopy, IsSameOneFileTellsDifferentFilesApart) {
  TempDir dir;
  for (const char* name : {"a", "b", "A"})
    WriteFile(dir / name, "x");
  const std::u16string a = dir.Wide("a"), missing = dir.Wide("missing");
  // A missing first name is never the same, not even as itself.
  const std::pair<std::u16string, std::u16string> cases[] = {
      {a, dir.Wide("b")}, {a, dir.Wide("A")}, {a, missing}, {missing, missing}, {missing, a},
      {a + u'\0', a}, {a, a + u'\0'}};
  for (const auto& [first, second] : cases)
    EXPECT_FALSE(TarnFileUtil::IsSameOneFile(first, second)) << TarnStringUtil::wide_to_utf8(second);
}
