"""Finds the lexicon, and checks options."""

from __future__ import annotations

import os

from . import _tavo

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Dict, Iterable, List, Tuple

#: Options that are 0 or 1, with their keys in an init file.
MODES = {
    "delete_slash": "DeleteSlash",
    "alphabet_capitalize": "AlphabetCapitalize",
    "alternative": "Alternative",
    "divide_word": "DivideWord",
    "reduce_undef": "ReduceUndef",
    "reduce_char": "ReduceChar",
    "reduce_number": "ReduceNumber",
}


def modes_of(options: Dict[str, int], others: Iterable[str]) -> List[Tuple[str, int]]:
    for name, value in options.items():
        if name not in MODES:
            names = [*others, *MODES]
            import difflib

            near = difflib.get_close_matches(name, names, 1)
            meant = f"; did you mean {near[0]!r}?" if near else f"; there are {', '.join(names)}"
            raise TypeError(f"Tagger() has no option {name!r}{meant}")
        if value not in (0, 1):
            raise ValueError(f"Tagger(): {name} is True or False, not {value!r}")
    return [(MODES[name], int(value)) for name, value in options.items()]


def holds_lexicon(folder: str) -> bool:
    return all(os.path.exists(os.path.join(folder, name)) for name in ("SysDic", "ConnTable"))


def packaged() -> str:
    """The folder of an installed lexicon package; that of tavo-ipadic where there are several. Empty without."""
    beside = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    own = os.path.join(beside, "tavo_ipadic")
    if holds_lexicon(own):
        return own
    names = sorted(name for name in os.listdir(beside) if name.startswith("tavo_"))
    return next(filter(holds_lexicon, (os.path.join(beside, name) for name in names)), "")


def find() -> str:
    """What to open when the caller names nothing: TAVO_PATH, a lexicon package, or where the library looks (empty)."""
    return "" if os.environ.get("TAVO_PATH") else packaged()


def missing(error: FileNotFoundError) -> FileNotFoundError:
    """@p error with what a user of the package can do."""
    return FileNotFoundError(f"{error}\nOr install a lexicon package beside this one: pip install tavo-ipadic")
