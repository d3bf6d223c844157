//===- bench_parfile.cpp - Parameter-file readers against the line loader ---===//
//
// A generated parameter file of about 50 MB with 100,000 command blocks is
// read three ways: by the whole-file line loader alone (the floor every
// reader pays), by the command model (TarnParFile::Parse) and by the word
// reader for one command (TarnParFileParser::ParseParameterFile). Speeds are
// in bytes per second of file; the summary prints each reader's speed as a
// share of the loader's. Logging is set to INFO, as a production run would
// have it, so trace and debug lines cost nothing.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/system/TextLinesParser.h"
#include "TarnUtilities/text/TarnParFile.h"
#include "TarnUtilities/text/TarnParFileParser.h"

#include <ace/Log_Msg.h>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <unistd.h>

namespace {

constexpr int kBlocks = 100000;
constexpr std::size_t kBlockBytes = 524; // 100,000 blocks of this make 50 MiB
constexpr int kCommandKinds = 10;        // the requested command is every tenth block

// One block of the file; kind 0 is the requested command (keys and values
// only), the others carry lists, values lines and old-style lines as well.
std::string Block(int index) {
  const int kind = index % kCommandKinds;
  std::string block;
  block += "! block " + std::to_string(index) + "\n";
  block += kind == 0 ? "MATERIAL\n" : "COMMAND_" + std::to_string(kind) + "\n";
  block += "ID_NAME = item_" + std::to_string(index) + "\n";
  block += "thickness = 1.2500, 2.5000, 3.7500\n";
  block += "name = \"S355 structural steel\"\n";
  block += "max_iterations = 80          ! iteration bound\n";
  block += "tolerance = 1.0e-6\n";
  block += "elements = 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008\n";
  if (kind != 0) {
    block += "1.0 0.0 0.0\n";
    block += "symmetry(x)\n";
    block += "LIST_BEGIN\ndensity\ndisplacement\nvon_mises\n";
  }
  // Pad with a comment line to the block size.
  const std::size_t tail = std::string("END_\n\n").size();
  if (block.size() + tail + 3 < kBlockBytes)
    block += "$ " + std::string(kBlockBytes - block.size() - tail - 3, '-') + "\n";
  block += "END_\n\n";
  return block;
}

struct BenchFile {
  std::filesystem::path path;
  std::u16string wide;
  std::size_t bytes = 0;

  BenchFile() {
    path = std::filesystem::temp_directory_path() /
           ("tarn_bench_parfile_" + std::to_string(::getpid()) + ".par");
    std::ofstream out(path, std::ios::binary);
    for (int i = 0; i < kBlocks; ++i) {
      const std::string block = Block(i);
      out << block;
      bytes += block.size();
    }
    const std::string name = path.string();
    wide.assign(name.begin(), name.end());
  }
  ~BenchFile() {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
  }
};

const BenchFile& File() {
  static const BenchFile file;
  return file;
}

void BM_TextLinesParser(benchmark::State& state) {
  const BenchFile& file = File();
  for (auto _ : state) {
    TextLinesParser text;
    std::string error;
    if (!text.LoadTextFromFile(file.wide.c_str(), error))
      state.SkipWithError(error.c_str());
    benchmark::DoNotOptimize(text.GetLine(0));
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * file.bytes));
}

void BM_TarnParFile_Parse(benchmark::State& state) {
  const BenchFile& file = File();
  std::size_t commands = 0;
  for (auto _ : state) {
    TarnParFile model(file.wide);
    model.Parse();
    commands = model.size();
    benchmark::DoNotOptimize(commands);
  }
  if (commands != static_cast<std::size_t>(kBlocks))
    state.SkipWithError("wrong number of commands");
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * file.bytes));
}

void BM_ParseParameterFile_OneCommand(benchmark::State& state) {
  const BenchFile& file = File();
  std::size_t blocks = 0;
  for (auto _ : state) {
    const TarnParFileParser::BlockList found =
        TarnParFileParser::ParseParameterFile(file.wide, "material", {});
    blocks = found.size();
    benchmark::DoNotOptimize(blocks);
  }
  if (blocks != static_cast<std::size_t>(kBlocks / kCommandKinds))
    state.SkipWithError("wrong number of blocks");
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * file.bytes));
}

BENCHMARK(BM_TextLinesParser)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TarnParFile_Parse)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParseParameterFile_OneCommand)->Unit(benchmark::kMillisecond);

// Keeps the speed of every run (the median when aggregates are reported)
// and prints the readers' speeds against the loader's at the end.
class RatioReporter : public benchmark::ConsoleReporter {
public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      const bool wanted = run.run_type == Run::RT_Iteration || run.aggregate_name == "median";
      const auto speed = run.counters.find("bytes_per_second");
      if (wanted && speed != run.counters.end())
        speeds_[run.run_name.function_name] = speed->second.value;
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void PrintSummary() const {
    const auto floor = speeds_.find("BM_TextLinesParser");
    if (floor == speeds_.end() || floor->second <= 0)
      return;
    std::printf("\nFile: %.1f MB, %d command blocks\n", File().bytes / 1e6, kBlocks);
    for (const auto& [name, speed] : speeds_)
      std::printf("%-36s %8.1f MB/s   loader/this = %.2f\n", name.c_str(), speed / 1e6,
                  floor->second / speed);
  }

private:
  std::map<std::string, double> speeds_;
};

} // namespace

int main(int argc, char** argv) {
  // Production log level: INFO and above.
  ACE_Log_Msg::instance()->priority_mask(LM_INFO | LM_NOTICE | LM_WARNING | LM_ERROR | LM_CRITICAL |
                                             LM_ALERT | LM_EMERGENCY,
                                         ACE_Log_Msg::PROCESS);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  File(); // generated once, outside the timings
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintSummary();
  benchmark::Shutdown();
  return 0;
}
