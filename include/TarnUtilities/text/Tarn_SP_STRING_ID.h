//===- TarnUtilities/text/Tarn_SP_STRING_ID.h - String-pool identifier -*- C++ -*-===//
//
// The identifier of a string in a TarnStringsPool: a signed 32-bit number.
// 0 names no string; the strings of a pool are 1, 2, 3 ... in the order in
// which they were first added. The identifier converts to and from int32_t,
// so it compares and prints like the number it holds.
//
// Example:
//   Tarn_SP_STRING_ID id;          // 0: not usable
//   id = pool.AddString("beam");   // 1 in a new pool
//   id.IsUsable();                 // true
//   id.SetUnusable();              // back to 0
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TEXT_TARN_SP_STRING_ID_H
#define TARNUTILITIES_TEXT_TARN_SP_STRING_ID_H

#include <cstdint>

struct Tarn_SP_STRING_ID {
  /// The identifier that names no string.
  constexpr Tarn_SP_STRING_ID() noexcept = default;
  constexpr Tarn_SP_STRING_ID(std::int32_t id) noexcept : m_Id(id) {}
  Tarn_SP_STRING_ID(const Tarn_SP_STRING_ID&) noexcept = default;
  Tarn_SP_STRING_ID& operator=(const Tarn_SP_STRING_ID&) noexcept = default;

  constexpr operator std::int32_t() const noexcept { return m_Id; }

  /// True for the identifier of a stored string (greater than 0).
  constexpr bool IsUsable() const noexcept { return m_Id > 0; }
  /// Makes this the identifier of no string (0).
  void SetUnusable() noexcept { m_Id = 0; }

  std::int32_t m_Id = 0;
};

#endif // TARNUTILITIES_TEXT_TARN_SP_STRING_ID_H
