#!/usr/bin/env bash
# Builds optimised and runs the main job: the checker over the bundled
# samples (plexus check samples/, its findings shown), then the benchmarks
# (the walk, shared against unshared rules, switch against predicates, parse
# throughput, the checker end to end).
# Usage: scripts/run.sh [extra benchmark flags]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
plexus_install_deps

build_dir="build-release"
cmake -S . -B "$build_dir" -G Ninja -DPLEXUS_WERROR=ON -DCMAKE_BUILD_TYPE=Release -DPLEXUS_BUILD_TESTS=OFF
cmake --build "$build_dir" --parallel --target plexus plexus_bench
# The samples are there to be found fault with: exit code 1 (findings) is a
# run that worked; 2 (a path or an internal error) or a crash is not.
check_status=0
"$build_dir/tools/plexus" check samples || check_status=$?
if (( check_status > 1 )); then
  echo "run.sh: plexus check samples failed with exit code $check_status" >&2
  exit "$check_status"
fi
"$build_dir/bench/plexus_bench" "$@"
