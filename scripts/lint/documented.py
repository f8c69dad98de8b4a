# SPDX-License-Identifier: MIT
"""Every exported class and function of a public header carries a /// comment. Overloads that follow each other without
an empty line share the first one's. What stands in namespace detail is exported for the sake of inline code and is
nobody's to call."""

import re


def check(tree):
    for name in tree.public_headers:
        if name not in tree.files:
            continue  # the build says so
        inside_detail = False
        lines = tree.text(name).split("\n")
        for number, line in enumerate(lines):
            inside_detail = (inside_detail or line.startswith("namespace detail")) and not line.startswith("}")
            if inside_detail or not re.search(r"\bZEL_API\b", line):
                continue
            if re.match(r"\s*(//|#|extern template\b|template (class|struct)\b)", line):
                continue  # an instantiation is documented where the template is
            if not is_documented(lines, number):
                yield f"{name}:{number + 1}: exported, but no /// comment says what it is"


def is_documented(lines, number):
    """Walks up over the declarations that stand in the same block."""
    for above in reversed(lines[:number]):
        text = above.strip()
        if text.startswith("///"):
            return True
        if not text or text.startswith(("//", "#")) or re.match(r"(class|struct|namespace|public:)", text):
            return False
    return False
