//===- text/ZEL_FixedBufferComposer.cpp - Bounded text --------------------===//
//
// Each Append formats into a scratch area on the stack and copies the text
// only when it fits into the room left.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/ZEL_FixedBufferComposer.h"

#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/text/TarnFloatUtil.h"

#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|ZEL_FixedBufferComposer] ";

/// The one failure code of this class: every refusal is a caller's bug.
const char* const kCode = "220201000001";

[[noreturn]] void Fail(const char* message) { throw ZEL_Failure(ZEL_Code(kCode), message, kHeader); }

/// Throws the format's NaN or infinity message for a non-finite value.
void RefuseNonFinite(double value, const char* nanMessage, const char* infMessage) {
  if (std::isnan(value))
    Fail(nanMessage);
  if (std::isinf(value))
    Fail(infMessage);
}

const char* const kFreeNaN = "Attempted to print a NaN-value in free format.";
const char* const kFreeInf = "Attempted to print an Inf-value in free format.";
const char* const kFreeRoom = "Out of space in the buffer while printing a double in free format.";
const char* const kFixedNaN = "Attempted to print a NaN-value in fixed format.";
const char* const kFixedInf = "Attempted to print an Inf-value in fixed format.";

} // namespace

ZEL_FixedBufferComposer::ZEL_FixedBufferComposer(size_t capacity)
    : m_Buffer(new char[capacity + 1]()), m_Capacity(capacity), m_Length(0) {}

ZEL_FixedBufferComposer::ZEL_FixedBufferComposer(const ZEL_FixedBufferComposer& other)
    : m_Buffer(new char[other.m_Capacity + 1]), m_Capacity(other.m_Capacity),
      m_Length(other.m_Length), m_Formatter(other.m_Formatter) {
  std::memcpy(m_Buffer.get(), other.m_Buffer.get(), m_Capacity + 1);
}

ZEL_FixedBufferComposer& ZEL_FixedBufferComposer::operator=(const ZEL_FixedBufferComposer& other) {
  if (this != &other) {
    ZEL_FixedBufferComposer copy(other);
    m_Buffer.swap(copy.m_Buffer);
    m_Capacity = copy.m_Capacity;
    m_Length = copy.m_Length;
    m_Formatter = copy.m_Formatter;
  }
  return *this;
}

ZEL_FixedBufferComposer::~ZEL_FixedBufferComposer() = default;

void ZEL_FixedBufferComposer::AppendChecked(const char* text, size_t n, const char* message) {
  if (n > m_Capacity - m_Length)
    Fail(message);
  std::memcpy(m_Buffer.get() + m_Length, text, n);
  m_Length += n;
  m_Buffer[m_Length] = '\0';
}

void ZEL_FixedBufferComposer::Append(int value) {
  char tmp[16];
  const int n = std::snprintf(tmp, sizeof tmp, "%d", value);
  AppendChecked(tmp, static_cast<size_t>(n), "Out of space in the buffer while printing an integer.");
}

void ZEL_FixedBufferComposer::Append(float value) {
  RefuseNonFinite(value, kFreeNaN, kFreeInf);
  Append(TarnFloatUtil::float_to_double(value));
}

void ZEL_FixedBufferComposer::Append(double value) {
  RefuseNonFinite(value, kFreeNaN, kFreeInf);
  char tmp[FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE];
  const char* end = m_Formatter.WriteFreeFormat(tmp, value);
  AppendChecked(tmp, static_cast<size_t>(end - tmp), kFreeRoom);
}

void ZEL_FixedBufferComposer::AppendFixed(double value, int precision) {
  RefuseNonFinite(value, kFixedNaN, kFixedInf);
  char tmp[FloatingPointFormatter::FIXED_FORMAT_BUFFER_SIZE];
  const char* end = m_Formatter.WriteFixedPrecFormat(tmp, value, precision,
                                                     FloatingPointFormatter::EXP_LOWER, false);
  AppendChecked(tmp, static_cast<size_t>(end - tmp),
                "Out of space in the buffer while printing a double in fixed-format.");
}

void ZEL_FixedBufferComposer::AppendRounded(double value, int precision) {
  RefuseNonFinite(value, kFixedNaN, kFixedInf);
  char tmp[FloatingPointFormatter::FIXED_FORMAT_BUFFER_SIZE];
  const char* end = m_Formatter.WriteFixedPrecFormat(tmp, value, precision,
                                                     FloatingPointFormatter::EXP_LOWER, true);
  AppendChecked(tmp, static_cast<size_t>(end - tmp),
                "Out of space in the buffer while printing a rounded double in fixed-format.");
}

void ZEL_FixedBufferComposer::AppendScientific(double value, int precision,
                                               FloatingPointFormatter::ExponentStyle style) {
  RefuseNonFinite(value, "Attempted to print a NaN-value in scientific-format.",
                  "Attempted to print an Inf-value in scientific-format.");
  char tmp[FloatingPointFormatter::FIXED_FORMAT_BUFFER_SIZE];
  const char* end = m_Formatter.WriteScientificFormat(tmp, value, precision, style);
  AppendChecked(tmp, static_cast<size_t>(end - tmp),
                "Out of space in the buffer while printing a double in scientific-format.");
}

void ZEL_FixedBufferComposer::Append(char c) {
  AppendChecked(&c, 1, "Out of space in the buffer while adding a character.");
}

void ZEL_FixedBufferComposer::Append(const char* text) {
  if (text == nullptr)
    return;
  AppendChecked(text, std::strlen(text), "Out of space in the buffer while adding a string.");
}

void ZEL_FixedBufferComposer::Append(const std::string& text) {
  AppendChecked(text.data(), text.size(), "Out of space in the buffer while adding a string.");
}

void ZEL_FixedBufferComposer::Reset() {
  m_Length = 0;
  m_Buffer[0] = '\0';
}
