# SPDX-License-Identifier: MIT
"""A lint that cannot fail is worse than none. Each row puts one fault into a tree that passes, and the check must name
the file that has it."""

import pathlib
import subprocess
import sys
import tempfile

LINT = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "lint"
LICENCE = "// SPDX-License-Identifier: MIT\n"

GOOD = {
    ".clang-format": "BasedOnStyle: LLVM\n",
    "docs/architecture.md": "```floors\nplatform\nfoundation\nfiles/paths\nfiles\n```\n"
                            "```exceptions\nzeltools/foundation/start*.cpp: files\n```\n",
    "zeltools/foundation/CMakeLists.txt": "# SPDX-License-Identifier: MIT\nzel_folder(PUBLIC a.h PRIVATE start.cpp)\n",
    "zeltools/foundation/a.h": LICENCE + "#pragma once\n#define ZEL_API\n\n/// One.\nZEL_API int one();\n"
                                         "ZEL_API int one(int);\n",
    "zeltools/foundation/start.cpp": LICENCE + "#include <zeltools/files/names.h>\n",
    "zeltools/files/CMakeLists.txt": "# SPDX-License-Identifier: MIT\nzel_folder(PUBLIC names.h)\n",
    "zeltools/files/names.h": LICENCE + "#pragma once\n#include <cstdio>\n#include <zeltools/foundation/a.h>\n",
    "zeltools/resources/strings.inc": LICENCE + 'ZEL_ROW(1, u"%d of %s", u"%d de "\n        u"%s")\n',
    "fuzz/CMakeLists.txt": "# SPDX-License-Identifier: MIT\nzel_fuzzer(name)\n",
    "fuzz/name_fuzzer.cpp": LICENCE,
    "fuzz/corpus/name/seed": "x",
}

A = "zeltools/foundation/a.h"
NAMES = "zeltools/files/names.h"
STRINGS = "zeltools/resources/strings.inc"

# check, what is wrong, file that the check must name, its content (None: the file is missing), file that is changed
FAULTS = [
    ("plain", "no licence line", A, "#pragma once\n"),
    ("plain", "half a merge", A, LICENCE + "<" * 7 + " HEAD\n"),
    ("formatting", "two blanks", A, LICENCE + "int  a;\n"),
    ("includes", "a lower floor looks up", "zeltools/foundation/b.h", LICENCE + "#include <zeltools/files/names.h>\n"),
    ("includes", "a header of the system", NAMES, LICENCE + "#include <unistd.h>\n"),
    ("includes", "a folder below the system's", NAMES, LICENCE + "#include <sys/stat.h>\n"),
    ("includes", "Qt in the library", NAMES, LICENCE + "#include <QString>\n"),
    ("includes", "a room below its own floor", "zeltools/files/paths/b.h",
     LICENCE + '#include "zeltools/files/names.h"\n'),
    ("registered", "a test that nobody builds", "tests/files/names_test.cpp", LICENCE),
    ("registered", "a header that nobody installs", "zeltools/files/more.h", LICENCE),
    ("registered", "a header that the umbrella forgot", "zeltools/zeltools.h", LICENCE + "#include <zeltools/files/names.h>\n"),
    ("registered", "a fuzzer that nobody builds", "fuzz/other_fuzzer.cpp", LICENCE),
    ("registered", "a fuzzer without seeds", "fuzz/name_fuzzer.cpp", None, "fuzz/corpus/name/seed"),
    ("documented", "an exported function without a word", A, LICENCE + "#define ZEL_API\n\nZEL_API int one();\n"),
    ("documented", "a word about another function", A, LICENCE + "/// One.\nZEL_API int one();\n\nZEL_API int two();\n"),
    ("standalone", "a name from a header that is not included", A, LICENCE + "#pragma once\nstd::string text;\n"),
    ("messages", "no French", STRINGS, LICENCE + 'ZEL_ROW(1, u"one", u"")\n'),
    ("messages", "another conversion in French", STRINGS, LICENCE + 'ZEL_ROW(1, u"%s", u"%d")\n'),
    ("messages", "the same number twice", STRINGS, LICENCE + 'ZEL_ROW(1, u"a", u"b")\nZEL_ROW(1, u"c", u"d")\n'),
]


def write(root, files):
    for name, content in files.items():
        path = root / name
        if content is None:
            path.unlink()
            continue
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(content, encoding="utf-8")


def lint(root, *arguments):
    command = [sys.executable, "-B", LINT, "--root", root, *arguments]
    return subprocess.run(command, capture_output=True, text=True)


def cycle(root):
    write(root, {NAMES: LICENCE + '#include "zeltools/files/b.h"\n',
                 "zeltools/files/b.h": LICENCE + '#include "zeltools/files/names.h"\n'})
    return lint(root, "includes"), "zeltools/files/b.h: includes itself"


def leak(root):
    """A real library with one symbol too many."""
    build = root / "build"
    (build / "zeltools").mkdir(parents=True)
    source = "namespace detail { template <class T> T leaked(T t) { return t; } template int leaked(int); } int one() { return 1; }"
    subprocess.run(["g++", "-shared", "-fPIC", "-x", "c++", "-", "-o", build / "zeltools" / "libzeltools.so"], input=source,
                   text=True, check=True)
    return lint(root, "--build", build, "exports"), "exports int detail::leaked<int>(int)"


def main():
    failures = []

    def scenario(title, change, named):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            write(root, GOOD)
            result, wanted = change(root)
            faulty = [line for line in result.stdout.splitlines() if not line.startswith(("lint:", "note:"))]
            exact = [line for line in faulty if line.startswith(wanted) or wanted in line]
            if named and (result.returncode != 1 or not exact or len(exact) != len(faulty)):
                failures.append(f"{title}: expected only faults of {wanted}, got\n{result.stdout}{result.stderr}")
            if not named and (result.returncode != 0 or faulty):
                failures.append(f"{title}: expected no fault, got\n{result.stdout}{result.stderr}")

    scenario("a good tree", lambda root: (lint(root), ""), named=False)
    for check, title, named, content, *changed in FAULTS:
        scenario(f"{check}: {title}",
                 lambda root: (write(root, {(changed or [named])[0]: content}), (lint(root, check), named + ":"))[1], named=True)
    scenario("includes: a cycle", cycle, named=True)
    scenario("exports: a leak", leak, named=True)
    print("\n".join(failures) or f"{len(FAULTS) + 3} trees judged as they should be")
    return 1 if failures else 0


sys.exit(main())
