//===- ZEL_TransformationMatrix.cpp - Affine maps ----------------------------===//
//
// Every step builds its 3x3 block (and, for planes, its offset) and
// multiplies it onto the map from the left. Degenerate axes and normals make
// a step do nothing; nothing is reported.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/geometry/ZEL_TransformationMatrix.h"

#include <cmath>

namespace {

/// Rotation axes up to this length are no axis. The threshold has always
/// been the float literal 1e-8f, i.e. 9.99999993922529e-9.
constexpr double kShortAxis = static_cast<double>(1e-8f);
/// Plane normals whose squared length is at most this are no normal.
constexpr double kShortNormalSquared = 1e-16;

/// I - f n n^T / q: the block of a projection (f = 1) or reflection (f = 2)
/// on the plane with normal n, q = n.n.
TarnMatrix3x3d PlaneBlock(const TarnVector3d& n, double q, double f) {
  TarnMatrix3x3d m = TarnMatrix3x3d::Identity();
  for (std::size_t r = 0; r < 3; ++r)
    for (std::size_t c = 0; c < 3; ++c)
      m(r, c) -= f * (n[r] * n[c]) / q;
  return m;
}

} // namespace

ZEL_TransformationMatrix::ZEL_TransformationMatrix() : m_L(TarnMatrix3x3d::Identity()), m_t() {}

double ZEL_TransformationMatrix::operator()(std::size_t i, std::size_t j) const {
  if (i < 3 && j < 3)
    return m_L(i, j);
  if (i < 3 && j == 3)
    return m_t[i];
  return i == 3 && j == 3 ? 1.0 : 0.0;
}

TarnVector3d ZEL_TransformationMatrix::operator*(const TarnVector3d& p) const {
  return m_L * p + m_t;
}

void ZEL_TransformationMatrix::ApplyTransformation(TarnVector3d& p) const { p = m_L * p + m_t; }

void ZEL_TransformationMatrix::ApplyTransformation(TarnRowVector3d& q) const {
  const TarnRowVector3d ql = q * m_L;
  for (std::size_t j = 0; j < 3; ++j)
    q[j] = ql[j] + m_t[j];
}

void ZEL_TransformationMatrix::ApplyTransformation(const TarnVector3d* in, TarnVector3d* out,
                                                   std::size_t count) const {
  // Local copies let the compiler keep L and t in registers: `out` may alias
  // neither of them, but it cannot know that of the members.
  const TarnMatrix3x3d l = m_L;
  const TarnVector3d t = m_t;
  for (std::size_t i = 0; i < count; ++i)
    out[i] = l * in[i] + t;
}

void ZEL_TransformationMatrix::AddTranslation(const TarnVector3d& v) { m_t += v; }

void ZEL_TransformationMatrix::AddScaling(const TarnVector3d& s) {
  for (std::size_t r = 0; r < 3; ++r)
    for (std::size_t c = 0; c < 3; ++c)
      m_L(r, c) *= s[r];
}

void ZEL_TransformationMatrix::AddScaling(double s) { m_L *= s; }

void ZEL_TransformationMatrix::AddRotation(const TarnVector3d& axis, double angle) {
  const double q = axis.Dot(axis);
  const double n = std::sqrt(q);
  if (n <= kShortAxis)
    return;
  // Rodrigues: R = cos I + (sin / |a|) K + ((1 - cos) / |a|^2) a a^T, with K
  // the cross-product matrix of a (K v = a x v).
  const double cosA = std::cos(angle);
  const double sinOverN = std::sin(angle) / n;
  const double oneMinusCosOverQ = (1.0 - cosA) / q;
  const TarnMatrix3x3d k(0.0, -axis[2], axis[1], //
                         axis[2], 0.0, -axis[0], //
                         -axis[1], axis[0], 0.0);
  const TarnMatrix3x3d aaT = axis * axis.Transpose();
  MultiplyLeft(cosA * TarnMatrix3x3d::Identity() + sinOverN * k + oneMinusCosOverQ * aaT);
}

void ZEL_TransformationMatrix::AddProjectionOnPlane(const TarnVector3d& point,
                                                    const TarnVector3d& normal) {
  const double q = normal.Dot(normal);
  if (q <= kShortNormalSquared)
    return;
  const double d = point.Dot(normal);
  MultiplyLeft(PlaneBlock(normal, q, 1.0), (d / q) * normal);
}

void ZEL_TransformationMatrix::AddReflectionOnPlane(const TarnVector3d& point,
                                                    const TarnVector3d& normal) {
  const double q = normal.Dot(normal);
  if (q <= kShortNormalSquared)
    return;
  const double d = point.Dot(normal);
  MultiplyLeft(PlaneBlock(normal, q, 2.0), (2.0 * d / q) * normal);
}

void ZEL_TransformationMatrix::AddCoordinateSystemTransformation(const TarnVector3d& a,
                                                                 const TarnVector3d& b,
                                                                 const TarnVector3d& c) {
  MultiplyLeft(TarnMatrix3x3d(a[0], a[1], a[2], b[0], b[1], b[2], c[0], c[1], c[2]));
}

void ZEL_TransformationMatrix::AddInverseCoordinateSystemTransformation(const TarnVector3d& a,
                                                                        const TarnVector3d& b,
                                                                        const TarnVector3d& c) {
  MultiplyLeft(TarnMatrix3x3d(a[0], b[0], c[0], a[1], b[1], c[1], a[2], b[2], c[2]));
}

void ZEL_TransformationMatrix::ClearTransformationMatrix() {
  m_L = TarnMatrix3x3d::Identity();
  m_t *= 0.0;
}

void ZEL_TransformationMatrix::MultiplyLeft(const TarnMatrix3x3d& m) {
  m_L = m * m_L;
  m_t = m * m_t;
}

void ZEL_TransformationMatrix::MultiplyLeft(const TarnMatrix3x3d& m, const TarnVector3d& v) {
  MultiplyLeft(m);
  m_t += v;
}
