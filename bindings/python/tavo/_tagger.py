"""The analyser."""

import threading
from ctypes import byref, c_char_p, c_int, c_void_p
from itertools import islice
from typing import Dict, Iterable, Iterator, List

from . import _lexicon, _text
from . import _library as library
from ._library import LIB, TavoError
from ._result import Block, Result

_MORPHEMES = library.PART_OF_SP | library.STD_FORM | library.READ | library.PRON | library.CHARACTERS
_SURFACES = library.CHARACTERS
_MARKED = library.FORM | library.ANALYZED
_NOTHING_BACK: Dict[int, str] = {}


class Tagger:
    """An analyser with its dictionaries.

    init: an init file, or the folder of a lexicon; without it the lexicon of
    TAVO_PATH, of the installed tree or of the build.
    Options, applied after the init file:
      dic          path or paths of dictionaries used before those of the init file
      conn_table   connection table; with dic and without init nothing else is loaded
                   but reduce.rules and number.list from beside it, where they exist
      delimiter    string or strings that end a sentence
      memory_mapped, delimit_crlf, delete_crlf, delete_slash, alphabet_capitalize,
      alternative, divide_word, reduce_undef, reduce_char, reduce_number: 0 or 1
      comment_rule, reduce_rule, public_pos, number_pos, major_pos: paths, None for none
    Raises TavoError for errors of the library, FileNotFoundError without lexicon.

    A tagger may be shared by threads: it works for one at a time. For parallel
    work make one for each thread; dictionaries are shared, and other threads run
    while the library works. Pickling keeps init and options.
    """

    def __init__(self, init=None, **options):
        self._handle = None
        _lexicon.check_options(options)
        self._init, self._options = init, options
        self._lock = threading.RLock()
        # A pointer, which functions without declared arguments take whole too.
        self._handle = c_void_p(LIB.tavo_new(0))
        if not self._handle:
            raise MemoryError("tavo_new()")
        try:
            _lexicon.configure(self._call, init, options)
        except BaseException:
            self.close()
            raise
        # Tags have no place in the results, so positions count without them.
        self._marked = LIB.tavo_getTaggedInputMode(self._handle) == 1

    def __call__(self, text: str) -> Result:
        """The morphemes of a text."""
        return self._one(text, _MORPHEMES)

    def split(self, text: str) -> List[str]:
        """The surfaces of a text's morphemes alone."""
        return self._one(text, _SURFACES).surfaces

    def batch(self, texts: Iterable[str], chunk: int = 1000) -> Iterator[Result]:
        """The results of many texts, in order; quicker than one call for each.

        Texts are taken `chunk` at a time. At a text that raises, the results of
        those before it have been given.
        """
        return self._batch(texts, chunk, _MORPHEMES)

    def split_batch(self, texts: Iterable[str], chunk: int = 1000) -> Iterator[List[str]]:
        """split() for many texts."""
        return (result.surfaces for result in self._batch(texts, chunk, _SURFACES))

    def nbest(self, text: str, n: int = 10) -> List[Result]:
        """Up to n analyses, best first. Of a text with several sentences the k-th
        result joins their k-th analyses (the last one of a sentence that has fewer).
        Sentences have at most 8192 bytes of code page 932."""
        with self._lock:
            marked = self._marked
            data, back = _text.encode_reversibly(text) if marked else (_text.encode(text), _NOTHING_BACK)
            what = _MORPHEMES | (_MARKED if marked else 0)
            bulk = library.Bulk()
            self._call("tavo_bulkAnalyzeNBest", byref(bulk), data, len(data), n, what)
            if not marked and bulk.row_count and Block(bulk, what, back).row_length[0] != len(text):
                data = _text.encode(_text.without_halves(text))
                self._call("tavo_bulkAnalyzeNBest", byref(bulk), data, len(data), n, what)
            block = Block(bulk, what, back)
        return [Result(_row_text(block, k, text, marked), block, k) for k in range(len(block.row_end))]

    def tagged(self, text: str) -> Result:
        """Analyses tagged text; the result's text is without the tags."""
        with self._lock:
            before = self._call("tavo_getTaggedInputMode")
            self._call("tavo_setTaggedInputMode", 1)
            try:
                return self._analyze_marked(text, _MORPHEMES)
            finally:
                self._call("tavo_setTaggedInputMode", before)

    def close(self) -> None:
        """Gives the analyser's memory back; results live on."""
        handle, self._handle = self._handle, None
        if handle:
            LIB.tavo_free(handle)

    def __enter__(self) -> "Tagger":
        return self

    def __exit__(self, *error) -> None:
        self.close()

    def __del__(self):
        if getattr(self, "_handle", None):
            self.close()

    def __reduce__(self):
        return _make, (self._init, self._options)

    def __repr__(self) -> str:
        options = "".join(f", {name}={value!r}" for name, value in self._options.items())
        return f"tavo.Tagger({self._init!r}{options})"

    def _call(self, function: str, *arguments) -> int:
        if not self._handle:
            raise ValueError("the tagger is closed")
        code = getattr(LIB, function)(self._handle, *arguments)
        if code < 0:
            raise TavoError(code, LIB.tavo_getErrorMessage(code).decode(),
                            _text.decode(LIB.tavo_getErrorWhat(self._handle)))  # fmt: skip
        return code

    def _one(self, text: str, what: int) -> Result:
        if self._marked:
            return self._analyze_marked(text, what)
        block, error = self._analyze([text], what)
        if error:
            raise error
        return Result(text, block, 0)

    def _batch(self, texts, chunk, what) -> Iterator[Result]:
        texts = iter(texts)
        while taken := list(islice(texts, chunk)):
            if self._marked:
                yield from (self._analyze_marked(text, what) for text in taken)
                continue
            block, error = self._analyze(taken, what)
            for row in range(len(block.row_end)):
                yield Result(taken[row], block, row)
            if error:
                raise error

    def _analyze(self, texts: List[str], what: int):
        """A row for each text, and the error of the text behind the last row."""
        encoded = list(map(_text.encode, texts))
        with self._lock:
            block, error = self._bulk(encoded, what, _NOTHING_BACK)
        if any(map(int.__ne__, block.row_length, map(len, texts))):
            encoded = [_text.encode(_text.without_halves(text)) for text in texts]
            with self._lock:
                block, error = self._bulk(encoded, what, _NOTHING_BACK)
        return block, error

    def _analyze_marked(self, text: str, what: int) -> Result:
        data, back = _text.encode_reversibly(text)
        with self._lock:
            block, error = self._bulk([data], what | _MARKED, back)
        if error:
            raise error
        return Result(_row_text(block, 0, text, True), block, 0)

    def _bulk(self, encoded: List[bytes], what: int, back):
        count = len(encoded)
        bulk, error = library.Bulk(), None
        texts, lengths = (c_char_p * count)(*encoded), (c_int * count)(*map(len, encoded))
        try:
            self._call("tavo_bulkAnalyze", byref(bulk), texts, lengths, count, what)
        except TavoError as raised:
            error = raised
        return Block(bulk, what, back), error


def _row_text(block: Block, row: int, text: str, marked: bool) -> str:
    return block.strings[block.row_text[row]] if marked else text


def _make(init, options) -> Tagger:
    return Tagger(init, **options)
