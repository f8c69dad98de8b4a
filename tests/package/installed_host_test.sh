#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# installed_host_test.sh CMAKE BUILD SOURCE COMPILER
# Installs a build into an empty prefix, moves the prefix away, copies examples/host out of the tree, and builds and
# runs the copy against what was installed: once by CMake, once by pkg-config.
set -euo pipefail

cmake=$1 build=$2 source=$3 compiler=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# An installed package may be moved: nothing in it may know where it was put at first.
"$cmake" --install "$build" --prefix "$work/first" >"$work/install.log"
mv "$work/first" "$work/prefix"
! grep -rlIF -e "$work/first" -e "$source" "$work/prefix" || fail "an installed file names the place of the build"

library=$(find "$work/prefix" -name 'libzeltools.so')
readelf -d "$library" | grep -q 'SONAME.*\[libzeltools\.so\.5\]' || fail "the soname is not libzeltools.so.5"
[[ -f $library.5.0.0 && -L $library.5 && -L $library ]] || fail "the shared object has no version links"
! find "$work/prefix/include" -name '*_private.h' | grep . || fail "a private header is installed"

# Whatever a public header includes of ours is installed too.
(cd "$work/prefix/include" && find zeltools -name '*.h' | sed 's/.*/#include <&>/') >"$work/all.cpp"
"$compiler" -std=c++20 -fsyntax-only -I"$work/prefix/include" -I"$work/prefix/include/zeltools" "$work/all.cpp" || fail "the headers do not stand alone"

check_output() { # PROGRAM HOW
    local output
    output=$("$1" 'C:\Textures\Wood.JPG') || fail "the host built by $2 ended with status $?"
    grep -qF "$(basename "$1")" <<<"$output" || fail "the host built by $2 does not say where it is: $output"
    grep -qxF 'extension .JPG' <<<"$output" || fail "the host built by $2 does not split the path: $output"
}

cp -r "$source/examples/host" "$work/host"
"$cmake" -G Ninja -S "$work/host" -B "$work/host/build" -DCMAKE_PREFIX_PATH="$work/prefix" \
    -DCMAKE_CXX_COMPILER="$compiler" >"$work/cmake.log" || fail "find_package(ZelTools) does not work"
"$cmake" --build "$work/host/build"
check_output "$work/host/build/host" CMake

PKG_CONFIG_PATH=$(find "$work/prefix" -type d -name pkgconfig)
export PKG_CONFIG_PATH
[[ $(pkg-config --modversion zeltools) == 5.0.0 ]] || fail "zeltools.pc does not tell version 5.0.0"
read -ra flags < <(pkg-config --cflags --libs zeltools)
"$compiler" -std=c++20 "$work/host/main.cpp" -o "$work/host/host" "${flags[@]}" -Wl,-rpath,"${library%/*}"
check_output "$work/host/host" pkg-config

if [[ -x $work/prefix/bin/zel ]]; then
    "$work/prefix/bin/zel" where >/dev/null || fail "the installed zel does not find its library"
fi
