#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ with clang 14 (AddressSanitizer and
# UndefinedBehaviorSanitizer on the library and the targets) in build/fuzz,
# then runs each target on its seed corpus for a bounded time.
#
#   scripts/fuzz.sh                     every target for 7 seconds (what CI runs)
#   scripts/fuzz.sh --time 1200         every target for 20 minutes
#   scripts/fuzz.sh --runs 10000000     every target for at most 10^7 inputs
#                                       (with --time: whichever comes first)
#   scripts/fuzz.sh --target parfile    one target (repeat --target for more)
#   scripts/fuzz.sh --merge             minimise each seed corpus with what the
#                                       runs found (rewrites fuzz/corpus/<name>)
#   scripts/fuzz.sh --merge-only        the same without fuzzing first, for what
#                                       earlier runs left in build/fuzz/run/<name>/new
#   scripts/fuzz.sh --nice              run the targets under nice -n 19
#
# Each target runs as one process (-jobs=1 -workers=1) in its own empty
# working directory build/fuzz/run/<name>/, where inputs it finds are kept
# (new/) and any crashing input is written (crash-*, timeout-*, oom-*). The
# seed corpus in the repository is only read. The script fails when a target
# finds a fault.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
tarn_install_deps

# Seven seconds for each of the eight targets keeps CI at about a minute.
time_limit=7
runs=-1
merge=0
fuzz=1
nice_cmd=()
targets=()
while (($#)); do
  case "$1" in
    --time) time_limit="$2"; shift 2 ;;
    --runs) runs="$2"; shift 2 ;;
    --target) targets+=("$2"); shift 2 ;;
    --merge) merge=1; shift ;;
    --merge-only) merge=1; fuzz=0; shift ;;
    --nice) nice_cmd=(nice -n 19); shift ;;
    *) echo "unknown option: $1" >&2; exit 2 ;;
  esac
done

root=$PWD
build=build/fuzz
CC=clang-14 CXX=clang++-14 cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DTARN_FUZZ=ON -DTARN_BUILD_TESTS=OFF -DTARN_BUILD_BENCH=OFF -DTARN_BUILD_EXAMPLES=OFF \
  -DTARN_BUILD_TOOL=OFF >/dev/null
if ((${#targets[@]} == 0)); then
  for source in fuzz/*_fuzzer.cpp; do
    name=$(basename "$source" _fuzzer.cpp)
    targets+=("$name")
  done
fi
cmake --build "$build" -j"$(nproc)" --target "${targets[@]/%/_fuzzer}"

export ASAN_OPTIONS=abort_on_error=1:detect_leaks=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

status=0
for name in "${targets[@]}"; do
  run="$root/$build/run/$name"
  mkdir -p "$run/new"
  options=(-max_total_time="$time_limit" -runs="$runs" -timeout=30 -rss_limit_mb=4096
           -jobs=1 -workers=1 -print_final_stats=1 -artifact_prefix="$run/")
  [[ -f fuzz/dict/$name.dict ]] && options+=(-dict="$root/fuzz/dict/$name.dict")
  echo "=== $name"
  if ((fuzz)); then
    if ! (cd "$run" && "${nice_cmd[@]}" "$root/$build/fuzz/${name}_fuzzer" "${options[@]}" \
            "$run/new" "$root/fuzz/corpus/$name" 2>&1 | tee "$run/log" |
            grep -E '^(#[0-9]+[[:space:]]+(INITED|DONE)|stat::|Done|==[0-9]+==ERROR|SUMMARY|\*\*\* fuzz check)')
    then :; fi
    if ! grep -q '^Done ' "$run/log"; then
      echo "!!! $name found a fault; see $run/log and $run/crash-* (or timeout-*, oom-*)" >&2
      status=1
      continue
    fi
  fi
  if ((merge)); then
    mkdir -p "$run/merged"
    rm -f "$run/merged"/*
    (cd "$run" && "${nice_cmd[@]}" "$root/$build/fuzz/${name}_fuzzer" -merge=1 "$run/merged" \
       "$root/fuzz/corpus/$name" "$run/new" >/dev/null 2>&1)
    rm -f "fuzz/corpus/$name"/*
    cp "$run/merged"/* "fuzz/corpus/$name/"
    echo "corpus of $name: $(ls "fuzz/corpus/$name" | wc -l) files"
  fi
done
exit $status
