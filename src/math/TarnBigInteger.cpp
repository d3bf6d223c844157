//===- math/TarnBigInteger.cpp - Unsigned big integers ---------------------===//
//
// Schoolbook multiplication, Knuth's long division (TAOCP vol. 2, 4.3.1,
// algorithm D) and bit-exact rounding to double on 32-bit digits. The table of
// 5^(8 * 2^k) is built exactly by repeated squaring on first use.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/math/TarnBigInteger.h"

#include "TarnUtilities/logging/ZEL_Failure.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <inttypes.h>
#include <memory>
#include <vector>

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|TarnBigInteger] ";

/// 5^0 .. 5^7, the factors below the first table record.
constexpr uint32_t kSmallPow5[8] = {1, 5, 25, 125, 625, 3125, 15625, 78125};

/// Bit length of a non-zero digit: 1 => 1, 0x80000000 => 32.
inline unsigned BitLength(uint32_t d) { return d == 0 ? 0 : 32 - static_cast<unsigned>(__builtin_clz(d)); }

[[noreturn]] void ThrowDivisionByZero() {
  throw ZEL_Failure(ZEL_Code("820301000001"), "Division of a big integer by zero.", kHeader);
}

} // namespace

//===----------------------------------------------------------------------===//
// Construction and capacity
//===----------------------------------------------------------------------===//

uint64_t TarnBigInteger::RoundCapacity(uint64_t n) {
  uint64_t c = MIN_DIG_CAPACITY;
  while (c < n)
    c <<= 1;
  return c;
}

TarnBigInteger::TarnBigInteger() : m_Digits(m_Inline), m_Capacity(MIN_DIG_CAPACITY), m_MsbIdx(0) {
  std::memset(m_Inline, 0, sizeof(m_Inline));
}

TarnBigInteger::TarnBigInteger(uint64_t value) : TarnBigInteger() { SetFromUint64(value); }

TarnBigInteger::TarnBigInteger(const char* decimal) : TarnBigInteger() {
  if (decimal == nullptr)
    return;
  const size_t len = std::strlen(decimal);
  WarrantDigCapacity(RoundCapacity(std::max<uint64_t>(len / 7, MIN_DIG_CAPACITY)));
  for (const char* p = decimal; *p; ++p)
    MultAdd(10, static_cast<uint32_t>(static_cast<unsigned char>(*p)) - static_cast<uint32_t>('0'));
}

TarnBigInteger::TarnBigInteger(const TarnBigInteger& other) : TarnBigInteger(other, 0) {}

TarnBigInteger::TarnBigInteger(const TarnBigInteger& other, uint64_t minCapacity)
    : m_Digits(m_Inline), m_Capacity(MIN_DIG_CAPACITY), m_MsbIdx(other.m_MsbIdx) {
  std::memset(m_Inline, 0, sizeof(m_Inline));
  const uint64_t cap = std::max(other.m_Capacity, minCapacity);
  if (cap > MIN_DIG_CAPACITY) {
    m_Capacity = RoundCapacity(cap);
    m_Digits = new uint32_t[m_Capacity]();
  }
  std::memcpy(m_Digits, other.m_Digits, (other.m_MsbIdx + 1) * sizeof(uint32_t));
}

TarnBigInteger::TarnBigInteger(const uint32_t* digits, uint64_t msbIdx, uint64_t minCapacity)
    : m_Digits(m_Inline), m_Capacity(MIN_DIG_CAPACITY), m_MsbIdx(msbIdx) {
  std::memset(m_Inline, 0, sizeof(m_Inline));
  const uint64_t cap = RoundCapacity(std::max(minCapacity, msbIdx + 1));
  if (cap > MIN_DIG_CAPACITY) {
    m_Capacity = cap;
    m_Digits = new uint32_t[m_Capacity]();
  }
  std::memcpy(m_Digits, digits, (msbIdx + 1) * sizeof(uint32_t));
  AdjustMsbIdx();
}

TarnBigInteger::TarnBigInteger(TarnBigInteger&& other) noexcept
    : m_Digits(m_Inline), m_Capacity(MIN_DIG_CAPACITY), m_MsbIdx(other.m_MsbIdx) {
  if (other.OnHeap()) {
    // Take the heap block; the source falls back to its inline buffer, whose
    // digits may still hold an older value and are cleared whole.
    m_Digits = other.m_Digits;
    m_Capacity = other.m_Capacity;
    std::memset(m_Inline, 0, sizeof(m_Inline));
    other.m_Digits = other.m_Inline;
    other.m_Capacity = MIN_DIG_CAPACITY;
    std::memset(other.m_Inline, 0, sizeof(other.m_Inline));
    other.m_MsbIdx = 0;
  } else {
    std::memcpy(m_Inline, other.m_Inline, sizeof(m_Inline));
    other.SetZero();
  }
}

