//===- TarnUtilities/system/TarnFileUtil.h - File system helpers -*- C++ -*-===//
//
// What the library and its callers need of the file system: existence tests,
// directories, listing, removing, copying, renaming and opening files by wide
// (UTF-16) names. Wide names are converted to UTF-8 before they are given to
// the system; narrow names are used byte for byte.
//
// Failures of the file system are never thrown: functions return a
// ZelStatusCode or a bool and, where stated, write a log line under the
// header "[%T|%n|%P|LIBUTIL|TarnFileUtil] ". Error codes printed in the
// messages are errno values. A name that contains a zero character (inside a
// std::string) names no file: it fails like a missing file.
//
// Example:
//   ZelStatusCode st = TarnFileUtil::CreateDirRecursive("out/run 1/csv");
//   if (st == STATUS_OK && !TarnFileUtil::FileCopy(u"model.par", u"out/run 1/model.par"))
//     ...  // the copy failed or both names are one file
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SYSTEM_TARNFILEUTIL_H
#define TARNUTILITIES_SYSTEM_TARNFILEUTIL_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/logging/ZelStatusCode.h"

#include <cstdio>
#include <list>
#include <memory>
#include <string>
#include <vector>

class TARN_API TarnFileUtil {
public:
  /// The log header of every line written by this class.
  static const char* const LOG_HEADER;

  /// Closes the C stream owned by a FilePtr.
  struct FILEDeleter {
    void operator()(std::FILE* file) const {
      if (file != nullptr)
        std::fclose(file);
    }
  };
  using FilePtr = std::unique_ptr<std::FILE, FILEDeleter>;

  /// @name Existence
  /// @{

  /// True if something (file, directory, ...) exists under the name; no log.
  static bool FileExists(const std::string& name);
  static bool FileExists(const std::u16string& name);
  static bool FileExists(const char* name);
  static bool FileExists(const char16_t* name);

  /// True if name is an existing directory (symbolic links are followed).
  /// status is STATUS_OK when the answer is certain: also for a missing name
  /// or a missing parent. A name that exists but is no directory gives false
  /// with ERR_FILE_IO (logged at trace level); any other failure of the
  /// system gives false with ERR_FILE_IO (logged at debug level).
  static bool IsExistingDir(const std::string& name, ZelStatusCode& status);
  static bool IsExistingDir(const std::u16string& name, ZelStatusCode& status);
  /// @}

  /// @name Directories
  /// @{

  /// Creates one directory (mode 0777 less the umask). An existing name is
  /// an error (ERR_FILE_IO), as is a missing parent; failures are logged at
  /// debug level.
  static ZelStatusCode CreateDir(const std::string& name);

  /// Creates a directory and every missing parent. The name is trimmed of
  /// surrounding white space; an empty name and an existing directory give
  /// STATUS_OK with nothing done.
  ///   "a/b/c" with no "a" => creates a, a/b, a/b/c; STATUS_OK
  static ZelStatusCode CreateDirRecursive(const std::string& name);

  /// Removes an empty directory; failures give ERR_FILE_IO, logged at warning
  /// level.
  static ZelStatusCode RemoveDir(const std::string& name);
  static ZelStatusCode RemoveDir(const std::u16string& name);

  /// Reads the names of a directory's entries (files and directories alike,
  /// without "." and "..") in the order the system gives them. The name is
  /// read as `dir + "/"`, so an empty name lists the root directory.
  /// ERR_INTERNAL with an empty list if the directory cannot be read.
  static ZelStatusCode ReadDir(const std::string& dir, std::list<std::string>& names);
  static ZelStatusCode ReadDir(const std::u16string& dir, std::list<std::u16string>& names);

  /// The entries of dir whose names start (start = true) or end (start =
  /// false) with pattern, compared exactly; no wildcards. A failure of
  /// ReadDir is logged at debug level and returned.
  ///   entries {"a.csv", ".csv", "b.CSV", "sv"}, end pattern ".csv" => {"a.csv", ".csv"}
  static ZelStatusCode ReadDirPattern(const std::string& dir, const std::string& pattern,
                                      std::vector<std::string>& names, bool start);
  static ZelStatusCode ReadDirPattern(const std::u16string& dir, const std::u16string& pattern,
                                      std::vector<std::u16string>& names, bool start);
  static ZelStatusCode ReadDirStartPattern(const std::string& dir, const std::string& pattern,
                                           std::vector<std::string>& names);
  static ZelStatusCode ReadDirEndPattern(const std::string& dir, const std::string& pattern,
                                         std::vector<std::string>& names);
  static ZelStatusCode ReadDirEndPattern(const std::u16string& dir,
                                         const std::u16string& pattern,
                                         std::vector<std::u16string>& names);

  /// The names of the entries matching a search pattern "directory/wildcards"
  /// (fnmatch: '*', '?', "[...]", case-sensitive; "." and ".." included when
  /// they match). A pattern without directory searches the current
  /// directory. names is cleared first; nothing is found if the directory
  /// cannot be read.
  ///   u"logs/*.txt" => {u"a.txt", u"b.txt"},  u"*" => {u".", u"..", ...}
  static void ListMatchingFiles(const std::u16string& pattern, std::vector<std::u16string>& names);
  /// @}

  /// @name Files
  /// @{

  /// Removes a file (not a directory); failures give ERR_FILE_IO, logged at
  /// warning level with the name in UTF-8.
  static ZelStatusCode RemoveFile(const std::u16string& name);
  static ZelStatusCode RemoveFile(const char16_t* name);
  static ZelStatusCode RemoveFile(const std::string& name);

  /// Renames (moves) a file or directory. Fails, leaving both names alone,
  /// when the target exists.
  static bool RenameFile(const std::u16string& source, const std::u16string& target);

  /// True if the two names denote one file on disk: the same name, or the
  /// same device and inode (another spelling of the path, a hard link or a
  /// symbolic link). Nothing is renamed or created. False if a does not
  /// exist.
  static bool IsSameOneFile(const std::u16string& a, const std::u16string& b);

  /// Copies the bytes of source to target (created, or truncated and
  /// rewritten). Returns false, without touching either file, if source is
  /// missing or a directory, or if both names are one file (logged at error
  /// level). Returns false if target cannot be opened or a read or write
  /// fails; then target holds what was written so far. The target keeps no
  /// attributes or times of the source.
  static bool FileCopy(const std::u16string& source, const std::u16string& target);

  /// The current directory; empty if it cannot be read.
  static std::u16string GetCwd();

  /// The absolute form of name against the current directory, "." and ".."
  /// removed lexically (see TarnFileNameUtil::normalize_path). Empty for an
  /// empty name.
  static std::u16string GetFullPathNameW(const std::u16string& name);

  /// fopen of a wide name with a wide mode ("r", "wb", "at+", ...; 't' is
  /// accepted and means nothing). The caller closes the stream. Null if the
  /// file cannot be opened or an argument is null.
  static std::FILE* wfopen(const std::u16string& name, const std::u16string& mode);
  static std::FILE* wfopen(const char16_t* name, const char16_t* mode);
  /// wfopen with the stream in an owning pointer.
  static FilePtr make_file(const std::u16string& name, const std::u16string& mode);
  static FilePtr make_file(const char16_t* name, const char16_t* mode);
  /// @}
};

#endif // TARNUTILITIES_SYSTEM_TARNFILEUTIL_H
