import collections.abc
import copy
import multiprocessing
import pathlib
import pickle
import random
import shutil
import threading

import pytest

import tavo

SENTENCE = "すもももももももものうち"


def test_a_token_has_all_its_values(tagger):
    first, second = tagger("食べ東京")
    names = ("surface", "pos", "pos_fields", "reading", "pronunciation", "base", "normalized", "cost", "unknown", "annotation", "additional", "converted")
    values = ("食べ", "動詞", ("動詞",), "タベ", "タベー", "食べる", "食べる", 12, False, "", "", "食べ")
    assert tuple(getattr(first, name) for name in names) == values
    positions = ("start", "end", "byte_start", "byte_end", "utf16_start", "utf16_end")
    assert tuple(getattr(second, name) for name in positions) == (2, 4, 6, 12, 2, 4)
    after = tagger("😀の")[1]
    assert tuple(getattr(after, name) for name in positions) == (1, 2, 4, 7, 2, 3)
    assert repr(first) == "<tavo.Token '食べ' 動詞 0:2>" and str(second) == "東京"


def test_equal_strings_are_one_object(tagger):
    first, *_, last = tagger("もものもも")
    assert first.surface is last.surface is first.base and first.pos is last.pos and first.reading is last.reading
    assert tagger.split("もも")[0] is first.surface and first != last and hash(first) != hash(last)
    assert {first, tagger("もものもも")[0]} == {first}


@pytest.mark.parametrize(
    "text, surfaces",
    [
        (SENTENCE, ["すもも", "もも", "もも", "もも", "の", "うち"]),
        ("", []),
        ("もxもも\n の ", ["も", "x", "もも", "の"]),
        # second bytes of the code page that look like "\\"
        ("ソ能ソ能", ["ソ能", "ソ能"]),
        # outside the code page: one character each, beyond the basic plane too
        ("も😀の𠮷も", ["も", "😀", "の", "𠮷", "も"]),
        ("も\udcffの\ud800", ["も", "\udcff", "の", "\ud800"]),
        # in the code page twice, in it as one byte, in its user-defined area
        ("髙も", ["髙", "も"]),
        ("も\uf8f1も\uf8f3", ["も", "\uf8f1", "も", "\uf8f3"]),
        ("\ue000も\x00も", ["\ue000", "も", "\x00", "も"]),
        (None, []),
        (float("nan"), []),
    ],
)
def test_surfaces_are_pieces_of_the_text(tagger, text, surfaces):
    result = tagger(text)
    assert result.surfaces == tagger.split(text) == surfaces
    assert [m.surface for m in result] == [result.text[m.start : m.end] for m in result] == surfaces
    assert result.text == (text if isinstance(text, str) else "")
    assert next(tagger.batch([text])).surfaces == next(tagger.split_batch(["も", text][1:])) == surfaces
    assert [m.base for m in result if m.unknown] == [m.surface for m in result if m.unknown]


def test_random_texts_come_back_whole_but_for_line_breaks(lexicon):
    tagger = tavo.Tagger(lexicon, blanks=True)
    generator = random.Random(7)
    for _ in range(300):
        text = "".join(generator.choice("すもの食べソ能髙😀\x00\n \\ｱ\uf8f2\ue03f~東京") for _ in range(generator.randrange(40)))
        assert "".join(tagger.split(text)) == text.replace("\n", ""), repr(text)


def test_a_word_that_no_dictionary_has_is_unknown(tagger):
    known, unknown = tagger("もx")
    assert (known.unknown, unknown.unknown) == (False, True)
    assert (unknown.pos, unknown.reading, unknown.base, unknown.cost) == ("未知語", "", "x", 255)