TarnBigInteger& TarnBigInteger::operator=(const TarnBigInteger& other) {
  if (this == &other)
    return *this;
  WarrantDigCapacity(other.m_MsbIdx + 1);
  std::memcpy(m_Digits, other.m_Digits, (other.m_MsbIdx + 1) * sizeof(uint32_t));
  if (m_MsbIdx > other.m_MsbIdx)
    std::memset(m_Digits + other.m_MsbIdx + 1, 0, (m_MsbIdx - other.m_MsbIdx) * sizeof(uint32_t));
  m_MsbIdx = other.m_MsbIdx;
  return *this;
}

TarnBigInteger& TarnBigInteger::operator=(TarnBigInteger&& other) noexcept {
  if (this == &other)
    return *this;
  if (other.OnHeap()) {
    ReleaseHeap();
    m_Digits = other.m_Digits;
    m_Capacity = other.m_Capacity;
    m_MsbIdx = other.m_MsbIdx;
    other.m_Digits = other.m_Inline;
    other.m_Capacity = MIN_DIG_CAPACITY;
    std::memset(other.m_Inline, 0, sizeof(other.m_Inline));
    other.m_MsbIdx = 0;
    return *this;
  }
  *this = static_cast<const TarnBigInteger&>(other);
  other.SetZero();
  return *this;
}

TarnBigInteger& TarnBigInteger::operator=(uint64_t value) {
  SetZero();
  SetFromUint64(value);
  return *this;
}

TarnBigInteger::~TarnBigInteger() { ReleaseHeap(); }

void TarnBigInteger::ReleaseHeap() {
  if (OnHeap())
    delete[] m_Digits;
  m_Digits = m_Inline;
  m_Capacity = MIN_DIG_CAPACITY;
}

void TarnBigInteger::SetFromUint64(uint64_t value) {
  m_Digits[0] = static_cast<uint32_t>(value);
  m_Digits[1] = static_cast<uint32_t>(value >> 32);
  m_MsbIdx = 1;
  AdjustMsbIdx();
}

void TarnBigInteger::WarrantDigCapacity(uint64_t n) {
  if (m_Capacity >= n)
    return;
  const uint64_t cap = RoundCapacity(n);
  uint32_t* block = new uint32_t[cap]();
  std::memcpy(block, m_Digits, m_Capacity * sizeof(uint32_t));
  ReleaseHeap();
  m_Digits = block;
  m_Capacity = cap;
}

void TarnBigInteger::AdjustMsbIdx() {
  while (m_MsbIdx > 0 && m_Digits[m_MsbIdx] == 0)
    --m_MsbIdx;
}

void TarnBigInteger::SetZero() {
  std::memset(m_Digits, 0, (m_MsbIdx + 1) * sizeof(uint32_t));
  m_MsbIdx = 0;
}

//===----------------------------------------------------------------------===//
// Arithmetic
//===----------------------------------------------------------------------===//

void TarnBigInteger::Add(uint32_t a) {
  uint64_t carry = a;
  for (uint64_t i = 0; carry != 0; ++i) {
    if (i > m_MsbIdx) {
      WarrantDigCapacity(i + 1);
      m_MsbIdx = i;
    }
    const uint64_t t = uint64_t(m_Digits[i]) + carry;
    m_Digits[i] = static_cast<uint32_t>(t);
    carry = t >> 32;
  }
}

void TarnBigInteger::MultAdd(uint32_t m, uint32_t a) {
  uint64_t carry = a;
  for (uint64_t i = 0; i <= m_MsbIdx; ++i) {
    const uint64_t t = uint64_t(m_Digits[i]) * m + carry;
    m_Digits[i] = static_cast<uint32_t>(t);
    carry = t >> 32;
  }
  if (carry != 0) {
    WarrantDigCapacity(m_MsbIdx + 2);
    m_Digits[++m_MsbIdx] = static_cast<uint32_t>(carry);
  }
  AdjustMsbIdx();
}

void TarnBigInteger::Mult(const TarnBigInteger& other) {
  Mult(other.m_Digits, other.m_MsbIdx, nullptr, 0);
}

