//===- tool/KMeansCommand.cpp - tarnutil kmeans --------------------------===//
//
// Clusters one column of a CSV file into at most K groups with the
// library's one-dimensional k-means (deterministic seeding), and prints the
// clustering's statistics and one line per cluster.
//
//===----------------------------------------------------------------------===//
#include "Commands.h"
#include "CsvTable.h"
#include "NumberText.h"

#include <TarnUtilities/numerics/KMeansPlusPlus1D.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace tarnutil {
namespace {

const char kHelp[] =
    "usage: tarnutil kmeans K FILE.csv [--column C] [--iterations N] [--assign]\n"
    "\n"
    "Groups the values of one column of FILE.csv into at most K clusters\n"
    "(one-dimensional k-means, deterministic seeding) and prints the number of\n"
    "values, clusters and iterations, the spread and the quality factor, then\n"
    "\"cluster, center, size, min, max\" for each cluster in ascending order.\n"
    "\n"
    "  --column C      the column: a number from 1 or a title (default 1)\n"
    "  --iterations N  at most N iterations (default 100)\n"
    "  --assign        also print \"line, value, cluster\" for every value\n"
    "\n"
    "FILE.csv: numbers separated by commas, an optional first line of titles,\n"
    "'#' comment lines (see docs/file-formats.md).\n";

// Enough for every clustering of the suite's data: k-means in one dimension
// settles within a few dozen iterations on the data it is used for.
constexpr long long kDefaultIterations = 100;
// Larger limits are refused as typing errors; 10^9 iterations would run for days.
constexpr long long kMaxIterations = 1000000;

int Run(Arguments& args) {
  std::string columnName = "1";
  std::string iterationsText;
  args.TakeOption("--column", columnName);
  const bool hasIterations = args.TakeOption("--iterations", iterationsText);
  const bool printAssignment = args.TakeFlag("--assign");
  const std::vector<std::string> operands = args.Rest();
  if (operands.size() != 2)
    throw UsageError("kmeans needs K and FILE.csv");
  const auto k = static_cast<std::size_t>(ParseCount(operands[0], 1, 1000000000, "K"));
  const auto maxIterations = static_cast<std::size_t>(
      hasIterations ? ParseCount(iterationsText, 0, kMaxIterations, "--iterations") : kDefaultIterations);

  const CsvTable table = ReadCsvTable(operands[1]);
  if (table.NumRows() == 0)
    throw InputError(table.fileName + " holds no values");
  const std::size_t column = table.FindColumn(columnName);
  std::vector<double> values(table.NumRows());
  for (std::size_t r = 0; r < values.size(); ++r)
    values[r] = table.At(r, column);

  KMeansPlusPlus1D kmeans(values);
  kmeans.SeedCentersAdvanced(k);
  std::vector<double> centers;
  std::vector<std::size_t> assignment;
  KMeansPlusPlus1D::CLUSTERING_INFO info;
  kmeans.CreateClusters(maxIterations, centers, assignment, info);

  std::printf("values: %llu (%llu distinct)\n", static_cast<unsigned long long>(info.numPoints),
              static_cast<unsigned long long>(info.numDistinctValues));
  std::printf("clusters: %zu\n", centers.size());
  std::printf("iterations: %llu of at most %llu\n", static_cast<unsigned long long>(info.numIterations),
              static_cast<unsigned long long>(info.maxIterations));
  std::printf("spread: %s\n", NumberText(info.spread).c_str());
  std::printf("quality: %s\n", NumberText(KMeansPlusPlus1D::CalculateQualityFactor(info)).c_str());

  // Size and range of every cluster, from the assignment.
  std::vector<std::size_t> sizes(centers.size(), 0);
  std::vector<double> low(centers.size()), high(centers.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::size_t c = assignment[i];
    low[c] = sizes[c] == 0 ? values[i] : std::min(low[c], values[i]);
    high[c] = sizes[c] == 0 ? values[i] : std::max(high[c], values[i]);
    ++sizes[c];
  }
  std::printf("cluster, center, size, min, max\n");
  for (std::size_t c = 0; c < centers.size(); ++c)
    std::printf("%zu, %s, %zu, %s, %s\n", c + 1, NumberText(centers[c]).c_str(), sizes[c],
                NumberText(low[c]).c_str(), NumberText(high[c]).c_str());
  if (printAssignment) {
    std::printf("line, value, cluster\n");
    for (std::size_t i = 0; i < values.size(); ++i)
      std::printf("%llu, %s, %zu\n", static_cast<unsigned long long>(table.lineNumbers[i]),
                  NumberText(values[i]).c_str(), assignment[i] + 1);
  }
  return kExitOk;
}

} // namespace

const Command kKMeansCommand = {"kmeans", "cluster a column of values (1-D k-means)", kHelp, Run};

} // namespace tarnutil
