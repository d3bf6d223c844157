//===- TarnFileUtil_test.cpp - Existence, directories, removal, opening -----===//
//
// Real files in a fresh temporary directory: names with spaces and UTF-8
// characters, missing parents, directories closed to an ordinary user, and
// each log text checked once, word for word.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/system/TarnFileUtil.h"
#include "system/FileTestHelpers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <functional>
#include <tuple>
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
  EXPECT_THAT(log.Take(), testing::Not(HasSubstr("missing")));
}

TEST(TarnFileUtil, LogTexts) {
  TempDir dir;
  WriteFile(dir / "file", "x");
  ::mkdir((dir / "full").c_str(), 0755);
  WriteFile(dir / "full/f", "x");
  const std::string tooLong = dir / std::string(300, 'n'), own = "|LIBUTIL|TarnFileUtil] ";
  const auto code = [](int error) { return std::to_string(error) + ")\n"; };
  ZelStatusCode status;
  // The call, its level, and how its line ends.
  const std::tuple<std::function<void()>, const char*, std::string> cases[] = {
      {[&] { TarnFileUtil::IsExistingDir(dir / "file", status); }, "(TRACE   ) [",
       own + dir / "file" + " exists but is no directory\n"},
      {[&] { TarnFileUtil::IsExistingDir(tooLong, status); }, "(DEBUG   ) [",
       own + "Failed to check existence of " + tooLong + " (system error code = " + code(ENAMETOOLONG)},
      {[&] { TarnFileUtil::CreateDir(dir / "file"); }, "(DEBUG   ) [",
       own + "Failed to create directory " + dir / "file" + " (errorcode=" + code(EEXIST)},
      {[&] { TarnFileUtil::CreateDir(dir / "no/parent"); }, "(DEBUG   ) [", "(errorcode=" + code(ENOENT)},
      {[&] { TarnFileUtil::CreateDirRecursive(tooLong); }, "(DEBUG   ) [",
       own + "Failed to create directory " + tooLong + " (errorcode=" + code(ENAMETOOLONG)},
      {[&] { TarnFileUtil::RemoveDir(dir / "full"); }, "(WARNING ) [",
       own + "Failed to remove directory " + dir / "full" + " (errorcode = " + code(ENOTEMPTY)},
      {[&] { TarnFileUtil::RemoveDir(dir.Wide("missing")); }, "(WARNING ) [", "(errorcode = " + code(ENOENT)},
      {[&] { TarnFileUtil::RemoveFile(dir.Wide("missing \xC3\xA9")); }, "(WARNING ) [",
       own + "Failed to delete file " + dir / "missing \xC3\xA9" + " (errorcode = " + code(ENOENT)},
      {[&] { TarnFileUtil::RemoveFile(dir.Wide("full")); }, "(WARNING ) [", "(errorcode = " + code(EISDIR)},
      {[&] { TarnFileUtil::RemoveFile(static_cast<const char16_t*>(nullptr)); }, "(WARNING ) [",
       "(errorcode = " + code(EINVAL)}};
  for (const auto& [call, level, end] : cases) {
    SCOPED_TRACE(end);
    CapturedLog log;
    call();
    const std::string text = log.Take();
    EXPECT_THAT(text, testing::StartsWith(level));
    EXPECT_THAT(text, testing::EndsWith(end));
  }
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
}

TEST(TarnFileUtil, CreateDirRecursiveMakesEveryMissingParent) {
  TempDir dir;
  // An existing directory whose name holds a backslash is taken as it is.
  ::mkdir((dir / "x\\y").c_str(), 0755);
  std::string deep600 = dir.path();
  for (int i = 0; i < 600; ++i)
    deep600 += "/q";
  // The name given, and the directory that must then exist; surrounding
  // blanks are trimmed, a backslash separates as a slash does, and trailing
  // or doubled separators of either kind do not matter.
  const std::pair<std::string, std::string> cases[] = {
      {dir / "a b/\xC3\xA9/c/d", dir / "a b/\xC3\xA9/c/d"}, {dir / "a b/\xC3\xA9/c/d", dir / "a b"},
      {"  " + dir / "t/u" + " \t", dir / "t/u"}, {dir / "s/v/", dir / "s/v"},
      {dir / "s/w\\", dir / "s/w"}, {dir / "b1\\b2/b3\\b4", dir / "b1/b2/b3/b4"},
      {dir / "x\\y", dir / "x\\y"}, {dir / "m//n//", dir / "m/n"}, {deep600, deep600},
      {"", "."}, {" \t\n", "."}, {"r1/r2/r3", dir / "r1/r2/r3"}, {"single", dir / "single"}};
  tarn_test::ScopedCwd cwd(dir.path());
  for (const auto& [name, made] : cases) {
    SCOPED_TRACE(name.substr(0, 100));
    EXPECT_EQ(TarnFileUtil::CreateDirRecursive(name), STATUS_OK);
    EXPECT_TRUE(IsDirectory(made));
  }
  EXPECT_FALSE(IsDirectory(dir / "x"));
}