def test_texts_are_str(tagger):
    for call in (tagger, tagger.split):
        with pytest.raises(TypeError, match="a text is a str, not int"):
            call(3)
        with pytest.raises(TypeError, match="decode it first"):
            call(b"x")
    for call in (tagger.batch, tagger.split_batch, tagger.columns):
        with pytest.raises(TypeError, match=r"takes a list of texts, not one"):
            call("もの")
        with pytest.raises(TypeError, match=r"texts\[1001\] is no str but list"):
            list(call(["も"] * 1001 + [[]]) or ())
    with pytest.raises(ValueError, match="chunk is 0"):
        tagger.batch([], 0)
    with pytest.raises(TypeError, match="a tagger makes results"):
        tavo.Result()


def test_results_are_sequences(tagger):
    result = tagger("もの")
    assert len(result) == 2 and result[1].surface == "の" and result[-1] == result[1]
    assert result[0] in result and [m.surface for m in reversed(result)] == ["の", "も"]
    assert result == tagger("もの") and result != tagger("のも") and result != ["も", "の"]
    assert str(result) == "も の" and repr(result) == "<tavo.Result ['も', 'の']>"
    assert result.index(result[1]) == 1 and result.count(result[0]) == 1 and result[0:1] == [result[0]]
    assert isinstance(result, collections.abc.Sequence)
    with pytest.raises(IndexError):
        result[2]


def test_results_outlive_the_tagger(lexicon):
    tagger = tavo.Tagger(lexicon)
    first, second = tagger("すもも"), tagger("食べ")
    tagger.close()
    assert (first[0].reading, second[0].pronunciation) == ("スモモ", "タベー")
    with pytest.raises(ValueError, match="closed"):
        tagger("も")


@pytest.mark.parametrize("chunk", [1, 2, 1000])
def test_batches_give_the_results_of_single_calls(tagger, chunk):
    texts = [SENTENCE, "", "も😀", "x\uf8f1も", "食べ"]
    assert list(tagger.batch(iter(texts), chunk)) == [tagger(text) for text in texts]
    assert list(tagger.split_batch(texts, chunk)) == [tagger.split(text) for text in texts]


def test_nbest_is_in_order_of_cost(tagger):
    results = tagger.nbest("食べ", 5)
    assert [[m.pos for m in result] for result in results[:2]] == [["動詞"], ["名詞"]]
    costs = [(result.connection_cost, result.word_cost) for result in results]
    assert costs[:2] == [(20, 12), (20, 13)] and costs == sorted(costs)
    assert len(tagger.nbest("食べ", 1)) == 1
    with pytest.raises(ValueError, match="n is 0"):
        tagger.nbest("食べ", 0)
    assert [str(result) for result in tagger.nbest("x\uf8f1😀", 1)] == ["x \uf8f1 😀"]
    with pytest.raises(tavo.TavoError, match="nbest limit"):
        tagger.nbest("も" * 4097)


def test_options_change_the_analysis(lexicon):
    assert tavo.Tagger(lexicon, divide_word=True).split("東京") == ["東", "京"]
    assert tavo.Tagger(lexicon, blanks=True).split("も の\n") == ["も", " ", "の"]
    assert tavo.Tagger(lexicon, dic=lexicon / "SysDic").split("もの") == ["も", "の"]


def test_tagged_text_gives_its_words_without_the_tags(tagger):
    result = tagger.tagged('も😀<word PartOfSP="動詞" Read="キ" StdForm="髙">𠮷髙</word><annotation>の😀</annotation>の')
    assert result.text == "も😀𠮷髙の"
    assert [(m.surface, m.annotation, m.start, m.end) for m in result] == [
        ("も", "", 0, 1), ("😀", "", 1, 2), ("𠮷髙", "", 2, 4), ("", "の😀", 4, 4), ("の", "", 4, 5)]  # fmt: skip
    assert (result[2].pos, result[2].reading, result[2].base) == ("動詞", "キ", "髙")
    assert tagger.split("<も") == ["<", "も"], "only the one text was taken as tagged"
    with pytest.raises(UnicodeEncodeError):
        tagger.tagged("も\ud800")


def test_comments_are_words(lexicon, tmp_path):
    rules = tmp_path / "rules"
    rules.write_text("Begin=(\nEnd=)\n")
    commented = tavo.Tagger(lexicon, comment_rule=rules)("も(の)の")
    assert [(m.surface, m.start, m.end) for m in commented] == [
        ("も", 0, 1), ("(の)", 1, 4), ("の", 4, 5)]  # fmt: skip


