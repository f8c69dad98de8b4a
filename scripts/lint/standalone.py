# SPDX-License-Identifier: MIT
"""Every public header compiles as the only thing that a host includes, with both compilers."""

import concurrent.futures
import os
import subprocess

COMPILERS = ["g++", "clang++"]


def check(tree):
    work = [(compiler, name) for name in tree.public_headers for compiler in COMPILERS]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for (compiler, name), fault in zip(work, pool.map(lambda pair: compile_alone(tree, *pair), work)):
            if fault:
                yield f"{name}: does not compile alone with {compiler}: {fault}"


def compile_alone(tree, compiler, name):
    command = [compiler, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Wpedantic", "-Werror", f"-I{tree.root}",
               "-x", "c++", "-"]
    result = subprocess.run(command, input=f"#include <{name}>\n", capture_output=True, text=True)
    if result.returncode == 0:
        return None
    return next((line for line in result.stderr.splitlines() if "error" in line), result.stderr.strip())
