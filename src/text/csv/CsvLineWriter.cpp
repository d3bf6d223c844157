//===- CsvLineWriter.cpp - One CSV line in a fixed buffer -------------------===//
#include "TarnUtilities/text/CsvLineWriter.h"
#include "TarnUtilities/text/FloatingPointFormatter.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace {

// Free room an integer needs: "-2147483648" has 11 characters.
constexpr std::size_t kIntRoom = 11;
// Free room a double needs before it is printed. With the default exponent
// switches the longest free-format text has 24 characters
// ("-2.2250738585072014e-308").
constexpr std::size_t kDoubleRoom = 25;

// Computes the longest free-format text for a positive exponent switch.
// Positional texts are at most switch + 3 characters ("d" + switch zeros +
// ".0"), or 18 for the digits-and-point forms; scientific ones at most 23
// (17 digits, the point and "e-308"); a sign may precede each.
std::size_t FreeFormatMax(int posExpFmtSwitch) {
  const int positional = std::min(std::max(posExpFmtSwitch, 0) + 3, 316);
  const std::size_t longest = 1 + static_cast<std::size_t>(std::max(positional, 23));
  return std::min(longest, FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE - 1);
}

// The precision the formatter works with: 0 to MAX_FIXED_PRECISION.
std::size_t ClampedPrecision(int precision) {
  return static_cast<std::size_t>(
      std::min(std::max(precision, 0), FloatingPointFormatter::MAX_FIXED_PRECISION));
}
// Rounded fixed notation: a sign, at most 17 integer digits (larger values
// turn to the exponent form), the point and the decimals; the exponent form
// is shorter.
constexpr std::size_t kFixedOverhead = 1 + 17 + 1;
// Scientific notation: a sign, one digit, the point, the decimals and an
// exponent of at most five characters ("e-308").
constexpr std::size_t kScientificOverhead = 1 + 1 + 1 + 5;
// The limited-length text never exceeds its field, nor (for a very wide
// field) the longest positional text of a double: a sign, "0.", 323 zeros
// and 17 digits.
constexpr std::size_t kLimitedMax = 1 + 2 + 323 + 17;
// Scratch space for a double when the line is short of room: more than the
// longest text of every format, and than the formatter's own buffer needs.
constexpr std::size_t kScratch = 512;
static_assert(kScratch > kLimitedMax &&
                  kScratch > kFixedOverhead + FloatingPointFormatter::MAX_FIXED_PRECISION &&
                  kScratch >= FloatingPointFormatter::FIXED_FORMAT_BUFFER_SIZE &&
                  kScratch >= FloatingPointFormatter::FREE_FORMAT_BUFFER_SIZE,
              "scratch space must hold every double text");

const char* const kNoRoomString = "Out of space in the buffer while adding a string.";
const char* const kNoRoomChar = "Out of space in the buffer while adding a character.";
const char* const kNoRoomInt = "Out of space in the buffer while printing an integer.";
const char* const kNoRoomFree =
    "Out of space in the buffer while printing a double in free format.";
const char* const kNanFree = "Attempted to print a NaN-value in free format.";
const char* const kInfFree = "Attempted to print an Inf-value in free format.";
const char* const kNoRoomLimited =
    "Out of space in the buffer while printing a double in fixed-format.";
const char* const kNanFixed = "Attempted to print a NaN-value in fixed format.";
const char* const kInfFixed = "Attempted to print an Inf-value in fixed format.";
const char* const kNoRoomRounded =
    "Out of space in the buffer while printing a rounded double in fixed-format.";
const char* const kNoRoomScientific =
    "Out of space in the buffer while printing a double in scientific-format.";
const char* const kNanScientific = "Attempted to print a NaN-value in scientific-format.";
const char* const kInfScientific = "Attempted to print an Inf-value in scientific-format.";

[[noreturn]] void Fail(const char* message) {
  throw std::runtime_error(message);
}

std::size_t NonNegative(int n) {
  return n > 0 ? static_cast<std::size_t>(n) : 0;
}

// The line buffer: `capacity` characters and the terminating zero.
char* AllocateLine(std::size_t capacity) {
  if (capacity == static_cast<std::size_t>(-1))
    throw std::length_error("CsvLineWriter: a line capacity of SIZE_MAX leaves no room for the "
                            "terminating zero");
  return new char[capacity + 1];
}

} // namespace

