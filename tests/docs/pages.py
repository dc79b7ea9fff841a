"""The project's pages, and what stands in them for a reader to type, to write or to follow."""

import re
import sys
from dataclasses import dataclass, field
from pathlib import Path


@dataclass
class Block:
    """A block of code. "```sh" names its language; "```sh link" also the session that runs it, and
    "```cpp link/main.cpp" the file of that session which it is."""

    page: str
    line: int
    language: str
    name: str
    lines: list = field(default_factory=list)

    def __str__(self):
        return f"{self.page}:{self.line}"


@dataclass
class Page:
    path: Path  # inside the project
    text: str
    blocks: list
    spans: list  # (line, code) of code inside the text
    links: list  # (line, target)
    anchors: set  # of headings


def read_page(project, path):
    text = (project / path).read_text(encoding="utf-8")
    page = Page(path, text, [], [], [], set())
    block = None
    for number, line in enumerate(text.splitlines(), 1):
        fence = re.match(r"\s*```(.*)$", line)
        if fence and block is None:
            language, _, name = fence[1].strip().partition(" ")
            block = Block(str(path), number, language, name)
            page.blocks.append(block)
        elif fence:
            block = None
        elif block is not None:
            block.lines.append(line)
        else:
            page.spans += [(number, code) for code in re.findall(r"`([^`]+)`", line)]
            prose = re.sub(r"`[^`]+`", "", line)
            page.links += [(number, target) for target in re.findall(r"\]\(([^)\s]+)\)", prose)]
            heading = re.match(r"#+ (.*)", line)
            if heading:
                words = re.sub(r"[^\w\- ]", "", heading[1].lower())
                page.anchors.add(words.replace(" ", "-"))
    return page


def all_pages(project):
    found = sorted(project.glob("*.md")) + sorted(project.glob("*/*.md"))
    return [read_page(project, path.relative_to(project)) for path in found if path.parent.name != "build"]


def fail_with(problems):
    for problem in problems:
        print(problem, file=sys.stderr)
    sys.exit(1 if problems else 0)
