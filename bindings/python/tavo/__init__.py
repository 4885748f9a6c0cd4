"""Japanese morphological analysis.

>>> import tavo
>>> tagger = tavo.Tagger()
>>> tagger.split("猫が好きだ")
['猫', 'が', '好き', 'だ']
>>> for token in tagger("猫が好きだ"):
...     print(token.surface, token.pos, token.reading)
猫 名詞:一般 ネコ
が 助詞:格助詞:一般 ガ
好き 名詞:形容動詞語幹 スキ
だ 助動詞:特殊・ダ:基本形 ダ

The lexicon is that of the package tavo-ipadic when it is installed; TAVO_PATH names the folder of another one.
"""

from _collections_abc import Sequence  # loaded in every interpreter, as collections.abc is not

from ._tagger import Tagger
from ._tavo import Result, Token
from ._tavo import version as __version__

__all__ = ["Columns", "Result", "Tagger", "TavoError", "Token", "__version__", "compile"]

Sequence.register(Result)

TYPE_CHECKING = False
if TYPE_CHECKING:
    from ._columns import Columns
    from ._error import TavoError
    from ._words import compile
else:
    #: What few programs need, with the module that it comes from when it is asked for.
    _LATER = {"Columns": "_columns", "TavoError": "_error", "compile": "_words"}

    def __getattr__(name):
        if name not in _LATER:
            raise AttributeError(f"module {__name__!r} has no attribute {name!r}")
        value = getattr(__import__(f"{__name__}.{_LATER[name]}", fromlist=[name]), name)
        globals()[name] = value
        return value

    def __dir__():
        return sorted({*globals(), *_LATER})