void TarnBigInteger::Mult(const uint32_t* digits, uint64_t msbIdx, uint32_t* scratch,
                          uint64_t scratchSize) {
  const uint64_t na = m_MsbIdx + 1;
  const uint64_t nb = msbIdx + 1;
  const uint64_t need = RoundCapacity(m_MsbIdx + 2 + msbIdx);
  std::unique_ptr<uint32_t[]> own;
  if (scratch == nullptr || scratchSize < na + nb) {
    own.reset(new uint32_t[need]);
    scratch = own.get();
  }
  std::memset(scratch, 0, (na + nb) * sizeof(uint32_t));
  for (uint64_t i = 0; i < na; ++i) {
    const uint64_t a = m_Digits[i];
    if (a == 0)
      continue;
    uint64_t carry = 0;
    for (uint64_t j = 0; j < nb; ++j) {
      const uint64_t t = a * digits[j] + scratch[i + j] + carry;
      scratch[i + j] = static_cast<uint32_t>(t);
      carry = t >> 32;
    }
    scratch[i + nb] = static_cast<uint32_t>(carry);
  }
  // The operand may be this object itself: grow only after reading it.
  WarrantDigCapacity(na + nb);
  std::memcpy(m_Digits, scratch, (na + nb) * sizeof(uint32_t));
  m_MsbIdx = na + nb - 1;
  AdjustMsbIdx();
}

void TarnBigInteger::Pow2Mult(uint64_t n) {
  if (n == 0 || IsZero())
    return;
  const uint64_t whole = n / 32;
  const unsigned bits = static_cast<unsigned>(n % 32);
  // Index of the new top digit, from the new bit length.
  const uint64_t top = (NumBits() + n - 1) / 32;
  WarrantDigCapacity(top + 1);
  for (uint64_t i = top; i > whole; --i) {
    const uint64_t src = i - whole;
    const uint32_t hi = src <= m_MsbIdx ? m_Digits[src] : 0;
    const uint32_t lo = m_Digits[src - 1];
    m_Digits[i] = bits == 0 ? hi : (hi << bits) | (lo >> (32 - bits));
  }
  m_Digits[whole] = m_Digits[0] << bits;
  std::memset(m_Digits, 0, whole * sizeof(uint32_t));
  m_MsbIdx = top;
  AdjustMsbIdx();
}

const TarnBigInteger::BiConstPow5Sqr* TarnBigInteger::Pow5SqrTable() {
  // Built once, thread-safely: record 0 is 5^8, each next record the square
  // of the one before, so record 11 is 5^16384 (1189 digits).
  static const std::unique_ptr<BiConstPow5Sqr[]> table = [] {
    std::unique_ptr<BiConstPow5Sqr[]> t(new BiConstPow5Sqr[NUM_PRECOMPUTED_POW5_SQR]());
    TarnBigInteger p(390625);
    for (unsigned k = 0; k < NUM_PRECOMPUTED_POW5_SQR; ++k) {
      if (k > 0)
        p.Mult(p);
      t[k].msbIdx = p.m_MsbIdx;
      std::memcpy(t[k].digits, p.m_Digits, (p.m_MsbIdx + 1) * sizeof(uint32_t));
    }
    return t;
  }();
  return table.get();
}

void TarnBigInteger::Pow5Mult(uint64_t n) {
  if (n % 8 != 0)
    MultAdd(kSmallPow5[n % 8], 0);
  if (n < 8 || IsZero())
    return;
  uint64_t q = n / 8;
  // log2(5) < 2.33 < 3 * 32 / 32, so 3n / 32 digits bound the growth.
  const uint64_t growth = 3 * n / 32;
  WarrantDigCapacity(m_MsbIdx + 3 + growth);
  const uint64_t scratchSize = RoundCapacity(m_MsbIdx + 2 + growth);
  std::unique_ptr<uint32_t[]> scratch(new uint32_t[scratchSize]);
  const BiConstPow5Sqr* table = Pow5SqrTable();
  unsigned k = 0;
  for (; q != 0 && k < NUM_PRECOMPUTED_POW5_SQR; ++k, q >>= 1)
    if (q & 1)
      Mult(table[k].digits, table[k].msbIdx, scratch.get(), scratchSize);
  if (q == 0)
    return;
  TarnBigInteger square(table[NUM_PRECOMPUTED_POW5_SQR - 1].digits,
                        table[NUM_PRECOMPUTED_POW5_SQR - 1].msbIdx, 0);
  for (; q != 0; q >>= 1) {
    square.Mult(square);
    if (q & 1)
      Mult(square.m_Digits, square.m_MsbIdx, scratch.get(), scratchSize);
  }
}

