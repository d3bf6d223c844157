//===- ZEL_Algebra_Gauss.cpp - Gaussian elimination -------------------------===//
//
// Gaussian elimination with partial pivoting on a column-major n x n array,
// rows selected through a permutation instead of being swapped.
//
// The results are defined by this order of operations: for each pivot k,
// for each row p[i] below it (i > k) that is not skipped, for each column
// j > k, A(p[i], j) -= f_i * A(p[k], j). At one k every update reads only
// the pivot row, which does not change, and writes its own element; so the
// loops over i and j may be interchanged without changing a single bit.
// The code runs j outside and i inside: each column j is then a 8n-byte
// block that stays in the first-level cache while all rows are updated,
// instead of jumping n*8 bytes from one column to the next for every element.
//
// Work space: the right-hand-side copy, and one index vector holding the
// permutation and the list of rows to eliminate at the current pivot. The
// multipliers f_i are parked in column k (where the eliminated entries end
// up as 0 anyway) while the columns are updated.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/math/TarnUtilFullMatrix.h"
#include "TarnUtilities/math/ZEL_Algebra.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace {

constexpr double kTolerance = ZEL_Algebra::kGaussTolerance;

/// Subtracts f_r * pivot row from every listed row r in the columns
/// [first, n) of the column-major array a, where f_r is parked at
/// colk[r]. Four columns at a time, so that each row index and multiplier
/// is loaded once per four updates.
void UpdateColumns(double* a, std::size_t n, std::size_t first, const double* colk,
                   std::size_t pk, const std::size_t* rows, std::size_t count) {
  std::size_t j = first;
  for (; j + 4 <= n; j += 4) {
    double* c0 = a + j * n;
    double* c1 = c0 + n;
    double* c2 = c1 + n;
    double* c3 = c2 + n;
    const double p0 = c0[pk], p1 = c1[pk], p2 = c2[pk], p3 = c3[pk];
    for (std::size_t t = 0; t < count; ++t) {
      const std::size_t r = rows[t];
      const double f = colk[r];
      c0[r] -= f * p0;
      c1[r] -= f * p1;
      c2[r] -= f * p2;
      c3[r] -= f * p3;
    }
  }
  for (; j < n; ++j) {
    double* c = a + j * n;
    const double p = c[pk];
    for (std::size_t t = 0; t < count; ++t) {
      const std::size_t r = rows[t];
      c[r] -= colk[r] * p;
    }
  }
}

/// Solves the n x n column-major system a against bw (the working copy of
/// the right-hand side, values or vectors), writing x. `index` has room for
/// 2n entries: the permutation and the rows to eliminate.
template <typename Rhs>
bool Eliminate(double* a, std::size_t n, Rhs* bw, Rhs* x, std::size_t* index) {
  std::size_t* p = index;
  std::size_t* rows = index + n;
  for (std::size_t i = 0; i < n; ++i)
    p[i] = i;

  for (std::size_t k = 0; k < n; ++k) {
    double* colk = a + k * n;
    // The first row of strictly largest magnitude is the pivot.
    std::size_t best = k;
    double bestMagnitude = std::fabs(colk[p[k]]);
    for (std::size_t i = k + 1; i < n; ++i) {
      const double magnitude = std::fabs(colk[p[i]]);
      if (magnitude > bestMagnitude) {
        best = i;
        bestMagnitude = magnitude;
      }
    }
    if (!(bestMagnitude > kTolerance))
      return false;
    std::swap(p[k], p[best]);
    const std::size_t pk = p[k];
    const double pivot = colk[pk];

    // Rows whose entry is already negligible are skipped, not eliminated.
    std::size_t count = 0;
    for (std::size_t i = k + 1; i < n; ++i) {
      const std::size_t r = p[i];
      if (std::fabs(colk[r]) > kTolerance) {
        colk[r] /= pivot;
        rows[count++] = r;
      }
    }
    UpdateColumns(a, n, k + 1, colk, pk, rows, count);
    const Rhs bk = bw[pk];
    for (std::size_t t = 0; t < count; ++t) {
      const std::size_t r = rows[t];
      bw[r] -= colk[r] * bk;
      colk[r] = 0.0;
    }
  }

  for (std::size_t r = n; r-- > 0;) {
    const std::size_t pr = p[r];
    Rhs s{};
    for (std::size_t j = r + 1; j < n; ++j)
      s += a[j * n + pr] * x[j];
    const double d = a[r * n + pr];
    if (!(std::fabs(d) > kTolerance))
      return false;
    x[r] = (bw[pr] - s) / d;
  }
  return true;
}

[[noreturn]] void FailShortVector(const char* code, const char* function, const char* what,
                                  std::size_t size, std::size_t needed) {
  throw ZEL_Failure(ZEL_Code(code),
                    ZEL_MESSAGE("%s: %s holds %zu elements, %zu are needed.", function, what,
                                size, needed),
                    ZEL_Algebra::kHeader);
}

} // namespace

bool ZEL_Algebra::Gauss(TarnUtilFullMatrix& A, const double* b, double* x) {
  const std::uint64_t n = A.GetNumRows();
  if (A.GetNumColumns() != n)
    return false;
  if (n == 0)
    return true;
  std::vector<double> bw(b, b + n);
  std::vector<std::size_t> index(2 * n);
  return Eliminate(A.GetValues().data, n, bw.data(), x, index.data());
}

bool ZEL_Algebra::Gauss(const TarnUtilSparseMatrix& A, const std::vector<double>& b,
                        std::vector<double>& x) {
  const std::uint64_t n = A.GetNumColumns();
  if (n == 0)
    return true;
  // A non-square copy would be refused at once; spare the copy.
  if (A.GetNumRows() != n)
    return false;
  if (b.size() < n)
    FailShortVector("141020210524", "Gauss", "the right-hand side", b.size(), n);
  if (x.size() < n)
    FailShortVector("141021210524", "Gauss", "the solution vector", x.size(), n);
  TarnUtilFullMatrix full;
  full = A;
  return Gauss(full, b.data(), x.data());
}

bool ZEL_Algebra::Gauss_Vector3d(const std::vector<double>& A, const std::vector<TarnVector3d>& B,
                                 std::vector<TarnVector3d>& X) {
  if (A.empty())
    return false;
  const std::size_t n = B.size();
  if (A.size() / (n == 0 ? 1 : n) < n)
    FailShortVector("141022210524", "Gauss_Vector3d", "the matrix", A.size(), n * n);
  if (X.size() < n)
    FailShortVector("141023210524", "Gauss_Vector3d", "the solution", X.size(), n);
  if (n == 0)
    return true;
  TarnUtilFullMatrix full(n, n);
  std::copy(A.begin(), A.begin() + static_cast<std::ptrdiff_t>(n * n), full.GetValues().data);
  std::vector<TarnVector3d> bw(B);
  std::vector<std::size_t> index(2 * n);
  return Eliminate(full.GetValues().data, n, bw.data(), X.data(), index.data());
}
