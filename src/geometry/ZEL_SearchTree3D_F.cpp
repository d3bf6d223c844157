//===- ZEL_SearchTree3D_F.cpp - Fortran entry points of ZEL_SearchTree3D ----===//
//
// The nearest-point search tree for Fortran callers. Handle, coordinates,
// the found point's number and the status all go by reference (so that
// Release can reset the caller's handle variable to null). Points are
// numbered from 1 in the order they are added, as Fortran counts; a query
// returns the nearest point's number. Every tree is built with buckets of
// 12 points, the size the suite's Fortran code has always used.
//
// Defined results of misuse (no crash, no undefined behaviour):
//   null handle, or no handle variable ERR_INVALID_ARGUMENT (Release of a
//                                     null handle does nothing)
//   query before any CreateTree, or
//   on a tree built from no points    ERR_NOT_FOUND, number 0
//   a point beyond the 2^31 - 1 that
//   a 32-bit number can count         ERR_OUT_OF_RANGE, the point not added
// Points added after CreateTree are found only once CreateTree is called
// again; until then a query answers from the tree built before.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/container/TarnFortranBinding.h"
#include "TarnUtilities/geometry/ZEL_SearchTree3D.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "container/FortranArgs.h"

#include <limits>

using namespace ZEL_detail;

TARN_FORTRAN_BINDING("ZEL_SearchTree3D_F");

namespace {

// The bucket size of every tree built from Fortran: the largest number of
// points a leaf holds and scans linearly.
constexpr std::size_t kFortranBucketSize = 12;

// The most points a tree may hold: their numbers must fit an int32.
constexpr std::size_t kMaxPoints =
    static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());

// The tree behind the caller's handle variable; a null variable or a null
// handle fails.
ZEL_SearchTree3D& TreeOf(const FortranSite& site, void* const* handle) {
  return HandleObject<ZEL_SearchTree3D>(site, ArgumentValue(site, handle, "handle"));
}

} // namespace

void SearchTree3D_Init_F(void** handle, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    void** out = HandleOutput(site, handle);
    *out = new ZEL_SearchTree3D();
  });
}

void SearchTree3D_AddPoint_F(void* const* handle, const double* x, const double* y, const double* z,
                             std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    ZEL_SearchTree3D& tree = TreeOf(site, handle);
    const double px = ArgumentValue(site, x, "x");
    const double py = ArgumentValue(site, y, "y");
    const double pz = ArgumentValue(site, z, "z");
    if (tree.GetPoints().size() >= kMaxPoints)
      throw StatusFailure(ERR_OUT_OF_RANGE,
                          ZEL_MESSAGE("The search tree holds %zu points, the most a 32-bit "
                                      "number can count; the point was not added.",
                                      tree.GetPoints().size()),
                          site.binding.header);
    tree.AddPoint(px, py, pz);
  });
}

void SearchTree3D_CreateTree_F(void* const* handle, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status,
                  [&] { TreeOf(site, handle).CreateTree(kFortranBucketSize); });
}

void SearchTree3D_FindNearestPoint_F(void* const* handle, const double* x, const double* y,
                                     const double* z, std::int32_t* number, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    // The number is 0 whatever fails below.
    if (number)
      *number = 0;
    const ZEL_SearchTree3D& tree = TreeOf(site, handle);
    const double qx = ArgumentValue(site, x, "x");
    const double qy = ArgumentValue(site, y, "y");
    const double qz = ArgumentValue(site, z, "z");
    if (!number)
      FailArgument(site, "No number was given (null pointer).");
    const std::size_t index = tree.FindNearestPoint(qx, qy, qz);
    if (index == ZEL_SearchTree3D::npos)
      throw StatusFailure(ERR_NOT_FOUND,
                          "The search tree holds no point: add points and call "
                          "SearchTree3D_CreateTree_F before a query.",
                          site.binding.header);
    *number = static_cast<std::int32_t>(index + 1);
  });
}

void SearchTree3D_Release_F(void** handle, std::int32_t* status) {
  const FortranSite site = TARN_FORTRAN_SITE;
  GuardWithStatus(site, status, [&] {
    if (!handle)
      FailArgument(site, "No handle was given (null pointer).");
    delete static_cast<ZEL_SearchTree3D*>(*handle);
    *handle = nullptr;
  });
}
