//===- TarnUtilities/geometry/ZEL_SearchTree3D.h - Nearest point -*- C++ -*-===//
//
// A k-d tree over a cloud of points in space that answers "which point is
// closest to this position" in Euclidean distance. Points are added one by
// one, each with a 32-bit identifier; CreateTree builds the tree with buckets
// of up to bucketSize points in its leaves; FindNearestPoint returns the
// index of the nearest point (its position in insertion order).
//
// The whole tree lives in three flat arrays addressed by index: the points
// in insertion order, the nodes (node 0 is the root) and the leaf index list
// (one contiguous run of point indices per leaf). There are no node objects
// and no pointers, so a tree copies with three array copies.
//
// Example:
//   ZEL_SearchTree3D tree;
//   tree.AddPoint(7, 0.0, 0.0, 0.0);      // index 0, id 7
//   tree.AddPoint(1.0, 0.0, 0.0);         // index 1, the default id 0
//   tree.CreateTree(12);
//   tree.FindNearestPoint(0.9, 0.0, 0.0)  => 1
//   tree.FindNearestPoint(0.5, 0.0, 0.0)  => 0 (a tie: the point met first stays)
//
// Every answer, ties included, is fixed by the build and search order that
// docs/search-tree.md describes; the same points give the same indices on
// every run. Misuse has defined results: a query without a tree, or on a
// tree of no points, returns npos; CreateTree(0) throws ZEL_Failure.
//
// Queries are const and keep their state on the stack: any number of
// threads may query one built tree at once. AddPoint and CreateTree need
// exclusive access.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_GEOMETRY_ZEL_SEARCHTREE3D_H
#define TARNUTILITIES_GEOMETRY_ZEL_SEARCHTREE3D_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <vector>

namespace ZEL_detail {
template <typename Index> class SearchTreeBuilder;
} // namespace ZEL_detail

class TARN_API ZEL_SearchTree3D {
public:
  /// @name Records
  /// Plain standard-layout records, nested in the class so that their short
  /// names stay out of the global namespace.
  /// @{

  /// One point of the cloud.
  struct TreePoint {
    int id;   ///< the caller's identifier
    double x; ///< coordinates
    double y;
    double z;
  };

  /// One node of the tree. A node is a leaf exactly when `axis` is negative.
  struct TreeNode {
    int axis;           ///< inner: splitting axis, 0 = x, 1 = y, 2 = z; leaf: -1
    double splitValue;  ///< inner: coordinate of the splitting plane; leaf: 0.0
    std::size_t first;  ///< inner: left child's node index; leaf: first leaf-list position
    std::size_t second; ///< inner: right child's node index; leaf: number of points
  };

  /// Work record of the partition: one point's coordinate on the splitting axis.
  struct PointCoord {
    double coord;
    std::size_t index; ///< a point index
  };

  /// The state of one query.
  struct NNSearchData {
    double x; ///< the query position
    double y;
    double z;
    std::size_t bestIndex;     ///< starts at 0
    double bestDistance;       ///< squared; starts at the largest finite double
    std::size_t leavesVisited; ///< counted, not reported
  };

  /// The full answer of a query: the nearest point's index, id and coordinates.
  struct ResultPointData {
    std::size_t index;
    int id;
    double x;
    double y;
    double z;
  };
  /// @}

  /// The index a query returns when the tree holds no point (no tree built
  /// yet, or built from no points).
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);

  /// No points, no tree, default identifier 0.
  ZEL_SearchTree3D();
  /// Deep copies of the default identifier and the three arrays.
  ZEL_SearchTree3D(const ZEL_SearchTree3D& other);
  ZEL_SearchTree3D& operator=(const ZEL_SearchTree3D& other);
  /// Takes the other's arrays; the other is left with no points and no tree.
  ZEL_SearchTree3D(ZEL_SearchTree3D&& other) noexcept;
  ZEL_SearchTree3D& operator=(ZEL_SearchTree3D&& other) noexcept;
  ~ZEL_SearchTree3D();

  /// Appends a point with the given identifier. Its index is the number of
  /// points added before it. A tree built earlier does not see it until
  /// CreateTree is called again.
  void AddPoint(int id, double x, double y, double z);
  /// Appends a point with the default identifier (0).
  void AddPoint(double x, double y, double z);

  /// Builds the tree over every point added so far; a leaf holds at most
  /// `bucketSize` points. Calling it again builds a new tree over all points
  /// and leaves the former nodes and leaf entries in the arrays, unused.
  /// A bucket size of 0 throws ZEL_Failure and leaves the tree as it was.
  /// Out of memory: std::bad_alloc, the tree as it was.
  ///   12 points, bucket 12 => one leaf holding 0 ... 11 in insertion order
  ///   13 points, bucket 12 => a root with leaves of 6 and 7 points
  void CreateTree(std::size_t bucketSize);

  /// Index of the point nearest to (x, y, z); of points at the same distance,
  /// the one the search meets first. npos when the tree holds no point.
  ///   points x = 0, 1, 2, 3 (y = z = 0), bucket 1, query x = 1.5 => 2
  std::size_t FindNearestPoint(double x, double y, double z) const noexcept;
  /// The same search; fills `result` with the nearest point's index, id and
  /// coordinates. When the tree holds no point: index npos, id 0 and NaN
  /// coordinates.
  void FindNearestPoint(double x, double y, double z, ResultPointData& result) const noexcept;

  /// @name Read-only views of the data
  /// @{
  int GetDefaultId() const { return m_DefaultId; }
  const std::vector<TreePoint>& GetPoints() const { return m_Points; }
  const std::vector<TreeNode>& GetNodes() const { return m_Nodes; }
  const std::vector<std::size_t>& GetLeafIndices() const { return m_LeafIndices; }
  /// @}

private:
  template <typename Index> friend class ZEL_detail::SearchTreeBuilder;

  /// The smallest box around the points of a node's subtree (points with a
  /// NaN coordinate left out; a subtree of none has lo > hi). The walk skips
  /// a subtree whose box is no nearer than the best point found so far.
  struct NodeBox {
    double lo[3];
    double hi[3];
  };

  /// CreateTree with work lists of point indices of type Index.
  template <typename Index> void Build(std::size_t bucketSize);
  /// The nearest-point search from `node` down, updating `data`.
  void NearestNeighborSearch(std::size_t node, NNSearchData& data) const noexcept;

  /// The total order of the partition: by coordinate, NaN after every
  /// number, -0.0 equal to +0.0, then by point index.
  static bool ComparePointsCoord(const PointCoord& a, const PointCoord& b);
  static bool IsLeafNode(const TreeNode& node) { return node.axis < 0; }
  /// Index of the largest of three values, the lowest index on ties:
  ///   (1, 1, 1) => 0,  (1, 2, 2) => 1,  (1, 2, 3) => 2
  static int MaxValueIdx(const double values[3]);

  int m_DefaultId;
  std::vector<TreePoint> m_Points;
  std::vector<TreeNode> m_Nodes;
  std::vector<std::size_t> m_LeafIndices;
  std::vector<NodeBox> m_Boxes; ///< parallel to m_Nodes
  /// A leaf entry's point index with its coordinates, parallel to
  /// m_LeafIndices: a leaf's points are measured from one contiguous run
  /// instead of scattered loads.
  struct LeafEntry {
    double x;
    double y;
    double z;
    std::size_t index;
  };
  std::vector<LeafEntry> m_LeafEntries;
};

#endif // TARNUTILITIES_GEOMETRY_ZEL_SEARCHTREE3D_H
