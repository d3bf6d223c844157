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
#include "geometry/CoordinateRadixSort.h"
#include "geometry/HugePageAdvice.h"
#include "geometry/VarianceChains.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace ZEL_detail {

/// Builds node 0 of a tree over all its points. `Index` holds a point index
/// in the work lists: uint32_t when every index fits, else size_t.
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

  /// Marks a list in insertion order (the root's), as opposed to one
  /// ordered on an axis.
  static constexpr int kInsertionOrder = -1;
  /// Below this many points a comparison sort is quicker than the radix
  /// sort's six passes over 2^11 counters.
  static constexpr std::size_t kRadixSortFrom = 4096;

  using Spread = AxisSpread;
  using Pair = DoublePair;

public:
  /// Sorts the points once per axis (this allocates and may throw
  /// std::bad_alloc).
  SearchTreeBuilder(Tree& tree, std::size_t bucketSize)
      : tree_(tree), points_(tree.m_Points.data()), count_(tree.m_Points.size()),
        bucketSize_(bucketSize) {
    assert(bucketSize >= 1 && "a leaf must hold at least one point");
    if (count_ > bucketSize_)
      SortOnEachAxis();
  }

  /// Rewrites node 0 as the root of a tree over all points.
  void Run() {
    Spread spread{};
    if (count_ > bucketSize_)
      spread = GatherDataVariance(count_, [](std::size_t k) { return k; });
    BuildTree(0, 0, count_, kInsertionOrder, spread);
  }

