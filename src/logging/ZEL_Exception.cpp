//===- ZEL_Exception.cpp - Failure base and ZEL_Failure ---------------------===//
#include "TarnUtilities/logging/ZEL_Exception.h"
#include "TarnUtilities/logging/ZEL_Backtrace.h"
#include "TarnUtilities/logging/ZEL_Failure.h"

ZEL_Exception::ZEL_Exception(const ZEL_Code& code, const std::string& message,
                             const std::string& header)
    : code_(code), header_(header), message_(message),
      backtrace_(ZEL_Backtrace::GetBacktrace()) {}

ZEL_Exception::ZEL_Exception(const ZEL_Exception& reason, const ZEL_Code& code,
                             const std::string& message, const std::string& header)
    : code_(code), header_(header), message_(message), reason_(reason.Clone()),
      backtrace_(ZEL_Backtrace::GetBacktrace()) {}

ZEL_Exception::ZEL_Exception(const ZEL_Exception& other)
    : std::exception(other), code_(other.code_), header_(other.header_),
      message_(other.message_), reason_(other.reason_ ? other.reason_->Clone() : nullptr),
      backtrace_(other.backtrace_) {}

ZEL_Exception& ZEL_Exception::operator=(const ZEL_Exception& other) {
  if (this != &other) {
    code_ = other.code_;
    header_ = other.header_;
    message_ = other.message_;
    reason_.reset(other.reason_ ? other.reason_->Clone() : nullptr);
    backtrace_ = other.backtrace_;
  }
  return *this;
}

ZEL_Exception::~ZEL_Exception() = default;

const char* ZEL_Exception::what() const noexcept { return message_.c_str(); }
const std::string& ZEL_Exception::GetMessage() const { return message_; }
const std::string& ZEL_Exception::GetHeader() const { return header_; }

ZEL_Exception* ZEL_Failure::Clone() const {
  // The copy constructor clones the whole chain of reasons.
  return new ZEL_Failure(*this);
}

std::string ZEL_Failure::GetName() const { return "ZEL_Failure"; }

ZelStatusCode ZEL_Failure::GetStatusCode() const {
  return GetCode().exists() ? ERR_INTERNAL : ERR_USER;
}
