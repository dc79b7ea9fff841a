#!/usr/bin/env -S python3 -B
"""session.py PROJECT PAGE NAME: what a reader of a page does in a session, as a script for the shell.

The session are the page's blocks "```sh NAME". Blocks such as "```cpp NAME/main.cpp" are files that are written first, into
the folder in which the script runs. None of them replaces a file."""

import shlex
import sys
from pathlib import Path

from pages import fail_with, read_page

project, path, name = Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3]
page = read_page(project, path)
session = [block for block in page.blocks if block.language == "sh" and block.name == name]
if not session:
    fail_with([f"{path} has no session {name}"])
print("set -o noclobber")
for block in page.blocks:
    folder, _, file = block.name.partition("/")
    if folder == name and file:
        content = "".join(line + "\n" for line in block.lines)
        print(f"printf %s {shlex.quote(content)} >{shlex.quote(file)}")
for block in session:
    print("\n".join(block.lines))