private:
  static double Coord(const TreePoint& point, int axis) {
    return axis == 0 ? point.x : axis == 1 ? point.y : point.z;
  }

  void SortOnEachAxis() {
    // One block holds the three sorted lists, the partition's scratch list
    // and one side mark (a byte) per point; it is written before it is read.
    block_ = std::make_unique<WorkBlock>(4 * count_ * sizeof(Index) + count_);
    Index* const lists = static_cast<Index*>(block_->data());
    for (int axis = 0; axis < 3; ++axis)
      sorted_[axis] = lists + axis * count_;
    scratch_ = lists + 3 * count_;
    goesLeft_ = reinterpret_cast<unsigned char*>(lists + 4 * count_);
    // The keys of the radix sort are only needed here; they are freed
    // before the tree's own arrays grow.
    std::unique_ptr<WorkBlock> keyBlock;
    std::uint64_t* keys = nullptr;
    if (count_ >= kRadixSortFrom) {
      keyBlock = std::make_unique<WorkBlock>(2 * count_ * sizeof(std::uint64_t));
      keys = static_cast<std::uint64_t*>(keyBlock->data());
    }
    for (int axis = 0; axis < 3; ++axis) {
      const auto coordOf = [this, axis](std::size_t i) { return Coord(points_[i], axis); };
      if (keys) {
        RadixSortByCoordinate(count_, coordOf, sorted_[axis], scratch_, keys, keys + count_);
        continue;
      }
      std::vector<PointCoord> records(count_);
      for (std::size_t i = 0; i < count_; ++i)
        records[i] = PointCoord{coordOf(i), i};
      std::sort(records.begin(), records.end(), &Tree::ComparePointsCoord);
      for (std::size_t i = 0; i < count_; ++i)
        sorted_[axis][i] = static_cast<Index>(records[i].index);
    }
  }

  /// Makes `node` an inner node with two new children, or a leaf, for the
  /// points of [begin, end) listed in the order of `listAxis`. `spread` is
  /// the list's spread, gathered by the caller when the list is to split.
  void BuildTree(std::size_t node, std::size_t begin, std::size_t end, int listAxis,
                 const Spread& spread) {
    std::vector<TreeNode>& nodes = tree_.m_Nodes;
    const std::size_t n = end - begin;
    if (n <= bucketSize_) {
      std::vector<std::size_t>& leaves = tree_.m_LeafIndices;
      nodes[node] = TreeNode{-1, 0.0, leaves.size(), n};
      for (std::size_t k = begin; k < end; ++k)
        leaves.push_back(listAxis == kInsertionOrder ? k : sorted_[listAxis][k]);
      return;
    }
    const int axis = FindLargestDataVariance(spread);
    Spread childSpread[2] = {};
    const double split = PartitionDataSubset(begin, end, axis, childSpread);
    const std::size_t left = nodes.size();
    const std::size_t right = left + 1;
    nodes[node] = TreeNode{axis, split, left, right};
    nodes.push_back(TreeNode{0, 0.0, 0, 0});
    nodes.push_back(TreeNode{0, 0.0, 0, 0});
    const std::size_t middle = begin + n / 2;
    BuildTree(left, begin, middle, axis, childSpread[0]);
    BuildTree(right, middle, end, axis, childSpread[1]);
  }

  /// The axis of the largest spread; ties go to the lower axis.
  static int FindLargestDataVariance(const Spread& spread) { return Tree::MaxValueIdx(spread.axis); }

  /// The spread on each axis of the list whose k-th point is `entry(k)`, by
  /// a running recurrence over the list in its order:
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
  template <typename Entry> Spread GatherDataVariance(std::size_t n, Entry entry) const {
    assert(n >= 2 && "only lists larger than a bucket are measured");
    const TreePoint& p0 = points_[entry(0)];
    VarianceChains<double> chains(p0.x, p0.y, p0.z);
    for (std::size_t k = 1; k < n; ++k) {
      const TreePoint& p = points_[entry(k)];
      chains.Step(p.x, p.y, p.z, static_cast<double>(k));
    }
    return chains.Result(n);
  }

  /// Splits [begin, end) on `axis`: the first n/2 points of the axis list go
  /// left, the others right, and the two other lists are partitioned stably
  /// the same way. Returns the split value: the coordinate of the median
  /// entry (position n/2, which went right) when n is odd, the mean of the
  /// two middle entries' coordinates when n is even.
  ///   coordinates 0, 1, 2, 3 => left 0, 1; right 2, 3; split 1.5
  ///   coordinates 0, 1, 2    => left 0;    right 1, 2; split 1
  /// Also gathers the spread of each half that will split in turn.
  double PartitionDataSubset(std::size_t begin, std::size_t end, int axis, Spread childSpread[2]) {
    const std::size_t n = end - begin;
    const std::size_t half = n / 2;
    const Index* byAxis = sorted_[axis] + begin;
    // The right half is the larger one (or as large); when it is a leaf, so
    // is the left, and the other lists will not be read again.
    if (n - half > bucketSize_) {
      MarkSidesAndGatherHalves(byAxis, n, childSpread);
      for (int other = 0; other < 3; ++other)
        if (other != axis)
          StablePartition(sorted_[other] + begin, n);
    }
    const double upper = Coord(points_[byAxis[half]], axis);
    if (n % 2 == 1)
      return upper;
    return (Coord(points_[byAxis[half - 1]], axis) + upper) * 0.5;
  }

  /// Marks each point of the axis list `byAxis` with its side and gathers
  /// the spread of each half that will split, in the same pass. The two
  /// recurrences run in the two lanes of a vector (same operations, lane by
  /// lane, so each lane is rounded as a scalar would be), which halves their
  /// latency chain.
  void MarkSidesAndGatherHalves(const Index* byAxis, std::size_t n, Spread childSpread[2]) {
    // Locals: stores through the byte pointer could alias the members.
    unsigned char* const goesLeft = goesLeft_;
    const TreePoint* const points = points_;
    const std::size_t half = n / 2;
    const Index* const lower = byAxis;
    const Index* const upper = byAxis + half;
    const std::size_t upperCount = n - half; // half or half + 1
    if (half <= bucketSize_) {
      // Only the upper half splits further.
      for (std::size_t k = 0; k < half; ++k)
        goesLeft[lower[k]] = 1;
      for (std::size_t k = 0; k < upperCount; ++k)
        goesLeft[upper[k]] = 0;
      childSpread[1] = GatherDataVariance(upperCount, [upper](std::size_t k) { return upper[k]; });
      return;
    }
    goesLeft[lower[0]] = 1;
    goesLeft[upper[0]] = 0;
    const TreePoint& l0 = points[lower[0]];
    const TreePoint& u0 = points[upper[0]];
    VarianceChains<Pair> chains(Pair{l0.x, u0.x}, Pair{l0.y, u0.y}, Pair{l0.z, u0.z});
    for (std::size_t k = 1; k < half; ++k) {
      goesLeft[lower[k]] = 1;
      goesLeft[upper[k]] = 0;
      const TreePoint& l = points[lower[k]];
      const TreePoint& u = points[upper[k]];
      const double divisor = static_cast<double>(k);
      chains.Step(Pair{l.x, u.x}, Pair{l.y, u.y}, Pair{l.z, u.z}, Pair{divisor, divisor});
    }
    childSpread[0] = chains.Lane(0).Result(half);
    VarianceChains<double> last = chains.Lane(1);
    if (upperCount > half) {
      goesLeft[upper[half]] = 0;
      const TreePoint& u = points[upper[half]];
      last.Step(u.x, u.y, u.z, static_cast<double>(half));
    }
    childSpread[1] = last.Result(upperCount);
  }

  /// Moves the entries that go left to the front of `list`, the others
  /// behind them, each group in its former order.
  void StablePartition(Index* list, std::size_t n) {
    const unsigned char* const goesLeft = goesLeft_;
    Index* const scratch = scratch_;
    std::size_t left = 0;
    std::size_t right = 0;
    for (std::size_t k = 0; k < n; ++k) {
      const Index entry = list[k];
      // Both stores happen; only one position advances. list[left] is never
      // ahead of list[k], which has been read already.
      const std::size_t toLeft = goesLeft[entry];
      list[left] = entry;
      scratch[right] = entry;
      left += toLeft;
      right += 1 - toLeft;
    }
    std::copy(scratch, scratch + right, list + left);
  }

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
  std::unique_ptr<WorkBlock> block_;
};

} // namespace ZEL_detail

#endif // TARNUTILITIES_SRC_GEOMETRY_SEARCHTREEBUILDER_H
