//===- TarnUtilities/math/TarnMatrix.h - Fixed-size value matrix -*- C++ -*-===//
//
// TarnMatrix<R,C,T> is a matrix of R rows and C columns held by value: R*C
// elements of type T in one contiguous block, row-major (element (r, c) at
// linear position r*C + c), no heap storage, freely copied. It is the
// library's point and direction type (TarnVector3d = TarnMatrix<3,1,double>,
// x, y, z) and its 3x3 block type (TarnMatrix3x3d, row-major).
//
// Example:
//   TarnVector3d a(1.0, 2.0, 3.0), b(0.0, 1.0, 0.0);
//   a + b                  => (1, 3, 3)
//   2.0 * a                => (2, 4, 6)
//   a.Dot(b)               => 2.0
//   a.Cross(b)             => (-3, 0, 1)
//   TarnVector3d().Norm()  => 0.0 (a default matrix is all zero)
//   TarnMatrix3x3d::Identity() * a == a
//
// Every operation is elementwise IEEE arithmetic in a fixed order, so results
// are reproducible bit for bit:
//   - sums, differences, scalar products and quotients work element by
//     element (a quotient divides; it never multiplies by a reciprocal);
//   - the matrix product, Dot and Norm sum their products in increasing
//     index, starting from the first product (not from a zero);
//   - equality compares elements with ==, so a matrix holding NaN is not
//     equal to itself.
// Everything except Norm (which needs std::sqrt) is constexpr.
//
// Element access is not checked in release builds, like std::array's
// operator[]; assertions check it in debug builds.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_MATH_TARNMATRIX_H
#define TARNUTILITIES_MATH_TARNMATRIX_H

#include <cassert>
#include <cmath>
#include <cstddef>
#include <type_traits>