TEST(TarnFileUtil, CreateDirRecursiveFailsBelowAFileOrWithoutPermission) {
  TempDir dir;
  WriteFile(dir / "file", "x");
  CapturedLog log;
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(dir / "file/sub/dir"), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(dir / "file"), ERR_FILE_IO);
  EXPECT_EQ(ReadFile(dir / "file"), "x");
  // Longer than any name the system accepts: refused at once.
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(std::string(200000, '/') + "x"), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::CreateDirRecursive(dir / std::string(300, 'x')), ERR_FILE_IO);
  tarn_test::OpenToEveryone(dir);
  ::mkdir((dir / "ro").c_str(), 0555);
  ::mkdir((dir / "closed").c_str(), 0700);
  ::mkdir((dir / "closed/inner").c_str(), 0700);
  EXPECT_TRUE(tarn_test::RunUnprivileged([&dir] {
    ZelStatusCode status = STATUS_OK;
    return TarnFileUtil::CreateDirRecursive(dir / "ro/a/b") == ERR_FILE_IO &&
           !IsDirectory(dir / "ro/a") && !TarnFileUtil::IsExistingDir(dir / "closed/inner", status) &&
           status == ERR_FILE_IO;
  }));
}

TEST(TarnFileUtil, RemoveDirRemovesOnlyEmptyDirectories) {
  TempDir dir;
  ::mkdir((dir / "empty \xC3\xA9").c_str(), 0755);
  ::mkdir((dir / "wide").c_str(), 0755);
  ::mkdir((dir / "full").c_str(), 0755);
  WriteFile(dir / "full/f", "x");
  EXPECT_EQ(TarnFileUtil::RemoveDir(dir / "empty \xC3\xA9"), STATUS_OK);
  EXPECT_EQ(TarnFileUtil::RemoveDir(dir.Wide("wide")), STATUS_OK);
  EXPECT_FALSE(IsDirectory(dir / "empty \xC3\xA9") || IsDirectory(dir / "wide"));
  CapturedLog log;
  EXPECT_EQ(TarnFileUtil::RemoveDir(dir / "full"), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::RemoveDir(dir.Wide("missing")), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::RemoveDir(dir / "full/f"), ERR_FILE_IO);
  EXPECT_EQ(ReadFile(dir / "full/f"), "x");
}

// ---------------------------------------------------------------------- files

TEST(TarnFileUtil, RemoveFileFailsAndLogsInUtf8) {
  TempDir dir;
  ::mkdir((dir / "d").c_str(), 0755);
  WriteFile(dir / "a", "keep");
  WriteFile(dir / "gone", "");
  EXPECT_EQ(TarnFileUtil::RemoveFile(dir.Wide("gone").c_str()), STATUS_OK);
  EXPECT_FALSE(TarnFileUtil::FileExists(dir / "gone"));
  CapturedLog log;
  EXPECT_EQ(TarnFileUtil::RemoveFile(dir.Wide("missing \xC3\xA9")), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::RemoveFile(dir.Wide("d")), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::RemoveFile(static_cast<const char16_t*>(nullptr)), ERR_FILE_IO);
  // "<dir>/a" followed by a zero and more text must not remove "<dir>/a".
  EXPECT_EQ(TarnFileUtil::RemoveFile(dir.Wide("a") + u'\0' + u"x"), ERR_FILE_IO);
  EXPECT_EQ(TarnFileUtil::RemoveFile(dir / "a" + std::string(1, '\0')), ERR_FILE_IO);
  EXPECT_EQ(ReadFile(dir / "a"), "keep");
  EXPECT_TRUE(IsDirectory(dir / "d"));
}

TEST(TarnFileUtil, RenameFileNeverReplacesTheTarget) {
  TempDir dir;
  WriteFile(dir / "src \xC3\xA9", "source");
  EXPECT_TRUE(TarnFileUtil::RenameFile(dir.Wide("src \xC3\xA9"), dir.Wide("dst")));
  EXPECT_FALSE(TarnFileUtil::FileExists(dir / "src \xC3\xA9"));
  WriteFile(dir / "other", "other");
  EXPECT_FALSE(TarnFileUtil::RenameFile(dir.Wide("other"), dir.Wide("dst")));
  EXPECT_EQ(ReadFile(dir / "dst") + ReadFile(dir / "other"), "sourceother");
  EXPECT_FALSE(TarnFileUtil::RenameFile(dir.Wide("missing"), dir.Wide("x")));
  EXPECT_FALSE(TarnFileUtil::RenameFile(dir.Wide("other"), dir.Wide("no/parent")));
  EXPECT_FALSE(TarnFileUtil::RenameFile(u"", dir.Wide("x")));
  ::mkdir((dir / "d").c_str(), 0755); // directories move too
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
  EXPECT_EQ(TarnFileUtil::GetFullPathNameW(u""), u"");
}

TEST(TarnFileUtil, WfopenAndMakeFileOpenWideNames) {
  TempDir dir;
  const std::u16string name = dir.Wide("\xC3\xA9 out.txt");
  std::fputs("line\n", TarnFileUtil::make_file(name, u"wt").get());
  std::FILE* raw = TarnFileUtil::wfopen(name.c_str(), u"ab");
  ASSERT_NE(raw, nullptr);
  std::fputs("more", raw);
  std::fclose(raw);
  EXPECT_EQ(ReadFile(dir / "\xC3\xA9 out.txt"), "line\nmore");
  EXPECT_EQ(std::fgetc(TarnFileUtil::make_file(name.c_str(), u"r").get()), 'l');
  errno = 0;
  EXPECT_EQ(TarnFileUtil::make_file(dir.Wide("missing"), u"r"), nullptr);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(TarnFileUtil::wfopen(nullptr, u"r"), nullptr);
  EXPECT_EQ(TarnFileUtil::wfopen(name.c_str(), nullptr), nullptr);
  EXPECT_EQ(TarnFileUtil::wfopen(name, u""), nullptr);
  EXPECT_EQ(TarnFileUtil::wfopen(name + u'\0', u"r"), nullptr);
}
