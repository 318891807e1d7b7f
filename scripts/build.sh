#!/usr/bin/env bash
# Configures and builds into a build folder: build/ by default, build-asan/ with VELOR_SANITIZE=1.
# Prints the build folder's path as its last line.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bash "$root/scripts/deps.sh"

dir="$root/build"
flags=()
if [ "${VELOR_SANITIZE:-0}" = 1 ]; then
  dir="$root/build-asan"
  flags+=(-DVELOR_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug)
fi
if [ "${VELOR_BENCH:-0}" = 1 ]; then
  flags+=(-DVELOR_BENCH=ON)
fi
cmake -S "$root" -B "$dir" -G Ninja "${flags[@]}" >/dev/null
cmake --build "$dir" -j "$(nproc)" >&2
echo "$dir"
