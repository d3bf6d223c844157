//===- TarnUtilities/geometry/TarnCoordinateSystem.h - Local frames -*- C++ -*-===//
//
// TarnCoordinateSystem is a local coordinate system placed in a parent
// Cartesian space: an origin, three axis directions (in parent coordinates),
// a kind (Cartesian, cylindrical or spherical) and, for spherical systems, a
// convention naming the two angles. It converts points between the local
// coordinates, the local Cartesian frame and the parent Cartesian frame, and
// gives the rotation between two systems.
//
// Local coordinates by kind (angles always in degrees):
//   CARTESIAN               (x, y, z)
//   CYLINDRICAL             (r, theta, z)   theta about e3, from e1
//   SPHERICAL, CONV_ISO     (r, theta, phi) theta polar from e3, phi azimuth from e1
//   SPHERICAL, CONV_ORB     (r, lambda, beta) azimuth from e1, elevation above e1-e2
// CONV_DEFAULT reads spherical coordinates as CONV_ISO. Going from Cartesian
// to spherical always gives the (r, lambda, beta) form, whatever the
// convention: a spherical ISO system reads (1, 90, 0) as the point (1, 0, 0)
// but gives (1, 0, 0) back for that point. This asymmetry is long-standing
// behaviour that callers rely on.
//
// Example:
//   TarnCoordinateSystem cyl(TarnCoordinateSystem::CYLINDRICAL, {0,0,0},
//                            {1,0,0}, {0,1,0}, {0,0,1});
//   cyl.ExpressInParentCartesianSystem({2, 90, 5})     => (0, 2, 5) (rounded)
//   cyl.CalculateFromParentCartesianSystem({0, -2, 5}) => (2, 270, 5)
//
//   // A frame from two directions: a becomes e3, b fixes the e1-e3 plane.
//   TarnCoordinateSystem f(TarnCoordinateSystem::CARTESIAN, {0,0,0},
//                          {0,0,2}, {1,0,0});  // e1 (1,0,0), e2 (0,1,0), e3 (0,0,1)
//
// Nothing is checked beyond the frame directions of the two-direction
// constructor: NaN and infinite values run through the formulas.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_GEOMETRY_TARNCOORDINATESYSTEM_H
#define TARNUTILITIES_GEOMETRY_TARNCOORDINATESYSTEM_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/math/TarnMatrix.h"

#include <cstddef>
#include <cstdint>

class TARN_API TarnCoordinateSystem {
public:
  /// The kind of local coordinates.
  enum Type : std::int32_t { CARTESIAN = 0, CYLINDRICAL = 1, SPHERICAL = 2 };
  /// The meaning of the spherical angles (ignored by the other kinds).
  enum CoordConvention : std::int32_t { CONV_DEFAULT = 0, CONV_ORB = 1, CONV_ISO = 2 };

  /// A conversion between local coordinates and the local Cartesian frame.
  using ConversionFn = TarnVector3d (*)(const TarnCoordinateSystem& cs, const TarnVector3d& p);

  /// @name Construction
  /// @{
  /// CARTESIAN at (0, 0, 0) with the unit axes, CONV_DEFAULT.
  TarnCoordinateSystem();

  /// Stores origin and axes as given (no normalisation, no check).
  TarnCoordinateSystem(Type type, const TarnVector3d& origin, const TarnVector3d& e1,
                       const TarnVector3d& e2, const TarnVector3d& e3,
                       CoordConvention convention = CONV_DEFAULT);

  /// An orthonormal frame from two directions: e3 = a/|a|, e2 = e3 x b
  /// normalised, e1 = e2 x e3 normalised.
  ///   a (0,0,2), b (1,0,0) => e1 (1,0,0), e2 (0,1,0), e3 (0,0,1)
  ///   a (1,0,0), b (1,1,0) => e1 (0,1,0), e2 (0,0,1), e3 (1,0,0)
  /// Throws ZEL_Failure "An attempt was made to transform nodal coordinates
  /// using invalid CARTESIAN coordinate system" ("unsupported CYLINDRICAL",
  /// "unsupported SPHERICAL" for the other kinds) when |a| or |b| is at most
  /// 5e-16. Parallel directions, or a NaN or infinite direction, are not
  /// rejected: the axes then come out NaN.
  TarnCoordinateSystem(Type type, const TarnVector3d& origin, const TarnVector3d& a,
                       const TarnVector3d& b, CoordConvention convention = CONV_DEFAULT);

  TarnCoordinateSystem(const TarnCoordinateSystem&) = default;
  TarnCoordinateSystem(TarnCoordinateSystem&&) = default;
  TarnCoordinateSystem& operator=(const TarnCoordinateSystem&) = default;
  TarnCoordinateSystem& operator=(TarnCoordinateSystem&&) = default;
  /// @}

  /// Same kind, same convention, and origin and axes equal element by element
  /// (exact comparison: a system holding NaN equals no system).
  bool operator==(const TarnCoordinateSystem& other) const;
  bool operator!=(const TarnCoordinateSystem& other) const { return !(*this == other); }