CsvLineWriter::CsvLineWriter(std::size_t capacity, const std::string& separator)
    : capacity_(capacity + 1), buffer_(AllocateLine(capacity)), separator_(separator.c_str()),
      formatter_(new FloatingPointFormatter()) {
  start_ = buffer_.get();
  end_ = start_;
  last_ = start_ + capacity;
  *end_ = '\0';
}

CsvLineWriter::~CsvLineWriter() = default;

void CsvLineWriter::Clear() {
  end_ = start_;
  *end_ = '\0';
  numTokens_ = 0;
}

void CsvLineWriter::AppendSeparator(const char* noRoomMessage) {
  if (IsEmpty())
    return;
  const std::size_t n = separator_.size();
  if (n > Room()) {
    // As much of the separator as fits stays, like a string that is cut.
    const std::size_t fits = Room();
    std::memcpy(end_, separator_.data(), fits);
    end_ += fits;
    *end_ = '\0';
    Fail(noRoomMessage);
  }
  std::memcpy(end_, separator_.data(), n);
  end_ += n;
  *end_ = '\0';
}

void CsvLineWriter::AppendText(const char* text, std::size_t length) {
  AppendSeparator(kNoRoomString);
  const std::size_t n = std::min(length, Room());
  std::memcpy(end_, text, n);
  end_ += n;
  *end_ = '\0';
  if (n < length)
    Fail(kNoRoomString);
  ++numTokens_;
}

void CsvLineWriter::AppendValue(const std::string& text) {
  // The line is a C string: an embedded zero ends the value.
  const void* zero = std::memchr(text.data(), '\0', text.size());
  AppendText(text.data(),
             zero ? static_cast<std::size_t>(static_cast<const char*>(zero) - text.data())
                  : text.size());
}

void CsvLineWriter::AppendValue(const char* text) {
  AppendText(text ? text : "", text ? std::strlen(text) : 0);
}

void CsvLineWriter::AppendValue(char c) {
  AppendSeparator(kNoRoomChar);
  // A zero character would end the C string early: it appends an empty token.
  if (c != '\0') {
    if (Room() < 1)
      Fail(kNoRoomChar);
    *end_++ = c;
    *end_ = '\0';
  }
  ++numTokens_;
}

void CsvLineWriter::AppendValue(int value) {
  AppendSeparator(kNoRoomInt);
  if (Room() < kIntRoom)
    Fail(kNoRoomInt);
  end_ = std::to_chars(end_, last_, value).ptr;
  *end_ = '\0';
  ++numTokens_;
}

template <typename Print>
void CsvLineWriter::AppendDouble(double value, std::size_t maxLength, Print print,
                                 const char* noRoom, const char* nanMessage,
                                 const char* infMessage) {
  AppendSeparator(noRoom);
  if (Room() < kDoubleRoom)
    Fail(noRoom);
  if (!std::isfinite(value)) {
    // A refused value leaves the line as it was after the separator.
    if (refuseInfNan_)
      Fail(std::isnan(value) ? nanMessage : infMessage);
    // Accepted, but on purpose not counted as a token.
    std::memcpy(end_, std::isnan(value) ? "NaN" : "Inf", 3);
    end_ += 3;
    *end_ = '\0';
    return;
  }
  // The formatter writes straight into the line when even its longest text
  // fits (plus a terminator it may write); otherwise into scratch space
  // first, so that nothing is ever written past the buffer.
  if (Room() > maxLength) {
    char* const before = end_;
    end_ = print(end_, value);
    assert(static_cast<std::size_t>(end_ - before) <= maxLength && "double text over its bound");
    (void)before;
  } else {
    assert(maxLength < kScratch && "scratch space too small for a double");
    char scratch[kScratch];
    const std::size_t n = static_cast<std::size_t>(print(scratch, value) - scratch);
    if (n > Room())
      Fail(noRoom);
    std::memcpy(end_, scratch, n);
    end_ += n;
  }
  *end_ = '\0';
  ++numTokens_;
}

void CsvLineWriter::AppendValue(double value) {
  AppendDouble(
      value, FreeFormatMax(formatter_->GetPosExpFmtSwitch()),
      [this](char* out, double x) { return formatter_->WriteFreeFormat(out, x); }, kNoRoomFree,
      kNanFree, kInfFree);
}

