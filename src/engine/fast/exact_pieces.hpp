// Pieces of a sentence that the exact search goes through for the fast one.
#ifndef TAVO_ENGINE_FAST_EXACT_PIECES_HPP
#define TAVO_ENGINE_FAST_EXACT_PIECES_HPP

#include "engine/exact/exact_search.hpp"
#include "engine/fast/path_ties.hpp"
#include "engine/fast/search_state.hpp"
#include "engine/fast/unknown_check.hpp"

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace TAVO {

class ConnTable;
class DicSet;

/// A piece is as short as it may be: it begins and ends at seams, places that no word reaches over, at which what the
/// exact search leaves to the fast one is proved to be all that counts.
class ExactPieces {
public:
    ExactPieces(SearchState& state, PathTies& ties, UnknownCheck const& check)
        : state_(state), ties_(ties), check_(check) {}

    /// The sentence at work, the places of its first character and of its end.
    void begin(std::string_view text, std::size_t first, std::size_t end, ConnTable const& table, DicSet const& dics);

    enum class Result {
        kPiece,      ///< the sums at the piece's beginning are set
        kWhole,      ///< the piece begins the sentence: the path is complete
        kNoSeam,     ///< no seam in the block before the place
        kImpossible  ///< no path leads through the sentence, or the exact search of all of it takes less
    };
    /// Searches the piece around place @p at, of a block whose sums are known from there to @p last.
    Result search(std::size_t at, std::size_t last);
    /// The piece made last.
    ExactPiece const& piece() const noexcept { return state_.pieces.back(); }

private:
    static constexpr unsigned kMostAttempts = 8;  // a longer way is the exact search's
    static constexpr std::uint32_t kPieceNodes = 64;
    static constexpr std::size_t kMostSearches = 2, kMostBytesOfShort = 4096;

    bool mayTake(std::size_t bytes) noexcept;
    void forget();
    bool mayEnd(std::size_t place, std::size_t last) const;
    bool isSeam(std::size_t place) const noexcept;
    bool crosses(std::size_t from, std::size_t place) const noexcept;
    bool isComplete(std::size_t place) const;
    unsigned openedFromInside(std::size_t place) const;
    bool build(std::size_t begin, std::size_t end);
    bool setSums(std::size_t begin);
    LatticeNode const* nodeOf(std::size_t place, unsigned number) const;
    std::size_t offset(std::size_t place) const noexcept {
        return place == end_ ? text_.size() : state_.text.offset(place);
    }

    SearchState& state_;
    PathTies& ties_;
    UnknownCheck const& check_;
    std::string_view text_;
    std::size_t first_ = 0, end_ = 0;
    std::size_t searchedBytes_ = 0;  // of this sentence
    ConnTable const* table_ = nullptr;
    DicSet const* dics_ = nullptr;
    LatticeConstraints const none_;
    std::vector<std::unique_ptr<NodePool>> pools_;  // of the sentence's pieces, one each
    std::unique_ptr<ExactSearch> exact_;
};

}  // namespace TAVO

#endif
