//===- TarnCoordinateSystem.cpp - Local frames -------------------------------===//
//
// Conversions between local cylindrical/spherical/Cartesian coordinates and
// the parent frame. Every formula is evaluated in one fixed order, so that a
// point converted alone and the same point converted in a batch agree bit
// for bit.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/geometry/TarnCoordinateSystem.h"

#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_Message.h"

#include <cassert>
#include <cmath>

namespace {

/// The failures of this class have always been reported under the header of
/// the failure class itself.
const char* const kHeader = "[%T|%n|%P|TarnUtilities|ZEL_Failure] ";

/// pi as the library has always written it; a degrees => a * kPi / 180.
constexpr double kPi = 3.141592653589793;
/// pi / 2, the polar angle of the equator in the elevation formula.
constexpr double kHalfPi = 1.5707963267948966;
/// Radii at or below this are the axis (cylindrical) or the origin (spherical).
constexpr double kZeroRadius = 1e-16;
/// Frame directions at or below this length are rejected.
constexpr double kShortDirection = 5e-16;

double ToRadians(double degrees) { return degrees * kPi / 180.0; }

/// atan2(y, x) in degrees, moved from (-180, 0) to (180, 360). A result a
/// few ulps below zero becomes exactly 360.0 when 360 is added.
double AzimuthDegrees(double y, double x) {
  double angle = std::atan2(y, x) * 180.0 / kPi;
  if (angle < 0.0)
    angle += 360.0;
  return angle;
}

/// origin + c.x e1 + c.y e2 + c.z e3, summed in that order. Written on
/// scalars so that it inlines into the batch loops.
inline TarnVector3d LocalCartesianToParent(const TarnVector3d& origin, const TarnVector3d& e1,
                                           const TarnVector3d& e2, const TarnVector3d& e3,
                                           const TarnVector3d& c) {
  TarnVector3d r;
  for (std::size_t i = 0; i < 3; ++i)
    r[i] = origin[i] + c[0] * e1[i] + c[1] * e2[i] + c[2] * e3[i];
  return r;
}

/// (d.e1, d.e2, d.e3) for d = p - origin, each dot product summed x, y, z.
inline TarnVector3d ParentToLocalCartesian(const TarnVector3d& origin, const TarnVector3d& e1,
                                           const TarnVector3d& e2, const TarnVector3d& e3,
                                           const TarnVector3d& p) {
  const double d0 = p[0] - origin[0], d1 = p[1] - origin[1], d2 = p[2] - origin[2];
  return TarnVector3d(d0 * e1[0] + d1 * e1[1] + d2 * e1[2], d0 * e2[0] + d1 * e2[1] + d2 * e2[2],
                      d0 * e3[0] + d1 * e3[1] + d2 * e3[2]);
}

} // namespace

TarnCoordinateSystem::TarnCoordinateSystem()
    : TarnCoordinateSystem(CARTESIAN, TarnVector3d(0, 0, 0), TarnVector3d(1, 0, 0),
                           TarnVector3d(0, 1, 0), TarnVector3d(0, 0, 1), CONV_DEFAULT) {}

TarnCoordinateSystem::TarnCoordinateSystem(Type type, const TarnVector3d& origin,
                                           const TarnVector3d& e1, const TarnVector3d& e2,
                                           const TarnVector3d& e3, CoordConvention convention)
    : m_Type(type), m_Origin(origin), m_E1(e1), m_E2(e2), m_E3(e3), m_Convention(convention) {
  SelectConversions();
}

TarnCoordinateSystem::TarnCoordinateSystem(Type type, const TarnVector3d& origin,
                                           const TarnVector3d& a, const TarnVector3d& b,
                                           CoordConvention convention)
    : m_Type(type), m_Origin(origin), m_Convention(convention) {
  const double normA = a.Norm();
  // A NaN norm passes this test on purpose: the axes then come out NaN.
  if (normA <= kShortDirection || b.Norm() <= kShortDirection)
    throw ZEL_Failure(
        ZEL_Code(),
        ZEL_MESSAGE("An attempt was made to transform nodal coordinates using %s %s coordinate system",
                    type == CARTESIAN ? "invalid" : "unsupported", GetTypeString()),
        kHeader);
  m_E3 = a / normA;
  m_E2 = m_E3.Cross(b);
  m_E2 /= m_E2.Norm();
  m_E1 = m_E2.Cross(m_E3);
  m_E1 /= m_E1.Norm();
  SelectConversions();
}

