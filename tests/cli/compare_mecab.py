#!/usr/bin/env python3
"""Compares -O mecab with mecab itself: where both cut a text alike and agree on the part
of speech, their lines are the same.

    compare_mecab.py TAVO LEXICON SOURCE TEXT...

LEXICON is the folder that was imported from SOURCE, an IPADIC lexicon. Exits 77 without
lexicon, source or mecab.
"""
import collections
import csv
import gzip
import pathlib
import random
import shutil
import subprocess
import sys

#: Debian's, of the same source in UTF-8.
MECAB_LEXICON = pathlib.Path("/var/lib/mecab/dic/ipadic-utf8")
POS_FIELDS, KNOWN_FIELDS, UNKNOWN_FIELDS = 6, 9, 7


def drawn_texts(source, count):
    """Words of the lexicon in any order, blanks and marks between some: all parts of speech."""
    generator = random.Random(20)
    files = [file.read_text(encoding="euc-jp").splitlines() for file in sorted(source.glob("*.csv"))]
    forms = [line.split(",", 1)[0] for lines in files for line in generator.sample(lines, min(500, len(lines)))]
    for _ in range(count):
        words = generator.choices(forms, k=6)
        yield "".join(word + generator.choice(["", "", "が", "、", " ", "\t "]) for word in words)


def manual_texts():
    """Japanese lines of installed manual pages, whatever they hold."""
    for page in sorted(pathlib.Path("/usr/share/man/ja").glob("man*/*.gz"))[:300]:
        for line in gzip.open(page).read().decode("utf-8", "replace").splitlines():
            if line.isprintable() and "\ufffd" not in line and any(c >= "ぁ" for c in line):
                yield line


def analysed(command, text):
    """Each line's words, as lines of the program, with the place of each without blanks."""
    done = subprocess.run(command, input=text, stdout=subprocess.PIPE, encoding="utf-8", check=True)
    sentences = done.stdout.split("EOS\n")
    assert sentences.pop() == ""
    for sentence in sentences:
        at, words = 0, {}
        for line in sentence.splitlines():
            surface = line.split("\t")[0]
            words[at, at + len(surface)] = line
            at += len(surface)
        yield words


def fields_of(line):
    return next(csv.reader([line.split("\t", 1)[1]]))


def main():
    tavo, lexicon, source = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
    needed = (lexicon / "SysDic", source, MECAB_LEXICON)
    if not all(path.exists() for path in needed) or not shutil.which("mecab"):
        print("compare_mecab: needs the lexicon, its source and mecab with mecab-ipadic-utf8")
        return 77
    texts = [line for name in sys.argv[4:] for line in pathlib.Path(name).read_text(encoding="utf-8").splitlines()]
    texts += [*drawn_texts(source, 2000), *manual_texts()]
    text = "\n".join(texts) + "\n"
    seen, faults = collections.Counter(), []
    pairs = zip(texts, analysed([tavo, "-i", lexicon / "tavo.init", "-O", "mecab"], text),
                analysed(["mecab", "-d", MECAB_LEXICON], text), strict=True)
    for line, ours, theirs in pairs:
        for place, word in ours.items():
            fields = fields_of(word)
            seen["words"] += 1
            if len(fields) not in (KNOWN_FIELDS, UNKNOWN_FIELDS):
                faults.append(f"{line}: {len(fields)} fields: {word}")
            other = theirs.get(place)
            if other is None or fields[:POS_FIELDS] != fields_of(other)[:POS_FIELDS]:
                continue
            seen["agree"] += 1
            seen["unknown"] += len(fields) == UNKNOWN_FIELDS
            if word != other:
                faults.append(f"{line}: {word} instead of {other}")
    print("\n".join(faults[:20]))
    print(", ".join(f"{count} {what}" for what, count in seen.items()))
    enough = seen["agree"] > 0.9 * seen["words"] > 1000 and seen["unknown"] > 50
    print(f"compare_mecab: {len(faults)} faults" + ("" if enough else "; too few words agree"))
    return 1 if faults or not enough else 0


sys.exit(main())
