//===- container/FortranGuard.h - The guard of every _F entry point -*- C++ -*-===//
//
// No exception may reach Fortran code, so every entry point of the Fortran
// binding runs its work inside one of two guards:
//
//   GuardWithStatus   for entry points with a status argument. Stores
//                     STATUS_OK on entry, runs the work and stores the status
//                     the work returns. An exception is logged at error level
//                     and turned into a status:
//                       ZEL_Exception   "Failure in method NAME \n<message>"   its own status
//                       std::exception  "Failure in method NAME \n<what()>"    ERR_INTERNAL
//                       anything else   "Unknown exception catched in method NAME \n"
//                                                                               ERR_INTERNAL
//   GuardOrTerminate  for entry points without one. Logs the same texts, then
//                     reports through ZEL_ApplicationTerminator::Terminate
//                     (condition "errcode != STATUS_OK", the entry point's
//                     name and message) and ends the process with exit code
//                     1. A ZEL_Exception whose status is STATUS_OK returns
//                     quietly: nothing is logged and the process goes on.
//
// Log lines and terminator reports carry the binding file's name (without
// directory and extension, e.g. "ZEL_IntArray_F") and the line of the entry
// point, and are written under the binding file's own log header.
//
// An entry point's own checks (null handles, negative counts, ...) throw
// StatusFailure, a ZEL_Failure that carries the status to report.
//
// Example, in ZEL_IntArray_F.cpp:
//   TARN_FORTRAN_BINDING("ZEL_IntArray_F");
//   void IntArray_Reserve_F(void* handle, const std::int32_t* count) {
//     const ZEL_detail::FortranSite site = TARN_FORTRAN_SITE;
//     ZEL_detail::GuardOrTerminate(site, "Failed to reserve ...", [&] { ... });
//   }
//
// Header-only (it calls exported functions only) so that its tests can use
// it directly.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_CONTAINER_FORTRANGUARD_H
#define TARNUTILITIES_SRC_CONTAINER_FORTRANGUARD_H

#include "TarnUtilities/logging/ZEL_ApplicationTerminator.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZelStatusCode.h"

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string>
#include <type_traits>

namespace ZEL_detail {

/// A binding source file: its name without directory and extension, and
/// its log header.
struct FortranBinding {
  const char* file;
  const char* header;
};

/// Where a guard runs: the binding file, the entry point and its line.
struct FortranSite {
  const FortranBinding& binding;
  const char* function;
  int line;
};

/// A ZEL_Failure that reports the status it was given instead of
/// ERR_USER, for the checks the entry points make themselves.
class StatusFailure : public ZEL_Failure {
public:
  StatusFailure(ZelStatusCode status, const std::string& message, const char* header)
      : ZEL_Failure(ZEL_Code(), message, header), status_(status) {}
  ZEL_Exception* Clone() const override { return new StatusFailure(*this); }
  ZelStatusCode GetStatusCode() const override { return status_; }

private:
  ZelStatusCode status_;
};

/// Logs "<lead> NAME \n<message>" at error level for the site. Logging
/// must not throw out of a catch block, so a failure to log is dropped.
inline void LogEntryPointFailure(const FortranSite& site, const char* lead,
                                 const char* message) noexcept {
  try {
    std::string text = lead;
    text += site.function;
    text += " \n";
    text += message;
    ZEL_LogMacros::error(site.binding.file, site.line, site.binding.header, text.c_str());
  } catch (...) {
  }
}

/// Runs `work` and returns what it stands for: the status `work` returns
/// (STATUS_OK for work returning nothing), or the status of the exception
/// it throws, which is logged.
template <typename Work> ZelStatusCode RunLogged(const FortranSite& site, Work& work) noexcept {
  try {
    if constexpr (std::is_void_v<decltype(work())>) {
      work();
      return STATUS_OK;
    } else {
      return work();
    }
  } catch (const ZEL_Exception& e) {
    LogEntryPointFailure(site, "Failure in method ", e.GetMessage().c_str());
    return e.GetStatusCode();
  } catch (const std::exception& e) {
    LogEntryPointFailure(site, "Failure in method ", e.what());
    return ERR_INTERNAL;
  } catch (...) {
    LogEntryPointFailure(site, "Unknown exception catched in method ", "");
    return ERR_INTERNAL;
  }
}

/// The guard of an entry point with a status argument (see the top of the
/// file). `work` returns a ZelStatusCode or nothing. A null `status` is
/// never written: a failure is then only logged.
template <typename Work>
void GuardWithStatus(const FortranSite& site, std::int32_t* status, Work&& work) noexcept {
  if (status)
    *status = STATUS_OK;
  const ZelStatusCode result = RunLogged(site, work);
  if (status)
    *status = result;
}

/// Reports a failed entry point through the application terminator and
/// ends the process with exit code 1.
[[noreturn]] inline void TerminateEntryPoint(const FortranSite& site, const char* message) {
  ZEL_ApplicationTerminator::Terminate("errcode != STATUS_OK", site.binding.file, site.line,
                                       site.function, "%s", message);
  std::exit(1);
}

/// The guard of an entry point without a status argument (see the top of
/// the file). Returns what `work` returns; after a quiet ZEL_Exception with
/// STATUS_OK, a value-initialised result.
template <typename Work>
auto GuardOrTerminate(const FortranSite& site, const char* message, Work&& work) noexcept
    -> decltype(work()) {
  using Result = decltype(work());
  try {
    return work();
  } catch (const ZEL_Exception& e) {
    if (e.GetStatusCode() == STATUS_OK)
      return Result();
    LogEntryPointFailure(site, "Failure in method ", e.GetMessage().c_str());
  } catch (const std::exception& e) {
    LogEntryPointFailure(site, "Failure in method ", e.what());
  } catch (...) {
    LogEntryPointFailure(site, "Unknown exception catched in method ", "");
  }
  TerminateEntryPoint(site, message);
}

} // namespace ZEL_detail

/// Declares the binding file's name and log header, once per binding file:
///   TARN_FORTRAN_BINDING("ZEL_IntArray_F") => header
///   "[%T|%n|%P|TarnUtilities|ZEL_IntArray_F] "
#define TARN_FORTRAN_BINDING(stem)                                                             \
  namespace {                                                                                  \
  constexpr ZEL_detail::FortranBinding kBinding{stem, "[%T|%n|%P|TarnUtilities|" stem "] "};   \
  }                                                                                            \
  static_assert(true, "")

/// The site of the entry point the macro is written in. Write it at the top
/// of the entry point, outside the work lambda, where __func__ would name
/// the lambda's call operator instead.
#define TARN_FORTRAN_SITE (ZEL_detail::FortranSite{kBinding, __func__, __LINE__})

#endif // TARNUTILITIES_SRC_CONTAINER_FORTRANGUARD_H
