//===- numerics/KMeansSteps.h - Assignment and center update ----*- C++ -*-===//
//
// The two steps KMeansPlusPlus1D::CreateClusters alternates, on the values
// in ascending order: AssignPointsToClusters gives every value its nearest
// center in one walk over the sorted values, and ComputeCenters moves each
// center to the mean of its cluster and drops the clusters left empty.
//
// An assignment is kept as runs: each center claims one contiguous run of
// the sorted values, the runs of ascending centers follow each other
// without gap, so run c is [runEnd[c-1], runEnd[c]) (runEnd[-1] = 0) and
// runEnd[k-1] = n. Comparing two assignments value by value is comparing
// their run ends. Both steps run in time linear in the number of values
// (plus a binary search per center) and allocate nothing.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_NUMERICS_KMEANSSTEPS_H
#define TARNUTILITIES_SRC_NUMERICS_KMEANSSTEPS_H

#include <cstddef>

namespace tarn_detail {

/// "No second point" for DistinctPointAmong.
constexpr std::size_t kNoPoint = static_cast<std::size_t>(-1);

/// Of two indices into the sorted values, `preferred` unless its value is
/// shared with a neighbour and the value of `other` is not. `other` may be
/// kNoPoint.
///   values (1, 2, 2, 5): (1, 3) => 3,  (0, 1) => 0,  (1, 2) => 1
std::size_t DistinctPointAmong(const double* values, std::size_t n, std::size_t preferred,
                               std::size_t other);

/// Assigns each of the n ascending finite values to its nearest center, the
/// lower one when a value lies exactly midway, and writes the end of each
/// center's run into runEnd[0, k). centers: k >= 1 finite, strictly
/// ascending values.
///
/// For each center in ascending order: of the two sorted values around its
/// insertion position the nearer one (the one at the position on a tie),
/// or by DistinctPointAmong the other one, is the starting point. It is
/// claimed when not yet assigned and no neighbouring center is nearer to it
/// (the test of the pass on its side). A leftward pass then claims values
/// not yet assigned that lie above the previous center and are at least as
/// near to this center as to the previous one; a rightward pass claims
/// values not yet assigned that lie below the next center and are at least
/// as near to this center as to the next one. A midway value is therefore
/// claimed by the lower center's rightward pass first.
///   values (0, 1, 2, 3), centers (0.5, 2) => runEnd (2, 4)
///   values (0, 1, 2, 3), centers (0, 2)   => runEnd (2, 4): 1 is midway
///   values (0, 1), centers (0, 0.2, 1)    => runEnd (1, 1, 2): 0.2 gets none
void AssignPointsToClusters(const double* values, std::size_t n, const double* centers,
                            std::size_t k, std::size_t* runEnd);

/// True if the assignments given by run ends a[0, ka) and b[0, kb) put
/// every one of the n values into the same cluster.
bool SameAssignment(const std::size_t* a, std::size_t ka, const std::size_t* b, std::size_t kb,
                    std::size_t n);

/// Moves the centers to the means of their clusters, given by runEnd[0, k)
/// over the ascending values. On return centers[0, result) hold the means
/// of the non-empty clusters in ascending order, remap[c] is the new index
/// of old cluster c (kNoPoint when it was dropped), and *meanSize the mean
/// number of values per non-empty cluster (0 when there is none).
///   values (1, 2, 10), runEnd (2, 2, 3) => centers (1.5, 10),
///   remap (0, kNoPoint, 1), mean size 1.5
/// Each mean is kept within the smallest and largest value of its cluster
/// (rounding could otherwise carry it just outside, and the centers must
/// stay strictly ascending); a sum that overflows is redone on values
/// scaled down by 2^-64, so every mean is finite.
std::size_t ComputeCenters(const double* values, const std::size_t* runEnd, std::size_t k,
                           double* centers, std::size_t* remap, double* meanSize);

} // namespace tarn_detail

#endif // TARNUTILITIES_SRC_NUMERICS_KMEANSSTEPS_H
