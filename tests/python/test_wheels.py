"""The wheels, and what they install: these tests run in a virtual environment that has them."""

import os
import pathlib
import subprocess
import sys
import zipfile

import tavo
from install_wheels import BUILD, LEXICON, WHEELS, make_wheels


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def test_what_is_tested_is_what_is_installed():
    assert pathlib.Path(tavo.__file__).is_relative_to(sys.prefix) and sys.prefix != sys.base_prefix


def test_wheels_are_the_same_when_made_again(tmp_path):
    wheels = make_wheels(tmp_path)
    assert len(wheels) == 2
    for path in wheels:
        assert path.read_bytes() == (WHEELS / path.name).read_bytes()
    names = zipfile.ZipFile(wheels[0]).namelist()
    assert {"tavo/_tavo.abi3.so", "tavo/py.typed", "tavo/_tavo.pyi", "tavo/mecab.py"} <= set(names)


def test_the_extension_needs_the_system_s_c_library_alone():
    needed = run("readelf", "-d", os.path.join(os.path.dirname(tavo.__file__), "_tavo.abi3.so"))
    libraries = {line.split("[")[1].rstrip("]") for line in needed.splitlines() if "NEEDED" in line}
    assert libraries <= {"libc.so.6", "libm.so.6", "libpthread.so.0", "libdl.so.2", "ld-linux-x86-64.so.2", "ld-linux-aarch64.so.1"}


def test_installed_wheels_analyse():
    program = "import tavo; t = tavo.Tagger(); print(t.split('すもももももももものうち'), t.path)"
    found = run(sys.executable, "-I", "-c", program, cwd="/")
    assert found.startswith("['すもも', 'も', 'もも', 'も', 'もも', 'の', 'うち'] ") and found.endswith("/tavo_ipadic\n")
    text = "2011年abcを食べた。\n推し活、楽しい\n"
    assert run(os.path.join(sys.prefix, "bin", "tavo-py"), "-O", "mecab", input=text) == run(
        BUILD / "bin" / "tavo", "-O", "mecab", "-i", LEXICON, input=text
    )
    examples = "import doctest, importlib, sys, tavo\nfor name in sys.argv[1:]:\n" \
        "    module = importlib.import_module(name); r = doctest.testmod(module, extraglobs={'tagger': tavo.Tagger()})\n" \
        "    assert r.attempted and not r.failed, (name, r)"  # fmt: skip
    run(sys.executable, "-I", "-c", examples, "tavo", "tavo._tagger", "tavo._words", "tavo.mecab")
