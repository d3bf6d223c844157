//===- TarnSysUtil.cpp - Process environment --------------------------------===//
#include "TarnUtilities/system/TarnSysUtil.h"
#include "TarnUtilities/text/TarnFormatUtil.h"
#include "TarnUtilities/text/TarnStringUtil.h"
#include "text/strings/TextCharClass.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <pwd.h>
#include <sys/sysinfo.h>
#include <unistd.h>
#include <vector>

namespace {

// The original reads variables into a buffer of 32,768 characters.
constexpr std::size_t kEnvBufferChars = 32768;

// Computes the UTF-8 form of a wide name; empty for null.
std::string Utf8(const char16_t* s) { return s ? TarnStringUtil::wide_to_utf8(s) : std::string(); }

// Computes whether the decimal integer text is non-zero, without converting
// it (so that no length of digits can overflow).
bool IsNonZeroInteger(const std::string& s) {
  for (char c : s)
    if (c >= '1' && c <= '9')
      return true;
  return false;
}

} // namespace

namespace TarnSysUtil {

std::string get_env_var(const char* name, const char* defaultValue, bool trim) {
  const char* value = (name != nullptr) ? std::getenv(name) : nullptr;
  if (value == nullptr || *value == '\0')
    return defaultValue ? std::string(defaultValue) : std::string();
  std::string result(value, strnlen(value, kEnvBufferChars - 1));
  return trim ? TarnStringUtil::Trim(result) : result;
}

bool is_env_var(const char* name) {
  return name != nullptr && std::getenv(name) != nullptr;
}

void set_env_var(const char* name, const char* value) {
  if (name == nullptr || *name == '\0' || std::strchr(name, '=') != nullptr)
    return;
  if (value == nullptr)
    unsetenv(name);
  else
    setenv(name, value, 1);
}

std::u16string get_env_var(const char16_t* name, const char16_t* defaultValue, bool trim) {
  const char* value = (name != nullptr) ? std::getenv(Utf8(name).c_str()) : nullptr;
  if (value == nullptr || *value == '\0')
    return defaultValue ? std::u16string(defaultValue) : std::u16string();
  std::u16string result = TarnStringUtil::utf8_to_wide(value);
  if (result.size() > kEnvBufferChars - 1) {
    std::size_t cut = kEnvBufferChars - 1;
    // Keep a surrogate pair whole: drop a high surrogate left at the end.
    if (result[cut - 1] >= 0xD800 && result[cut - 1] <= 0xDBFF)
      --cut;
    result.resize(cut);
  }
  return trim ? std::u16string(tarn_detail::TrimBlanks(std::u16string_view(result))) : result;
}

bool is_env_var(const char16_t* name) {
  return name != nullptr && is_env_var(Utf8(name).c_str());
}

void set_env_var(const char16_t* name, const char16_t* value) {
  if (name == nullptr)
    return;
  const std::string narrowValue = Utf8(value);
  set_env_var(Utf8(name).c_str(), value ? narrowValue.c_str() : nullptr);
}

bool is_env_flag_set(const char* name) {
  std::string value = get_env_var(name, "", true);
  if (value.empty())
    return false;
  if (TarnFormatUtil::is_int(value.c_str()))
    return IsNonZeroInteger(value);
  for (char& c : value)
    if (c >= 'a' && c <= 'z')
      c = static_cast<char>(c - 'a' + 'A');
  return value == "YES" || value == "Y" || value == "TRUE" || value == "T";
}

std::string get_username() {
  long size = sysconf(_SC_GETPW_R_SIZE_MAX);
  std::vector<char> buffer(size > 0 ? static_cast<std::size_t>(size) : 16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found &&
      found->pw_name && *found->pw_name)
    return found->pw_name;
  char login[257] = {};
  if (getlogin_r(login, sizeof login) == 0 && login[0] != '\0')
    return login;
  return "unknown";
}

std::uint64_t get_free_phys_mem_bytes() {
  std::ifstream meminfo("/proc/meminfo");
  std::string key;
  std::uint64_t kib = 0;
  std::string unit;
  while (meminfo >> key >> kib) {
    std::getline(meminfo, unit);
    if (key == "MemAvailable:")
      return kib * 1024;
  }
  struct sysinfo info {};
  if (sysinfo(&info) == 0)
    return static_cast<std::uint64_t>(info.freeram) * info.mem_unit;
  return 0;
}

} // namespace TarnSysUtil
