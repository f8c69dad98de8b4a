# SPDX-License-Identifier: MIT
"""Who may include whom: no cycle between files, no lower floor above itself, no header of the system above
platform/linux/, no Qt but in desktop/, the viewer, and the benchmarks that run beside it.

The floors and the files that may break them stand in docs/architecture.md, in blocks fenced as ```floors (lowest
first, one a line) and ```exceptions (pattern: floor floor...), so that the page cannot drift from the rule.
"""

import fnmatch
import re

INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]', re.MULTILINE)

OURS = "zeltools/"

QT_FOLDERS = ("desktop/", "apps/zelview/", "tests/desktop/", "benchmarks/")

# C's own headers are spelt <cstdio> here, so whatever else ends in .h is the system's; those for the processor's vector
# instructions and for OpenMP come with the compiler, on every system.
SYSTEM = re.compile(r"(?!zeltools/|[a-z]mmintrin\.h$|omp\.h$).*\.h$")


def check(tree):
    included = {name: list(includes_of(tree, name)) for name in tree.sources}
    yield from system_headers(included)
    yield from floors(tree, included)
    yield from cycles(included)


def includes_of(tree, name):
    text = tree.text(name)
    for match in INCLUDE.finditer(text):
        yield text.count("\n", 0, match.start()) + 1, match.group(1)


def system_headers(included):
    for name, lines in included.items():
        for line, header in lines:
            if re.match(r"Q[A-Z]|Qt", header) and not name.startswith(QT_FOLDERS):
                yield f"{name}:{line}: <{header}> is Qt's, which only desktop/, the viewer and benchmarks may know"
            if (name.startswith(OURS) and not name.startswith("zeltools/platform/linux/")
                    and SYSTEM.match(header)):
                yield f"{name}:{line}: <{header}> is the system's, which only platform/linux/ may know"


def block(tree, kind):
    found = re.search(rf"^```{kind}\n(.*?)^```", tree.text("docs/architecture.md"), re.MULTILINE | re.DOTALL)
    return [line for line in found.group(1).splitlines() if line.strip()] if found else []


def floors(tree, included):
    order = [line.split()[0].rstrip("/") for line in block(tree, "floors")]
    if not order:
        yield "docs/architecture.md: has no ```floors block"
        return
    allowed = []
    for line in block(tree, "exceptions"):
        pattern, _, targets = line.partition(":")
        if not fnmatch.filter(included, pattern.strip()):
            tree.notes.append(f"docs/architecture.md: no file matches the exception {pattern.strip()}")
        allowed.append((pattern.strip(), [target.rstrip("/") for target in targets.split()]))

    def floor_of(name):
        inside = name.removeprefix(OURS)
        matches = [floor for floor in order if inside.startswith(floor + "/")]
        return max(matches, key=len, default=None)  # files/paths is not files

    for name, lines in included.items():
        if not name.startswith(OURS):
            continue
        own = floor_of(name)
        if own is None:
            if "/" in name.removeprefix(OURS):
                yield f"{name}: stands on no floor of docs/architecture.md"
            continue
        for line, header in lines:
            other = floor_of(header) if header.startswith(OURS) else None
            if other is None or order.index(other) <= order.index(own):
                continue
            if not any(fnmatch.fnmatch(name, pattern) and other in targets for pattern, targets in allowed):
                yield f"{name}:{line}: {own}/ stands below {other}/ and may not include <{header}>"


def cycles(included):
    """Depth first; a file met again while it is still open closes a cycle."""
    edges = {name: [header for _, header in lines if header in included and header != name]
             for name, lines in included.items()}
    state, path, reported = {}, [], []

    def visit(name):
        state[name] = "open"
        path.append(name)
        for header in edges[name]:
            if state.get(header) == "open":
                reported.append(path[path.index(header):] + [header])
            elif header not in state:
                visit(header)
        path.pop()
        state[name] = "closed"

    for name in sorted(edges):
        if name not in state:
            visit(name)
    for cycle in reported:
        yield f"{cycle[0]}: includes itself through {' -> '.join(cycle[1:])}"
