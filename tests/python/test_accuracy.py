"""The comparison behind `make accuracy`."""
import importlib.util
import pathlib
import stat
import subprocess
import sys

import pytest

PROGRAM = pathlib.Path(__file__).resolve().parents[2] / "bench" / "accuracy.py"
found = importlib.util.spec_from_file_location("accuracy", PROGRAM)
accuracy = importlib.util.module_from_spec(found)
found.loader.exec_module(accuracy)

CONLLU = """# sent_id = 1
# text = 12,3円 です
1\t12\t12\tNUM\t名詞-数詞\t_
2\t,\t,\tPUNCT\t補助記号-読点\t_
3\t3\t3\tNUM\t名詞-数詞\t_
4-5\t円です\t_\t_\t_\t_
4\t円\t円\tNOUN\t名詞-普通名詞\t_
5\tです\tです\tAUX\t助動詞\t_

# text = は
1\tは\tは\tADP\t助詞\t_

"""


def test_mecab_format_drops_blanks_and_keeps_marks():
    text = "　\t記号,空白\nA B\t名詞,一般\n\tx\t記号\n,\t記号,\"読点\"\nEOS\nEOS\n"
    assert accuracy.read_mecab(text) == [[("AB", "名詞"), (",", "記号")], []]
    with pytest.raises(SystemExit):
        accuracy.read_mecab("A\t名詞\n")


def test_digits_join_in_runs_only():
    words = [("1", "A"), ("２3", "B"), ("十", "C"), ("4", "D"), (",", "E"), ("5", "F")]
    assert accuracy.join(words) == [("1２3", "A"), ("十", "C"), ("4", "D"), (",", "E"), ("5", "F")]


@pytest.mark.parametrize("second, f1, f1_pos", [
    ([("ab", "N"), ("c", "P")], 1, 1),
    ([("ab", "V"), ("c", "P")], 1, 0.5),
    ([("a", "N"), ("b", "N"), ("c", "P")], 0.4, 0.4),
    ([("abc", "N")], 0, 0),
    ([("a", "N"), ("bc", "P")], 0, 0),
])
def test_f1_counts_words_at_equal_places(second, f1, f1_pos):
    first = [("ab", "N"), ("c", "P")]
    assert accuracy.compare([first], [second]) == (2, len(second), pytest.approx(f1), pytest.approx(f1_pos), 0)


def test_sentences_of_other_characters_are_left_out():
    assert accuracy.compare([[("a", "N")], [("b", "N")]], [[("a", "N")], [("c", "N")]]) == (1, 1, 1, 1, 1)
    with pytest.raises(SystemExit):
        accuracy.compare([[("a", "N")]], [])
    with pytest.raises(SystemExit):
        accuracy.compare([[("a", "N")]], [[("b", "N")]])


def program(path, output):
    path.write_text(f"#!/bin/sh\ncat >/dev/null\ncat <<'END'\n{output}END\n", encoding="utf-8")
    path.chmod(path.stat().st_mode | stat.S_IXUSR)


def test_the_table_has_each_comparison(tmp_path, monkeypatch):
    program(tmp_path / "tavo", "12\t名詞\n,\t記号\n3\t名詞\n円\t名詞\nです\t助動詞\nEOS\nは\t助詞\nEOS\n")
    program(tmp_path / "mecab", "1\t名詞\n2\t名詞\n,\t補助記号\n3円\t名詞\nです\t助動詞\nEOS\nは\t助動詞\nEOS\n")
    (tmp_path / "gold.conllu").write_text(CONLLU, encoding="utf-8")
    (tmp_path / "text").write_text("12,3円 です\nは\n", encoding="utf-8")
    monkeypatch.setenv("PATH", str(tmp_path), prepend=":")
    table = subprocess.run([sys.executable, PROGRAM, "--tavo", tmp_path / "tavo", "--lexicon", "X,init,folder",
                            "--gold", f"X={tmp_path / 'gold.conllu'}", "--gold", "Y=none", tmp_path / "text"],
                           check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout
    assert [line.split() for line in table.splitlines()[1:]] == [
        ["X", "text", "tavo,", "mecab", "6", "6", "0.50000", "0.16667"],
        ["X", "gold.conllu", "tavo,", "mecab", "6", "5", "0.72727", "0.36364"],
        ["X", "gold.conllu", "tavo,", "gold", "6", "6", "1.00000", "0.83333"],
        ["X", "gold.conllu", "mecab,", "gold", "5", "6", "0.72727", "0.54545"],
    ]


def test_a_program_that_fails_ends_the_comparison(tmp_path):
    (tmp_path / "text").write_text("a\n")
    result = subprocess.run([sys.executable, PROGRAM, "--tavo", "/bin/false", "--lexicon", "X,i,f", tmp_path / "text"],
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")
    assert result.returncode != 0
    assert "status 1" in result.stderr
