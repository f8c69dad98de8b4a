# SPDX-License-Identifier: MIT
"""Every exported class and function of a public header carries a /// comment. Overloads that follow each other without
an empty line share the first one's."""

import re


def check(tree):
    for name in tree.public_headers:
        if name not in tree.files:
            continue  # the build says so
        lines = tree.text(name).split("\n")
        for number, line in enumerate(lines):
            if re.search(r"\bZEL_API\b", line) and not line.lstrip().startswith(("//", "#", "extern template")):
                if "template class" in line or "template struct" in line:
                    continue  # an instantiation, documented where the template is
                if not is_documented(lines, number):
                    yield f"{name}:{number + 1}: exported, but no /// comment says what it is"


def is_documented(lines, number):
    """Walks up over the declarations that stand in the same block."""
    for above in reversed(lines[:number]):
        text = above.strip()
        if text.startswith("///"):
            return True
        if not text or text.startswith("//") or text.startswith("#"):
            return False
        if text.endswith((":", "{")) and not text.startswith("template"):
            return False  # the block's own opening line
    return False