template <std::size_t R, std::size_t C, typename T = double> class TarnMatrix {
  static_assert(R > 0 && C > 0, "TarnMatrix needs at least one row and one column");

public:
  using value_type = T;
  static constexpr std::size_t kRows = R;
  static constexpr std::size_t kColumns = C;
  static constexpr std::size_t kSize = R * C;

  /// All elements zero (value-initialised T).
  constexpr TarnMatrix() : m_Data{} {}

  /// The R*C elements in row-major order:
  ///   TarnMatrix<2,2>(1, 2, 3, 4)(1, 0) => 3
  template <typename... Values,
            typename = std::enable_if_t<sizeof...(Values) == R * C && (R * C > 1) &&
                                        (std::is_convertible<Values, T>::value && ...)>>
  constexpr TarnMatrix(Values... values) : m_Data{static_cast<T>(values)...} {}

  /// A 1x1 matrix from its one element (explicit, so a scalar never turns
  /// into a matrix by accident).
  template <typename Value,
            typename = std::enable_if_t<R * C == 1 && std::is_convertible<Value, T>::value>>
  constexpr explicit TarnMatrix(Value value) : m_Data{static_cast<T>(value)} {}

  /// The identity of a square matrix.
  template <std::size_t N = R, typename = std::enable_if_t<N == C>>
  static constexpr TarnMatrix Identity() {
    TarnMatrix m;
    for (std::size_t i = 0; i < R; ++i)
      m(i, i) = T(1);
    return m;
  }

  /// @name Element access
  /// @{
  /// Element (r, c), row-major.
  constexpr T& operator()(std::size_t r, std::size_t c) {
    assert(r < R && c < C && "TarnMatrix element out of range");
    return m_Data[r * C + c];
  }
  constexpr const T& operator()(std::size_t r, std::size_t c) const {
    assert(r < R && c < C && "TarnMatrix element out of range");
    return m_Data[r * C + c];
  }
  /// Element at linear position i = r*C + c; for a vector simply element i.
  constexpr T& operator[](std::size_t i) {
    assert(i < R * C && "TarnMatrix index out of range");
    return m_Data[i];
  }
  constexpr const T& operator[](std::size_t i) const {
    assert(i < R * C && "TarnMatrix index out of range");
    return m_Data[i];
  }
  /// The R*C elements, row-major.
  constexpr T* data() { return m_Data; }
  constexpr const T* data() const { return m_Data; }
  static constexpr std::size_t size() { return R * C; }
  /// @}

  /// @name Elementwise arithmetic
  /// @{
  constexpr TarnMatrix& operator+=(const TarnMatrix& o) {
    for (std::size_t i = 0; i < R * C; ++i)
      m_Data[i] += o.m_Data[i];
    return *this;
  }
  constexpr TarnMatrix& operator-=(const TarnMatrix& o) {
    for (std::size_t i = 0; i < R * C; ++i)
      m_Data[i] -= o.m_Data[i];
    return *this;
  }
  constexpr TarnMatrix& operator*=(const T& s) {
    for (std::size_t i = 0; i < R * C; ++i)
      m_Data[i] *= s;
    return *this;
  }
  /// Divides every element by s (a true division per element).
  constexpr TarnMatrix& operator/=(const T& s) {
    for (std::size_t i = 0; i < R * C; ++i)
      m_Data[i] /= s;
    return *this;
  }
  friend constexpr TarnMatrix operator+(TarnMatrix a, const TarnMatrix& b) { return a += b; }
  friend constexpr TarnMatrix operator-(TarnMatrix a, const TarnMatrix& b) { return a -= b; }
  friend constexpr TarnMatrix operator*(TarnMatrix a, const T& s) { return a *= s; }
  friend constexpr TarnMatrix operator*(const T& s, TarnMatrix a) {
    for (std::size_t i = 0; i < R * C; ++i)
      a.m_Data[i] = s * a.m_Data[i];
    return a;
  }
  friend constexpr TarnMatrix operator/(TarnMatrix a, const T& s) { return a /= s; }
  /// Negates every element (so 0 becomes -0).
  friend constexpr TarnMatrix operator-(TarnMatrix a) {
    for (std::size_t i = 0; i < R * C; ++i)
      a.m_Data[i] = -a.m_Data[i];
    return a;
  }
  friend constexpr bool operator==(const TarnMatrix& a, const TarnMatrix& b) {
    for (std::size_t i = 0; i < R * C; ++i)
      if (!(a.m_Data[i] == b.m_Data[i]))
        return false;
    return true;
  }
  friend constexpr bool operator!=(const TarnMatrix& a, const TarnMatrix& b) { return !(a == b); }
  /// @}

  /// The C x R transpose.
  constexpr TarnMatrix<C, R, T> Transpose() const {
    TarnMatrix<C, R, T> t;
    for (std::size_t r = 0; r < R; ++r)
      for (std::size_t c = 0; c < C; ++c)
        t(c, r) = (*this)(r, c);
    return t;
  }

  /// Sum of the elementwise products in element order, for two matrices of
  /// the same shape (for vectors the dot product):
  ///   (1, 2, 3).Dot((4, 5, 6)) => 1*4 + 2*5 + 3*6 = 32
  constexpr T Dot(const TarnMatrix& o) const {
    T sum = m_Data[0] * o.m_Data[0];
    for (std::size_t i = 1; i < R * C; ++i)
      sum += m_Data[i] * o.m_Data[i];
    return sum;
  }

  /// Cross product of two 3-vectors (column or row):
  ///   (x1*y2 - x2*y1 ...): (1, 0, 0) x (0, 1, 0) => (0, 0, 1)
  template <std::size_t N = R * C, typename = std::enable_if_t<N == 3>>
  constexpr TarnMatrix Cross(const TarnMatrix& o) const {
    const T* a = m_Data;
    const T* b = o.m_Data;
    TarnMatrix c;
    c.m_Data[0] = a[1] * b[2] - a[2] * b[1];
    c.m_Data[1] = a[2] * b[0] - a[0] * b[2];
    c.m_Data[2] = a[0] * b[1] - a[1] * b[0];
    return c;
  }

  /// Euclidean (Frobenius) norm: the square root of the sum of the squares,
  /// summed in element order.
  T Norm() const {
    using std::sqrt;
    return sqrt(Dot(*this));
  }

private:
  template <std::size_t, std::size_t, typename> friend class TarnMatrix;
  T m_Data[R * C];
};

/// Matrix product of conforming sizes: element (r, c) is the sum over k of
/// a(r, k) * b(k, c), summed in increasing k from the first product.
template <std::size_t R, std::size_t K, std::size_t C, typename T>
constexpr TarnMatrix<R, C, T> operator*(const TarnMatrix<R, K, T>& a, const TarnMatrix<K, C, T>& b) {
  TarnMatrix<R, C, T> m;
  for (std::size_t r = 0; r < R; ++r)
    for (std::size_t c = 0; c < C; ++c) {
      T sum = a(r, 0) * b(0, c);
      for (std::size_t k = 1; k < K; ++k)
        sum += a(r, k) * b(k, c);
      m(r, c) = sum;
    }
  return m;
}

/// Free forms of the member products, for callers that prefer Dot(a, b).
template <std::size_t R, std::size_t C, typename T>
constexpr T Dot(const TarnMatrix<R, C, T>& a, const TarnMatrix<R, C, T>& b) {
  return a.Dot(b);
}
template <std::size_t R, std::size_t C, typename T>
constexpr TarnMatrix<R, C, T> Cross(const TarnMatrix<R, C, T>& a, const TarnMatrix<R, C, T>& b) {
  return a.Cross(b);
}

/// A point or direction in space: column vector x, y, z.
using TarnVector3d = TarnMatrix<3, 1, double>;
/// A row 3-vector x, y, z.
using TarnRowVector3d = TarnMatrix<1, 3, double>;
/// A 3x3 block, row-major: element (r, c) at position 3*r + c.
using TarnMatrix3x3d = TarnMatrix<3, 3, double>;

#endif // TARNUTILITIES_MATH_TARNMATRIX_H
