//===- geometry/SearchTreeBuilder.h - Building the search tree --*- C++ -*-===//
//
// The construction of ZEL_SearchTree3D's nodes and leaf index list. Each
// inner node takes the axis on which its points spread most (a running
// variance over its list), orders its list on that axis and gives the first
// half to the left child and the rest to the right; each child's list is
// thus in the order of its parent's axis, and the variance of the child is
// taken in that order. A list of at most bucketSize points becomes a leaf.
//
// The order on an axis is a total one (ZEL_SearchTree3D::ComparePointsCoord:
// coordinate, then point index), so it does not depend on the order a list
// arrives in. That lets the builder sort the points once per axis instead of
// once per node: it keeps the three sorted lists, and each node owns the
// same range [begin, end) of all three. Splitting a node on axis a cuts the
// a-list at the half and partitions the two other lists stably by the side
// each point went to, which keeps them sorted. The result is the one a
// full sort at every node gives, at O(n) per tree level instead of
// O(n log n).
//
// Not part of the public interface.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_SRC_GEOMETRY_SEARCHTREEBUILDER_H
#define TARNUTILITIES_SRC_GEOMETRY_SEARCHTREEBUILDER_H

#include "TarnUtilities/geometry/ZEL_SearchTree3D.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

namespace ZEL_detail {

/// Builds node 0 of a tree over all its points. `Index` holds a point index
/// in the work lists: uint32_t when every index fits, else size_t.
///
/// Precondition: the tree's node array and leaf list have room (capacity)
/// for everything the build appends, so that no step after the constructor
/// can throw and a failed allocation leaves the tree as it was.
template <typename Index> class SearchTreeBuilder {
  using Tree = ZEL_SearchTree3D;
  using TreeNode = Tree::TreeNode;
  using TreePoint = Tree::TreePoint;
  using PointCoord = Tree::PointCoord;

  /// Marks a list in insertion order (the root's), as opposed to one
  /// ordered on an axis.
  static constexpr int kInsertionOrder = -1;

public:
  /// Allocates the work lists (this may throw std::bad_alloc).
  SearchTreeBuilder(Tree& tree, std::size_t bucketSize)
      : tree_(tree), points_(tree.m_Points.data()), count_(tree.m_Points.size()),
        bucketSize_(bucketSize) {
    assert(bucketSize >= 1 && "a leaf must hold at least one point");
    if (count_ > bucketSize_)
      SortOnEachAxis();
  }

  /// Rewrites node 0 as the root of a tree over all points.
  void Run() { BuildTree(0, 0, count_, kInsertionOrder); }

private:
  static double Coord(const TreePoint& point, int axis) {
    return axis == 0 ? point.x : axis == 1 ? point.y : point.z;
  }

  /// The point index at position `k` of the node's list [begin, end): the
  /// root's list is 0 ... n-1, every other one the range of its parent's
  /// axis list.
  std::size_t ListEntry(int listAxis, std::size_t begin, std::size_t k) const {
    return listAxis == kInsertionOrder ? begin + k : sorted_[listAxis][begin + k];
  }

  void SortOnEachAxis() {
    std::vector<PointCoord> records(count_);
    scratch_.resize(count_);
    goesLeft_.resize(count_);
    for (int axis = 0; axis < 3; ++axis) {
      for (std::size_t i = 0; i < count_; ++i)
        records[i] = PointCoord{Coord(points_[i], axis), i};
      std::sort(records.begin(), records.end(), &Tree::ComparePointsCoord);
      sorted_[axis].resize(count_);
      for (std::size_t i = 0; i < count_; ++i)
        sorted_[axis][i] = static_cast<Index>(records[i].index);
    }
  }

  /// Makes `node` an inner node with two new children, or a leaf, for the
  /// points of [begin, end) listed in the order of `listAxis`.
  void BuildTree(std::size_t node, std::size_t begin, std::size_t end, int listAxis) {
    std::vector<TreeNode>& nodes = tree_.m_Nodes;
    const std::size_t n = end - begin;
    if (n > bucketSize_) {
      const int axis = FindLargestDataVariance(begin, end, listAxis);
      const double split = PartitionDataSubset(begin, end, axis);
      const std::size_t left = nodes.size();
      const std::size_t right = left + 1;
      nodes[node] = TreeNode{axis, split, left, right};
      nodes.push_back(TreeNode{0, 0.0, 0, 0});
      nodes.push_back(TreeNode{0, 0.0, 0, 0});
      const std::size_t middle = begin + n / 2;
      BuildTree(left, begin, middle, axis);
      BuildTree(right, middle, end, axis);
      return;
    }
    std::vector<std::size_t>& leaves = tree_.m_LeafIndices;
    nodes[node] = TreeNode{-1, 0.0, leaves.size(), n};
    for (std::size_t k = 0; k < n; ++k)
      leaves.push_back(ListEntry(listAxis, begin, k));
  }

  /// The axis of the largest spread; ties go to the lower axis.
  int FindLargestDataVariance(std::size_t begin, std::size_t end, int listAxis) const {
    double variance[3];
    GatherDataVariance(begin, end, listAxis, variance);
    return Tree::MaxValueIdx(variance);
  }

  /// The spread of the listed points on each axis, by a running recurrence
  /// over the list in its order:
  ///   mean = c0, m2 = 0; for k = 1 ... n-1:
  ///     delta = ck - mean; mean += delta / k; m2 += (ck - mean) * delta
  ///   result m2 / (n - 1)
  /// The divisor is k, not k + 1 as in Welford's recurrence, so the mean after
  /// the second value is that value; the figure only ranks the axes, and this
  /// is the ranking the tree is defined by. The three axes run side by side
  /// (one pass, three independent chains); each is rounded exactly as alone.
  /// Every operation is a separate IEEE double operation in the order
  /// written: the library is built as ISO C++ (-std=c++17, no contraction
  /// into fused multiply-adds), so the result is the same on every machine.
  void GatherDataVariance(std::size_t begin, std::size_t end, int listAxis,
                          double variance[3]) const {
    const std::size_t n = end - begin;
    assert(n >= 2 && "only lists larger than a bucket are measured");
    const TreePoint& p0 = points_[ListEntry(listAxis, begin, 0)];
    double meanX = p0.x, meanY = p0.y, meanZ = p0.z;
    double m2X = 0.0, m2Y = 0.0, m2Z = 0.0;
    for (std::size_t k = 1; k < n; ++k) {
      const TreePoint& p = points_[ListEntry(listAxis, begin, k)];
      const double divisor = static_cast<double>(k);
      const double deltaX = p.x - meanX;
      const double deltaY = p.y - meanY;
      const double deltaZ = p.z - meanZ;
      meanX = meanX + deltaX / divisor;
      meanY = meanY + deltaY / divisor;
      meanZ = meanZ + deltaZ / divisor;
      m2X = m2X + (p.x - meanX) * deltaX;
      m2Y = m2Y + (p.y - meanY) * deltaY;
      m2Z = m2Z + (p.z - meanZ) * deltaZ;
    }
    const double divisor = static_cast<double>(n - 1);
    variance[0] = m2X / divisor;
    variance[1] = m2Y / divisor;
    variance[2] = m2Z / divisor;
  }

  /// Splits [begin, end) on `axis`: the first n/2 points of the axis list go
  /// left, the others right, and the two other lists are partitioned stably
  /// the same way. Returns the split value: the coordinate of the median
  /// entry (position n/2, which went right) when n is odd, the mean of the
  /// two middle entries' coordinates when n is even.
  ///   coordinates 0, 1, 2, 3 => left 0, 1; right 2, 3; split 1.5
  ///   coordinates 0, 1, 2    => left 0;    right 1, 2; split 1
  double PartitionDataSubset(std::size_t begin, std::size_t end, int axis) {
    const std::size_t n = end - begin;
    const std::size_t half = n / 2;
    const Index* byAxis = sorted_[axis].data() + begin;
    for (std::size_t k = 0; k < n; ++k)
      goesLeft_[byAxis[k]] = static_cast<unsigned char>(k < half);
    for (int other = 0; other < 3; ++other)
      if (other != axis)
        StablePartition(sorted_[other].data() + begin, n);
    const double upper = Coord(points_[byAxis[half]], axis);
    if (n % 2 == 1)
      return upper;
    return (Coord(points_[byAxis[half - 1]], axis) + upper) * 0.5;
  }

  /// Moves the entries that go left to the front of `list`, the others
  /// behind them, each group in its former order.
  void StablePartition(Index* list, std::size_t n) {
    std::size_t left = 0;
    std::size_t right = 0;
    for (std::size_t k = 0; k < n; ++k) {
      const Index entry = list[k];
      // Both stores happen; only one position advances. list[left] is never
      // ahead of list[k], which has been read already.
      const std::size_t toLeft = goesLeft_[entry];
      list[left] = entry;
      scratch_[right] = entry;
      left += toLeft;
      right += 1 - toLeft;
    }
    std::copy(scratch_.begin(), scratch_.begin() + static_cast<std::ptrdiff_t>(right),
              list + left);
  }

  Tree& tree_;
  const TreePoint* points_;
  std::size_t count_;
  std::size_t bucketSize_;
  /// The point indices sorted on x, y and z; a node owns [begin, end) of each.
  std::vector<Index> sorted_[3];
  /// The side each point of the node being split goes to: 1 left, 0 right.
  /// Bytes rather than bits, so that marking a point is a plain store.
  std::vector<unsigned char> goesLeft_;
  /// Holds the right-hand entries during a stable partition.
  std::vector<Index> scratch_;
};

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_GEOMETRY_SEARCHTREEBUILDER_H
