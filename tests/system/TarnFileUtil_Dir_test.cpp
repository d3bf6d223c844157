//===- TarnFileUtil_Dir_test.cpp - Listing directories ----------------------===//
//
// Listings are compared sorted: the system's order is kept as it comes.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/system/TarnFileUtil.h"
#include "system/FileTestHelpers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sys/stat.h>

using testing::ElementsAre;
using testing::HasSubstr;
using tarn_test::CapturedLog;
using tarn_test::TempDir;
using tarn_test::WriteFile;

namespace {

std::u16string W(const std::string& s) { return TarnStringUtil::utf8_to_wide(s); }

// Files and a subdirectory whose names end in various ways.
const std::vector<std::string> kAll = {".csv", "a.csv", "b.CSV", "data_1.txt", "sub.csv", "sv",
                                       "with space.csv", "x.csv.bak", "\xC3\xA9t\xC3\xA9.csv"};
void Populate(const TempDir& dir) {
  for (const std::string& name : kAll)
    WriteFile(dir / name, "x");
  ::remove((dir / "sub.csv").c_str());
  ::mkdir((dir / "sub.csv").c_str(), 0755);
}

template <typename Container> std::vector<typename Container::value_type> Sorted(Container c) {
  std::vector<typename Container::value_type> v(c.begin(), c.end());
  std::sort(v.begin(), v.end());
  return v;
}

} // namespace

TEST(TarnFileUtilDir, ReadDirListsFilesAndDirectoriesWithoutDots) {
  TempDir dir;
  Populate(dir);
  std::list<std::string> names = {"stale"};
  EXPECT_EQ(TarnFileUtil::ReadDir(dir.path(), names), STATUS_OK);
  EXPECT_EQ(Sorted(names), kAll);
  std::list<std::u16string> wide = {u"stale"};
  EXPECT_EQ(TarnFileUtil::ReadDir(W(dir.path() + "/"), wide), STATUS_OK);
  EXPECT_EQ(wide.size(), names.size());
  EXPECT_NE(std::find(wide.begin(), wide.end(), u"\u00e9t\u00e9.csv"), wide.end());
}

TEST(TarnFileUtilDir, ReadersFailForMissingDirectoriesFilesAndClosedOnes) {
  TempDir dir;
  WriteFile(dir / "file", "x");
  CapturedLog log;
  for (const std::string& name : {dir / "missing", dir / "file", dir / std::string(300, 'n')}) {
    SCOPED_TRACE(name);
    std::list<std::string> names = {"stale"};
    std::list<std::u16string> wide = {u"stale"};
    std::vector<std::string> matches = {"stale"};
    std::vector<std::u16string> wideMatches = {u"stale"};
    EXPECT_EQ(TarnFileUtil::ReadDir(name, names), ERR_INTERNAL);
    EXPECT_EQ(TarnFileUtil::ReadDir(W(name), wide), ERR_INTERNAL);
    EXPECT_EQ(TarnFileUtil::ReadDirEndPattern(name, ".csv", matches), ERR_INTERNAL);
    EXPECT_EQ(TarnFileUtil::ReadDirEndPattern(W(name), u".csv", wideMatches), ERR_INTERNAL);
    EXPECT_TRUE(names.empty() && wide.empty() && matches.empty() && wideMatches.empty());
  }
  const std::string text = log.Take();
  EXPECT_THAT(text, HasSubstr("(DEBUG   ) ["));
  EXPECT_THAT(text, HasSubstr("|LIBUTIL|TarnFileUtil] TarnFileUtil::ReadDir in "
                              "TarnFileUtil::ReadDirPattern returned -1\n"));

  tarn_test::OpenToEveryone(dir);
  ::mkdir((dir / "closed").c_str(), 0700);
  WriteFile(dir / "closed/f", "x");
  EXPECT_TRUE(tarn_test::RunUnprivileged([&dir] {
    std::list<std::string> names;
    return TarnFileUtil::ReadDir(dir / "closed", names) == ERR_INTERNAL && names.empty();
  }));
}

TEST(TarnFileUtilDir, PatternsAreExactPrefixesOrSuffixes) {
  TempDir dir;
  Populate(dir);
  // A pattern longer than every name matches none; an empty one matches all;
  // no wildcards: "*" is an ordinary character.
  struct Case { std::string pattern; bool atStart; std::vector<std::string> names; };
  const Case cases[] = {
      {".csv", false, {".csv", "a.csv", "sub.csv", "with space.csv", "\xC3\xA9t\xC3\xA9.csv"}},
      {".CSV", false, {"b.CSV"}}, {"*.csv", false, {}}, {"data_", true, {"data_1.txt"}},
      {".", true, {".csv"}}, {std::string(300, 'a'), true, {}}, {"", true, kAll}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.pattern.substr(0, 20));
    std::vector<std::string> names = {"stale"};
    EXPECT_EQ(TarnFileUtil::ReadDirPattern(dir.path(), c.pattern, names, c.atStart), STATUS_OK);
    EXPECT_EQ(Sorted(names), c.names);
    std::vector<std::u16string> wide = {u"stale"};
    EXPECT_EQ(TarnFileUtil::ReadDirPattern(W(dir.path()), W(c.pattern), wide, c.atStart), STATUS_OK);
    EXPECT_EQ(wide.size(), c.names.size());
  }
  std::vector<std::string> names;
  EXPECT_EQ(TarnFileUtil::ReadDirStartPattern(dir.path(), "data_", names), STATUS_OK);
  EXPECT_THAT(names, ElementsAre("data_1.txt"));
  std::vector<std::u16string> wide;
  EXPECT_EQ(TarnFileUtil::ReadDirPattern(W(dir.path()), u"with", wide, true), STATUS_OK);
  EXPECT_THAT(wide, ElementsAre(u"with space.csv"));
  EXPECT_EQ(TarnFileUtil::ReadDirEndPattern(W(dir.path()), u"\u00e9.csv", wide), STATUS_OK);
  EXPECT_THAT(wide, ElementsAre(u"\u00e9t\u00e9.csv"));
}

TEST(TarnFileUtilDir, ListMatchingFilesUsesWildcards) {
  TempDir dir;
  Populate(dir);
  struct Case { std::string pattern; std::vector<std::u16string> names; };
  const Case cases[] = {
      {dir / "*.csv", {u".csv", u"a.csv", u"sub.csv", u"with space.csv", u"\u00e9t\u00e9.csv"}},
      {dir / "?.csv", {u"a.csv"}}, {dir / "[ab].*", {u"a.csv", u"b.CSV"}}, {dir / "a.csv", {u"a.csv"}},
      {dir / "nothing*", {}}, {dir / "sv", {u"sv"}}, {dir / "missing/*", {}}, {dir.path() + "/", {}},
      {dir / ".*", {u".", u"..", u".csv"}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.pattern);
    std::vector<std::u16string> names = {u"stale"};
    TarnFileUtil::ListMatchingFiles(W(c.pattern), names);
    EXPECT_EQ(Sorted(names), Sorted(c.names));
  }
  std::vector<std::u16string> all;
  TarnFileUtil::ListMatchingFiles(W(dir / "*"), all);
  EXPECT_EQ(all.size(), 9u + 2u);  // "." and ".." included
}
