#!/usr/bin/env -S python3 -B
"""How long the programs take, as a user starts them, beside curl, md5sum and rclone at the same work.

The server is an Apache on this machine. Each line is the median of some rounds, in which ours and theirs take turns, the
ratio of the two, and the ratio that is aimed at. Memory is the program's peak, the slice the longest time for which its
event loop was busy with one thing, both of a round more, which does not count for the time.

A row takes no further round once it has taken a minute; a command that takes longer than the limit is given up, and the
line says so."""

import argparse
import fnmatch
import os
import shutil
import statistics
import subprocess
import tempfile
import time
from collections import defaultdict
from pathlib import Path

from measuring import Account, Bench, Row, print_exponent, print_header, print_line, run

MIB = 1024 * 1024


def start(bench):
    row = Row(bench)

    def one_round():
        row.ours_takes("start and end, --version", lambda _: run(bench.terminal, "--version", limit=bench.limit))
        row.peer_takes("start and end, --version", "curl", run("curl", "--version", limit=bench.limit).seconds)

    row.repeat(one_round)
    row.line("start and end, --version", aim_seconds=0.025)


def large(bench):
    """One document of 1 GiB."""
    size = bench.sized(1024)
    source = bench.folder / "large.pdf"
    with source.open("wb") as file:
        for _ in range(size):
            file.write(b"%PDF-".ljust(16) + os.urandom(MIB - 16))  # 1 GiB is the most that this server takes
    _, url = bench.server.collection("large", bench.limit)
    _, theirs = bench.server.collection("large-curl", bench.limit)
    row = Row(bench)
    upload, download = f"upload of {size} MiB", f"download of {size} MiB"

    def one_round():
        account = Account(bench, url)
        md5 = run("md5sum", source, limit=bench.limit).seconds
        row.peer_takes(upload, "curl", bench.curl("-T", source, f"{theirs}large.pdf"))
        row.peer_takes(upload, "md5sum", md5)
        row.ours_takes(upload, lambda watched: account.command("upload", source, watched=watched))
        reader = Account(bench, url)
        target = bench.new_folder("down")
        curl = bench.curl("-o", target / "curl.pdf", f"{theirs}large.pdf")
        row.peer_takes(download, "curl", curl)
        row.peer_takes(download, "curl, sync", bench.flushed(curl, [target / "curl.pdf"]))
        row.peer_takes(download, "md5sum", md5)
        options = ["--to", target]
        row.ours_takes(download, lambda watched: reader.command("download", "large.pdf", options=options, watched=watched))
        shutil.rmtree(target)
        account.command("remove", "large.pdf")
        account.remove()
        reader.remove()

    row.repeat(one_round)
    row.line(upload, aim=1.2, limit_of=max)
    row.line(download, aim=1.2, limit_of=max, beside=("curl", "md5sum"))
    row.line(download, beside=("curl, sync",), label="the same, beside the disk")
    source.unlink()


def small(bench):
    """1,000 documents of 64 KiB."""
    count = bench.sized(1000)
    paths = bench.fill(bench.new_folder("small"), count, 64 * 1024)
    names = [path.name for path in paths]
    _, url = bench.server.collection("small", bench.limit)
    _, theirs = bench.server.collection("small-curl", bench.limit)
    row = Row(bench)
    works = {what: f"{what} of {count:,} x 64 KiB" for what in ("upload", "download", "remove")}

    def one_round():
        account = Account(bench, url)
        target = bench.new_folder("down")
        row.peer_takes(works["upload"], "curl", bench.curl_each('upload-file = "{path}"\nurl = "{url}"\n', theirs, paths))
        row.ours_takes(works["upload"], lambda watched: account.command("upload", *paths, watched=watched))
        account.remove()
        reader = Account(bench, url)
        to_target = 'url = "{url}"\noutput = "' + str(target) + '/{path.name}.curl"\n'
        curl = bench.curl_each(to_target, theirs, paths)
        row.peer_takes(works["download"], "curl", curl)
        row.peer_takes(works["download"], "curl, sync", bench.flushed(curl, target.glob("*.curl")))
        options = ["--to", target]
        row.ours_takes(
            works["download"], lambda watched: reader.command("download", *names, options=options, watched=watched)
        )
        deletion = 'url = "{url}"\nrequest = "DELETE"\n'
        row.peer_takes(works["remove"], "curl", bench.curl_each(deletion, theirs, paths))
        bench.curl_each('upload-file = "{path}"\nurl = "{url}"\n', theirs, paths)
        row.peer_takes(works["remove"], "LOCK, DELETE", bench.server.locked_removals(theirs, count))
        row.ours_takes(works["remove"], lambda watched: reader.command("remove", *names, watched=watched))
        reader.remove()

    row.repeat(one_round)
    for what, aim in (("upload", 3.0), ("download", 2.0), ("remove", 2.0)):
        row.line(works[what], aim=aim, beside=("curl",))
    row.line(works["download"], beside=("curl, sync",), label="the download, beside the disk")
    row.line(works["remove"], beside=("LOCK, DELETE",), label="the removal, beside LOCK and DELETE in turn")


