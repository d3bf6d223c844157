//===- TarnCoordinateSystem_test.cpp - Local frames -------------------------===//
#include "TarnUtilities/geometry/TarnCoordinateSystem.h"
#include "support/FailureOf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using CS = TarnCoordinateSystem;
const TarnVector3d kO(0, 0, 0), kX(1, 0, 0), kY(0, 1, 0), kZ(0, 0, 1);

void ExpectNear(const TarnVector3d& got, const TarnVector3d& want, double tol) {
  for (int i = 0; i < 3; ++i)
    if (got[i] != want[i]) { // equal infinities have no finite difference
      EXPECT_NEAR(got[i], want[i], tol) << "component " << i;
    }
}

TarnVector3d Random(std::mt19937& rng, double half) {
  std::uniform_real_distribution<double> d(-half, half);
  return TarnVector3d(d(rng), d(rng), d(rng));
}

} // namespace

// Parent -> local -> parent over random frames of every kind and convention.
// The spherical inverse always gives (r, lambda, beta); an ISO system reads
// its input as (r, theta, phi), so the ISO round trip goes through
// theta = 90 - beta, phi = lambda. Coordinates within +-100: 1e-11 absolute.
TEST(TarnCoordinateSystem, RoundTripsOverRandomFrames) {
  std::mt19937 rng(14);
  for (CS::Type type : {CS::CARTESIAN, CS::CYLINDRICAL, CS::SPHERICAL})
    for (CS::CoordConvention conv : {CS::CONV_DEFAULT, CS::CONV_ORB, CS::CONV_ISO}) {
      SCOPED_TRACE(::testing::Message() << "type " << type << " convention " << conv);
      const bool iso = type == CS::SPHERICAL && conv != CS::CONV_ORB;
      for (int f = 0; f < 40; ++f) {
        const TarnVector3d a = Random(rng, 3), b = Random(rng, 3);
        const CS cs(type, Random(rng, 100), a, b, conv);
        // An orthonormal right-handed frame, e3 along a, e1 in the a-b plane.
        ExpectNear(cs.GetAxis(0).Cross(cs.GetAxis(1)), cs.GetAxis(2), 4e-15);
        EXPECT_EQ(cs.GetAxis(2), a / a.Norm());
        EXPECT_NEAR(cs.GetAxis(1).Dot(b), 0.0, 1e-14);
        std::vector<TarnVector3d> parent, local;
        for (int k = 0; k < 25; ++k) {
          const TarnVector3d p = Random(rng, 100), l = cs.CalculateFromParentCartesianSystem(p);
          if (type != CS::CARTESIAN) { // documented ranges
            EXPECT_TRUE(l[0] >= 0 && l[1] >= 0 && l[1] <= 360 &&
                        (type == CS::CYLINDRICAL || std::fabs(l[2]) <= 90)) << l[1] << " " << l[2];
          }
          const TarnVector3d in = iso ? TarnVector3d(l[0], 90 - l[2], l[1]) : l;
          ExpectNear(cs.ExpressInParentCartesianSystem(in), p, 1e-11);
          parent.push_back(p);
          local.push_back(l);
        }
        // The batch forms agree bit for bit, also in place, and stop at count.
        const TarnVector3d stop(-1, -1, -1);
        parent.push_back(stop), local.push_back(stop);
        std::vector<TarnVector3d> out(local.size(), stop);
        cs.CalculateFromParentCartesianSystem(parent.data(), out.data(), out.size() - 1);
        EXPECT_EQ(out, local);
        cs.ExpressInParentCartesianSystem(out.data(), out.data(), out.size() - 1);
        for (size_t k = 0; k < out.size(); ++k)
          EXPECT_EQ(out[k], k + 1 < out.size() ? cs.ExpressInParentCartesianSystem(local[k]) : stop);
      }
    }
}

