#!/usr/bin/env bash
# Builds the Linux preset and runs every benchmark; each prints its ratio to its peer.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake --preset linux >/dev/null
cmake --build --preset linux --target bench_utf bench_geometry
for bench in build/linux/bench/bench_utf build/linux/bench/bench_geometry; do
  echo "== $(basename "$bench")"
  "$bench" "$@"
done
