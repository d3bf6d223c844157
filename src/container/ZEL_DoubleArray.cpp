//===- ZEL_DoubleArray.cpp - Growable array of doubles ----------------------===//
#include "TarnUtilities/container/ZEL_DoubleArray.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "container/ArrayMemory.h"

#include <cinttypes>
#include <cmath>
#include <cstdlib>
#include <cstring>
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
    data = ZEL_detail::MallocElements<double>(capacity);
    // The message names an integer array; existing log scanners match it.
    if (!data)
      FailAllocation(
          ZEL_MESSAGE("Failed to allocate memory for a integer array of capacity %" PRIu64,
                      capacity),
          "101524120414");
    if (size != 0)
      std::memcpy(data, values.data(), values.size() * sizeof(double));
  }
  ++s_InstanceCounter;
}

ZEL_DoubleArray::ZEL_DoubleArray(const ZEL_DoubleArray& other)
    : size(0), capacity(0), data(nullptr) {
  AssignRawDataCopy(other.data, other.size);
  ++s_InstanceCounter;
}

ZEL_DoubleArray::ZEL_DoubleArray(ZEL_DoubleArray&& other) noexcept
    : size(other.size), capacity(other.capacity), data(other.data) {
  other.size = 0;
  other.capacity = 0;
  other.data = nullptr;
  ++s_InstanceCounter;
}

ZEL_DoubleArray& ZEL_DoubleArray::operator=(const ZEL_DoubleArray& other) {
  if (this != &other)
    AssignRawDataCopy(other.data, other.size);
  return *this;
}

ZEL_DoubleArray& ZEL_DoubleArray::operator=(ZEL_DoubleArray&& other) noexcept {
  if (this != &other) {
    std::free(data);
    size = other.size;
    capacity = other.capacity;
    data = other.data;
    other.size = 0;
    other.capacity = 0;
    other.data = nullptr;
  }
  return *this;
}

ZEL_DoubleArray::~ZEL_DoubleArray() {
  std::free(data);
  size = 0;
  capacity = 0;
  data = nullptr;
  --s_InstanceCounter;
}

void ZEL_DoubleArray::Reserve(std::uint64_t n) {
  if (n <= capacity)
    return;
  double* grown = ZEL_detail::ReallocElements(data, n);
  if (!grown) {
    // Unlike the integer array, the old block is let go without being
    // freed: callers that handed its address to Fortran may still read it.
    data = nullptr;
    size = 0;
    capacity = 0;
    FailAllocation(ZEL_MESSAGE("Failed to allocate memory for a double array of size %" PRIu64, n),
                   "101524120415");
  }
  data = grown;
  capacity = n;
}

void ZEL_DoubleArray::Grow() {
  std::uint64_t n = static_cast<std::uint64_t>(std::ceil(static_cast<double>(size) * GROWTH_RATE));
  if (n < 1)
    n = 1;
  Reserve(n);
}

void ZEL_DoubleArray::Resize(std::uint64_t n) {
  Reserve(n);
  if (n > size)
    std::memset(data + size, 0, static_cast<std::size_t>(n - size) * sizeof(double));
  size = n;
}

void ZEL_DoubleArray::Insert(std::uint64_t position, double value) {
  if (position > size)
    position = size;
  PushBack(0.0);
  std::memmove(data + position + 1, data + position,
               static_cast<std::size_t>(size - 1 - position) * sizeof(double));
  data[position] = value;
}

void ZEL_DoubleArray::AssignRawDataCopy(const double* values, std::uint64_t count) {
  if (count == 0) {
    size = 0;
    return;
  }
  if (!values)
    throw ZEL_Failure(ZEL_Code(),
                      ZEL_MESSAGE("ZEL_DoubleArray::AssignRawDataCopy was given a null pointer "
                                  "for %" PRIu64 " elements",
                                  count),
                      kHeader);
  // `values` may point into this block; remember its offset in case the
  // block moves while it grows.
  const bool inside = data && values >= data && values < data + capacity;
  const std::size_t offset = inside ? static_cast<std::size_t>(values - data) : 0;
  Reserve(count);
  const double* source = inside ? data + offset : values;
  std::memmove(data, source, static_cast<std::size_t>(count) * sizeof(double));
  size = count;
}
