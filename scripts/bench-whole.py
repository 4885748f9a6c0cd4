#!/usr/bin/env python3
"""Compares whole processes: `tavo -O wakati` with `mecab -Owakati`.

Each round runs both programs, in turns which goes first, so that a machine that
slows down slows both. Printed are median, minimum and maximum of the processor
time (user and system), of the time on the clock, and the largest peak of memory;
the ratio is that of each round's pair, so its spread tells how far to trust it.

    scripts/bench-whole.py [--tavo PROGRAM] [--mecab PROGRAM] [--rounds N] [TEXT...]

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
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
DEFAULT_BYTES = 4_000_000


def manual_pages():
    """The running text of the installed manual pages, without their mark-up."""
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


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tavo", default=str(ROOT / "build/bin/tavo"))
    parser.add_argument("--mecab", default="mecab")
    parser.add_argument("--rounds", type=int, default=11)
    parser.add_argument("text", nargs="*", type=pathlib.Path)
    args = parser.parse_args()

    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        texts = [(path, str(path)) for path in args.text] or [default_text(folder)]
        mecab = [args.mecab, "-Owakati"] if shutil.which(args.mecab) else None
        if not mecab:
            print(f"no program {args.mecab}: nothing to compare with")

        short = folder / "short"
        short.write_text("すもももももももものうち\n", encoding="utf-8")

        def pair(path):
            commands = {"tavo": [args.tavo, "-O", "wakati", str(path)]}
            if mecab:
                commands["mecab"] = [*mecab, str(path)]
            return commands

        for path, source in texts:
            size = path.stat().st_size
            compare(f"{source}, {size:,} bytes", pair(path), args.rounds, size)
            compare("the same with two threads", {"tavo -j 2": [args.tavo, "-j", "2", "-O", "wakati", str(path)]},
                    args.rounds, size)
        compare("start-up: one short line", pair(short), max(args.rounds, 21), 0)


main()
