//===- TarnVectorUtil.cpp - 3-vector helpers --------------------------------===//
#include "TarnUtilities/math/TarnVectorUtil.h"
#include "TarnUtilities/logging/ZEL_Failure.h"

#include <cmath>

namespace {

/// Products of norms at or below this count as zero vectors in GetCos, and
/// norms at or below it are not normalised.
constexpr double kZeroNorm = 1e-16;

/// GetCosAllowingZeroVectors treats norms below 1e-8 as zero; the constant
/// has always been the float literal 1e-8f, i.e. 9.99999993922529e-9.
constexpr double kZeroNormForAngles = static_cast<double>(1e-8f);

/// c clamped to [-1, 1] by its sign; NaN passes through.
double ClampCosine(double c) {
  if (std::fabs(c) > 1.0)
    return c > 0.0 ? 1.0 : -1.0;
  return c;
}

} // namespace

namespace TarnVectorUtil {

double Distance(const TarnVector3d& a, const TarnVector3d& b) { return (a - b).Norm(); }

bool EqualsWithTolerance(const TarnVector3d& a, const TarnVector3d& b, double tol) {
  for (std::size_t i = 0; i < 3; ++i)
    if (std::fabs(a[i] - b[i]) > tol)
      return false;
  return true;
}

double GetCos(const TarnVector3d& a, const TarnVector3d& b) {
  const double d = a.Norm() * b.Norm();
  if (d > kZeroNorm)
    return ClampCosine(a.Dot(b) / d);
  throw ZEL_Failure(ZEL_Code("095024130912"), "Cannot calculate with zero vectors.", kHeader);
}

double GetCosAllowingZeroVectors(const TarnVector3d& a, const TarnVector3d& b) {
  const double na = a.Norm();
  const double nb = b.Norm();
  if (na < kZeroNormForAngles || nb < kZeroNormForAngles)
    return 0.0;
  return ClampCosine(a.Dot(b) / (nb * na));
}

double GetAngleAllowingZeroVectors(const TarnVector3d& a, const TarnVector3d& b) {
  return std::acos(GetCosAllowingZeroVectors(a, b));
}

TarnVector3d Normalise(const TarnVector3d& v) {
  TarnVector3d copy = v;
  NormaliseVector(copy);
  return copy;
}

void NormaliseVector(TarnVector3d& v) {
  const double norm = v.Norm();
  if (norm > kZeroNorm)
    v /= norm;
}

TarnVector3d NormalisedDirection(const TarnVector3d& v) {
  if (v.Norm() < kZeroNorm)
    return TarnVector3d();
  return Normalise(v);
}

} // namespace TarnVectorUtil
