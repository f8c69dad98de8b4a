# SPDX-License-Identifier: MIT
"""clang-format would change nothing."""

import concurrent.futures
import os
import subprocess


def check(tree):
    sources = tree.sources
    count = os.cpu_count() or 1
    slices = [sources[i::count] for i in range(count) if sources[i::count]]
    with concurrent.futures.ThreadPoolExecutor(count) as pool:
        for result in pool.map(lambda names: format_of(tree, names), slices):
            seen = set()
            for line in result.stderr.splitlines():
                place = line.split(": error:")[0]
                if ": error:" in line and place.split(":")[0] not in seen:
                    seen.add(place.split(":")[0])
                    yield f"{place}: not laid out by clang-format; ./dev format does it"
            if result.returncode and not seen:
                yield f"clang-format: {result.stderr.strip()}"


def format_of(tree, names):
    command = ["clang-format", "--dry-run", "-Werror", "--ferror-limit=1", "--style=file", *names]
    return subprocess.run(command, cwd=tree.root, capture_output=True, text=True)
