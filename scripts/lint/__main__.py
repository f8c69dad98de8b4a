# SPDX-License-Identifier: MIT
"""python3 scripts/lint [--build FOLDER] [--root FOLDER] [CHECK...]

Runs the checks, or those named, and prints each fault as "file:line: what is wrong". A check is a module beside this
file with one function, check(tree), that yields its faults; its docstring says what it holds the tree to.
"""

import argparse
import importlib
import pathlib
import sys
import time

from tree import Tree

CHECKS = ["plain", "messages", "formatting", "includes", "registered", "documented", "standalone", "exports"]


def main():
    here = pathlib.Path(__file__).resolve()
    parser = argparse.ArgumentParser(prog="lint")
    parser.add_argument("--root", type=pathlib.Path, default=here.parents[2])
    parser.add_argument("--build", type=pathlib.Path, help="a release build, for the export list")
    parser.add_argument("checks", nargs="*", metavar="CHECK", help=" ".join(CHECKS))
    arguments = parser.parse_args()
    unknown = [name for name in arguments.checks if name not in CHECKS]
    if unknown:
        parser.error(f"no check {unknown[0]}; there are {' '.join(CHECKS)}")

    tree = Tree(arguments.root, arguments.build)
    failed = False
    for name in arguments.checks or CHECKS:
        start = time.monotonic()
        faults = list(importlib.import_module(name).check(tree))
        for fault in faults:
            print(fault)
        failed = failed or bool(faults)
        print(f"lint: {name}: {len(faults) or 'no'} fault{'' if len(faults) == 1 else 's'}, {time.monotonic() - start:.1f} s")
    for note in tree.notes:
        print(f"note: {note}")
    return 1 if failed else 0


sys.exit(main())
