//===- ZEL_SearchTree3D.cpp - Points, tree construction, axis order ---------===//
//
// Everything of ZEL_SearchTree3D except the query (ZEL_SearchTree3D_Search.cpp):
// the points, CreateTree with its checks and its all-or-nothing memory
// reservation, and the two small rules the builder uses (the order on an
// axis and the choice of the axis). The build itself is SearchTreeBuilder.cpp.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/geometry/ZEL_SearchTree3D.h"
#include "TarnUtilities/logging/ZEL_Failure.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "geometry/HugePageAdvice.h"
#include "geometry/SearchTreeBuilder.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <utility>

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|ZEL_SearchTree3D] ";

/// Number of inner nodes of a tree over `n` points with buckets of
/// `bucketSize`: a list longer than a bucket splits into n/2 and n - n/2.
/// A level holds at most two list lengths, so the memo stays small.
std::size_t InnerNodeCount(std::size_t n, std::size_t bucketSize,
                           std::map<std::size_t, std::size_t>& memo) {
  if (n <= bucketSize)
    return 0;
  const auto known = memo.find(n);
  if (known != memo.end())
    return known->second;
  const std::size_t count =
      1 + InnerNodeCount(n / 2, bucketSize, memo) + InnerNodeCount(n - n / 2, bucketSize, memo);
  memo.emplace(n, count);
  return count;
}

} // namespace

ZEL_SearchTree3D::ZEL_SearchTree3D() : m_DefaultId(0) {}

ZEL_SearchTree3D::ZEL_SearchTree3D(const ZEL_SearchTree3D& other) = default;

// Copy, then move: if the copy runs out of memory, this tree keeps its own
// arrays, so its leaf entries never name a point it does not hold.
ZEL_SearchTree3D& ZEL_SearchTree3D::operator=(const ZEL_SearchTree3D& other) {
  ZEL_SearchTree3D copy(other);
  *this = std::move(copy);
  return *this;
}

ZEL_SearchTree3D::ZEL_SearchTree3D(ZEL_SearchTree3D&& other) noexcept
    : m_DefaultId(other.m_DefaultId), m_Points(std::move(other.m_Points)),
      m_Nodes(std::move(other.m_Nodes)), m_LeafIndices(std::move(other.m_LeafIndices)),
      m_Boxes(std::move(other.m_Boxes)), m_LeafEntries(std::move(other.m_LeafEntries)) {
  other.m_Points.clear();
  other.m_Nodes.clear();
  other.m_LeafIndices.clear();
  other.m_Boxes.clear();
  other.m_LeafEntries.clear();
}

ZEL_SearchTree3D& ZEL_SearchTree3D::operator=(ZEL_SearchTree3D&& other) noexcept {
  if (this != &other) {
    m_DefaultId = other.m_DefaultId;
    m_Points = std::move(other.m_Points);
    m_Nodes = std::move(other.m_Nodes);
    m_LeafIndices = std::move(other.m_LeafIndices);
    m_Boxes = std::move(other.m_Boxes);
    m_LeafEntries = std::move(other.m_LeafEntries);
    other.m_Points.clear();
    other.m_Nodes.clear();
    other.m_LeafIndices.clear();
    other.m_Boxes.clear();
    other.m_LeafEntries.clear();
  }
  return *this;
}

ZEL_SearchTree3D::~ZEL_SearchTree3D() = default;

void ZEL_SearchTree3D::AddPoint(int id, double x, double y, double z) {
  m_Points.push_back(TreePoint{id, x, y, z});
}

void ZEL_SearchTree3D::AddPoint(double x, double y, double z) {
  m_Points.push_back(TreePoint{m_DefaultId, x, y, z});
}

void ZEL_SearchTree3D::CreateTree(std::size_t bucketSize) {
  if (bucketSize == 0) {
    // A leaf of no points could never take the last point of a list: the
    // split would go on for ever. Refuse before anything changes.
    const char* const message =
        "CreateTree needs a bucket size of at least 1 (the largest number of "
        "points in a leaf); the tree is left as it was";
    ZEL_LOG_ERROR(kHeader, message);
    throw ZEL_Failure(ZEL_Code("120912000001"), message, kHeader);
  }
  if (m_Points.size() <= std::numeric_limits<std::uint32_t>::max())
    Build<std::uint32_t>(bucketSize);
  else
    Build<std::size_t>(bucketSize);
}

template <typename Index> void ZEL_SearchTree3D::Build(std::size_t bucketSize) {
  // Every block is taken before the first change, so that an allocation
  // failure leaves the tree as it was: the builder's work space, then one
  // zero node for the root's place, two per inner node and one leaf entry
  // per point. Former nodes and leaf entries stay where they are; only
  // node 0 is rewritten.
  ZEL_detail::SearchTreeBuilder<Index> builder(*this, bucketSize);
  const std::size_t count = m_Points.size();
  std::map<std::size_t, std::size_t> memo;
  const std::size_t newNodes = 1 + 2 * InnerNodeCount(count, bucketSize, memo);
  m_Nodes.reserve(m_Nodes.size() + newNodes);
  m_Boxes.reserve(m_Boxes.size() + newNodes);
  m_LeafIndices.reserve(m_LeafIndices.size() + count);
  m_LeafEntries.reserve(m_LeafEntries.size() + count);
  ZEL_detail::AdviseHugePagesForCapacity(m_Nodes);
  ZEL_detail::AdviseHugePagesForCapacity(m_LeafIndices);
  ZEL_detail::AdviseHugePagesForCapacity(m_LeafEntries);
  ZEL_detail::AdviseHugePagesForCapacity(m_Boxes);
  m_Nodes.push_back(TreeNode{0, 0.0, 0, 0});
  m_Boxes.push_back(NodeBox{});
  builder.Run();
}

bool ZEL_SearchTree3D::ComparePointsCoord(const PointCoord& a, const PointCoord& b) {
  if (a.coord < b.coord)
    return true;
  if (b.coord < a.coord)
    return false;
  // Equal coordinates (-0.0 and +0.0 among them), or a NaN on either side:
  // numbers come before NaN, and equals are ordered by point index.
  const bool aIsNan = std::isnan(a.coord);
  const bool bIsNan = std::isnan(b.coord);
  if (aIsNan != bIsNan)
    return bIsNan;
  return a.index < b.index;
}

int ZEL_SearchTree3D::MaxValueIdx(const double values[3]) {
  // Written with the strict comparisons that decide ties (and NaN, which
  // compares false) towards the lower index.
  if (values[1] > values[0])
    return values[2] > values[1] ? 2 : 1;
  return values[2] > values[0] ? 2 : 0;
}
