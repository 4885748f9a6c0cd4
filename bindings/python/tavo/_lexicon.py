"""Gives an analyser its settings, dictionaries and connection table."""

import contextlib
import itertools
import os
import threading
from ctypes import c_char_p

from . import _text
from ._library import lexicon_folders

#: Options that are modes, with the function that sets each.
MODES = {
    "memory_mapped": "tavo_setMemoryMappedMode",
    "delimit_crlf": "tavo_setDelimitCRLFMode",
    "delete_crlf": "tavo_setDeleteCRLFMode",
    "delete_slash": "tavo_setDeleteSlashMode",
    "alphabet_capitalize": "tavo_setAlphabetCapitalizeMode",
    "alternative": "tavo_setAlternativeMode",
    "divide_word": "tavo_setDivideWordMode",
    "reduce_undef": "tavo_setReduceUndefMode",
    "reduce_char": "tavo_setReduceCharMode",
    "reduce_number": "tavo_setReduceNumberMode",
}
#: Options that are paths.
PATHS = {
    "comment_rule": "tavo_setCommentRulePath",
    "reduce_rule": "tavo_setReduceRulePath",
    "public_pos": "tavo_setPublicPartOfSPPath",
    "number_pos": "tavo_setNumberPartOfSPPath",
    "major_pos": "tavo_setMajorPartOfSPPath",
}
OPTIONS = ["dic", "conn_table", "delimiter", *MODES, *PATHS]

_environment = threading.Lock()


def check_options(options: dict) -> None:
    for name in options:
        if name not in OPTIONS:
            raise TypeError(f"Tagger() has no option {name!r}; there are {', '.join(OPTIONS)}")


def configure(call, init, options: dict) -> None:
    """Applies init file and options. `call` calls a function of the library on the
    analyser and raises its errors."""
    memory_mapped = int(options.get("memory_mapped", True))
    call("tavo_setMemoryMappedMode", memory_mapped)
    _add_dictionaries(call, options, memory_mapped)
    if init is not None or "conn_table" not in options:
        _read_init(call, init, memory_mapped)
    elif "dic" not in options:
        raise TypeError("conn_table needs dic: the dictionaries to use with it")
    if "conn_table" in options:
        _use_table(call, options["conn_table"])
    for names, convert in ((MODES, int), (PATHS, _path)):
        for name in names.keys() & options.keys():
            call(names[name], convert(options[name]))
    if "delimiter" in options:
        strings = _list(options["delimiter"])
        call("tavo_setDelimiterString", (c_char_p * len(strings))(*map(_text.encode, strings)), len(strings))


def _path(path):
    return None if path is None else os.fsencode(path)


def _list(value) -> list:
    return [value] if isinstance(value, (str, os.PathLike)) else list(value)


def _add_dictionaries(call, options, memory_mapped) -> None:
    for path in _list(options.get("dic", [])):
        call("tavo_addDicPath", os.fsencode(path), memory_mapped)


def _holds_lexicon(folder) -> bool:
    return all(os.path.isfile(os.path.join(folder, name)) for name in ("SysDic", "ConnTable"))


def _find_folder():
    return next(filter(_holds_lexicon, lexicon_folders()), None)


def _read_init(call, init, memory_mapped) -> None:
    """`init` is an init file, a folder with a lexicon, or None for the default one."""
    folder = init if init is not None and os.path.isdir(init) else _find_folder()
    if init is None and folder is None:
        places = "".join(f"\n  {place}" for place in lexicon_folders())
        raise FileNotFoundError(
            f"no lexicon found; looked for SysDic and ConnTable in{places}\nMake one with `make lexicon` in the source "
            "tree, or with `tavo import mecab DIR -o OUT`, and set TAVO_PATH to its folder."
        )
    if init is not None and init != folder:
        with _default_folder(folder):
            call("tavo_setInitFilePath", os.fsencode(init))
    elif _names_own_folder(os.path.join(folder, "tavo.init")):
        with _default_folder(folder):
            call("tavo_setInitFilePath", os.fsencode(os.path.join(folder, "tavo.init")))
    else:
        for path in _dictionaries_in(folder):
            call("tavo_addDicPath", os.fsencode(path), memory_mapped)
        _use_table(call, os.path.join(folder, "ConnTable"))


def _dictionaries_in(folder):
    """SysDic, and for large lexicons SysDic2 and so on."""
    names = itertools.chain(["SysDic"], (f"SysDic{part}" for part in itertools.count(2)))
    return itertools.takewhile(os.path.isfile, (os.path.join(folder, name) for name in names))


def _names_own_folder(init: str) -> bool:
    """False without init file, and when the files it names lie elsewhere: the folder was
    moved since it was written."""
    if not os.path.isfile(init):
        return False
    with open(init, "rb") as lines:
        pairs = [line.strip().partition(b"=") for line in lines]
    named = [value.strip().split(b",")[0] for key, _, value in pairs if key.strip() in (b"Dic", b"ConnTable")]
    own = os.path.realpath(os.path.dirname(os.fsencode(init)))
    return all(os.path.realpath(os.path.dirname(path)) == own for path in named if path)


def _use_table(call, table) -> None:
    """Sets the connection table, with the rule files that lie beside it."""
    for name, setter in (("reduce.rules", PATHS["reduce_rule"]), ("number.list", PATHS["number_pos"])):
        path = os.path.join(os.path.dirname(os.fspath(table)), name)
        call(setter, os.fsencode(path) if os.path.isfile(path) else None)
    call("tavo_setConnTablePath", os.fsencode(table))


@contextlib.contextmanager
def _default_folder(folder):
    """The library takes what an init file leaves out from the folder of TAVO_PATH,
    which is the whole process's."""
    with _environment:
        before = os.environ.get("TAVO_PATH")
        if folder is not None:
            os.environ["TAVO_PATH"] = os.fspath(folder)
        try:
            yield
        finally:
            if before is not None:
                os.environ["TAVO_PATH"] = before
            else:
                os.environ.pop("TAVO_PATH", None)