void TarnCoordinateSystem::SelectConversions() {
  m_ToCart = GetConversionFnToCart(m_Type, m_Convention);
  m_FromCart = GetConversionFnFromCart(m_Type);
}

bool TarnCoordinateSystem::operator==(const TarnCoordinateSystem& other) const {
  return m_Type == other.m_Type && m_Origin == other.m_Origin && m_E1 == other.m_E1 &&
         m_E2 == other.m_E2 && m_E3 == other.m_E3 && m_Convention == other.m_Convention;
}

const char* TarnCoordinateSystem::GetTypeString() const {
  switch (m_Type) {
  case CARTESIAN:
    return "CARTESIAN";
  case CYLINDRICAL:
    return "CYLINDRICAL";
  case SPHERICAL:
    return "SPHERICAL";
  }
  return "UNKNOWN";
}

const TarnVector3d& TarnCoordinateSystem::GetAxis(std::size_t i) const {
  assert(i < 3 && "TarnCoordinateSystem has three axes");
  return i == 0 ? m_E1 : i == 1 ? m_E2 : m_E3;
}

void TarnCoordinateSystem::SetConvention(CoordConvention convention) {
  m_Convention = convention;
  m_ToCart = GetConversionFnToCart(m_Type, m_Convention);
}

bool TarnCoordinateSystem::IsIdentity() const {
  return m_Origin.Norm() == 0.0 && m_E1[0] == 1.0 && m_E2[1] == 1.0;
}

TarnVector3d TarnCoordinateSystem::ExpressInLocalCartesianSystem(const TarnVector3d& p) const {
  return m_ToCart(*this, p);
}

TarnVector3d TarnCoordinateSystem::CalculateFromLocalCartesianSystem(const TarnVector3d& p) const {
  return m_FromCart(*this, p);
}

TarnVector3d TarnCoordinateSystem::ExpressInParentCartesianSystem(const TarnVector3d& p) const {
  return LocalCartesianToParent(m_Origin, m_E1, m_E2, m_E3, m_ToCart(*this, p));
}

TarnVector3d TarnCoordinateSystem::CalculateFromParentCartesianSystem(const TarnVector3d& p) const {
  return m_FromCart(*this, ParentToLocalCartesian(m_Origin, m_E1, m_E2, m_E3, p));
}

// The batch forms skip the call through the conversion pointer when it is
// the identity, which is most of the cost for a Cartesian system; the
// arithmetic is the same helper as in the single-point forms.
void TarnCoordinateSystem::ExpressInParentCartesianSystem(const TarnVector3d* in, TarnVector3d* out,
                                                          std::size_t count) const {
  const TarnVector3d origin = m_Origin, e1 = m_E1, e2 = m_E2, e3 = m_E3;
  if (m_ToCart == &ExpressCartesianInCartesianSystem) {
    for (std::size_t i = 0; i < count; ++i)
      out[i] = LocalCartesianToParent(origin, e1, e2, e3, in[i]);
  } else {
    for (std::size_t i = 0; i < count; ++i)
      out[i] = LocalCartesianToParent(origin, e1, e2, e3, m_ToCart(*this, in[i]));
  }
}

void TarnCoordinateSystem::CalculateFromParentCartesianSystem(const TarnVector3d* in,
                                                              TarnVector3d* out,
                                                              std::size_t count) const {
  const TarnVector3d origin = m_Origin, e1 = m_E1, e2 = m_E2, e3 = m_E3;
  if (m_FromCart == &ExpressCartesianInCartesianSystem) {
    for (std::size_t i = 0; i < count; ++i)
      out[i] = ParentToLocalCartesian(origin, e1, e2, e3, in[i]);
  } else {
    for (std::size_t i = 0; i < count; ++i)
      out[i] = m_FromCart(*this, ParentToLocalCartesian(origin, e1, e2, e3, in[i]));
  }
}

