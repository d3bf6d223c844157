//===- tool/NearestCommand.cpp - tarnutil nearest ------------------------===//
//
// Builds the library's 3-D search tree over the points of one CSV file and
// answers, for every position of a second one, which point is nearest.
//
//===----------------------------------------------------------------------===//
#include "Commands.h"
#include "CsvTable.h"
#include "NumberText.h"
#include "Progress.h"

#include <TarnUtilities/geometry/ZEL_SearchTree3D.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace tarnutil {
namespace {

const char kHelp[] =
    "usage: tarnutil nearest POINTS.csv QUERIES.csv [--bucket N]\n"
    "\n"
    "Finds for every position of QUERIES.csv the nearest point of POINTS.csv\n"
    "(Euclidean distance; of points at the same distance, the library's fixed\n"
    "choice) and prints \"query, point, id, x, y, z, distance\": the query's and\n"
    "the point's row numbers (from 1), the point's id and coordinates.\n"
    "\n"
    "  --bucket N   at most N points in a leaf of the search tree (default 12)\n"
    "\n"
    "POINTS.csv: 3 columns x, y, z, or 4 columns id, x, y, z (whole-number ids;\n"
    "without them the id is 0). QUERIES.csv: 3 columns x, y, z. Both may start\n"
    "with a line of titles (see docs/file-formats.md).\n";

// Twelve points per leaf is the tree's customary bucket: a leaf is then
// scanned in about the time one more level of the tree would cost.
constexpr long long kDefaultBucket = 12;
constexpr long long kMaxBucket = 1000000;

void RequireColumns(const CsvTable& table, std::size_t low, std::size_t high, const char* what) {
  if (table.NumRows() == 0)
    throw InputError(table.fileName + " holds no " + what);
  if (table.numColumns < low || table.numColumns > high)
    throw InputError(table.fileName + ": " + what + " need " +
                     (low == high ? std::to_string(low) : std::to_string(low) + " or " + std::to_string(high)) +
                     " columns, not " + std::to_string(table.numColumns));
}

int Run(Arguments& args) {
  std::string bucketText;
  const bool hasBucket = args.TakeOption("--bucket", bucketText);
  const std::vector<std::string> operands = args.Rest();
  if (operands.size() != 2)
    throw UsageError("nearest needs POINTS.csv and QUERIES.csv");
  const auto bucket =
      static_cast<std::size_t>(hasBucket ? ParseCount(bucketText, 1, kMaxBucket, "--bucket") : kDefaultBucket);

  const CsvTable points = ReadCsvTable(operands[0]);
  RequireColumns(points, 3, 4, "points");
  const CsvTable queries = ReadCsvTable(operands[1]);
  RequireColumns(queries, 3, 3, "queries");

  ZEL_SearchTree3D tree;
  const std::size_t first = points.numColumns - 3; // the x column
  for (std::size_t r = 0; r < points.NumRows(); ++r) {
    int id = 0;
    if (first == 1) {
      const double value = points.At(r, 0);
      if (value != std::trunc(value) || value < INT_MIN || value > INT_MAX)
        throw InputError(points.fileName + ", line " + std::to_string(points.lineNumbers[r]) +
                         ", column 1: the id " + NumberText(value) + " is not a 32-bit whole number");
      id = static_cast<int>(value);
    }
    tree.AddPoint(id, points.At(r, first), points.At(r, first + 1), points.At(r, first + 2));
  }
  tree.CreateTree(bucket);

  std::error_code error;
  const std::uintmax_t queryBytes = std::filesystem::file_size(operands[1], error);
  Progress progress("searching", queries.NumRows(), error ? 0 : queryBytes);
  std::printf("query, point, id, x, y, z, distance\n");
  for (std::size_t q = 0; q < queries.NumRows(); ++q) {
    progress.Update(q);
    const double x = queries.At(q, 0), y = queries.At(q, 1), z = queries.At(q, 2);
    ZEL_SearchTree3D::ResultPointData nearest;
    tree.FindNearestPoint(x, y, z, nearest);
    const double distance = std::sqrt((nearest.x - x) * (nearest.x - x) + (nearest.y - y) * (nearest.y - y) +
                                      (nearest.z - z) * (nearest.z - z));
    std::printf("%zu, %zu, %d, %s, %s, %s, %s\n", q + 1, nearest.index + 1, nearest.id,
                NumberText(nearest.x).c_str(), NumberText(nearest.y).c_str(), NumberText(nearest.z).c_str(),
                NumberText(distance).c_str());
  }
  return kExitOk;
}

} // namespace

const Command kNearestCommand = {"nearest", "find the nearest point of a point cloud for each query", kHelp,
                                 Run};

} // namespace tarnutil
