//===- TarnFileUtil_test.cpp - Existence, directories, removal, opening -----===//
//
// Every case works on real files in a fresh temporary directory: names with
// spaces and UTF-8 characters, missing parents, read-only directories (skipped
// where permissions do not apply to the test process) and log lines checked
// word for word.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/system/TarnFileUtil.h"
#include "system/FileTestHelpers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <sys/stat.h>
#include <unistd.h>

using testing::HasSubstr;
using tarn_test::CapturedLog;
using tarn_test::ReadFile;
using tarn_test::TempDir;
using tarn_test::WriteFile;

namespace {

std::u16string W(const std::string& s) { return TarnStringUtil::utf8_to_wide(s); }

bool IsDirectory(const std::string& name) {
  struct stat info {};
  return ::stat(name.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

// The names every existence test runs over.
const char* const kNames[] = {"plain", "with space", "\xC3\xA9t\xC3\xA9 \xE2\x82\xAC.txt",
                              ".hidden", "x.y.z"};

} // namespace

// ------------------------------------------------------------------ existence

TEST(TarnFileUtil, FileExistsInAllFourForms) {
  TempDir dir;
  // 0 or 4: how many of the four forms find the file.
  const auto found = [](const std::string& path) {
    return int(TarnFileUtil::FileExists(path)) + int(TarnFileUtil::FileExists(path.c_str())) +
           int(TarnFileUtil::FileExists(W(path))) + int(TarnFileUtil::FileExists(W(path).c_str()));
  };
  for (const char* name : kNames) {
    SCOPED_TRACE(name);
    EXPECT_EQ(found(dir / name), 0);
    WriteFile(dir / name, "x");
    EXPECT_EQ(found(dir / name), 4);
  }
  EXPECT_EQ(found(dir.path()), 4); // directories exist too
}

TEST(TarnFileUtil, IsExistingDirDistinguishesMissingFromWrongKindAndLogs) {
  TempDir dir;
  WriteFile(dir / "file", "x");
  ::mkdir((dir / "d \xC3\xA9").c_str(), 0755);
  struct Case { std::string name; bool isDir; ZelStatusCode status; };
  const Case cases[] = {{dir.path(), true, STATUS_OK},
                        {dir / "d \xC3\xA9/", true, STATUS_OK},
                        {dir / "missing/deeper", false, STATUS_OK},
                        {dir / "file/below", false, STATUS_OK},
                        {"", false, STATUS_OK},
                        {dir / "file", false, ERR_FILE_IO},
                        {dir / std::string(300, 'n'), false, ERR_FILE_IO}};
  CapturedLog log;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name.substr(0, 200));
    ZelStatusCode status = ERR_INTERNAL;
    EXPECT_EQ(TarnFileUtil::IsExistingDir(c.name, status), c.isDir);
    EXPECT_EQ(status, c.status);
    status = ERR_INTERNAL;
    EXPECT_EQ(TarnFileUtil::IsExistingDir(W(c.name), status), c.isDir);
    EXPECT_EQ(status, c.status);
  }
  const std::string text = log.Take();
  EXPECT_THAT(text, HasSubstr("(TRACE   ) ["));
  EXPECT_THAT(text, HasSubstr("|LIBUTIL|TarnFileUtil] " + dir / "file" +
                              " exists but is no directory\n"));
  EXPECT_THAT(text, HasSubstr("|LIBUTIL|TarnFileUtil] Failed to check existence of " + dir / "nnnn"));
  EXPECT_THAT(text, HasSubstr("(system error code = " + std::to_string(ENAMETOOLONG) + ")\n"));
  EXPECT_THAT(text, testing::Not(HasSubstr("missing")));
}

// ---------------------------------------------------------------- directories

