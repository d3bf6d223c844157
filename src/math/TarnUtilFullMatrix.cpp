//===- TarnUtilFullMatrix.cpp - Dense matrix --------------------------------===//
#include "TarnUtilities/math/TarnUtilFullMatrix.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_Message.h"

#include <algorithm>
#include <cinttypes>
#include <limits>

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|TarnUtilFullMatrix] ";

/// rows * cols, or a failure when the product does not fit into 64 bits.
std::uint64_t ElementCount(std::uint64_t rows, std::uint64_t cols) {
  if (cols != 0 && rows > std::numeric_limits<std::uint64_t>::max() / cols)
    throw ZEL_Failure(ZEL_Code("141003210524"),
                      ZEL_MESSAGE("A full matrix of %" PRIu64 " x %" PRIu64 " elements is too large.",
                                  rows, cols),
                      kHeader);
  return rows * cols;
}

} // namespace

TarnUtilFullMatrix::TarnUtilFullMatrix() : TarnUtilSparseMatrix(0, 0) {}

TarnUtilFullMatrix::TarnUtilFullMatrix(std::uint64_t rows, std::uint64_t cols)
    : TarnUtilSparseMatrix(0, 0) {
  Resize(rows, cols);
}

TarnUtilFullMatrix::TarnUtilFullMatrix(const TarnUtilFullMatrix& other) = default;

TarnUtilFullMatrix& TarnUtilFullMatrix::operator=(const TarnUtilFullMatrix& other) {
  if (this != &other) {
    m_Values = other.m_Values;
    CopyShape(other);
  }
  return *this;
}

TarnUtilFullMatrix::~TarnUtilFullMatrix() = default;

std::uint64_t TarnUtilFullMatrix::GetNnz() const { return m_NumRows * m_NumColumns; }

void TarnUtilFullMatrix::Multiply(const double* x, double* y) const {
  const std::uint64_t rows = m_NumRows;
  const std::uint64_t cols = m_NumColumns;
  const double* a = m_Values.data;
  if (m_Transposed) {
    // Logical row i is stored column i: a contiguous dot product.
    for (std::uint64_t i = 0; i < cols; ++i) {
      double s = 0.0;
      for (std::uint64_t j = 0; j < rows; ++j)
        s += a[i * rows + j] * x[j];
      y[i] = s;
    }
    return;
  }
  // Column by column, so that the storage is read in order; every y[i]
  // still receives its terms in increasing j.
  std::fill(y, y + rows, 0.0);
  for (std::uint64_t j = 0; j < cols; ++j)
    for (std::uint64_t i = 0; i < rows; ++i)
      y[i] += a[j * rows + i] * x[j];
}

TarnUtilFullMatrix& TarnUtilFullMatrix::operator=(const TarnUtilSparseMatrix& other) {
  if (this == &other)
    return *this;
  const std::uint64_t rows = other.GetNumRows();
  const std::uint64_t cols = other.GetNumColumns();
  Resize(rows, cols);
  for (std::uint64_t j = 0; j < cols; ++j)
    for (std::uint64_t i = 0; i < rows; ++i)
      m_Values[j * rows + i] = other(i, j);
  return *this;
}

void TarnUtilFullMatrix::AddScaledMatrix(double factor, const TarnUtilSparseMatrix& other) {
  const std::uint64_t rows = GetNumRows();
  const std::uint64_t cols = GetNumColumns();
  if (other.GetNumRows() != rows || other.GetNumColumns() != cols)
    throw ZEL_Failure(ZEL_Code("141004210524"),
                      ZEL_MESSAGE("Cannot add a %" PRIu64 " x %" PRIu64 " matrix to a %" PRIu64
                                  " x %" PRIu64 " matrix.",
                                  other.GetNumRows(), other.GetNumColumns(), rows, cols),
                      kHeader);
  for (std::uint64_t j = 0; j < cols; ++j)
    for (std::uint64_t i = 0; i < rows; ++i)
      (*this)(i, j) += factor * other(i, j);
}

void TarnUtilFullMatrix::Transpose() { m_Transposed = !m_Transposed; }

void TarnUtilFullMatrix::Resize(std::uint64_t rows, std::uint64_t cols) {
  const std::uint64_t count = ElementCount(rows, cols);
  m_Values.Resize(count);
  std::fill(m_Values.data, m_Values.data + count, 0.0);
  m_NumRows = rows;
  m_NumColumns = cols;
  m_Transposed = false;
}
