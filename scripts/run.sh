#!/usr/bin/env bash
# Builds optimised and runs the main job: the plexus command over the bundled
# sample code, then the benchmarks (the walk, shared against unshared rules,
# switch against predicates, parse throughput).
# Usage: scripts/run.sh [extra benchmark flags]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
plexus_install_deps

build_dir="build-release"
cmake -S . -B "$build_dir" -G Ninja -DPLEXUS_WERROR=ON -DCMAKE_BUILD_TYPE=Release -DPLEXUS_BUILD_TESTS=OFF
cmake --build "$build_dir" --parallel --target plexus plexus_bench
"$build_dir/tools/plexus" parse tests/frontend/corpus
"$build_dir/bench/plexus_bench" "$@"
