//===- TarnUtilities/system/TarnFileNameUtil.h - File names ----*- C++ -*-===//
//
// Taking file names apart and putting them together: extensions, directory
// and file name, joining, prefixes and suffixes, absolute names and quotes.
// Most operations come for narrow names (UTF-8) and for wide names (UTF-16).
//
// Both '/' and '\' are read as separators; '/' is the separator inserted.
// There are no drive letters: "C:" is an ordinary file-name text. Only
// normalize_path looks at the system (for the current directory); nothing
// here touches files. Names of any length are handled whole.
//
// The narrow and the wide form of an operation do not always agree, and on
// purpose: the wide path_has_ext is a case-insensitive suffix test, and the
// wide concat_path strips blanks and quotes and re-quotes only a result that
// contains a space. See the comments of each function.
//
// Example:
//   std::string dir, name;
//   TarnFileNameUtil::split_path("work/run.1/model.par", dir, name);
//   // dir == "work/run.1/", name == "model.par"
//   std::string out;
//   TarnFileNameUtil::concat_path(dir, "out.csv", out);  // "work/run.1/out.csv"
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SYSTEM_TARNFILENAMEUTIL_H
#define TARNUTILITIES_SYSTEM_TARNFILENAMEUTIL_H

#include "TarnUtilities/Export.h"

#include <string>
#include <vector>

class TARN_API TarnFileNameUtil {
public:
  /// @name Extensions
  /// The extension is the last component's text from its last '.' onward;
  /// a leading dot counts and "name." has an empty extension that counts.
  /// @{

  /// Pointer to the extension's dot, or to the terminating zero if there is
  /// none. A null path gives null.
  ///   "a/b.c/d" => "" (the end),  ".cfg" => ".cfg",  "x.tar.gz" => ".gz"
  static const char* path_find_ext(const char* path);
  static const char16_t* path_find_ext(const char16_t* path);

  /// True if the last component has an extension.
  ///   "a.txt" => true,  "dir.d/file" => false,  "name." => true
  static bool path_has_ext(const std::string& path);
  static bool path_has_ext(const std::u16string& path);
  static bool path_has_ext(const char* path);
  static bool path_has_ext(const char16_t* path);

  /// Narrow: true if path has the extension ext (one leading dot of ext is
  /// optional), comparing with ASCII letters folded. A path without an
  /// extension has only the empty one.
  ///   ("x.TXT", ".txt") => true,  ("x", "") => true,  ("x", ".") => false,
  ///   ("x.", "") => true,  ("a.txt", "xt") => false
  static bool path_has_ext(const std::string& path, const std::string& ext);
  static bool path_has_ext(const char* path, const char* ext);
  /// Wide: true if the lower-cased path ends with the lower-cased ext, a
  /// plain suffix test on the whole name.
  ///   (u"a.TXT", u".txt") => true,  (u"a.txt", u"xt") => true,
  ///   (u"abc", u"c") => true,  (u"a.txt", u"") => true
  static bool path_has_ext(const std::u16string& path, const std::u16string& ext);
  static bool path_has_ext(const char16_t* path, const char16_t* ext);

  /// Removes the extension and its dot, in place.
  ///   "d.x/f.tar.gz" => "d.x/f.tar",  "d.x/f" => "d.x/f"
  static void path_remove_ext(std::string& path);
  static void path_remove_ext(std::u16string& path);
  static void path_remove_ext(char* path);

  /// Replaces or adds the extension; one leading dot of ext is optional. An
  /// empty ext leaves a name that ends with a dot.
  ///   ("a.b.c", "d") => "a.b.d",  ("a", ".d") => "a.d",  ("a.txt", "") => "a."
  static void path_set_ext(std::string& path, const std::string& ext);
  static void path_set_ext(std::u16string& path, const std::u16string& ext);
  static void path_set_ext(const std::string& path, const std::string& ext, std::string& out);
  static void path_set_ext(const std::u16string& path, const std::u16string& ext,
                           std::u16string& out);
  /// @}

  /// @name Directories and file names
  /// In every function with an `out` argument, out may be the same object as
  /// an input.
  /// @{

