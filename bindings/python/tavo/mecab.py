"""For programs that are written against MeCab's binding: `from tavo import mecab as MeCab`.

Fields have the order of MeCab's IPADIC: four levels of the part of speech, conjugation type and form, base form,
reading, pronunciation, "*" where there is none.

>>> from tavo import mecab as MeCab
>>> MeCab.Tagger("-Owakati").parse("猫が好きだ")
'猫 が 好き だ \\n'
>>> node = MeCab.Tagger().parseToNode("猫が").next
>>> node.surface, node.feature
('猫', '名詞,一般,*,*,*,*,猫,ネコ,ネコ')
"""

from __future__ import annotations

import shlex
from typing import Iterator, List, Optional

from . import _tagger
from ._tavo import Result, Token

__all__ = ["Node", "Tagger", "VERSION"]

VERSION = "0.996"  #: of the interface
NORMAL_NODE, UNKNOWN_NODE, BOS_NODE, EOS_NODE = range(4)
MECAB_NOR_NODE, MECAB_UNK_NODE, MECAB_BOS_NODE, MECAB_EOS_NODE = range(4)

_LEVELS = 4
_EDGE = "BOS/EOS,*,*,*,*,*,*,*,*"


def _csv(field: str) -> str:
    return '"' + field.replace('"', '""') + '"' if "," in field or '"' in field else field


def feature_of(token: Token) -> str:
    """The fields of a token as CSV. An unknown word has no reading, and its base form is no dictionary's."""
    levels = [*token.pos_fields, *["*"] * _LEVELS][:_LEVELS]
    fields = [*levels, token.conjugation_type or "*", token.conjugation_form or "*"]
    if token.unknown:
        fields.append("*")
    else:
        fields += [token.base or "*", token.reading or "*", token.pronunciation or "*"]
    return ",".join(map(_csv, fields))


class Node:
    """A word of a sentence, or its beginning or end. `next` and `prev` lead to its neighbours."""

    __slots__ = ("surface", "_token", "stat", "next", "prev", "length", "rlength")

    def __init__(self, surface: str, token: Optional[Token], stat: int, blanks: int = 0) -> None:
        self.surface, self._token, self.stat = surface, token, stat
        self.next: Optional[Node] = None
        self.prev: Optional[Node] = None
        self.length = len(surface.encode("utf-8", "surrogatepass"))  #: in bytes
        self.rlength = self.length + blanks  #: with the blanks before it

    @property
    def feature(self) -> str:
        return _EDGE if self._token is None else feature_of(self._token)


class Tagger:
    """Takes the options -Owakati, -d FOLDER and -u DICTIONARY; others are a RuntimeError."""

    def __init__(self, options: str = "") -> None:
        words = iter(shlex.split(options))
        self._wakati = False
        folder: Optional[str] = None
        dictionaries: List[str] = []
        for word in words:
            name = {"--output-format-type": "-O", "--dicdir": "-d", "--userdic": "-u"}.get(word.split("=")[0], word[:2])
            value = word.split("=", 1)[1] if word.startswith("--") and "=" in word else word[2:] if name == word[:2] else ""
            value = value or next(words, "")
            if name == "-O" and value in ("wakati", ""):
                self._wakati = value == "wakati"
            elif name == "-d":
                folder = value
            elif name == "-u":
                dictionaries += value.split(",")
            else:
                raise RuntimeError(f"tavo.mecab.Tagger(): no option {word!r}; there are -Owakati, -d FOLDER, -u DICTIONARY")
        self._tagger = _tagger.Tagger(folder, dic=dictionaries)

    def parse(self, text: str) -> str:
        if self._wakati:
            return "".join(f"{surface} " for surface in self._tagger.split(text)) + "\n"
        return self._lines(self._tagger(text))

    def parseToNode(self, text: str) -> Node:
        """The node of the sentence's beginning."""
        return _nodes(self._tagger(text))

    def parseNBest(self, n: int, text: str) -> str:
        return "".join(map(self._lines, self._tagger.nbest(text, n)))

    @staticmethod
    def _lines(result: Result) -> str:
        return "".join(f"{token.surface}\t{feature_of(token)}\n" for token in result) + "EOS\n"


def _nodes(result: Result) -> Node:
    before = begin = Node("", None, BOS_NODE)
    end = 0
    for node in _chain(result):
        if node._token is not None:
            node.rlength += node._token.byte_start - end
            end = node._token.byte_end
        before.next, node.prev = node, before
        before = node
    return begin


def _chain(result: Result) -> Iterator[Node]:
    for token in result:
        yield Node(token.surface, token, UNKNOWN_NODE if token.unknown else NORMAL_NODE)
    yield Node("", None, EOS_NODE)
