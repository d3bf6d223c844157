//===- SearchTreeBuilder.cpp - Building the search tree ---------------------===//
#include "geometry/SearchTreeBuilder.h"
#include "geometry/CoordinateRadixSort.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <limits>
#include <vector>

namespace ZEL_detail {

namespace {

/// Marks a list in insertion order (the root's), as opposed to one ordered
/// on an axis.
constexpr int kInsertionOrder = -1;

/// Below this many points a comparison sort is quicker than the radix sort's
/// six passes over 2^11 counters.
constexpr std::size_t kRadixSortFrom = 4096;

double Coord(const ZEL_SearchTree3D::TreePoint& point, int axis) {
  return axis == 0 ? point.x : axis == 1 ? point.y : point.z;
}

} // namespace

template <typename Index>
SearchTreeBuilder<Index>::SearchTreeBuilder(Tree& tree, std::size_t bucketSize)
    : tree_(tree), points_(tree.m_Points.data()), count_(tree.m_Points.size()),
      bucketSize_(bucketSize) {
  assert(bucketSize >= 1 && "a leaf must hold at least one point");
  if (count_ > bucketSize_)
    SortOnEachAxis();
}

template <typename Index> void SearchTreeBuilder<Index>::Run() {
  Spread spread{};
  if (count_ > bucketSize_)
    spread = GatherDataVariance(count_, [](std::size_t k) { return k; });
  BuildTree(0, 0, count_, kInsertionOrder, spread);
}

template <typename Index> void SearchTreeBuilder<Index>::SortOnEachAxis() {
  // One block holds the three sorted lists, the partition's scratch list and
  // one side mark (a byte) per point; it is written before it is read.
  block_ = TarnSystemDetail::LargeBuffer(4 * count_ * sizeof(Index) + count_);
  Index* const lists = static_cast<Index*>(block_.data());
  for (int axis = 0; axis < 3; ++axis)
    sorted_[axis] = lists + axis * count_;
  scratch_ = lists + 3 * count_;
  goesLeft_ = reinterpret_cast<unsigned char*>(lists + 4 * count_);
  if (count_ >= kRadixSortFrom) {
    // The keys are only needed here; they are given back before the tree's
    // own arrays grow.
    TarnSystemDetail::LargeBuffer keyBlock(2 * count_ * sizeof(std::uint64_t));
    std::uint64_t* const keys = static_cast<std::uint64_t*>(keyBlock.data());
    for (int axis = 0; axis < 3; ++axis)
      RadixSortByCoordinate(points_, count_, axis, sorted_[axis], scratch_, keys, keys + count_);
    return;
  }
  std::vector<PointCoord> records(count_);
  for (int axis = 0; axis < 3; ++axis) {
    for (std::size_t i = 0; i < count_; ++i)
      records[i] = PointCoord{Coord(points_[i], axis), i};
    std::sort(records.begin(), records.end(), &Tree::ComparePointsCoord);
    for (std::size_t i = 0; i < count_; ++i)
      sorted_[axis][i] = static_cast<Index>(records[i].index);
  }
}

template <typename Index>
void SearchTreeBuilder<Index>::BuildTree(std::size_t node, std::size_t begin, std::size_t end,
                                         int listAxis, const Spread& spread) {
  std::vector<TreeNode>& nodes = tree_.m_Nodes;
  const std::size_t n = end - begin;
  if (n <= bucketSize_) {
    std::vector<std::size_t>& leaves = tree_.m_LeafIndices;
    nodes[node] = TreeNode{-1, 0.0, leaves.size(), n};
    const double inf = std::numeric_limits<double>::infinity();
    Tree::NodeBox box{{inf, inf, inf}, {-inf, -inf, -inf}};
    for (std::size_t k = begin; k < end; ++k) {
      const std::size_t index = listAxis == kInsertionOrder ? k : sorted_[listAxis][k];
      leaves.push_back(index);
      const TreePoint& point = points_[index];
      tree_.m_LeafEntries.push_back(Tree::LeafEntry{point.x, point.y, point.z, index});
      // NaN compares false and stays out of the box: such a point is never
      // nearer than the best.
      for (int axis = 0; axis < 3; ++axis) {
        const double c = Coord(points_[index], axis);
        box.lo[axis] = c < box.lo[axis] ? c : box.lo[axis];
        box.hi[axis] = c > box.hi[axis] ? c : box.hi[axis];
      }
    }
    tree_.m_Boxes[node] = box;
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
  std::vector<Tree::NodeBox>& boxes = tree_.m_Boxes;
  boxes.push_back(Tree::NodeBox{});
  boxes.push_back(Tree::NodeBox{});
  const std::size_t middle = begin + n / 2;
  BuildTree(left, begin, middle, axis, childSpread[0]);
  BuildTree(right, middle, end, axis, childSpread[1]);
  const Tree::NodeBox& a = boxes[left];
  const Tree::NodeBox& b = boxes[right];
  Tree::NodeBox& box = boxes[node];
  for (int k = 0; k < 3; ++k) {
    box.lo[k] = std::min(a.lo[k], b.lo[k]);
    box.hi[k] = std::max(a.hi[k], b.hi[k]);
  }
}

template <typename Index>
int SearchTreeBuilder<Index>::FindLargestDataVariance(const Spread& spread) {
  return Tree::MaxValueIdx(spread.axis);
}

// The recurrence is the one of VarianceChains.h, over the list in its order.
template <typename Index>
template <typename Entry>
AxisSpread SearchTreeBuilder<Index>::GatherDataVariance(std::size_t n, Entry entry) const {
  assert(n >= 2 && "only lists larger than a bucket are measured");
  const TreePoint& p0 = points_[entry(0)];
  VarianceChains<double> chains(p0.x, p0.y, p0.z);
  for (std::size_t k = 1; k < n; ++k) {
    const TreePoint& p = points_[entry(k)];
    chains.Step(p.x, p.y, p.z, static_cast<double>(k));
  }
  return chains.Result(n);
}

template <typename Index>
double SearchTreeBuilder<Index>::PartitionDataSubset(std::size_t begin, std::size_t end, int axis,
                                                     Spread childSpread[2]) {
  const std::size_t n = end - begin;
  const std::size_t half = n / 2;
  const Index* byAxis = sorted_[axis] + begin;
  // The right half is the larger one (or as large); when it is a leaf, so is
  // the left, and the other lists will not be read again.
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

// The two recurrences run in the two lanes of a vector (same operations, lane
// by lane, so each lane is rounded as a scalar would be), which halves their
// latency chain, the bound of the whole build.
template <typename Index>
void SearchTreeBuilder<Index>::MarkSidesAndGatherHalves(const Index* byAxis, std::size_t n,
                                                        Spread childSpread[2]) {
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
  VarianceChains<DoublePair> chains(DoublePair{l0.x, u0.x}, DoublePair{l0.y, u0.y},
                                    DoublePair{l0.z, u0.z});
  for (std::size_t k = 1; k < half; ++k) {
    goesLeft[lower[k]] = 1;
    goesLeft[upper[k]] = 0;
    const TreePoint& l = points[lower[k]];
    const TreePoint& u = points[upper[k]];
    const double divisor = static_cast<double>(k);
    chains.Step(DoublePair{l.x, u.x}, DoublePair{l.y, u.y}, DoublePair{l.z, u.z},
                DoublePair{divisor, divisor});
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

template <typename Index>
void SearchTreeBuilder<Index>::StablePartition(Index* list, std::size_t n) {
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

template class SearchTreeBuilder<std::uint32_t>;
template class SearchTreeBuilder<std::size_t>;

} // namespace ZEL_detail
