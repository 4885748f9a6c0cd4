"""Tokens of many texts as columns of numbers."""

from __future__ import annotations

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import List, Tuple


class Columns:
    """The tokens of many texts, a number a token in each column.

    The columns are memoryviews of 32-bit unsigned numbers, which numpy takes without copying
    (`numpy.asarray(columns.start)`): `text`, the place of the token's text among the texts; `start` and `end`, where it
    stands in its text, in code points; `pos`, its part of speech as a place in the list `pos_table`; `base` and
    `reading` as places in the list `strings`.
    """

    __slots__ = ("text", "start", "end", "pos", "base", "reading", "pos_table", "strings")

    text: memoryview
    start: memoryview
    end: memoryview
    pos: memoryview
    base: memoryview
    reading: memoryview
    pos_table: List[str]
    strings: List[str]

    def __len__(self) -> int:
        """The number of tokens."""
        return len(self.text)


def columns_of(made: Tuple[bytes, bytes, bytes, bytes, bytes, bytes, List[str], List[str]]) -> Columns:
    columns = Columns()
    for name, column in zip(Columns.__slots__, made[:6]):
        setattr(columns, name, memoryview(column).cast("I"))
    columns.pos_table, columns.strings = made[6:]
    return columns
