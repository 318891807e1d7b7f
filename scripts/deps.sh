#!/usr/bin/env bash
# Installs what a build needs beyond a bare Debian machine: a compiler, CMake, Ninja, GoogleTest,
# Python (for the training corpus of the profile-guided build);
# with VELOR_BENCH=1 the benchmark library, with VELOR_FUZZ=1 clang and its libFuzzer.
# Does nothing when everything is already there.
set -euo pipefail

missing=()
command -v g++ >/dev/null || missing+=(g++)
command -v cmake >/dev/null || missing+=(cmake)
command -v ninja >/dev/null || missing+=(ninja-build)
command -v python3 >/dev/null || missing+=(python3)
[ -f /usr/include/gtest/gtest.h ] || missing+=(libgtest-dev)
if [ "${VELOR_BENCH:-0}" = 1 ] && [ ! -f /usr/include/benchmark/benchmark.h ]; then
  missing+=(libbenchmark-dev)
fi

if [ "${VELOR_FUZZ:-0}" = 1 ]; then
  command -v clang++ >/dev/null || missing+=(clang)
  compgen -G '/usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-*.a' >/dev/null ||
    missing+=(libclang-rt-dev)
fi

if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" = 0 ] || sudo=sudo
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
fi
