//===- ZEL_SearchTree3D_Search.cpp - The nearest-point query ----------------===//
//
// FindNearestPoint walks the tree from the root, near child first, and keeps
// the first point whose squared distance is strictly below the best so far.
// Which point that is, ties included, is fixed by this walk; the pruning
// below only saves work and never changes an answer. The walk keeps the far
// children still to be searched on a small stack of its own rather than
// recursing: same order, same decisions, less work per node.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/geometry/ZEL_SearchTree3D.h"

#include <algorithm>
#include <cassert>
#include <limits>

// How the walk goes. At an inner node, diff = query[axis] - split; the near
// child is the left one when diff < 0, else the right one (so a query on the
// plane goes right first). After the near child, the far child is searched
// only when best > diff * diff. At a leaf every listed point is measured,
// d2 = (dy*dy + dx*dx) + dz*dz in exactly this order (no fused operations:
// the geometry sources are compiled with -ffp-contract=off), and replaces the best
// when best > d2. The best starts at index 0 and the largest finite double.
//
// The box bound. Besides the plane test the walk skips a far child when
// best <= its box distance: the squared distance from the query to the
// smallest box around the child's points, (gy*gy + gx*gx) + gz*gz with
// g = max(lo - q, q - hi, 0) per axis. Skipping never changes an answer:
//
// 1. Only points with a finite d2 can replace the best (best <= DBL_MAX, and
//    NaN compares false); points with a NaN coordinate are left out of the
//    boxes for that reason.
// 2. For a point p in the box, lo <= p <= hi on each axis, so the exact
//    |q - p| >= max(lo - q, q - p, 0) exactly, and rounding being monotone,
//    fl(q - p)^2 >= fl(g)^2 rounded; the box distance is formed in the order
//    of d2, hence it is at most the point's d2.
// 3. If best <= that distance, no point of the child has d2 < best. Since
//    the best only changes on a strictly smaller d2, searching the child
//    would leave the best index and distance as they are: a point at exactly
//    the best distance would not replace the one met first. Skipping it is
//    invisible.
// The same holds for a leaf: one whose box is no nearer than the best is
// passed over too (the first leaf, with the best at DBL_MAX, never is).

namespace {

/// Squared distance from the query to a box: (gy*gy + gx*gx) + gz*gz with
/// g = max(lo - q, q - hi, 0) per axis, in the order of a point's d2.
inline double BoxDistance(const double lo[3], const double hi[3], const double query[3]) {
  double gap[3];
  for (int axis = 0; axis < 3; ++axis) {
    const double below = lo[axis] - query[axis];
    const double above = query[axis] - hi[axis];
    const double outside = below > above ? below : above;
    gap[axis] = outside > 0.0 ? outside : 0.0;
  }
  return (gap[1] * gap[1] + gap[0] * gap[0]) + gap[2] * gap[2];
}

} // namespace

std::size_t ZEL_SearchTree3D::FindNearestPoint(double x, double y, double z) const noexcept {
  // The root is an empty leaf only for a tree built from no points: with a
  // bucket size of at least 1 every other leaf holds a point.
  if (m_Nodes.empty() || (IsLeafNode(m_Nodes[0]) && m_Nodes[0].second == 0))
    return npos;
  NNSearchData data{x, y, z, 0, std::numeric_limits<double>::max(), 0};
  NearestNeighborSearch(0, data);
  return data.bestIndex;
}

void ZEL_SearchTree3D::FindNearestPoint(double x, double y, double z,
                                        ResultPointData& result) const noexcept {
  const std::size_t index = FindNearestPoint(x, y, z);
  if (index == npos) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    result = ResultPointData{npos, 0, nan, nan, nan};
    return;
  }
  const TreePoint& point = m_Points[index];
  result = ResultPointData{index, point.id, point.x, point.y, point.z};
}

void ZEL_SearchTree3D::NearestNeighborSearch(std::size_t node, NNSearchData& data) const noexcept {
  // The far children still to be searched, latest last: the walk is the
  // recursive one (near child, then far child) with its own stack. Children
  // halve the points, so the tree is at most 64 levels deep and at most one
  // far child per level is waiting.
  struct FarChild {
    std::size_t node;
    double boxDistance;
  };
  FarChild waiting[64];
  std::size_t waitingCount = 0;
  const double query[3] = {data.x, data.y, data.z};
  double best = data.bestDistance;
  std::size_t bestIndex = data.bestIndex;
  for (;;) {
    const TreeNode* current = &m_Nodes[node];
    while (!IsLeafNode(*current)) {
      const int axis = current->axis;
      const double diff = query[axis] - current->splitValue;
      // Near and far child picked without a branch: which side a query
      // falls on is as good as random, and a mispredicted branch costs more
      // than the arithmetic.
      const std::size_t left = current->first;
      const std::size_t right = current->second;
      const std::size_t leftMask = std::size_t(0) - static_cast<std::size_t>(diff < 0);
      const std::size_t nearChild = (left & leftMask) | (right & ~leftMask);
      const std::size_t farChild = left ^ right ^ nearChild;
      // The plane test, then the box test. The best only shrinks: a far
      // child that fails them now fails them when its turn comes, and need
      // not wait. One that waits is decided by its box alone.
      if (best > diff * diff) {
        const NodeBox& box = m_Boxes[farChild];
        const double farDistance = BoxDistance(box.lo, box.hi, query);
        if (best > farDistance) {
          assert(waitingCount < 64 && "the tree is deeper than its point count allows");
          __builtin_prefetch(&m_Nodes[farChild]); // read when its turn comes
          waiting[waitingCount++] = FarChild{farChild, farDistance};
        }
      }
      node = nearChild;
      current = &m_Nodes[node];
    }

    // A leaf below a far child may lie outside the best sphere although its
    // far ancestor did not; one box costs less than its points.
    const NodeBox& leafBox = m_Boxes[node];
    if (best > BoxDistance(leafBox.lo, leafBox.hi, query)) {
      ++data.leavesVisited;
      // The best is chosen without a branch: the outcome of the comparison
      // is hard to predict, and a mispredicted branch would hold up the
      // loads of the next points.
      const LeafEntry* entries = m_LeafEntries.data() + current->first;
      for (std::size_t k = 0; k < current->second; ++k) {
        const LeafEntry& entry = entries[k];
        const std::size_t index = entry.index;
        const double dx = data.x - entry.x;
        const double dy = data.y - entry.y;
        const double dz = data.z - entry.z;
        const double d2 = (dy * dy + dx * dx) + dz * dz;
        const bool closer = best > d2;
        bestIndex = closer ? index : bestIndex;
        best = closer ? d2 : best;
      }
    }

    for (;;) {
      if (waitingCount == 0) {
        data.bestDistance = best;
        data.bestIndex = bestIndex;
        return;
      }
      const FarChild& far = waiting[--waitingCount];
      if (best > far.boxDistance) {
        node = far.node;
        break;
      }
    }
  }
}
