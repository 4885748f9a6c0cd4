// Finding the word of a lexicon that new words shall follow.
#ifndef TAVO_LEXICON_WORDS_LIKE_WORD_HPP
#define TAVO_LEXICON_WORDS_LIKE_WORD_HPP

#include "lexicon/words/new_words.hpp"

#include <tavo/lexicon_maker.hpp>
#include <tavo/tavo.hpp>

#include <string>

namespace TAVO::words {

/// The entry of @p word in the dictionaries of @p lexicon; @p word is in the
/// user's encoding and may have "," and the beginning of a part of speech behind
/// it. Of several entries the one that wins when the word stands alone. Throws
/// lexicon_error when there is none, or no one to prefer.
LikeWord findLike(Tavo& lexicon, std::string const& word, TextEncoding encoding);

}  // namespace TAVO::words

#endif
