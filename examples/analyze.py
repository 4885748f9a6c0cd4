"""Prints the morphemes of a sentence, then its three best analyses."""

import sys

import tavo

text = sys.argv[1] if len(sys.argv) > 1 else "すもももももももものうち"
tagger = tavo.Tagger()
for morpheme in tagger(text):
    print(f"{morpheme.start:3} {morpheme.surface}\t{morpheme.pos}\t{morpheme.reading}")
for result in tagger.nbest(text, 3):
    print(f"{result.connection_cost:6} {result.word_cost:6}  {result}")
