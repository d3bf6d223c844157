#!/usr/bin/env bash
# Builds the library and runs the example program on the bundled data in
# examples/data, writing its log and outputs under build/example-run; then
# runs the command-line tool tarnutil on the same bundled examples.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
tarn_install_deps
cmake -S . -B build/example -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTARN_BUILD_TESTS=OFF -DTARN_BUILD_BENCH=OFF
cmake --build build/example -j"$(nproc)" --target tarn_example tarnutil
mkdir -p build/example-run
./build/example/examples/tarn_example examples/data build/example-run

# The command-line tool on the bundled examples (docs/tarnutil.md).
tarnutil=./build/example/tool/tarnutil
data=examples/data
run() { echo; echo "\$ tarnutil $*"; "$tarnutil" "$@"; }
run parfile "$data/model.par"
run parfile "$data/model.par" load_case
run config "$data/optimisation.cfg" design_variables
run fmt 0.1 100000 2.675 -- -inf
run fmt --fixed 2 2.675
run kmeans 3 "$data/values.csv"
run nearest "$data/points.csv" "$data/queries.csv"
