#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# installed_plugin_test.sh CMAKE BUILD SOURCE COMPILER
# Follows docs/writing-a-plugin.md to the letter: takes the files out of the page, builds them against what was
# installed and nothing else, and reads images with the plug-in, by the page's own program and by the installed zel.
set -euo pipefail
umask 022 # a plug-in that others can write is refused

cmake=$1 build=$2 source=$3 compiler=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# A file of the page is a fenced block after a line with its name.
mkdir "$work/page"
awk -v folder="$work/page/" '
    /^`[A-Za-z_.]+`:$/ { name = substr($0, 2, length($0) - 3); next }
    name != "" && !inside && /^```/ { inside = 1; next }
    inside && /^```$/ { inside = 0; name = ""; next }
    inside { print > (folder name) }' "$source/docs/writing-a-plugin.md"
diff -r "$work/page" "$source/examples/plugin" || fail "the page and examples/plugin differ"

"$cmake" --install "$build" --prefix "$work/prefix" >"$work/install.log"
cd "$work/page"
"$cmake" -G Ninja -B build -DCMAKE_PREFIX_PATH="$work/prefix" -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" >"$work/cmake.log" || fail "find_package(ZelTools) does not work"
"$cmake" --build build

# check FILE STATUS TEXT: what the page's program says of a file
check() {
    local status=0 said
    said=$(build/read_image plugins "$1") || status=$?
    [[ $status == "$2" && $said == *"greymap: In use."*"$3"* ]] || fail "$1: status $status, not $2: $said"
}
printf 'P5 3 2 255\nabcdef' >tiny.pgm
printf 'P5 3 2 255\nabcde' >short.pgm
printf 'P5 3 9999999 255\nabcde' >lying.pgm
printf 'P5 300000 200000 255\n' >huge.pgm
printf 'P5 0 0 255\n' >none.pgm
check tiny.pgm 0 "3 x 2, last byte 102"
check short.pgm 1 "Bad file format"
check lying.pgm 1 "Bad file format"
check none.pgm 1 "Bad file format"
check huge.pgm 1 "huge.pgm: 60000000000 pixels, where 4294967296 are allowed."
check absent.pgm 1 "Can't open the file absent.pgm."

zel=$work/prefix/bin/zel
if [[ -x $zel ]]; then
    export HOME=$work ZELTOOLS_PLUGINS=$work/page/build/plugins
    "$zel" plugins | grep -q 'greymap' || fail "zel plugins does not name the plug-in"
    "$zel" types | grep -q 'PGM .*Portable greymaps' || fail "zel types does not name its type"
    "$zel" list tiny.pgm | grep -Eq '\b3 ?x ?2\b' || fail "zel list does not read the image"
fi
