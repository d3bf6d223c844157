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
#include "TarnUtilities/system/detail/LargeBuffer.h"
#include "geometry/VarianceChains.h"

#include <cstddef>

namespace ZEL_detail {

/// Builds node 0 of a tree over all its points. `Index` holds a point index
/// in the work lists: uint32_t when every index fits, else size_t (the two
/// instantiations the library has).
///
/// The constructor does all the allocating of the build's work space; Run
/// needs the tree's node array and leaf list to have room (capacity) for
/// everything the build appends, so that it cannot throw and a failed
/// allocation leaves the tree as it was.
template <typename Index> class SearchTreeBuilder {
  using Tree = ZEL_SearchTree3D;
  using TreeNode = Tree::TreeNode;
  using TreePoint = Tree::TreePoint;
  using PointCoord = Tree::PointCoord;
  using Spread = AxisSpread;

public:
  /// Sorts the points once per axis (this allocates and may throw
  /// std::bad_alloc).
  SearchTreeBuilder(Tree& tree, std::size_t bucketSize);

  /// Rewrites node 0 as the root of a tree over all points.
  void Run();

private:
  void SortOnEachAxis();

  /// Makes `node` an inner node with two new children, or a leaf, for the
  /// points of [begin, end) listed in the order of `listAxis` (-1: the
  /// root's list, in insertion order). `spread` is the list's spread,
  /// gathered by the caller when the list is to split.
  void BuildTree(std::size_t node, std::size_t begin, std::size_t end, int listAxis,
                 const Spread& spread);

  /// The axis of the largest spread; ties go to the lower axis.
  static int FindLargestDataVariance(const Spread& spread);

  /// The spread on each axis of the n points listed by `entry(k)`.
  template <typename Entry> Spread GatherDataVariance(std::size_t n, Entry entry) const;

  /// Splits [begin, end) on `axis`: the first n/2 points of the axis list go
  /// left, the others right, and the two other lists are partitioned stably
  /// the same way. Returns the split value: the coordinate of the median
  /// entry (position n/2, which went right) when n is odd, the mean of the
  /// two middle entries' coordinates when n is even.
  ///   coordinates 0, 1, 2, 3 => left 0, 1; right 2, 3; split 1.5
  ///   coordinates 0, 1, 2    => left 0;    right 1, 2; split 1
  /// Also gathers the spread of each half that will split in turn.
  double PartitionDataSubset(std::size_t begin, std::size_t end, int axis, Spread childSpread[2]);

  /// Marks each point of the axis list `byAxis` with its side and gathers
  /// the spread of each half that will split, in the same pass.
  void MarkSidesAndGatherHalves(const Index* byAxis, std::size_t n, Spread childSpread[2]);

  /// Moves the entries that go left to the front of `list`, the others
  /// behind them, each group in its former order.
  void StablePartition(Index* list, std::size_t n);

  Tree& tree_;
  const TreePoint* points_;
  std::size_t count_;
  std::size_t bucketSize_;
  /// The point indices sorted on x, y and z; a node owns [begin, end) of each.
  Index* sorted_[3] = {};
  /// The side each point of the node being split goes to: 1 left, 0 right.
  /// Bytes rather than bits, so that marking a point is a plain store.
  unsigned char* goesLeft_ = nullptr;
  /// Holds the right-hand entries during a stable partition.
  Index* scratch_ = nullptr;
  /// The memory of the three members above.
  TarnSystemDetail::LargeBuffer block_;
};

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_GEOMETRY_SEARCHTREEBUILDER_H
