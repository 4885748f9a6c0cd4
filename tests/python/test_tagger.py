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


def test_a_morpheme_has_all_its_values(tagger):
    first, second = tagger("食べ東京")
    assert first == ("食べ", "動詞", "タベ", "タベー", "食べる", 12, 0, 2, False, False)
    assert (second.surface, second.pos, second.base, second.start, second.end) == ("東京", "名詞", "東京", 2, 4)


@pytest.mark.parametrize(
    "text, surfaces",
    [
        (SENTENCE, ["すもも", "もも", "もも", "もも", "の", "うち"]),
        ("", []),
        ("もxもも\nの", ["も", "x", "もも", "\n", "の"]),
        # second bytes of the code page that look like "\\"
        ("ソ能ソ能", ["ソ能", "ソ能"]),
        # outside the code page: one character each, beyond the basic plane too
        ("も😀の𠮷も", ["も", "😀", "の", "𠮷", "も"]),
        ("も\udcffの\ud800", ["も", "\udcff", "の", "\ud800"]),
        # in the code page twice, in it as one byte, in its user-defined area
        ("髙も", ["髙", "も"]),
        ("も\uf8f1も\uf8f3", ["も", "\uf8f1", "も", "\uf8f3"]),
        ("\ue000も\x00も\u00a0", ["\ue000", "も", "\x00", "も", "\u00a0"]),
    ],
)
def test_surfaces_are_pieces_of_the_text(tagger, text, surfaces):
    result = tagger(text)
    assert result.surfaces == tagger.split(text) == surfaces
    assert [m.surface for m in result] == [text[m.start : m.end] for m in result] == surfaces
    assert result.text == text


def test_random_texts_come_back_whole(tagger):
    generator = random.Random(7)
    for _ in range(300):
        text = "".join(generator.choice("すもの食べソ能髙😀\x00\n \\ｱ\uf8f2\ue03f~東京") for _ in range(generator.randrange(40)))
        assert "".join(tagger.split(text)) == text, repr(text)


def test_a_word_that_no_dictionary_has_is_unknown(tagger):
    known, unknown = tagger("もx")
    assert (known.unknown, unknown.unknown) == (False, True)
    assert (unknown.pos, unknown.reading, unknown.base, unknown.cost) == ("未知語", "", "x", 255)


def test_results_are_sequences(tagger):
    result = tagger("もの")
    assert len(result) == 2 and result[1].surface == "の" and result[-1] == result[1]
    assert result[0] in result and [m.surface for m in reversed(result)] == ["の", "も"]
    assert result == tagger("もの") and result != tagger("のも") and result != ["も", "の"]
    assert str(result) == "も の" and repr(result) == "<tavo.Result ['も', 'の']>"
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


def test_a_batch_gives_what_comes_before_an_error(tagger):
    results = tagger.batch(["も", "の", "a" * 16_843_010, "も"])
    assert [next(results).text, next(results).text] == ["も", "の"]
    with pytest.raises(tavo.TavoError) as raised:
        next(results)
    assert (raised.value.code, raised.value.name) == (-10011, "ERROR_TOO_LONG_STRING")
    assert str(raised.value) == "TOO_LONG_STRING: Exceed limit: length=16843010 (-10011)"


def test_nbest_is_in_order_of_cost(tagger):
    results = tagger.nbest("食べ", 5)
    assert [[m.pos for m in result] for result in results[:2]] == [["動詞"], ["名詞"]]
    costs = [(result.connection_cost, result.word_cost) for result in results]
    assert costs[:2] == [(20, 12), (20, 13)] and costs == sorted(costs)
    assert len(tagger.nbest("食べ", 1)) == 1 and tagger.nbest("食べ", 0) == []
    assert [str(result) for result in tagger.nbest("x\uf8f1😀", 1)] == ["x \uf8f1 😀"]
    with pytest.raises(tavo.TavoError, match="nbest limit"):
        tagger.nbest("も" * 4097)


def test_options_change_the_analysis(lexicon):
    assert tavo.Tagger(lexicon, divide_word=True).split("東京") == ["東", "京"]
    broken = tavo.Tagger(lexicon, delete_crlf=1)("す\nもも")
    assert broken.surfaces == ["す\nもも"] and broken[0].reading == "スモモ"
    by_files = tavo.Tagger(dic=lexicon / "SysDic", conn_table=lexicon / "ConnTable", memory_mapped=False)
    assert by_files.split("もの") == ["も", "の"]
    # A sentence's end costs as much as its beginning: the sums tell the number of sentences.
    costs = [tavo.Tagger(lexicon, delimiter=stop).nbest("もxもxも", 1)[0].connection_cost for stop in ("", "も", ["の", "も"])]
    assert costs == [60, 80, 80]


