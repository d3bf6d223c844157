//===- ZEL_SearchTree3D_test.cpp - The nearest-point search tree ------------===//
//
// The tree is checked against a plain transcription of its algorithm (a full
// sort at every node, the query with the plane test alone), node for node
// and answer for answer, and every answer against brute force. Clouds: random,
// clustered, grids full of exact ties, duplicates, non-finite coordinates.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/geometry/ZEL_SearchTree3D.h"
#include "support/FailureOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <thread>
#include <vector>

namespace {

using Tree = ZEL_SearchTree3D;
const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

double Coord(const Tree::TreePoint& p, int axis) { return axis == 0 ? p.x : axis == 1 ? p.y : p.z; }

// The transcription: every node sorts its own list (coordinate, NaN last,
// then index) and measures the spread over the list in its order.
struct Oracle {
  std::vector<Tree::TreePoint> points;
  std::vector<Tree::TreeNode> nodes;
  std::vector<std::size_t> leaves;

  void Build(std::size_t bucket) {
    std::vector<std::size_t> all(points.size());
    for (std::size_t i = 0; i < all.size(); ++i)
      all[i] = i;
    nodes.push_back({0, 0.0, 0, 0});
    Node(0, all, bucket);
  }
  void Node(std::size_t node, const std::vector<std::size_t>& list, std::size_t bucket) {
    if (list.size() <= bucket) {
      nodes[node] = {-1, 0.0, leaves.size(), list.size()};
      leaves.insert(leaves.end(), list.begin(), list.end());
      return;
    }
    double s[3];
    for (int axis = 0; axis < 3; ++axis) {
      double mean = Coord(points[list[0]], axis), m2 = 0.0;
      for (std::size_t k = 1; k < list.size(); ++k) {
        const double c = Coord(points[list[k]], axis), delta = c - mean;
        mean = mean + delta / k;
        m2 = m2 + (c - mean) * delta;
      }
      s[axis] = m2 / (list.size() - 1);
    }
    const int axis = s[1] > s[0] ? (s[2] > s[1] ? 2 : 1) : (s[2] > s[0] ? 2 : 0);
    std::vector<Tree::PointCoord> rec;
    for (std::size_t i : list)
      rec.push_back({Coord(points[i], axis), i});
    std::sort(rec.begin(), rec.end(), [](const Tree::PointCoord& a, const Tree::PointCoord& b) {
      if (std::isnan(a.coord) || std::isnan(b.coord))
        return std::isnan(a.coord) == std::isnan(b.coord) ? a.index < b.index : std::isnan(b.coord);
      return a.coord != b.coord ? a.coord < b.coord : a.index < b.index;
    });
    const std::size_t n = rec.size(), h = n / 2;
    std::vector<std::size_t> left, right;
    for (std::size_t k = 0; k < n; ++k)
      (k < h ? left : right).push_back(rec[k].index);
    const double split = n % 2 ? rec[h].coord : (rec[h - 1].coord + rec[h].coord) * 0.5;
    const std::size_t l = nodes.size();
    nodes[node] = {axis, split, l, l + 1};
    nodes.resize(l + 2, {0, 0.0, 0, 0});
    Node(l, left, bucket);
    Node(l + 1, right, bucket);
  }
  void Search(std::size_t node, Tree::NNSearchData& d) const {
    const double q[3] = {d.x, d.y, d.z};
    while (nodes[node].axis >= 0) {
      const double diff = q[nodes[node].axis] - nodes[node].splitValue;
      Search(diff < 0 ? nodes[node].first : nodes[node].second, d);
      if (!(d.bestDistance > diff * diff))
        return;
      node = diff < 0 ? nodes[node].second : nodes[node].first;
    }
    for (std::size_t k = 0; k < nodes[node].second; ++k) {
      const std::size_t i = leaves[nodes[node].first + k];
      const double dx = d.x - points[i].x, dy = d.y - points[i].y, dz = d.z - points[i].z;
      const double d2 = (dy * dy + dx * dx) + dz * dz;
      if (d.bestDistance > d2)
        d.bestDistance = d2, d.bestIndex = i;
    }
  }
  std::size_t Query(double x, double y, double z) const {
    Tree::NNSearchData d{x, y, z, 0, DBL_MAX, 0};
    Search(0, d);
    return d.bestIndex;
  }
};

double Dist2(const Tree::TreePoint& p, double x, double y, double z) {
  return ((y - p.y) * (y - p.y) + (x - p.x) * (x - p.x)) + (z - p.z) * (z - p.z);
}

bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

void ExpectSameTree(const Tree& tree, const Oracle& oracle) {
  ASSERT_EQ(tree.GetNodes().size(), oracle.nodes.size());
  for (std::size_t i = 0; i < oracle.nodes.size(); ++i) {
    const Tree::TreeNode &a = tree.GetNodes()[i], &b = oracle.nodes[i];
    ASSERT_TRUE(a.axis == b.axis && SameBits(a.splitValue, b.splitValue) && a.first == b.first &&
                a.second == b.second)
        << "node " << i;
  }
  ASSERT_EQ(tree.GetLeafIndices(), oracle.leaves);
}

enum class Cloud { Uniform, Clustered, Grid, Duplicates, Flat, NonFinite };

std::vector<Tree::TreePoint> MakeCloud(Cloud kind, std::size_t n, std::mt19937_64& rng) {
  std::uniform_real_distribution<double> u(-1.0, 1.0);
  std::normal_distribution<double> g(0.0, 0.01);
  std::vector<Tree::TreePoint> p;
  const int side = static_cast<int>(std::cbrt(static_cast<double>(n))) + 1;
  for (std::size_t i = 0; i < n; ++i) {
    const int id = static_cast<int>(i) * 3 - 7;
    const double c = static_cast<double>(i % 5);
    switch (kind) {
    case Cloud::Uniform:
      p.push_back({id, u(rng), u(rng), u(rng)});
      break;
    case Cloud::Clustered:
      p.push_back({id, c + g(rng), c * 0.5 + g(rng), -c + g(rng)});
      break;
    case Cloud::Grid: // a unit grid in row order: many equal coordinates and distances
      p.push_back({id, double(i % side), double(i / side % side), double(i / side / side)});
      break;
    case Cloud::Duplicates:
      p.push_back({id, c, c, 0.0});
      break;
    case Cloud::Flat:
      p.push_back({id, u(rng), i % 2 ? -0.0 : 0.0, 2.0});
      break;
    case Cloud::NonFinite: {
      const double odd[] = {kNan, kInf, -kInf, 1e308, -1e308, 0.0, -0.0, 5e-324};
      p.push_back({id, odd[rng() % 8], u(rng), odd[rng() % 8]});
      break;
    }
    }
  }
  return p;
}

// Queries at points, on every split plane, between grid nodes and outside.
std::vector<Tree::TreePoint> MakeQueries(const Oracle& o, std::size_t count, std::mt19937_64& rng) {
  std::uniform_real_distribution<double> u(-1.5, 1.5);
  std::vector<Tree::TreePoint> q;
  for (std::size_t i = 0; i < count && !o.points.empty(); ++i) {
    Tree::TreePoint p = o.points[rng() % o.points.size()];
    const Tree::TreeNode& node = o.nodes[rng() % o.nodes.size()];
    if (i % 4 == 1 && node.axis >= 0)
      (node.axis == 0 ? p.x : node.axis == 1 ? p.y : p.z) = node.splitValue;
    if (i % 4 == 2)
      p.x += 0.5, p.y += 0.5 * (i % 3);
    if (i % 4 == 3)
      p = {0, u(rng) * 1e3, u(rng), u(rng)};
    if (i % 50 == 0)
      p.y = kNan; // no distance beats the start: index 0
    q.push_back(p);
  }
  return q;
}

TEST(ZEL_SearchTree3D, EqualsTheTranscriptionAndBruteForce) {
  // Below 4096 points a comparison sort orders the axes, from there a radix sort.
  struct Case {
    Cloud cloud;
    std::size_t n, bucket;
  } cases[] = {
      {Cloud::Uniform, 1, 1},        {Cloud::Uniform, 2, 1},      {Cloud::Uniform, 1000, 1},
      {Cloud::Uniform, 100000, 12},  {Cloud::Uniform, 777, 64},   {Cloud::Clustered, 5000, 3},
      {Cloud::Clustered, 20000, 12}, {Cloud::Grid, 1000, 1},      {Cloud::Grid, 8000, 12},
      {Cloud::Grid, 4913, 7},        {Cloud::Duplicates, 500, 2}, {Cloud::Duplicates, 64, 64},
      {Cloud::Flat, 5000, 5},        {Cloud::NonFinite, 2000, 4}, {Cloud::NonFinite, 6000, 3},
      {Cloud::Uniform, 13, 12}};
  std::mt19937_64 rng(20240612);
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message()
                 << "cloud " << int(c.cloud) << ", n " << c.n << ", bucket " << c.bucket);
    Oracle oracle;
    oracle.points = MakeCloud(c.cloud, c.n, rng);
    Tree tree;
    for (const Tree::TreePoint& p : oracle.points)
      tree.AddPoint(p.id, p.x, p.y, p.z);
    tree.CreateTree(c.bucket);
    oracle.Build(c.bucket);
    ExpectSameTree(tree, oracle);
    for (const Tree::TreePoint& q : MakeQueries(oracle, c.n > 10000 ? 300 : 2000, rng)) {
      const std::size_t want = oracle.Query(q.x, q.y, q.z);
      Tree::ResultPointData r{};
      tree.FindNearestPoint(q.x, q.y, q.z, r);
      const Tree::TreePoint& p = oracle.points[want];
      ASSERT_TRUE(tree.FindNearestPoint(q.x, q.y, q.z) == want && r.index == want && r.id == p.id &&
                  SameBits(r.x, p.x) && SameBits(r.y, p.y) && SameBits(r.z, p.z))
          << "query " << q.x << " " << q.y << " " << q.z;
      if (c.cloud != Cloud::NonFinite && !std::isnan(q.y)) {
        for (const Tree::TreePoint& other : oracle.points)
          ASSERT_GE(Dist2(other, q.x, q.y, q.z), Dist2(p, q.x, q.y, q.z));
      }
    }
  }
}

