//===- bench_config.cpp - Loading configuration files, against libconfig++ ===//
//
// Generates one set of 100,000 definitions (integers, doubles, strings and
// nested lists; about 20 MB) and writes it in ZEL_ConfigFile syntax and in
// libconfig's syntax (lists as "( ... )", definitions closed by ";",
// identifiers quoted). Then measures, for both libraries:
//   Load       reading and parsing the file into memory;
//   LookupAll  looking up every key by name in a loaded configuration.
// libconfig checks every new name against the names already in its group
// by a linear search, so 100,000 names in one group take it minutes to load.
// Its file therefore holds the same definitions in 100 groups of 1,000
// ("g7 = { key = value; ... };"), and its look-up goes through the group.
// The flat file is measured too when TARN_BENCH_LIBCONFIG_FLAT=1 is set
// (one iteration; slow).
// Throughput is MB/s of each library's own file. The summary printed last
// gives the ratios of the medians, peer / ours (above 1 means we are faster).
//
//===----------------------------------------------------------------------===//
#include "RatioReporter.h"

#include "TarnUtilities/text/ZEL_ConfigFile.h"

#include <benchmark/benchmark.h>

#ifdef TARN_HAVE_LIBCONFIGPP
#include <libconfig.h++>
#endif

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kKeys = 100000;
constexpr int kKeysPerGroup = 1000;

/// One generated value, rendered into both syntaxes at once.
struct Rendered {
  std::string ours;
  std::string theirs;
};

class Generator {
public:
  Rendered Value(int depth) {
    switch (random_() % (depth < 1 ? 8 : 6)) {
    case 0: return Same(std::to_string(static_cast<int>(random_() % 2000001) - 1000000));
    case 1:
    case 2: return Same(Double());
    case 3: {
      const std::string text = String();
      return {"'" + text + "'", "\"" + text + "\""};
    }
    case 4: {
      const std::string name = "mode_" + std::to_string(random_() % 1000);
      return {name, "\"" + name + "\""}; // libconfig has no bare identifiers
    }
    case 5: return Same(Double());
    default: return List(depth);
    }
  }

  std::string Key(int i) { return "key_" + std::to_string(i) + "_" + Letters(); }

private:
  static Rendered Same(const std::string& text) { return {text, text}; }

  std::string Double() {
    std::uniform_real_distribution<double> mantissa(-1000.0, 1000.0);
    char text[40];
    std::snprintf(text, sizeof text, "%.9e", mantissa(random_) * (random_() % 2 ? 1e-3 : 1e3));
    return text;
  }

  std::string Letters() {
    std::string letters;
    for (int n = 3 + random_() % 10; n > 0; --n)
      letters += static_cast<char>('a' + random_() % 26);
    return letters;
  }

  std::string String() {
    std::string text = "load case " + Letters() + " / " + Letters();
    return text;
  }

  Rendered List(int depth) {
    Rendered list{"[", "("};
    const int length = 4 + random_() % 12;
    for (int i = 0; i < length; ++i) {
      const Rendered item = Value(depth + 1);
      if (i > 0) {
        list.ours += ", ";
        list.theirs += ", ";
      }
      list.ours += item.ours;
      list.theirs += item.theirs;
    }
    list.ours += "]";
    list.theirs += ")";
    return list;
  }

  std::mt19937 random_{20240501};
};

struct Files {
  std::string ours;
  std::string theirs;     // grouped
  std::string theirsFlat; // one group
  std::vector<std::string> keys;
  std::vector<std::string> groups; // the group of each key in `theirs`
  double oursBytes = 0;
  double theirsBytes = 0;
  double theirsFlatBytes = 0;
};