def test_tagged_text_gives_its_words_without_the_tags(tagger):
    result = tagger.tagged('も😀<word PartOfSP="動詞" Read="キ" StdForm="𠮷😀">𠮷髙</word><annotation>の😀</annotation>の')
    assert result.text == "も😀𠮷髙の"
    assert [m.surface for m in result] == ["も", "😀", "𠮷髙", "の😀", "の"]
    assert [(m.start, m.end) for m in result] == [(0, 1), (1, 2), (2, 4), (4, 4), (4, 5)]
    assert (result[2].pos, result[2].reading, result[2].base) == ("動詞", "キ", "𠮷😀")
    assert [m.annotation for m in result] == [False, False, False, True, False]
    assert tagger.tagged("も<word").failed == 1
    assert tagger.split("<も") == ["<", "も"], "only the one text was taken as tagged"


def test_init_files_can_ask_for_tags_and_comments(lexicon, tmp_path):
    init = tmp_path / "tagged.init"
    init.write_text(f"TaggedInput=1\nDic={lexicon}/SysDic\nConnTable={lexicon}/ConnTable\n")
    tagged = tavo.Tagger(init)
    assert tagged("<word>もの</word>も").surfaces == ["もの", "も"]
    assert [r.text for r in tagged.batch(["も<word>の</word>", "も"])] == ["もの", "も"]
    assert [r.surfaces for r in tagged.nbest("<word>もの</word>😀", 1)] == [["もの", "😀"]]
    rules = tmp_path / "rules"
    rules.write_text("Begin=(\nEnd=)\n")
    commented = tavo.Tagger(lexicon, comment_rule=rules)("も(😀)の")
    assert [(m.surface, m.start, m.end, m.annotation) for m in commented] == [
        ("も", 0, 1, False), ("(😀)", 1, 4, False), ("の", 4, 5, False)]  # fmt: skip


@pytest.mark.parametrize(
    "options, error, text",
    [
        ({"colour": 1}, TypeError, "no option 'colour'"),
        ({"conn_table": "x"}, TypeError, "needs dic"),
        ({"init": "no/such/file"}, tavo.TavoError, "FILE_NOT_OPEN: no/such/file"),
    ],
)
def test_bad_options_are_refused(lexicon, options, error, text):
    with pytest.raises(error, match=text):
        tavo.Tagger(**options)
    with pytest.raises(tavo.TavoError, match="setDivideWordMode"):
        tavo.Tagger(lexicon, divide_word=2)


def test_the_lexicon_is_found(lexicon, monkeypatch, tmp_path):
    monkeypatch.setenv("TAVO_PATH", str(lexicon))
    assert tavo.Tagger().split("すもも") == ["すもも"]
    init = tmp_path / "my.init"
    init.write_text("DivideWord=1\n")
    assert tavo.Tagger(init).split("東京") == ["東", "京"], "what it leaves out comes from TAVO_PATH"
    monkeypatch.setattr("tavo._lexicon.lexicon_folders", lambda: [str(tmp_path)])
    with pytest.raises(FileNotFoundError, match=f"(?s){tmp_path}.*make lexicon"):
        tavo.Tagger()


def test_taggers_and_results_can_be_pickled(lexicon):
    tagger = pickle.loads(pickle.dumps(tavo.Tagger(lexicon, divide_word=1)))
    assert tagger.split("東京") == ["東", "京"]
    results = list(tagger.batch(["も" * 500, "食べ", "も" * 500]))
    data = pickle.dumps(results[1])
    assert pickle.loads(data) == results[1] == copy.copy(results[1])
    assert len(data) < 2000, "only the result's own row"
    with multiprocessing.get_context("spawn").Pool(2) as pool:
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


def test_rule_files_beside_the_connection_table_belong_to_it(lexicon, tmp_path):
    whole = tmp_path / "whole"
    shutil.copytree(lexicon, whole)
    (whole / "reduce.rules").write_text("Number =\n")
    (whole / "number.list").write_text("Undef\n")
    init = tmp_path / "own.init"
    init.write_text(f"Dic={whole}/SysDic\nConnTable={whole}/ConnTable\n")
    named = dict(dic=whole / "SysDic", conn_table=whole / "ConnTable")
    for arguments, options in [((whole,), {}), ((init,), {}), ((), named), ((lexicon,), dict(conn_table=whole / "ConnTable"))]:
        with tavo.Tagger(*arguments, **options) as tagger:
            assert tagger.split("もabc") == ["も", "abc"], (arguments, options)
        with tavo.Tagger(*arguments, **options, reduce_rule=None) as tagger:
            assert tagger.split("もabc") == ["も", "a", "b", "c"], (arguments, options)
    with tavo.Tagger(whole, conn_table=lexicon / "ConnTable") as tagger:
        assert tagger.split("もabc") == ["も", "a", "b", "c"]
    # A folder that was moved since its init file was written.
    (whole / "tavo.init").write_text(f"Dic={whole}/SysDic\nConnTable={whole}/ConnTable\nDelimitCRLF=1\n")
    whole.rename(tmp_path / "moved")
    with tavo.Tagger(tmp_path / "moved") as tagger:
        assert tagger.split("もabc") == ["も", "abc"]
