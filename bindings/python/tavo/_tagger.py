"""The analyser."""

from __future__ import annotations

import os
from itertools import islice

from . import _lexicon, _tavo

TYPE_CHECKING = False  # importing typing takes longer than opening a lexicon
if TYPE_CHECKING:
    from typing import Any, Dict, Iterable, Iterator, List, Optional, Sequence, Tuple, Union

    from . import _words
    from ._columns import Columns
    from ._tavo import Result

    Path = Union[str, "os.PathLike[str]"]
    #: None, NaN and pandas.NA stand for an empty text.
    Text = Optional[Union[str, float]]


_LOOKUPS = ("surface", "reading", "prefix", "common_prefix")


def _checked(texts: Iterable[Text], caller: str) -> Iterator[Text]:
    if isinstance(texts, (str, bytes)):
        raise TypeError(f"{caller}() takes a list of texts, not one: {caller}([text])")
    return iter(texts)


class Tagger(_tavo.Tagger):
    """An analyser with its lexicon.

    lexicon: the folder of a lexicon, or an init file; without it that of TAVO_PATH, an installed lexicon package, or
    where `make install` puts one.
    dic: path or paths of dictionaries that are asked before those of the lexicon.
    words: words of your own, as tavo.compile() takes them.
    blanks: True keeps the blanks between words as tokens; line breaks end sentences and are none.
    comment_rule, reduce_rule: paths of rule files instead of the lexicon's; "none" for none.
    Options that are True or False: delete_slash, alphabet_capitalize, alternative, divide_word, reduce_undef,
    reduce_char, reduce_number.

    Raises FileNotFoundError without lexicon, TavoError for one that cannot be used.

    A tagger may be shared by threads, and works for one at a time; threads with a tagger each work at the same time,
    and share the lexicon. Pickling keeps the arguments, so that a tagger can be sent to the processes of a pool.

    >>> tagger = Tagger(words=[("推し活", {"like": "部活"})])
    >>> tagger.split("推し活が好き")
    ['推し活', 'が', '好き']
    """

    def __init__(
        self,
        lexicon: Optional[Path] = None,
        *,
        dic: Union[Path, Sequence[Path]] = (),
        words: Iterable[_words.WordLike] = (),
        blanks: bool = False,
        comment_rule: Path = "",
        reduce_rule: Path = "",
        **options: int,
    ) -> None:
        names = ("lexicon", "dic", "words", "blanks", "comment_rule", "reduce_rule")
        modes = _lexicon.modes_of(options, names)
        dictionaries = [os.fspath(path) for path in ([dic] if isinstance(dic, (str, os.PathLike)) else dic)]
        own = list(words)
        given: Dict[str, Any] = dict(options, dic=dictionaries, words=own, blanks=blanks,
                                     comment_rule=comment_rule, reduce_rule=reduce_rule)  # fmt: skip
        self._arguments: Tuple[Optional[Path], Dict[str, Any]] = (lexicon, given)
        self._lexicon = _lexicon.find() if lexicon is None else os.fspath(lexicon)
        try:
            if own:
                from . import _words

                self._folder = _words.temporary_folder()  # goes with the tagger
                compiled = os.path.join(self._folder.name, "words.dic")
                _words.compile(own, compiled, lexicon=lexicon)
                dictionaries = [compiled, *dictionaries]
            super().__init__(self._lexicon, dictionaries, os.fspath(comment_rule), os.fspath(reduce_rule), modes, blanks)
        except FileNotFoundError as error:
            raise (error if self._lexicon else _lexicon.missing(error)) from None

    def batch(self, texts: Iterable[Text], chunk: int = 1000) -> Iterator[Result]:
        """The results of many texts, in order: several times as quick as one call for each.

        Texts are taken `chunk` at a time.

        >>> [len(result) for result in tagger.batch(["猫が好きだ", "", None])]
        [4, 0, 0]
        """
        return self._each(self._batch, _checked(texts, "batch"), chunk)

    def split_batch(self, texts: Iterable[Text], chunk: int = 1000) -> Iterator[List[str]]:
        """split() for many texts.

        >>> list(tagger.split_batch(["猫が好きだ", "犬も"]))
        [['猫', 'が', '好き', 'だ'], ['犬', 'も']]
        """
        return self._each(self._split_batch, _checked(texts, "split_batch"), chunk)

    def nbest(self, text: Text, n: int = 10) -> List[Result]:
        """Up to n analyses, best first, with `connection_cost` and `word_cost`.

        Of a text with several sentences the k-th result joins their k-th analyses (the last one of a sentence that has
        fewer). A sentence has at most about 4000 characters, else TavoError.

        >>> [str(result) for result in tagger.nbest("すもも", 2)]
        ['すもも', 'す もも']
        """
        return self._nbest(text, n)

    def columns(self, texts: Iterable[Text]) -> Columns:
        """The tokens of many texts as columns of numbers.

        >>> columns = tagger.columns(["猫が好きだ", "犬も"])
        >>> list(columns.text), list(columns.start), columns.strings[columns.base[2]]
        ([0, 0, 0, 0, 1, 1], [0, 1, 2, 4, 0, 1], '好き')
        """
        from ._columns import columns_of

        return columns_of(self._columns(list(_checked(texts, "columns")), 0))

    def lookup(self, text: str, by: str = "surface", limit: Optional[int] = None) -> Result:
        """Words of the dictionaries themselves, at most `limit`, as tokens.

        `by` tells which ones: "surface", those written as `text`; "reading", those that read so, in hiragana or
        katakana; "prefix", those that begin with `text`; "common_prefix", those that `text` begins with, shortest
        first. Own dictionaries come first. The result's text is the words one behind the other. The first look-up by
        reading takes longer: it reads the dictionaries whole.

        >>> [(word.pos, word.reading) for word in tagger.lookup("すもも")]
        [('名詞:一般', 'スモモ')]
        >>> tagger.lookup("すもも", by="reading").surfaces
        ['すもも', 'スモモ', '李', '李']
        >>> tagger.lookup("推し量", by="prefix", limit=2).surfaces
        ['推し量', '推し量っ']
        """
        if not isinstance(text, str):
            raise TypeError(f"a text is a str, not {type(text).__name__}")
        if by not in _LOOKUPS:
            raise ValueError(f"by is {', '.join(map(repr, _LOOKUPS[:-1]))} or {_LOOKUPS[-1]!r}, not {by!r}")
        if limit is not None and limit < 0:
            raise ValueError(f"limit is {limit}; None stands for all words")
        return self._lookup(text, _LOOKUPS.index(by), -1 if limit is None else limit)

    def pos_names(self) -> List[str]:
        """The parts of speech that a word of one's own can have."""
        from ._words import table_of

        names = (shown for _, shown in _tavo.pos_names(table_of(self.path)))
        return list(dict.fromkeys(name for name in names if name))

    def rebuild(self, path: Path) -> None:
        """Takes up the dictionary at `path`, one of `dic`, which was compiled anew, and all other files as they are now.

        Results that are there keep what they have.
        """
        names = [os.fspath(own) for own in self._arguments[1]["dic"]]
        if os.fspath(path) not in names:
            raise ValueError(f"the tagger has no dictionary {os.fspath(path)}; it has {', '.join(names) or 'none'}")
        self._reload()

    @staticmethod
    def _each(analyse: Any, texts: Iterator[Text], chunk: int) -> Iterator[Any]:
        if chunk < 1:
            raise ValueError(f"chunk is {chunk}; at least 1 text is taken at a time")

        def results() -> Iterator[Any]:
            first = 0
            while taken := list(islice(texts, chunk)):
                yield from analyse(taken, first)
                first += len(taken)

        return results()

    def __enter__(self) -> "Tagger":
        return self

    def __exit__(self, *error: object) -> None:
        self.close()

    def __reduce__(self) -> Tuple[Any, ...]:
        return _make, self._arguments

    def __repr__(self) -> str:
        lexicon, options = self._arguments
        shown = [repr(lexicon)] if lexicon is not None else []
        shown += [f"{name}={value!r}" for name, value in options.items() if value]
        return f"tavo.Tagger({', '.join(shown)})"


def _make(lexicon: Optional[Path], options: Dict[str, Any]) -> Tagger:
    return Tagger(lexicon, **options)
