//===- ZEL_IntArray.cpp - Growable array of integers ------------------------===//
#include "TarnUtilities/container/ZEL_IntArray.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "container/ArrayMemory.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

std::uint64_t ZEL_IntArray::s_InstanceCounter = 0;

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|ZEL_IntArray] ";

[[noreturn]] void FailAllocation(const std::string& message, const char* code) {
  ZEL_LOG_ERROR(kHeader, message.c_str());
  throw ZEL_Failure(ZEL_Code(code), message, kHeader);
}

// A fresh zero-filled block of `count` elements, or a failure naming the
// capacity that could not be had.
int* AllocateZeroed(std::uint64_t count) {
  int* block = ZEL_detail::MallocElements<int>(count);
  if (!block)
    FailAllocation(
        ZEL_MESSAGE("Failed to allocate memory for an integer array of capacity %" PRIu64, count),
        "101524120412");
  std::memset(block, 0, static_cast<std::size_t>(count) * sizeof(int));
  return block;
}

} // namespace

ZEL_IntArray::ZEL_IntArray() noexcept : size(0), capacity(0), data(nullptr) {
  ++s_InstanceCounter;
}

ZEL_IntArray::ZEL_IntArray(std::uint64_t count) : size(count), capacity(count), data(nullptr) {
  // An empty array made this way still owns a block, of one element.
  if (capacity == 0)
    capacity = 1;
  data = AllocateZeroed(capacity);
  ++s_InstanceCounter;
}

ZEL_IntArray::ZEL_IntArray(const std::vector<int>& values)
    : size(values.size()), capacity(values.capacity()), data(nullptr) {
  if (capacity != 0) {
    data = ZEL_detail::MallocElements<int>(capacity);
    if (!data)
      FailAllocation(
          ZEL_MESSAGE("Failed to allocate memory for an integer array of capacity %" PRIu64,
                      capacity),
          "101524120412");
    if (size != 0)
      std::memcpy(data, values.data(), values.size() * sizeof(int));
  }
  ++s_InstanceCounter;
}

ZEL_IntArray::ZEL_IntArray(std::initializer_list<int> values)
    : size(0), capacity(0), data(nullptr) {
  AssignRawDataCopy(values.begin(), values.size());
  ++s_InstanceCounter;
}

ZEL_IntArray::ZEL_IntArray(const ZEL_IntArray& other) : size(0), capacity(0), data(nullptr) {
  AssignRawDataCopy(other.data, other.size);
  ++s_InstanceCounter;
}

ZEL_IntArray::ZEL_IntArray(ZEL_IntArray&& other) noexcept
    : size(other.size), capacity(other.capacity), data(other.data) {
  other.size = 0;
  other.capacity = 0;
  other.data = nullptr;
  ++s_InstanceCounter;
}

ZEL_IntArray& ZEL_IntArray::operator=(const ZEL_IntArray& other) {
  if (this != &other)
    AssignRawDataCopy(other.data, other.size);
  return *this;
}

ZEL_IntArray& ZEL_IntArray::operator=(ZEL_IntArray&& other) noexcept {
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

ZEL_IntArray::~ZEL_IntArray() {
  std::free(data);
  size = 0;
  capacity = 0;
  data = nullptr;
  --s_InstanceCounter;
}

void ZEL_IntArray::Reserve(std::uint64_t n) {
  if (n < MINIMUM_SIZE)
    n = MINIMUM_SIZE;
  if (n <= capacity)
    return;
  int* grown = ZEL_detail::ReallocElements(data, n);
  if (!grown) {
    // The old block is given up: the array is left empty and consistent,
    // so that nothing can write through a stale size or capacity.
    std::free(data);
    data = nullptr;
    size = 0;
    capacity = 0;
    FailAllocation(ZEL_MESSAGE("Failed to allocate memory for a integer array of size %" PRIu64, n),
                   "101524120413");
  }
  data = grown;
  capacity = n;
}

void ZEL_IntArray::Grow() {
  // ceil(0 * 1.5) is 0: the minimum of Reserve makes the first block 10.
  Reserve(static_cast<std::uint64_t>(std::ceil(static_cast<double>(size) * GROWTH_RATE)));
}

void ZEL_IntArray::Resize(std::uint64_t n) {
  Reserve(n);
  if (n > size)
    std::memset(data + size, 0, static_cast<std::size_t>(n - size) * sizeof(int));
  size = n;
}

void ZEL_IntArray::Insert(std::uint64_t position, int value) {
  if (position > size)
    position = size;
  PushBack(0);
  std::memmove(data + position + 1, data + position,
               static_cast<std::size_t>(size - 1 - position) * sizeof(int));
  data[position] = value;
}

void ZEL_IntArray::AssignRawDataCopy(const int* values, std::uint64_t count) {
  if (count == 0) {
    Reserve(0);
    size = 0;
    return;
  }
  if (!values)
    throw ZEL_Failure(ZEL_Code(),
                      ZEL_MESSAGE("ZEL_IntArray::AssignRawDataCopy was given a null pointer for "
                                  "%" PRIu64 " elements",
                                  count),
                      kHeader);
  // `values` may point into this block; remember its offset in case the
  // block moves while it grows.
  const bool inside = data && values >= data && values < data + capacity;
  const std::size_t offset = inside ? static_cast<std::size_t>(values - data) : 0;
  Reserve(count);
  const int* source = inside ? data + offset : values;
  std::memmove(data, source, static_cast<std::size_t>(count) * sizeof(int));
  size = count;
}

std::uint64_t ZEL_IntArray::Count(int value) const {
  return static_cast<std::uint64_t>(std::count(begin(), end(), value));
}

std::uint64_t ZEL_IntArray::Find(int value) const {
  return static_cast<std::uint64_t>(std::find(begin(), end(), value) - begin());
}

void ZEL_IntArray::Sort() {
  if (size > 1)
    std::sort(begin(), end());
}

void ZEL_IntArray::Unique() {
  if (size < 2)
    return;
  std::sort(begin(), end());
  size = static_cast<std::uint64_t>(std::unique(begin(), end()) - begin());
}

void ZEL_IntArray::Deallocate() {
  std::free(data);
  data = nullptr;
  size = 0;
  capacity = 0;
}

bool ZEL_IntArray::operator==(const ZEL_IntArray& other) const {
  return size == other.size && std::equal(begin(), end(), other.begin());
}