  /// @name Properties
  /// @{
  /// "CARTESIAN", "CYLINDRICAL" or "SPHERICAL"; "UNKNOWN" for a value outside
  /// the enumeration.
  const char* GetTypeString() const;
  Type GetType() const { return m_Type; }
  const TarnVector3d& GetOrigin() const { return m_Origin; }
  /// Axis i (0, 1, 2 for e1, e2, e3).
  const TarnVector3d& GetAxis(std::size_t i) const;
  CoordConvention GetConvention() const { return m_Convention; }
  /// Sets the convention and selects the to-Cartesian conversion again.
  void SetConvention(CoordConvention convention);
  /// The short identity test: the origin's norm is 0, e1.x is 1.0 and e2.y
  /// is 1.0. The kind, e3 and the other components are not looked at (frames
  /// built here are orthonormal, so these three values decide).
  bool IsIdentity() const;
  /// @}

  /// @name Conversions of single points
  /// @{
  /// Local coordinates => local Cartesian frame.
  TarnVector3d ExpressInLocalCartesianSystem(const TarnVector3d& p) const;
  /// Local Cartesian frame => local coordinates.
  TarnVector3d CalculateFromLocalCartesianSystem(const TarnVector3d& p) const;
  /// Local coordinates => parent frame: c = to-Cartesian(p), then
  /// origin + c.x e1 + c.y e2 + c.z e3.
  TarnVector3d ExpressInParentCartesianSystem(const TarnVector3d& p) const;
  /// Parent frame => local coordinates: d = p - origin, then
  /// from-Cartesian((d.e1, d.e2, d.e3)).
  TarnVector3d CalculateFromParentCartesianSystem(const TarnVector3d& p) const;
  /// @}

  /// @name Conversions of many points
  /// Each output point is bit for bit what the single-point form gives.
  /// `in` and `out` hold `count` points each; they may be the same array,
  /// but must not overlap otherwise.
  /// @{
  void ExpressInParentCartesianSystem(const TarnVector3d* in, TarnVector3d* out,
                                      std::size_t count) const;
  void CalculateFromParentCartesianSystem(const TarnVector3d* in, TarnVector3d* out,
                                          std::size_t count) const;
  /// @}

  /// The rotation from this system's axes into the other's:
  /// M(r, c) = other.e_r . this.e_c, so a direction v given in this system's
  /// axes is M v in the other's.
  TarnMatrix3x3d GetTransformationToCs(const TarnCoordinateSystem& other) const;

  /// @name Conversion functions
  /// @{
  /// To Cartesian by kind: identity, cylindrical, spherical ISO; spherical
  /// with CONV_ORB uses the ORB form (CONV_DEFAULT and CONV_ISO the ISO one).
  /// An unknown kind converts by the identity.
  static ConversionFn GetConversionFnToCart(Type type, CoordConvention convention);
  /// From Cartesian by kind alone: identity, cylindrical, spherical (always
  /// the (r, lambda, beta) form). An unknown kind converts by the identity.
  static ConversionFn GetConversionFnFromCart(Type type);

  /// p unchanged.
  static TarnVector3d ExpressCartesianInCartesianSystem(const TarnCoordinateSystem& cs,
                                                        const TarnVector3d& p);
  /// (r, theta, z) => (r cos theta, r sin theta, z).
  static TarnVector3d ExpressCylindricalInCartesianSystem(const TarnCoordinateSystem& cs,
                                                          const TarnVector3d& p);
  /// (r, theta, phi) => (r cos phi sin theta, r sin phi sin theta, r cos theta).
  static TarnVector3d ExpressSphericalIsoInCartesianSystem(const TarnCoordinateSystem& cs,
                                                           const TarnVector3d& p);
  /// (r, lambda, beta) => (r cos lambda cos beta, r sin lambda cos beta, r sin beta).
  static TarnVector3d ExpressSphericalOrbInCartesianSystem(const TarnCoordinateSystem& cs,
                                                           const TarnVector3d& p);
  /// (x, y, z) => (rho, theta, z), theta in degrees from atan2, 360 added when
  /// negative; rho <= 1e-16 gives (0, 0, z).
  ///   (0, -2, 5) => (2, 270, 5)      (0, 0, 7) => (0, 0, 7)
  static TarnVector3d ExpressCartesianInCylindricalSystem(const TarnCoordinateSystem& cs,
                                                          const TarnVector3d& p);
  /// (x, y, z) => (r, lambda, beta): lambda as theta above, beta the elevation
  /// 90 - acos(z/r) in degrees; r <= 1e-16 gives (r, 0, 0).
  ///   (0, 0, 3) => (3, 0, 90)        (1, 0, 0) => (1, 0, 0)
  static TarnVector3d ExpressCartesianInSphericalSystem(const TarnCoordinateSystem& cs,
                                                        const TarnVector3d& p);
  /// @}

private:
  void SelectConversions();

  Type m_Type;
  TarnVector3d m_Origin;
  TarnVector3d m_E1;
  TarnVector3d m_E2;
  TarnVector3d m_E3;
  CoordConvention m_Convention;
  ConversionFn m_ToCart;
  ConversionFn m_FromCart;
};

#endif // TARNUTILITIES_GEOMETRY_TARNCOORDINATESYSTEM_H