const Files& GetFiles() {
  static const Files files = [] {
    Files f;
    const auto dir = std::filesystem::temp_directory_path();
    f.ours = (dir / "tarn_bench_config.cfg").string();
    f.theirs = (dir / "tarn_bench_config.libconfig").string();
    f.theirsFlat = (dir / "tarn_bench_config_flat.libconfig").string();
    Generator generator;
    std::string ours = "# generated for bench_config\n";
    std::string theirs = ours;
    std::string theirsFlat = ours;
    for (int i = 0; i < kKeys; ++i) {
      const std::string key = generator.Key(i);
      // Mostly lists, so that the average definition is about 200 bytes.
      Rendered value = generator.Value(0);
      while (value.ours.size() < 75)
        value = generator.Value(0);
      const std::string group = "g" + std::to_string(i / kKeysPerGroup);
      if (i % kKeysPerGroup == 0)
        theirs += group + " = {\n";
      ours += key + " = " + value.ours + "\n";
      theirs += key + " = " + value.theirs + ";\n";
      theirsFlat += key + " = " + value.theirs + ";\n";
      if (i % kKeysPerGroup == kKeysPerGroup - 1 || i == kKeys - 1)
        theirs += "};\n";
      f.keys.push_back(key);
      f.groups.push_back(group);
    }
    std::ofstream(f.ours, std::ios::binary) << ours;
    std::ofstream(f.theirs, std::ios::binary) << theirs;
    std::ofstream(f.theirsFlat, std::ios::binary) << theirsFlat;
    f.oursBytes = static_cast<double>(ours.size());
    f.theirsBytes = static_cast<double>(theirs.size());
    f.theirsFlatBytes = static_cast<double>(theirsFlat.size());
    return f;
  }();
  return files;
}

void SetThroughput(benchmark::State& state, double bytes) {
  state.counters["MB/s"] = benchmark::Counter(bytes / 1e6, benchmark::Counter::kIsIterationInvariantRate);
}

void BM_Load_Tarn(benchmark::State& state) {
  const Files& files = GetFiles();
  for (auto _ : state) {
    ZEL_ConfigFile config;
    config.LoadFile(files.ours);
    benchmark::DoNotOptimize(config.size());
  }
  SetThroughput(state, files.oursBytes);
}

void BM_LookupAll_Tarn(benchmark::State& state) {
  const Files& files = GetFiles();
  ZEL_ConfigFile config;
  config.LoadFile(files.ours);
  for (auto _ : state) {
    std::size_t lengths = 0;
    for (const std::string& key : files.keys)
      lengths += config[key].length();
    benchmark::DoNotOptimize(lengths);
  }
}

BENCHMARK(BM_Load_Tarn)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LookupAll_Tarn)->Unit(benchmark::kMillisecond)->UseRealTime();

#ifdef TARN_HAVE_LIBCONFIGPP
void BM_Load_Libconfig(benchmark::State& state) {
  const Files& files = GetFiles();
  for (auto _ : state) {
    libconfig::Config config;
    config.readFile(files.theirs.c_str());
    benchmark::DoNotOptimize(config.getRoot().getLength());
  }
  SetThroughput(state, files.theirsBytes);
}

void BM_LookupAll_Libconfig(benchmark::State& state) {
  const Files& files = GetFiles();
  libconfig::Config config;
  config.readFile(files.theirs.c_str());
  const libconfig::Setting& root = config.getRoot();
  for (auto _ : state) {
    std::size_t lengths = 0;
    for (std::size_t i = 0; i < files.keys.size(); ++i)
      lengths += root[files.groups[i].c_str()][files.keys[i].c_str()].getLength();
    benchmark::DoNotOptimize(lengths);
  }
}

void BM_LoadFlat_Libconfig(benchmark::State& state) {
  const Files& files = GetFiles();
  for (auto _ : state) {
    libconfig::Config config;
    config.readFile(files.theirsFlat.c_str());
    benchmark::DoNotOptimize(config.getRoot().getLength());
  }
  SetThroughput(state, files.theirsFlatBytes);
}

BENCHMARK(BM_Load_Libconfig)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LookupAll_Libconfig)->Unit(benchmark::kMillisecond)->UseRealTime();
#endif

} // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  GetFiles();
#ifdef TARN_HAVE_LIBCONFIGPP
  const char* flat = std::getenv("TARN_BENCH_LIBCONFIG_FLAT");
  if (flat != nullptr && std::string(flat) == "1")
    benchmark::RegisterBenchmark("BM_LoadFlat_Libconfig", BM_LoadFlat_Libconfig)
        ->Unit(benchmark::kSecond)
        ->UseRealTime()
        ->Iterations(1);
#endif
  tarnbench::RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({{"BM_Load_Libconfig", "BM_Load_Tarn"},
                        {"BM_LookupAll_Libconfig", "BM_LookupAll_Tarn"},
                        {"BM_LoadFlat_Libconfig", "BM_Load_Tarn"}});
  benchmark::Shutdown();
  const Files& files = GetFiles();
  std::printf("files: ours %.1f MB, libconfig %.1f MB, %d keys\n", files.oursBytes / 1e6,
              files.theirsBytes / 1e6, kKeys);
  std::remove(files.ours.c_str());
  std::remove(files.theirs.c_str());
  std::remove(files.theirsFlat.c_str());
  return 0;
}
