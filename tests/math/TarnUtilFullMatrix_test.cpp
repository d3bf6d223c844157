//===- TarnUtilFullMatrix_test.cpp - Dense matrix of run-time size ----------===//
#include "TarnUtilities/math/TarnUtilFullMatrix.h"
#include "support/FailureOf.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

std::vector<double> Values(const TarnUtilFullMatrix& m) {
  return std::vector<double>(m.GetValues().data, m.GetValues().data + m.GetValues().size);
}

/// [[1, 2, 3], [4, 5, 6]]
TarnUtilFullMatrix TwoByThree() {
  TarnUtilFullMatrix m(2, 3);
  for (std::uint64_t i = 0; i < 2; ++i)
    for (std::uint64_t j = 0; j < 3; ++j)
      m(i, j) = double(3 * i + j + 1);
  return m;
}

} // namespace

TEST(TarnUtilFullMatrix, ColumnMajorStorageAndTransposedView) {
  TarnUtilFullMatrix m = TwoByThree();
  EXPECT_EQ(Values(m), (std::vector<double>{1, 4, 2, 5, 3, 6}));
  EXPECT_EQ(m.GetNnz(), 6u);
  double y[3];
  const double x3[] = {1, 10, 100}, x2[] = {1, 10};
  m.Multiply(x3, y);
  EXPECT_EQ(y[0], 321.0);
  EXPECT_EQ(y[1], 654.0);

  m.Transpose(); // [[1, 4], [2, 5], [3, 6]], same storage
  const TarnUtilSparseMatrix& view = m;
  EXPECT_TRUE(m.IsTransposed());
  EXPECT_EQ(view.GetNumRows(), 3u);
  EXPECT_EQ(view.GetNumColumns(), 2u);
  EXPECT_EQ(view(2, 0), 3.0);
  EXPECT_EQ(view(0, 1), 4.0);
  EXPECT_EQ(Values(m), (std::vector<double>{1, 4, 2, 5, 3, 6}));
  m.Multiply(x2, y);
  EXPECT_EQ(std::vector<double>(y, y + 3), (std::vector<double>{41, 52, 63}));

  // Copies keep the storage and the flag; assignment through the interface
  // takes the logical matrix, untransposed.
  const TarnUtilFullMatrix copy = m;
  EXPECT_TRUE(copy.IsTransposed());
  TarnUtilFullMatrix assigned;
  assigned = view;
  EXPECT_FALSE(assigned.IsTransposed());
  EXPECT_EQ(assigned.GetNumRows(), 3u);
  EXPECT_EQ(Values(assigned), (std::vector<double>{1, 2, 3, 4, 5, 6}));

  m.Resize(2, 2);
  EXPECT_FALSE(m.IsTransposed());
  EXPECT_EQ(Values(m), (std::vector<double>{0, 0, 0, 0}));
}

TEST(TarnUtilFullMatrix, AddScaledMatrixNeedsTheSameShape) {
  TarnUtilFullMatrix m = TwoByThree();
  TarnUtilFullMatrix t = TwoByThree();
  t.Transpose();
  TarnUtilFullMatrix back;
  back = static_cast<const TarnUtilSparseMatrix&>(t); // stored 3 x 2
  back.Transpose(); // logically [[1, 2, 3], [4, 5, 6]] again
  m.AddScaledMatrix(-2.0, back);
  EXPECT_EQ(Values(m), (std::vector<double>{-1, -4, -2, -5, -3, -6}));
  EXPECT_EQ(tarn_test::FailureMessage([&] { m.AddScaledMatrix(1.0, t); }),
            "Cannot add a 3 x 2 matrix to a 2 x 3 matrix.");
  EXPECT_EQ(Values(m), (std::vector<double>{-1, -4, -2, -5, -3, -6}));
  EXPECT_EQ(tarn_test::FailureMessage([] { TarnUtilFullMatrix(1ull << 33, 1ull << 33); }),
            "A full matrix of 8589934592 x 8589934592 elements is too large.");
}
