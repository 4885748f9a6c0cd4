"""Finds and declares the shared library."""

import ctypes
import ctypes.util
import os
import pathlib
from ctypes import POINTER, c_char_p, c_int, c_size_t, c_uint, c_void_p

_PACKAGE = pathlib.Path(__file__).resolve().parent
#: Of include/tavo/tavo_bulk.h, as declared below.
_BULK_VERSION = 2

STD_FORM, READ, PRON, PART_OF_SP = 0x04, 0x08, 0x10, 0x80  # as it is displayed
FORM, CHARACTERS, ANALYZED = 0x01, 0x100, 0x200
UNKNOWN, ANNOTATION = 0x1, 0x2


class TavoError(RuntimeError):
    """An error of the library. `code` is its number, `name` the number's name."""

    def __init__(self, code: int, name: str, text: str):
        super().__init__(code, name, text)
        self.code, self.name, self.text = code, name, text

    def __str__(self) -> str:
        return f"{self.text or self.name} ({self.code})"


class Bulk(ctypes.Structure):
    """tavo_bulk_t"""

    _fields_ = [(name, c_size_t) for name in ("row_count", "morpheme_count", "field_count", "string_bytes")] + [
        (name, c_void_p)
        for name in (
            "row_end", "row_length", "row_failed", "row_text", "row_connection_cost", "row_word_cost",
            "start", "length", "cost", "pid", "flags", "fields", "strings",
        )
    ]  # fmt: skip


def _candidates():
    """Where the library may be, best place first."""
    if os.environ.get("TAVO_LIBRARY"):
        return [os.environ["TAVO_LIBRARY"]]
    places = [str(_PACKAGE / "libtavo.so"), str(_PACKAGE.parents[2] / "build" / "lib" / "libtavo.so")]
    return [place for place in places if os.path.exists(place)] + [ctypes.util.find_library("tavo") or "libtavo.so.0"]


def _declare(lib):
    handle, text = c_void_p, c_char_p
    lib.tavo_new.restype, lib.tavo_new.argtypes = handle, [c_int]
    lib.tavo_getErrorWhat.restype, lib.tavo_getErrorWhat.argtypes = text, [handle]
    lib.tavo_getErrorMessage.restype, lib.tavo_getErrorMessage.argtypes = text, [c_int]
    lib.tavo_free.argtypes = lib.tavo_getTaggedInputMode.argtypes = [handle]
    lib.tavo_addDicPath.argtypes = [handle, text, c_int]
    lib.tavo_setDelimiterString.argtypes = [handle, POINTER(text), c_int]
    lib.tavo_bulkAnalyze.argtypes = [handle, POINTER(Bulk), POINTER(text), POINTER(c_int), c_int, c_uint]
    lib.tavo_bulkAnalyzeNBest.argtypes = [handle, POINTER(Bulk), text, c_int, c_int, c_uint]


def _load():
    tried = []
    for place in _candidates():
        try:
            lib = ctypes.CDLL(place)
        except OSError as error:
            tried.append(f"  {place}: {error}")
            continue
        if lib.tavo_bulkVersion() != _BULK_VERSION:
            tried.append(f"  {place}: another version of the library ({lib.tavo_bulkVersion()}, not {_BULK_VERSION})")
            continue
        _declare(lib)
        lib.tavo_readyForThread()
        return lib, place
    raise OSError(
        "the Tavo library cannot be loaded; tried\n" + "\n".join(tried) + "\nBuild it with `make build` in the source "
        "tree, or set TAVO_LIBRARY to the path of libtavo.so."
    )


LIB, _PATH = _load()


def lexicon_folders():
    """Where a lexicon may be, best place first."""
    folders = [os.environ["TAVO_PATH"]] if os.environ.get("TAVO_PATH") else []
    library = pathlib.Path(_PATH)
    if library.is_absolute():  # of an installed tree, with or without a folder per machine type, and of a build
        folders += [str(parent / "share" / "tavo") for parent in library.parents[1:3]]
    folders += ["/usr/local/share/tavo", "/usr/share/tavo", str(_PACKAGE.parents[2] / "build" / "share" / "tavo")]
    return list(dict.fromkeys(folders))
