# SPDX-License-Identifier: MIT
"""The files that the checks look at, and what several checks ask of them."""

import functools
import pathlib
import re
import subprocess


class Tree:
    def __init__(self, root, build=None):
        self.root = pathlib.Path(root).resolve()
        self.build = pathlib.Path(build).resolve() if build else None
        self.notes = []  # worth reading, but no fault

    @functools.cached_property
    def files(self):
        """Every file that belongs to the project, relative to the root: the tracked ones, or, where the root is not a
        repository of its own, all but what was built. A checkout may belong to another user than the one who checks."""
        if (self.root / ".git").exists():
            command = ["git", "-c", "safe.directory=*", "-C", self.root, "ls-files", "-z"]
            listed = subprocess.run(command, check=True, capture_output=True).stdout
            names = [name.decode() for name in listed.split(b"\0") if name]
        else:
            names = [str(path.relative_to(self.root)) for path in self.root.rglob("*") if path.is_file()]
            names = [name for name in names if not name.startswith(("build/", "dist/"))]
        return sorted(name for name in names if (self.root / name).is_file())

    def matching(self, pattern):
        return [name for name in self.files if re.fullmatch(pattern, name)]

    @property
    def sources(self):
        return self.matching(r".*\.(h|cpp)")

    @functools.cached_property
    def public_headers(self):
        """The headers that are installed: those that a folder of the library lists after PUBLIC."""
        found = []
        for listing in self.matching(r"zeltools/.*CMakeLists\.txt"):
            folder = listing.rpartition("/")[0]
            for block in re.findall(r"\bPUBLIC\b([^)]*?)(?:\bPRIVATE\b|\))", self.code(listing)):
                found += [f"{folder}/{name}" for name in block.split() if name.endswith(".h")]
        return sorted(set(found))

    @functools.lru_cache(maxsize=None)
    def text(self, name):
        return (self.root / name).read_text(encoding="utf-8")

    def code(self, name):
        """A CMake list without its comments."""
        return re.sub(r"#.*", "", self.text(name))
