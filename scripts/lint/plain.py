# SPDX-License-Identifier: MIT
"""Every file of code names its licence in its first lines, and none grows past what one idea needs."""

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
        lines = text.count("\n")
        if lines > LONG:
            tree.notes.append(f"{name}: {lines} lines; past {LONG} a source usually holds two ideas")
