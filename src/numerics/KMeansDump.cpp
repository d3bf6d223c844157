//===- KMeansDump.cpp - A clustering as CSV files ---------------------------===//
//
// DumpClustering writes two plain CSV files through TarnCsvFileWriter (", "
// between tokens, doubles as their shortest round-trip text): the points
// with their clusters, and a summary of the statistics. Both have a header
// line, so a spreadsheet or a CSV reader takes them as they are.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/numerics/KMeansPlusPlus1D.h"
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Message.h"
#include "TarnUtilities/system/TarnFileNameUtil.h"
#include "TarnUtilities/text/TarnCsvFileWriter.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <charconv>
#include <cinttypes>
#include <cmath>
#include <string>

namespace {

/// Appends an unsigned integer token (AppendInt stops at INT_MAX).
void AppendCount(TarnCsvFileWriter& csv, std::uint64_t value) {
  char text[24];
  *std::to_chars(text, text + sizeof text - 1, value).ptr = '\0';
  csv.AppendStr(text);
}

/// Logs why the dump failed and returns false.
bool Refuse(const std::string& message) {
  ZEL_LOG_ERROR(KMeansPlusPlus1D::kHeader, message.c_str());
  return false;
}

/// Appends a double as its shortest round-trip text; NaN and infinities as
/// "NaN", "Inf" and "-Inf" (the line writer would refuse them or drop the
/// sign).
void AppendFigure(TarnCsvFileWriter& csv, double value) {
  if (std::isfinite(value))
    csv.AppendReal(value);
  else
    csv.AppendStr(std::isnan(value) ? "NaN" : value > 0 ? "Inf" : "-Inf");
}

/// Opens `name` for writing.
bool Open(TarnCsvFileWriter& csv, const std::string& name) {
  std::string error;
  if (!csv.OpenFile(TarnStringUtil::utf8_to_wide(name).c_str(), error,
                    TarnCsvFileWriter::FILE_CREATE))
    return Refuse(ZEL_MESSAGE("DumpClustering: cannot write \"%s\": %s", name.c_str(),
                              error.c_str()));
  return true;
}

/// Flushes the composed line; false (logged) when the write fails.
bool Flush(TarnCsvFileWriter& csv, const std::string& name) {
  return csv.FlushCsvLine() ||
         Refuse(ZEL_MESSAGE("DumpClustering: writing \"%s\" failed.", name.c_str()));
}

/// "dir/run.csv" => "dir/run_summary.csv", "run" => "run_summary".
std::string SummaryName(const char* fileName) {
  const char* extension = TarnFileNameUtil::path_find_ext(fileName);
  return std::string(fileName, extension) + "_summary" + extension;
}

bool WritePoints(const std::string& name, const std::vector<double>& values,
                 const std::vector<double>& centers, const std::vector<std::size_t>& assignment) {
  TarnCsvFileWriter csv;
  if (!Open(csv, name))
    return false;
  for (const char* title : {"index", "value", "cluster", "center"})
    csv.AppendStr(title);
  bool ok = Flush(csv, name);
  for (std::size_t i = 0; ok && i < values.size(); ++i) {
    AppendCount(csv, i);
    AppendFigure(csv, values[i]);
    AppendCount(csv, assignment[i]);
    AppendFigure(csv, centers[assignment[i]]);
    ok = Flush(csv, name);
  }
  return ok;
}

bool WriteSummary(const std::string& name, const KMeansPlusPlus1D::CLUSTERING_INFO& info) {
  TarnCsvFileWriter csv;
  if (!Open(csv, name))
    return false;
  const std::pair<const char*, std::uint64_t> counts[] = {
      {"points", info.numPoints},         {"clusters", info.numClusters},
      {"distinct values", info.numDistinctValues}, {"iterations", info.numIterations},
      {"iteration limit", info.maxIterations}};
  const std::pair<const char*, double> figures[] = {
      {"spread", info.spread},
      {"mean cluster size", info.meanClusterSize},
      {"smallest value", info.minValue},
      {"largest value", info.maxValue},
      {"quality factor", KMeansPlusPlus1D::CalculateQualityFactor(info)}};
  csv.AppendStr("quantity");
  csv.AppendStr("value");
  bool ok = Flush(csv, name);
  for (const auto& [title, count] : counts) {
    csv.AppendStr(title);
    AppendCount(csv, count);
    ok = ok && Flush(csv, name);
  }
  for (const auto& [title, figure] : figures) {
    csv.AppendStr(title);
    AppendFigure(csv, figure);
    ok = ok && Flush(csv, name);
  }
  return ok;
}

} // namespace

bool KMeansPlusPlus1D::DumpClustering(const char* fileName, const std::vector<double>& values,
                                      const std::vector<double>& centers,
                                      const std::vector<std::size_t>& assignment,
                                      const CLUSTERING_INFO& info) {
  if (fileName == nullptr || *fileName == '\0')
    return Refuse("DumpClustering: no file name given.");
  if (assignment.size() != values.size())
    return Refuse(ZEL_MESSAGE("DumpClustering: %zu values but %zu cluster indices.",
                              values.size(), assignment.size()));
  for (std::size_t i = 0; i < assignment.size(); ++i)
    if (assignment[i] >= centers.size())
      return Refuse(ZEL_MESSAGE("DumpClustering: value %zu is in cluster %zu, but there are "
                                "only %zu centers.",
                                i, assignment[i], centers.size()));
  return WritePoints(fileName, values, centers, assignment) &&
         WriteSummary(SummaryName(fileName), info);
}