TEST(TarnCoordinateSystem, ConversionTable) {
  struct Row { CS::Type type; CS::CoordConvention conv; bool toCart; TarnVector3d in, out; };
  const double inf = std::numeric_limits<double>::infinity();
  const Row rows[] = {
      {CS::CYLINDRICAL, CS::CONV_DEFAULT, true, {2, 90, 5}, {0, 2, 5}},
      {CS::CYLINDRICAL, CS::CONV_DEFAULT, false, {0, -2, 5}, {2, 270, 5}},
      {CS::CYLINDRICAL, CS::CONV_DEFAULT, false, {0, 0, 7}, {0, 0, 7}},
      {CS::CYLINDRICAL, CS::CONV_DEFAULT, false, {0, 1e-16, 7}, {0, 0, 7}},
      {CS::CYLINDRICAL, CS::CONV_DEFAULT, false, {inf, 0, 1}, {inf, 0, 1}},
      {CS::SPHERICAL, CS::CONV_ISO, true, {1, 90, 0}, {1, 0, 0}},
      {CS::SPHERICAL, CS::CONV_ORB, true, {1, 90, 0}, {0, 1, 0}},
      {CS::SPHERICAL, CS::CONV_ISO, false, {1, 0, 0}, {1, 0, 0}},
      {CS::SPHERICAL, CS::CONV_ISO, false, {0, 0, 3}, {3, 0, 90}},
      {CS::SPHERICAL, CS::CONV_ORB, false, {0, -1, 0}, {1, 270, 0}},
      {CS::SPHERICAL, CS::CONV_ORB, false, {0, 0, -2}, {2, 0, -90}},
      {CS::SPHERICAL, CS::CONV_ORB, false, {0, 0, 0}, {0, 0, 0}},
      {CS::SPHERICAL, CS::CONV_ORB, false, {0, 1e-16, 0}, {1e-16, 0, 0}},
      {CS::CARTESIAN, CS::CONV_ORB, true, {1, -2, 3}, {1, -2, 3}},
      {CS::Type(7), CS::CONV_ORB, false, {1, -2, 3}, {1, -2, 3}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::Message() << row.type << "/" << row.conv << " " << row.in[0] << ","
                                      << row.in[1] << "," << row.in[2]);
    const CS cs(row.type, kO, kX, kY, kZ, row.conv);
    const TarnVector3d got = row.toCart ? cs.ExpressInLocalCartesianSystem(row.in)
                                        : cs.CalculateFromLocalCartesianSystem(row.in);
    ExpectNear(got, row.out, 1e-14);
    const auto fn = row.toCart ? CS::GetConversionFnToCart(row.type, row.conv)
                               : CS::GetConversionFnFromCart(row.type);
    EXPECT_EQ(fn(cs, row.in), got);
  }
  // A point a hair below the first axis: the azimuth rounds up to 360.
  EXPECT_EQ(CS::ExpressCartesianInCylindricalSystem(CS(), {1, -1e-300, 0})[1], 360.0);
}

TEST(TarnCoordinateSystem, FrameFromTwoDirections) {
  const CS cs(CS::CARTESIAN, {1, 2, 3}, {0, 0, 2}, {1, 0, 0});
  EXPECT_EQ(cs, CS(CS::CARTESIAN, {1, 2, 3}, kX, kY, kZ));
  // Exactly 5e-16 is too short; the next double is long enough.
  const double limit = 5e-16, nan = std::nan("");
  EXPECT_NO_THROW(CS(CS::SPHERICAL, kO, kZ, {std::nextafter(limit, 1.0), 0, 0}));
  for (CS::Type type : {CS::CARTESIAN, CS::CYLINDRICAL, CS::SPHERICAL})
    for (const TarnVector3d& shortDir : {TarnVector3d(0, limit, 0), TarnVector3d(0, 0, 0)}) {
      for (bool first : {true, false}) {
        const auto failure = tarn_test::FailureOf(
            [&] { CS(type, kO, first ? shortDir : kZ, first ? kX : shortDir); });
        ASSERT_TRUE(failure);
        const std::string kind = type == CS::CARTESIAN ? "invalid " : "unsupported ";
        EXPECT_EQ(failure->GetMessage(), "An attempt was made to transform nodal coordinates using " +
                                             kind + CS(type, kO, kX, kY, kZ).GetTypeString() +
                                             " coordinate system");
        EXPECT_EQ(failure->GetHeader(), "[%T|%n|%P|TarnUtilities|ZEL_Failure] ");
        EXPECT_EQ(failure->GetStatusCode(), -14);
      }
    }
  // Parallel or NaN directions are not rejected: the axes come out NaN.
  for (const CS& bad : {CS(CS::CARTESIAN, kO, kX, {-3, 0, 0}), CS(CS::CARTESIAN, kO, {nan, 0, 0}, kX),
                        CS(CS::CARTESIAN, kO, kX, {0, nan, 0})}) {
    EXPECT_TRUE(std::isnan(bad.GetAxis(0)[0]) && std::isnan(bad.GetAxis(1)[1]));
    EXPECT_NE(bad, bad);
  }
}

