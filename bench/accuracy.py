#!/usr/bin/env python3
"""How far two analyses of one text agree, as a table.

    bench/accuracy.py [--tavo PROGRAM] [--lexicon NAME,INIT,MECAB_FOLDER]... [--gold NAME=FILE.conllu]... [TEXT...]
    bench/accuracy.py --compare A B       two outputs in MeCab's format or CoNLL-U

For each lexicon and text (UTF-8) tavo's words are compared with those of mecab,
which reads the same lexicon compiled in MECAB_FOLDER. A gold file is compared with
both programs, for the lexicon NAME: its words must be that lexicon's.

A word counts as the same when both have it at the same characters. Blanks are no
characters here, since programs differ in whether they are words. F1 is
2 * same / (words of one + words of the other), and beside it the same with equal
top-level parts of speech. With gold, neighbouring words made of digits are one
word on both sides (--join-digits does so with texts too).
"""
import argparse
import pathlib
import subprocess
import sys
import tempfile
import unicodedata


class Sentences:
    """Sentences as lists of (form, top-level part of speech)."""

    def __init__(self, sentences, join_digits=False):
        self.sentences = [join(s) if join_digits else s for s in sentences]


def is_number(form):
    return all(unicodedata.category(c) == "Nd" for c in form)


def join(words):
    """Neighbouring words made of digits as one word."""
    joined = []
    for form, pos in words:
        if joined and is_number(form) and is_number(joined[-1][0]):
            joined[-1] = (joined[-1][0] + form, joined[-1][1])
        else:
            joined.append((form, pos))
    return joined


def read_mecab(text):
    """Of MeCab's format: form, tab, fields; EOS ends a sentence."""
    sentences, words = [], []
    for line in text.split("\n"):
        if line == "EOS":
            sentences.append(words)
            words = []
            continue
        # A tab in front is the form itself.
        form, tab, fields = line.partition("\t") if not line.startswith("\t") else ("", "\t", "")
        form = "".join(form.split())
        if tab and form:
            words.append((form, fields.split(",")[0]))
    if words:
        sys.exit("accuracy: the output ends within a sentence")
    return sentences


def read_conllu(text):
    """Form, and the language's own part of speech; the raw sentences beside."""
    sentences, words, raw = [], [], []
    for line in text.split("\n"):
        if line.startswith("# text = "):
            raw.append(line[len("# text = "):])
        fields = line.split("\t")
        if len(fields) >= 5 and fields[0].isdigit():
            words.append(("".join(fields[1].split()), fields[4].split("-")[0]))
        elif not line and words:
            sentences.append(words)
            words = []
    return sentences, raw


def spans(words):
    result, position = {}, 0
    for form, pos in words:
        result[position, position + len(form)] = pos
        position += len(form)
    return result


def compare(first, second):
    """Words of both, word F1, F1 with part of speech, sentences that differ in their characters."""
    if len(first) != len(second):
        sys.exit(f"accuracy: {len(first)} and {len(second)} sentences")
    words_first = words_second = same = same_pos = left_out = 0
    for a, b in zip(first, second):
        if "".join(form for form, _ in a) != "".join(form for form, _ in b):
            left_out += 1
            continue
        spans_a, spans_b = spans(a), spans(b)
        words_first += len(spans_a)
        words_second += len(spans_b)
        common = spans_a.keys() & spans_b.keys()
        same += len(common)
        same_pos += sum(spans_a[span] == spans_b[span] for span in common)
    if words_first + words_second == 0:
        sys.exit("accuracy: no words to compare")
    total = words_first + words_second
    return words_first, words_second, 2 * same / total, 2 * same_pos / total, left_out


def run(command, text):
    # Lines may be longer than the programs' usual buffers; no line may be lost.
    result = subprocess.run(command, input=text.encode("utf-8", "surrogateescape"), stdout=subprocess.PIPE)
    if result.returncode != 0:
        sys.exit(f"accuracy: {command[0]} ended with status {result.returncode}")
    return read_mecab(result.stdout.decode("utf-8", "surrogateescape"))


HEAD = ("lexicon", "text", "compared", "words", "and", "word F1", "with part of speech")


def print_row(row):
    print("{:<10} {:<22} {:<15} {:>8} {:>8} {:>9} {:>20}".format(*row), flush=True)


def show(lexicon, name, compared, first, second):
    words_first, words_second, f1, f1_pos, left_out = compare(first, second)
    print_row((lexicon, name, compared, words_first, words_second, f"{f1:.5f}", f"{f1_pos:.5f}"))
    if left_out:
        print(f"  ({left_out} sentences left out: their characters differ)")


class Lexicon:
    def __init__(self, tavo, description):
        parts = description.split(",")
        if len(parts) != 3:
            sys.exit(f"accuracy: --lexicon {description}: NAME,INIT,MECAB_FOLDER is expected")
        self.name = parts[0]
        self.tavo_command = [tavo, "-i", parts[1], "-O", "mecab"]
        self.mecab_command = ["mecab", "-d", parts[2], "-b", "10000000"]

    def tavo(self, text):
        return run(self.tavo_command, text)

    def mecab(self, text):
        return run(self.mecab_command, text)


def read_file(path):
    return pathlib.Path(path).read_bytes().decode("utf-8", "surrogateescape")


def compare_files(first, second, join_digits):
    def sentences(path):
        text = read_file(path)
        return read_conllu(text)[0] if path.endswith(".conllu") else read_mecab(text)

    print_row(HEAD)
    show("-", pathlib.Path(second).name, "files", Sentences(sentences(first), join_digits).sentences,
         Sentences(sentences(second), join_digits).sentences)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tavo", default="build/bin/tavo")
    parser.add_argument("--lexicon", action="append", default=[])
    parser.add_argument("--gold", action="append", default=[])
    parser.add_argument("--join-digits", action="store_true")
    parser.add_argument("--compare", nargs=2, metavar=("A", "B"))
    parser.add_argument("texts", nargs="*", metavar="TEXT")
    options = parser.parse_args()
    if options.compare:
        return compare_files(*options.compare, options.join_digits)
    lexicons = [Lexicon(options.tavo, description) for description in options.lexicon]
    if not lexicons or not (options.texts or options.gold):
        parser.error("a lexicon and a text are needed")
    print_row(HEAD)
    for lexicon in lexicons:
        for path in options.texts:
            text = read_file(path)
            show(lexicon.name, pathlib.Path(path).name, "tavo, mecab",
                 *(Sentences(s, options.join_digits).sentences for s in (lexicon.tavo(text), lexicon.mecab(text))))
        for description in options.gold:
            name, _, path = description.rpartition("=")
            if name != lexicon.name:
                continue
            gold, raw = read_conllu(read_file(path))
            text = "".join(sentence + "\n" for sentence in raw)
            gold, tavo, mecab = (Sentences(s, True).sentences for s in (gold, lexicon.tavo(text), lexicon.mecab(text)))
            title = pathlib.Path(path).name
            show(lexicon.name, title, "tavo, mecab", tavo, mecab)
            show(lexicon.name, title, "tavo, gold", tavo, gold)
            show(lexicon.name, title, "mecab, gold", mecab, gold)


if __name__ == "__main__":
    main()
