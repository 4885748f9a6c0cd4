"""Every call again and again: nothing is kept. A debug interpreter counts references, others memory."""

import copy
import gc
import os
import pathlib
import pickle
import sys
import threading
import types

import pytest

import tavo
from tavo import mecab

ATTRIBUTES = [name for name, kind in vars(tavo.Token).items() if isinstance(kind, types.GetSetDescriptorType)]
TEXTS = ["すもももももももものうち", "食べ東京x😀 の", "", "も\ud800の髙", "ソ能ソ能" * 10]
LINES = 100_000


def every_call(tagger, lexicon, folder):
    """Functions that take texts."""
    dictionary = os.path.join(folder, "own.dic")
    again = pickle.loads(pickle.dumps(tagger("もものも")))

    def look(result):
        repr(result), str(result), result.surfaces, result.text, result[0:1], list(reversed(result)), result == again
        result.connection_cost, result.word_cost, result.count(again[0]), again[0] in result, copy.copy(result)
        return [(repr(token), str(token), hash(token), token == again[0], token != again[0]) for token in result]

    def refused(texts):
        for text in texts:
            for call, given in ((tagger, 3), (tagger.split, b"x"), (tagger.nbest, 3.5), (tagger.tagged, [])):
                with pytest.raises(TypeError):
                    call(given)
            with pytest.raises(ValueError):
                tagger.nbest(text, 0)
            with pytest.raises(IndexError):
                again[99]
            with pytest.raises(TypeError):
                list(tagger.batch([text, 3]))
            with pytest.raises(FileNotFoundError):
                tavo.Tagger("/no/such/lexicon")
            with pytest.raises(TypeError):
                tavo.Result()

    def made(texts):
        for text in texts[:2]:
            tavo.compile(["すもももも"], dictionary, like="もも", lexicon=lexicon)
            with tavo.Tagger(lexicon, dic=dictionary, blanks=True) as own:
                own.split(text), own.rebuild(dictionary), own.pos_names(), own.fingerprint, own.path, repr(own)

    def nodes(texts):
        for text in texts:
            node = parser.parseToNode(text)
            while node:
                node.surface, node.feature
                node = node.next

    parser = mecab.Tagger(f"-d {lexicon}")
    return {
        "tokens": lambda texts: [[getattr(t, name) for name in ATTRIBUTES] for text in texts for t in tagger(text)],
        "split": lambda texts: [tagger.split(text) for text in texts],
        "batch": lambda texts: [[t.surface for t in result] for result in tagger.batch(texts)],
        "split_batch": lambda texts: list(tagger.split_batch(texts)),
        "nbest": lambda texts: [[t.pos for result in tagger.nbest(text, 3) for t in result] for text in texts],
        "tagged": lambda texts: [tagger.tagged(text.replace("\ud800", "<word>の</word>")).surfaces for text in texts],
        "columns": lambda texts: bytes(tagger.columns(texts).pos),
        "lookup": lambda texts: [tagger.lookup(text[:3], by).surfaces for text in texts for by in ("surface", "reading", "common_prefix")],
        "results": lambda texts: [look(tagger(text)) for text in texts],
        "pickled": lambda texts: [pickle.loads(pickle.dumps(tagger(text))).surfaces for text in texts],
        "mecab": nodes,
        "refused": refused,
        "made": made,
    }  # fmt: skip


CALLS = ("tokens", "split", "batch", "split_batch", "nbest", "tagged", "columns", "lookup", "results", "pickled", "mecab", "refused", "made")


@pytest.mark.parametrize("name", CALLS)
@pytest.mark.skipif(not hasattr(sys, "gettotalrefcount"), reason="needs a debug interpreter")
def test_references_are_given_back(name, lexicon, tmp_path):
    calls = every_call(tavo.Tagger(lexicon), lexicon, tmp_path)
    assert set(calls) == set(CALLS)

    def grown(times):
        gc.collect()
        before = sys.gettotalrefcount()
        for _ in range(times):
            calls[name](TEXTS)
        gc.collect()
        return sys.gettotalrefcount() - before

    grown(30)
    assert abs(grown(100)) < 60, "less than one a round"


@pytest.mark.parametrize("name", CALLS)
@pytest.mark.skipif(hasattr(sys, "gettotalrefcount"), reason="a debug interpreter takes too long")
def test_memory_is_given_back(name, lexicon, tmp_path):
    call = every_call(tavo.Tagger(lexicon), lexicon, tmp_path)[name]
    rounds = (LINES if name not in ("refused", "made") else LINES // 50) // 1000

    def pages(times):
        for _ in range(times):
            call(TEXTS * 200)
        return int(pathlib.Path("/proc/self/statm").read_text().split()[1])

    before = pages(max(rounds // 5, 1))
    assert pages(rounds) - before < 500


def test_other_threads_work_while_a_text_is_analysed(lexicon):
    tagger, steps, analysed = tavo.Tagger(lexicon), [], threading.Event()
    sys.setswitchinterval(1000)  # nobody is asked for the interpreter's lock: it is given

    def step():
        while not analysed.is_set():
            steps.append(1)
            threading.Event().wait(0.0001)

    worker = threading.Thread(target=step)
    try:
        worker.start()
        before = len(steps)
        tagger.split("すもももももももものうち\n" * 20_000)
        between = len(steps) - before
    finally:
        analysed.set()
        sys.setswitchinterval(0.005)
        worker.join()
    assert between > 2
