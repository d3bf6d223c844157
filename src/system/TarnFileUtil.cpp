//===- TarnFileUtil.cpp - Existence, directories, removal, opening ----------===//
//
// The single-name operations of TarnFileUtil. Copying and the same-file test
// live in TarnFileUtil_Copy.cpp, directory listing in TarnFileUtil_Dir.cpp.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/system/TarnFileUtil.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/system/TarnFileNameUtil.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "system/PathLexical.h"
#include "system/SystemName.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using TarnSystemName::FromNarrow;
using TarnSystemName::FromWide;
using TarnSystemName::Name;

const char* const TarnFileUtil::LOG_HEADER = "[%T|%n|%P|LIBUTIL|TarnFileUtil] ";

namespace {

bool Exists(const Name& name) { return name.valid && ::access(name.c_str(), F_OK) == 0; }

bool ExistingDir(const Name& name, ZelStatusCode& status) {
  status = STATUS_OK;
  struct stat info {};
  const int rc = name.valid ? ::stat(name.c_str(), &info) : -1;
  const int error = name.valid ? errno : EINVAL;
  if (rc != 0) {
    if (error == ENOENT || error == ENOTDIR)
      return false;
    status = ERR_FILE_IO;
    ZEL_LOG_DEBUG(TarnFileUtil::LOG_HEADER,
                  ZEL_MESSAGE("Failed to check existence of %s (system error code = %ld)",
                              name.c_str(), static_cast<long>(error))
                      .c_str());
    return false;
  }
  if (S_ISDIR(info.st_mode))
    return true;
  ZEL_LOG_TRACE(TarnFileUtil::LOG_HEADER,
                ZEL_MESSAGE("%s exists but is no directory", name.c_str()).c_str());
  status = ERR_FILE_IO;
  return false;
}

ZelStatusCode RemoveDirectory(const Name& name) {
  if (name.valid && ::rmdir(name.c_str()) == 0)
    return STATUS_OK;
  const int error = name.valid ? errno : EINVAL;
  ZEL_LOG_WARNING(TarnFileUtil::LOG_HEADER,
                  ZEL_MESSAGE("Failed to remove directory %s (errorcode = %d)", name.c_str(),
                              error)
                      .c_str());
  return ERR_FILE_IO;
}

ZelStatusCode Unlink(const Name& name) {
  if (name.valid && ::unlink(name.c_str()) == 0)
    return STATUS_OK;
  const int error = name.valid ? errno : EINVAL;
  ZEL_LOG_WARNING(TarnFileUtil::LOG_HEADER,
                  ZEL_MESSAGE("Failed to delete file %s (errorcode = %d)", name.c_str(), error)
                      .c_str());
  return ERR_FILE_IO;
}

// Renames without replacing an existing target. renameat2 does this in one
// step; file systems that do not support it get a test and a plain rename.
bool RenameNoReplace(const char* source, const char* target) {
  if (::renameat2(AT_FDCWD, source, AT_FDCWD, target, RENAME_NOREPLACE) == 0)
    return true;
  if (errno != EINVAL && errno != ENOSYS)
    return false;
  struct stat info {};
  if (::lstat(target, &info) == 0 || errno != ENOENT)
    return false;
  return std::rename(source, target) == 0;
}

// One step of the directory creation: the name to create and its parent.
struct PendingDir {
  std::string name;
  std::string parent;
};

} // namespace

// ------------------------------------------------------------------ existence

bool TarnFileUtil::FileExists(const std::string& name) { return Exists(FromNarrow(name)); }
bool TarnFileUtil::FileExists(const std::u16string& name) { return Exists(FromWide(name)); }
bool TarnFileUtil::FileExists(const char* name) {
  return name != nullptr && ::access(name, F_OK) == 0;
}
bool TarnFileUtil::FileExists(const char16_t* name) { return Exists(FromWide(name)); }

bool TarnFileUtil::IsExistingDir(const std::string& name, ZelStatusCode& status) {
  return ExistingDir(FromNarrow(name), status);
}
bool TarnFileUtil::IsExistingDir(const std::u16string& name, ZelStatusCode& status) {
  return ExistingDir(FromWide(name), status);
}

// ---------------------------------------------------------------- directories

ZelStatusCode TarnFileUtil::CreateDir(const std::string& name) {
  const Name system = FromNarrow(name);
  if (system.valid && ::mkdir(system.c_str(), 0777) == 0)
    return STATUS_OK;
  const int error = system.valid ? errno : EINVAL;
  ZEL_LOG_DEBUG(LOG_HEADER, ZEL_MESSAGE("Failed to create directory %s (errorcode=%d)",
                                        system.c_str(), error)
                                .c_str());
  return ERR_FILE_IO;
}

