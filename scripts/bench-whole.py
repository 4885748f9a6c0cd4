#!/usr/bin/env python3
"""Compares whole processes: `tavo -O wakati` with `mecab -Owakati`.

Each round runs both programs, in turns which goes first, so that a machine that
slows down slows both. Printed are median, minimum and maximum of the processor
time (user and system), of the time on the clock, and the largest peak of memory;
the ratio is that of each round's pair, so its spread tells how far to trust it.
Last comes the memory of processes that run at once, each after the text's first
megabyte: their proportional set sizes, in which a page that several share counts
once among them.

    scripts/bench-whole.py [--tavo PROGRAM] [--mecab PROGRAM] [--mecab-dictionary DIR]
                           [--library PROGRAM] [--rounds N] [TEXT...]

Without TEXT the Japanese manual pages and Debian reference of this machine are
the text, where installed (packages manpages-ja, debian-reference-ja), else the
demo's sentences many times over.
"""
import argparse
import gzip
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
DEFAULT_BYTES = 4_000_000


def manual_pages():
    """The running text of the installed manual pages, without their markup."""
    for path in sorted(pathlib.Path("/usr/share/man/ja").glob("man*/*.gz")):
        text = gzip.decompress(path.read_bytes()).decode("utf-8", "replace")
        for line in text.splitlines():
            if line[:1] not in (".", "'", ""):
                yield re.sub(r"\\f.|\\-|\\&", "", line)


def reference():
    path = pathlib.Path("/usr/share/debian-reference/debian-reference.ja.txt.gz")
    if path.is_file():
        yield from (line for line in gzip.decompress(path.read_bytes()).decode("utf-8").splitlines() if line.strip())


def default_text(folder):
    lines = [*manual_pages(), *reference()]
    source = "manual pages and Debian reference"
    if not lines:
        lines = (ROOT / "demo/sentences.txt").read_text(encoding="utf-8").splitlines()
        source = "demo sentences, repeated"
    block = ("\n".join(lines) + "\n").encode()
    if len(block) < DEFAULT_BYTES:
        block *= -(-DEFAULT_BYTES // len(block))
    block = block[: block.rfind(b"\n", 0, DEFAULT_BYTES) + 1]
    path = folder / "text"
    path.write_bytes(block)
    return path, source


class Run:
    def __init__(self, command):
        with open(os.devnull, "wb") as null:
            start = time.perf_counter()
            pid = os.posix_spawnp(command[0], command, os.environ, file_actions=[
                (os.POSIX_SPAWN_DUP2, null.fileno(), 1)])
            _, status, usage = os.wait4(pid, 0)
            self.clock = time.perf_counter() - start
        if status != 0:
            sys.exit(f"bench-whole: exit status {os.waitstatus_to_exitcode(status)}: {' '.join(command)}")
        self.cpu = usage.ru_utime + usage.ru_stime
        self.peak = usage.ru_maxrss / 1024  # MiB; mapped pages that were touched count


def spread(values, unit=""):
    return f"{statistics.median(values):8.3f}{unit} [{min(values):.3f} .. {max(values):.3f}]"


def compare(title, commands, rounds, size):
    print(f"\n{title}, {rounds} rounds")
    runs = {name: [] for name in commands}
    for command in commands.values():
        Run(command)  # the files come into memory
    for number in range(rounds):
        for name in sorted(commands, reverse=number % 2 == 1):
            runs[name].append(Run(commands[name]))
    for name, results in runs.items():
        clock = [r.clock for r in results]
        rate = f"  {size / statistics.median(clock) / 1e6:6.1f} MB/s" if size else ""
        print(f"  {name:12} cpu {spread([r.cpu for r in results], ' s')}  clock {spread(clock, ' s')}"
              f"  peak {max(r.peak for r in results):.0f} MiB{rate}")
    if "mecab" in runs:
        for name in runs.keys() - {"mecab"}:
            for what in ("cpu", "clock"):
                ratios = [getattr(m, what) / getattr(t, what) for m, t in zip(runs["mecab"], runs[name])]
                print(f"  mecab / {name}, {what}: {spread(ratios)}")


def start_reading(command, text):
    """A process that has read @p text and waits for more."""
    process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL)
    process.stdin.write(text)
    process.stdin.flush()
    return process


def wait_until_idle(process):
    """Until the process has used no processor time for a while: it has done what it was given."""
    used = None
    while True:
        fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()
        if used == fields[11:13]:
            return
        used = fields[11:13]
        time.sleep(0.3)


def proportional_bytes(pid):
    rollup = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return 1024 * int(re.search(r"^Pss:\s+(\d+) kB", rollup, re.MULTILINE).group(1))


def compare_memory(commands, text):
    print("\nmemory of processes at once, proportional set size")
    for name, command in commands.items():
        for count in (1, 8):
            processes = [start_reading(command, text) for _ in range(count)]
            for process in processes:
                wait_until_idle(process)
            total = sum(proportional_bytes(process.pid) for process in processes)
            print(f"  {name:12} {count} at once: {total / 2**20:6.1f} MiB, {total / count / 2**20:5.1f} MiB each")
            for process in processes:
                process.stdin.close()
                process.wait()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tavo", default=str(ROOT / "build/bin/tavo"))
    parser.add_argument("--mecab", default="mecab")
    parser.add_argument("--mecab-dictionary", default="/var/lib/mecab/dic/ipadic-utf8",
                        help="not that of MeCab's settings: another one may have become the default")
    parser.add_argument("--library", type=pathlib.Path, metavar="PROGRAM",
                        help="tavo_bench_library, to compare the libraries too; left out when it was not built")
    parser.add_argument("--rounds", type=int, default=11)
    parser.add_argument("text", nargs="*", type=pathlib.Path)
    args = parser.parse_args()

    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        texts = [(path, str(path)) for path in args.text] or [default_text(folder)]
        mecab = [args.mecab, "-d", args.mecab_dictionary, "-Owakati"] if shutil.which(args.mecab) else None
        if not mecab:
            print(f"no program {args.mecab}: nothing to compare with")

        short = folder / "short"
        short.write_text("すもももももももものうち\n", encoding="utf-8")

        def pair(*path):
            commands = {"tavo": [args.tavo, "-O", "wakati", *path]}
            if mecab:
                commands["mecab"] = [*mecab, *path]
            return commands

        for path, source in texts:
            size = path.stat().st_size
            compare(f"{source}, {size:,} bytes", pair(str(path)), args.rounds, size)
            compare("the same with two threads", {"tavo -j 2": [args.tavo, "-j", "2", "-O", "wakati", str(path)]},
                    args.rounds, size)
            if args.library and args.library.is_file():
                print("\nthe libraries, text in memory", flush=True)
                subprocess.run([args.library, path, str(args.rounds), args.mecab_dictionary], check=True)
        compare("start-up: one short line", pair(str(short)), max(args.rounds, 101), 0)
        with texts[0][0].open("rb") as file:
            text = file.read(1_000_000)
        compare_memory(pair(), text[:text.rfind(b"\n") + 1])


main()
