#!/usr/bin/env bash
# Builds the library and runs the example program on the bundled data in
# examples/data, writing its log and outputs under build/example-run.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
tarn_install_deps
cmake -S . -B build/example -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTARN_BUILD_TESTS=OFF -DTARN_BUILD_BENCH=OFF
cmake --build build/example -j"$(nproc)" --target tarn_example
mkdir -p build/example-run
./build/example/examples/tarn_example examples/data build/example-run
