#!/usr/bin/env -S python3 -B
"""links.py PROJECT: every link inside the project, and every file that a page names, leads somewhere."""

import re
import sys
from pathlib import Path

from pages import all_pages, fail_with, read_page

FOLDERS = "apps base benchmarks cmake contracts docs examples files fuzz host library protocol qml samples testkit tests tools"

project = Path(sys.argv[1]).resolve()
problems = []
links = 0


def exists(path):
    """Also of a class, which is named by its files without their endings, and of a pattern."""
    return any(project.glob(path)) or any(project.glob(path + ".h"))


for page in all_pages(project):
    for line, target in page.links:
        if re.match(r"[a-z]+:", target):
            continue
        links += 1
        name, _, anchor = target.partition("#")
        path = (project / page.path).parent / name if name else project / page.path
        if not path.exists():
            problems.append(f"{page.path}:{line}: there is no {target}")
        elif anchor and anchor not in read_page(project, path.resolve().relative_to(project)).anchors:
            problems.append(f"{page.path}:{line}: {name or 'this page'} has no heading for #{anchor}")
    for line, code in page.spans:
        if re.fullmatch(rf"({FOLDERS.replace(' ', '|')})/[\w./*-]*", code) and not exists(code.rstrip("/")):
            problems.append(f"{page.path}:{line}: there is no {code}")
if links == 0:
    problems.append("No link was found")
fail_with(problems)
