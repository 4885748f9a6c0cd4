#!/usr/bin/env python3
"""Processor time of the Python package beside the program's on the same text.

    bench/python.py TEXT [BUILD]      UTF-8 text; the best of five runs each
"""
import os
import pathlib
import resource
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
TEXT = sys.argv[1]
BUILD = pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else ROOT / "build").resolve()
os.environ.update(TAVO_LIBRARY=str(BUILD / "lib/libtavo.so"), TAVO_PATH=str(BUILD / "share/tavo"))
sys.path.insert(0, str(ROOT / "bindings/python"))
import tavo  # noqa: E402


def best(who, action):
    def seconds():
        usage = resource.getrusage(who)
        return usage.ru_utime + usage.ru_stime

    def once():
        before = seconds()
        action()
        return seconds() - before

    return min(once() for _ in range(5))


def program(form):
    subprocess.run([BUILD / "bin/tavo", "-O", form, TEXT], check=True, stdout=subprocess.DEVNULL)


tagger = tavo.Tagger()
lines = pathlib.Path(TEXT).read_text(encoding="utf-8").split("\n")
for form in ("wakati", "json"):
    print(f"{best(resource.RUSAGE_CHILDREN, lambda: program(form)):6.2f} s  tavo -O {form}")
for name, action in {
    "split_batch(lines)": lambda: sum(map(len, tagger.split_batch(lines))),
    "batch(lines), every morpheme made": lambda: sum(len(list(result)) for result in tagger.batch(lines)),
    "split(line) for each line": lambda: sum(len(tagger.split(line)) for line in lines),
    "tagger(line) for each line, every morpheme made": lambda: sum(len(list(tagger(line))) for line in lines),
}.items():
    print(f"{best(resource.RUSAGE_SELF, action):6.2f} s  {name}")
