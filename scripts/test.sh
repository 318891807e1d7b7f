#!/usr/bin/env bash
# Builds everything and runs every unit and end-to-end test. VELOR_SANITIZE=1 runs them under
# AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=$(bash "$root/scripts/build.sh" | tail -n 1)
ctest --test-dir "$dir" --output-on-failure -j "$(nproc)"
