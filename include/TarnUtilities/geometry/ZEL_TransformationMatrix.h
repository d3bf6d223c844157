//===- TarnUtilities/geometry/ZEL_TransformationMatrix.h - Affine maps -*- C++ -*-===//
//
// ZEL_TransformationMatrix accumulates an affine map of space, x => L x + t,
// from a sequence of elementary steps: translations, scalings, rotations,
// projections and reflections on planes, and changes of frame. Every step is
// applied after the map built so far (it multiplies from the left), so the
// steps read in the order in which they act on a point.
//
// Example:
//   ZEL_TransformationMatrix m;
//   m.AddScaling(2.0);
//   m.AddTranslation({1, 2, 3});
//   m * TarnVector3d(1, 1, 1)     => (3, 4, 5)
//
//   ZEL_TransformationMatrix n;
//   n.AddTranslation({1, 2, 3});
//   n.AddScaling(2.0);           // scales L only: t stays (1, 2, 3)
//   n * TarnVector3d(0, 0, 0)     => (1, 2, 3), not (2, 4, 6)
//
// Deliberate behaviours that callers rely on:
//   - the scaling steps scale L but leave t alone;
//   - a row vector q is mapped to q L + t (L transposed, against the column
//     form L p + t);
//   - ClearTransformationMatrix multiplies t by 0.0, so a NaN or infinite
//     component stays NaN;
//   - a rotation axis of length at most 1e-8 (as a float), or a plane
//     normal whose squared length is at most 1e-16, makes the step do
//     nothing. Every other input, NaN and infinities included, is used as
//     given.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_GEOMETRY_ZEL_TRANSFORMATIONMATRIX_H
#define TARNUTILITIES_GEOMETRY_ZEL_TRANSFORMATIONMATRIX_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/math/TarnMatrix.h"

#include <cstddef>

class TARN_API ZEL_TransformationMatrix {
public:
  /// The identity: L = I, t = (0, 0, 0).
  ZEL_TransformationMatrix();

  /// @name As a 4x4 homogeneous matrix
  /// @{
  /// L(i, j) for i, j < 3; t_i for i < 3, j = 3; 1.0 for (3, 3); 0.0 for the
  /// rest of the bottom row and for any index beyond 3.
  double operator()(std::size_t i, std::size_t j) const;
  const TarnMatrix3x3d& GetLinearPart() const { return m_L; }
  const TarnVector3d& GetTranslation() const { return m_t; }
  /// @}

  /// @name Applying the map
  /// @{
  /// L p + t.
  TarnVector3d operator*(const TarnVector3d& p) const;
  /// p = L p + t.
  void ApplyTransformation(TarnVector3d& p) const;
  /// q = q L + t for a row vector: L transposed, then t added.
  ///   rotation about z by pi/2: column (1, 0, 0) => (0, 1, 0),
  ///                             row    (1, 0, 0) => (0, -1, 0)
  void ApplyTransformation(TarnRowVector3d& q) const;
  /// out[i] = L in[i] + t for `count` points, bit for bit as operator*.
  /// `in` and `out` may be the same array, but must not overlap otherwise.
  void ApplyTransformation(const TarnVector3d* in, TarnVector3d* out, std::size_t count) const;
  /// @}

  /// @name Adding steps
  /// Each step acts after the map built so far.
  /// @{
  /// t = t + v.
  void AddTranslation(const TarnVector3d& v);
  /// Row r of L times s_r; t unchanged.
  void AddScaling(const TarnVector3d& s);
  /// L times s; t unchanged.
  void AddScaling(double s);
  /// Rotation by `angle` radians about the axis through the origin along
  /// `axis` (of any length), counter-clockwise seen from the axis tip:
  ///   axis (0, 0, 2), pi/2: (1, 0, 0) => (0, 1, 0)
  /// Does nothing for |axis| <= 1e-8 (taken as a float).
  void AddRotation(const TarnVector3d& axis, double angle);
  /// Orthogonal projection onto the plane through `point` with `normal`:
  ///   point (0, 0, 5), normal (0, 0, 3): (1, 2, 3) => (1, 2, 5)
  /// Does nothing for |normal|^2 <= 1e-16.
  void AddProjectionOnPlane(const TarnVector3d& point, const TarnVector3d& normal);
  /// Mirror image in the plane through `point` with `normal`:
  ///   point (0, 0, 5), normal (0, 0, 3): (1, 2, 3) => (1, 2, 7)
  /// Does nothing for |normal|^2 <= 1e-16.
  void AddReflectionOnPlane(const TarnVector3d& point, const TarnVector3d& normal);
  /// Multiplies from the left by the matrix with rows a, b, c: expresses
  /// points in the frame a, b, c (coordinates a.x, b.x, c.x).
  void AddCoordinateSystemTransformation(const TarnVector3d& a, const TarnVector3d& b,
                                         const TarnVector3d& c);
  /// Multiplies from the left by the matrix with columns a, b, c: the
  /// inverse change of frame when a, b, c are orthonormal.
  void AddInverseCoordinateSystemTransformation(const TarnVector3d& a, const TarnVector3d& b,
                                                const TarnVector3d& c);
  /// L = I and t = 0.0 * t (a NaN or infinite component becomes NaN).
  void ClearTransformationMatrix();
  /// @}

private:
  /// L = M L, t = M t.
  void MultiplyLeft(const TarnMatrix3x3d& m);
  /// L = M L, t = M t + v.
  void MultiplyLeft(const TarnMatrix3x3d& m, const TarnVector3d& v);

  TarnMatrix3x3d m_L;
  TarnVector3d m_t;
};

#endif // TARNUTILITIES_GEOMETRY_ZEL_TRANSFORMATIONMATRIX_H
