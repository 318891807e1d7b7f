#!/usr/bin/env bash
# Builds the libFuzzer target with clang into build-fuzz/ and runs it under AddressSanitizer and
# UndefinedBehaviorSanitizer for VELOR_FUZZ_SECONDS (default 60). The seed corpus is every input
# of the end-to-end cases; the dictionary is tests/fuzz/velor.dict. Exits non-zero on a finding,
# whose input libFuzzer leaves in build-fuzz/findings/. Extra arguments go to libFuzzer.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
VELOR_FUZZ=1 bash "$root/scripts/deps.sh"

dir="$root/build-fuzz"
cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DVELOR_FUZZ=ON -DVELOR_TESTS=OFF >/dev/null
cmake --build "$dir" -j "$(nproc)" --target velor_fuzz >&2

seeds="$dir/seeds"
corpus="$dir/corpus"
rm -rf "$seeds" && mkdir -p "$seeds" "$corpus" "$dir/findings"
find "$root/tests/e2e/cases" -path '*/in/*' -type f ! -name .keep -size -64k -print0 |
  while IFS= read -r -d '' file; do cp "$file" "$seeds/$(echo "$file" | md5sum | cut -c1-16)"; done

# The compiler's own messages go to a closed standard error; libFuzzer's reports still show.
"$dir/tests/fuzz/velor_fuzz" "$corpus" "$seeds" -dict="$root/tests/fuzz/velor.dict" \
  -max_total_time="${VELOR_FUZZ_SECONDS:-60}" -max_len=16384 -timeout=10 -close_fd_mask=3 \
  -artifact_prefix="$dir/findings/" -print_final_stats=1 "$@"