uint32_t TarnBigInteger::Div(uint32_t d) {
  if (d == 0)
    ThrowDivisionByZero();
  uint64_t rem = 0;
  for (uint64_t i = m_MsbIdx + 1; i-- > 0;) {
    const uint64_t cur = (rem << 32) | m_Digits[i];
    m_Digits[i] = static_cast<uint32_t>(cur / d);
    rem = cur % d;
  }
  AdjustMsbIdx();
  return static_cast<uint32_t>(rem);
}

uint32_t TarnBigInteger::Div2() {
  uint32_t carry = 0;
  for (uint64_t i = m_MsbIdx + 1; i-- > 0;) {
    const uint32_t d = m_Digits[i];
    m_Digits[i] = (d >> 1) | (carry << 31);
    carry = d & 1;
  }
  AdjustMsbIdx();
  return carry;
}

void TarnBigInteger::Div(const TarnBigInteger& divisor, TarnBigInteger* remainder) {
  if (divisor.IsZero())
    ThrowDivisionByZero();
  if (divisor.m_MsbIdx == 0) {
    const uint32_t r = Div(divisor.m_Digits[0]);
    if (remainder)
      *remainder = r;
    return;
  }
  if (IsZero()) {
    if (remainder)
      remainder->SetZero();
    return;
  }
  if (*this < divisor) {
    if (remainder)
      *remainder = *this;
    SetZero();
    return;
  }
  // Normalise so that the divisor's top bit is set; then each quotient digit
  // estimated from the top two remainder digits is at most 2 too large.
  const uint64_t n = divisor.m_MsbIdx + 1;
  const uint64_t m = m_MsbIdx + 1 - n;
  const unsigned s = 32 - BitLength(divisor.m_Digits[n - 1]);
  std::vector<uint32_t> vn(n), un(m + n + 1), q(m + 1);
  for (uint64_t i = n - 1; i > 0; --i)
    vn[i] = s ? (divisor.m_Digits[i] << s) | (divisor.m_Digits[i - 1] >> (32 - s)) : divisor.m_Digits[i];
  vn[0] = divisor.m_Digits[0] << s;
  un[m + n] = s ? m_Digits[m + n - 1] >> (32 - s) : 0;
  for (uint64_t i = m + n - 1; i > 0; --i)
    un[i] = s ? (m_Digits[i] << s) | (m_Digits[i - 1] >> (32 - s)) : m_Digits[i];
  un[0] = m_Digits[0] << s;

  const uint64_t vTop = vn[n - 1];
  const uint64_t vNext = vn[n - 2];
  for (uint64_t j = m + 1; j-- > 0;) {
    const uint64_t num = (uint64_t(un[j + n]) << 32) | un[j + n - 1];
    uint64_t qhat = num / vTop;
    uint64_t rhat = num % vTop;
    while (qhat >= BI_BASE || qhat * vNext > ((rhat << 32) | un[j + n - 2])) {
      --qhat;
      rhat += vTop;
      if (rhat >= BI_BASE)
        break;
    }
    // un[j .. j+n] -= qhat * vn
    int64_t borrow = 0;
    uint64_t carry = 0;
    for (uint64_t i = 0; i < n; ++i) {
      const uint64_t p = qhat * vn[i] + carry;
      carry = p >> 32;
      const int64_t t = int64_t(un[i + j]) - borrow - int64_t(p & BI_DIGIT_MASK);
      un[i + j] = static_cast<uint32_t>(t);
      borrow = t < 0 ? 1 : 0;
    }
    const int64_t t = int64_t(un[j + n]) - borrow - int64_t(carry);
    un[j + n] = static_cast<uint32_t>(t);
    if (t < 0) {
      // The estimate was one too large: add the divisor back once.
      --qhat;
      uint64_t c = 0;
      for (uint64_t i = 0; i < n; ++i) {
        const uint64_t sum = uint64_t(un[i + j]) + vn[i] + c;
        un[i + j] = static_cast<uint32_t>(sum);
        c = sum >> 32;
      }
      un[j + n] = static_cast<uint32_t>(un[j + n] + c);
    }
    q[j] = static_cast<uint32_t>(qhat);
  }

  if (remainder) {
    remainder->WarrantDigCapacity(n);
    remainder->SetZero();
    for (uint64_t i = 0; i < n; ++i)
      remainder->m_Digits[i] = s ? (un[i] >> s) | (un[i + 1] << (32 - s)) : un[i];
    remainder->m_MsbIdx = n - 1;
    remainder->AdjustMsbIdx();
  }
  SetZero();
  std::memcpy(m_Digits, q.data(), (m + 1) * sizeof(uint32_t));
  m_MsbIdx = m;
  AdjustMsbIdx();
}

//===----------------------------------------------------------------------===//
// Queries and output
//===----------------------------------------------------------------------===//

