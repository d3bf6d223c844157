//===- TarnFileNameUtil_test.cpp - File names -------------------------------===//
//
// A table of names per operation, plus properties over generated names:
// split_path and make_path undo each other, and normalize_path matches
// std::filesystem's lexical normalisation.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/system/TarnFileNameUtil.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

using F = TarnFileNameUtil;

namespace {

std::u16string W(const std::string& s) { return TarnStringUtil::utf8_to_wide(s); }
std::string N(const std::u16string& s) { return TarnStringUtil::wide_to_utf8(s); }
std::string Cwd() { return std::filesystem::current_path().string(); }

// Runs op(a, b, out) on the narrow arguments and on their wide forms and
// returns the narrow result; the wide one must be the same text.
template <typename Op> std::string Both(Op op, const std::string& a, const std::string& b) {
  std::string out = "junk";
  std::u16string wide = u"junk";
  op(a, b, out);
  op(W(a), W(b), wide);
  EXPECT_EQ(N(wide), out) << "wide form";
  return out;
}

} // namespace

TEST(TarnFileNameUtil, FindExtensionLooksOnlyAtTheLastComponent) {
  struct Case { const char* path; const char* ext; };
  const Case cases[] = {{"a/b.c/d", ""}, {"a\\b.c\\d", ""}, {".cfg", ".cfg"}, {"x.tar.gz", ".gz"},
                        {"name.", "."},  {"", ""},          {"dir.d/", ""},   {"a/.profile", ".profile"},
                        {"noext", ""},   {"a.b\\c.d", ".d"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    EXPECT_STREQ(F::path_find_ext(c.path), c.ext);
    const std::u16string wide = W(c.path);
    EXPECT_EQ(N(F::path_find_ext(wide.c_str())), c.ext);
    // Only the one-argument forms agree with the search.
    const int has = *c.ext != '\0' ? 4 : 0;
    EXPECT_EQ(F::path_has_ext(c.path) + F::path_has_ext(std::string(c.path)) +
                  F::path_has_ext(wide) + F::path_has_ext(wide.c_str()), has);
  }
  EXPECT_EQ(F::path_find_ext(static_cast<const char*>(nullptr)), nullptr);
  EXPECT_FALSE(F::path_has_ext(static_cast<const char*>(nullptr)));
}

TEST(TarnFileNameUtil, NarrowHasExtComparesTheExtensionAsciiFolded) {
  struct Case { const char* path; const char* ext; bool has; };
  const Case cases[] = {
      {"x.TXT", ".txt", true}, {"x.txt", "TXT", true}, {"x.tXt", "TxT", true}, // ASCII only
      {"x.\xC3\x84", ".\xC3\xA4", false}, {"x", "", true}, {"x", ".", false}, {"x.", "", true},
      {"x.", ".", true}, {"x.txt", "", false}, {"dir.d/x", "d", false}, {"dir.d/x", "", true},
      // The whole extension, not a suffix.
      {"a.txt", "xt", false}, {"a.txt", ".tx", false}, {"a.txt", ".txtx", false},
      {"a.txt", "..txt", false}, {".cfg", "cfg", true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.path) + " | " + c.ext);
    EXPECT_EQ(F::path_has_ext(c.path, c.ext), c.has);
    EXPECT_EQ(F::path_has_ext(std::string(c.path), std::string(c.ext)), c.has);
  }
  EXPECT_TRUE(F::path_has_ext(static_cast<const char*>(nullptr), static_cast<const char*>(nullptr)));
}

