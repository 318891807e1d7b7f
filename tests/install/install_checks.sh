#!/usr/bin/env bash
# Checks what `cmake --install` and `cpack -G DEB` deliver, as a user of the installed tool sees it.
#
#   install_checks.sh install|consumer|package <build folder> <source folder> <work folder>
#
# "install" installs into <work>/prefix and runs the installed compiler on the bundled example;
# the other two use that prefix. "consumer" builds examples/consumer against it, runs the program
# and checks that touching an included header compiles the resources again and nothing else.
# "package" makes the Debian package and checks that it holds the same files as the prefix.
set -euo pipefail
step=$1 build=$2 source=$3 work=$4
prefix=$work/prefix

fail() { echo "FAILED: $*" >&2; exit 1; }

# The files below a folder, one relative path a line, sorted.
files_below() { (cd "$1" && find . \( -type f -o -type l \) | sed 's|^\./||' | sort); }

expect_files() {
  local expected
  expected=$(printf '%s\n' bin/velor bin/velor-walk include/velor/ResourceTree.h share/man/man1/velor.1 \
    share/man/man1/velor-walk.1 share/man/man5/velor.5 lib/cmake/Velor/VelorConfig.cmake lib/cmake/Velor/VelorConfigVersion.cmake \
    lib/cmake/Velor/VelorResources.cmake lib/cmake/Velor/VelorTargets.cmake | sort)
  diff <(echo "$expected") <(files_below "$1" | grep -v '^lib/cmake/Velor/VelorTargets-') ||
    fail "unexpected files below $1"
}

# Runs a compiler on examples/example.vd into a fresh folder.
compile_example() {
  rm -rf "$2" && mkdir -p "$2"
  (cd "$source/examples" && "$1" -o "$2/example.rsrc" example.vd) || fail "$1 failed on the example"
}

# An installed compiler must write what the one just built writes.
check_example() {
  compile_example "$build/velor" "$work/example-built"
  compile_example "$1" "$work/example-installed"
  [ -n "$(find "$work/example-built" -name '*.vlbk')" ] || fail "the example gave no resources"
  diff -r "$work/example-built" "$work/example-installed" || fail "$1 wrote other resources"
}

# Renders every page; man reports what it could not format as warnings on the error stream.
render_pages() {
  if ! command -v man >/dev/null; then
    echo "man is not installed: the pages were not rendered"
    return
  fi
  for page in "$prefix"/share/man/man*/*; do
    local warnings
    warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -l "$page" 2>&1 >/dev/null) ||
      fail "man could not render $page"
    [ -z "$warnings" ] || fail "man warns about $page: $warnings"
  done
}

check_install() {
  rm -rf "$work" && mkdir -p "$work"
  cmake --install "$build" --prefix "$prefix" >/dev/null
  expect_files "$prefix"
  check_example "$prefix/bin/velor"
  "$prefix/bin/velor-walk" "$work/example-installed" >/dev/null || fail "the installed velor-walk failed"
  render_pages
}

# Builds the consumer and answers the build's output: what the step had to do.
consumer_build() {
  local log
  log=$(cmake --build "$work/consumer/build" 2>&1) || fail "the consumer did not build: $log"
  echo "$log"
}

check_consumer() {
  local project=$work/consumer output
  rm -rf "$project" && cp -R "$source/examples/consumer" "$project"
  cmake -S "$project" -B "$project/build" -G "$(generator)" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
  consumer_build >/dev/null
  [ "$("$project/build/about")" = $'VERS 1: 2.5 channel 3 build 1017\nVERS 2: 1.0 channel 0 build 1' ] ||
    fail "the consumer printed something else"
  output=$(consumer_build)
  grep -q 'Compiling VELOR resources' <<<"$output" && fail "a build with nothing changed compiled resources"
  sleep 1 # file times of one second's resolution must see the edit
  sed -i 's/1017/1018/' "$project/include/version.h"
  output=$(consumer_build)
  grep -q 'Compiling VELOR resources' <<<"$output" || fail "editing an included header compiled nothing"
  grep -Eq 'Building CXX|Linking CXX' <<<"$output" && fail "editing an included header rebuilt the program"
  [[ $("$project/build/about") == *"build 1018"* ]] || fail "the program did not see the new resources"
}

# The generator the project itself was configured with.
generator() { sed -n 's/^CMAKE_GENERATOR:INTERNAL=//p' "$build/CMakeCache.txt"; }

check_package() {
  local packages=$work/package
  rm -rf "$packages" && mkdir -p "$packages"
  cpack -G DEB --config "$build/CPackConfig.cmake" -B "$packages" >/dev/null
  local deb
  deb=$(ls "$packages"/*.deb) || fail "cpack made no package"
  if ! command -v dpkg-deb >/dev/null; then
    echo "dpkg-deb is not installed: the package was not opened"
    return
  fi
  dpkg-deb -x "$deb" "$packages/root"
  expect_files "$packages/root/usr"
  check_example "$packages/root/usr/bin/velor"
}

case $step in
  install) check_install ;;
  consumer) check_consumer ;;
  package) check_package ;;
  *) fail "unknown step $step" ;;
esac
