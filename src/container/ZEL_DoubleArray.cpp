//===- ZEL_DoubleArray.cpp - Growable array of doubles ----------------------===//
#include "TarnUtilities/container/ZEL_DoubleArray.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "container/GrowableArrayOps.h"

#include <cinttypes>
#include <cmath>
#include <string>

std::uint64_t ZEL_DoubleArray::s_InstanceCounter = 0;

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|ZEL_DoubleArray] ";

[[noreturn]] void FailAllocation(const std::string& message, const char* code) {
  ZEL_LOG_ERROR(kHeader, message.c_str());
  throw ZEL_Failure(ZEL_Code(code), message, kHeader);
}

} // namespace

ZEL_DoubleArray::ZEL_DoubleArray() noexcept : size(0), capacity(0), data(nullptr) {
  ++s_InstanceCounter;
}

ZEL_DoubleArray::ZEL_DoubleArray(const std::vector<double>& values)
    : size(values.size()), capacity(values.capacity()), data(nullptr) {
  if (capacity != 0) {
    data = ZEL_detail::MallocCopy(values);
    // The message names an integer array; existing log scanners match it.
    if (!data)
      FailAllocation(
          ZEL_MESSAGE("Failed to allocate memory for a integer array of capacity %" PRIu64,
                      capacity),
          "101524120414");
  }
  ++s_InstanceCounter;
}

ZEL_DoubleArray::ZEL_DoubleArray(const ZEL_DoubleArray& other)
    : size(0), capacity(0), data(nullptr) {
  AssignRawDataCopy(other.data, other.size);
  ++s_InstanceCounter;
}

ZEL_DoubleArray::ZEL_DoubleArray(ZEL_DoubleArray&& other) noexcept
    : size(0), capacity(0), data(nullptr) {
  ZEL_detail::TakeBlock(*this, other);
  ++s_InstanceCounter;
}

ZEL_DoubleArray& ZEL_DoubleArray::operator=(const ZEL_DoubleArray& other) {
  if (this != &other)
    AssignRawDataCopy(other.data, other.size);
  return *this;
}

ZEL_DoubleArray& ZEL_DoubleArray::operator=(ZEL_DoubleArray&& other) noexcept {
  ZEL_detail::MoveAssign(*this, other);
  return *this;
}

ZEL_DoubleArray::~ZEL_DoubleArray() {
  ZEL_detail::FreeBlock(*this);
  --s_InstanceCounter;
}

void ZEL_DoubleArray::Reserve(std::uint64_t n) {
  // Unlike the integer array, a failure lets go of the old block without
  // freeing it: callers that handed its address to Fortran may still read it.
  if (!ZEL_detail::GrowBlockTo(*this, n, /*freeOldBlock=*/false))
    FailAllocation(ZEL_MESSAGE("Failed to allocate memory for a double array of size %" PRIu64, n),
                   "101524120415");
}

void ZEL_DoubleArray::Grow() {
  std::uint64_t n = static_cast<std::uint64_t>(std::ceil(static_cast<double>(size) * GROWTH_RATE));
  if (n < 1)
    n = 1;
  Reserve(n);
}

void ZEL_DoubleArray::Resize(std::uint64_t n) { ZEL_detail::ResizeZeroFilled(*this, n); }

void ZEL_DoubleArray::Insert(std::uint64_t position, double value) {
  ZEL_detail::InsertAt(*this, position, value);
}

void ZEL_DoubleArray::AssignRawDataCopy(const double* values, std::uint64_t count) {
  ZEL_detail::AssignCopy(*this, values, count, "ZEL_DoubleArray", kHeader);
}
