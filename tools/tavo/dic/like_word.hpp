// Finding the word of a lexicon that new words shall follow.
#ifndef TAVO_TOOL_LIKE_WORD_HPP
#define TAVO_TOOL_LIKE_WORD_HPP

#include "cli/encoding.hpp"
#include "dic/new_words.hpp"

#include <tavo/tavo.hpp>

#include <string>

namespace tool {

/// The entry of @p word in the dictionaries of @p lexicon; @p word is in the
/// user's encoding and may have "," and the beginning of a part of speech behind
/// it. Of several entries the one that wins when the word stands alone. Throws
/// ToolError (data) when there is none, or no one to prefer.
LikeWord findLike(TAVO::Tavo& lexicon, std::string const& word, Encoding encoding);

}  // namespace tool

#endif
