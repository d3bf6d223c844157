#!/usr/bin/env bash
# Builds the library with its tests and runs every test under CTest.
#   scripts/test.sh             release build in build/release
#   scripts/test.sh --sanitize  AddressSanitizer + UBSan build in build/sanitize
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
tarn_install_deps

build=build/release
flags=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
if [[ "${1:-}" == "--sanitize" ]]; then
  build=build/sanitize
  # Benchmarks are not needed under the sanitizers.
  flags=(-DCMAKE_BUILD_TYPE=Debug -DTARN_SANITIZE=ON -DTARN_BUILD_BENCH=OFF)
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
  export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
fi
jobs=$(nproc)
cmake -S . -B "$build" "${flags[@]}"
cmake --build "$build" -j"$jobs"
ctest --test-dir "$build" --output-on-failure -j"$jobs"
