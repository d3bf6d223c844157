//===- TarnUtilities/math/TarnUtilSparseMatrix.h - Matrix interface -*- C++ -*-===//
//
// The abstract base of the library's matrices of run-time size. It holds the
// stored row and column counts and a transposed flag; the element storage
// belongs to the derived class. A transposed matrix reports its counts
// swapped, so callers always see the logical shape:
//
//   TarnUtilFullMatrix m(2, 3);   // GetNumRows() => 2, GetNumColumns() => 3
//   m.Transpose();                // GetNumRows() => 3, GetNumColumns() => 2
//
// Indexes are logical (row i, column j of what GetNumRows/GetNumColumns
// report) and are not checked in release builds.
//
// The order of the virtual functions is part of the binary interface shared
// with code compiled against earlier versions: do not reorder or insert.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_MATH_TARNUTILSPARSEMATRIX_H
#define TARNUTILITIES_MATH_TARNUTILSPARSEMATRIX_H

#include "TarnUtilities/Export.h"

#include <cstdint>

class TARN_API TarnUtilSparseMatrix {
public:
  virtual ~TarnUtilSparseMatrix();

  /// Element (i, j) of the logical matrix.
  virtual double operator()(std::uint64_t i, std::uint64_t j) const = 0;
  /// Logical row count: the stored column count when transposed.
  virtual std::uint64_t GetNumRows() const;
  /// Logical column count: the stored row count when transposed.
  virtual std::uint64_t GetNumColumns() const;
  /// Number of stored elements.
  virtual std::uint64_t GetNnz() const = 0;
  /// y = A x, x of GetNumColumns() and y of GetNumRows() elements; each y[i]
  /// is summed over increasing j. x and y must not overlap.
  virtual void Multiply(const double* x, double* y) const = 0;
  /// Takes the shape and the elements of `other` (any kind of matrix).
  virtual TarnUtilSparseMatrix& operator=(const TarnUtilSparseMatrix& other) = 0;
  /// this += factor * other, element by element; the logical shapes must match.
  virtual void AddScaledMatrix(double factor, const TarnUtilSparseMatrix& other) = 0;
  /// Element (i, j) of the logical matrix, writable.
  virtual double& operator()(std::uint64_t i, std::uint64_t j) = 0;
  /// Transposes the logical matrix.
  virtual void Transpose() = 0;
  /// rows x cols, all elements zero, not transposed.
  virtual void Resize(std::uint64_t rows, std::uint64_t cols) = 0;

  bool IsTransposed() const { return m_Transposed; }

protected:
  TarnUtilSparseMatrix(std::uint64_t rows, std::uint64_t cols)
      : m_NumRows(rows), m_NumColumns(cols), m_Transposed(false) {}
  TarnUtilSparseMatrix(const TarnUtilSparseMatrix&) = default;
  /// Copies the counts and the flag; for derived copy assignments.
  void CopyShape(const TarnUtilSparseMatrix& other) {
    m_NumRows = other.m_NumRows;
    m_NumColumns = other.m_NumColumns;
    m_Transposed = other.m_Transposed;
  }

  std::uint64_t m_NumRows;    ///< stored row count
  std::uint64_t m_NumColumns; ///< stored column count
  bool m_Transposed;          ///< the logical matrix is the transpose of the stored one
};

#endif // TARNUTILITIES_MATH_TARNUTILSPARSEMATRIX_H
