"""Analyses text files or standard input, one line a text: python3 -m tavo [FILE...]"""

import argparse
import collections
import os
import sys

from . import Result, Tagger, TavoError, __version__


_UNKNOWN = "未知語"


def columns(result: Result) -> str:
    """A line for each morpheme, then EOS."""
    lines = ["\t".join((m.surface, m.pos, m.reading, m.pronunciation, m.base, str(m.cost), _UNKNOWN * m.unknown)) for m in result]
    return "\n".join([*lines, "EOS"])


def parsed(arguments):
    parser = argparse.ArgumentParser(prog="python3 -m tavo", description=__doc__)
    parser.add_argument("files", nargs="*", metavar="FILE", help="UTF-8 text; standard input without, or for -")
    parser.add_argument("-O", "--output", choices=["columns", "wakati"], default="columns",
                        help="columns: surface, part of speech, reading, pronunciation, base form, cost, "
                        f"and {_UNKNOWN} for unknown words (default); "
                        "wakati: surfaces separated by blanks, without those that are blanks themselves")  # fmt: skip
    parser.add_argument("-i", "--init", help="init file, or folder of a lexicon")
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
    try:
        tagger = Tagger(options.init)
        for file in options.files or ["-"]:
            if options.output == "wakati":
                for end, surfaces in analyzed(tagger.split_batch, lines_of(file), chunk):
                    print(" ".join(s for s in surfaces if s.strip(" ")), end=end, file=out, flush=chunk == 1)
            else:
                for _, result in analyzed(tagger.batch, lines_of(file), chunk):
                    print(columns(result), file=out, flush=chunk == 1)
        out.close()
    except BrokenPipeError:
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())  # the reader has enough; nothing to tell
    except (OSError, TavoError) as error:
        print(f"tavo: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
