//===- bench_logging.cpp - Cost of a suppressed and of a written log line ---===//
//
// A line below the configured level must cost next to nothing: it is compared
// with an empty call through a function pointer. A written line goes to a log
// file through ACE; it is compared with fprintf of the same text to a FILE.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/logging/ZEL_LogMacros.h"
#include "TarnUtilities/logging/ZEL_Logging.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

const char* const kHeader = "[%T|%n|%P|TarnUtilities|Bench] ";

std::string ScratchDir() {
  static std::string dir = [] {
    char pattern[] = "/tmp/tarn_bench_log_XXXXXX";
    return std::string(mkdtemp(pattern));
  }();
  return dir;
}

void StartLogger(ZEL_Loglevels::Level level) {
  ZEL_Logging::Release();
  ZEL_LogConfig config;
  config.level = level;
  config.logFile = u"bench.log";
  config.removeExistingLogFile = true;
  const std::string dir = ScratchDir();
  ZEL_Logging::Init("bench", config, std::u16string(dir.begin(), dir.end()));
}

void BM_SuppressedLine(benchmark::State& state) {
  StartLogger(ZEL_Loglevels::NOTICE);
  for (auto _ : state)
    ZEL_LogMacros::debug(__FILE__, __LINE__, kHeader, "not shown at NOTICE");
  ZEL_Logging::Release();
}
BENCHMARK(BM_SuppressedLine);

void EmptyCall(const char*, int, const char*, const char* message) {
  benchmark::DoNotOptimize(message);
}
void BM_PeerEmptyCall(benchmark::State& state) {
  void (*volatile call)(const char*, int, const char*, const char*) = &EmptyCall;
  for (auto _ : state)
    call(__FILE__, __LINE__, kHeader, "not shown at NOTICE");
}
BENCHMARK(BM_PeerEmptyCall);

void BM_WrittenLineToFile(benchmark::State& state) {
  StartLogger(ZEL_Loglevels::NOTICE);
  for (auto _ : state)
    ZEL_LogMacros::notice(__FILE__, __LINE__, kHeader, "one line of an ordinary length, 42");
  ZEL_Logging::Release();
}
BENCHMARK(BM_WrittenLineToFile);

void BM_PeerFprintfLine(benchmark::State& state) {
  const std::string path = ScratchDir() + "/peer.log";
  FILE* f = std::fopen(path.c_str(), "w");
  for (auto _ : state) {
    std::fprintf(f, "(NOTICE  ) [%s|%s|%d|TarnUtilities|Bench] %s\n", "12:00:00.000000", "bench",
                 1234, "one line of an ordinary length, 42");
    std::fflush(f); // ACE flushes the stream after every line as well
  }
  std::fclose(f);
}
BENCHMARK(BM_PeerFprintfLine);

} // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  const std::string dir = ScratchDir();
  std::remove((dir + "/bench.log").c_str());
  std::remove((dir + "/peer.log").c_str());
  rmdir(dir.c_str());
  return 0;
}
