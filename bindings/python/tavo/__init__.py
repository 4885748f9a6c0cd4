"""Japanese morphological analysis with the Tavo library.

    >>> import tavo
    >>> tagger = tavo.Tagger()
    >>> [m.surface for m in tagger("すもももももももものうち")]
    ['すもも', 'も', 'もも', 'も', 'もも', 'の', 'うち']

Set TAVO_LIBRARY to the path of libtavo.so and TAVO_PATH to the folder of a
lexicon when they are not found by themselves.
"""

from ._library import TavoError
from ._result import Morpheme, Result
from ._tagger import Tagger
from ._version import __version__

__all__ = ["Morpheme", "Result", "Tagger", "TavoError", "__version__"]