def measure_lists(bench, row, service, files, label, peers):
    """The first list of an account, the next one, and the stored one."""
    first, again, offline = (f"list of {files:,}, {label}, {which}" for which in ("first", "again", "--offline"))

    def one_round():
        account = Account(bench, service)
        for name, peer in peers.items():
            row.peer_takes(first, name, seconds := peer())
            row.peer_takes(again, name, seconds)
        row.ours_takes(first, lambda watched: account.command("list", watched=watched))
        row.ours_takes(again, lambda watched: account.command("list", watched=watched))
        row.ours_takes(offline, lambda watched: account.command("list", options=["--offline"], watched=watched))
        account.remove()

    row.repeat(one_round)
    return first, again, offline


def peers_of_list(bench, url, folder):
    """Of a list of a collection, or of a folder."""
    if url:
        return {"curl": lambda: bench.curl_list(url), "rclone": lambda: bench.rclone("lsjson", ":webdav:", url=url)}
    return {"rclone": lambda: bench.rclone("lsjson", folder)}


def lists(bench):
    """10,000 documents, on the server and in a folder."""
    count = bench.sized(10_000)
    files, url = bench.server.collection("lists", bench.limit)
    bench.fill(files, count)
    row = Row(bench)
    works = measure_lists(bench, row, url, count, "server", peers_of_list(bench, url, files))
    for work, aim in zip(works, (3.4, 3.4, None)):
        row.line(work, aim=aim)
    folder = bench.new_folder("lists")
    bench.fill(folder, count)
    row = Row(bench)
    works = measure_lists(bench, row, folder, count, "folder", peers_of_list(bench, None, folder))
    for work, seconds in zip(works, (0.25, 0.3, 0.15)):
        row.line(work, aim_seconds=seconds)


def many(bench):
    """Single documents among 50,000."""
    count = bench.sized(50_000)
    files, url = bench.server.collection("many", bench.limit)
    paths = bench.fill(files, count)
    row = Row(bench)
    works = [f"{what}, {count:,} on the server" for what in ("second list", "download of one", "remove of one")]
    left = iter(paths)

    def one_round():
        account = Account(bench, url)
        target = bench.new_folder("down")
        account.command("list")
        name = next(left).name
        seconds = bench.curl_list(url)
        for work in works:
            row.peer_takes(work, "curl", seconds)
        options = ["--to", target]
        row.ours_takes(works[0], lambda watched: account.command("list", watched=watched))
        row.ours_takes(works[1], lambda watched: account.command("download", name, options=options, watched=watched))
        row.ours_takes(works[2], lambda watched: account.command("remove", name, watched=watched))
        account.remove()

    row.repeat(one_round)
    for work in works:
        row.line(work, aim_seconds=3)


def write_scan(path, size):
    """A PDF document of so many MiB, whose first page is a picture of 1 MiB."""
    side = 1024
    page = b"q 100 0 0 100 0 0 cm /P Do Q"
    picture = b"<< /Subtype /Image /Width %d /Height %d /ColorSpace /DeviceGray /BitsPerComponent 8 /Length %d >>"
    objects = [
        b"<< /Type /Catalog /Pages 2 0 R >>",
        b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 100] /Contents 4 0 R /Resources << /XObject << /P 5 0 R >> >> >>",
        b"<< /Length %d >>\nstream\n%b\nendstream" % (len(page), page),
    ]
    objects += [picture % (side, side, MIB) + b"\nstream\n" + os.urandom(MIB) + b"\nendstream"]
    positions = []
    with path.open("wb") as file:
        file.write(b"%PDF-1.4\n")
        for number in range(len(objects) + size):
            positions.append(file.tell())
            content = objects[min(number, len(objects) - 1)]  # after page one, its picture again and again
            file.write(b"%d 0 obj\n%b\nendobj\n" % (number + 1, content))
        table = file.tell()
        file.write(b"xref\n0 %d\n0000000000 65535 f \n" % (len(positions) + 1))
        file.write(b"".join(b"%010d 00000 n \n" % position for position in positions))
        file.write(b"trailer << /Size %d /Root 1 0 R >>\nstartxref\n%d\n%%%%EOF\n" % (len(positions) + 1, table))


def picture(bench):
    """The picture of page one of a scan, beside all of it."""
    size = bench.sized(148)
    files, url = bench.server.collection("picture", bench.limit)
    write_scan(files / "scan.pdf", size)
    yesterday = time.time() - 24 * 60 * 60
    os.utime(files / "scan.pdf", (yesterday, yesterday))  # a second ago is too soon for a strong entity tag
    row = Row(bench)
    work = f"preview of a scan of {size} MiB"

    def one_round():
        account = Account(bench, url)
        row.peer_takes(work, "curl, whole", bench.curl("-o", "/dev/null", f"{url}scan.pdf"))
        row.ours_takes(work, lambda watched: account.command("preview", "scan.pdf", watched=watched))
        account.remove()

    row.repeat(one_round)
    row.line(work)


