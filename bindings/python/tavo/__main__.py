"""Analyses text files or standard input, one line a text: python3 -m tavo [FILE...]"""

import argparse
import collections
import json
import os
import sys

from . import Result, Tagger, TavoError, __version__
from .mecab import feature_of

_UNKNOWN = "未知語"
#: Bytes that are not UTF-8, as lines_of() gives them: JSON has no place for them.
_STRAY_BYTES = dict.fromkeys(range(0xDC80, 0xDD00), "\ufffd")


def column_lines(result):
    """A line for each token, then EOS."""
    lines = ["\t".join((t.surface, t.pos, t.reading, t.pronunciation, t.base, str(t.cost), _UNKNOWN * t.unknown)) for t in result]
    return "\n".join([*lines, "EOS"])


def mecab_lines(result):
    return "\n".join([*(f"{t.surface}\t{feature_of(t)}" for t in result), "EOS"])


def json_line(result: Result) -> str:
    morphemes = [
        {
            "surface": t.surface, "pos": t.pos, "base_form": t.base, "reading": t.reading or None,
            "pronunciation": t.pronunciation or None, "cost": t.cost, "start": t.byte_start, "end": t.byte_end,
            "char_start": t.start, "char_end": t.end, "unknown": t.unknown,
        }
        for t in result
    ]  # fmt: skip
    line = json.dumps({"text": result.text, "morphemes": morphemes}, ensure_ascii=False, separators=(",", ":"))
    return line.translate(_STRAY_BYTES)


FORMATS = {"columns": column_lines, "wakati": None, "mecab": mecab_lines, "json": json_line}


def parsed(arguments):
    parser = argparse.ArgumentParser(prog="python3 -m tavo", description=__doc__)
    parser.add_argument("files", nargs="*", metavar="FILE", help="UTF-8 text; standard input without, or for -")
    parser.add_argument("-O", "--output", choices=[*FORMATS], default="columns",
                        help="columns: surface, part of speech, reading, pronunciation, base form, cost, "
                        f"and {_UNKNOWN} for unknown words (default); wakati: surfaces separated by blanks; "
                        "mecab: MeCab's fields; json: an object a line")  # fmt: skip
    parser.add_argument("-i", "--init", help="init file, or folder of a lexicon")
    parser.add_argument("-d", "--dic", action="append", default=[], help="dictionary, used before those of the lexicon")
    parser.add_argument("--version", action="version", version=f"tavo {__version__}")
    return parser.parse_args(arguments)


def lines_of(file: str):
    """The lines of a file with their ends; bytes that are not UTF-8 come back unchanged."""
    source = sys.stdin.buffer if file == "-" else open(file, "rb")
    with source:
        for line in source:
            yield line.decode("utf-8", "surrogateescape")


def end_of(line: str) -> str:
    return "\r\n" if line.endswith("\r\n") else "\n"


def analyzed(analyze, lines, chunk):
    """Pairs of a line's end and its analysis, without the end."""
    ends = collections.deque()  # of the lines that the analysis has taken and not given back

    def texts():
        for line in lines:
            ends.append(end_of(line))
            yield line[: -len(ends[-1])] if line.endswith("\n") else line

    for result in analyze(texts(), chunk):
        yield ends.popleft(), result


def main(arguments=None) -> int:
    options = parsed(arguments)
    out = open(sys.stdout.fileno(), "w", encoding="utf-8", errors="surrogateescape", newline="\n", closefd=False)
    chunk = 1 if sys.stdin.isatty() else 1000  # a person at the keyboard waits for each line
    written = FORMATS[options.output]
    try:
        tagger = Tagger(options.init, dic=options.dic, blanks=options.output in ("columns", "json"))
        for file in options.files or ["-"]:
            if written is None:
                for end, surfaces in analyzed(tagger.split_batch, lines_of(file), chunk):
                    print(" ".join(surfaces), end=end, file=out, flush=chunk == 1)
            else:
                for _, result in analyzed(tagger.batch, lines_of(file), chunk):
                    print(written(result), file=out, flush=chunk == 1)
        out.close()
    except BrokenPipeError:
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())  # the reader has enough; nothing to tell
    except (OSError, TavoError) as error:
        print(f"tavo: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
