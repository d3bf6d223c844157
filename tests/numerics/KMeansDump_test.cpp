//===- KMeansDump_test.cpp - A clustering as CSV files ----------------------===//
#include "TarnUtilities/numerics/KMeansPlusPlus1D.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cmath>
#include <unistd.h>
#include <vector>

TEST(KMeansDump, WritesPointsAndSummary) {
  const std::vector<double> values{1, 9, 2, 8, 1.5};
  KMeansPlusPlus1D km(values);
  km.SeedCentersAdvanced(2);
  std::vector<double> centers;
  std::vector<std::size_t> assignment;
  KMeansPlusPlus1D::CLUSTERING_INFO info;
  km.CreateClusters(100, centers, assignment, info);
  info.spread = INFINITY; // written, not refused

  tarn_test::TempDir dir;
  ASSERT_TRUE(KMeansPlusPlus1D::DumpClustering((dir / "run.csv").c_str(), values, centers,
                                               assignment, info));
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
    return KMeansPlusPlus1D::DumpClustering((dir / name).c_str(), v, centers, a, info);
  };
  dir.Write("points.csv/x", "");
  dir.Write("summary_summary.csv/x", "");
  EXPECT_FALSE(dump("points.csv", values, assignment));
  EXPECT_FALSE(dump("summary.csv", values, assignment));
  ASSERT_EQ(::symlink("/dev/full", (dir / "full.csv").c_str()), 0);
  EXPECT_FALSE(dump("full.csv", std::vector<double>(100000, 1.0), std::vector<std::size_t>(100000, 0)));
  EXPECT_FALSE(dump("b.csv", values, {0, 1, 0, 2, 0}));
  EXPECT_FALSE(dump("c.csv", {1.0}, assignment));
  EXPECT_FALSE(KMeansPlusPlus1D::DumpClustering(nullptr, values, centers, assignment, info));
}