  /// Splits at the last separator: dir keeps its trailing separator.
  ///   "C:\\work\\a.txt" => ("C:\\work\\", "a.txt"),  "a.txt" => ("", "a.txt"),
  ///   "d/" => ("d/", "")
  static void split_path(const std::string& path, std::string& dir, std::string& name);
  static void split_path(const std::u16string& path, std::u16string& dir, std::u16string& name);

  /// dir (with '/' added unless it ends with a separator) followed by the
  /// last component of name; any directory in name is dropped.
  ///   ("C:\\dir", "x\\y.z") => "C:\\dir/y.z",  ("", "a/b") => "b"
  static void make_path(const std::string& dir, const std::string& name, std::string& out);
  static void make_path(const std::u16string& dir, const std::u16string& name,
                        std::u16string& out);

  /// Joins part to path; an empty path gives part unchanged. A separator is
  /// added unless path already ends with one, also for an empty part. A
  /// quoted path or part is handled inside its quotes: the narrow join keeps
  /// a quoted part's quotes around the whole result and puts the separator
  /// and part inside the quotes of a quoted path; both are trimmed of
  /// surrounding white space first.
  ///   ("dir", "") => "dir/",  ("", "f") => "f",  ("\"my dir\"", "f") => "\"my dir/f\"",
  ///   ("d", "\"f g\"") => "\"d/f g\""
  static void concat_path(std::string& path, const std::string& part);
  static void concat_path(const std::string& path, const std::string& part, std::string& out);
  /// Joins each element of parts in turn. With an empty path the first
  /// non-empty element starts the result; later empty elements still add a
  /// separator when the text so far does not end with one.
  ///   ("", {"", "a", "", "b"}) => "a/b",  ("", {"", "a", ""}) => "a/"
  static void concat_path(const std::string& path, const std::vector<std::string>& parts,
                          std::string& out);
  /// Wide join: spaces around path and part and one pair of enclosing quotes
  /// of each are removed, a separator is put between them, and the result is
  /// quoted again only if path was quoted and the result has a space.
  ///   (u" d ", u"\"f\"") => u"d/f",  (u"\"a b\"", u"c") => u"\"a b/c\"",
  ///   (u"\"ab\"", u"c") => u"ab/c"
  static void concat_path(const std::u16string& path, const std::u16string& part,
                          std::u16string& out);

  /// Puts prefix before the file name, keeping the directory.
  ///   ("d/f.txt", "old_") => "d/old_f.txt"
  static void add_file_name_prefix(const std::string& path, const std::string& prefix,
                                   std::string& out);
  static void add_file_name_prefix(const std::u16string& path, const std::u16string& prefix,
                                   std::u16string& out);

  /// Puts suffix between the file name and its extension.
  ///   ("d/file.txt", "_1") => "d/file_1.txt",  ("C:\\d.x\\f", "_2") => "C:\\d.x\\f_2"
  static void add_file_name_suffix(const std::string& path, const std::string& suffix,
                                   std::string& out);
  static void add_file_name_suffix(const std::u16string& path, const std::u16string& suffix,
                                   std::u16string& out);
  /// @}

  /// @name Absolute names and quotes
  /// @{

  /// The absolute form of path: relative names are taken against the current
  /// directory, "." and ".." are removed without looking at the disk (no
  /// links are followed, nothing needs to exist), separators become '/'. An
  /// empty path stays empty. A quoted path stays quoted: the narrow form
  /// always, the wide form only when the result contains a space. If the
  /// current directory cannot be read, a relative name gives "" (or "\"\""
  /// for the narrow quoted form).
  ///   cwd "/w": "a/../b" => "/w/b",  "\"x y\"" => "\"/w/x y\"",  "/p/./q/" => "/p/q/"
  static void normalize_path(const std::string& path, std::string& out);
  static void normalize_path(const std::u16string& path, std::u16string& out);

  /// Removes one pair of enclosing quotes (a string of at least two
  /// characters that starts and ends with '"'), in place.
  ///   u"\"a b\"" => u"a b",  u"\"" => u"\"",  u"\"a" => u"\"a"
  static void path_unquote(std::u16string& path);
  static void path_unquote(char16_t* path);
  /// @}
};

#endif // TARNUTILITIES_SYSTEM_TARNFILENAMEUTIL_H
