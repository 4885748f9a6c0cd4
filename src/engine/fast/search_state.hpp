// What the stages of the fast search share about the sentences at work.
#ifndef TAVO_ENGINE_FAST_SEARCH_STATE_HPP
#define TAVO_ENGINE_FAST_SEARCH_STATE_HPP

#include "engine/fast/candidate_layout.hpp"
#include "engine/fast/search_indexes.hpp"
#include "engine/fast/text_places.hpp"
#include "engine/lattice_node.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace TAVO {

/// The places [begin, end) of a sentence that the exact search went through.
struct ExactPiece {
    std::size_t begin, end;
    /// By candidate at begin: the node of its word, null for none; at the beginning of a sentence one alone, the first
    /// node of the best path.
    std::vector<LatticeNode const*> starts;
    /// What an unknown word that ends at begin chooses is among them.
    bool mayFollowUnknown = false;
};

/// A candidate at a place.
struct PlacedCandidate {
    std::size_t place;
    unsigned number;

    bool operator==(PlacedCandidate const&) const = default;
};

struct SearchState {
    SearchIndexes indexes;
    TextPlaces text;
    ChosenPlaces chosen;
    CandidateLayout layout;
    std::vector<ExactPiece> pieces;  ///< of the sentence at work, from the last to the first

    Candidate candidate(PlacedCandidate at) const noexcept {
        return CandidateLayout::candidate(text, indexes, chosen, at.place, at.number);
    }
    /// True when all words at @p place are laid out that may stand where the classes @p opened are open.
    bool hasAllWords(std::size_t place, unsigned opened) const noexcept {
        for (std::size_t i = 0; i != indexes.count(); ++i) {
            CandidateList const list = indexes.dic(i).list(text.list(i, place));
            if (list.usable(opened | chosen.open[place]) != list.usable(chosen.open[place])) return false;
        }
        return true;
    }
    /// What @p at, which is @p candidate, chose.
    PlacedCandidate following(PlacedCandidate at, Candidate const& candidate) const noexcept {
        return {at.place + candidate.length, chosen.next[chosen.firstWord[at.place] + at.number]};
    }
    /// The piece that begins at @p place; null for none.
    ExactPiece const* pieceAt(std::size_t place) const noexcept {
        auto const found = std::lower_bound(pieces.begin(), pieces.end(), place,
                                            [](ExactPiece const& piece, std::size_t at) { return piece.begin > at; });
        return found != pieces.end() && found->begin == place ? &*found : nullptr;
    }
    /// The step from @p at to the next candidate that is known by its number: over a word, or over an exact piece.
    /// Adds the word costs on the way to @p wordSum.
    PlacedCandidate step(PlacedCandidate at, std::int64_t& wordSum) const noexcept;
};

}  // namespace TAVO

#endif
