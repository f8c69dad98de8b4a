# SPDX-License-Identifier: MIT
"""The shared library exports what its public headers mark ZEL_API, and nothing else. A symbol that slips out is one
that some host will bind to."""

import re
import subprocess

# Words that stand before the name of what a symbol belongs to.
ABOUT = re.compile(r"^(?:(?:guard|reference temporary(?: #\d+)?) (?:variable )?for |VTT for |vtable for |typeinfo (?:name )?for "
                   r"|(?:non-virtual|virtual|covariant return) thunk to |construction vtable for |transaction clone for )+")


def check(tree):
    if tree.build is None:
        return
    library = tree.build / "zeltools" / "libzeltools.so"
    if not library.exists():
        yield f"{library}: not built"
        return
    marked = marked_names(tree)
    listing = subprocess.run(["nm", "-D", "-C", "--defined-only", library], check=True, capture_output=True, text=True)
    for line in listing.stdout.splitlines():
        symbol = line.split(" ", 2)[2] if not line.startswith(" ") else line.split(None, 1)[1]
        if owner_of(symbol) not in marked:
            yield f"{library.name}: exports {symbol}, which no public header marks ZEL_API"


def marked_names(tree):
    """The classes and functions that follow ZEL_API, and those that an exported instantiation names."""
    names = set()
    for header in tree.public_headers:
        text = re.sub(r"//.*", "", tree.text(header))
        for match in re.finditer(r"\bZEL_API\b([^;{]*)", text):
            names.update(declared(match.group(1)))
    return names


def declared(declaration):
    kind = re.match(r"\s*(?:class|struct|union|enum(?:\s+class)?)\s+(\w+)", declaration)
    if kind:
        yield kind[1]
    elif re.search(r"\boperator\b", declaration):
        yield "operator"
    else:
        function = re.search(r"(\w+)\s*\(", declaration) or re.search(r"(\w+)\s*(?:\[.*\])?\s*(?:=.*)?$", declaration)
        if function:
            yield function[1]


def owner_of(symbol):
    """The outermost name of a demangled symbol: CXTString of
    "bool CXTString<char>::Find<int>(char const*) const", operator for a free one."""
    symbol = ABOUT.sub("", symbol.replace("(anonymous namespace)", "anonymous"))
    symbol = symbol.split("@")[0]
    if re.match(r"(?:[\w:<>, *&]+ )?operator\b", symbol):
        return "operator"
    depth, start, last = 0, 0, len(symbol)
    for place, character in enumerate(symbol):
        if character == "<":
            depth += 1
        elif character == ">":
            depth -= 1
        elif depth == 0 and character == " ":
            start = place + 1  # what stood before was the type of the result
        elif depth == 0 and character == "(":
            last = place
            break
    return re.match(r"\W*(\w*)", symbol[start:last])[1]
