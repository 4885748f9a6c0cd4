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

from ._columns import Columns
from ._error import TavoError
from ._tagger import Tagger
from ._tavo import Result, Token
from ._version import __version__
from ._words import compile

__all__ = ["Columns", "Result", "Tagger", "TavoError", "Token", "__version__", "compile"]

Sequence.register(Result)
