// Whether the words of a new dictionary win in sentences, and what they lack.
#ifndef TAVO_TOOL_MUST_WIN_HPP
#define TAVO_TOOL_MUST_WIN_HPP

#include "cli/encoding.hpp"
#include "dic/new_words.hpp"

#include <tavo/tavo.hpp>

#include <string>

namespace tool {

/// What became of one sentence; the text is in the user's encoding, a line
/// without line feed.
struct Verdict {
    bool wins = false;
    std::string text;
};

/// Analyses @p sentence (Shift_JIS) with @p lexicon, whose first dictionary is the
/// new one: a word of it has to be in the best analysis. Else the best analysis
/// with one is looked for, and compared with it.
Verdict judge(TAVO::Tavo& lexicon, NewWords const& words, std::string const& sentence, Encoding encoding);

}  // namespace tool

#endif
