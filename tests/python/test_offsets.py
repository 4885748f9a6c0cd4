"""Positions in bytes, characters and UTF-16 units are those that Python counts: of texts through the package, and of
any bytes through the C interface, where Python reads each byte that is not UTF-8 as one character."""

import ctypes
import os
import pathlib
import random
import unicodedata

import pytest

SPECIAL = "す東京のもｶﾞ食べ aé12\u0301\u3099\u309A\uFE0F\u200D\u20E3👩❤🇯🇵👍🏽😀𠮷韩国한กД\uE000\uFEFF\u3000\n\r\t\x00~\\"
ILL_FORMED = [b"\x80", b"\xff", b"\xe3", b"\xe3\x81", b"\xf0\x9f\x98", b"\xc1\x81", b"\xe0\x8e\xb1", b"\xed\xa0\x80", b"\xf4\x90\x80\x80"]


def random_text(generator, most=40):
    def character():
        if generator.randrange(3):
            return generator.choice(SPECIAL)
        while True:
            found = chr(generator.choice((generator.randrange(0x3000), generator.randrange(0x10000), generator.randrange(0x110000))))
            if unicodedata.category(found) != "Cs":
                return found

    return "".join(character() for _ in range(generator.randrange(most)))


def counted(prefix):
    """Bytes, characters and UTF-16 units of a text."""
    return len(prefix.encode("utf-8", "surrogateescape")), len(prefix), len(prefix.encode("utf-16-le", "surrogatepass")) // 2


def test_texts(tagger):
    generator = random.Random(20)
    tokens = 0
    for _ in range(2000):
        text = random_text(generator)
        end = 0
        for token in tagger(text):
            begins, ends = (token.byte_start, token.start, token.utf16_start), (token.byte_end, token.end, token.utf16_end)
            assert begins == counted(text[: token.start]) and ends == counted(text[: token.end]), ascii(text)
            assert token.surface == text[token.start : token.end] and token.start >= end, ascii(text)
            assert not text[end : token.start].strip(" \t\n\v\f\r")
            end = token.end
            tokens += 1
        assert not text[end:].strip(" \t\n\v\f\r")
    assert tokens > 10000


class Failure(ctypes.Structure):
    _fields_ = [("size", ctypes.c_size_t), ("code", ctypes.c_int), ("text", ctypes.c_char * 2044)]


NUMBERS = ctypes.POINTER(ctypes.c_uint32)


class Tokens(ctypes.Structure):
    _fields_ = [
        ("size", ctypes.c_size_t),
        ("text_count", ctypes.c_size_t),
        ("token_count", ctypes.c_size_t),
        *((name, NUMBERS) for name in ("first_of_text", "begin", "end")),
        ("word", ctypes.POINTER(ctypes.c_uint64)),
        ("flags", ctypes.POINTER(ctypes.c_uint8)),
        *((name, NUMBERS) for name in ("char_begin", "char_end", "utf16_begin", "utf16_end")),
        ("rest", ctypes.c_void_p * 32),  # the struct may grow
    ]


@pytest.fixture
def columns(lexicon):
    """The positions of a text of bytes in three units, and whether each token is said to hold other bytes than UTF-8."""
    library = ctypes.CDLL(pathlib.Path(os.environ["TAVO_BUILD"], "lib", "libtavo.so"))
    library.tavo_lexicon_open.restype = library.tavo_tokenizer_new.restype = ctypes.c_void_p
    failure = Failure(ctypes.sizeof(Failure))
    handle = ctypes.c_void_p(library.tavo_lexicon_open(os.fsencode(lexicon), None, ctypes.byref(failure)))
    tokenizer = ctypes.c_void_p(library.tavo_tokenizer_new(handle, None, ctypes.byref(failure)))
    tokens = Tokens(ctypes.sizeof(Tokens))

    def tokenize(text):
        fields = 0x1000 | 0x2000  # TAVO_CHAR_OFFSETS, TAVO_UTF16_OFFSETS
        code = library.tavo_tokenize(tokenizer, text, ctypes.c_size_t(len(text)), fields, ctypes.byref(tokens), ctypes.byref(failure))
        assert code == 0, failure.text
        names = ("begin", "char_begin", "utf16_begin", "end", "char_end", "utf16_end", "flags")
        return list(zip(*(getattr(tokens, name)[: tokens.token_count] for name in names)))

    yield tokenize
    library.tavo_tokenizer_free(tokenizer)
    library.tavo_lexicon_free(handle)


def test_bytes(columns):
    generator = random.Random(21)
    ill_formed = 0
    for _ in range(2000):
        text = b"".join(generator.choice(ILL_FORMED) if generator.randrange(6) == 0 else random_text(generator, 5).encode() for _ in range(8))
        for begin, char_begin, utf16_begin, end, char_end, utf16_end, flags in columns(text):
            before, upto = (text[:place].decode("utf-8", "surrogateescape") for place in (begin, end))
            assert (begin, char_begin, utf16_begin) == counted(before), text
            assert (end, char_end, utf16_end) == counted(upto), text
            assert bool(flags & 8) == any("\udc80" <= c <= "\udcff" for c in upto[len(before) :]), text
            ill_formed += flags >> 3 & 1
    assert ill_formed > 1000
