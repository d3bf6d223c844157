//===- TarnUtilities/math/TarnVectorUtil.h - 3-vector helpers --*- C++ -*-===//
//
// Distances, tolerant comparison, angles and normalisation of points and
// directions (TarnVector3d = TarnMatrix<3,1,double>). TarnVectorUtil is a
// namespace of free functions, so callers write TarnVectorUtil::Distance(a, b)
// (or bring the names in with a using-declaration).
//
// Example:
//   TarnVectorUtil::Distance({0,0,0}, {3,4,0})                    => 5.0
//   TarnVectorUtil::EqualsWithTolerance({0,0,0}, {0.5,0,0}, 0.5)  => true
//   TarnVectorUtil::GetCos({1,0,0}, {1,1,0})                      => 0.7071...
//   TarnVectorUtil::GetCosAllowingZeroVectors({0,0,0}, {1,0,0})   => 0.0
//   TarnVectorUtil::NormalisedDirection({1e-17,0,0})              => (0,0,0)
//
// Norms and dot products are those of TarnMatrix (summed x, y, z in order).
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_MATH_TARNVECTORUTIL_H
#define TARNUTILITIES_MATH_TARNVECTORUTIL_H

#include "TarnUtilities/Export.h"
#include "TarnUtilities/math/TarnMatrix.h"

namespace TarnVectorUtil {

/// Log header of the failures raised here.
inline constexpr const char* kHeader = "[%T|%n|%P|LIBUTIL|TarnVectorUtil] ";

/// sqrt((a-b).(a-b)), the difference formed component-wise first.
TARN_API double Distance(const TarnVector3d& a, const TarnVector3d& b);

/// false as soon as one component has |a_i - b_i| > tol (x, y, z in order),
/// else true. A difference equal to tol counts as equal; so does a NaN
/// difference (it is not greater than tol).
TARN_API bool EqualsWithTolerance(const TarnVector3d& a, const TarnVector3d& b, double tol);

/// Cosine of the angle between a and b: (a.b) / (|a| |b|), clamped to
/// [-1, 1] by its sign when rounding pushes it beyond. Throws ZEL_Failure
/// "Cannot calculate with zero vectors." (code "095024130912", header
/// kHeader) when |a| |b| is not greater than 1e-16 (also when it is NaN).
TARN_API double GetCos(const TarnVector3d& a, const TarnVector3d& b);

/// Like GetCos, but 0.0 when |a| or |b| is below 1e-8 taken in single
/// precision (9.99999993922529e-9).
TARN_API double GetCosAllowingZeroVectors(const TarnVector3d& a, const TarnVector3d& b);

/// acos(GetCosAllowingZeroVectors(a, b)) in radians; pi/2 for a zero vector.
TARN_API double GetAngleAllowingZeroVectors(const TarnVector3d& a, const TarnVector3d& b);

/// v divided by its norm; v unchanged when the norm is not greater than 1e-16.
TARN_API TarnVector3d Normalise(const TarnVector3d& v);

/// Normalise in place: v is left unchanged when its norm is not greater
/// than 1e-16.
TARN_API void NormaliseVector(TarnVector3d& v);

/// Like Normalise, but a norm below 1e-16 yields (0, 0, 0). (A norm of
/// exactly 1e-16 returns v unchanged, as Normalise does.)
TARN_API TarnVector3d NormalisedDirection(const TarnVector3d& v);

} // namespace TarnVectorUtil

#endif // TARNUTILITIES_MATH_TARNVECTORUTIL_H
