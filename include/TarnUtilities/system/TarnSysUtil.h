//===- TarnUtilities/system/TarnSysUtil.h - Process environment -*- C++ -*-===//
//
// Environment variables and flags, the user name and the free physical
// memory of the machine.
//
// Example:
//   setenv TARN_QA=yes  =>  TarnSysUtil::is_env_flag_set("TARN_QA") == true
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SYSTEM_TARNSYSUTIL_H
#define TARNUTILITIES_SYSTEM_TARNSYSUTIL_H

#include "TarnUtilities/Export.h"

#include <cstdint>
#include <string>

namespace TarnSysUtil {

/// The value of an environment variable. An unset or empty variable gives
/// the default (empty when the default is null). With trim, leading and
/// trailing blanks (space and codes 9 to 13) of a found value are removed.
/// Values longer than 32,767 bytes are cut there, as the working buffer of
/// the original implementation did.
TARN_API std::string get_env_var(const char* name, const char* defaultValue = nullptr,
                                 bool trim = false);
/// True if the variable exists (also when its value is empty).
TARN_API bool is_env_var(const char* name);
/// Sets (overwrites) a variable; the result is ignored.
TARN_API void set_env_var(const char* name, const char* value);

/// Wide forms: names and values are converted between UTF-16 and UTF-8.
/// A wide value is cut after 32,767 code units (never inside a surrogate
/// pair).
///   set_env_var(u"TARN_DIR", u"/d\u00e9")  =>  get_env_var("TARN_DIR") == "/d\xC3\xA9"
TARN_API std::u16string get_env_var(const char16_t* name, const char16_t* defaultValue = nullptr,
                                    bool trim = false);
TARN_API bool is_env_var(const char16_t* name);
TARN_API void set_env_var(const char16_t* name, const char16_t* value);

/// True when the trimmed variable is a non-zero integer ("1", "-3") or one of
/// "YES", "Y", "TRUE", "T" in any ASCII case; false for anything else,
/// including "0", "no", "on" and an unset variable.
TARN_API bool is_env_flag_set(const char* name);

/// The name of the effective user, else the login name, else "unknown".
TARN_API std::string get_username();
/// The available physical memory in bytes (MemAvailable of /proc/meminfo,
/// else the free RAM reported by sysinfo()).
TARN_API std::uint64_t get_free_phys_mem_bytes();

} // namespace TarnSysUtil

#endif // TARNUTILITIES_SYSTEM_TARNSYSUTIL_H
