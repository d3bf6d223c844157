//===- TarnUtilities/numerics/KMeansPlusPlus1D.h - 1-D k-means --*- C++ -*-===//
//
// Groups real values into at most k clusters on the number line. The values
// are sorted once when the object is built; the centers are seeded either at
// random (SeedCentersSimple) or deterministically (SeedCentersAdvanced);
// CreateClusters then alternates assignment and center update until the
// assignment no longer changes or an iteration limit is reached, and reports
// the spread and the statistics of the result.
//
// Every assignment gives each value its nearest center, a value exactly
// midway between two centers going to the lower one. The values must be
// finite to be clustered: NaN and infinities are refused with ZEL_Failure
// (they are still sorted and counted). docs/kmeans.md has the details.
//
// Example:
//   KMeansPlusPlus1D km({1.0, 9.0, 2.0, 8.0, 1.5});
//   km.SeedCentersAdvanced(2);                 // seeds 1.0 and 8.0
//   std::vector<double> centers;
//   std::vector<size_t> assignment;
//   KMeansPlusPlus1D::CLUSTERING_INFO info;
//   km.CreateClusters(100, centers, assignment, info);
//   // centers = (1.5, 8.5), assignment = (0, 1, 0, 1, 0), info.numIterations = 1
//   KMeansPlusPlus1D::CalculateQualityFactor(info)   // => 1 - spread / 8
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_NUMERICS_KMEANSPLUSPLUS1D_H
#define TARNUTILITIES_NUMERICS_KMEANSPLUSPLUS1D_H

#include "TarnUtilities/Export.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class TARN_API KMeansPlusPlus1D {
public:
  /// Log header of the failures and messages of this class.
  static constexpr const char* kHeader = "[%T|%n|%P|TarnUtilities|KMeansPlusPlus1D] ";

  /// The statistics of one clustering, filled by CreateClusters.
  struct CLUSTERING_INFO {
    std::uint64_t numPoints = 0;         ///< values clustered
    std::uint64_t numClusters = 0;       ///< clusters after the last center update
    std::uint64_t numDistinctValues = 0; ///< distinct values among the points
    std::uint64_t numIterations = 0;     ///< iterations performed
    std::uint64_t maxIterations = 0;     ///< the iteration limit that was given
    /// sqrt(sum of squared distances of all points to their centers
    /// / numClusters): divided by the number of clusters, not of points, so
    /// it can exceed the value range. 0 when there is no cluster.
    double spread = 0.0;
    double meanClusterSize = 0.0; ///< points per non-empty cluster
    double minValue = 0.0;        ///< smallest value (0 without values)
    double maxValue = 0.0;        ///< largest value (0 without values)
  };

  /// Stores the values with their input indices, sorts them ascending and
  /// counts the distinct values. Equal values keep their input order; NaN
  /// values sort after everything else and each one counts as a distinct
  /// value of its own.
  ///   (3, 1, 3, NaN, NaN) => 4 distinct values
  explicit KMeansPlusPlus1D(const std::vector<double>& values);
  virtual ~KMeansPlusPlus1D();
  KMeansPlusPlus1D(const KMeansPlusPlus1D&) = default;
  KMeansPlusPlus1D& operator=(const KMeansPlusPlus1D&) = default;

  /// @name Seeding
  /// Both replace the seeded centers and leave them in ascending order. Both
  /// throw ZEL_Failure, keeping the centers, when a value is not finite.
  /// @{

  /// Random seeding: min(k, distinct values) different values, each drawn
  /// from the values not yet covered with the C runtime's rand(), which the
  /// library does not seed. An index into the n remaining candidates is
  /// floor(n * (rand() % 32768) / 32768); then every candidate equal to the
  /// chosen value is removed. k = 0 seeds no center.
  void SeedCentersSimple(std::size_t k);

  /// Deterministic seeding. With k >= distinct values the centers are the
  /// distinct values. Otherwise the distinct values are split into k runs of
  /// near-equal length (TarnAlgorithmUtil::GenerateUniformIntervals) and
  /// each run contributes its medoid: the value with the smallest sum of
  /// squared distances to the other values of the run, the lower one on a
  /// tie. The sums are compared exactly, without rounding.
  ///   distinct (1, 2, 3, 4, 10, 11, 12), k = 2 => runs (1, 2, 3) and
  ///   (4, 10, 11, 12) => centers (2, 10)
  /// k = 0 seeds no center.
  void SeedCentersAdvanced(std::size_t k);
  /// @}

  /// Runs the iteration from the seeded centers: assign, then up to
  /// maxIterations times update the centers to the means of their clusters
  /// and assign again, stopping early when the assignment repeats; finally
  /// the centers are updated once more from the last assignment. On return
  /// `centers` holds the final centers in ascending order (clusters that
  /// lost all points are dropped), `assignment[i]` the index into `centers`
  /// of the cluster of input value i, and `info` the statistics.
  /// maxIterations = 0 gives the means of the clusters of the seeded
  /// centers, with 0 iterations.
  /// An iteration that only confirms the assignment counts. No values give
  /// empty outputs and a record of zeros, apart from the limit and the one
  /// iteration that finds the empty assignment repeated.
  /// Throws ZEL_Failure (outputs untouched) when a value is not finite or
  /// when there are values but no seeded center. Safe to call from several
  /// threads at once.
  void CreateClusters(std::size_t maxIterations, std::vector<double>& centers,
                      std::vector<std::size_t>& assignment, CLUSTERING_INFO& info) const;

  /// 1 - spread / (largest - smallest) when there is a cluster, a distinct
  /// value and the largest value exceeds the smallest; otherwise 1.0 for
  /// exactly one distinct value and 0.0 in every other case. The result is
  /// below 0 when the spread exceeds the value range.
  static double CalculateQualityFactor(const CLUSTERING_INFO& info);

  /// Writes a clustering to two CSV files for inspection: `fileName` gets
  /// the header "index, value, cluster, center" and one line per input
  /// value; the summary file (the same name with "_summary" before the
  /// extension: "run.csv" => "run_summary.csv") gets "quantity, value" and
  /// one line per field of `info` and the quality factor. Returns false,
  /// after logging the reason at error level, when a file cannot be written
  /// or the arguments do not fit together (assignment and values of
  /// different length, a cluster index beyond `centers`); never throws for
  /// these.
  static bool DumpClustering(const char* fileName, const std::vector<double>& values,
                             const std::vector<double>& centers,
                             const std::vector<std::size_t>& assignment,
                             const CLUSTERING_INFO& info);

  /// @name Inspection
  /// @{
  std::uint64_t GetNumPoints() const { return sortedValues_.size(); }
  std::uint64_t GetNumDistinctValues() const { return numDistinct_; }
  /// The values in ascending order (NaN last).
  const std::vector<double>& GetSortedValues() const { return sortedValues_; }
  /// The seeded centers, ascending; empty before seeding.
  const std::vector<double>& GetSeededCenters() const { return centers_; }
  /// @}

private:
  void RequireFiniteValues(const char* operation) const;

  // The sorted points, as two parallel arrays (value, input index): the
  // passes over the values then read 8 bytes per point, not 16.
  std::vector<double> sortedValues_;
  std::vector<std::size_t> inputIndex_;
  std::vector<double> centers_;
  std::uint64_t numDistinct_ = 0;
  /// Input index of the first NaN or infinity, or SIZE_MAX if there is none.
  std::size_t firstNonFinite_;
};

#endif // TARNUTILITIES_NUMERICS_KMEANSPLUSPLUS1D_H
