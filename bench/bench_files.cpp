//===- bench_files.cpp - Whole-file loading and file copying ----------------===//
//
// TextLinesParser::LoadTextFromFile on a 200 MB text file against
//   - std::getline over an std::ifstream into a std::vector<std::string>, and
//   - the floor: one read() of the whole file and a memchr pass counting the
//     line ends (what any loader must at least do);
// and TarnFileUtil::FileCopy of a 200 MB file against
// std::filesystem::copy_file.
//
// The files are generated in /tmp at start-up and removed at the end; they
// stay in the page cache, so the figures measure the code, not the disk.
// Every contender allocates its buffers afresh in each iteration. The run
// ends with the ratios of the medians (or of the single runs without
// repetitions).
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/system/TarnFileUtil.h"
#include "TarnUtilities/system/TextLinesParser.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

// 200 MB of text: lines of 0 to 120 printable characters ending in LF.
constexpr std::size_t kFileBytes = 200u * 1000u * 1000u;

std::string g_dir;
std::string g_textFile;
std::string g_copyTarget;

void GenerateTextFile(const std::string& name) {
  std::mt19937 rng(1);
  std::uniform_int_distribution<int> length(0, 120), letter(' ', '~');
  std::string text;
  text.reserve(kFileBytes + 128);
  while (text.size() < kFileBytes) {
    for (int n = length(rng); n > 0; --n)
      text.push_back(static_cast<char>(letter(rng)));
    text.push_back('\n');
  }
  std::ofstream(name, std::ios::binary).write(text.data(), static_cast<std::streamsize>(text.size()));
}

void BM_LoadTextFromFile(benchmark::State& state) {
  for (auto _ : state) {
    TextLinesParser parser;
    if (!parser.LoadTextFromFile(g_textFile.c_str()))
      state.SkipWithError("load failed");
    benchmark::DoNotOptimize(parser.GetNumLines());
  }
}

void BM_LoadTextFromFile_Reload(benchmark::State& state) {
  TextLinesParser parser;
  for (auto _ : state) {
    if (!parser.LoadTextFromFile(g_textFile.c_str()))
      state.SkipWithError("load failed");
    benchmark::DoNotOptimize(parser.GetNumLines());
  }
}

void BM_GetlineIntoVector(benchmark::State& state) {
  for (auto _ : state) {
    std::ifstream in(g_textFile, std::ios::binary);
    std::vector<std::string> lines;
    std::string line;
    while (std::getline(in, line))
      lines.push_back(line);
    benchmark::DoNotOptimize(lines.size());
  }
}

void BM_FloorReadAndMemchr(benchmark::State& state) {
  for (auto _ : state) {
    const int fd = ::open(g_textFile.c_str(), O_RDONLY);
    struct stat info {};
    ::fstat(fd, &info);
    const std::size_t size = static_cast<std::size_t>(info.st_size);
    std::unique_ptr<char[]> buffer(new char[size + 1]);
    if (::read(fd, buffer.get(), size) != static_cast<ssize_t>(size))
      state.SkipWithError("read failed");
    ::close(fd);
    std::size_t ends = 0;
    const char* p = buffer.get();
    const char* const end = p + size;
    while (const void* found = std::memchr(p, '\n', static_cast<std::size_t>(end - p))) {
      ++ends;
      p = static_cast<const char*>(found) + 1;
    }
    benchmark::DoNotOptimize(ends);
  }
}

// The floor again, with the buffer mapped on transparent huge pages as
// TextLinesParser maps its own: the cost of reading alone, without the page
// faults of a buffer of small pages.
void BM_FloorHugePages(benchmark::State& state) {
  constexpr std::size_t kHuge = std::size_t(2) << 20;
  for (auto _ : state) {
    const int fd = ::open(g_textFile.c_str(), O_RDONLY);
    struct stat info {};
    ::fstat(fd, &info);
    const std::size_t size = static_cast<std::size_t>(info.st_size);
    void* map = ::mmap(nullptr, size + 1 + kHuge, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    char* buffer = reinterpret_cast<char*>(
        (reinterpret_cast<std::uintptr_t>(map) + kHuge - 1) & ~std::uintptr_t(kHuge - 1));
    ::madvise(buffer, size + 1, MADV_HUGEPAGE);
    if (::read(fd, buffer, size) != static_cast<ssize_t>(size))
      state.SkipWithError("read failed");
    ::close(fd);
    std::size_t ends = 0;
    const char* p = buffer;
    const char* const end = p + size;
    while (const void* found = std::memchr(p, '\n', static_cast<std::size_t>(end - p))) {
      ++ends;
      p = static_cast<const char*>(found) + 1;
    }
    benchmark::DoNotOptimize(ends);
    ::munmap(map, size + 1 + kHuge);
  }
}

void BM_FileCopy(benchmark::State& state) {
  const std::u16string source = TarnStringUtil::utf8_to_wide(g_textFile);
  const std::u16string target = TarnStringUtil::utf8_to_wide(g_copyTarget);
  for (auto _ : state) {
    if (!TarnFileUtil::FileCopy(source, target))
      state.SkipWithError("copy failed");
  }
}

void BM_StdFilesystemCopyFile(benchmark::State& state) {
  for (auto _ : state)
    std::filesystem::copy_file(g_textFile, g_copyTarget,
                               std::filesystem::copy_options::overwrite_existing);
}

BENCHMARK(BM_LoadTextFromFile)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LoadTextFromFile_Reload)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_GetlineIntoVector)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_FloorReadAndMemchr)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_FloorHugePages)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_FileCopy)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_StdFilesystemCopyFile)->Unit(benchmark::kMillisecond)->UseRealTime();

// Console output plus the time of each benchmark (the median when there are
// repetitions), for the ratios printed at the end.
class RatioReporter : public benchmark::ConsoleReporter {
public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
      const bool single = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
      if (median || single)
        times_[run.run_name.function_name] = run.GetAdjustedRealTime();
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void PrintRatio(const char* what, const char* ours, const char* peer) const {
    const auto a = times_.find(ours);
    const auto b = times_.find(peer);
    if (a != times_.end() && b != times_.end() && b->second > 0)
      std::printf("%-46s %6.2fx\n", what, a->second / b->second);
  }

private:
  std::map<std::string, double> times_;
};

} // namespace

int main(int argc, char** argv) {
  char pattern[] = "/tmp/tarn_bench_files_XXXXXX";
  if (::mkdtemp(pattern) == nullptr)
    return 1;
  g_dir = pattern;
  g_textFile = g_dir + "/text.txt";
  g_copyTarget = g_dir + "/copy.txt";
  GenerateTextFile(g_textFile);

  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\nRatios of times (below 1 = ours faster):\n");
  reporter.PrintRatio("LoadTextFromFile / floor (target <= 1.5)", "BM_LoadTextFromFile",
                      "BM_FloorReadAndMemchr");
  reporter.PrintRatio("LoadTextFromFile / getline (target <= 0.33)", "BM_LoadTextFromFile",
                      "BM_GetlineIntoVector");
  reporter.PrintRatio("Reload / floor", "BM_LoadTextFromFile_Reload", "BM_FloorReadAndMemchr");
  reporter.PrintRatio("LoadTextFromFile / floor on huge pages", "BM_LoadTextFromFile",
                      "BM_FloorHugePages");
  reporter.PrintRatio("FileCopy / copy_file (target <= 1.3)", "BM_FileCopy",
                      "BM_StdFilesystemCopyFile");

  std::error_code ignored;
  std::filesystem::remove_all(g_dir, ignored);
  benchmark::Shutdown();
  return 0;
}
