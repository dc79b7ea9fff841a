#!/usr/bin/env -S python3 -B
"""commands.py PROJECT BUILD: the commands that pages name are there, with their options, presets, targets and tests, and the
page on building has every option of the build, with its default.

Looked at are the blocks "```sh", the lines of texts that begin with "$", and code inside the text that begins with a program
of this project. The lines of the blocks are run, too: a block with a name is a session that a script of the tests runs, and
other lines stand in such a script themselves. Those below are the exception."""

import json
import re
import shlex
import subprocess
import sys
from functools import lru_cache
from pathlib import Path

from pages import all_pages, fail_with

project, build = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
presets = json.loads((project / "CMakePresets.json").read_text())
scripts = "\n".join(path.read_text() for path in (project / "tests").rglob("*.sh"))
lists = {path: path.read_text() for path in project.rglob("CMakeLists.txt") if "build" not in path.parts}

NOT_RUN = {
    "./test": "is what runs the tests",
    "tools/lint": "is what ./test begins and ends with",
    "tools/valgrind-tests": "takes longer than everything else",
    "tools/thread-sanitizer": "takes longer than everything else",
    "tools/fresh-machine": "needs root and another system in a folder",
    "tools/window-pictures": "has one look taken by the window's tests, and all take minutes",
    "tools/update-abi": "changes what the tests compare with",
}


@lru_cache(maxsize=None)
def output(*command):
    """What a program says; nothing when there is none."""
    try:
        return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=60).stdout
    except FileNotFoundError:
        return ""


def names_of(kind):
    return {preset["name"] for preset in presets[kind] if not preset.get("hidden")}


def options_of(words):
    return [word.split("=")[0] for word in words if re.match(r"--?[a-zA-Z]", word)]


def missing_options(words, help_text, program):
    """Of those that a program's help does not name."""
    named = set(re.findall(r"(?<![\w-])--?[a-zA-Z][\w-]*", help_text))
    return [f"{program} has no option {option}" for option in options_of(words) if option not in named]


def argument(words, option):
    return words[words.index(option) + 1] if option in words[:-1] else None


def missing_target(name):
    is_declared = any(re.search(rf"\(\s*{re.escape(name)}\b", text) for text in lists.values())
    return [] if is_declared else [f"no target is called {name}"]


def missing_preset(words, kind):
    preset = argument(words, "--preset")
    known = names_of(kind)
    return [f"no preset for this is called {preset}"] if preset and preset not in known else []


def check_cmake(words):
    if "--install" in words:
        return missing_options(words, output("cmake", "--help") + " --prefix --strip --component", "cmake")
    if "--build" not in words:
        variables = [re.match(r"-D(NORLIS_\w+)", word) for word in words]
        options = (project / "CMakeLists.txt").read_text()
        return missing_preset(words, "configurePresets") + [
            f"the build has no option {variable[1]}" for variable in variables if variable and variable[1] not in options
        ]
    problems = missing_preset(words, "buildPresets")
    after_target = words[words.index("--target") + 1 :] if "--target" in words else []
    for target in after_target:
        problems += missing_target(target)
    folder = re.fullmatch(r"build/(\w+)", argument(words, "--build") or "")
    if folder and folder[1] not in names_of("configurePresets"):
        problems.append(f"no preset builds in {folder[0]}")
    return problems


def check_ctest(words):
    problems = missing_preset(words, "testPresets") + missing_options(words, output("ctest", "--help"), "ctest")
    for option, shown in (("-R", "-N"), ("-L", "--print-labels")):
        pattern = argument(words, option)
        listed = output("ctest", "--test-dir", str(build), shown)
        if pattern and not any(re.search(pattern, line) for line in listed.splitlines()[2:]):
            problems.append(f"no test matches {option} {pattern}")
    return problems


def check_script(words):
    """Also the words that a script is given, such as the groups of packages, stand in it."""
    path = project / words[0]
    if not path.is_file():
        return [f"there is no {words[0]}"]
    text = path.read_text()
    return missing_options(words, text, words[0]) + [
        f"{words[0]} knows no {word}" for word in words[1:] if not re.search(rf"[\[\"]{re.escape(word)}[\]\"]", text)
    ]


def check_test(words):
    """./test REGEX, with a real one; ./test --all"""
    given = words[1:2]
    if not given or given[0] in ("REGEX", "--all"):
        return missing_options(given, (project / "test").read_text(), "./test")
    return check_ctest(["ctest", "-R", given[0]])


def check_run(words):
    return missing_options(words[1:], output(str(project / "run"), "--help"), "./run")


def check_terminal_program(words):
    program = str(build / "apps/norlis-cloud")
    commands = words[1:2] if len(words) > 1 and not words[1].startswith("-") else []
    if commands and not re.search(rf"^  {re.escape(commands[0])}\b", output(program, "--help"), re.M):
        return [f"norlis-cloud has no command {commands[0]}"]
    return missing_options(words, output(program, *commands, "--help"), "norlis-cloud " + " ".join(commands))


