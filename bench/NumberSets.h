//===- bench/NumberSets.h - The value sets of the number benchmarks ---------===//
//
// The three sets of 10^6 doubles on which printing (bench_format) and reading
// (bench_parse) are measured, and their shortest texts:
//   0 RandomBits - random finite bit patterns: every exponent, 16-17 digits;
//   1 Uniform01  - uniform in [0, 1): the typical "random number", 15-17
//                  digits, small negative exponents;
//   2 Hundredths - integers in [0, 10^7) divided by 100: short decimals
//                  such as 12345.67 or 0.5, as in tables of measured data.
// Each set is made once, with a fixed seed, before any timing.
//
//===----------------------------------------------------------------------===//
#ifndef TARN_BENCH_NUMBERSETS_H
#define TARN_BENCH_NUMBERSETS_H

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace tarnbench {

constexpr int kNumberSetCount = 3;
constexpr std::size_t kNumberSetSize = 1000000;

/// The names printed in the argument of the benchmarks ("set:0" ...).
inline const char* NumberSetName(int set) {
  static const char* const kNames[kNumberSetCount] = {"RandomBits", "Uniform01", "Hundredths"};
  return kNames[set];
}

/// Makes the doubles of one set (0, 1 or 2 as above).
inline std::vector<double> MakeNumberSet(int set) {
  std::vector<double> v;
  v.reserve(kNumberSetSize);
  std::mt19937_64 rng(12345 + static_cast<unsigned>(set));
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  std::uniform_int_distribution<std::int64_t> cents(0, 9999999);
  while (v.size() < kNumberSetSize) {
    if (set == 0) {
      const std::uint64_t b = rng();
      double d;
      std::memcpy(&d, &b, sizeof d);
      if (std::isfinite(d))
        v.push_back(d);
    } else if (set == 1) {
      v.push_back(unit(rng));
    } else {
      v.push_back(static_cast<double>(cents(rng)) / 100.0);
    }
  }
  return v;
}

/// The doubles of one set, made on first use.
inline const std::vector<double>& NumberSet(int set) {
  static const std::vector<double> sets[kNumberSetCount] = {MakeNumberSet(0), MakeNumberSet(1),
                                                            MakeNumberSet(2)};
  return sets[set];
}

/// The shortest round-trip texts of one set (std::to_chars), each
/// NUL-terminated and stored back to back, with pointers to their starts
/// and ends.
struct TextSet {
  std::string storage;
  std::vector<const char*> begins;
  std::vector<const char*> ends;
};

inline TextSet MakeTexts(int set) {
  TextSet t;
  std::vector<std::size_t> offsets;
  char buf[32];
  for (double x : NumberSet(set)) {
    char* end = std::to_chars(buf, buf + sizeof buf, x).ptr;
    offsets.push_back(t.storage.size());
    t.storage.append(buf, static_cast<std::size_t>(end - buf));
    t.storage += '\0';
  }
  for (std::size_t off : offsets) {
    t.begins.push_back(t.storage.data() + off);
    t.ends.push_back(t.storage.data() + off + std::strlen(t.storage.data() + off));
  }
  return t;
}

inline const TextSet& NumberTexts(int set) {
  static const TextSet texts[kNumberSetCount] = {MakeTexts(0), MakeTexts(1), MakeTexts(2)};
  return texts[set];
}

} // namespace tarnbench

#endif // TARN_BENCH_NUMBERSETS_H
