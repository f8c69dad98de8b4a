#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Times `zel list` over a hundred scenes beside `assimp info`, which takes one file at a time, and counts the answers.

usage: scene_list_benchmark.py ZEL [SCENES]
"""

import json
import os
import pathlib
import shutil
import sys
import tempfile

from processes import Run, compare, median, need, private_home, verdict

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "scripts" / "make_media"))
import scene_formats as scenes  # noqa: E402
from solids import VASE, lathe  # noqa: E402

FORMATS = {
    ".obj": lambda solid: scenes.obj(solid, "none.mtl", "clay").encode(),
    ".stl": scenes.stl_binary,
    ".ply": scenes.ply_binary,
    ".glb": lambda solid: scenes.glb(*scenes.gltf_scene(solid)),
    ".dae": lambda solid: scenes.dae(solid, "none.png").encode(),
}
STEPS = (24, 96, 384, 1536)  # 400 to 26,000 vertices
ROUNDS = 3
GOAL = 10


def make_scenes(folder, count):
    made = [(extension, form(lathe(VASE, steps))) for steps in STEPS for extension, form in FORMATS.items()]
    for i in range(count):
        extension, content = made[i % len(made)]
        pathlib.Path(folder, f"scene_{i:06}{extension}").write_bytes(content)


def main():
    need(len(sys.argv) in (2, 3), __doc__)
    zel, count = sys.argv[1], int(sys.argv[2]) if len(sys.argv) == 3 else 100
    need(shutil.which("assimp"), "scene_list: assimp, the peer, is not installed")
    with tempfile.TemporaryDirectory(prefix="scene_list_") as root:
        private_home(os.path.join(root, "home"))
        folder = os.path.join(root, "scenes")
        os.mkdir(folder)
        make_scenes(folder, count)
        ours = compare({"zel": [zel, "list", "--json", folder]}, ROUNDS)["zel"]
        peer = [Run(["assimp", "info", os.path.join(folder, name)]) for name in sorted(os.listdir(folder))]
        answers = sum(1 for row in json.loads(ours[-1].text)["files"] if row.get("faces"))
        seconds = sum(run.seconds for run in peer)
        print(f"  zel list           {median(ours) * 1000:9.1f} ms  {answers:>6} answers of {count}")
        print(f"  assimp info        {seconds * 1000:9.1f} ms  {sum(run.status == 0 for run in peer):>6} answers of {count}  "
              f"{seconds / median(ours):6.2f} x  {verdict(seconds / median(ours), GOAL)}")
        need(answers == count, "zel list does not tell the faces of each scene; is the plug-in built?")


if __name__ == "__main__":
    main()
