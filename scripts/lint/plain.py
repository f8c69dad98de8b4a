# SPDX-License-Identifier: MIT
"""Every file of code names its licence in its first lines, holds no rest of a merge, and does not grow past what one
idea needs."""

import re

LICENCE = "SPDX-License-Identifier: MIT"
LONG = 700  # lines; a longer source usually holds two ideas
CODE = r".*\.(h|cpp|inc|py|cmake|sh)|.*CMakeLists\.txt|dev|scripts/[a-z]+|\.ci/run|cmake/.*\.in"


def check(tree):
    for name in tree.matching(CODE):
        if name.endswith(".pc.in"):
            continue  # its comments would be installed
        text = tree.text(name)
        if LICENCE not in "\n".join(text.split("\n", 3)[:3]):
            yield f"{name}:1: does not begin with {LICENCE}"
        if conflict := re.search(r"^(<{7}|>{7}) ", text, re.MULTILINE):
            yield f"{name}:{text.count(chr(10), 0, conflict.start()) + 1}: a conflict of a merge was left"
        lines = text.count("\n")
        if lines > LONG:
            tree.notes.append(f"{name}: {lines} lines; past {LONG} a source usually holds two ideas")
