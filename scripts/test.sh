#!/usr/bin/env bash
# Builds everything and runs every test. Usage: scripts/test.sh [build-dir]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
plexus_install_deps

build_dir="${1:-build}"
cmake -S . -B "$build_dir" -G Ninja -DPLEXUS_WERROR=ON -DCMAKE_BUILD_TYPE=Release
cmake --build "$build_dir" --parallel
ctest --test-dir "$build_dir" --output-on-failure --parallel "$(nproc)"
