#!/usr/bin/env -S python3 -B
"""doctor.py PROJECT BUILD SERVER: the table of docs/servers.md that begins with this server is what `norlis-cloud doctor` says of each."""

import json
import os
import subprocess
import sys
import tempfile
from pathlib import Path

from pages import fail_with

project, build = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
terminal_program = build / "apps/norlis-cloud"
os.environ["QT_QPA_PLATFORM"] = "offscreen"


def table():
    """Server to capability to finding."""
    lines = (project / "docs/servers.md").read_text(encoding="utf-8").splitlines()
    start = next(number for number, line in enumerate(lines) if line.startswith(f"| Capability | {sys.argv[3]} |"))
    rows = []
    for line in lines[start:]:
        if not line.startswith("|"):
            break
        rows.append([cell.strip() for cell in line.strip("|").split("|")])
    return {
        server: {row[0]: row[column] for row in rows[2:]}
        for column, server in enumerate(rows[0])
        if server != "Capability"
    }


def probe(kind):
    server = subprocess.Popen(
        [build / "tests/servers/serve", kind], stdout=subprocess.PIPE, text=True, encoding="utf-8"
    )
    try:
        address, password = server.stdout.readline().strip(), server.stdout.readline().strip()
        with tempfile.TemporaryDirectory() as data:
            account = ["--data", data]
            login = [terminal_program, "login", *account, "--service", address]
            subprocess.run(login, input=password, text=True, check=True, stdout=subprocess.DEVNULL, timeout=60)
            doctor = [terminal_program, "doctor", "--json", *account]
            return json.loads(subprocess.run(doctor, check=True, stdout=subprocess.PIPE, text=True, timeout=60).stdout)
    finally:
        server.terminate()
        server.wait()


def comparable(findings):
    """Another release of the software is no difference."""
    return {**findings, "software": findings.get("software", "").split("/")[0]}


problems = []
for kind, shown in table().items():
    said = comparable(probe(kind))
    shown = comparable(shown)
    for name in sorted(said.keys() | shown.keys()):
        if said.get(name) != shown.get(name):
            problems.append(f'{kind}, {name}: the page shows "{shown.get(name)}", doctor says "{said.get(name)}"')
if len(table()) < 5:
    problems.append("The page does not show all of the servers")
fail_with(problems)
