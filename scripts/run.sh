#!/usr/bin/env bash
# Builds an optimised engine and runs the main job: the benchmarks of the walk
# and of shared against unshared rules on a synthetic tree of a million nodes.
# Usage: scripts/run.sh [extra benchmark flags]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
plexus_install_deps

build_dir="build-release"
cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=Release -DPLEXUS_BUILD_TESTS=OFF
cmake --build "$build_dir" --parallel --target plexus_bench
"$build_dir/bench/plexus_bench" "$@"