TEST(ZEL_SearchTree3D, WorkedCases) {
  Tree tree;
  for (int i = 0; i < 12; ++i)
    tree.AddPoint(5.0 - i, 0.0, 0.0); // x = 5 ... -6, default id
  tree.CreateTree(12);                // one leaf, insertion order
  EXPECT_EQ(tree.GetPoints()[0].id, 0);
  EXPECT_EQ(tree.GetLeafIndices(),
            (std::vector<std::size_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
  tree.AddPoint(42, 0.5, 0.0, 0.0);
  tree.CreateTree(12); // 13 points: 6 left, 7 right, split at the 7th smallest x
  const std::vector<Tree::TreeNode>& n = tree.GetNodes();
  EXPECT_TRUE(n[0].axis == 0 && n[0].splitValue == 0.0 && n[n[0].first].second == 6 &&
              n[n[0].second].second == 7);

  Tree twins; // two points at one place: the one added first
  twins.AddPoint(1, 0.0, 0.0, 0.0);
  twins.AddPoint(2, 1.0, 1.0, 1.0);
  twins.AddPoint(3, 1.0, 1.0, 1.0);
  twins.CreateTree(12);
  EXPECT_EQ(twins.FindNearestPoint(0.9, 1.0, 1.1), 1u);

  Tree line; // x = 0, 1, 2, 3; the query on the root plane goes right first and stays there
  for (int i = 0; i < 4; ++i)
    line.AddPoint(i, i, 0.0, 0.0);
  line.CreateTree(1);
  EXPECT_EQ(line.GetNodes()[0].splitValue, 1.5);
  EXPECT_EQ(line.FindNearestPoint(1.5, 0.0, 0.0), 2u);

  Tree cube; // equal spreads on all axes split on x; odd count splits at the median
  for (int i = 0; i < 3; ++i)
    cube.AddPoint(i, i, i);
  cube.CreateTree(2);
  EXPECT_EQ(cube.GetNodes()[0].axis, 0);
  EXPECT_EQ(cube.GetNodes()[0].splitValue, 1.0);
}

TEST(ZEL_SearchTree3D, RebuildsAppendAndAnswerAsBefore) {
  std::mt19937_64 rng(7);
  Oracle oracle;
  oracle.points = MakeCloud(Cloud::Clustered, 3000, rng);
  Tree tree;
  for (const Tree::TreePoint& p : oracle.points)
    tree.AddPoint(p.id, p.x, p.y, p.z);
  tree.CreateTree(6);
  Tree copy;
  copy = tree;                     // through the copy constructor and the move assignment
  tree.AddPoint(1, 0.0, 0.0, 0.0); // not in the tree until it is rebuilt
  EXPECT_NE(tree.FindNearestPoint(0.0, 0.0, 0.0), 3000u);
  tree.CreateTree(6);
  copy.CreateTree(6);
  oracle.Build(6);
  oracle.Build(6);
  ExpectSameTree(copy, oracle);
  EXPECT_EQ(tree.FindNearestPoint(0.0, 0.0, 0.0), 3000u);
  Tree moved = std::move(copy);
  for (const Tree::TreePoint& q : MakeQueries(oracle, 500, rng))
    ASSERT_EQ(moved.FindNearestPoint(q.x, q.y, q.z), oracle.Query(q.x, q.y, q.z));
  EXPECT_EQ(copy.FindNearestPoint(0, 0, 0), Tree::npos); // NOLINT: moved-from is empty
}

TEST(ZEL_SearchTree3D, MisuseHasDefinedResults) {
  Tree tree;
  Tree::ResultPointData r{7, 7, 0.0, 0.0, 0.0};
  EXPECT_EQ(tree.FindNearestPoint(0, 0, 0), Tree::npos); // no tree yet
  tree.CreateTree(1);                                    // a tree of no points
  tree.FindNearestPoint(0, 0, 0, r);
  EXPECT_TRUE(r.index == Tree::npos && r.id == 0 && std::isnan(r.x) && std::isnan(r.y) &&
              std::isnan(r.z));
  tree.AddPoint(1.0, 2.0, 3.0); // added after the build: still no point in the tree
  EXPECT_EQ(tree.FindNearestPoint(1, 2, 3), Tree::npos);
  const std::vector<Tree::TreeNode> nodes = tree.GetNodes();
  EXPECT_NE(
      tarn_test::FailureMessage([&] { tree.CreateTree(0); }).find("bucket size of at least 1"),
      std::string::npos);
  EXPECT_EQ(tree.GetNodes().size(), nodes.size());
}

TEST(ZEL_SearchTree3D, ConcurrentQueriesGiveTheSerialAnswers) {
  std::mt19937_64 rng(99);
  Tree tree;
  for (const Tree::TreePoint& p : MakeCloud(Cloud::Grid, 27000, rng))
    tree.AddPoint(p.id, p.x + 0.25 * (p.id % 3), p.y, p.z);
  tree.CreateTree(12);
  std::vector<double> q(3 * 20000);
  std::uniform_real_distribution<double> u(-1.0, 31.0);
  for (double& c : q)
    c = std::round(u(rng) * 4) / 4; // on the grid's planes and half-way between
  std::vector<std::size_t> serial(q.size() / 3);
  for (std::size_t i = 0; i < serial.size(); ++i)
    serial[i] = tree.FindNearestPoint(q[3 * i], q[3 * i + 1], q[3 * i + 2]);
  std::vector<std::vector<std::size_t>> got(4, std::vector<std::size_t>(serial.size()));
  std::vector<std::thread> threads;
  for (std::vector<std::size_t>& out : got)
    threads.emplace_back([&] {
      for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = tree.FindNearestPoint(q[3 * i], q[3 * i + 1], q[3 * i + 2]);
    });
  for (std::thread& t : threads)
    t.join();
  for (const std::vector<std::size_t>& out : got)
    EXPECT_EQ(out, serial);
}

} // namespace
