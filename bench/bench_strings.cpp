//===- bench_strings.cpp - Splitting and integer reading ---------------------===//
//
// TarnStringTokenizer::SplitLine and TarnStringUtil::Split against a plain
// std::string::find split and std::istringstream splitting (and, for a set
// of several separators, SplitLine against find_first_of), and
// TarnStringUtil::ToInt against std::from_chars and strtol, and
// TarnStringUtil::String(double) against std::to_chars into a std::string
// on the value sets of bench/NumberSets.h. Every program
// prints, after the usual table, the ratio of each peer's median time to
// ours (above 1 means we are faster), in real and in CPU time. Read the CPU
// time: on a shared machine the wall-clock time also counts the waits for a
// core.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnStringTokenizer.h"
#include "TarnUtilities/text/TarnStringUtil.h"

#include "NumberSets.h"
#include "RatioReporter.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

// 64 lines of 24 comma-separated fields of typical numeric-table width.
const std::vector<std::string>& Lines() {
  static const std::vector<std::string> lines = [] {
    std::mt19937 rng(1);
    std::uniform_int_distribution<int> value(-99999, 999999);
    std::vector<std::string> out;
    for (int l = 0; l < 64; ++l) {
      std::string line;
      for (int f = 0; f < 24; ++f) {
        if (f)
          line += ',';
        line += (f % 4 == 0) ? "NODE_" + std::to_string(l * 24 + f)
                             : std::to_string(value(rng)) + "." + std::to_string(f);
      }
      out.push_back(line);
    }
    return out;
  }();
  return lines;
}

std::size_t TotalFields() { return Lines().size() * 24; }

// ---------------------------------------------------------------- splitting

// The tokenizer over every line, reading every token.
void SplitWithTokenizer(benchmark::State& state, const char* separators) {
  TarnStringTokenizer tok(1024, separators);
  for (auto _ : state) {
    for (const std::string& line : Lines()) {
      const std::size_t n = tok.SplitLine(line.c_str());
      for (std::size_t i = 0; i < n; ++i)
        benchmark::DoNotOptimize(tok.GetToken(i));
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * TotalFields()));
}

// The plain split: `find(line, start)` gives the next separator, tokens are
// copied into a reused vector of strings.
template <typename Find>
void SplitWithStdFind(benchmark::State& state, Find find) {
  std::vector<std::string> tokens;
  for (auto _ : state) {
    for (const std::string& line : Lines()) {
      tokens.clear();
      std::size_t start = 0;
      for (;;) {
        const std::size_t end = find(line, start);
        if (end == std::string::npos) {
          tokens.emplace_back(line, start);
          break;
        }
        tokens.emplace_back(line, start, end - start);
        start = end + 1;
      }
      benchmark::DoNotOptimize(tokens.data());
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * TotalFields()));
}

void BM_SplitLine(benchmark::State& state) { SplitWithTokenizer(state, ","); }
BENCHMARK(BM_SplitLine);

void BM_FindSplit(benchmark::State& state) {
  SplitWithStdFind(state, [](const std::string& s, std::size_t at) { return s.find(',', at); });
}
BENCHMARK(BM_FindSplit);

// Several separators: the tokenizer's table walk against find_first_of.
void BM_SplitLineMultiSep(benchmark::State& state) { SplitWithTokenizer(state, ",; "); }
BENCHMARK(BM_SplitLineMultiSep);

void BM_FindFirstOfSplit(benchmark::State& state) {
  SplitWithStdFind(state,
                   [](const std::string& s, std::size_t at) { return s.find_first_of(",; ", at); });
}
BENCHMARK(BM_FindFirstOfSplit);

void BM_TarnSplit(benchmark::State& state) {
  std::vector<std::string> tokens;
  for (auto _ : state) {
    for (const std::string& line : Lines()) {
      TarnStringUtil::Split(line, ",", tokens);
      benchmark::DoNotOptimize(tokens.data());
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * TotalFields()));
}
BENCHMARK(BM_TarnSplit);

