//===- TarnUtilFullMatrix_test.cpp - Dense matrix of run-time size ----------===//
#include "TarnUtilities/math/TarnUtilFullMatrix.h"
#include "math/MathTestSupport.h"

namespace {

std::vector<double> Values(const TarnUtilFullMatrix& m) {
  return std::vector<double>(m.GetValues().data, m.GetValues().data + m.GetValues().size);
}

} // namespace

TEST(TarnUtilFullMatrix, ColumnMajorStorageTransposedViewAndCopies) {
  TarnUtilFullMatrix m(2, 3);
  for (int i = 0; i < 2; ++i)
    for (int j = 0; j < 3; ++j)
      m(i, j) = 3 * i + j + 1; // [[1, 2, 3], [4, 5, 6]]
  EXPECT_EQ(Values(m), (std::vector<double>{1, 4, 2, 5, 3, 6}));
  EXPECT_EQ(m.GetNnz(), 6u);
  const std::vector<double> x3{1, 10, 100}, x2{1, 10};
  std::vector<double> y(3);
  m.Multiply(x3.data(), y.data());
  EXPECT_EQ(y, (std::vector<double>{321, 654, 0}));

  m.Transpose(); // [[1, 4], [2, 5], [3, 6]], same storage
  const TarnUtilSparseMatrix& view = m;
  EXPECT_TRUE(view.GetNumRows() == 3u && view.GetNumColumns() == 2u && view(2, 0) == 3.0 && view(0, 1) == 4.0);
  EXPECT_EQ(Values(m), (std::vector<double>{1, 4, 2, 5, 3, 6}));
  m.Multiply(x2.data(), y.data());
  EXPECT_EQ(y, (std::vector<double>{41, 52, 63}));

  // Copies keep storage and flag; assignment through the interface takes
  // the logical matrix, untransposed.
  EXPECT_TRUE(TarnUtilFullMatrix(m).IsTransposed());
  TarnUtilFullMatrix logical;
  logical = view;
  EXPECT_FALSE(logical.IsTransposed());
  EXPECT_EQ(Values(logical), (std::vector<double>{1, 2, 3, 4, 5, 6}));

  // this += f * other across the two layouts; shapes must agree.
  logical.AddScaledMatrix(-2.0, view);
  EXPECT_EQ(Values(logical), (std::vector<double>{-1, -2, -3, -4, -5, -6}));
  m.Transpose(); // 2 x 3 again
  EXPECT_EQ(tarn_test::FailureMessage([&] { logical.AddScaledMatrix(1.0, m); }),
            "Cannot add a 2 x 3 matrix to a 3 x 2 matrix.");
  EXPECT_EQ(Values(logical), (std::vector<double>{-1, -2, -3, -4, -5, -6}));

  m.Resize(2, 2);
  EXPECT_TRUE(!m.IsTransposed() && Values(m) == std::vector<double>(4, 0.0));
  EXPECT_EQ(tarn_test::FailureMessage([] { TarnUtilFullMatrix(1ull << 33, 1ull << 33); }),
            "A full matrix of 8589934592 x 8589934592 elements is too large.");
}
