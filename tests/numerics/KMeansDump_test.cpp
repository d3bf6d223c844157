//===- KMeansDump_test.cpp - A clustering as CSV files ----------------------===//
#include "numerics/KMeansTestSupport.h"
#include "support/TempDir.h"

#include <unistd.h>

using namespace kmeans_test;

TEST(KMeansDump, WritesPointsAndSummary) {
  const Values values{1, 9, 2, 8, 1.5};
  Result r = Cluster(values, 2, 100);
  r.info.spread = INFINITY; // written, not refused

  tarn_test::TempDir dir;
  ASSERT_TRUE(KMeansPlusPlus1D::DumpClustering((dir / "run.csv").c_str(), values, r.centers,
                                               r.assignment, r.info));
  EXPECT_EQ(tarn_test::ReadFile(dir / "run.csv"), "index, value, cluster, center\n"
                                                  "0, 1.0, 0, 1.5\n"
                                                  "1, 9.0, 1, 8.5\n"
                                                  "2, 2.0, 0, 1.5\n"
                                                  "3, 8.0, 1, 8.5\n"
                                                  "4, 1.5, 0, 1.5\n");
  EXPECT_EQ(tarn_test::ReadFile(dir / "run_summary.csv"), "quantity, value\n"
                                                          "points, 5\n"
                                                          "clusters, 2\n"
                                                          "distinct values, 5\n"
                                                          "iterations, 1\n"
                                                          "iteration limit, 100\n"
                                                          "spread, Inf\n"
                                                          "mean cluster size, 2.5\n"
                                                          "smallest value, 1.0\n"
                                                          "largest value, 9.0\n"
                                                          "quality factor, -Inf\n");

  // Refused, never thrown: files that cannot be written (the points file,
  // the summary file, a full device), arguments that do not fit.
  const auto dump = [&](const std::string& name, const std::vector<double>& v,
                        const std::vector<std::size_t>& a) {
    return KMeansPlusPlus1D::DumpClustering((dir / name).c_str(), v, r.centers, a, r.info);
  };
  dir.Write("points.csv/x", "");
  dir.Write("summary_summary.csv/x", "");
  EXPECT_FALSE(dump("points.csv", values, r.assignment));
  EXPECT_FALSE(dump("summary.csv", values, r.assignment));
  ASSERT_EQ(::symlink("/dev/full", (dir / "full.csv").c_str()), 0);
  EXPECT_FALSE(dump("full.csv", std::vector<double>(100000, 1.0), std::vector<std::size_t>(100000, 0)));
  EXPECT_FALSE(dump("b.csv", values, {0, 1, 0, 2, 0}));
  EXPECT_FALSE(dump("c.csv", {1.0}, r.assignment));
  EXPECT_FALSE(KMeansPlusPlus1D::DumpClustering(nullptr, values, r.centers, r.assignment, r.info));
}
