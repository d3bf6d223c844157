//===- TarnUtilities/math/ZEL_Algebra.h - Dense kernels --------*- C++ -*-===//
//
// Products, transposition and linear solvers on small dense matrices.
// ZEL_Algebra is a class of static functions; it keeps no state.
//
// Matrices of run-time size are passed either as a flat std::vector<double>
// in row-major order with an explicit row count (an m x n matrix holds
// element (i, j) at i*n + j, and n is derived as size / rows), or as a
// TarnUtilFullMatrix (column-major, see TarnUtilFullMatrix.h).
//
// Every sum is accumulated from 0.0 in increasing index, so results are
// reproducible bit for bit. Example:
//   std::vector<double> A = {1, 2, 3, 4, 5, 6}, At;   // 2 x 3
//   ZEL_Algebra::GetMatrixTranspose(A, 2, At);        // At = {1, 4, 2, 5, 3, 6}
//   std::vector<double> C;
//   ZEL_Algebra::MatrixMultiplication(A, 2, At, C);   // C = {14, 32, 32, 77}
//
// Gauss and Gauss_Vector3d report a singular or non-square system by
// returning false and log nothing. Arguments that cannot describe a matrix
// (a row count of 0, a vector too short for the given sizes) throw
// ZEL_Failure with a message naming the argument, header kHeader; nothing
// is written then.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_MATH_ZEL_ALGEBRA_H
#define TARNUTILITIES_MATH_ZEL_ALGEBRA_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/math/TarnMatrix.h"

#include <cstddef>
#include <vector>

class TarnUtilFullMatrix;
class TarnUtilSparseMatrix;

class TARN_API ZEL_Algebra {
public:
  /// Log header of the trace messages and failures of this class. (It has
  /// no blank after the bracket; log scanners match it as it is.)
  static constexpr const char* kHeader = "[%T|%n|%P|TarnUtilities|ZEL_Algebra]";

  /// Pivots and eliminated entries whose magnitude is not greater than
  /// this (absolute, not scaled by the matrix) count as zero.
  static constexpr double kGaussTolerance = 1e-16;

  /// Sum of a[i]*b[i] over i < a.size(), from 0.0 in index order; 0.0 for
  /// an empty a. Throws ZEL_Failure when b is shorter than a.
  static double DotProduct(const std::vector<double>& a, const std::vector<double>& b);

  /// At = transpose of A, where A has `rows` rows and A.size()/rows columns:
  /// At[j*rows + i] = A[i*cols + j]. At is resized to A.size() (trailing
  /// elements of A beyond rows*cols are not read, their slots in At keep
  /// what they held or are zero). At may be A itself. Throws ZEL_Failure
  /// for rows = 0.
  static void GetMatrixTranspose(const std::vector<double>& A, std::size_t rows,
                                 std::vector<double>& At);

  /// C = A B with A of `rows` x m (m = A.size()/rows) and B of m x p
  /// (p = B.size()/m). C gets rows*p elements, each summed from 0.0 over
  /// increasing l. C may be A or B. Throws ZEL_Failure for rows = 0 or
  /// m = 0 (A shorter than rows).
  static void MatrixMultiplication(const std::vector<double>& A, std::size_t rows,
                                   const std::vector<double>& B, std::vector<double>& C);

  /// W = A V for a matrix of r x n scalars (n = V.size(), r = A.size()/n,
  /// taken as a 32-bit signed count) and a column of n vectors: W[i] is the
  /// sum over increasing j of A[i*n + j] * V[j], from the zero vector. W may
  /// be V. Throws ZEL_Failure for an empty V.
  static void MatrixVectorMultiplication(const std::vector<double>& A,
                                         const std::vector<TarnVector3d>& V,
                                         std::vector<TarnVector3d>& W);

  /// Solves A x = b by Gaussian elimination with partial pivoting, in place
  /// of A, whose storage is taken as a column-major n x n array whatever
  /// its transposed flag says. b (n values) is not changed; x receives n
  /// values and may be b.
  ///
  /// Rows are never moved: a permutation selects them. At pivot column k
  /// the first row of largest magnitude wins; a largest magnitude not
  /// greater than 1e-16 returns false. Rows whose entry in column k is not
  /// greater than 1e-16 are left as they are; the others get the entry 0
  /// and have f times the pivot row subtracted (f = entry / pivot).
  ///
  /// Returns true for n = 0 (writing nothing), false for a non-square A.
  /// On false, x may hold partly written values and A is partly eliminated.
  ///   [[0, 1], [1, 0]] x = (2, 3)  => x = (3, 2)
  static bool Gauss(TarnUtilFullMatrix& A, const double* b, double* x);

  /// Copies A (any matrix, element by element) into a full matrix and
  /// solves on the copy; A is not changed. Returns true at once when A has
  /// 0 columns, false for a non-square A. x is not resized: throws
  /// ZEL_Failure when b or x holds fewer than n elements.
  static bool Gauss(const TarnUtilSparseMatrix& A, const std::vector<double>& b,
                    std::vector<double>& x);

  /// Solves A X = B for the n = B.size() right-hand-side vectors at once
  /// (the same elimination and thresholds as Gauss, on the three
  /// components together). The first n*n values of A are copied in the
  /// order given into a column-major matrix, so A is read column by column.
  /// Returns false for an empty A. X is not resized: throws ZEL_Failure
  /// when A holds fewer than n*n values or X fewer than n vectors.
  static bool Gauss_Vector3d(const std::vector<double>& A, const std::vector<TarnVector3d>& B,
                             std::vector<TarnVector3d>& X);

  /// Solves the 3x3 system with columns a[0], a[1], a[2] and right side b
  /// by Cramer's rule. Returns false, leaving x untouched, when
  /// tolerance > |det|.
  ///
  /// Two trace messages are written under kHeader on purpose exactly as
  /// existing log scanners expect them, although their wording reads the
  /// other way round: "Right side contains NaN(s) values!" when at least
  /// one component of b is finite, and "determinant is NaN!" when the
  /// determinant is finite. Neither changes the result.
  static bool SolveSystem3x3(const TarnVector3d* a, const TarnVector3d& b, TarnVector3d& x,
                             double tolerance);
};

#endif // TARNUTILITIES_MATH_ZEL_ALGEBRA_H
