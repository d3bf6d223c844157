//===- TarnFileUtil_Copy_test.cpp - Copying and the same-file test ----------===//
//
// The one promise that matters most here: a copy never truncates or loses
// its source, whatever the two names are (relative and absolute spellings,
// "." and "..", hard and symbolic links). Contents are compared byte for byte.
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

TEST(TarnFileUtilCopy, CopiesEveryByte) {
  TempDir dir;
  const std::string content = BinaryContent(3 * 1048576 + 17);
  WriteFile(dir / "src \xC3\xA9.bin", content);
  EXPECT_TRUE(TarnFileUtil::FileCopy(dir.Wide("src \xC3\xA9.bin"), dir.Wide("dst \xE2\x82\xAC.bin")));
  EXPECT_EQ(ReadFile(dir / "dst \xE2\x82\xAC.bin"), content);
  EXPECT_EQ(ReadFile(dir / "src \xC3\xA9.bin"), content);
}

TEST(TarnFileUtilCopy, ReplacesTheWholeTarget) {
  TempDir dir;
  for (const std::string& source : {std::string("short"), std::string()}) {
    SCOPED_TRACE(source);
    WriteFile(dir / "src", source);
    WriteFile(dir / "dst", std::string(100000, 'L'));
    EXPECT_TRUE(TarnFileUtil::FileCopy(dir.Wide("src"), dir.Wide("dst")));
    EXPECT_TRUE(TarnFileUtil::FileExists(dir / "dst"));
    EXPECT_EQ(ReadFile(dir / "dst"), source);
  }
}

TEST(TarnFileUtilCopy, FailsWithoutTouchingAnythingForBadSources) {
  TempDir dir;
  ::mkdir((dir / "d").c_str(), 0755);
  EXPECT_FALSE(TarnFileUtil::FileCopy(dir.Wide("missing"), dir.Wide("dst")));
  EXPECT_FALSE(TarnFileUtil::FileCopy(dir.Wide("d"), dir.Wide("dst")));
  EXPECT_FALSE(TarnFileUtil::FileCopy(u"", dir.Wide("dst")));
  EXPECT_FALSE(TarnFileUtil::FileExists(dir / "dst"));
  WriteFile(dir / "src", "data");
  EXPECT_FALSE(TarnFileUtil::FileCopy(dir.Wide("src") + u'\0', dir.Wide("dst")));
  EXPECT_FALSE(TarnFileUtil::FileCopy(dir.Wide("src"), dir.Wide("dst") + u'\0' + u"x"));
  EXPECT_FALSE(TarnFileUtil::FileExists(dir / "dst"));
}

TEST(TarnFileUtilCopy, FailsForTargetsThatCannotBeWritten) {
  TempDir dir;
  WriteFile(dir / "src", "data");
  ::mkdir((dir / "d").c_str(), 0755);
  EXPECT_FALSE(TarnFileUtil::FileCopy(dir.Wide("src"), dir.Wide("no/parent")));
  EXPECT_FALSE(TarnFileUtil::FileCopy(dir.Wide("src"), dir.Wide("d")));
  EXPECT_FALSE(TarnFileUtil::FileCopy(dir.Wide("src"), u""));
  EXPECT_EQ(ReadFile(dir / "src"), "data");
}

TEST(TarnFileUtilCopy, FailsInAReadOnlyDirectory) {
  TempDir dir;
  tarn_test::OpenToEveryone(dir);
  WriteFile(dir / "src", "data");
  ::chmod((dir / "src").c_str(), 0644);
  ::mkdir((dir / "ro").c_str(), 0555);
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
  const Case cases[] = {
      {u"f \u00e9", dir.Wide("sub dir/f \xC3\xA9")},          // relative and absolute
      {dir.Wide("sub dir/f \xC3\xA9"), u"f \u00e9"},          // absolute and relative
      {u"f \u00e9", u"./f \u00e9"},                           // another relative spelling
      {u"f \u00e9", u"../sub dir/f \u00e9"},                  // through the parent
      {u"f \u00e9", u"f \u00e9"},                             // the same name
      {u"f \u00e9", dir.Wide("hard")},                        // a hard link
      {u"f \u00e9", dir.Wide("soft")},                        // a symbolic link
      {dir.Wide("soft"), u"f \u00e9"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(TarnStringUtil::wide_to_utf8(c.a) + " | " + TarnStringUtil::wide_to_utf8(c.b));
    EXPECT_TRUE(TarnFileUtil::IsSameOneFile(c.a, c.b));
    CapturedLog log;
    EXPECT_FALSE(TarnFileUtil::FileCopy(c.a, c.b));
    EXPECT_THAT(log.Take(),
                HasSubstr("(ERROR   ) [") );
    EXPECT_EQ(ReadFile(dir / "sub dir/f \xC3\xA9"), content);
  }
  // Nothing was renamed or left behind in the current directory.
  EXPECT_FALSE(TarnFileUtil::FileExists(std::string("TEMPORARY_RENAME_NAME")));
}

TEST(TarnFileUtilCopy, SameFileMessageNamesBothFiles) {
  TempDir dir;
  WriteFile(dir / "f", "x");
  tarn_test::ScopedCwd cwd(dir.path());
  CapturedLog log;
  EXPECT_FALSE(TarnFileUtil::FileCopy(u"f", dir.Wide("f")));
  EXPECT_THAT(log.Take(),
              HasSubstr("|LIBUTIL|TarnFileUtil] Failed to perform a file-copy operation!\n"
                        "Source file \"f\" and target file \"" + dir / "f" +
                        "\" refer to\nthe same file on disk.\n"));
}

TEST(TarnFileUtilCopy, IsSameOneFileTellsDifferentFilesApart) {
  TempDir dir;
  WriteFile(dir / "a", "x");
  WriteFile(dir / "b", "x");
  WriteFile(dir / "A", "x");
  EXPECT_FALSE(TarnFileUtil::IsSameOneFile(dir.Wide("a"), dir.Wide("b")));
  EXPECT_FALSE(TarnFileUtil::IsSameOneFile(dir.Wide("a"), dir.Wide("A")));
  EXPECT_FALSE(TarnFileUtil::IsSameOneFile(dir.Wide("a"), dir.Wide("missing")));
  // A missing first name is never the same, not even as itself.
  EXPECT_FALSE(TarnFileUtil::IsSameOneFile(dir.Wide("missing"), dir.Wide("missing")));
  EXPECT_FALSE(TarnFileUtil::IsSameOneFile(dir.Wide("missing"), dir.Wide("a")));
  EXPECT_TRUE(TarnFileUtil::IsSameOneFile(dir.Wide("a"), dir.Wide("a")));
  EXPECT_TRUE(TarnFileUtil::IsSameOneFile(dir.Wide("a"), dir.Wide("./a")));
}
