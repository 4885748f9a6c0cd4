"""Between str and the library's code page 932.

A character that the code page lacks goes in as one two-byte character of its
user-defined area, so that positions in characters stay positions in the str.
"""

import codecs
from typing import Dict, Tuple

CODE_PAGE = "cp932"
_STAND_IN = "\ue000"  # its bytes are F0 40
_FIRST_PRIVATE, _LAST_PRIVATE = 0xE000, 0xE757  # F040 to F9FC
# The code page gives these one byte that the library takes for half a character.
_HALVES = {code: _STAND_IN for code in (0xF8F1, 0xF8F2, 0xF8F3)}


def _stand_in(error):
    if not isinstance(error, UnicodeEncodeError):
        raise error
    return _STAND_IN.encode(CODE_PAGE) * (error.end - error.start), error.end


codecs.register_error("tavo_stand_in", _stand_in)


def encode(text: str) -> bytes:
    """Two bytes for each character the code page lacks; see also without_halves."""
    return text.encode(CODE_PAGE, "tavo_stand_in")


def without_halves(text: str) -> str:
    """The text with stand-ins for the characters whose count encode() gets wrong."""
    return text.translate(_HALVES)


def decode(text: bytes) -> str:
    return text.decode(CODE_PAGE, "replace")


def _is_lacking(char: str) -> bool:
    if ord(char) in _HALVES:
        return True
    try:
        char.encode(CODE_PAGE)
    except UnicodeEncodeError:
        return True
    return False


def encode_reversibly(text: str) -> Tuple[bytes, Dict[int, str]]:
    """The bytes, and what to translate() in texts that are made from them.

    Each lacking character has a stand-in of its own that the text does not hold.
    """
    present = set(text)
    lacking = sorted(filter(_is_lacking, present))
    free = (code for code in range(_FIRST_PRIVATE, _LAST_PRIVATE + 1) if chr(code) not in present)
    back = dict(zip(free, lacking))
    if len(back) < len(lacking):
        raise ValueError(f"more than {len(back)} different characters outside code page 932 in one text")
    return text.translate({ord(char): code for code, char in back.items()}).encode(CODE_PAGE), back
