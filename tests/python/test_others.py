"""Beside the tools that users of the package have: mypy, MeCab's binding."""

import os
import pathlib
import subprocess
import sys

import pytest

LEXICON = pathlib.Path(os.environ["TAVO_BUILD"]) / "share" / "tavo"
PROGRAM = """
from typing import List
import tavo

def readings(text: str) -> List[str]:
    with tavo.Tagger(divide_word=True, words=[("推し活", {"like": "部活"})]) as tagger:
        names: List[str] = [token.surface for token in tagger(text)[0:2]] + tagger.split(None)
        names += [result.text for result in tagger.batch([text, None, float("nan")])]
        numbers: List[int] = list(tagger.columns([text]).start)
        return [token.reading for token in tagger(text)] + [tagger(text)[0].pos, *tavo.compile(["x"], "y"), str(numbers)]
"""
WRONG = 'import tavo\ntavo.Tagger()(3, 4)\ntavo.Tagger().split(b"x")\ntavo.Tagger()("x")[0].rading\n'
TEXTS = ["猫が好きだ", "すもももももももものうち", "東京へ 行きました。", "「猫」を、,と", "", "美しい花が咲いていた"]


def mypy(*arguments, **options):
    return subprocess.run([sys.executable, "-m", *arguments], capture_output=True, text=True, **options)


def test_mypy_knows_the_types(tmp_path):
    for name, text in (("right.py", PROGRAM), ("wrong.py", WRONG)):
        (tmp_path / name).write_text(text, encoding="utf-8")
    right = mypy("mypy", "--strict", "--no-incremental", "right.py", cwd=tmp_path)
    assert right.returncode == 0, right.stdout + right.stderr
    wrong = mypy("mypy", "--strict", "--no-incremental", "wrong.py", cwd=tmp_path).stdout
    assert [line.split(":")[1] for line in wrong.splitlines() if "error:" in line] == ["2", "3", "4"], wrong


def test_the_stub_is_what_the_extension_has(tmp_path):
    allowed = tmp_path / "allowed"
    allowed.write_text("tavo._tavo.Tagger.__init__\ntavo._tavo.Tagger.__call__\n")  # slots have no named arguments
    done = mypy("mypy.stubtest", "tavo._tavo", "--allowlist", allowed, "--ignore-unused-allowlist", cwd=tmp_path)
    assert done.returncode == 0, done.stdout + done.stderr


@pytest.mark.parametrize("text", TEXTS)
def test_a_program_for_mecab_s_binding_gives_the_same(text, monkeypatch):
    import MeCab as mecab

    from tavo import mecab as own

    monkeypatch.setenv("TAVO_PATH", str(LEXICON))

    def script(module, options):
        wakati = module.Tagger(options + " -Owakati").parse(text)
        tagger, nodes = module.Tagger(options), []
        node = tagger.parseToNode(text)
        while node:
            nodes.append((node.surface, node.feature, node.stat))
            node = node.next
        return wakati, tagger.parse(text), nodes

    assert script(own, "") == script(mecab, "-d /var/lib/mecab/dic/ipadic-utf8")


def test_options_of_mecab_that_are_not_known_are_told(monkeypatch):
    from tavo import mecab as own

    monkeypatch.setenv("TAVO_PATH", str(LEXICON))
    assert own.Tagger(f"--dicdir={LEXICON} -O wakati").parse("猫が") == "猫 が \n"
    assert own.Tagger().parseNBest(2, "すもも").count("EOS\n") == 2
    with pytest.raises(RuntimeError, match="no option '-Ochasen'"):
        own.Tagger("-Ochasen")
