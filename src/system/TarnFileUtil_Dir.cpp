//===- TarnFileUtil_Dir.cpp - Listing directories ---------------------------===//
//
// ReadDir and its pattern filters over opendir/readdir, and ListMatchingFiles
// with fnmatch. Entry names come back in the order of the system, unsorted;
// wide forms convert names from UTF-8 (bytes that are not UTF-8 are read as
// Latin-1, one unit per byte).
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/system/TarnFileNameUtil.h"
#include "TarnUtilities/system/TarnFileUtil.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "system/SystemName.h"

#include <cstring>
#include <dirent.h>
#include <fnmatch.h>

using TarnSystemName::FromNarrow;
using TarnSystemName::FromWide;
using TarnSystemName::Name;

namespace {

// Calls visit(name) for every entry of the directory, "." and ".." included.
// False if the directory cannot be opened.
template <typename Visit> bool ForEachEntry(const Name& dir, Visit visit) {
  if (!dir.valid)
    return false;
  DIR* stream = ::opendir(dir.c_str());
  if (stream == nullptr)
    return false;
  while (const dirent* entry = ::readdir(stream))
    visit(entry->d_name);
  ::closedir(stream);
  return true;
}

bool IsDotOrDotDot(const char* name) {
  return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

// The directory is read as `dir + "/"`, so "" lists the root directory, as a
// search of "/*" would.
Name AsDirectory(Name dir) {
  dir.bytes.push_back('/');
  return dir;
}

template <typename String>
bool Matches(const String& name, const String& pattern, bool start) {
  if (name.size() < pattern.size())
    return false;
  const std::size_t from = start ? 0 : name.size() - pattern.size();
  return name.compare(from, pattern.size(), pattern) == 0;
}

template <typename String, typename List>
ZelStatusCode FilterByPattern(ZelStatusCode readStatus, const List& entries, const String& pattern,
                              std::vector<String>& names, bool start) {
  if (readStatus != STATUS_OK) {
    ZEL_LOG_DEBUG(TarnFileUtil::LOG_HEADER,
                  ZEL_MESSAGE("TarnFileUtil::ReadDir in TarnFileUtil::ReadDirPattern returned %d",
                              static_cast<int>(readStatus))
                      .c_str());
    return readStatus;
  }
  for (const String& name : entries)
    if (Matches(name, pattern, start))
      names.push_back(name);
  return STATUS_OK;
}

} // namespace

ZelStatusCode TarnFileUtil::ReadDir(const std::string& dir, std::list<std::string>& names) {
  names.clear();
  const bool ok = ForEachEntry(AsDirectory(FromNarrow(dir)), [&names](const char* name) {
    if (!IsDotOrDotDot(name))
      names.emplace_back(name);
  });
  return ok ? STATUS_OK : ERR_INTERNAL;
}

ZelStatusCode TarnFileUtil::ReadDir(const std::u16string& dir, std::list<std::u16string>& names) {
  names.clear();
  const bool ok = ForEachEntry(AsDirectory(FromWide(dir)), [&names](const char* name) {
    if (!IsDotOrDotDot(name))
      names.push_back(TarnStringUtil::utf8_to_wide(name));
  });
  return ok ? STATUS_OK : ERR_INTERNAL;
}

ZelStatusCode TarnFileUtil::ReadDirPattern(const std::string& dir, const std::string& pattern,
                                           std::vector<std::string>& names, bool start) {
  names.clear();
  std::list<std::string> entries;
  const ZelStatusCode status = ReadDir(dir, entries);
  return FilterByPattern(status, entries, pattern, names, start);
}

ZelStatusCode TarnFileUtil::ReadDirPattern(const std::u16string& dir,
                                           const std::u16string& pattern,
                                           std::vector<std::u16string>& names, bool start) {
  names.clear();
  std::list<std::u16string> entries;
  const ZelStatusCode status = ReadDir(dir, entries);
  return FilterByPattern(status, entries, pattern, names, start);
}

ZelStatusCode TarnFileUtil::ReadDirStartPattern(const std::string& dir, const std::string& pattern,
                                                std::vector<std::string>& names) {
  return ReadDirPattern(dir, pattern, names, true);
}

ZelStatusCode TarnFileUtil::ReadDirEndPattern(const std::string& dir, const std::string& pattern,
                                              std::vector<std::string>& names) {
  return ReadDirPattern(dir, pattern, names, false);
}

ZelStatusCode TarnFileUtil::ReadDirEndPattern(const std::u16string& dir,
                                              const std::u16string& pattern,
                                              std::vector<std::u16string>& names) {
  return ReadDirPattern(dir, pattern, names, false);
}

void TarnFileUtil::ListMatchingFiles(const std::u16string& pattern,
                                     std::vector<std::u16string>& names) {
  names.clear();
  std::u16string dir;
  std::u16string wildcards;
  TarnFileNameUtil::split_path(pattern, dir, wildcards);
  const Name searched = FromWide(dir.empty() ? std::u16string(u".") : dir);
  const Name match = FromWide(wildcards);
  if (!match.valid || match.bytes.empty())
    return;
  ForEachEntry(searched, [&names, &match](const char* name) {
    if (::fnmatch(match.c_str(), name, 0) == 0)
      names.push_back(TarnStringUtil::utf8_to_wide(name));
  });
}