TEST(TarnCoordinateSystem, EqualityConventionAndIdentity) {
  const CS base(CS::SPHERICAL, {1, 2, 3}, kX, kY, kZ, CS::CONV_ISO);
  CS copy = base;
  EXPECT_EQ(copy, base);
  EXPECT_EQ(CS(base), CS(CS::SPHERICAL, {1, 2, 3}, kX, {-0.0, 1, 0}, kZ, CS::CONV_ISO));
  const CS differing[] = {CS(CS::CYLINDRICAL, {1, 2, 3}, kX, kY, kZ, CS::CONV_ISO),
                          CS(CS::SPHERICAL, {1, 2, 4}, kX, kY, kZ, CS::CONV_ISO),
                          CS(CS::SPHERICAL, {1, 2, 3}, kY, kY, kZ, CS::CONV_ISO),
                          CS(CS::SPHERICAL, {1, 2, 3}, kX, kX, kZ, CS::CONV_ISO),
                          CS(CS::SPHERICAL, {1, 2, 3}, kX, kY, kX, CS::CONV_ISO),
                          CS(CS::SPHERICAL, {1, 2, 3}, kX, kY, kZ, CS::CONV_ORB)};
  for (const CS& other : differing)
    EXPECT_NE(other, base) << other.GetTypeString();

  // Switching the convention changes how spherical input is read.
  copy.SetConvention(CS::CONV_ORB);
  EXPECT_EQ(copy.GetConvention(), CS::CONV_ORB);
  ExpectNear(copy.ExpressInLocalCartesianSystem({1, 90, 0}), kY, 1e-15);

  EXPECT_STREQ(CS().GetTypeString(), "CARTESIAN");
  EXPECT_STREQ(CS(CS::Type(-1), kO, kX, kY, kZ).GetTypeString(), "UNKNOWN");
  EXPECT_TRUE(CS().IsIdentity());
  EXPECT_TRUE(CS(CS::SPHERICAL, kO, kX, kY, {5, 6, 7}).IsIdentity());
  for (const CS& notId : {CS(CS::CARTESIAN, {0, 0, 1e-3}, kX, kY, kZ),
                          CS(CS::CARTESIAN, kO, {0.5, 0, 0}, kY, kZ), CS(CS::CARTESIAN, kO, kX, kX, kZ)})
    EXPECT_FALSE(notId.IsIdentity());
}

// M(r, c) = other.e_r . this.e_c; for two Cartesian systems sharing an origin
// M turns this system's coordinates of a point into the other's.
TEST(TarnCoordinateSystem, TransformationToOtherSystem) {
  std::mt19937 rng(5);
  for (int k = 0; k < 100; ++k) {
    const TarnVector3d origin = Random(rng, 10);
    const CS from(CS::CARTESIAN, origin, Random(rng, 1), Random(rng, 1));
    const CS to(CS::CARTESIAN, origin, Random(rng, 1), Random(rng, 1));
    const TarnMatrix3x3d m = from.GetTransformationToCs(to);
    for (int e = 0; e < 9; ++e) { // by hand from the axes, in long double
      const TarnVector3d &u = to.GetAxis(e / 3), &v = from.GetAxis(e % 3);
      const long double dot = (long double)u[0] * v[0] + (long double)u[1] * v[1] + (long double)u[2] * v[2];
      EXPECT_NEAR(m(e / 3, e % 3), double(dot), 1e-15);
    }
    const TarnVector3d p = Random(rng, 10);
    ExpectNear(m * from.CalculateFromParentCartesianSystem(p), to.CalculateFromParentCartesianSystem(p),
               1e-13);
  }
}
