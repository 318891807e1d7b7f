#!/usr/bin/env bash
# Builds the compiler and runs it on the bundled example.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=$(bash "$root/scripts/build.sh" | tail -n 1)
out="$dir/example-out"
rm -rf "$out" && mkdir -p "$out"
cd "$root/examples"
set -x
"$dir/velor" -p -o "$out/example.rsrc" example.vd
