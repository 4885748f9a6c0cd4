#!/usr/bin/python3
"""The Python package beside MeCab's binding (Debian: python3-mecab) on the same text with the same lexicon.

    bench/python.py TEXT [ROUNDS] [BUILD]      UTF-8 text

Processor time. Each round runs a loop with one and then with the other; the best round of each counts. The last lines
are by the clock: threads with a tagger each that divide the lines.
"""
import os
import pathlib
import subprocess
import sys
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
LEXICON = "/var/lib/mecab/dic/ipadic-utf8"
TEXT = sys.argv[1]
ROUNDS = int(sys.argv[2]) if len(sys.argv) > 2 else 7
BUILD = pathlib.Path(sys.argv[3] if len(sys.argv) > 3 else ROOT / "build").resolve()
os.environ["TAVO_PATH"] = str(BUILD / "share/tavo")
os.environ["PYTHONPATH"] = str(BUILD / "python")
os.environ.pop("PYTHONDONTWRITEBYTECODE", None)  # modules are compiled once, as pip does it
sys.path.insert(0, os.environ["PYTHONPATH"])
import MeCab  # noqa: E402
import tavo  # noqa: E402

lines = [line for line in pathlib.Path(TEXT).read_text(encoding="utf-8").split("\n") if line]
short = [line[:10] for line in lines if len(line) >= 10]
tagger = tavo.Tagger()
mecab = MeCab.Tagger(f"-d {LEXICON}")
wakati = MeCab.Tagger(f"-d {LEXICON} -Owakati")


def tavo_nodes(texts):
    for line in texts:
        for token in tagger(line):
            token.surface, token.pos, token.reading


def tavo_batch(texts):
    for result in tagger.batch(texts):
        for token in result:
            token.surface, token.pos, token.reading


def mecab_nodes(texts):
    for line in texts:
        node = mecab.parseToNode(line)
        while node:
            node.surface, node.feature
            node = node.next


def tavo_split(texts):
    for line in texts:
        tagger.split(line)


def tavo_split_batch(texts):
    for _ in tagger.split_batch(texts):
        pass


def mecab_split(texts):
    for line in texts:
        wakati.parse(line).split()


def start(program):
    """Wall-clock time of an interpreter that imports, analyses and ends."""
    subprocess.run([sys.executable, "-c", program], check=True, stdout=subprocess.DEVNULL)


START_TAVO = "import tavo; tavo.Tagger().split('猫が好きだ')"
START_MECAB = f"import MeCab; MeCab.Tagger('-d {LEXICON} -Owakati').parse('猫が好きだ').split()"

PAIRS = [
    ("surface, part of speech, reading of each token", tavo_nodes, mecab_nodes, lines, time.process_time),
    ("the same by batch", tavo_batch, mecab_nodes, lines, time.process_time),
    ("split", tavo_split, mecab_split, lines, time.process_time),
    ("split by batch", tavo_split_batch, mecab_split, lines, time.process_time),
    ("10 characters, tokens", tavo_nodes, mecab_nodes, short, time.process_time),
    ("10 characters, split", tavo_split, mecab_split, short, time.process_time),
    ("import and first result", start, start, None, time.perf_counter),
]


def seconds(action, argument, clock):
    before = clock()
    action(argument)
    return clock() - before


print(f"{len(lines)} lines, {sum(map(len, lines))} characters, {sum(map(len, tagger.split_batch(lines)))} tokens\n")
print(f"{'':48} {'tavo':>9} {'MeCab':>9}  ratio   a line")
for name, own, other, texts, clock in PAIRS:
    best = [float("inf")] * 2
    for _ in range(ROUNDS):
        for side, (action, argument) in enumerate(((own, texts or START_TAVO), (other, texts or START_MECAB))):
            best[side] = min(best[side], seconds(action, argument, clock))
    each = f"{best[0] / len(texts) * 1e6:6.1f} µs" if texts else ""
    print(f"{name:48} {best[0]:7.3f} s {best[1]:7.3f} s {best[1] / best[0]:6.2f} {each}")


def by_threads(count):
    """All lines, divided among threads with a tagger each."""
    threads = [threading.Thread(target=lambda own=own, part=lines[i::count]: [own.columns(part) for _ in range(5)])
               for i, own in enumerate(taggers[:count])]  # fmt: skip
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()


taggers = [tavo.Tagger() for _ in range(os.cpu_count())]
for count in sorted({1, 2, os.cpu_count()}):
    print(f"columns by {count} threads: {min(seconds(by_threads, count, time.perf_counter) for _ in range(ROUNDS)):.3f} s")
