// Fits what moves the source's costs into the range of a byte without changing
// the order of any two analyses: a shift per right id and one per byte of text.
#ifndef TAVO_LEXICON_IMPORT_FIT_FIT_HPP
#define TAVO_LEXICON_IMPORT_FIT_FIT_HPP

#include "lexicon/import/fit/search.hpp"
#include "lexicon/import/source/source_lexicon.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::importer {

/// With these, the edge from a word of right id r to a word w costs
/// m[r][left id of w] + row[r] + w.cost - row[right id of w] + perByte * bytes of w.
struct Shifts {
    std::vector<double> row;  ///< per source right id
    double perByte = 0;
    double end = 0;  ///< taken off the edge to the text's end
};

/// How often each edge is part of a near-best analysis of the fitting text.
struct Usage {
    struct Edge {
        std::uint32_t left, right;  ///< words, Lattice::kNone at the text's ends
        float weight;
    };
    std::vector<Edge> edges;
    std::uint64_t sentences = 0, withoutPath = 0;
};

struct FitOptions {
    explicit FitOptions(double step) : target(55 * step), lowest(10 * step), highest(250 * step) {}

    double target;           ///< where shifted edges should lie
    double lowest, highest;  ///< the range to keep edges in, a little less than a byte's
    double heavy = 500;      ///< weight of what leaves the range against 1 for the way to the target
    double nearBest = 1200;  ///< edges of analyses this much worse than the best count 1/e
    unsigned rounds = 12;
};

/// Sentences drawn from the lexicon's own statistics: a random walk over its
/// connection and word costs, and each right id at least a few times. The same
/// lexicon gives the same sentences.
std::vector<std::string> drawSentences(Lexicon const& lexicon, std::size_t count);

Usage countEdges(Lexicon const& lexicon, FormIndex const& index, std::vector<std::string> const& sentences,
                 double nearBest);

Shifts fitShifts(Lexicon const& lexicon, Usage const& usage, FitOptions const& options);

}  // namespace TAVO::importer

#endif