void BM_IstringstreamSplit(benchmark::State& state) {
  std::vector<std::string> tokens;
  std::string token;
  for (auto _ : state) {
    for (const std::string& line : Lines()) {
      tokens.clear();
      std::istringstream in(line);
      while (std::getline(in, token, ','))
        tokens.push_back(token);
      benchmark::DoNotOptimize(tokens.data());
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * TotalFields()));
}
BENCHMARK(BM_IstringstreamSplit);

// ---------------------------------------------------------------- integers

const std::vector<std::string>& Numbers() {
  static const std::vector<std::string> numbers = [] {
    std::mt19937 rng(2);
    std::uniform_int_distribution<int> value(-2000000000, 2000000000);
    std::uniform_int_distribution<int> shift(0, 30);
    std::vector<std::string> out;
    for (int i = 0; i < 1024; ++i)
      out.push_back(std::to_string(value(rng) >> shift(rng)));
    return out;
  }();
  return numbers;
}

void BM_ToInt(benchmark::State& state) {
  for (auto _ : state) {
    for (const std::string& s : Numbers()) {
      int v;
      benchmark::DoNotOptimize(TarnStringUtil::ToInt(s, v));
      benchmark::DoNotOptimize(v);
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * Numbers().size()));
}
BENCHMARK(BM_ToInt);

void BM_FromChars(benchmark::State& state) {
  for (auto _ : state) {
    for (const std::string& s : Numbers()) {
      int v;
      benchmark::DoNotOptimize(std::from_chars(s.data(), s.data() + s.size(), v));
      benchmark::DoNotOptimize(v);
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * Numbers().size()));
}
BENCHMARK(BM_FromChars);

void BM_Strtol(benchmark::State& state) {
  for (auto _ : state) {
    for (const std::string& s : Numbers()) {
      long v = std::strtol(s.c_str(), nullptr, 10);
      benchmark::DoNotOptimize(v);
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * Numbers().size()));
}
BENCHMARK(BM_Strtol);

// ------------------------------------------------------- doubles to strings

// String(double) on every value of a set; the peer builds the same kind of
// std::string from std::to_chars's shortest text.
template <class ToString> void DoublesToStrings(benchmark::State& state, ToString toString) {
  const std::vector<double>& values = tarnbench::NumberSet(static_cast<int>(state.range(0)));
  for (auto _ : state)
    for (double x : values)
      benchmark::DoNotOptimize(toString(x));
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * values.size()));
  state.SetLabel(tarnbench::NumberSetName(static_cast<int>(state.range(0))));
}

void BM_StringDouble(benchmark::State& state) {
  DoublesToStrings(state, [](double x) { return TarnStringUtil::String(x); });
}
BENCHMARK(BM_StringDouble)->ArgName("set")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void BM_ToCharsString(benchmark::State& state) {
  DoublesToStrings(state, [](double x) {
    char buf[32];
    return std::string(buf, std::to_chars(buf, buf + sizeof buf, x).ptr);
  });
}
BENCHMARK(BM_ToCharsString)->ArgName("set")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
  // Each ratio is the peer's median time divided by ours.
  return tarnbench::RunWithRatios(argc, argv,
                                  {{"BM_FindSplit", "BM_SplitLine"},
                                   {"BM_IstringstreamSplit", "BM_SplitLine"},
                                   {"BM_FindFirstOfSplit", "BM_SplitLineMultiSep"},
                                   {"BM_FindSplit", "BM_TarnSplit"},
                                   {"BM_IstringstreamSplit", "BM_TarnSplit"},
                                   {"BM_FromChars", "BM_ToInt"},
                                   {"BM_Strtol", "BM_ToInt"},
                                   {"BM_ToCharsString/set:0", "BM_StringDouble/set:0"},
                                   {"BM_ToCharsString/set:1", "BM_StringDouble/set:1"},
                                   {"BM_ToCharsString/set:2", "BM_StringDouble/set:2"}});
}
