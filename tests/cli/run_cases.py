#!/usr/bin/env python3
"""Runs files of commands and compares everything they do with what stands beside them.

    run_cases.py --tavo PROGRAM --make-conn-table PROGRAM --data-dir DIR CASE...
    run_cases.py ... --self-test    prove that each kind of difference is seen

A case file:

    # comment
    $ command          run by bash in the file's own folder, `tavo` on the path
    > text             a line of standard output
    ! text             a line of standard error
    ? 1                exit status, when it is not 0

Folder and lexicon are fresh for each file; its commands run one after another.
$WORLD holds the sources of the lexicon, and in texts <TMP> stands for the folder.
Exits 1 when any command did something else.
"""
import argparse
import os
import pathlib
import subprocess
import sys
import tempfile

WORLD = pathlib.Path(__file__).resolve().parent / "world"


class Step:
    def __init__(self, number, command):
        self.number, self.command = number, command
        self.out, self.err, self.status = b"", b"", 0


def parse(text):
    steps = []
    for number, line in enumerate(text.split(b"\n"), 1):
        mark, rest = line[:1], line[2:]
        if line[1:2] not in (b"", b" ") and mark in b"$>!?":
            raise ValueError(f"line {number}: no blank behind the mark")
        if mark == b"$":
            steps.append(Step(number, rest))
        elif mark in (b">", b"!", b"?") and not steps:
            raise ValueError(f"line {number}: no command before it")
        elif mark == b">":
            steps[-1].out += rest + b"\n"
        elif mark == b"!":
            steps[-1].err += rest + b"\n"
        elif mark == b"?":
            steps[-1].status = int(rest)
        elif line.strip() and mark != b"#":
            raise ValueError(f"line {number}: what is this? {line!r}")
    if not steps:
        raise ValueError("no command at all")
    return steps


def show(what, **data):
    return "".join(f"    {what}, {side}:\n" + "".join(f"      {line!r}\n" for line in text.splitlines(keepends=True))
                   for side, text in data.items())


def run_step(step, folder, environment):
    done = subprocess.run(["bash", "-o", "pipefail", "-c", step.command], cwd=folder, env=environment,
                          capture_output=True, stdin=subprocess.DEVNULL, timeout=300)
    differences = []
    for what, expected, actual in (("standard output", step.out, done.stdout),
                                   ("standard error", step.err, done.stderr)):
        actual = actual.replace(os.fsencode(folder), b"<TMP>")
        if actual != expected:
            differences.append(show(what, expected=expected, seen=actual))
    if done.returncode != step.status:
        differences.append(f"    exit status, expected: {step.status}, seen: {done.returncode}\n")
    return differences


def run_file(path, options):
    """The number of commands and of those that did something else."""
    steps = parse(pathlib.Path(path).read_bytes())
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        environment = {"PATH": f"{os.path.dirname(options.tavo)}:{os.environ['PATH']}", "LC_ALL": "C",
                       "TAVO_PATH": f"{folder}/lexicon", "WORLD": str(WORLD), "HOME": folder,
                       "MAKE_CONN_TABLE": options.make_conn_table, "INSTALLED": options.data_dir}
        environment.update({k: v for k, v in os.environ.items() if k.endswith("SAN_OPTIONS")})
        lexicon = pathlib.Path(folder) / "lexicon"
        lexicon.mkdir()
        subprocess.run([options.make_conn_table, WORLD / "conn.txt", lexicon / "ConnTable"], check=True)
        subprocess.run([options.tavo, "dic", "build", WORLD / "words.txt", "-c", lexicon / "ConnTable",
                        "-o", lexicon / "SysDic"], check=True)
        for step in steps:
            differences = run_step(step, folder, environment)
            if differences:
                failures += 1
                print(f"{path}:{step.number}: $ {step.command.decode('utf-8', 'replace')}")
                print("".join(differences), end="")
    return len(steps), failures


def self_test(options):
    sound = b"$ echo a; echo b >&2; exit 3\n> a\n! b\n? 3\n"
    wrong = {"output": sound.replace(b"> a", b"> c"), "error": sound.replace(b"! b", b"! c"),
             "status": sound.replace(b"? 3", b"? 4"), "missing output": sound.replace(b"> a\n", b""),
             "program": b"$ tavo --no-such-option\n"}
    refused = {"no command": b"# nothing\n", "stray line": sound + b"text\n", "early result": b"> a\n" + sound}
    problems = []
    with tempfile.TemporaryDirectory() as folder:
        case = pathlib.Path(folder) / "a.case"
        case.write_bytes(sound)
        if run_file(case, options) != (1, 0):
            problems.append("a sound case fails")
        for what, text in wrong.items():
            case.write_bytes(text)
            if run_file(case, options) != (1, 1):
                problems.append(f"not seen: wrong {what}")
        for what, text in refused.items():
            try:
                parse(text)
                problems.append(f"not refused: {what}")
            except ValueError:
                pass
    print("\n".join(problems) or "every difference is seen")
    return 1 if problems else 0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--tavo", required=True)
    parser.add_argument("--make-conn-table", required=True)
    parser.add_argument("--data-dir", required=True, help="where the program looks for an installed lexicon")
    parser.add_argument("--self-test", action="store_true")
    parser.add_argument("cases", nargs="*")
    options = parser.parse_args()
    if options.self_test:
        return self_test(options)
    if not options.cases:
        parser.error("no cases")
    results = [run_file(case, options) for case in options.cases]
    commands, failures = (sum(column) for column in zip(*results))
    print(f"{commands} commands, {failures} failures")
    return 1 if failures or not commands else 0


sys.exit(main())
