"""Files tokenized on a cluster of two worker processes on this machine."""

import hashlib
import json
import os
import pathlib
import signal
import subprocess
import threading
import time

import pytest

distributed = pytest.importorskip("distributed")

from tavo import dask  # noqa: E402

TEXT = "すもももももももものうち\n\n食べ東京x😀\r\nもÿ髙\n" * 50


@pytest.fixture(scope="module")
def client(tmp_path_factory):
    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None,
                                  local_directory=str(tmp_path_factory.mktemp("dask"))) as cluster:  # fmt: skip
        with distributed.Client(cluster) as made:
            yield made


def outputs(folder):
    return {path.name: path.read_bytes() for path in sorted(folder.iterdir()) if path.is_file()}


def by_program(lexicon, *files, form="wakati"):
    return subprocess.run([os.environ["TAVO_PROGRAM"], "-O", form, "-i", lexicon, *files], check=True, capture_output=True).stdout


def test_parts_are_what_the_program_makes(client, lexicon, tmp_path):
    first, second = tmp_path / "a.txt", tmp_path / "b"
    first.write_bytes(TEXT.encode() + b"no end")
    second.write_bytes(b"")
    for form, part_bytes in (("wakati", 100), ("wakati", 1 << 20), ("json", 999)):
        out = tmp_path / f"{form}{part_bytes}"
        parts = dask.tokenize([first, second], out, client=client, lexicon=lexicon, form=form, part_bytes=part_bytes)
        made = outputs(out)
        assert list(made) == [pathlib.Path(part.path).name for part in parts] and "b.00000" in made
        expected = by_program(lexicon, first, form=form)
        assert b"".join(made.values()) == expected
        for part, data in zip(parts, made.values()):
            assert (part.bytes, part.sha256) == (len(data), hashlib.sha256(data).hexdigest()) and not part.skipped
        assert sum(part.records for part in parts) == expected.count(b"\n")
        if form == "json":
            rows = [json.loads(line) for line in expected.decode().split("\n")[:-1]]
            assert sum(part.tokens for part in parts) == sum(len(row["morphemes"]) for row in rows)


def test_bytes_that_are_no_text(client, lexicon, tmp_path):
    (tmp_path / "a").write_bytes(b"x\xff \xe3\n")
    for form, expected in (("wakati", b"x \xff \xe3\n"), ("json", '{"text":"x\ufffd \ufffd",'.encode())):
        dask.tokenize([tmp_path / "a"], tmp_path / form, client=client, lexicon=lexicon, form=form)
        assert outputs(tmp_path / form)["a.00000"].startswith(expected)


def test_key_columns_are_carried_along(client, lexicon, tmp_path):
    table = tmp_path / "table.tsv"
    table.write_text("7\tすもものうち\tx y\n8\t\tz\n", encoding="utf-8")
    dask.tokenize([table], tmp_path / "out", client=client, lexicon=lexicon, text_column=1)
    assert outputs(tmp_path / "out") == {"table.tsv.00000": "7\tx y\tすもも の うち\n8\tz\t\n".encode()}
    with pytest.raises(ValueError, match=r"table.tsv: the line at byte 0 has no column 3"):
        dask.tokenize([table], tmp_path / "bad", client=client, lexicon=lexicon, text_column=3)
    assert outputs(tmp_path / "bad").keys() <= {name for name in os.listdir(tmp_path / "bad") if name.endswith(".part")}


def test_finished_parts_are_skipped_when_they_are_the_same(client, lexicon, tmp_path):
    source, out = tmp_path / "a.txt", tmp_path / "out"
    source.write_text(TEXT, encoding="utf-8")

    def skipped(**options):
        parts = dask.tokenize([source], out, client=client, lexicon=lexicon, part_bytes=2000, **{"resume": True, **options})
        return [part.skipped for part in parts]

    assert skipped() == [False, False]
    before = outputs(out)
    assert skipped() == [True, True] and skipped(resume=False) == [False, False]
    (out / "a.txt.00001").write_bytes(b"cut")
    assert skipped() == [True, False]
    assert skipped(divide_word=True) == [False, False] and outputs(out) != before
    assert skipped() == [False, False] and outputs(out) == before
    source.write_text(TEXT[:-2] + "の\n", encoding="utf-8")
    assert skipped() == [False, False]


def test_a_worker_that_dies_changes_nothing(client, lexicon, tmp_path):
    source, out = tmp_path / "long.txt", tmp_path / "out"
    source.write_text(TEXT * 2000, encoding="utf-8")
    found = []
    work = threading.Thread(target=lambda: found.append(dask.tokenize([source], out, client=client, lexicon=lexicon, part_bytes=1 << 21)))
    work.start()
    killed = []
    while work.is_alive() and not killed:
        killed = list(out.glob(".long.txt.*.part")) if out.is_dir() else []
        time.sleep(0.001)
    os.kill(int(killed[0].name.split("-")[-2]), signal.SIGKILL)
    assert killed[0].exists(), "it was in the middle of its part"
    work.join()
    assert b"".join(outputs(out).values()) == by_program(lexicon, source)
    assert len(found[0]) == len(outputs(out)) > 2


def test_bad_arguments_are_told(tmp_path):
    (tmp_path / "x").mkdir()
    for name in ("a", "x/a"):
        (tmp_path / name).write_text("も")
    for error, text, arguments in (
        (TypeError, "a list of paths", {"inputs": "a"}),
        (ValueError, "form is 'wakati' or 'json'", {"form": "mecab"}),
        (ValueError, "part_bytes is 0", {"part_bytes": 0}),
        (ValueError, "the same name", {"inputs": [tmp_path / "a", tmp_path / "x/a"]}),
        (FileNotFoundError, "none", {"inputs": [tmp_path / "none"]}),
    ):
        with pytest.raises(error, match=text):
            dask.tokenize(**{"inputs": [tmp_path / "a"], "outdir": tmp_path / "out", **arguments})
