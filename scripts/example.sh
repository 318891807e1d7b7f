#!/usr/bin/env bash
# Builds the compiler, runs it on the bundled example with descriptions on and walks the result.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=$(bash "$root/scripts/build.sh" | tail -n 1)
out="$dir/example-out"
rm -rf "$out" && mkdir -p "$out"
cd "$root/examples"
set -x
printf '#pragma velor writedescriptions on\n#include "example.vd"\n' > "$out/described.vd"
"$dir/velor" -p -i . -o "$out/example.rsrc" "$out/described.vd"
"$dir/velor-walk" "$out"
"$dir/velor-walk" "$out" Window 128
