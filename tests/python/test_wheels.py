"""Wheels as users install them: in a virtual environment, offline."""

import os
import pathlib
import subprocess
import sys
import zipfile

import pytest

ROOT = pathlib.Path(__file__).parents[2]
BUILD = pathlib.Path(os.environ["TAVO_BUILD"])
LEXICON = BUILD / "share" / "tavo"
#: Without what would make the build's package or lexicon be found.
ENVIRONMENT = {key: value for key, value in os.environ.items() if key not in ("PYTHONPATH", "TAVO_PATH")}


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, env=ENVIRONMENT, **options).stdout


def made(folder):
    builder = ROOT / "bindings" / "python" / "tavo_build.py"
    environment = {**ENVIRONMENT, "SOURCE_DATE_EPOCH": "1700000000"}
    subprocess.run([sys.executable, "-B", builder, folder, BUILD, LEXICON, "ipadic"], check=True, env=environment, stdout=subprocess.DEVNULL)
    return sorted(folder.glob("*.whl"))


@pytest.fixture(scope="module")
def wheels(tmp_path_factory):
    return made(tmp_path_factory.mktemp("wheels"))


@pytest.fixture(scope="module")
def environment(wheels, tmp_path_factory):
    """A virtual environment with both wheels."""
    folder = tmp_path_factory.mktemp("venv")
    run(sys.executable, "-m", "venv", folder)
    run(folder / "bin" / "pip", "install", "--quiet", "--no-index", *wheels)
    return folder / "bin"


def test_wheels_are_the_same_when_made_again(wheels, tmp_path):
    assert [path.name for path in wheels] == [path.name for path in made(tmp_path)] and len(wheels) == 2
    for path in wheels:
        assert path.read_bytes() == (tmp_path / path.name).read_bytes()
    names = zipfile.ZipFile(wheels[0]).namelist()
    assert {"tavo/_tavo.abi3.so", "tavo/py.typed", "tavo/_tavo.pyi", "tavo/mecab.py"} <= set(names)


def test_the_extension_needs_the_system_s_c_library_alone():
    needed = run("readelf", "-d", BUILD / "python" / "tavo" / "_tavo.abi3.so")
    libraries = {line.split("[")[1].rstrip("]") for line in needed.splitlines() if "NEEDED" in line}
    assert libraries <= {"libc.so.6", "libm.so.6", "libpthread.so.0", "libdl.so.2", "ld-linux-x86-64.so.2", "ld-linux-aarch64.so.1"}


def test_installed_wheels_analyse(environment):
    program = "import tavo; t = tavo.Tagger(); print(t.split('すもももももももものうち'), t.path)"
    found = run(environment / "python3", "-I", "-c", program, cwd="/")
    assert found.startswith("['すもも', 'も', 'もも', 'も', 'もも', 'の', 'うち'] ") and found.endswith("/tavo_ipadic\n")
    text = "2011年abcを食べた。\n推し活、楽しい\n"
    assert run(environment / "tavo-py", "-O", "mecab", input=text) == run(
        BUILD / "bin" / "tavo", "-O", "mecab", "-i", LEXICON, input=text
    )
    examples = "import doctest, importlib, sys, tavo\nfor name in sys.argv[1:]:\n" \
        "    module = importlib.import_module(name); r = doctest.testmod(module, extraglobs={'tagger': tavo.Tagger()})\n" \
        "    assert r.attempted and not r.failed, (name, r)"  # fmt: skip
    run(environment / "python3", "-I", "-c", examples, "tavo", "tavo._tagger", "tavo._words", "tavo.mecab")


def test_uninstalling_leaves_nothing(environment):
    site = pathlib.Path(run(environment / "python3", "-c", "import tavo; print(tavo.__file__)").strip()).parents[1]
    run(environment / "pip", "uninstall", "--quiet", "--yes", "tavo", "tavo-ipadic")
    assert not list(site.glob("tavo*"))