TarnMatrix3x3d TarnCoordinateSystem::GetTransformationToCs(const TarnCoordinateSystem& other) const {
  TarnMatrix3x3d m;
  for (std::size_t r = 0; r < 3; ++r)
    for (std::size_t c = 0; c < 3; ++c)
      m(r, c) = other.GetAxis(r).Dot(GetAxis(c));
  return m;
}

TarnCoordinateSystem::ConversionFn TarnCoordinateSystem::GetConversionFnToCart(Type type,
                                                                               CoordConvention convention) {
  switch (type) {
  case CYLINDRICAL:
    return &ExpressCylindricalInCartesianSystem;
  case SPHERICAL:
    return convention == CONV_ORB ? &ExpressSphericalOrbInCartesianSystem
                                  : &ExpressSphericalIsoInCartesianSystem;
  case CARTESIAN:
    break;
  }
  return &ExpressCartesianInCartesianSystem;
}

TarnCoordinateSystem::ConversionFn TarnCoordinateSystem::GetConversionFnFromCart(Type type) {
  switch (type) {
  case CYLINDRICAL:
    return &ExpressCartesianInCylindricalSystem;
  case SPHERICAL:
    return &ExpressCartesianInSphericalSystem;
  case CARTESIAN:
    break;
  }
  return &ExpressCartesianInCartesianSystem;
}

TarnVector3d TarnCoordinateSystem::ExpressCartesianInCartesianSystem(const TarnCoordinateSystem&,
                                                                     const TarnVector3d& p) {
  return p;
}

TarnVector3d TarnCoordinateSystem::ExpressCylindricalInCartesianSystem(const TarnCoordinateSystem&,
                                                                       const TarnVector3d& p) {
  const double r = p[0], theta = ToRadians(p[1]);
  return TarnVector3d(r * std::cos(theta), r * std::sin(theta), p[2]);
}

TarnVector3d TarnCoordinateSystem::ExpressSphericalIsoInCartesianSystem(const TarnCoordinateSystem&,
                                                                        const TarnVector3d& p) {
  const double r = p[0], theta = ToRadians(p[1]), phi = ToRadians(p[2]);
  const double sinTheta = std::sin(theta);
  return TarnVector3d(r * std::cos(phi) * sinTheta, r * std::sin(phi) * sinTheta,
                      r * std::cos(theta));
}

TarnVector3d TarnCoordinateSystem::ExpressSphericalOrbInCartesianSystem(const TarnCoordinateSystem&,
                                                                        const TarnVector3d& p) {
  const double r = p[0], lambda = ToRadians(p[1]), beta = ToRadians(p[2]);
  const double cosBeta = std::cos(beta);
  return TarnVector3d(r * std::cos(lambda) * cosBeta, r * std::sin(lambda) * cosBeta,
                      r * std::sin(beta));
}

TarnVector3d TarnCoordinateSystem::ExpressCartesianInCylindricalSystem(const TarnCoordinateSystem&,
                                                                       const TarnVector3d& p) {
  const double rho = TarnVector3d(p[0], p[1], 0.0).Norm();
  if (rho <= kZeroRadius)
    return TarnVector3d(0.0, 0.0, p[2]);
  return TarnVector3d(rho, AzimuthDegrees(p[1], p[0]), p[2]);
}

TarnVector3d TarnCoordinateSystem::ExpressCartesianInSphericalSystem(const TarnCoordinateSystem&,
                                                                     const TarnVector3d& p) {
  const double r = p.Norm();
  if (r <= kZeroRadius)
    return TarnVector3d(r, 0.0, 0.0);
  const double beta = (kHalfPi - std::acos(p[2] / r)) * 180.0 / kPi;
  return TarnVector3d(r, AzimuthDegrees(p[1], p[0]), beta);
}
