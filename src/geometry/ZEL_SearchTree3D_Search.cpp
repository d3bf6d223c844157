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
// The cell bound. Besides the plane test the walk also skips a far child when
// best <= (by + bx) + bz, where b holds, per axis, the largest diff * diff of
// the splits crossed on the way down into a far child. Skipping never changes
// an answer:
//
// 1. Only points with a finite d2 can replace the best (best <= DBL_MAX, and
//    NaN compares false), so only points with finite coordinate differences
//    matter below.
// 2. A far child is entered only when best > diff * diff, so diff * diff is
//    finite, hence the query coordinate and the split value are finite. A
//    finite split value s lies between the coordinates of the two sides:
//    left points have c <= s, right points c >= s (or NaN). For an odd list s
//    is the first right coordinate; for an even one s = (a + b) * 0.5 of the
//    two middle ones, and a <= s <= b when that is finite (rounding is
//    monotone and a, b are representable).
// 3. So every point p of the far child lies at least as far from the query on
//    that axis as the plane: |q - p| >= |q - s| exactly, hence, rounding being
//    monotone, |fl(q - p)| >= |diff| and fl(dp * dp) >= fl(diff * diff). A
//    near child holds a subset of its parent, so the parent's b still holds.
// 4. With bx, by, bz each at most the point's own squared difference, the
//    sum (by + bx) + bz, formed in the same order, is at most its d2.
// 5. If best <= that sum, no point of the child has d2 < best. Since the best
//    only changes on a strictly smaller d2, searching the child would leave
//    the best index and distance as they are: a point at exactly the best
//    distance would not replace the one met first. Skipping it is invisible.

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
    CellBound bound;
    double cellDistance; // (by + bx) + bz of bound
  };
  FarChild waiting[64];
  std::size_t waitingCount = 0;
  const double query[3] = {data.x, data.y, data.z};
  double best = data.bestDistance;
  std::size_t bestIndex = data.bestIndex;
  CellBound bound{{0.0, 0.0, 0.0}};
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
      const double plane = diff * diff;
      // The plane test, then the cell test. The best only shrinks: a far
      // child that fails them now fails them when its turn comes, and need
      // not wait. One that waits has a finite plane no farther than its
      // cell, so when its turn comes the cell test alone decides.
      if (best > plane) {
        // The far cell: this node's cell, pushed out to the plane on `axis`.
        // Components picked by value, not written into an array and read
        // back, which would stall the load on the store.
        const double widened = std::max(bound.axis[axis], plane);
        const CellBound farBound{{axis == 0 ? widened : bound.axis[0],
                                  axis == 1 ? widened : bound.axis[1],
                                  axis == 2 ? widened : bound.axis[2]}};
        const double cellDistance = (farBound.axis[1] + farBound.axis[0]) + farBound.axis[2];
        if (best > cellDistance) {
          assert(waitingCount < 64 && "the tree is deeper than its point count allows");
          __builtin_prefetch(&m_Nodes[farChild]); // read when its turn comes
          waiting[waitingCount++] = FarChild{farChild, farBound, cellDistance};
        }
      }
      node = nearChild;
      current = &m_Nodes[node];
    }

    ++data.leavesVisited;
    // The best is chosen without a branch: the outcome of the comparison is
    // hard to predict, and a mispredicted branch would hold up the loads of
    // the next points.
    const std::size_t* entries = m_LeafIndices.data() + current->first;
    for (std::size_t k = 0; k < current->second; ++k) {
      const std::size_t index = entries[k];
      const TreePoint& point = m_Points[index];
      const double dx = data.x - point.x;
      const double dy = data.y - point.y;
      const double dz = data.z - point.z;
      const double d2 = (dy * dy + dx * dx) + dz * dz;
      const bool closer = best > d2;
      bestIndex = closer ? index : bestIndex;
      best = closer ? d2 : best;
    }

    for (;;) {
      if (waitingCount == 0) {
        data.bestDistance = best;
        data.bestIndex = bestIndex;
        return;
      }
      const FarChild& far = waiting[--waitingCount];
      if (best > far.cellDistance) {
        node = far.node;
        bound = far.bound;
        break;
      }
    }
  }
}