TEST(TarnFileUtil, CreateDirMakesOneLevel) {
  TempDir dir;
  EXPECT_EQ(TarnFileUtil::CreateDir(dir / "new dir \xC3\xA9"), STATUS_OK);
  EXPECT_TRUE(IsDirectory(dir / "new dir \xC3\xA9"));
  CapturedLog log;
  EXPECT_EQ(TarnFileUtil::CreateDir(dir / "new dir \xC3\xA9"), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::CreateDir(dir / "no/parent"), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::CreateDir(""), ERR_FILE_IO);
  const std::string text = log.Take();
  EXPECT_THAT(text, HasSubstr("(DEBUG   ) ["));
  EXPECT_THAT(text, HasSubstr("TarnFileUtil] Failed to create directory " + dir /
                              "new dir \xC3\xA9" + " (errorcode=" + std::to_string(EEXIST) + ")\n"));
  EXPECT_THAT(text, HasSubstr("Failed to create directory " + dir / "no/parent" +
                              " (errorcode=" + std::to_string(ENOENT) + ")\n"));
}

TEST(TarnFileUtil, CreateDirRecursiveMakesEveryMissingParent) {
  TempDir dir;
  const std::string deep = dir / "a b/\xC3\xA9/c/d";
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(deep), STATUS_OK);
  EXPECT_TRUE(IsDirectory(deep));
  // Existing, blank and empty names do nothing.
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(deep), STATUS_OK);
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(""), STATUS_OK);
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(" \t\n"), STATUS_OK);
  // Surrounding blanks are trimmed; trailing separators of either kind end
  // a name.
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive("  " + dir / "t/u" + " \t"), STATUS_OK);
  EXPECT_TRUE(IsDirectory(dir / "t/u"));
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(dir / "s/v/"), STATUS_OK);
  EXPECT_TRUE(IsDirectory(dir / "s/v"));
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(dir / "s/w\\"), STATUS_OK);
  EXPECT_TRUE(IsDirectory(dir / "s/w"));
  // A backslash separates components as a slash does.
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(dir / "b1\\b2/b3\\b4"), STATUS_OK);
  EXPECT_TRUE(IsDirectory(dir / "b1/b2/b3/b4"));
  // ... but an existing directory whose name holds one is taken as it is.
  ::mkdir((dir / "x\\y").c_str(), 0755);
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(dir / "x\\y"), STATUS_OK);
  EXPECT_FALSE(IsDirectory(dir / "x"));
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(dir / "m//n//"), STATUS_OK);
  EXPECT_TRUE(IsDirectory(dir / "m/n"));
  // Hundreds of levels, and names relative to the current directory.
  std::string deep600 = dir.path();
  for (int i = 0; i < 600; ++i)
    deep600 += "/q";
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(deep600), STATUS_OK);
  EXPECT_TRUE(IsDirectory(deep600));
  tarn_test::ScopedCwd cwd(dir.path());
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive("r1/r2/r3"), STATUS_OK);
  EXPECT_TRUE(IsDirectory(dir / "r1/r2/r3"));
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive("single"), STATUS_OK);
  EXPECT_TRUE(IsDirectory(dir / "single"));
}

TEST(TarnFileUtil, CreateDirRecursiveFailsBelowAFile) {
  TempDir dir;
  WriteFile(dir / "file", "x");
  CapturedLog log;
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(dir / "file/sub/dir"), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(dir / "file"), ERR_FILE_IO);
  EXPECT_EQ(ReadFile(dir / "file"), "x");
  // Longer than any name the system accepts: refused at once.
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(std::string(200000, '/') + "x"), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(dir / std::string(300, 'x')), ERR_FILE_IO);
  const std::string text = log.Take();
  EXPECT_THAT(text, HasSubstr("Failed to create directory " + dir / std::string(300, 'x') +
                              " (errorcode=" + std::to_string(ENAMETOOLONG) + ")"));
}

