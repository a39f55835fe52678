#!/usr/bin/env bash
# Installs the built plexus into a fresh prefix, builds the consumer project
# against it there, and runs it. Usage: build_consumer.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build_dir="$1"
source_dir="$2"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build_dir" --prefix "$work/prefix" > "$work/install.log"
# Only what the package installs may be seen: no path into the source tree.
cmake -S "$source_dir/tests/package/consumer" -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_PREFIX_PATH="$work/prefix" > "$work/configure.log" || { cat "$work/configure.log"; exit 1; }
cmake --build "$work/build" || exit 1
if grep -rq -- "-I$source_dir" "$work/build/build.ninja"; then
  echo "the consumer's build reaches into the source tree" >&2
  exit 1
fi
"$work/build/consumer"
