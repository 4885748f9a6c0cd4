// Whether the words of a new dictionary win in sentences, and what they lack.
#ifndef TAVO_LEXICON_WORDS_MUST_WIN_HPP
#define TAVO_LEXICON_WORDS_MUST_WIN_HPP

#include "lexicon/words/new_words.hpp"

#include <tavo/lexicon_maker.hpp>
#include <tavo/tavo.hpp>

#include <string>

namespace TAVO::words {

/// Analyses @p sentence (Shift_JIS) with @p lexicon, whose first dictionary is the
/// new one: a word of it has to be in the best analysis. Else the best analysis
/// with one is looked for, and compared with it. The text is in @p encoding.
WordVerdict judge(Tavo& lexicon, NewWords const& words, std::string const& sentence, TextEncoding encoding);

}  // namespace TAVO::words

#endif
