# SPDX-License-Identifier: MIT
"""Nothing lies about unbuilt: every source stands in its folder's CMakeLists.txt, every public header is installed and
part of zeltools/zeltools.h, no private one is, and every fuzzer has seeds."""

import re

UMBRELLA = "zeltools/zeltools.h"


def check(tree):
    listed = {}
    for listing in tree.matching(r"(.*/)?CMakeLists\.txt"):
        listed[listing.rpartition("/")[0]] = set(re.findall(r"[\w./-]+", tree.code(listing)))

    def is_listed(name, also=lambda inside: inside):
        """Some CMakeLists.txt in the folder of the file or above it names the file."""
        folder = name.rpartition("/")[0]
        while True:
            inside = name[len(folder) + 1:] if folder else name
            if folder in listed and also(inside) in listed[folder]:
                return True
            if not folder:
                return False
            folder = folder.rpartition("/")[0]

    for name in tree.matching(r"(zeltools|desktop|plugins|apps|tests|benchmarks|examples)/.*\.cpp"):
        if not is_listed(name):
            yield f"{name}: no CMakeLists.txt builds it"

    for name in tree.matching(r"zeltools/.*\.h"):
        private = name.endswith("_private.h") or name.startswith("zeltools/platform/")
        installed = name in tree.public_headers
        if not private and not installed:
            yield f"{name}: public by its name, but no PUBLIC list installs it"
        if installed and name.endswith("_private.h"):
            yield f"{name}: private by its name, but a PUBLIC list installs it"

    if UMBRELLA in tree.files:
        for name in tree.public_headers:
            if name != UMBRELLA and f"#include <{name}>" not in tree.text(UMBRELLA):
                yield f"{UMBRELLA}: does not include <{name}>"

    for name in tree.matching(r"fuzz/.*\.cpp"):
        fuzzer = re.fullmatch(r"fuzz/(\w+)_fuzzer\.cpp", name)
        if not fuzzer:
            if not is_listed(name):
                yield f"{name}: no CMakeLists.txt builds it"
            continue
        if not re.search(rf"zel_fuzzer\(\s*{fuzzer[1]}\b", tree.code("fuzz/CMakeLists.txt")):
            yield f"{name}: fuzz/CMakeLists.txt has no zel_fuzzer({fuzzer[1]})"
        if not tree.matching(rf"fuzz/corpus/{fuzzer[1]}/.*"):
            yield f"{name}: no seed in fuzz/corpus/{fuzzer[1]}/"
