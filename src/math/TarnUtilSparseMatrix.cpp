//===- TarnUtilSparseMatrix.cpp - Matrix interface --------------------------===//
#include "TarnUtilities/math/TarnUtilSparseMatrix.h"

TarnUtilSparseMatrix::~TarnUtilSparseMatrix() = default;

std::uint64_t TarnUtilSparseMatrix::GetNumRows() const {
  return m_Transposed ? m_NumColumns : m_NumRows;
}

std::uint64_t TarnUtilSparseMatrix::GetNumColumns() const {
  return m_Transposed ? m_NumRows : m_NumColumns;
}
