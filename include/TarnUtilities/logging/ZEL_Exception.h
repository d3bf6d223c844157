//===- TarnUtilities/logging/ZEL_Exception.h - Failure base ----*- C++ -*-===//
//
// The abstract base of the one exception family the library throws. An
// exception carries a message (possibly of several lines), the log header of
// the class that threw it, an optional failure code, an optional cause (its
// "reason", owned and deep-copied) and a back-trace captured at construction.
// ZEL_Logging::Failure writes all of it as text and as XML.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_LOGGING_ZEL_EXCEPTION_H
#define TARNUTILITIES_LOGGING_ZEL_EXCEPTION_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/logging/ZEL_Code.h"
#include "TarnUtilities/logging/ZelStatusCode.h"

#include <exception>
#include <memory>
#include <string>
#include <vector>

class TARN_API ZEL_Exception : public std::exception {
public:
  ZEL_Exception(const ZEL_Code& code, const std::string& message, const std::string& header);
  /// Stores a deep copy (Clone) of reason as the cause of this exception.
  ZEL_Exception(const ZEL_Exception& reason, const ZEL_Code& code, const std::string& message,
                const std::string& header);
  /// Copies deeply: the copy owns its own chain of reasons.
  ZEL_Exception(const ZEL_Exception& other);
  ZEL_Exception(ZEL_Exception&& other) noexcept = default;
  ZEL_Exception& operator=(const ZEL_Exception& other);
  ZEL_Exception& operator=(ZEL_Exception&& other) noexcept = default;
  ~ZEL_Exception() override;

  const char* what() const noexcept override;
  /// A new heap copy of the same dynamic type, with its reasons cloned.
  virtual ZEL_Exception* Clone() const = 0;
  virtual const std::string& GetMessage() const;
  virtual const std::string& GetHeader() const;
  virtual std::string GetName() const = 0;
  virtual ZelStatusCode GetStatusCode() const = 0;

  const ZEL_Code& GetCode() const { return code_; }
  /// The cause of this exception, or null.
  const ZEL_Exception* GetReason() const { return reason_.get(); }
  const std::vector<std::string>& GetBacktrace() const { return backtrace_; }

private:
  ZEL_Code code_;
  std::string header_;
  std::string message_;
  std::unique_ptr<ZEL_Exception> reason_;
  std::vector<std::string> backtrace_;
};

#endif // TARNUTILITIES_LOGGING_ZEL_EXCEPTION_H
