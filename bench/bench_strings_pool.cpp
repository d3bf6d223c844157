//===- bench_strings_pool.cpp - Interning a stream of words -----------------===//
//
// TarnStringsPool::AddString against the two usual ways of interning in
// standard C++: std::unordered_map<std::string, int> (word => identifier)
// and std::unordered_set<std::string_view> over an arena that owns the
// characters. Each iteration builds an empty structure, interns 10^6 words
// and destroys it again.
//
// The words: a vocabulary of 50,000 distinct pseudo-words made of 1 to 4
// syllables (1 to 24 letters, 10 on average), ranked shortest first, and a
// stream of 10^6 draws from it with Zipf's law (the word of rank r with
// weight 1/r, as in natural text: the 100 most frequent words make up 45 %
// of the stream, whose words average 3.7 letters; 47,356 distinct words
// occur). Both are generated from fixed seeds, so every run sees the same
// input.
//
// Before the timed runs the program measures the peak heap memory of each
// contender (every byte asked of malloc, counted through the allocator
// functions this program replaces) and prints it with the ratio to the map.
//
//===----------------------------------------------------------------------===//
#include "TarnUtilities/text/TarnStringsPool.h"

#include "RatioReporter.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

// ------------------------------------------------------------ heap counting
//
// The program's own malloc family: every call goes to glibc's allocator and
// the usable size of each block is added to or taken from a running total,
// whose high-water mark is the peak. Replacing the C functions (rather than
// operator new) also counts the blocks the library takes with malloc and
// realloc.

extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);
void __libc_free(void*);
}

namespace {
std::size_t g_heapInUse = 0;
std::size_t g_heapPeak = 0;

void* Counted(void* p) {
  if (p != nullptr) {
    g_heapInUse += malloc_usable_size(p);
    g_heapPeak = std::max(g_heapPeak, g_heapInUse);
  }
  return p;
}

void Uncount(void* p) {
  if (p != nullptr)
    g_heapInUse -= malloc_usable_size(p);
}
} // namespace

extern "C" {
void* malloc(size_t n) { return Counted(__libc_malloc(n)); }
void* calloc(size_t n, size_t size) { return Counted(__libc_calloc(n, size)); }
void* memalign(size_t align, size_t n) { return Counted(__libc_memalign(align, n)); }
void* aligned_alloc(size_t align, size_t n) { return Counted(__libc_memalign(align, n)); }
int posix_memalign(void** out, size_t align, size_t n) {
  void* p = Counted(__libc_memalign(align, n));
  if (p == nullptr)
    return ENOMEM;
  *out = p;
  return 0;
}
void free(void* p) {
  Uncount(p);
  __libc_free(p);
}
void* realloc(void* p, size_t n) {
  // realloc may fail and keep p: count the old block out only on success.
  const std::size_t old = p != nullptr ? malloc_usable_size(p) : 0;
  void* q = __libc_realloc(p, n);
  if (q != nullptr || n == 0) {
    g_heapInUse -= old;
    Counted(q);
  }
  return q;
}
}

