//===- TarnUtilities/math/TarnUtilFullMatrix.h - Dense matrix --*- C++ -*-===//
//
// A dense matrix of run-time size. Its rows x cols elements live in one
// ZEL_DoubleArray column by column: stored element (i, j) at index
// j * rows + i. Transpose() only flips the flag; the storage stays as it is,
// and element access maps logical (i, j) to stored (j, i).
//
// Example:
//   TarnUtilFullMatrix m(2, 2);
//   m(0, 1) = 5.0;            // GetValues()[2] == 5.0 (column 1, row 0)
//   m.Transpose();            // m(1, 0) == 5.0, GetValues() unchanged
//   double y[2], x[2] = {1.0, 1.0};
//   m.Multiply(x, y);         // y = (0, 5)
//
// Failures (ZEL_Failure, header "[%T|%n|%P|TarnUtilities|TarnUtilFullMatrix] "):
// AddScaledMatrix with a different logical shape, and a size whose element
// count does not fit into 64 bits.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_MATH_TARNUTILFULLMATRIX_H
#define TARNUTILITIES_MATH_TARNUTILFULLMATRIX_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/container/ZEL_DoubleArray.h"
#include "TarnUtilities/math/TarnUtilSparseMatrix.h"

#include <cassert>
#include <cstdint>

class TARN_API TarnUtilFullMatrix : public TarnUtilSparseMatrix {
public:
  /// 0 x 0.
  TarnUtilFullMatrix();
  /// rows x cols, all zero.
  TarnUtilFullMatrix(std::uint64_t rows, std::uint64_t cols);
  /// Same storage and flag as `other`.
  TarnUtilFullMatrix(const TarnUtilFullMatrix& other);
  TarnUtilFullMatrix& operator=(const TarnUtilFullMatrix& other);
  ~TarnUtilFullMatrix() override;

  double operator()(std::uint64_t i, std::uint64_t j) const override {
    return m_Values[Index(i, j)];
  }
  /// rows x columns.
  std::uint64_t GetNnz() const override;
  /// y = A x; y[i] is summed from 0.0 over increasing j.
  void Multiply(const double* x, double* y) const override;
  /// The logical contents of `other`, stored untransposed.
  TarnUtilFullMatrix& operator=(const TarnUtilSparseMatrix& other) override;
  void AddScaledMatrix(double factor, const TarnUtilSparseMatrix& other) override;
  double& operator()(std::uint64_t i, std::uint64_t j) override { return m_Values[Index(i, j)]; }
  /// Flips the transposed flag; the storage is not touched.
  void Transpose() override;
  void Resize(std::uint64_t rows, std::uint64_t cols) override;

  /// The column-major storage (stored, not logical, order). Its size is
  /// always rows * cols of the stored shape; do not resize it.
  ZEL_DoubleArray& GetValues() { return m_Values; }
  const ZEL_DoubleArray& GetValues() const { return m_Values; }

private:
  /// Storage index of logical element (i, j).
  std::uint64_t Index(std::uint64_t i, std::uint64_t j) const {
    assert(i < GetNumRows() && j < GetNumColumns() && "TarnUtilFullMatrix index out of range");
    return m_Transposed ? i * m_NumRows + j : j * m_NumRows + i;
  }

  ZEL_DoubleArray m_Values;
};

#endif // TARNUTILITIES_MATH_TARNUTILFULLMATRIX_H
