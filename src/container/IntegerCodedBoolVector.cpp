//===- IntegerCodedBoolVector.cpp - Thirty-two flags in an integer ----------===//
#include "TarnUtilities/container/IntegerCodedBoolVector.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_Message.h"

#include <bitset>

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|IntegerCodedBoolVector] ";

std::uint32_t Bit(int index) {
  if (index < 0 || index >= IntegerCodedBoolVector::NUM_FLAGS)
    throw ZEL_Failure(ZEL_Code(),
                      ZEL_MESSAGE("There is no flag %d: the flags are numbered 0 to %d", index,
                                  IntegerCodedBoolVector::NUM_FLAGS - 1),
                      kHeader);
  return std::uint32_t{1} << index;
}

} // namespace

bool IntegerCodedBoolVector::Get(int index) const { return (bits_ & Bit(index)) != 0; }

void IntegerCodedBoolVector::Set(int index, bool value) {
  const std::uint32_t bit = Bit(index);
  bits_ = value ? (bits_ | bit) : (bits_ & ~bit);
}

int IntegerCodedBoolVector::Count() const {
  return static_cast<int>(std::bitset<NUM_FLAGS>(bits_).count());
}

void IntegerCodedBoolVector::ToArray(std::int32_t* flags) const {
  for (int i = 0; i < NUM_FLAGS; ++i)
    flags[i] = static_cast<std::int32_t>((bits_ >> i) & 1u);
}

IntegerCodedBoolVector IntegerCodedBoolVector::FromArray(const std::int32_t* flags) {
  std::uint32_t bits = 0;
  for (int i = 0; i < NUM_FLAGS; ++i)
    if (flags[i] != 0)
      bits |= std::uint32_t{1} << i;
  return IntegerCodedBoolVector(static_cast<std::int32_t>(bits));
}