TEST(TarnFileNameUtil, WideHasExtIsALowerCasedSuffixTest) {
  struct Case { const char* path; const char* ext; bool has; };
  const Case cases[] = {
      {"a.txt", ".txt", true}, {"a.txt", "xt", true}, {"A.TXT", ".txt", true},
      {"a.txt", ".TXT", true}, {"a.txt", "", true},   {"", "", true}, {"a.txt", "a.txt", true},
      {"a.txt", ".csv", false}, {"t", "a.t", false},  {"", "x", false},
      {"r\xC3\x84.D\xC3\x84T", "\xC3\xA4.d\xC3\xA4t", true}, {"\xC3\x9C", "\xC3\xBC", true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.path) + " | " + c.ext);
    EXPECT_EQ(F::path_has_ext(W(c.path), W(c.ext)), c.has);
    EXPECT_EQ(F::path_has_ext(W(c.path).c_str(), W(c.ext).c_str()), c.has);
  }
}

TEST(TarnFileNameUtil, SetAndRemoveExtension) {
  struct Case { const char* path; const char* ext; const char* out; };
  const Case cases[] = {{"a.b.c", "d", "a.b.d"}, {"a", ".d", "a.d"},  {"a", "d", "a.d"},
                        {"a", "", "a."},         {"a.txt", "", "a."}, {"a.txt", ".", "a."},
                        {"a.", "x", "a.x"},      {"d.d/f", "x", "d.d/f.x"}, {"", "x", ".x"},
                        {"a.txt", "..x", "a..x"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.path) + " | " + c.ext);
    EXPECT_EQ(Both([](const auto& p, const auto& e, auto& o) { F::path_set_ext(p, e, o); }, c.path,
                   c.ext), c.out);
    EXPECT_EQ(Both([](auto p, const auto& e, auto& o) { F::path_set_ext(p, e), o = p; }, c.path,
                   c.ext), c.out);
  }
  const Case removed[] = {{"d.x/f.tar.gz", "", "d.x/f.tar"}, {"d.x/f", "", "d.x/f"},
                          {".cfg", "", ""}, {"name.", "", "name"}, {"", "", ""},
                          {"a\\b.c", "", "a\\b"}};
  for (const Case& c : removed) {
    SCOPED_TRACE(c.path);
    std::string narrow = c.path;
    F::path_remove_ext(narrow);
    EXPECT_EQ(narrow, c.out);
    std::u16string wide = W(c.path);
    F::path_remove_ext(wide);
    EXPECT_EQ(N(wide), c.out);
    std::vector<char> array(c.path, c.path + std::strlen(c.path) + 1);
    F::path_remove_ext(array.data());
    EXPECT_STREQ(array.data(), c.out);
  }
  F::path_remove_ext(static_cast<char*>(nullptr));
}


TEST(TarnFileNameUtil, MakePathDropsTheDirectoryOfTheName) {
  struct Case { const char* dir; const char* name; const char* out; };
  const Case cases[] = {{"C:\\dir", "x\\y.z", "C:\\dir/y.z"}, {"C:\\dir\\", "y.z", "C:\\dir\\y.z"},
                        {"", "a/b", "b"}, {"d", "", "d/"}, {"", "", ""}, {"d/", "/", "d/"},
                        {"/", "f", "/f"}, {"a b", "c d.e", "a b/c d.e"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.dir) + " | " + c.name);
    EXPECT_EQ(Both([](const auto& d, const auto& n, auto& o) { F::make_path(d, n, o); }, c.dir,
                   c.name), c.out);
  }
}

TEST(TarnFileNameUtil, SplitThenMakeGivesThePathBack) {
  // Names of pieces with separators, dots, blanks and non-ASCII text.
  static const char* const kPieces[] = {"a", "bc", ".", "..", "/", "\\", " ",
                                        "x.y", "é", "\"", "C:", ".txt", "d.d"};
  std::mt19937 rng(1);
  for (int round = 0; round < 500; ++round) {
    std::string path;
    for (int n = rng() % 9; n > 0; --n)
      path += kPieces[rng() % 13];
    SCOPED_TRACE(path);
    std::string dir, name, joined;
    F::split_path(path, dir, name);
    EXPECT_EQ(name.find_first_of("/\\"), std::string::npos);
    F::make_path(dir, name, joined);
    EXPECT_EQ(dir + name + "|" + joined, path + "|" + path);
    std::u16string wdir, wname; // the wide forms split at the same place
    F::split_path(W(path), wdir, wname);
    EXPECT_EQ(N(wdir) + "|" + N(wname), dir + "|" + name);
    std::string alias = path, alias2 = path; // the outputs may alias the input
    F::split_path(alias, alias, joined);
    F::split_path(alias2, joined, alias2);
    EXPECT_EQ(alias + "|" + alias2, dir + "|" + name);
  }
}

