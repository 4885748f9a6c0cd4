"""Tokenizes files on the workers of a Dask cluster.

The scheduler passes paths, counts and checksums on, never texts or words: each worker reads its part of a file and
writes what it made beside the others. All machines see the files under the same paths.
"""

from __future__ import annotations

import collections
import glob
import hashlib
import json
import os
import socket
import threading
import uuid
from typing import Any, BinaryIO, Deque, Dict, Iterable, Iterator, List, NamedTuple, Optional, Tuple, Union

from . import Tagger, __version__
from .__main__ import end_of, json_line

__all__ = ["Part", "tokenize"]

Path = Union[str, "os.PathLike[str]"]

_FORMS = ("wakati", "json")
_FINISHED = "_finished"  #: folder of what is known of the parts that are there


class Part(NamedTuple):
    """What became of the lines that begin in bytes `begin` up to `end` of `input`."""

    path: str
    input: str
    begin: int
    end: int
    records: int
    tokens: int
    bytes: int  #: of the output
    sha256: str  #: of the output
    skipped: bool  #: it was there before


class _Task(NamedTuple):
    input: str
    begin: int
    end: int
    path: str
    form: str
    text_column: Optional[int]
    resume: bool
    tagger: Tuple[Optional[Path], Dict[str, Any]]


def tokenize(
    inputs: Iterable[Path],
    outdir: Path,
    *,
    form: str = "wakati",
    text_column: Optional[int] = None,
    part_bytes: int = 1 << 26,
    resume: bool = False,
    client: Any = None,
    lexicon: Optional[Path] = None,
    **options: Any,
) -> List[Part]:
    """Analyses the lines of UTF-8 files, a record a line, into files in the folder `outdir`; what was made, in order.

    Of each input the lines that begin in one `part_bytes` make one file: those of `news.txt` are `news.txt.00000`,
    `news.txt.00001` and so on, and one behind the other they have a line for each line of the input, in its order.

    form: "wakati", surfaces separated by blanks, or "json", an object with all values.
    text_column: where lines have several columns, separated by tabs, the number of the one that is the text, from 0;
    the others are carried along in front of the result. None: the line is the text.
    resume: True leaves parts alone that are finished, of the same input and by an equal tagger.
    client: of Dask; by default the current one, or one with a process a processor on this machine.
    lexicon, options: those of tavo.Tagger.

    A part is written under a temporary name and renamed when it is whole: whatever happens to a worker, a file of
    `outdir` is whole or not there. Work that was lost is done again by another worker.

    Raises what the work of a part raises: OSError, ValueError for a line without the text's column, TavoError.
    """
    if isinstance(inputs, (str, bytes, os.PathLike)):
        raise TypeError("tokenize() takes a list of paths, not one: tokenize([path], outdir)")
    if form not in _FORMS:
        raise ValueError(f"form is {' or '.join(map(repr, _FORMS))}, not {form!r}")
    if part_bytes < 1 or (text_column is not None and text_column < 0):
        raise ValueError(f"part_bytes is {part_bytes}, text_column {text_column}: counts from 1, and from 0")
    folder = os.path.abspath(os.fspath(outdir))
    os.makedirs(os.path.join(folder, _FINISHED), exist_ok=True)
    tagger = (lexicon, dict(options, blanks=form == "json"))
    tasks = [_Task(*part, form, text_column, resume, tagger) for part in _parts(inputs, folder, part_bytes)]
    if client is not None:
        return _done(client, tasks)
    import distributed

    try:
        return _done(distributed.get_client(), tasks)
    except ValueError:  # there is none
        start: Any = distributed.Client
        with start(processes=True, threads_per_worker=1) as own:
            return _done(own, tasks)


def _parts(inputs: Iterable[Path], folder: str, part_bytes: int) -> Iterator[Tuple[str, int, int, str]]:
    names: Dict[str, str] = {}
    for given in inputs:
        path = os.path.abspath(os.fspath(given))
        name = os.path.basename(path)
        if names.setdefault(name, path) != path:
            raise ValueError(f"{names[name]} and {path} have the same name; give each a folder of its own")
        size = os.path.getsize(path)
        for number, begin in enumerate(range(0, max(size, 1), part_bytes)):
            yield path, begin, min(begin + part_bytes, size), os.path.join(folder, f"{name}.{number:05}")


