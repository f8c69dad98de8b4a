# SPDX-License-Identifier: MIT
"""Every row of the string table has a number of its own and says something in English and in French, with the same
conversions in the same order: a format that finds another argument than it expects is a crash in one language only."""

import re

TABLE = "zeltools/resources/strings.inc"
LITERAL = r'(?:u?"(?:[^"\\]|\\.)*"\s*)+'
ROW = re.compile(rf"^\w+\(\s*([^,]+?)\s*,\s*({LITERAL}),\s*({LITERAL})\)", re.MULTILINE)
CONVERSION = re.compile(r"%(?!%)[-+ #0]*[\d*]*(?:\.[\d*]+)?(?:hh?|ll?|I64|I32|[Lzjt])?[a-zA-Z]")


def check(tree):
    if TABLE not in tree.files:
        return
    text = re.sub(r"^\s*//.*", "", tree.text(TABLE), flags=re.MULTILINE)
    rows = list(ROW.finditer(text))
    openings = len(re.findall(r"^\w+\(", text, re.MULTILINE))
    if len(rows) != openings or not rows:
        yield f"{TABLE}: {openings} rows begin, {len(rows)} can be read as number, English, French"
    numbers = set()
    for row in rows:
        number, english, french = row[1], content(row[2]), content(row[3])
        if number in numbers:
            yield f"{TABLE}: {number} stands twice"
        numbers.add(number)
        if not english.strip() or not french.strip():
            yield f"{TABLE}: {number} is empty in one language"
        if CONVERSION.findall(english.replace("%%", "")) != CONVERSION.findall(french.replace("%%", "")):
            yield f"{TABLE}: {number} has other conversions in French than in English"


def content(literals):
    return "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', literals))