TEST(TarnFileNameUtil, PrefixAndSuffixKeepDirectoryAndExtension) {
  struct Case { const char* path; const char* prefix; const char* suffix;
                const char* withPrefix; const char* withSuffix; };
  const Case cases[] = {
      {"d/f.txt", "old_", "_1", "d/old_f.txt", "d/f_1.txt"}, {"d\\file", "p", "_1", "d\\pfile", "d\\file_1"},
      {"C:\\d.x\\f", "p", "_2", "C:\\d.x\\pf", "C:\\d.x\\f_2"}, {"f", "p", "s", "pf", "fs"},
      {"", "p", "s", "p", "s"}, {".cfg", "p", "_s", "p.cfg", "_s.cfg"}, {"d/", "p", "s", "d/p", "d/s"},
      // A separator in the prefix is cut away with the directory it names.
      {"d/f", "x/", "", "d/f", "d/f"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    EXPECT_EQ(Both([](const auto& p, const auto& x, auto& o) { F::add_file_name_prefix(p, x, o); },
                   c.path, c.prefix), c.withPrefix);
    EXPECT_EQ(Both([](const auto& p, const auto& x, auto& o) { F::add_file_name_suffix(p, x, o); },
                   c.path, c.suffix), c.withSuffix);
  }
}


TEST(TarnFileNameUtil, NarrowConcatPath) {
  struct Case { const char* path; const char* part; const char* out; };
  const Case cases[] = {
      {"dir", "", "dir/"}, {"", "f", "f"}, {"", "", ""}, {"dir", "f", "dir/f"}, {"dir/", "f", "dir/f"},
      {"dir\\", "f", "dir\\f"}, {"/", "f", "/f"},
      // A quoted path takes the separator and part inside its quotes.
      {"\"my dir\"", "f", "\"my dir/f\""}, {"\"my dir/\"", "f", "\"my dir/f\""}, {"\"d\"", "", "\"d/\""},
      // A quoted part keeps its quotes around the whole result; the path is
      // put inside them as it stands.
      {"d", "\"f g\"", "\"d/f g\""}, {"d/", "\"f\"", "\"d/f\""}, {"\"a b\"", "\"c\"", "\"\"a b\"/c\""},
      // The path is trimmed of surrounding white space; the part is not.
      {" d ", "f ", "d/f "}, {"", "  f", "  f"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.path) + " | " + c.part);
    std::string out = "junk", inPlace = c.path;
    F::concat_path(c.path, c.part, out);
    EXPECT_EQ(out, c.out);
    F::concat_path(inPlace, std::string(c.part));
    EXPECT_EQ(inPlace, c.out);
  }
  std::string same = "d";
  F::concat_path(same, same, same);
  EXPECT_EQ(same, "d/d");
}

TEST(TarnFileNameUtil, WideConcatPathStripsAndRequotes) {
  struct Case { const char* path; const char* part; const char* out; };
  const Case cases[] = {
      {"dir", "", "dir/"}, {"", "f", "f"}, {"", " \"f\" ", " \"f\" "}, {"dir\\", "f", "dir\\f"},
      // Blanks and one pair of quotes of each side go.
      {" d ", "\"f\"", "d/f"}, {"  \"d\"  ", "  f  ", "d/f"},
      // A quoted path is quoted again only when the result has a space.
      {"\"a b\"", "c", "\"a b/c\""}, {"\"ab\"", "c", "ab/c"}, {"\"ab\"", "c d", "\"ab/c d\""},
      {"a b", "c", "a b/c"},
      // Nothing left of the path after stripping: no separator.
      {"\"\"", "f", "f"}, {"   ", "f", "f"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.path) + " | " + c.part);
    std::u16string out = u"junk";
    F::concat_path(W(c.path), W(c.part), out);
    EXPECT_EQ(N(out), c.out);
  }
  std::u16string same = u"\"a b\"";
  F::concat_path(same, same, same);
  EXPECT_EQ(same, u"\"a b/a b\"");
}