def _done(client: Any, tasks: List[_Task]) -> List[Part]:
    futures = client.map(_work, tasks, pure=False)
    try:
        parts: List[Part] = client.gather(futures)
    except BaseException:
        client.cancel(futures)
        raise
    for task in tasks:  # of workers that did not come to an end
        for left in glob.glob(glob.escape(_beside(task.path, ".")) + "*.part"):
            os.remove(left)
    return parts


def _beside(path: str, prefix: str, suffix: str = ".") -> str:
    folder, name = os.path.split(path)
    return os.path.join(folder, prefix + name + suffix)


_kept = threading.local()


def _tagger_for(task: _Task) -> Tagger:
    """One for each thread of a worker."""
    if getattr(_kept, "arguments", None) != task.tagger:
        _kept.tagger, _kept.arguments = Tagger(task.tagger[0], **task.tagger[1]), task.tagger
    made: Tagger = _kept.tagger
    return made


def _work(task: _Task) -> Part:
    tagger = _tagger_for(task)
    status = os.stat(task.input)
    made_of = [task.input, task.begin, task.end, status.st_size, status.st_mtime_ns, task.form, task.text_column,
               tagger.fingerprint, __version__]  # fmt: skip
    note = os.path.join(os.path.dirname(task.path), _FINISHED, os.path.basename(task.path) + ".json")
    before = _finished(note, made_of, task.path) if task.resume else None
    if before is not None:
        return before
    own = f"{socket.gethostname()}-{os.getpid()}-{uuid.uuid4().hex}.part"
    temporary = _beside(task.path, ".") + own
    digest, records, tokens = hashlib.sha256(), 0, 0
    with open(task.input, "rb") as source, open(temporary, "wb") as out:
        for line, count in _lines(tagger, task, source):
            digest.update(line)
            out.write(line)
            records += 1
            tokens += count
        size = out.tell()
        out.flush()
        os.fsync(out.fileno())
    part = Part(task.path, task.input, task.begin, task.end, records, tokens, size, digest.hexdigest(), False)
    os.replace(temporary, task.path)
    with open(note + own, "w") as out_note:
        json.dump({"made_of": made_of, "part": part._asdict()}, out_note)
    os.replace(note + own, note)
    return part


def _finished(note: str, made_of: List[Any], path: str) -> Optional[Part]:
    try:
        with open(note) as text:
            known = json.load(text)
        part = Part(**known["part"])
        return part._replace(skipped=True) if known["made_of"] == made_of and os.path.getsize(path) == part.bytes else None
    except (OSError, ValueError, KeyError, TypeError):
        return None  # not there, or not by this function


def _given(task: _Task, source: BinaryIO) -> Iterator[Tuple[str, str, str]]:
    """What stands before the text of each line, the text, and the line's end."""
    at = task.begin
    if at != 0:
        source.seek(at - 1)
        at += len(source.readline()) - 1
    while at < task.end:
        line = source.readline().decode("utf-8", "surrogateescape")
        end = end_of(line)
        text = line[: -len(end)] if line.endswith("\n") else line
        front = ""
        if task.text_column is not None:
            columns = text.split("\t")
            if task.text_column >= len(columns):
                raise ValueError(f"{task.input}: the line at byte {at} has no column {task.text_column}: {text[:60]!r}")
            text = columns.pop(task.text_column)
            front = "".join(f"{column}\t" for column in columns)
        yield front, text, end
        at = source.tell()


def _lines(tagger: Tagger, task: _Task, source: BinaryIO) -> Iterator[Tuple[bytes, int]]:
    """The lines to write, and how many tokens each has."""
    waiting: Deque[Tuple[str, str]] = collections.deque()

    def texts() -> Iterator[str]:
        for front, text, end in _given(task, source):
            waiting.append((front, end))
            yield text

    results: Iterator[Any] = tagger.split_batch(texts()) if task.form == "wakati" else tagger.batch(texts())
    for result in results:
        front, end = waiting.popleft()
        if task.form == "wakati":
            shown = " ".join(result)
        else:
            shown, end = json_line(result), "\n"
        yield (front + shown + end).encode("utf-8", "surrogateescape"), len(result)