@pytest.mark.parametrize(
    "options, error, text",
    [
        ({"colour": 1}, TypeError, "no option 'colour'; there are lexicon, dic"),
        ({"divideword": 1}, TypeError, "did you mean 'divide_word'"),
        ({"divide_word": 2}, ValueError, "divide_word is True or False, not 2"),
        ({"lexicon": "no/such/file"}, FileNotFoundError, "no/such/file"),
        ({"dic": "no/such.dic"}, FileNotFoundError, "no/such.dic"),
    ],
)
def test_bad_options_are_refused(lexicon, options, error, text):
    with pytest.raises(error, match=text):
        tavo.Tagger(**{"lexicon": lexicon, **options})


def test_the_lexicon_is_found(lexicon, monkeypatch, tmp_path):
    monkeypatch.setenv("TAVO_PATH", str(lexicon))
    assert tavo.Tagger().split("すもも") == ["すもも"]
    init = tmp_path / "my.init"
    init.write_text("DivideWord=1\n")
    assert tavo.Tagger(init).split("東京") == ["東", "京"], "what it leaves out comes from TAVO_PATH"
    empty = tmp_path / "empty"
    empty.mkdir()
    with pytest.raises(FileNotFoundError, match=f"{empty}: no lexicon.*make lexicon"):
        tavo.Tagger(empty)


def test_taggers_and_results_can_be_pickled(lexicon):
    tagger = pickle.loads(pickle.dumps(tavo.Tagger(lexicon, divide_word=1)))
    assert tagger.split("東京") == ["東", "京"]
    results = list(tagger.batch(["も" * 500, "食べ", "も" * 500]))
    data = pickle.dumps(results[1])
    assert pickle.loads(data) == results[1] == copy.copy(results[1])
    assert len(data) < 2000, "only the result's own row"
    assert pickle.loads(pickle.dumps(results[1][0])) == results[1][0]
    strange = tagger("も\ud800")
    assert pickle.loads(pickle.dumps(strange))[1].surface == "\ud800"
    for way in ("spawn", "fork", "forkserver"):
        with multiprocessing.get_context(way).Pool(2) as pool:
            assert pool.map(tagger, ["すもも", "も😀"]) == [tagger("すもも"), tagger("も😀")]


def test_threads_have_taggers_of_their_own_or_share_one(lexicon):
    shared = tavo.Tagger(lexicon)
    expected = [shared.split(SENTENCE * n) for n in range(20)]
    found = []

    def work(tagger):
        found.append([tagger.split(SENTENCE * n) for n in range(20)])

    threads = [threading.Thread(target=work, args=(t,)) for t in [shared, shared, tavo.Tagger(lexicon), tavo.Tagger(lexicon)]]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert found == [expected] * 4


def test_the_version_is_the_library_s():
    header = pathlib.Path(__file__).parents[2] / "include" / "tavo" / "version.h"
    assert f'TAVO_VERSION "{tavo.__version__}"' in header.read_text()


def test_columns_have_the_numbers_of_all_tokens(tagger):
    texts = ["も😀の", None, "食べもの\ud800も"]
    columns = tagger.columns(texts)
    tokens = [(i, token) for i, result in enumerate(tagger.batch(texts)) for token in result]
    assert len(columns) == len(tokens) == 8
    assert list(columns.text) == [i for i, _ in tokens]
    assert [(start, end) for start, end in zip(columns.start, columns.end)] == [(t.start, t.end) for _, t in tokens]
    assert [columns.pos_table[i] for i in columns.pos] == [t.pos for _, t in tokens]
    assert [columns.strings[i] for i in columns.reading] == [t.reading for _, t in tokens]
    assert [columns.strings[i] for i in columns.base][:-2] == [t.base for _, t in tokens][:-2]
    assert len(tagger.columns([]).text) == 0


