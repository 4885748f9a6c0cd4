#!/usr/bin/env python3
"""Analyses the golden cases and compares each with its expected output.

    run.py --tavo PROGRAM --make-conn-table PROGRAM CASE...     compare
    run.py ... --update CASE...   write the expected outputs anew: read the diff
    run.py ... --self-test        prove that a difference is seen

A case is a folder (all texts UTF-8):
    conn.txt      names of the parts of speech and connection costs, as
                  tests/cli/make_conn_table.cpp tells
    words.txt     dictionary source
    options       arguments of the program, one a line; may be missing
    tavo.init     settings, with files *.rules and *.list that it names; may be
                  missing. It names SysDic and ConnTable without folder.
    input.txt     the text
    expected.txt  what the program writes, byte for byte
"""
import argparse
import difflib
import pathlib
import shutil
import subprocess
import sys
import tempfile


def analyse(case, options):
    case = case.resolve()
    tavo, make_conn_table = (pathlib.Path(program).resolve() for program in (options.tavo, options.make_conn_table))
    with tempfile.TemporaryDirectory() as name:
        lexicon = pathlib.Path(name)
        subprocess.run([make_conn_table, case / "conn.txt", lexicon / "ConnTable"], check=True)
        subprocess.run([tavo, "dic", "build", case / "words.txt", "-c", lexicon / "ConnTable",
                        "-o", lexicon / "SysDic"], check=True)
        settings = ["-d", "SysDic", "-c", "ConnTable"]
        if (case / "tavo.init").exists():
            settings = ["-i", "tavo.init"]
            for file in [case / "tavo.init", *case.glob("*.rules"), *case.glob("*.list")]:
                (lexicon / file.name).write_bytes(file.read_text("utf-8").encode("cp932"))
        arguments = (case / "options").read_text().splitlines() if (case / "options").exists() else []
        return subprocess.run([tavo, *settings, *arguments, case / "input.txt"], cwd=lexicon, check=True,
                              capture_output=True).stdout


def run(case, options, show=True):
    """True when the case gives what it should."""
    found = analyse(case, options)
    expected = case / "expected.txt"
    if options.update:
        expected.write_bytes(found)
        return True
    wanted = expected.read_bytes()
    if found != wanted and show:
        lines = [text.decode("utf-8", "replace").splitlines() for text in (wanted, found)]
        print("\n".join(difflib.unified_diff(*lines, str(expected), "found", lineterm="")))
    return found == wanted


def self_test(options):
    source = pathlib.Path(__file__).resolve().parent / "cases/sums_along_a_path"
    with tempfile.TemporaryDirectory() as name:
        case = pathlib.Path(name) / "case"
        shutil.copytree(source, case)
        if not run(case, options):
            return "a sound case fails"
        expected = (case / "expected.txt").read_bytes()
        for what, changed in {"a changed byte": b"x" + expected[1:], "a missing end": expected[:-1],
                              "nothing expected": b""}.items():
            (case / "expected.txt").write_bytes(changed)
            if run(case, options, show=False):
                return f"not seen: {what}"
        # A cost that decides the path has to change the answer.
        (case / "expected.txt").write_bytes(expected)
        costs = (case / "conn.txt").read_text()
        (case / "conn.txt").write_text(costs + "Noun Verb 255\n")
        if run(case, options, show=False):
            return "not seen: another connection cost"
    return None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tavo", required=True)
    parser.add_argument("--make-conn-table", required=True)
    parser.add_argument("--update", action="store_true")
    parser.add_argument("--self-test", action="store_true")
    parser.add_argument("cases", nargs="*", type=pathlib.Path)
    options = parser.parse_args()
    if options.self_test:
        problem = self_test(options)
        print(problem or "every difference is seen")
        return 1 if problem else 0
    if not options.cases:
        parser.error("no cases")
    failed = [case.name for case in options.cases if not run(case, options)]
    print(f"{len(options.cases)} cases, {len(failed)} failed{': ' if failed else ''}{' '.join(failed)}")
    return 1 if failed else 0


sys.exit(main())
