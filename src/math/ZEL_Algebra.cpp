//===- ZEL_Algebra.cpp - Products, transposition and the 3x3 solve ---------===//
//
// The Gauss solvers are in ZEL_Algebra_Gauss.cpp.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/math/ZEL_Algebra.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <utility>

namespace {

[[noreturn]] void Fail(const char* code, const std::string& message) {
  throw ZEL_Failure(ZEL_Code(code), message, ZEL_Algebra::kHeader);
}

/// Within [-DBL_MAX, DBL_MAX], i.e. finite.
bool InDoubleRange(double v) { return v >= -DBL_MAX && v <= DBL_MAX; }

/// a.b summed x, y, z from 0.0.
double Dot3(const TarnVector3d& a, const TarnVector3d& b) {
  double s = 0.0;
  for (std::size_t i = 0; i < 3; ++i)
    s += a[i] * b[i];
  return s;
}

} // namespace

double ZEL_Algebra::DotProduct(const std::vector<double>& a, const std::vector<double>& b) {
  if (b.size() < a.size())
    Fail("141010210524", ZEL_MESSAGE("DotProduct: the second vector has %zu elements, fewer than "
                                     "the %zu of the first.",
                                     b.size(), a.size()));
  double s = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i)
    s += a[i] * b[i];
  return s;
}

void ZEL_Algebra::GetMatrixTranspose(const std::vector<double>& A, std::size_t rows,
                                     std::vector<double>& At) {
  if (rows == 0)
    Fail("141011210524", "GetMatrixTranspose: the row count is 0.");
  if (&A == &At) {
    const std::vector<double> copy = A;
    GetMatrixTranspose(copy, rows, At);
    return;
  }
  const std::size_t cols = A.size() / rows;
  At.resize(A.size());
  for (std::size_t i = 0; i < rows; ++i)
    for (std::size_t j = 0; j < cols; ++j)
      At[j * rows + i] = A[i * cols + j];
}

void ZEL_Algebra::MatrixMultiplication(const std::vector<double>& A, std::size_t rows,
                                       const std::vector<double>& B, std::vector<double>& C) {
  if (rows == 0)
    Fail("141012210524", "MatrixMultiplication: the row count is 0.");
  const std::size_t m = A.size() / rows;
  if (m == 0)
    Fail("141013210524",
         ZEL_MESSAGE("MatrixMultiplication: %zu elements cannot form %zu rows.", A.size(), rows));
  if (&C == &A || &C == &B) {
    std::vector<double> product;
    MatrixMultiplication(A, rows, B, product);
    C = std::move(product);
    return;
  }
  const std::size_t p = B.size() / m;
  C.resize(rows * p);
  // Loop order i, l, j: rows of B and C are walked contiguously, and every
  // C[i*p + j] still receives its terms in increasing l.
  for (std::size_t i = 0; i < rows; ++i) {
    double* c = C.data() + i * p;
    std::fill(c, c + p, 0.0);
    for (std::size_t l = 0; l < m; ++l) {
      const double ail = A[i * m + l];
      const double* b = B.data() + l * p;
      for (std::size_t j = 0; j < p; ++j)
        c[j] += ail * b[j];
    }
  }
}

void ZEL_Algebra::MatrixVectorMultiplication(const std::vector<double>& A,
                                             const std::vector<TarnVector3d>& V,
                                             std::vector<TarnVector3d>& W) {
  const std::size_t n = V.size();
  if (n == 0)
    Fail("141014210524", "MatrixVectorMultiplication: the vector column is empty.");
  if (&V == &W) {
    std::vector<TarnVector3d> product;
    MatrixVectorMultiplication(A, V, product);
    W = std::move(product);
    return;
  }
  // The row count has always been a 32-bit signed count.
  const std::int32_t r = static_cast<std::int32_t>(A.size() / n);
  W.resize(static_cast<std::size_t>(r));
  for (std::int32_t i = 0; i < r; ++i) {
    TarnVector3d sum;
    for (std::size_t j = 0; j < n; ++j)
      sum += A[static_cast<std::size_t>(i) * n + j] * V[j];
    W[i] = sum;
  }
}

bool ZEL_Algebra::SolveSystem3x3(const TarnVector3d* a, const TarnVector3d& b, TarnVector3d& x,
                                 double tolerance) {
  // Both messages are written when the value is finite, the reverse of what
  // they say; log scanners rely on them as they are.
  for (std::size_t i = 0; i < 3; ++i)
    if (InDoubleRange(b[i])) {
      ZEL_LOG_TRACE(kHeader, "Right side contains NaN(s) values!");
      break;
    }
  const TarnVector3d c = a[1].Cross(a[2]);
  const double det = Dot3(a[0], c);
  if (InDoubleRange(det))
    ZEL_LOG_TRACE(kHeader, "determinant is NaN!");
  if (tolerance > std::fabs(det))
    return false;
  // Cramer's rule: component k is the determinant with column k replaced
  // by b, divided by det.
  x = TarnVector3d(Dot3(b, c), Dot3(a[0], b.Cross(a[2])), Dot3(a[0], a[1].Cross(b))) / det;
  return true;
}