def uploads(bench):
    """Uploads into a folder: the time must grow as their number does."""
    times = {}
    for count in (bench.sized(1000), 2 * bench.sized(1000), 4 * bench.sized(1000)):
        paths = bench.fill(bench.new_folder("sources"), count)
        row = Row(bench)
        work = f"{count:,} uploads in one command, folder"

        def one_round():
            account = Account(bench, bench.new_folder("cloud"))
            copied = bench.rclone("copy", bench.folder / "sources", bench.new_folder("copies"))
            row.peer_takes(work, "rclone", copied)
            row.ours_takes(work, lambda watched: account.command("upload", *paths, watched=watched))
            account.remove()

        row.repeat(one_round)
        row.line(work)
        if row.ours[work]:
            times[count] = statistics.median(row.ours[work])
    print_exponent("uploads in one command, folder", times)


def scaling(bench):
    """Lists of 1,000 to 100,000 documents."""
    for label in ("server", "folder"):
        times = defaultdict(dict)
        for wanted in (1_000, 10_000, 100_000):
            count = bench.sized(wanted)
            if label == "server":
                files, url = bench.server.collection(f"scaling-{count}", bench.limit)
            else:
                files, url = bench.new_folder(f"scaling-{count}"), None
            bench.fill(files, count)
            row = Row(bench)
            works = measure_lists(bench, row, url or files, count, label, peers_of_list(bench, url, files))
            for which, work in zip(("first", "again", "--offline"), works):
                row.line(work)
                if row.ours[work]:
                    times[which][count] = statistics.median(row.ours[work])
            shutil.rmtree(files)
        for which, of_which in times.items():
            print_exponent(f"list, {label}, {which}", of_which)


def processor_seconds(process):
    """That it has used."""
    fields = Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def peak_memory(process):
    """In MiB."""
    lines = Path(f"/proc/{process.pid}/status").read_text().splitlines()
    return next(int(line.split()[1]) for line in lines if line.startswith("VmHWM")) / 1024


def open_window(bench, account, environment):
    environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen", **environment}
    return subprocess.Popen([bench.window, "--data", account.data], stderr=subprocess.DEVNULL, env=environment)


def wait_until_still(bench, process):
    """Until it has done what it does at the start. How long that took."""
    begin = time.monotonic()
    used = 0
    while time.monotonic() - begin < bench.limit:
        time.sleep(2)
        before, used = used, processor_seconds(process)
        if used > 0.05 and used - before < 0.02:
            break
    return time.monotonic() - begin


def window(bench):
    """An open window in which nothing happens."""
    count = bench.sized(10_000)
    folder = bench.new_folder("window")
    bench.fill(folder, count)
    files, url = bench.server.collection("window", bench.limit)
    bench.fill(files, count)
    idle = 60 if bench.share == 1 else 2  # seconds; a server is asked once a minute
    places = {"empty folder": bench.new_folder("empty"), f"folder of {count:,}": folder, f"{count:,} on the server": url}
    for label, service in places.items():
        account = Account(bench, service)
        process = open_window(bench, account, {})
        ready = wait_until_still(bench, process)
        used = processor_seconds(process)
        time.sleep(idle)
        share = (processor_seconds(process) - used) / idle
        memory = peak_memory(process)
        process.terminate()
        process.wait()
        noted = bench.folder / "slice"
        watched = open_window(bench, account, bench.watch(noted))
        time.sleep(ready)  # whoever watches is never still
        watched.terminate()
        watched.wait()
        print_line(
            f"window, nothing changing, {label}", f"{share:.2%}", f"(still after {ready:.0f} s)", "",
            "0.1 %" if service == folder else "", f"{memory:.0f} MiB", f"{float(noted.read_text()):.0f} ms",
        )
        noted.unlink()
        account.remove()


ROWS = {row.__name__: row for row in (start, large, small, lists, many, picture, uploads, window, scaling)}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=Path, help="the build with the programs and the benchmarks, as build/release")
    parser.add_argument("rows", nargs="*", help="all if none is named: " + ", ".join(ROWS))
    parser.add_argument("--programs", type=Path, help="a folder with other programs, such as installed ones")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--limit", type=float, default=60, help="for one command, in seconds")
    parser.add_argument("--share", type=float, default=1, help="of the documents and bytes, to try the benchmark itself")
    options = parser.parse_intermixed_args()
    chosen = [name for name in ROWS if not options.rows or any(fnmatch.fnmatch(name, row) for row in options.rows)]
    if not chosen:
        parser.error("there is no such row")
    with tempfile.TemporaryDirectory(prefix="norlis-benchmark-") as name:
        os.chmod(name, 0o755)  # the server may run as another user
        bench = Bench(options, Path(name))
        try:
            print_header()
            for row in chosen:
                ROWS[row](bench)
        finally:
            bench.server.stop()


main()
