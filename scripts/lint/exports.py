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
        tree.notes.append("exports: not looked at, since no --build was given")
        return
    library = tree.build / "zeltools" / "libzeltools.so"
    if not library.exists():
        yield f"{library}: not built"
        return
    marked = marked_names(tree)
    listing = subprocess.run(["nm", "-D", "-C", "--defined-only", library], check=True, capture_output=True, text=True)
    for line in listing.stdout.splitlines():
        symbol = line.split(" ", 2)[2] if not line.startswith(" ") else line.split(None, 1)[1]
        names = names_of(symbol)
        if names[0] == "platform" or not marked.intersection(names):
            yield f"{library.name}: exports {symbol}, which no public header marks ZEL_API"


def marked_names(tree):
    """The classes and functions that follow ZEL_API, and those that an exported instantiation names."""
    names = set()
    for header in tree.public_headers:
        text = re.sub(r"//.*", "", tree.text(header))
        names.update(re.findall(r"\b(?:class|struct|union)\s+ZEL_API\s+(\w+)", text))
        for match in re.finditer(r"\bZEL_API\b([^;{]*)", text):
            names.update(declared(match.group(1)))
    return names


def declared(declaration):
    """The name of the function or object that is declared."""
    if re.search(r"\boperator\b", declaration):
        yield "operator"
    else:
        function = re.search(r"(\w+)\s*\(", declaration) or re.search(r"(\w+)\s*(?:\[.*\])?\s*(?:=.*)?$", declaration)
        if function:
            yield function[1]


def names_of(symbol):
    """The outermost and the innermost name of a demangled symbol: CXTString and Find of
    "bool CXTString<char>::Find<int>(char const*) const", operator for a free one. Inline code of public headers may
    need something of namespace detail, which is marked like the rest."""
    symbol = ABOUT.sub("", symbol).split("@")[0]
    if re.match(r"(?:[\w:<>, *&]+ )?operator\b", symbol):
        return ["operator"]
    symbol = symbol.split("::operator")[0]
    depth, plain = 0, ""
    for character in symbol.removesuffix(" const"):
        depth -= character == ">"
        if depth == 0 and character == "(":
            break
        if depth == 0 and character == " ":
            plain = ""  # what stood before was the type of the result
        elif depth == 0 and character != ">":
            plain += character if character != "<" else ""
        depth += character == "<"
    parts = plain.strip("*&").removeprefix("detail::").split("::")
    return [parts[0], parts[-1]]