def test_words_of_ones_own(lexicon, tmp_path):
    words = [("すもももも", {"like": "もも", "reading": "スモモモモ"}), ("う-ち/の", {"pos": "動詞", "cost": 1})]
    tagger = pickle.loads(pickle.dumps(tavo.Tagger(lexicon, words=words)))
    assert tagger.split("すももももう-ち/の") == ["すもももも", "う-ち/の"] and tagger("すもももも")[0].reading == "スモモモモ"
    path = tmp_path / "own.dic"
    assert tavo.compile(["すも"], path, like="もも", lexicon=lexicon) == []
    assert tavo.Tagger(lexicon, dic=[path]).split("すものも")[0] == "すも"
    with pytest.raises(ValueError, match="word 1: .*動物"):
        tavo.compile([("すも", {"pos": "動物"})], path, lexicon=lexicon)
    with pytest.raises(TypeError, match="no 'rading'"):
        tavo.Tagger(lexicon, words=[("すも", {"rading": "スモ"})])
    assert "動詞" in tagger.pos_names()


def test_words_are_looked_up(tagger, lexicon, tmp_path):
    assert [(t.surface, t.pos, t.base, t.cost) for t in tagger.lookup("食べ")] == [("食べ", "動詞", "食べる", 12), ("食べ", "名詞", "食べ", 13)]
    assert tagger.lookup("食べ")[1].surface is tagger.split("食べ")[0]
    finds = {("スモモ", "reading"): ["すもも"], ("すもも", "reading"): ["すもも"], ("すも", "prefix"): ["すもも"],
             ("東京の", "common_prefix"): ["東京"], ("東京の", "surface"): [], ("\ud800", "surface"): []}  # fmt: skip
    for (text, by), surfaces in finds.items():
        assert tagger.lookup(text, by).surfaces == surfaces, (text, by)
    every = tagger.lookup("", by="prefix")
    assert every.text == "".join(every.surfaces) and tagger.lookup("", "prefix", 2).surfaces == every.surfaces[:2]
    assert pickle.loads(pickle.dumps(every)) == every
    own = tmp_path / "own.dic"
    tavo.compile([("すもも", {"like": "もも", "reading": "オウン"})], own, lexicon=lexicon)
    assert [t.reading for t in tavo.Tagger(lexicon, dic=own).lookup("すもも")] == ["オウン", "スモモ"]
    for error, arguments in ((TypeError, (3,)), (ValueError, ("も", "surfaces")), (ValueError, ("も", "surface", -1))):
        with pytest.raises(error):
            tagger.lookup(*arguments)


def test_a_tagger_takes_up_changed_dictionaries(lexicon, tmp_path):
    path = tmp_path / "own.dic"
    tavo.compile(["すも"], path, like="もも", lexicon=lexicon)
    tagger = tavo.Tagger(lexicon, dic=path)
    before = tagger("すもも")
    tavo.compile(["もものもも"], path, like="もも", lexicon=lexicon)
    with pytest.raises(ValueError, match="no dictionary other"):
        tagger.rebuild("other")
    tagger.rebuild(path)
    assert tagger.split("もものもも") == ["もものもも"] and before[0].pos == "名詞"


def test_many_words_give_the_memory_of_old_ones_back(lexicon):
    tagger = tavo.Tagger(lexicon)
    kept = tagger("すもも😀")

    def pages():
        return int(pathlib.Path("/proc/self/statm").read_text().split()[1])

    def work():
        # Surfaces of distinct unknown characters, more than a tokenizer keeps.
        for start in range(0x20000, 0x2A000, 1024):
            text = "も".join(map(chr, range(start, start + 1024)))
            for result in (tagger(text), next(tagger.batch([text]))):
                assert sum(len(token.surface + token.base) for token in result) == 4094
            tagger.split(text), tagger.columns([text])

    for _ in range(2):
        work()
    before = pages()
    for _ in range(3):
        work()
    assert pages() - before < 1000
    assert [token.surface for token in kept] == ["すもも", "😀"]
