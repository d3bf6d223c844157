//===- TarnFileUtil_F.cpp - Fortran entry points of TarnFileUtil ------------===//
//
// File helpers for Fortran callers, all on UTF-8 names, and the user-open
// pair that lets a Fortran open statement with a user-supplied open
// function open a file with a UTF-8 name:
//
//   TarnFileUtil_UserOpenWin_SetFilename_F(name, len)   keeps the pointer and
//                                                       the length, not a copy
//   TarnFileUtil_UserOpenWin_F(...)                     opens the kept name
//
// The open takes the Win32 values of desired access and creation
// disposition and opens with open(2): GENERIC_READ (0x80000000) and
// GENERIC_WRITE (0x40000000) give O_RDONLY, O_WRONLY or O_RDWR; CREATE_NEW
// (1) O_CREAT|O_EXCL, CREATE_ALWAYS (2) O_CREAT|O_TRUNC, OPEN_EXISTING (3)
// nothing more, OPEN_ALWAYS (4) O_CREAT, TRUNCATE_EXISTING (5) O_TRUNC. The
// share mode has no counterpart and is ignored; the random-access hint
// becomes posix_fadvise(POSIX_FADV_RANDOM). The result is the file
// descriptor, or -1 on failure (logged at warning level).
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/TarnFortranBinding.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/system/TarnFileUtil.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "TarnUtilities/text/TarnUtfUtil.h"
#include "container/FortranArgs.h"

#include <cstdint>
#include <fcntl.h>
#include <unistd.h>

using namespace ZEL_detail;

TARN_FORTRAN_BINDING("TarnFileUtil_F");

namespace {

// The name kept for the next user open: the caller's characters, not a copy.
const char* g_userOpenName = nullptr;
std::int32_t g_userOpenLength = 0;

constexpr std::uint32_t kGenericRead = 0x80000000u;
constexpr std::uint32_t kGenericWrite = 0x40000000u;

// open(2) flags for a Win32 access mask and creation disposition; false
// for a disposition that has none.
bool OpenFlags(std::uint32_t access, std::int32_t disposition, int& flags) {
  const bool read = (access & kGenericRead) != 0;
  const bool write = (access & kGenericWrite) != 0;
  flags = (read && write) ? O_RDWR : write ? O_WRONLY : O_RDONLY;
  flags |= O_CLOEXEC;
  switch (disposition) {
  case 1: flags |= O_CREAT | O_EXCL; return true;  // CREATE_NEW
  case 2: flags |= O_CREAT | O_TRUNC; return true; // CREATE_ALWAYS
  case 3: return true;                             // OPEN_EXISTING
  case 4: flags |= O_CREAT; return true;           // OPEN_ALWAYS
  case 5: flags |= O_TRUNC; return true;           // TRUNCATE_EXISTING
  default: return false;
  }
}

std::int32_t OpenFailed(const std::string& name) {
  ZEL_LogMacros::warning(kBinding.file, __LINE__, kBinding.header,
                         ZEL_MESSAGE("Opening file %s failed.", name.c_str()).c_str());
  return -1;
}

} // namespace

void TarnFileUtil_Delete_F(const char* name, std::int32_t length, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    return TarnFileUtil::RemoveFile(TarnStringUtil::utf8_to_wide(NameArgument(site, name, length)));
  });
}

void TarnFileUtil_FileExists_F(const char* name, std::int32_t length, std::int32_t* result,
                               std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    if (!result)
      FailArgument(site, "No result variable was given (null pointer).");
    *result = 0;
    const std::string fileName = NameArgument(site, name, length);
    *result = TarnFileUtil::FileExists(TarnStringUtil::utf8_to_wide(fileName)) ? 1 : 0;
  });
}

void TarnFileUtil_GetCwd_F(char* out, std::int32_t capacity, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  BlankFortranText(out, capacity);
  GuardWithStatus(site, status, [&] {
    const std::u16string cwd = TarnFileUtil::GetCwd();
    if (cwd.empty())
      throw StatusFailure(ERR_FILE_IO, "The current directory cannot be read.", kBinding.header);
    return CopyToFortran(site, TarnStringUtil::wide_to_utf8(cwd), out, capacity);
  });
}

void TarnFileUtil_GetFullPathName_F(const char* name, std::int32_t length, char* out,
                                    std::int32_t capacity, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  BlankFortranText(out, capacity);
  GuardWithStatus(site, status, [&] {
    const std::string fileName = NameArgument(site, name, length);
    if (fileName.empty())
      FailArgument(site, "The path is empty.");
    const std::u16string full = TarnFileUtil::GetFullPathNameW(TarnStringUtil::utf8_to_wide(fileName));
    return CopyToFortran(site, TarnStringUtil::wide_to_utf8(full), out, capacity);
  });
}

void TarnFileUtil_UserOpenWin_SetFilename_F(const char* name, std::int32_t length) {
  g_userOpenName = name;
  g_userOpenLength = length;
}

std::int32_t TarnFileUtil_UserOpenWin_F(const char* fileName, const std::int32_t* desiredAccess,
                                        const std::int32_t* shareMode, const void* unused,
                                        const std::int32_t* creationDisposition) {
  (void)shareMode;
  (void)unused;
  if (!fileName)
    return 0;
  const FortranSite site = TARN_FORTRAN_SITE;
  return GuardOrTerminate(site, "Failed to open a file for a user open", [&]() -> std::int32_t {
    if (!g_userOpenName || g_userOpenLength < 0)
      return OpenFailed("(no name was set)");
    std::string name(g_userOpenName, static_cast<std::size_t>(g_userOpenLength));
    TarnStringUtil::Trim(name);
    if (!TarnUtfUtil::is_valid_utf8(name))
      ZEL_LogMacros::warning(
          kBinding.file, __LINE__, kBinding.header,
          ZEL_MESSAGE("Trying to open file %s which is not correctly encoded in UTF8 format.",
                      name.c_str())
              .c_str());
    int flags = 0;
    if (!desiredAccess || !creationDisposition ||
        !OpenFlags(static_cast<std::uint32_t>(*desiredAccess), *creationDisposition, flags))
      return OpenFailed(name);
    // The name goes to the system as UTF-8 of its wide form, as every
    // other wide name does.
    if (name.find('\0') != std::string::npos)
      return OpenFailed(name); // a zero character would cut the name
    const std::string path = TarnStringUtil::wide_to_utf8(TarnStringUtil::utf8_to_wide(name));
    const int fd = ::open(path.c_str(), flags, 0666);
    if (fd < 0)
      return OpenFailed(name);
    ::posix_fadvise(fd, 0, 0, POSIX_FADV_RANDOM);
    return fd;
  });
}
