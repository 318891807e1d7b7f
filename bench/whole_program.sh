#!/usr/bin/env bash
# The whole-program benchmark: builds the compiler and the minimal file writer, then prints the
# ratios of bench/whole_program.py. Usage: bash bench/whole_program.sh [resources] [runs]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=$(bash "$root/scripts/build.sh" | tail -n 1)
for helper in file_writer peak_memory; do
  cc -O2 -o "$dir/$helper" "$root/bench/$helper.c"
done
python3 -u "$root/bench/whole_program.py" --velor "$dir/velor" --writer "$dir/file_writer" \
  --peak-memory "$dir/peak_memory" \
  --work "$dir/whole-program" --resources "${1:-100000}" --runs "${2:-3}"
