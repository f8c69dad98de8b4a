# SPDX-License-Identifier: MIT
"""python3 scripts/make_media examples|hostile [FOLDER]

Makes examples/media, the images and scenes to try zel on, or tests/data/hostile, those over which no reader may
stumble. The same on every machine, save for the pictures that go through a codec.
"""

import importlib
import pathlib
import sys

HOME = {"examples": "examples/media", "hostile": "tests/data/hostile"}


def main():
    if len(sys.argv) not in (2, 3) or sys.argv[1] not in HOME:
        sys.exit(__doc__)
    root = pathlib.Path(__file__).resolve().parents[2]
    folder = pathlib.Path(sys.argv[2]) if len(sys.argv) == 3 else root / HOME[sys.argv[1]]
    for name, content in importlib.import_module(sys.argv[1]).files().items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content.encode() if isinstance(content, str) else content)


main()
