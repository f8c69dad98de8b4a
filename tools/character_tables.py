#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the character tables of the library from Python's own copy of the Unicode character database.

    tools/character_tables.py            # rewrites the two .inc files beside their sources

Only the basic plane counts, since the functions that read the tables see one UTF-16 unit at a time.
"""

import pathlib
import unicodedata

ROOT = pathlib.Path(__file__).resolve().parent.parent / "zeltools"
UNITS = [unit for unit in range(0x80, 0x10000) if not 0xD800 <= unit <= 0xDFFF]


def mapped(unit, method):
    """The simple mapping of a unit, or the unit itself where it has none or one beyond the plane."""
    text = getattr(chr(unit), method)()
    if len(text) > 1 and method == "upper":
        text = chr(unit).title()  # Greek with iota: the full mapping is longer, the title form is the simple one
    return ord(text) if len(text) == 1 and ord(text) < 0x10000 else unit


def case_pairs():
    """Pairs of upper and lower case that map onto each other. One-way mappings would merge different names."""
    for upper in UNITS:
        lower = mapped(upper, "lower")
        if lower != upper and lower >= 0x80 and mapped(lower, "upper") == upper:
            yield upper, lower


def case_ranges():
    """Runs of pairs with one distance; neighbours stand one or two units apart (Aa Bb in turn)."""
    runs = []
    for upper, lower in case_pairs():
        run = runs[-1] if runs else None
        if run and run["delta"] == lower - upper and upper - run["last"] in (1, 2):
            step = upper - run["last"]
            if run["step"] in (0, step):
                run["last"], run["step"] = upper, step
                continue
        runs.append({"first": upper, "last": upper, "step": 0, "delta": lower - upper})
    return [(run["first"], run["last"], run["step"] or 1, run["delta"]) for run in runs]


def class_ranges(belongs):
    """Runs of neighbouring units that belong to a class."""
    runs = []
    for unit in filter(belongs, UNITS):
        if runs and runs[-1][1] == unit - 1:
            runs[-1][1] = unit
        else:
            runs.append([unit, unit])
    return runs


def is_digit(unit):
    return unicodedata.category(chr(unit)) == "Nd" or unit in (0xB2, 0xB3, 0xB9)


def is_letter(unit):
    cased = mapped(unit, "lower") != unit or mapped(unit, "upper") != unit
    return unicodedata.category(chr(unit)) in ("Lu", "Ll", "Lt", "Lm", "Lo", "Nl") or cased


def write(path, what, rows):
    version = unicodedata.unidata_version
    head = f"// SPDX-License-Identifier: MIT\n// {what}; Unicode {version}.\n// Written by tools/character_tables.py.\n"
    lines, line = [], ""
    for row in rows:
        cell = "{" + ", ".join(str(n) if i > 1 else f"0x{n:04X}" for i, n in enumerate(row)) + "},"
        if len(line) + len(cell) + 1 > 120:
            lines.append(line)
            line = ""
        line = f"{line} {cell}" if line else cell
    (ROOT / path).write_text(head + "\n".join(lines + [line]) + "\n")


if __name__ == "__main__":
    write("platform/case_pairs.inc", "Upper case units: first, last, step, distance to the lower case", case_ranges())
    write("foundation/digits.inc", "Units of decimal digits: first, last", class_ranges(is_digit))
    write("foundation/letters.inc", "Units of letters: first, last", class_ranges(is_letter))