void CsvLineWriter::AppendValue(double value, int digits) {
  const std::size_t length = NonNegative(digits);
  AppendDouble(
      value, std::min(std::max<std::size_t>(length, 8), kLimitedMax),
      [this, length](char* out, double x) {
        return formatter_->WriteLimitedLength(out, x, length, FloatingPointFormatter::EXP_LOWER,
                                              FloatingPointFormatter::PAD_NONE, ' ');
      },
      kNoRoomLimited, kNanFixed, kInfFixed);
}

void CsvLineWriter::AppendRoundedValue(double value, int precision) {
  AppendDouble(
      value, kFixedOverhead + ClampedPrecision(precision),
      [this, precision](char* out, double x) {
        return formatter_->WriteFixedPrecFormat(out, x, precision,
                                                FloatingPointFormatter::EXP_LOWER, true);
      },
      kNoRoomRounded, kNanFixed, kInfFixed);
}

void CsvLineWriter::AppendValueFixedFmt(double value, int precision) {
  AppendDouble(
      value, kScientificOverhead + ClampedPrecision(precision),
      [this, precision](char* out, double x) {
        return formatter_->WriteScientificFormat(out, x, precision,
                                                 FloatingPointFormatter::EXP_LOWER);
      },
      kNoRoomScientific, kNanScientific, kInfScientific);
}

void CsvLineWriter::AppendList(const std::vector<int>& values) {
  for (int v : values)
    AppendValue(v);
}

void CsvLineWriter::AppendList(const std::vector<double>& values) {
  for (double v : values)
    AppendValue(v);
}

void CsvLineWriter::AppendList(const std::vector<std::string>& values) {
  for (const std::string& v : values)
    AppendValue(v);
}

void CsvLineWriter::SetValue(const std::string& text) {
  Clear();
  AppendValue(text);
}
void CsvLineWriter::SetValue(const char* text) {
  Clear();
  AppendValue(text);
}
void CsvLineWriter::SetValue(char c) {
  Clear();
  AppendValue(c);
}
void CsvLineWriter::SetValue(int value) {
  Clear();
  AppendValue(value);
}
void CsvLineWriter::SetValue(double value) {
  Clear();
  AppendValue(value);
}
void CsvLineWriter::SetValue(double value, int digits) {
  Clear();
  AppendValue(value, digits);
}
void CsvLineWriter::SetList(const std::vector<int>& values) {
  Clear();
  AppendList(values);
}
void CsvLineWriter::SetList(const std::vector<double>& values) {
  Clear();
  AppendList(values);
}
void CsvLineWriter::SetList(const std::vector<std::string>& values) {
  Clear();
  AppendList(values);
}

// The separator is copied into a C string, so it ends at a zero character.
void CsvLineWriter::SetSeparator(const std::string& separator) {
  separator_ = separator.c_str();
}
void CsvLineWriter::SetSeparator(const char* separator) {
  separator_ = separator ? separator : "";
}
void CsvLineWriter::SetSeparator(char separator) {
  separator_.assign(separator != '\0' ? 1 : 0, separator);
}

void CsvLineWriter::SetPosExpFmtSwitch(int value) {
  formatter_->SetPosExpFmtSwitch(value);
}
int CsvLineWriter::GetPosExpFmtSwitch() const {
  return formatter_->GetPosExpFmtSwitch();
}
void CsvLineWriter::SetNegExpFmtSwitch(int value) {
  formatter_->SetNegExpFmtSwitch(value);
}
int CsvLineWriter::GetNegExpFmtSwitch() const {
  return formatter_->GetNegExpFmtSwitch();
}

std::string CsvLineWriter::GetLineTokens(int first, int last) const {
  if (first < 0)
    first = 0;
  if (last < first)
    return std::string();
  const std::string_view line(start_, GetCurrentLen());
  if (separator_.empty())
    return first == 0 ? std::string(line) : std::string();

  // Token `first` starts after the first-th separator.
  std::size_t begin = 0;
  for (int i = 0; i < first; ++i) {
    const std::size_t pos = line.find(separator_, begin);
    if (pos == std::string_view::npos)
      return std::string();
    begin = pos + separator_.size();
  }
  // Token `last` ends at the separator after it, or at the end of the line.
  std::size_t stop = line.size();
  std::size_t from = begin;
  for (long i = first; i <= last; ++i) {
    const std::size_t pos = line.find(separator_, from);
    if (pos == std::string_view::npos)
      break;
    if (i == last)
      stop = pos;
    from = pos + separator_.size();
  }
  return std::string(line.substr(begin, stop - begin));
}