ZelStatusCode TarnFileUtil::CreateDirRecursive(const std::string& name) {
  // Walk up from name to the first ancestor that exists, remembering each
  // level, then create the levels top-down. This is the recursion "create the
  // parent, then the child" without using the stack, so a name of any length
  // is safe.
  std::vector<PendingDir> pending;
  std::string current = name;
  TarnStringUtil::Trim(current);
  // The system takes no name of PATH_MAX bytes or more; refusing it here
  // also bounds the walk below.
  if (current.size() >= PATH_MAX) {
    ZEL_LOG_DEBUG(LOG_HEADER, ZEL_MESSAGE("Failed to create directory %s (errorcode=%d)",
                                          current.c_str(), ENAMETOOLONG)
                                  .c_str());
    return ERR_FILE_IO;
  }
  ZelStatusCode status = STATUS_OK;
  if (current.empty() || IsExistingDir(current, status))
    return STATUS_OK;
  // Both separators take a name apart; the system knows only '/', so
  // "b1\b2" becomes "b1/b2" and creates b2 inside b1.
  std::replace(current.begin(), current.end(), '\\', '/');
  while (!current.empty() && !IsExistingDir(current, status)) {
    if (TarnPath::IsSeparator(current.back()))
      current.pop_back();
    PendingDir level;
    TarnFileNameUtil::split_path(current, level.parent, level.name);
    level.name = current;
    current = level.parent;
    TarnStringUtil::Trim(current);
    const bool parentExists = IsExistingDir(level.parent, status);
    pending.push_back(std::move(level));
    if (parentExists)
      break;
  }
  ZelStatusCode result = STATUS_OK;
  for (auto it = pending.rbegin(); it != pending.rend(); ++it) {
    std::string parent = it->parent;
    TarnStringUtil::Trim(parent);
    if (!parent.empty() && !IsExistingDir(it->parent, status))
      result = ERR_FILE_IO;
    else if (IsExistingDir(it->name, status))
      result = STATUS_OK;  // "a//": the level below already made "a/"
    else
      result = CreateDir(it->name);
  }
  return result;
}

ZelStatusCode TarnFileUtil::RemoveDir(const std::string& name) {
  return RemoveDirectory(FromNarrow(name));
}
ZelStatusCode TarnFileUtil::RemoveDir(const std::u16string& name) {
  return RemoveDirectory(FromWide(name));
}

// ---------------------------------------------------------------------- files

ZelStatusCode TarnFileUtil::RemoveFile(const std::u16string& name) { return Unlink(FromWide(name)); }
ZelStatusCode TarnFileUtil::RemoveFile(const char16_t* name) { return Unlink(FromWide(name)); }
ZelStatusCode TarnFileUtil::RemoveFile(const std::string& name) { return Unlink(FromNarrow(name)); }

bool TarnFileUtil::RenameFile(const std::u16string& source, const std::u16string& target) {
  const Name from = FromWide(source);
  const Name to = FromWide(target);
  return from.valid && to.valid && RenameNoReplace(from.c_str(), to.c_str());
}

std::u16string TarnFileUtil::GetCwd() {
  std::string buffer(4096, '\0');
  for (;;) {
    if (::getcwd(&buffer[0], buffer.size()) != nullptr)
      return TarnStringUtil::utf8_to_wide(buffer.c_str());
    if (errno != ERANGE || buffer.size() > (std::size_t(1) << 24))
      return std::u16string();
    buffer.resize(buffer.size() * 2);
  }
}

std::u16string TarnFileUtil::GetFullPathNameW(const std::u16string& name) {
  std::u16string full;
  TarnFileNameUtil::normalize_path(name, full);
  return full;
}

std::FILE* TarnFileUtil::wfopen(const std::u16string& name, const std::u16string& mode) {
  const Name file = FromWide(name);
  const Name how = FromWide(mode);
  if (!file.valid || !how.valid) {
    errno = EINVAL;
    return nullptr;
  }
  return std::fopen(file.c_str(), how.c_str());
}

std::FILE* TarnFileUtil::wfopen(const char16_t* name, const char16_t* mode) {
  if (name == nullptr || mode == nullptr) {
    errno = EINVAL;
    return nullptr;
  }
  return wfopen(std::u16string(name), std::u16string(mode));
}

TarnFileUtil::FilePtr TarnFileUtil::make_file(const std::u16string& name,
                                              const std::u16string& mode) {
  return FilePtr(wfopen(name, mode));
}
TarnFileUtil::FilePtr TarnFileUtil::make_file(const char16_t* name, const char16_t* mode) {
  return FilePtr(wfopen(name, mode));
}