TEST(TarnFileUtil, DirectoriesWithoutPermission) {
  TempDir dir;
  tarn_test::OpenToEveryone(dir);
  ::mkdir((dir / "ro").c_str(), 0755);
  WriteFile(dir / "ro/f", "x");
  ::chmod((dir / "ro").c_str(), 0555);
  ::mkdir((dir / "closed").c_str(), 0700);
  ::mkdir((dir / "closed/inner").c_str(), 0700);
  CapturedLog log;
  EXPECT_TRUE(tarn_test::RunUnprivileged([&dir] {
    ZelStatusCode status = STATUS_OK;
    return TarnFileUtil::CreateDirRecursive(dir / "ro/a/b") == ERR_FILE_IO &&
           !IsDirectory(dir / "ro/a") && TarnFileUtil::RemoveFile(dir.Wide("ro/f")) == ERR_FILE_IO &&
           !TarnFileUtil::IsExistingDir(dir / "closed/inner", status) && status == ERR_FILE_IO;
  }));
  EXPECT_EQ(ReadFile(dir / "ro/f"), "x");
  const std::string text = log.Take();
  EXPECT_THAT(text, HasSubstr("Failed to create directory " + dir / "ro/a" +
                              " (errorcode=" + std::to_string(EACCES) + ")"));
  EXPECT_THAT(text, HasSubstr("Failed to delete file " + dir / "ro/f" + " (errorcode = " +
                              std::to_string(EACCES) + ")"));
  EXPECT_THAT(text, HasSubstr("Failed to check existence of " + dir / "closed/inner" +
                              " (system error code = " + std::to_string(EACCES) + ")"));
}

TEST(TarnFileUtil, RemoveDirRemovesOnlyEmptyDirectories) {
  TempDir dir;
  ::mkdir((dir / "empty \xC3\xA9").c_str(), 0755);
  ::mkdir((dir / "full").c_str(), 0755);
  WriteFile(dir / "full/f", "x");
  EXPECT_EQ(TarnFileUtil::RemoveDir(dir / "empty \xC3\xA9"), STATUS_OK);
  EXPECT_FALSE(IsDirectory(dir / "empty \xC3\xA9"));
  ::mkdir((dir / "wide").c_str(), 0755);
  EXPECT_EQ(TarnFileUtil::RemoveDir(dir.Wide("wide")), STATUS_OK);
  EXPECT_FALSE(IsDirectory(dir / "wide"));
  CapturedLog log;
  EXPECT_EQ(TarnFileUtil::RemoveDir(dir / "full"), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::RemoveDir(dir.Wide("missing")), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::RemoveDir(dir / "full/f"), ERR_FILE_IO);
  EXPECT_EQ(ReadFile(dir / "full/f"), "x");
  const std::string text = log.Take();
  EXPECT_THAT(text, HasSubstr("(WARNING ) ["));
  EXPECT_THAT(text, HasSubstr("|LIBUTIL|TarnFileUtil] Failed to remove directory " + dir / "full" +
                              " (errorcode = " + std::to_string(ENOTEMPTY) + ")\n"));
  EXPECT_THAT(text, HasSubstr("Failed to remove directory " + dir / "missing" +
                              " (errorcode = " + std::to_string(ENOENT) + ")\n"));
}

// ---------------------------------------------------------------------- files

TEST(TarnFileUtil, RemoveFileFailsAndLogsInUtf8) {
  TempDir dir;
  ::mkdir((dir / "d").c_str(), 0755);
  WriteFile(dir / "a", "keep");
  CapturedLog log;
  EXPECT_EQ(TarnFileUtil::RemoveFile(dir.Wide("missing \xC3\xA9")), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::RemoveFile(dir.Wide("d")), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::RemoveFile(static_cast<const char16_t*>(nullptr)), ERR_FILE_IO);
  // "<dir>/a" followed by a zero and more text must not remove "<dir>/a".
  EXPECT_EQ(TarnFileUtil::RemoveFile(dir.Wide("a") + u'\0' + u"x"), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::RemoveFile(dir / "a" + std::string(1, '\0')), ERR_FILE_IO);
  EXPECT_EQ(ReadFile(dir / "a"), "keep");
  EXPECT_TRUE(IsDirectory(dir / "d"));
  const std::string text = log.Take();
  EXPECT_THAT(text, HasSubstr("(WARNING ) ["));
  EXPECT_THAT(text, HasSubstr("|LIBUTIL|TarnFileUtil] Failed to delete file " + dir /
                              "missing \xC3\xA9" + " (errorcode = " + std::to_string(ENOENT) +
                              ")\n"));
  EXPECT_THAT(text, HasSubstr("Failed to delete file " + dir / "d" + " (errorcode = " +
                              std::to_string(EISDIR) + ")\n"));
  EXPECT_THAT(text, HasSubstr("(errorcode = " + std::to_string(EINVAL) + ")\n"));
}

