"""Runs programs and measures what they take: for programs.py."""

import base64
import http.client
import math
import os
import random
import shutil
import signal
import statistics
import subprocess
import sys
import threading
import time
import urllib.parse
from collections import defaultdict
from dataclasses import dataclass

ROW_SECONDS = 60
PROPFIND = (
    '<d:propfind xmlns:d="DAV:"><d:prop><d:resourcetype/><d:getcontentlength/><d:getlastmodified/><d:getetag/></d:prop>'
    "</d:propfind>"
)
LOCKINFO = (
    '<d:lockinfo xmlns:d="DAV:"><d:lockscope><d:exclusive/></d:lockscope><d:locktype><d:write/></d:locktype></d:lockinfo>'
)


class TooLong(Exception):
    """A command has been given up."""


@dataclass
class Spent:
    seconds: float
    memory: float  # MiB
    slice: float = math.nan  # ms


def run(*command, limit, environment=None):
    """Runs a program to its end, without output."""
    begin = time.monotonic()
    process = subprocess.Popen(
        [str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
        env={**os.environ, **(environment or {})}, errors="replace", text=True,
    )
    complaints = []
    reader = threading.Thread(target=lambda: complaints.append(process.stderr.read()))
    reader.start()
    watchdog = threading.Timer(limit, process.kill)
    watchdog.start()
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.monotonic() - begin
    process.returncode = os.waitstatus_to_exitcode(status)
    watchdog.cancel()
    reader.join()
    if seconds >= limit:
        raise TooLong
    if process.returncode != 0:
        sys.exit(f"{command[0]} has failed: {''.join(complaints)[-500:]}")
    return Spent(seconds, usage.ru_maxrss / 1024)


class Server:
    """Apache, as the tests start it, with collections below its root."""

    def __init__(self, program, folder):
        self.folder = folder / "server"
        self.folder.mkdir()
        self.process = subprocess.Popen([program, "apache", self.folder], stdout=subprocess.PIPE, text=True)
        self.address = self.process.stdout.readline().strip()
        self.password = self.process.stdout.readline().strip()
        scheme, rest = self.address.split("://")
        self.user, host = rest.split("@")
        self.plain = f"{scheme}://{host}"
        self.netrc = folder / "netrc"
        self.netrc.touch(0o600)
        self.netrc.write_text(f"machine 127.0.0.1 login {self.user} password {self.password}\n")
        self.token = folder / "token"
        self.token.write_text(self.password)

    def curl(self, *arguments, limit):
        return run("curl", "-sS", "--fail", "--netrc-file", self.netrc, *arguments, limit=limit).seconds

    def collection(self, name, limit):
        """A new one. Where its files are, and the address for curl."""
        self.curl("-X", "MKCOL", f"{self.plain}{name}/", limit=limit)
        return self.folder / name, f"{self.plain}{name}/"

    def locked_removals(self, url, count):
        """What removing a document for sure needs of the protocol, and nothing else: LOCK and DELETE in turn."""
        parts = urllib.parse.urlsplit(url)
        secret = base64.b64encode(f"{self.user}:{self.password}".encode()).decode()
        connection = http.client.HTTPConnection(parts.hostname, parts.port)

        def request(method, address, status, body=None, **fields):
            path = urllib.parse.urlsplit(address).path
            connection.request(method, path, body, {"Authorization": f"Basic {secret}", **fields})
            response = connection.getresponse()
            response.read()
            assert response.status == status, f"{method}: {response.status}"
            return response

        begin = time.monotonic()
        for number in range(count):
            lock = request("LOCK", f"{url}{number}", 200, LOCKINFO, Timeout="Second-60")
            request("DELETE", f"{url}{number}", 204, If=f"<{url}{number}> ({lock.getheader('Lock-Token')})")
        return time.monotonic() - begin

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait()


class Account:
    """A data folder of a user who is signed in to a service: a folder, or a collection of the server."""

    made = 0

    def __init__(self, bench, service):
        Account.made += 1
        self.bench = bench
        self.data = bench.folder / f"data-{Account.made}"
        is_server = isinstance(service, str)
        address = service.replace("://", f"://{bench.server.user}@") if is_server else service
        token = ["--token-file", bench.server.token] if is_server else []
        self.command("login", options=["--service", address, *token])

    def command(self, name, *words, options=(), watched=False):
        """Runs the terminal program, its loop watched if asked for."""
        noted = self.bench.folder / "slice"
        environment = self.bench.watch(noted) if watched else {}
        command = [self.bench.terminal, name, "--data", self.data, *options, *(["--", *words] if words else [])]
        spent = run(*command, limit=self.bench.limit, environment=environment)
        if watched and noted.exists():
            spent.slice = float(noted.read_text())
            noted.unlink()
        return spent

    def remove(self):
        shutil.rmtree(self.data)


class Bench:
    def __init__(self, options, folder):
        build = options.build.resolve()
        programs = options.programs.resolve() if options.programs else build / "apps"
        self.terminal = programs / "norlis-cloud"
        self.window = programs / "norlis-documents"
        self.loop_watch = build / "benchmarks/libLoopWatch.so"
        self.folder = folder
        self.rounds = options.rounds
        self.limit = options.limit
        self.share = options.share
        serve = [build / place / "servers/serve" for place in ("benchmarks", "tests")]
        self.server = Server(next(path for path in serve if path.exists()), folder)

    def watch(self, noted):
        """What in the environment of a program of ours makes it write its longest slice into a file."""
        return {"LD_PRELOAD": str(self.loop_watch), "LOOP_WATCH": str(noted)}

    def sized(self, count):
        """The share of a number that this run works with."""
        return max(4, int(count * self.share))

    def new_folder(self, name):
        folder = self.folder / name
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir()
        return folder

    def fill(self, folder, count, size=None):
        """Documents that were there before: what is only seconds old is looked at twice."""
        noise = random.Random(count)
        before = time.time() - 3600
        paths = [folder / f"document {number}.pdf" for number in range(count)]
        for path in paths:
            path.write_bytes(b"%PDF-" + noise.randbytes(size or 16))
            os.utime(path, (before, before))
        return paths

    def curl(self, *arguments):
        return self.server.curl(*arguments, limit=self.limit)

    def curl_each(self, lines, url, paths):
        """One transfer of curl's for each file, many at once."""
        config = self.folder / "curl.config"
        config.write_text("".join(lines.format(url=f"{url}{number}", path=path) for number, path in enumerate(paths)))
        return self.curl("-Z", "--parallel-max", "8", "-K", config)

    def flushed(self, seconds, files):
        """The time of a transfer and that of getting its files to the disk."""
        return seconds + run("sync", *files, limit=self.limit).seconds

    def curl_list(self, url):
        return self.curl("-X", "PROPFIND", "-H", "Depth: 1", "--data", PROPFIND, "-o", "/dev/null", url)

    def rclone(self, *words, url=None):
        options = ["--config", "/dev/null"]
        if url:
            obscured = subprocess.run(
                ["rclone", "obscure", self.server.password], check=True, capture_output=True, text=True
            ).stdout.strip()
            options += ["--webdav-url", url, "--webdav-user", self.server.user, "--webdav-pass", obscured]
        return run("rclone", *options, *words, limit=self.limit).seconds


class Row:
    """What one row measures: several works, each with the times of its rounds and of its peers."""

    def __init__(self, bench):
        self.bench = bench
        self.ours = defaultdict(list)
        self.peers = defaultdict(lambda: defaultdict(list))
        self.watched = {}
        self.given_up = {}
        self.is_watched = False

    def ours_takes(self, work, command):
        """command(watched) runs ours. What has been given up once is not tried again."""
        if work in self.given_up:
            raise TooLong
        try:
            spent = command(self.is_watched)
        except TooLong:
            self.given_up[work] = self.bench.limit
            raise
        if self.is_watched:
            self.watched[work] = spent
        else:
            self.ours[work].append(spent.seconds)

    def peer_takes(self, work, peer, seconds):
        if not self.is_watched:
            self.peers[work][peer].append(seconds)

    def repeat(self, one_round):
        begin = time.monotonic()
        try:
            for _ in range(self.bench.rounds):
                one_round()
                if time.monotonic() - begin > ROW_SECONDS:
                    break
            self.is_watched = True
            one_round()
        except TooLong:
            pass  # the line says so

    def line(self, work, aim=None, limit_of=min, aim_seconds=None, beside=None, label=None):
        """limit_of: of the medians of several peers, the one to compare with. beside: those peers, where not all."""
        peers = {
            name: statistics.median(times) for name, times in self.peers[work].items() if not beside or name in beside
        }
        shown = ", ".join(f"{name} {format_seconds(seconds)}" for name, seconds in peers.items())
        ratio = ""
        if self.ours[work]:
            seconds = statistics.median(self.ours[work])
            ours = format_seconds(seconds)
            ratio = f"{seconds / limit_of(peers.values()):.2f}" if peers else ""
        else:
            ours = f"over {self.given_up.get(work, self.bench.limit)} s"
        aimed = f"{aim:.2f}" if aim else format_seconds(aim_seconds) if aim_seconds else ""
        spent = self.watched.get(work)
        print_line(
            label or work, ours, shown, ratio, aimed, f"{spent.memory:.0f} MiB" if spent else "",
            f"{spent.slice:.0f} ms" if spent and not math.isnan(spent.slice) else "",
        )


def format_seconds(seconds):
    return f"{seconds:.3f} s" if seconds < 1 else f"{seconds:.2f} s"


WIDTHS = (50, 10, 34, 6, 8, 8, 8)


def print_header():
    print_line("Work", "Ours", "Theirs", "Ratio", "Aim", "Memory", "Slice")
    print_line(*("-" * width for width in WIDTHS))


def print_line(*cells):
    print("| " + " | ".join(f"{cell:{width}}" for cell, width in zip(cells, WIDTHS)) + " |", flush=True)


def exponent(times):
    """Of the growth between the two largest numbers of documents."""
    (fewer, short), (more, long) = sorted(times.items())[-2:]
    return math.log(long / short) / math.log(more / fewer)


def print_exponent(work, times):
    if len(times) > 1:
        print_line(f"{work}: exponent", f"{exponent(times):.2f}", "", "", "1.00", "", "")
