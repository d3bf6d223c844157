//===- numerics/KMeansSteps.h - Assignment and center update ----*- C++ -*-===//
//
// The two steps KMeansPlusPlus1D::CreateClusters alternates, on the values
// in ascending order: AssignPointsToClusters gives every value its nearest
// center in one walk over the sorted values, and ComputeCenters moves each
// center to the mean of its cluster and drops the clusters left empty.
// Both run in time linear in the number of values (plus a binary search per
// center) and allocate nothing.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_NUMERICS_KMEANSSTEPS_H
#define TARNUTILITIES_SRC_NUMERICS_KMEANSSTEPS_H

#include <cstddef>
#include <limits>
#include <vector>

namespace tarn_detail {

/// Cluster index of a value that no center has claimed yet.
constexpr std::size_t kUnassigned = std::numeric_limits<std::size_t>::max();

/// Of two indices into the sorted values, `preferred` unless its value is
/// shared with a neighbour and the value of `other` is not. `other` may be
/// kUnassigned (there is no second point).
///   values (1, 2, 2, 5): (1, 3) => 3,  (0, 1) => 0,  (1, 2) => 1
std::size_t DistinctPointAmong(const double* values, std::size_t n, std::size_t preferred,
                               std::size_t other);

/// Writes into cluster[i] the index of the center nearest to values[i].
/// values: n finite values, ascending; centers: k finite values, strictly
/// ascending, k >= 1 when n >= 1. A value exactly midway between two
/// centers goes to the lower one.
///
/// For each center in ascending order: the sorted value nearest to it
/// (found by binary search, see DistinctPointAmong) is the starting point;
/// it is claimed when no neighbouring center is nearer to it, and from it a
/// leftward pass claims values above the previous center that are at least
/// as near to this center as to the previous one, and a rightward pass
/// claims values below the next center that are at least as near to this
/// center as to the next one. Each pass stops at the first value that fails
/// or is already claimed, so every value is looked at O(1) times.
///   values (0, 1, 2, 3), centers (0.5, 2) => cluster (0, 0, 1, 1)
///   (1 is midway between 0 and 2, centers (0, 2) => (0, 0, 1, 1))
void AssignPointsToClusters(const double* values, std::size_t n, const double* centers,
                            std::size_t k, std::size_t* cluster);

/// Per-cluster scratch of ComputeCenters, sized once for the largest number
/// of clusters so that the iteration allocates nothing.
struct ClusterTotals {
  std::vector<double> sum;
  std::vector<double> low;  ///< smallest value of the cluster
  std::vector<double> high; ///< largest value of the cluster
  std::vector<std::size_t> count;
  /// New index of each old cluster after the update, kUnassigned if dropped.
  std::vector<std::size_t> remap;
  explicit ClusterTotals(std::size_t k) : sum(k), low(k), high(k), count(k), remap(k) {}
};

/// Moves the centers to the means of their clusters. cluster[i] < k is the
/// cluster of values[i] (values ascending). On return centers[0, result)
/// hold the means of the non-empty clusters in ascending order,
/// totals.remap[c] the new index of old cluster c, and *meanSize the mean
/// number of values per non-empty cluster (0 when n = 0).
///   values (1, 2, 10), cluster (0, 0, 2), k = 3 => centers (1.5, 10),
///   remap (0, kUnassigned, 1), mean size 1.5
/// Each mean is kept within the smallest and largest value of its cluster
/// (a long rounded sum could otherwise carry it just outside, and the
/// centers must stay strictly ascending); a sum that overflows is redone on
/// values scaled down by 2^64, so every mean is finite.
std::size_t ComputeCenters(const double* values, std::size_t n, const std::size_t* cluster,
                           std::size_t k, ClusterTotals& totals, double* centers,
                           double* meanSize);

} // namespace tarn_detail

#endif // TARNUTILITIES_SRC_NUMERICS_KMEANSSTEPS_H
