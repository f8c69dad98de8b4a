#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Times `zel list -r --no-open` over 100,000 files beside `find -printf` with the same facts, and tells its peak memory.

usage: zel_list_benchmark.py ZEL [FILES]
"""
import os
import statistics
import subprocess
import sys
import tempfile
import time

EXTENSIONS = ("bmp", "hdr", "max", "mb", "wav", "mp4", "wmv", "html", "zip", "txt", "png", "jpg", "exr", "obj", "7z")
FILES_PER_FOLDER = 100
ROUNDS = 7


def make_tree(root, files):
    made = 0
    while made < files:
        number = made // FILES_PER_FOLDER
        folder = os.path.join(root, f"shot {number // 100:03}", f"take_{number % 100:03}")
        os.makedirs(folder)
        for i in range(min(FILES_PER_FOLDER, files - made)):
            with open(os.path.join(folder, f"texture_{made + i:06}.{EXTENSIONS[i % len(EXTENSIONS)]}"), "wb") as file:
                file.write(b"x" * (i % 7))
        made += FILES_PER_FOLDER


def run(command):
    """Seconds, peak KiB and number of printed lines of one run."""
    start = time.perf_counter()
    with tempfile.TemporaryFile() as output:
        process = subprocess.Popen(command, stdout=output)
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - start
        process.returncode = status
        if status:
            sys.exit(f"{command[0]} ended with status {status}")
        output.seek(0)
        return seconds, usage.ru_maxrss, sum(1 for _ in output)


def measure(zel, files):
    with tempfile.TemporaryDirectory(prefix="zel_list_") as root:
        make_tree(root, files)
        find = ["find", root, "-mindepth", "1", "-printf", r"%y %12s %TY-%Tm-%Td %TH:%TM %P\n"]
        zel_command = [zel, "list", "-r", "--no-open", root]
        rows = run(find)[2]
        listed = run(zel_command)[2]
        if listed < rows:
            sys.exit(f"zel printed {listed} lines for {rows} entries")
        pairs = [(run(zel_command), run(find)) for _ in range(ROUNDS)]
    ours = statistics.median(pair[0][0] for pair in pairs)
    peer = statistics.median(pair[1][0] for pair in pairs)
    memory = max(pair[0][1] for pair in pairs) / 1024
    print(f"{files:>7} files: zel list -r {ours * 1000:8.1f} ms   find -printf {peer * 1000:8.1f} ms   "
          f"time ratio zel/find {ours / peer:5.2f}   zel peak {memory:6.1f} MiB")


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    largest = int(sys.argv[2]) if len(sys.argv) == 3 else 100_000
    for files in (largest // 100, largest):
        measure(sys.argv[1], files)


if __name__ == "__main__":
    main()
