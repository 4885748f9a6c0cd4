"""Between str and the library's code page 932.

A character that the code page lacks goes in as one two-byte character of its
user-defined area, so that positions in characters stay positions in the str.
"""

import codecs
import re
from typing import Dict, Tuple

CODE_PAGE = "cp932"
_PRIVATE = [chr(code) for code in range(0xE000, 0xE758)]
# No word begins with these second bytes, so none is found inside such a character.
_PRIVATE.sort(key=lambda char: char.encode(CODE_PAGE)[1] not in (0x80, 0xA0))
_STAND_IN = _PRIVATE[0]
_INVALID_BYTES = range(0xDC80, 0xDD00)  # as surrogateescape gives them
# The code page gives these one byte that the library takes for half a character.
_HALVES = {code: _STAND_IN for code in (0xF8F1, 0xF8F2, 0xF8F3)}
# Characters that Unicode text has for one of the code page whose own Unicode value
# is another one.
_VARIANTS = dict(zip("\u00a0\u00a5\u00af\u00b7\u2011\u2013\u2014\u203e\u22ef", " ￥￣・‐――￣…"))


def _double_codes() -> Dict[str, bytes]:
    """The characters that stand in the code page twice, with the code that
    lexicons are made with; Python's codec takes the other one."""
    codes = {}
    for lead in (0xFA, 0xFB, 0xFC):
        for second in range(0x40, 0xFD):
            code = bytes((lead, second))
            char = code.decode(CODE_PAGE, "ignore")
            if len(char) == 1 and char.encode(CODE_PAGE)[:1] in (b"\xed", b"\xee"):
                codes[char] = code
    return codes


_DOUBLE = _double_codes()
_RUNS = re.compile(f"([{''.join(_DOUBLE)}])")


def _variant(error):
    if not isinstance(error, UnicodeEncodeError):
        raise error
    lacking = error.object[error.start : error.end]
    found = (_VARIANTS.get(char) or ("\x1a" if ord(char) in _INVALID_BYTES else _STAND_IN) for char in lacking)
    return "".join(found).encode(CODE_PAGE), error.end


codecs.register_error("tavo_variant", _variant)


def encode(text: str) -> bytes:
    """One character of the code page for each of the text; see also without_halves."""
    data = text.encode(CODE_PAGE, "tavo_variant")
    if b"\xed" not in data and b"\xee" not in data:
        return data
    return b"".join(_DOUBLE.get(run) or run.encode(CODE_PAGE, "tavo_variant") for run in _RUNS.split(text))


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
    back = {ord(free): char for free, char in zip((char for char in _PRIVATE if char not in present), lacking)}
    if len(back) < len(lacking):
        raise ValueError(f"more than {len(back)} different characters outside code page 932 in one text")
    return encode(text.translate({ord(char): code for code, char in back.items()})), back
