// The search for best paths over the compiled indexes.
#ifndef TAVO_ENGINE_FAST_FAST_SEARCH_HPP
#define TAVO_ENGINE_FAST_FAST_SEARCH_HPP

#include "engine/fast/exact_pieces.hpp"
#include "engine/fast/path_ties.hpp"
#include "engine/fast/relaxation.hpp"
#include "engine/fast/search_state.hpp"
#include "engine/fast/unknown_check.hpp"
#include "engine/path_store.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace TAVO {

class ConnTable;
class DicSet;

/// Finds the paths that the exact search would choose. Its stages, each over a whole block of characters:
///
/// 1. characters and candidate lists (TextPlaces),
/// 2. candidates in flat arrays (CandidateLayout),
/// 3. from the last word to the first, the best next candidate (Relaxation, PathTies),
/// 4. the proof that no unknown word that was left out is on a best path (UnknownCheck); where it fails, the exact
///    search goes through a piece of the sentence (ExactPieces),
/// 5. the path's words (PathStore).
///
/// Short sentences share a block. A long one has several, from the last to the first, and keeps of each what the path
/// needs: about 16 bytes a character.
class FastSearch {
public:
    /// How texts are cut; small numbers let tests meet every border.
    struct Options {
        static constexpr std::size_t kMostChunkPlaces = 96;

        std::size_t blockPlaces = 1024;              ///< of a block, about; 2 or more
        std::size_t chunkPlaces = kMostChunkPlaces;  ///< relaxed and checked at a time: sums have 16 bits
        RelaxKernel const* kernel = nullptr;         ///< null: relaxKernel()
    };

    FastSearch(PathStore& paths, SearchState& state, Options const& options);

    /// Searches texts, none of them empty, with the indexes of the state, which are usable. results[i] is the best path
    /// of texts[i]; one that does not exist where the exact search is needed for all of it. Texts and dictionaries
    /// outlive the paths. Throws bad_alloc.
    void search(std::span<std::string_view const> texts, ConnTable const& table, DicSet const& dics,
                std::span<LazyPath> results);

private:
    /// A text and the places of its first character and of its end.
    struct Sentence {
        std::string_view text;
        std::size_t first, end;
    };
    enum class Outcome { kFound, kGivenUp, kEarlierBegin };

    static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
    static constexpr std::size_t kMostBlockPlaces = 16384;

    bool isLong(std::string_view text) const noexcept { return text.size() > 4 * options_.blockPlaces; }
    void findCandidates();
    bool layOut(std::size_t from, std::size_t to, CandidateLayout::Head const& head);
    LazyPath searchShort(Sentence const& sentence);
    LazyPath searchLong(std::string_view text);
    void beginSentence(Sentence const& sentence);
    Outcome relaxPlaces(Sentence const& sentence, std::size_t from, std::size_t to);
    std::size_t firstFailing(std::size_t from, std::size_t to, std::size_t last) const;
    std::span<Look const> looksIn(std::size_t from, std::size_t to) const;
    bool rebase(std::size_t from);
    LazyPath writePath(Sentence const& sentence);
    PlacedCandidate writePlainWords(PlacedCandidate at);

    PathStore& paths_;
    SearchState& state_;
    Options options_;
    PathTies ties_;
    UnknownCheck check_;
    ExactPieces pieces_;
    ConnTable const* table_ = nullptr;
    DicSet const* dics_ = nullptr;
    Relaxation block_{};
    std::size_t known_ = 0;  // sums of the sentence at work hold up to this place
    std::vector<Sentence> batch_;
    CandidateLayout::Head head_;
};

}  // namespace TAVO

#endif
