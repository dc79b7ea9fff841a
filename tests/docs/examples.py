#!/usr/bin/env -S python3 -B
"""examples.py PROJECT: what a page gives as code is part of something that the tests compile, or say so otherwise.

A block of C++, CMake or QML stands, line by line and apart from its indentation, in a file of the tests or examples, unless a
session of its page writes it to a file. A block in any other language is a text that is not meant to be typed."""

import sys
import textwrap
from pathlib import Path

from pages import all_pages, fail_with

project = Path(sys.argv[1]).resolve()


def lines_of(text):
    return [line.strip() for line in text.splitlines() if line.strip()]


compiled = []
for folder in ("tests", "testkit/examples", "examples"):
    for ending in ("*.cpp", "*.h", "*.qml", "*.sh", "CMakeLists.txt"):
        compiled += [lines_of(path.read_text(encoding="utf-8")) for path in (project / folder).rglob(ending)]


def is_compiled(block):
    wanted = lines_of(textwrap.dedent("\n".join(block.lines)))
    return any(
        lines[start : start + len(wanted)] == wanted
        for lines in compiled
        for start in range(len(lines) - len(wanted) + 1)
        if lines[start] == wanted[0]
    )


problems = []
for page in all_pages(project):
    sessions = {block.name for block in page.blocks if block.language == "sh" and block.name}
    for block in page.blocks:
        if block.language not in ("sh", "cpp", "cmake", "qml", "text"):
            problems.append(f'{block}: "{block.language}" is none of sh, cpp, cmake, qml and text')
        elif block.language in ("cpp", "cmake", "qml"):
            if block.name and block.name.partition("/")[0] not in sessions:
                problems.append(f"{block}: no session of the page writes {block.name}")
            elif not block.name and not is_compiled(block):
                problems.append(f"{block}: no test compiles this")
fail_with(problems)
