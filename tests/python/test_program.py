import os
import subprocess
import sys

import pytest


def run(lexicon, *arguments, data=b"", **environment):
    return subprocess.run([sys.executable, "-m", "tavo", *arguments], input=data, capture_output=True,
                          env={**os.environ, "TAVO_PATH": str(lexicon), **environment})  # fmt: skip


def test_columns_are_the_default(lexicon):
    done = run(lexicon, data="食べ\n\nx".encode())
    assert done.stdout.decode() == "食べ\t動詞\tタベ\tタベー\t食べる\t12\t\nEOS\nEOS\nx\t未知語\t\t\tx\t255\t未知語\nEOS\n"


@pytest.mark.parametrize(
    "given, expected",
    [
        (b"\xe3\x82\x82\xe3\x81\xae\n", b"\xe3\x82\x82 \xe3\x81\xae\n"),
        (b"\xe3\x82\x82\r\n\nx", b"\xe3\x82\x82\r\n\nx\n"),
        (b"x  x\xff\xe3\n", b"x x \xff \xe3\n"),
        (b"", b""),
    ],
)
def test_wakati_gives_a_line_for_each(lexicon, given, expected):
    done = run(lexicon, "-O", "wakati", data=given)
    assert (done.stdout, done.stderr, done.returncode) == (expected, b"", 0)


def test_addresses_may_need_more_than_32_bits(lexicon):
    # Every allocation is a mapping of its own, which lies high.
    done = run(lexicon, "-O", "wakati", data=b"x", GLIBC_TUNABLES="glibc.malloc.mmap_threshold=1")
    assert (done.stdout, done.returncode) == (b"x\n", 0)


def test_files_are_read_in_order(lexicon, tmp_path):
    (tmp_path / "a").write_text("もの", encoding="utf-8")
    done = run(lexicon, "-O", "wakati", str(tmp_path / "a"), "-", data=b"x\n")
    assert done.stdout.decode() == "も の\nx\n"
    done = run(lexicon, str(tmp_path / "none"))
    assert done.returncode == 1 and b"none" in done.stderr and b"Traceback" not in done.stderr


@pytest.mark.parametrize("form", ["wakati", "mecab", "json"])
def test_formats_are_those_of_the_program(form):
    lexicon = os.path.join(os.environ["TAVO_BUILD"], "share", "tavo")
    data = '食べたx も\n\nす"もも,髙\n'.encode()
    done = run(lexicon, "-O", form, data=data)
    program = subprocess.run([os.environ["TAVO_PROGRAM"], "-O", form, "-i", lexicon], input=data, capture_output=True)
    assert done.stdout.decode() == program.stdout.decode() and done.returncode == program.returncode == 0


def test_a_reader_that_leaves_is_no_error(lexicon):
    command = f"yes も | {sys.executable} -m tavo -O wakati | head -n 2"
    done = subprocess.run(command, shell=True, capture_output=True, env={**os.environ, "TAVO_PATH": str(lexicon)})
    assert done.stdout.decode() == "も\nも\n" and done.stderr == b""