uint64_t TarnBigInteger::NumBits() const { return 32 * m_MsbIdx + BitLength(m_Digits[m_MsbIdx]); }

uint64_t TarnBigInteger::ToUint64() const {
  return (m_MsbIdx >= 1 ? uint64_t(m_Digits[1]) << 32 : 0) | m_Digits[0];
}

bool TarnBigInteger::operator==(const TarnBigInteger& other) const {
  return m_MsbIdx == other.m_MsbIdx &&
         std::memcmp(m_Digits, other.m_Digits, (m_MsbIdx + 1) * sizeof(uint32_t)) == 0;
}

bool TarnBigInteger::operator<(const TarnBigInteger& other) const {
  if (m_MsbIdx != other.m_MsbIdx)
    return m_MsbIdx < other.m_MsbIdx;
  for (uint64_t i = m_MsbIdx + 1; i-- > 0;)
    if (m_Digits[i] != other.m_Digits[i])
      return m_Digits[i] < other.m_Digits[i];
  return false;
}

double TarnBigInteger::ToDouble(int64_t e2, int sticky) const {
  if (IsZero())
    return 0.0;
  const uint64_t nbits = NumBits();
  int64_t E = e2 + 1022 + static_cast<int64_t>(nbits);
  uint64_t m;
  if (nbits <= 53) {
    m = ToUint64() << (53 - nbits);
    if (sticky > 0)
      ++m; // Deliberately also for exact integers.
  } else {
    // Take bits [shift, shift + 53): they span at most three digits.
    const uint64_t shift = nbits - 53;
    const uint64_t d = shift / 32;
    const unsigned b = static_cast<unsigned>(shift % 32);
    __extension__ typedef unsigned __int128 u128;
    u128 window = 0;
    for (uint64_t i = std::min<uint64_t>(d + 2, m_MsbIdx) + 1; i-- > d;)
      window = (window << 32) | m_Digits[i];
    m = static_cast<uint64_t>(window >> b) & ((uint64_t(1) << 53) - 1);
    const uint64_t firstCut = shift - 1;
    const bool halfBit = (m_Digits[firstCut / 32] >> (firstCut % 32)) & 1;
    bool below = sticky > 0;
    if (!below) {
      const uint64_t fd = firstCut / 32;
      const unsigned fb = static_cast<unsigned>(firstCut % 32);
      below = (m_Digits[fd] & ((uint32_t(1) << fb) - 1)) != 0;
      for (uint64_t i = 0; i < fd && !below; ++i)
        below = m_Digits[i] != 0;
    }
    if (halfBit)
      m += below ? 1 : (m & 1);
  }
  if (m == (uint64_t(1) << 53)) {
    ++E;
    m >>= 1;
  }
  uint64_t bits;
  if (E >= 2047)
    bits = uint64_t(0x7FF) << 52;
  else if (E > 0)
    bits = (uint64_t(E) << 52) | (m & ((uint64_t(1) << 52) - 1));
  else if (E < -52)
    bits = 0;
  else
    bits = (m >> (-E + 1)) + ((m >> -E) & 1);
  double out;
  std::memcpy(&out, &bits, sizeof(out));
  return out;
}

void TarnBigInteger::PrintAsDec(std::string& out) const {
  out.clear();
  TarnBigInteger v(*this);
  std::vector<uint32_t> chunks; // base 10^9, least significant first
  do
    chunks.push_back(v.Div(1000000000U));
  while (!v.IsZero());
  char buf[16];
  std::snprintf(buf, sizeof(buf), "%" PRIu32, chunks.back());
  out += buf;
  for (size_t i = chunks.size() - 1; i-- > 0;) {
    std::snprintf(buf, sizeof(buf), "%09" PRIu32, chunks[i]);
    out += buf;
  }
}

void TarnBigInteger::PrintAsBin(std::string& out) const {
  out.clear();
  const uint64_t n = NumBits();
  if (n == 0) {
    out = "0";
    return;
  }
  out.reserve(n);
  for (uint64_t i = n; i-- > 0;)
    out.push_back(((m_Digits[i / 32] >> (i % 32)) & 1) ? '1' : '0');
}

void TarnBigInteger::Dump() const {
  std::printf("    { %2" PRIu64 ", { ", m_MsbIdx);
  for (uint64_t i = 0; i <= m_MsbIdx; ++i) {
    std::printf("0x%08" PRIX32, m_Digits[i]);
    if (i < m_MsbIdx)
      std::printf(",");
    std::printf("%s", (i + 1) % 5 == 0 ? "\n            " : " ");
  }
  std::printf("} }\n");
  std::fflush(stdout);
}
