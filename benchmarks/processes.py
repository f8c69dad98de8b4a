# SPDX-License-Identifier: MIT
"""Whole processes, timed: what the benchmarks of zel share."""

import os
import statistics
import subprocess
import sys
import tempfile
import time


class Run:
    """One run of a command: its seconds, its peak MiB, its exit status and what it printed."""

    def __init__(self, command):
        with tempfile.TemporaryFile() as output, open(os.devnull, "w") as nowhere:
            start = time.perf_counter()
            process = subprocess.Popen(command, stdout=output, stderr=nowhere)
            _, status, usage = os.wait4(process.pid, 0)
            self.seconds = time.perf_counter() - start
            process.returncode = self.status = os.waitstatus_to_exitcode(status)
            self.mebibytes = usage.ru_maxrss / 1024
            output.seek(0)
            self.text = output.read().decode(errors="replace")


def compare(commands, rounds):
    """Runs each of {name: command} so many times, by turns, so that a busy moment meets all. {name: runs}."""
    runs = {name: [] for name in commands}
    for _ in range(rounds):
        for name, command in commands.items():
            runs[name].append(Run(command))
    return runs


def median(runs):
    return statistics.median(run.seconds for run in runs)


def verdict(ratio, goal):
    return f"goal {goal:g}: {'reached' if ratio >= goal else 'MISSED'}" if goal else ""


def private_home(folder):
    """Keeps zel from finding, and from leaving, settings in the home of whoever measures."""
    os.environ.update(HOME=folder, XDG_DATA_HOME=folder, XDG_CONFIG_HOME=folder)


def need(condition, complaint):
    if not condition:
        sys.exit(complaint)
