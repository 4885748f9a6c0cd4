"""Results: morphemes, and the sequences that hold them."""

import ctypes
import operator
from array import array
from collections.abc import Sequence
from functools import partial
from itertools import compress
from typing import Dict, List, NamedTuple, Optional

from . import _library as library
from . import _text


class Morpheme(NamedTuple):
    """One morpheme. Positions are code points of the result's text."""

    surface: str
    pos: str  #: without the class number and features that only the analyser reads
    reading: str
    pronunciation: str
    base: str
    cost: int
    start: int
    end: int
    unknown: bool  #: in no dictionary
    annotation: bool  #: a note of tagged input, which covers no text


_new_morpheme = partial(tuple.__new__, Morpheme)


def _column(address: Optional[int], count: int, code: str) -> array:
    """A copy of an array of the library's."""
    column = array(code)
    if count:
        column.frombytes(ctypes.string_at(address, count * column.itemsize))
    return column


class Block:
    """The arrays of one call, copied."""

    _ROW_COLUMNS = ("row_length", "row_failed", "row_text", "connection_cost", "word_cost")
    _COLUMNS = ("start", "length", "cost", "flags")

    def __init__(self, bulk: library.Bulk, what: int, back: Dict[int, str]):
        rows, count = bulk.row_count, bulk.morpheme_count
        self.row_end = _column(bulk.row_end, rows, "I")
        self.row_length = _column(bulk.row_length, rows, "I")
        self.row_failed = _column(bulk.row_failed, rows, "I")
        self.row_text = _column(bulk.row_text, rows, "I")
        self.connection_cost = _column(bulk.row_connection_cost, rows, "I")
        self.word_cost = _column(bulk.row_word_cost, rows, "I")
        self.start = _column(bulk.start, count, "I")
        self.length = _column(bulk.length, count, "I")
        self.cost = _column(bulk.cost, count, "i")
        self.flags = _column(bulk.flags, count, "B")
        fields = _column(bulk.fields, count * bulk.field_count, "I")
        asked = [bit for bit in (library.FORM, library.STD_FORM, library.READ, library.PRON, library.PART_OF_SP)
                 if what & bit]  # fmt: skip
        self.fields = {bit: fields[i * count : (i + 1) * count] for i, bit in enumerate(asked)}
        self._bytes = ctypes.string_at(bulk.strings, bulk.string_bytes) if bulk.string_bytes else b"\0"
        self._back = back
        self._strings: Optional[Dict[int, str]] = None
        self._columns: Optional[List[list]] = None

    @property
    def strings(self) -> Dict[int, str]:
        """The texts by their offset; each is decoded once."""
        if self._strings is None:
            strings, offset = {}, 0
            raw = self._bytes[:-1]
            for data, text in zip(raw.split(b"\0"), _text.decode(raw).split("\0")):
                strings[offset] = text.translate(self._back) if self._back else text
                offset += len(data) + 1
            self._strings = strings
        return self._strings

    @property
    def columns(self) -> List[list]:
        """The values of all morphemes but their surfaces, in the order of Morpheme."""
        if self._columns is None:
            starts, flags, string = self.start.tolist(), self.flags.tolist(), self.strings.__getitem__
            pos, read, pron, base = (
                list(map(string, self.fields[bit].tolist()))
                for bit in (library.PART_OF_SP, library.READ, library.PRON, library.STD_FORM)
            )
            self._columns = [
                pos, read, pron, base, self.cost.tolist(), starts,
                list(map(operator.add, starts, self.length.tolist())),
                [flag & library.UNKNOWN != 0 for flag in flags],
                [flag & library.ANNOTATION != 0 for flag in flags],
            ]  # fmt: skip
        return self._columns

    def only(self, row: int) -> "Block":
        """A block of this row alone."""
        span = self.span(row)
        part = Block.__new__(Block)
        for name in self._ROW_COLUMNS:
            setattr(part, name, getattr(self, name)[row : row + 1])
        for name in self._COLUMNS:
            setattr(part, name, getattr(self, name)[span])
        part.row_end = array("I", [span.stop - span.start])
        part.fields = {bit: column[span] for bit, column in self.fields.items()}
        used = {0, part.row_text[0]}.union(*part.fields.values())
        part._bytes, part._back, part._strings = b"\0", {}, {offset: self.strings[offset] for offset in used}
        part._columns = None
        return part

    def span(self, row: int) -> slice:
        """The row's place in the columns."""
        return slice(self.row_end[row - 1] if row else 0, self.row_end[row])


class Result(Sequence):
    """The morphemes of one text, made when they are first looked at.

    `text` is the text that positions count in: the one given, or for tagged
    input the text without its tags. `failed` is the number of its sentences that
    could not be analysed; they have no morphemes. Results of nbest() have their
    costs as `connection_cost` and `word_cost`, others 0.
    """

    __slots__ = ("text", "_block", "_row", "_morphemes")

    def __init__(self, text: str, block: Block, row: int):
        self.text, self._block, self._row = text, block, row
        self._morphemes: Optional[List[Morpheme]] = None

    @property
    def failed(self) -> int:
        return self._block.row_failed[self._row]

    @property
    def connection_cost(self) -> int:
        return self._block.connection_cost[self._row]

    @property
    def word_cost(self) -> int:
        return self._block.word_cost[self._row]

    def _span(self) -> slice:
        return self._block.span(self._row)

    @property
    def surfaces(self) -> List[str]:
        """The surface of each morpheme."""
        block, span, text = self._block, self._span(), self.text
        surfaces = [text[start : start + length]
                    for start, length in zip(block.start[span].tolist(), block.length[span].tolist())]  # fmt: skip
        if library.FORM in block.fields:
            forms = block.fields[library.FORM][span].tolist()
            for i in compress(range(len(forms)), forms):
                surfaces[i] = block.strings[forms[i]]
        return surfaces

    def _made(self) -> List[Morpheme]:
        if self._morphemes is None:
            span, surfaces = self._span(), self.surfaces
            pos, read, pron, base, *rest = (column[span] for column in self._block.columns)
            base = (own or surface for own, surface in zip(base, surfaces))
            self._morphemes = list(map(_new_morpheme, zip(surfaces, pos, read, pron, base, *rest)))
        return self._morphemes

    def __len__(self) -> int:
        span = self._span()
        return span.stop - span.start

    def __getitem__(self, index):
        return self._made()[index]

    def __iter__(self):
        return iter(self._made())

    def __eq__(self, other):
        if not isinstance(other, Result):
            return NotImplemented
        return self.text == other.text and self._made() == other._made()

    __hash__ = None

    def __str__(self) -> str:
        return " ".join(self.surfaces)

    def __repr__(self) -> str:
        return f"<tavo.Result {self.surfaces!r}>"

    def __reduce__(self):
        return Result, (self.text, self._block.only(self._row), 0)
