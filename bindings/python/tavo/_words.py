"""Words of one's own."""

from __future__ import annotations

import os

from . import _tavo
from ._lexicon import find, holds_lexicon

TYPE_CHECKING = False
if TYPE_CHECKING:
    from tempfile import TemporaryDirectory
    from typing import Any, Dict, Iterable, List, Mapping, Optional, Sequence, Tuple, Union

    #: A word, or a word and what is known about it: pos, cost, reading, base, like.
    WordLike = Union[str, Tuple[str, Mapping[str, Any]]]
    Path = Union[str, "os.PathLike[str]"]

_KEYS = ("pos", "cost", "reading", "base")


def temporary_folder() -> TemporaryDirectory[str]:
    import tempfile  # takes longer to import than opening a lexicon

    return tempfile.TemporaryDirectory(prefix="tavo-")


def _field(text: str) -> str:
    return "".join("\\" + c if c in ',\\-/()|"' else c for c in text)


def _line(word: WordLike) -> Tuple[str, str]:
    """The source line of a word, and the word that it is to be like."""
    surface, given = (word, {}) if isinstance(word, str) else word
    unknown = set(given) - {*_KEYS, "like"}
    if unknown:
        raise TypeError(f"{surface}: a word has no {sorted(unknown)[0]!r}; there are {', '.join(_KEYS)}, like")
    if not surface or any(c in surface for c in "\r\n\0"):
        raise ValueError(f"not a word: {surface!r}")
    if "pos" in given and "like" not in given:
        given = {"cost": 128, **given}  # the middle: the class of the part of speech decides
    values = (str(given.get(key, "")) for key in _KEYS)
    return ",".join(map(_field, (surface, *values))), given.get("like", "")


def _compile(lines: Iterable[str], table: Path, path: Path, like: str, must_win: Sequence[str]) -> List[str]:
    """Verdicts, a line for each sentence of @p must_win. Faults are a ValueError with all of them."""
    made, _, faults, verdicts = _tavo.compile("\n".join(lines) + "\n", table, like, list(must_win), path)
    if not made:
        raise ValueError("\n".join(f"word {line}: {cause}" if line else cause for line, cause, _ in faults))
    losing = [text for wins, text in verdicts if not wins]
    if losing:
        raise ValueError("\n".join(losing))
    return [text for _, text in verdicts]


def table_of(lexicon: Optional[Path]) -> str:
    """The connection table of a lexicon's folder; of the default lexicon without one."""
    folder = os.fspath(lexicon) if lexicon is not None else find()
    if not folder:
        folder = next(filter(holds_lexicon, _tavo.places()), "")
    if not folder:
        raise FileNotFoundError("no lexicon in " + ", ".join(_tavo.places()))
    return os.path.join(folder, "ConnTable") if os.path.isdir(folder) else _table_of_init(folder)


def _table_of_init(path: str) -> str:
    with open(path, "rb") as lines:
        for line in lines:
            key, _, value = line.partition(b"=")
            if key.strip() == b"ConnTable":
                return os.path.join(os.path.dirname(path), os.fsdecode(value.strip()))
    raise ValueError(f"{path}: names no ConnTable; give the folder of the lexicon")


def compile(
    words: Iterable[WordLike], path: Path, *, like: str = "", must_win: Sequence[str] = (), lexicon: Optional[Path] = None
) -> List[str]:
    """Compiles words into the dictionary at `path`, for `Tagger(dic=path)`.

    A word is a string, or a pair of it and what is known: `pos`, `cost`, `reading`, `base`, and `like`, a word of the
    lexicon that gives part of speech and cost. `like` is what words without their own follow. `must_win` are sentences
    that a new word should be in the best analysis of; the answer has a line for each. `lexicon` is the folder that the
    words are for, by default that of Tagger().

    Raises ValueError with all faulty words, or with what a sentence of `must_win` lacks; then nothing is compiled, or
    the dictionary is there to be looked at.

    >>> import os, tempfile, tavo
    >>> path = os.path.join(tempfile.mkdtemp(), "my.dic")
    >>> tavo.compile([("推し活", {"reading": "オシカツ"})], path, like="部活", must_win=["推し活をする"])
    ['"推し活をする": 推し活 wins: 推し活 を する']
    >>> tavo.Tagger(dic=path).split("推し活をする")
    ['推し活', 'を', 'する']
    """
    table = table_of(lexicon)
    groups: Dict[str, List[str]] = {}
    for word in words:
        line, own = _line(word)
        groups.setdefault(own or like, []).append(line)
    if len(groups) == 1:
        ((own, lines),) = groups.items()
        return _compile(lines, table, path, own, must_win)
    whole: List[str] = []
    with temporary_folder() as folder:
        part = os.path.join(folder, "part.dic")
        for own, lines in groups.items():
            _compile(lines, table, part, own, ())
            _tavo.dump(part, whole.append)
    return _compile("".join(whole).splitlines(), table, path, "", must_win)