TEST(TarnFileNameUtil, ConcatPathListJoinsEveryElement) {
  struct Case { const char* path; std::vector<std::string> parts; const char* out; };
  const Case cases[] = {
      {"", {"", "a", "", "b"}, "a/b"}, {"", {"", "a", ""}, "a/"}, {"", {}, ""}, {"", {"", ""}, ""},
      {"r", {"a", "b"}, "r/a/b"}, {"r", {"", ""}, "r/"}, {"r", {}, "r"}, {"", {"a"}, "a"},
      {"\"r s\"", {"a", "b"}, "\"r s/a/b\""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    std::string out = "junk";
    F::concat_path(std::string(c.path), c.parts, out);
    EXPECT_EQ(out, c.out);
  }
}


TEST(TarnFileNameUtil, NormalizePathIsLexicalAndWideRequotesOnlyWithSpaces) {
  const std::string cwd = Cwd();
  struct Case { bool wide; const char* path; std::string out; };
  const Case cases[] = {
      {false, "", ""}, {false, "/p/./q/", "/p/q/"}, {false, "/", "/"}, {false, "\\p\\q", "/p/q"},
      {false, ".", cwd}, {false, "\"x y\"", "\"" + cwd + "/x y\""}, {false, "\"/p/../q\"", "\"/q\""},
      {false, "\"/p q/..\"", "\"/\""}, {true, "", ""}, {true, "\"/p/q\"", "/p/q"},
      {true, "\"/p q/r\"", "\"/p q/r\""}, {true, "/p/\xC3\xA9/../\xC3\xA9", "/p/\xC3\xA9"},
      {true, "sub", cwd + "/sub"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    std::string out = "junk";
    std::u16string wide = u"junk";
    if (c.wide)
      F::normalize_path(W(c.path), wide), out = N(wide);
    else
      F::normalize_path(c.path, out);
    EXPECT_EQ(out, c.out);
  }
  // Against std::filesystem: names of plain components, "." and "..", with
  // a name last, so that its trailing-separator rules do not come into play.
  static const char* const kParts[] = {"a", "bb", ".", "..", "", "c d"};
  std::mt19937 rng(7);
  for (int i = 0; i < 400; ++i) {
    std::string path = rng() % 2 ? "/" : "";
    for (int n = rng() % 7; n > 0; --n)
      path += std::string(kParts[rng() % 6]) + "/";
    path += "leaf";
    SCOPED_TRACE(path);
    std::string out;
    F::normalize_path(path, out);
    EXPECT_EQ(out, (std::filesystem::path(cwd) / path).lexically_normal().string());
  }
}

TEST(TarnFileNameUtil, PathUnquoteRemovesOnePair) {
  struct Case { const char* path; const char* out; };
  const Case cases[] = {{"\"a b\"", "a b"}, {"\"\"", ""}, {"\"", "\""}, {"\"a", "\"a"},
                        {"a\"", "a\""}, {"\"\"x\"\"", "\"x\""}, {"", ""}, {" \"a\"", " \"a\""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    std::u16string s = W(c.path);
    F::path_unquote(s);
    EXPECT_EQ(N(s), c.out);
    std::vector<char16_t> buffer(s.size() + 3);
    std::u16string(W(c.path)).copy(buffer.data(), buffer.size());
    F::path_unquote(buffer.data());
    EXPECT_EQ(N(buffer.data()), c.out);
  }
  F::path_unquote(static_cast<char16_t*>(nullptr));
}
