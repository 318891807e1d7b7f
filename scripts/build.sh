#!/usr/bin/env bash
# Configures and builds into a build folder: build/ by default, build-asan/ with VELOR_SANITIZE=1.
# Prints the build folder's path as its last line.
#
# The default build is profile-guided: build-training/ holds an instrumented compiler, which
# compiles a generated corpus of every statement kind (bench/corpus.py) into files; build/ is then
# optimised by the branches and calls that run took. VELOR_PROFILE=0 builds build/ without.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bash "$root/scripts/deps.sh"

# Builds the instrumented compiler and, when it changed, trains it again from an empty profile
# (counts of an older binary would not match). Prints the profile's folder.
train() {
  local stage="$root/build-training"
  local profile="$stage/profile"
  cmake -S "$root" -B "$stage" -G Ninja -DVELOR_TESTS=OFF -DVELOR_PROFILE_GENERATE="$profile" >/dev/null
  cmake --build "$stage" -j "$(nproc)" --target velor >&2
  if [ ! -f "$profile/trained" ] || [ "$stage/velor" -nt "$profile/trained" ]; then
    rm -rf "$profile" "$stage/training" && mkdir -p "$profile" "$stage/training/out"
    python3 "$root/bench/corpus.py" 2000 > "$stage/training/corpus.vd"
    (cd "$stage/training" && "$stage/velor" -o out/training.rsrc corpus.vd)
    touch "$profile/trained"
  fi
  echo "$profile"
}

dir="$root/build"
flags=()
if [ "${VELOR_SANITIZE:-0}" = 1 ]; then
  dir="$root/build-asan"
  flags+=(-DVELOR_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug)
elif [ "${VELOR_PROFILE:-1}" = 1 ]; then
  flags+=(-DVELOR_PROFILE_USE="$(train)")
else
  flags+=(-DVELOR_PROFILE_USE=)
fi
if [ "${VELOR_BENCH:-0}" = 1 ]; then
  flags+=(-DVELOR_BENCH=ON)
fi
cmake -S "$root" -B "$dir" -G Ninja "${flags[@]}" >/dev/null
cmake --build "$dir" -j "$(nproc)" >&2
echo "$dir"
