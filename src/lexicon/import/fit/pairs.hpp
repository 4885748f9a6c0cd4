// Estimates how often a search asks for the costs of each word.
#ifndef TAVO_LEXICON_IMPORT_FIT_PAIRS_HPP
#define TAVO_LEXICON_IMPORT_FIT_PAIRS_HPP

#include "lexicon/import/fit/search.hpp"
#include "lexicon/import/source/source_lexicon.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace TAVO::importer {

/// Pairs of neighbours on good paths and bad ones; empty when nothing was counted.
struct PairCounts {
    std::vector<double> asLeft;  ///< per word: those that it is the first of
    /// Words that start together, so that a search asks for the costs of all of them at once; most asked for first.
    std::vector<std::vector<std::uint32_t>> together;
};

/// Counts in all lattices of @p sentences (code page 932). Hiragana is half of
/// Japanese text; where it is less of the sentences, as of drawn ones, words
/// written in it alone count the more.
PairCounts countPairs(Lexicon const& lexicon, FormIndex const& index, std::vector<std::string> const& sentences);

}  // namespace TAVO::importer

#endif
