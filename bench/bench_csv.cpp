//===- bench_csv.cpp - Writing a table of doubles as CSV --------------------===//
//
// Writes a table of 1,000,000 rows of 10 random doubles to a file in three
// ways, side by side:
//   * TarnCsvFileWriter: AppendReal per value (shortest round-trip text),
//     FlushCsvLine per row;
//   * fprintf(f, "%.17g, ", x) per value and "\n" per row;
//   * std::to_chars (shortest round-trip text) into a row buffer and one
//     fwrite per row.
// Every stream gets the same 64 KiB buffer. Throughput is in bytes of CSV
// written per second; the file lives in the temporary directory and is
// removed after each pass.
//
//===----------------------------------------------------------------------===//
#include "RatioReporter.h"

#include "TarnUtilities/text/TarnCsvFileWriter.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kRows = 1000000;
constexpr std::size_t kColumns = 10;
constexpr std::size_t kStreamBuffer = 1 << 16;

const std::vector<double>& Table() {
  static const std::vector<double> values = [] {
    std::mt19937_64 rng(42);
    // Magnitudes over many decades, as in results of a structural analysis.
    std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
    std::uniform_int_distribution<int> decade(-6, 6);
    std::vector<double> v(kRows * kColumns);
    for (double& x : v)
      x = mantissa(rng) * std::pow(10.0, decade(rng));
    return v;
  }();
  return values;
}

std::string ScratchFile() {
  return (std::filesystem::temp_directory_path() / "tarn_bench_csv.csv").string();
}

std::uintmax_t FinishFile(const std::string& path) {
  const std::uintmax_t bytes = std::filesystem::file_size(path);
  std::filesystem::remove(path);
  return bytes;
}

void BM_TarnCsvFileWriter(benchmark::State& state) {
  const std::vector<double>& table = Table();
  const std::string path = ScratchFile();
  const std::u16string wide(path.begin(), path.end());
  std::uintmax_t bytes = 0;
  for (auto _ : state) {
    TarnCsvFileWriter csv;
    if (!csv.OpenFile(wide.c_str(), TarnCsvFileWriter::FILE_CREATE)) {
      state.SkipWithError("cannot open the scratch file");
      return;
    }
    const double* x = table.data();
    for (std::size_t r = 0; r < kRows; ++r) {
      for (std::size_t c = 0; c < kColumns; ++c)
        csv.AppendReal(*x++);
      csv.FlushCsvLine();
    }
    csv.CloseFile();
    bytes += FinishFile(path);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}

// Opens the peers' output file with the same stream buffer size; null (and
// the benchmark marked as failed) when it cannot be opened.
std::FILE* OpenPeerFile(benchmark::State& state, const std::string& path) {
  std::FILE* f = std::fopen(path.c_str(), "w");
  if (!f) {
    state.SkipWithError("cannot open the scratch file");
    return nullptr;
  }
  std::setvbuf(f, nullptr, _IOFBF, kStreamBuffer);
  return f;
}

void BM_Fprintf17g(benchmark::State& state) {
  const std::vector<double>& table = Table();
  const std::string path = ScratchFile();
  std::uintmax_t bytes = 0;
  for (auto _ : state) {
    std::FILE* f = OpenPeerFile(state, path);
    if (!f)
      return;
    const double* x = table.data();
    for (std::size_t r = 0; r < kRows; ++r) {
      for (std::size_t c = 0; c < kColumns; ++c)
        std::fprintf(f, "%.17g, ", *x++);
      std::fputc('\n', f);
    }
    std::fclose(f);
    bytes += FinishFile(path);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}

void BM_ToCharsFwrite(benchmark::State& state) {
  const std::vector<double>& table = Table();
  const std::string path = ScratchFile();
  std::uintmax_t bytes = 0;
  for (auto _ : state) {
    std::FILE* f = OpenPeerFile(state, path);
    if (!f)
      return;
    char row[kColumns * 32];
    const double* x = table.data();
    for (std::size_t r = 0; r < kRows; ++r) {
      char* out = row;
      for (std::size_t c = 0; c < kColumns; ++c) {
        if (c) {
          *out++ = ',';
          *out++ = ' ';
        }
        out = std::to_chars(out, row + sizeof row, *x++).ptr;
      }
      *out++ = '\n';
      std::fwrite(row, 1, static_cast<std::size_t>(out - row), f);
    }
    std::fclose(f);
    bytes += FinishFile(path);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}

} // namespace

BENCHMARK(BM_TarnCsvFileWriter)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_Fprintf17g)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_ToCharsFwrite)->Unit(benchmark::kMillisecond)->Iterations(1);

int main(int argc, char** argv) {
  Table(); // generate the data before any timing
  return tarnbench::RunWithRatios(
      argc, argv,
      {{"BM_TarnCsvFileWriter", "BM_Fprintf17g"}, {"BM_TarnCsvFileWriter", "BM_ToCharsFwrite"}});
}