TEST(TarnFileUtil, RenameFileNeverReplacesTheTarget) {
  TempDir dir;
  WriteFile(dir / "src \xC3\xA9", "source");
  EXPECT_TRUE(TarnFileUtil::RenameFile(dir.Wide("src \xC3\xA9"), dir.Wide("dst")));
  EXPECT_FALSE(TarnFileUtil::FileExists(dir / "src \xC3\xA9"));
  EXPECT_EQ(ReadFile(dir / "dst"), "source");

  WriteFile(dir / "other", "other");
  EXPECT_FALSE(TarnFileUtil::RenameFile(dir.Wide("other"), dir.Wide("dst")));
  EXPECT_EQ(ReadFile(dir / "dst"), "source");
  EXPECT_EQ(ReadFile(dir / "other"), "other");

  EXPECT_FALSE(TarnFileUtil::RenameFile(dir.Wide("missing"), dir.Wide("x")));
  EXPECT_FALSE(TarnFileUtil::RenameFile(dir.Wide("other"), dir.Wide("no/parent")));
  EXPECT_FALSE(TarnFileUtil::RenameFile(u"", dir.Wide("x")));
  // Directories move too.
  ::mkdir((dir / "d").c_str(), 0755);
  EXPECT_TRUE(TarnFileUtil::RenameFile(dir.Wide("d"), dir.Wide("e")));
  EXPECT_TRUE(IsDirectory(dir / "e"));
}

TEST(TarnFileUtil, CwdAndFullPathName) {
  TempDir dir;
  ::mkdir((dir / "sub \xC3\xA9").c_str(), 0755);
  tarn_test::ScopedCwd cwd(dir / "sub \xC3\xA9");
  EXPECT_EQ(TarnFileUtil::GetCwd(), dir.Wide("sub \xC3\xA9"));
  EXPECT_EQ(TarnFileUtil::GetFullPathNameW(u"x/../y.txt"), dir.Wide("sub \xC3\xA9/y.txt"));
  EXPECT_EQ(TarnFileUtil::GetFullPathNameW(u"../.."), W(dir.path().substr(0, dir.path().rfind('/'))));
  EXPECT_EQ(TarnFileUtil::GetFullPathNameW(u"/a/./b"), u"/a/b");
  EXPECT_EQ(TarnFileUtil::GetFullPathNameW(u""), u"");
}

TEST(TarnFileUtil, WfopenAndMakeFileOpenWideNames) {
  TempDir dir;
  const std::u16string name = dir.Wide("\xC3\xA9 out.txt");
  {
    TarnFileUtil::FilePtr file = TarnFileUtil::make_file(name, u"wt");
    ASSERT_NE(file, nullptr);
    std::fputs("line\n", file.get());
  }
  EXPECT_EQ(ReadFile(dir / "\xC3\xA9 out.txt"), "line\n");
  std::FILE* raw = TarnFileUtil::wfopen(name.c_str(), u"ab");
  ASSERT_NE(raw, nullptr);
  std::fputs("more", raw);
  std::fclose(raw);
  EXPECT_EQ(ReadFile(dir / "\xC3\xA9 out.txt"), "line\nmore");
  TarnFileUtil::FilePtr reader = TarnFileUtil::make_file(name.c_str(), u"r");
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(std::fgetc(reader.get()), 'l');

  errno = 0;
  EXPECT_EQ(TarnFileUtil::make_file(dir.Wide("missing"), u"r"), nullptr);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(TarnFileUtil::wfopen(nullptr, u"r"), nullptr);
  EXPECT_EQ(TarnFileUtil::wfopen(name.c_str(), nullptr), nullptr);
  EXPECT_EQ(TarnFileUtil::wfopen(name, u""), nullptr);
  EXPECT_EQ(TarnFileUtil::wfopen(name + u'\0', u"r"), nullptr);
}