def check_lupdate(words):
    """In the window's folder."""
    files = [word for word in words[1:] if word.endswith(".ts")]
    known = output("lupdate", "-help") or " ".join(words)
    return missing_options(words, known, "lupdate") + [
        f"there is no {file}" for file in files if not (project / "apps/window" / file).is_file()
    ]


def check_window_program(words):
    return missing_options(words, output(str(build / "apps/norlis-documents"), "--help"), "norlis-documents")


def check_built_program(words):
    _, preset, place = words[0].split("/", 2)
    problems = [] if preset in names_of("configurePresets") else [f"no preset builds in build/{preset}"]
    problems += missing_target(Path(place).name)
    if (build / place).is_file() and options_of(words[1:]):
        problems += missing_options(words[1:], output(str(build / place), "--help"), words[0])
    return problems


@lru_cache(maxsize=None)
def options_of_all_programs():
    terminal_program = str(build / "apps/norlis-cloud")
    commands = re.findall(r"^  (\w+)", output(terminal_program, "--help"), re.M)
    helps = [output(terminal_program, command, "--help") for command in commands]
    helps += [output(str(project / "run"), "--help"), output("cmake", "--help"), " --component"]
    return "\n".join(helps)


def check_option(words):
    """An option that the text names without its program."""
    return ["no program has the option " + words[0]] if missing_options(words, options_of_all_programs(), "") else []


CHECKS = {
    "cmake": check_cmake,
    "ctest": check_ctest,
    "./run": check_run,
    "./test": check_test,
    "norlis-cloud": check_terminal_program,
    "norlis-documents": check_window_program,
    "lupdate": check_lupdate,
    "doxygen": lambda words: [] if (project / words[1]).is_file() else [f"there is no {words[1]}"],
}


def check_for(program):
    if re.match(r"build/\w+/.", program):
        return check_built_program
    if program.startswith("tools/"):
        return check_script
    if re.match(r"--\w", program):
        return check_option
    return CHECKS.get(program)


def commands_of(line):
    """The commands of a line, as lists of words."""
    found = [[]]
    for word in shlex.split(line, comments=True):
        if word in ("&&", "||", "|", ";"):
            found.append([])
        else:
            found[-1].append(word)
    for words in found:
        while words and re.match(r"\w+=", words[0]):
            words.pop(0)  # set for the command
    return [words for words in found if words]


def problems_of_line(line, may_be_anything):
    problems = []
    for words in commands_of(line):
        check = check_for(words[0])
        if check:
            problems += check(words)
        elif not may_be_anything:
            problems.append(f"no test knows {words[0]}")
    return problems


def is_command(code):
    program, *arguments = code.split(" ")
    return check_for(program) and (arguments or program.startswith("--"))


problems = []
checked = 0
for page in all_pages(project):
    lines = [(line, code, True) for line, code in page.spans if is_command(code)]
    for block in page.blocks:
        is_run = block.name and re.search(rf"session {re.escape(str(page.path))} {block.name}\b", scripts)
        if block.language == "sh" and block.name and not is_run:
            problems.append(f"{block}: no test runs the session {block.name}")
        for offset, line in enumerate(block.lines, block.line + 1):
            shown = re.match(r"\s*\$ (.*)", line) if block.language == "text" else None
            if shown:
                lines.append((offset, shown[1].replace("...", ""), True))
            elif block.language == "sh" and line.strip():
                stands_in_script = bool(is_run) or line.strip() in scripts
                lines.append((offset, line, stands_in_script))
                if not stands_in_script and line.split()[0] not in NOT_RUN:
                    problems.append(f"{page.path}:{offset}: no test runs this")
    checked += len(lines)
    for number, line, may_be_anything in lines:
        problems += [f"{page.path}:{number}: {problem}" for problem in problems_of_line(line, may_be_anything)]
if checked == 0:
    problems.append("No command was found")
build_options = {
    name: "`ON`, `OFF`" if default == "${PROJECT_IS_TOP_LEVEL}" else f"`{default}`"
    for text in lists.values()
    for name, default in re.findall(r'^option\((NORLIS_\w+) "[^"]*" (\S+)\)', text, re.M)
    + re.findall(r"^set\((NORLIS_\w+) (\S+) CACHE ", text, re.M)
}
described = dict(re.findall(r"^\| `(NORLIS_\w+)` \| ([^|]*) \|", (project / "docs/packaging.md").read_text(), re.M))
if described != build_options:
    problems.append(f"docs/packaging.md describes the options {described}, but there are {build_options}")
print(checked, "commands")
fail_with(problems)
