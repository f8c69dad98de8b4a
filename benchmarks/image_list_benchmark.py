#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Times `zel list` over a thousand mixed images beside the tools that people use for it, each as a whole process, and
counts their answers: images of which the size was told. Then its start, the decoding of large images, and its memory.

usage: image_list_benchmark.py ZEL [IMAGES]
"""

import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

from processes import Run, compare, median, need, private_home, verdict

SIZES = ((64, 64), (160, 120), (320, 240), (640, 480), (800, 800), (1280, 720), (1920, 1080))
FORMATS = ((".jpg", "uint8", 3), (".png", "uint8", 4), (".png", "uint16", 3), (".tif", "uint8", 3),
           (".tif", "float", 1), (".exr", "half", 4), (".exr", "half", 3), (".jpg", "uint8", 1))
BATCH = 60  # images made by one process, whose start costs more than a small image
ROUNDS = 5
LARGE_ROUNDS = 3


def make_images(folder, count):
    """Each size in each format and four colourings; beyond those, copies."""
    different = min(count, 4 * len(FORMATS) * len(SIZES))
    for first in range(0, different, BATCH):
        command = ["oiiotool"]
        for i in range(first, min(first + BATCH, different)):
            extension, pixel_type, channels = FORMATS[i % len(FORMATS)]
            width, height = SIZES[i // len(FORMATS) % len(SIZES)]
            shades = [",".join([f"{(i * 37 + corner * 61) % 100 / 100:.2f}"] * channels) for corner in range(4)]
            pattern = "fill:topleft={}:topright={}:bottomleft={}:bottomright={}".format(*shades)
            command += ["--pattern", pattern, f"{width}x{height}", str(channels), "--attrib", "Make", "ZelTools",
                        "--attrib", "Model", f"Lathe {i}", "-d", pixel_type,
                        "-o", os.path.join(folder, f"image_{i:06}{extension}"), "--pop"]
        subprocess.run(command, check=True, capture_output=True)
    made = sorted(os.listdir(folder))
    for i in range(different, count):
        source = made[i % different]
        shutil.copy(os.path.join(folder, source), os.path.join(folder, f"image_{i:06}{os.path.splitext(source)[1]}"))


def answers_of_zel(text):
    return sum(1 for row in json.loads(text)["files"] if row.get("width"))


def lines_like(pattern):
    return lambda text: len(re.findall(pattern, text, re.MULTILINE))


# Name, the arguments before the files, how to count the answers, and how many times faster zel wants to be.
PEERS = (
    ("exiftool -fast2", ["exiftool", "-fast2", "-q", "-q", "-p", "$ImageSize"], lines_like(r"^\d+x\d+"), 3),
    ("identify -ping", ["identify", "-ping", "-format", "%w x %h\n"], lines_like(r"^\d+ x \d+"), None),
    ("exiv2", ["exiv2", "pr"], lines_like(r"Image size +: +\d+ x \d+"), None),
    ("iinfo", ["iinfo"], lines_like(r": +\d+ x +\d+"), 1),
    ("oiiotool --info", ["oiiotool", "--info"], lines_like(r": +\d+ x +\d+"), 1),
)


def measure_list(zel, folder, count):
    files = sorted(os.path.join(folder, name) for name in os.listdir(folder))
    commands = {"zel list": [zel, "list", "--json", folder]}
    counters, goals = {"zel list": answers_of_zel}, {}
    for name, command, counter, goal in PEERS:
        if shutil.which(command[0]):
            commands[name], counters[name], goals[name] = command + files, counter, goal
        else:
            print(f"  {name}: not installed")
    runs = compare(commands, ROUNDS)
    ours = median(runs["zel list"])
    for name in commands:
        seconds, answers = median(runs[name]), counters[name](runs[name][-1].text)
        print(f"  {name:<18} {seconds * 1000:9.1f} ms  {answers:>6} answers of {count}  {seconds / ours:6.2f} x  "
              f"peak {max(run.mebibytes for run in runs[name]):6.1f} MiB  {verdict(seconds / ours, goals.get(name))}")
        need(name != "zel list" or answers == count, "zel list does not answer for each image; are the plug-ins built?")


def measure_start(zel, root):
    """An empty folder: nothing is opened, so all that counts is the start with the plug-ins installed."""
    empty = os.path.join(root, "empty")
    os.mkdir(empty)
    seconds = median(compare({"zel": [zel, "list", empty]}, 25)["zel"])
    print(f"  an empty folder    {seconds * 1000:9.1f} ms  {verdict(0.020 / seconds, 1)} (20 ms)")


def measure_decoding(zel, root):
    """Into a file that is not compressed, so that reading is what takes the time."""
    for extension, pixel_type in ((".jpg", "uint8"), (".png", "uint8"), (".tif", "uint16"), (".exr", "half")):
        source = os.path.join(root, "large" + extension)
        subprocess.run(["oiiotool", "--pattern", "noise:type=uniform", "6000x4000", "3", "-d", pixel_type, "-o", source],
                       check=True, capture_output=True)
        ours, peer = os.path.join(root, "ours.tif"), os.path.join(root, "peer.tif")
        runs = compare({
            "zel": [zel, "convert", "--overwrite", "--option", "compression=none", source, ours],
            "oiiotool": ["oiiotool", source, "--compression", "none", "-o", peer],
        }, LARGE_ROUNDS)
        need(all(run.status == 0 for run in runs["zel"]), f"zel does not convert {source}")
        print(f"  6000 x 4000 {extension:<6} {median(runs['zel']) * 1000:9.1f} ms  oiiotool "
              f"{median(runs['oiiotool']) * 1000:9.1f} ms  {median(runs['oiiotool']) / median(runs['zel']):6.2f} x  "
              f"{verdict(median(runs['oiiotool']) / median(runs['zel']), 0.9)}")


def measure_memory(zel, folder, root):
    """Once over the images, and once over a hundred links to each."""
    images = sorted(os.listdir(folder))
    for name in (f"{i:03}" for i in range(100)):
        os.makedirs(os.path.join(root, "many", name))
        for image in images:
            os.link(os.path.join(folder, image), os.path.join(root, "many", name, image))
    few, many = Run([zel, "list", folder]), Run([zel, "list", "-r", os.path.join(root, "many")])
    print(f"  {len(images):>7} images  {few.mebibytes:7.1f} MiB, {few.seconds:6.2f} s")
    print(f"  {100 * len(images):>7} images  {many.mebibytes:7.1f} MiB, {many.seconds:6.2f} s  "
          f"{few.mebibytes / many.mebibytes:6.2f} x  {verdict(few.mebibytes / many.mebibytes, 0.9)}")


def main():
    need(len(sys.argv) in (2, 3), __doc__)
    zel, count = sys.argv[1], int(sys.argv[2]) if len(sys.argv) == 3 else 1000
    need(shutil.which("oiiotool"), "image_list: oiiotool, which makes the images, is not installed")
    with tempfile.TemporaryDirectory(prefix="image_list_") as root:
        private_home(os.path.join(root, "home"))
        folder = os.path.join(root, "images")
        os.mkdir(folder)
        make_images(folder, count)
        measure_list(zel, folder, count)
        measure_start(zel, root)
        measure_decoding(zel, root)
        measure_memory(zel, folder, root)


if __name__ == "__main__":
    main()