namespace {

// --------------------------------------------------------------- the input

constexpr std::size_t kVocabulary = 50000;
constexpr std::size_t kStreamLength = 1000000;

// 50,000 distinct pseudo-words, shortest first (so that frequent words are
// short, as in natural text). Each word is 1 to 4 syllables of an optional
// onset, a vowel group and an optional coda.
const std::vector<std::string>& Vocabulary() {
  static const std::vector<std::string> words = [] {
    static const char* const onsets[] = {"",   "b",  "c",  "d",  "f",  "g",  "h",  "j",
                                         "k",  "l",  "m",  "n",  "p",  "r",  "s",  "t",
                                         "v",  "w",  "z",  "br", "ch", "cl", "dr", "fl",
                                         "gr", "pl", "pr", "sh", "st", "th", "tr", "str"};
    static const char* const vowels[] = {"a", "e", "i", "o", "u", "y", "ai", "ea", "ee", "ou", "io"};
    static const char* const codas[] = {"", "", "", "n", "r", "s", "t", "l", "m", "nd", "ng", "st"};
    std::mt19937 rng(20240616);
    std::discrete_distribution<int> syllables({15, 40, 30, 15}); // 1..4 syllables
    std::unordered_set<std::string> seen;
    std::vector<std::string> out;
    while (out.size() < kVocabulary) {
      std::string word;
      for (int s = syllables(rng); s >= 0; --s) {
        word += onsets[rng() % std::size(onsets)];
        word += vowels[rng() % std::size(vowels)];
        word += codas[rng() % std::size(codas)];
      }
      if (seen.insert(word).second)
        out.push_back(word);
    }
    std::stable_sort(out.begin(), out.end(),
                     [](const std::string& a, const std::string& b) { return a.size() < b.size(); });
    return out;
  }();
  return words;
}

// 10^6 draws from the vocabulary: rank r (1-based) with probability
// proportional to 1/r. Views into Vocabulary(), whose strings are
// NUL-terminated, so data() is a C string too.
const std::vector<std::string_view>& Stream() {
  static const std::vector<std::string_view> stream = [] {
    const std::vector<std::string>& words = Vocabulary();
    std::vector<double> cumulative(words.size());
    double sum = 0;
    for (std::size_t r = 0; r < words.size(); ++r)
      cumulative[r] = sum += 1.0 / static_cast<double>(r + 1);
    std::mt19937_64 rng(1616);
    std::uniform_real_distribution<double> uniform(0.0, sum);
    std::vector<std::string_view> out;
    out.reserve(kStreamLength);
    for (std::size_t i = 0; i < kStreamLength; ++i) {
      const std::size_t r = static_cast<std::size_t>(
          std::upper_bound(cumulative.begin(), cumulative.end(), uniform(rng)) - cumulative.begin());
      out.emplace_back(words[std::min(r, words.size() - 1)]);
    }
    return out;
  }();
  return stream;
}

// ------------------------------------------------------------ contenders

// Interns the stream into a fresh pool; returns the number of distinct words.
std::size_t InternWithPool() {
  TarnStringsPool pool;
  std::int32_t last = 0;
  for (std::string_view word : Stream())
    last = std::max<std::int32_t>(last, pool.AddString(word.data()));
  return static_cast<std::size_t>(last);
}

std::size_t InternWithMap() {
  std::unordered_map<std::string, int> ids;
  for (std::string_view word : Stream()) {
    const int next = static_cast<int>(ids.size()) + 1;
    benchmark::DoNotOptimize(ids.try_emplace(std::string(word), next).first->second);
  }
  return ids.size();
}

// Owns the characters of the set's views: 64 KiB blocks, a word longer than
// a block in a block of its own.
class Arena {
public:
  std::string_view Copy(std::string_view s) {
    if (s.size() > room_) {
      const std::size_t size = std::max<std::size_t>(kBlock, s.size());
      blocks_.emplace_back(new char[size]);
      free_ = blocks_.back().get();
      room_ = size;
    }
    std::memcpy(free_, s.data(), s.size());
    const std::string_view copy(free_, s.size());
    free_ += s.size();
    room_ -= s.size();
    return copy;
  }

private:
  static constexpr std::size_t kBlock = 0x10000;
  std::vector<std::unique_ptr<char[]>> blocks_;
  char* free_ = nullptr;
  std::size_t room_ = 0;
};

std::size_t InternWithArenaSet() {
  Arena arena;
  std::unordered_set<std::string_view> words;
  for (std::string_view word : Stream()) {
    auto found = words.find(word);
    if (found == words.end())
      found = words.insert(arena.Copy(word)).first;
    benchmark::DoNotOptimize(found->data());
  }
  return words.size();
}

template <std::size_t (*Intern)()> void BM_Intern(benchmark::State& state) {
  Stream(); // generated outside the timing
  for (auto _ : state)
    benchmark::DoNotOptimize(Intern());
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kStreamLength));
}

void BM_PoolIntern(benchmark::State& state) { BM_Intern<InternWithPool>(state); }
void BM_MapIntern(benchmark::State& state) { BM_Intern<InternWithMap>(state); }
void BM_ArenaSetIntern(benchmark::State& state) { BM_Intern<InternWithArenaSet>(state); }
BENCHMARK(BM_PoolIntern)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MapIntern)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ArenaSetIntern)->Unit(benchmark::kMillisecond);

// ---------------------------------------------------------------- memory

// The peak of heap bytes in use above the level before `intern` ran.
std::size_t PeakHeapOf(std::size_t (*intern)(), std::size_t& distinct) {
  const std::size_t base = g_heapInUse;
  g_heapPeak = base;
  distinct = intern();
  return g_heapPeak - base;
}

void PrintPeakMemory() {
  Stream();
  std::size_t distinct = 0;
  const std::size_t map = PeakHeapOf(InternWithMap, distinct);
  std::printf("Peak heap while interning %zu words (%zu distinct):\n", kStreamLength, distinct);
  std::printf("  %-40s %10.2f MiB\n", "std::unordered_map<std::string, int>", map / 1048576.0);
  const std::size_t set = PeakHeapOf(InternWithArenaSet, distinct);
  std::printf("  %-40s %10.2f MiB  (%.3f of the map)\n", "std::unordered_set<string_view> + arena",
              set / 1048576.0, static_cast<double>(set) / static_cast<double>(map));
  const std::size_t pool = PeakHeapOf(InternWithPool, distinct);
  std::printf("  %-40s %10.2f MiB  (%.3f of the map; target <= 0.5)\n\n", "TarnStringsPool",
              pool / 1048576.0, static_cast<double>(pool) / static_cast<double>(map));
}

} // namespace

int main(int argc, char** argv) {
  // Each ratio is our median time divided by the peer's (below 1: faster).
  return tarnbench::RunWithRatios(argc, argv,
                                  {{"BM_PoolIntern", "BM_MapIntern", "target <= 0.8"},
                                   {"BM_PoolIntern", "BM_ArenaSetIntern"}},
                                  PrintPeakMemory);
}
