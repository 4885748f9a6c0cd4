// The candidates of a block of places in flat arrays, ready for the relaxation.
#ifndef TAVO_ENGINE_FAST_CANDIDATE_LAYOUT_HPP
#define TAVO_ENGINE_FAST_CANDIDATE_LAYOUT_HPP

#include "base/raw_buffer.hpp"
#include "engine/fast/lanes.hpp"
#include "engine/fast/relaxation.hpp"
#include "engine/fast/search_indexes.hpp"
#include "engine/fast/text_places.hpp"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TAVO {

/// A candidate as the lists tell it.
struct Candidate {
    static constexpr std::uint8_t kUnknown = 0xFE;  ///< in place of a dictionary: the unknown word

    std::uint32_t list;   ///< number of its list
    std::uint8_t index;   ///< in its list
    std::uint8_t dic;     ///< number of the dictionary, or kUnknown
    std::uint8_t length;  ///< in places
    std::uint8_t cost;    ///< of the word
    std::uint16_t column;
    std::uint16_t rank;  ///< of two at one place that of the one made first is smaller
};

/// What is kept of every place of a sentence, whichever block it is in.
struct ChosenPlaces {
    RawBuffer<std::uint16_t> open;       ///< by place: the classes that are open there
    RawBuffer<std::uint32_t> firstWord;  ///< by place: of its words in next
    RawBuffer<std::uint8_t> next;        ///< by word: number, among the candidates where it ends, of the best next one

    void start(std::size_t places) {
        open.resizeForOverwrite(places);
        firstWord.resizeForOverwrite(places);
        next.clear();
    }
};

/// Two views of the candidates of a block:
/// - slots: those of one place stand together, a multiple of eight, so that whatever ends there reads whole vectors;
///   what rounds the number up has the first one's column and no sum.
/// - words: without gaps, for the one loop over all of them.
/// An end has two slots, the columns of a text's end, with the sums 0 and 255, and one word, with the row of its
/// beginning.
class CandidateLayout {
public:
    static constexpr std::uint16_t kNoSum = 0xFFFF;   ///< no path, or one that costs too much
    static constexpr std::size_t kMostSlots = 48000;  ///< so that those of a head have room as well
    static constexpr std::size_t kMostAtPlace = 256;

    /// What a block hands to the one before it in a sentence: the slots of the places that words may reach into.
    struct Head {
        std::vector<std::uint16_t> counts;  // by place
        std::vector<std::uint16_t> columns, sums;
    };

    /// Lays the places [@p begin, @p end) out, and behind them those of @p head. False when there are too many
    /// candidates for one block.
    bool lay(TextPlaces const& text, SearchIndexes const& indexes, ChosenPlaces& chosen, std::size_t begin,
             std::size_t end, Head const& head);
    /// Of the places from @p begin to @p end.
    void copyHead(std::size_t begin, std::size_t end, Head& head) const;
    /// The candidate @p number of place @p p.
    static Candidate candidate(TextPlaces const& text, SearchIndexes const& indexes, ChosenPlaces const& chosen,
                               std::size_t p, unsigned number) noexcept;

    std::size_t begin() const noexcept { return begin_; }
    /// Words of the block before place @p p, which is in it or behind its last own place.
    std::size_t wordsBefore(std::size_t p, ChosenPlaces const& chosen) const noexcept {
        return p == laidEnd_ ? words_ : chosen.firstWord[p] - chosen.firstWord[begin_];
    }
    /// True for the block's own places.
    bool covers(std::size_t p) const noexcept { return p >= begin_ && p < laidEnd_; }
    unsigned firstSlot(std::size_t p) const noexcept { return firstSlot_[p - begin_]; }
    unsigned count(std::size_t p) const noexcept { return counts_[p - begin_]; }
    /// The least sum at @p p.
    unsigned leastSum(std::size_t p) const noexcept {
        std::uint16_t const* const sums = sums_.begin() + firstSlot(p);
        Lanes least = loadLanes(sums);
        for (unsigned i = kLanes; i < count(p); i += kLanes) least = minLanes(least, loadLanes(sums + i));
        return leastLane(least);
    }
    /// Places with words that the lists lack, from the last to the first.
    std::vector<std::uint32_t> const& beyond() const noexcept { return beyond_; }

    /// The arrays for the kernels; they write into @p chosen, too.
    Relaxation block(ConnIndex const& conn, ChosenPlaces& chosen, TieBreaker& ties) noexcept;

    // By slot.
    std::uint16_t* sums() noexcept { return sums_.begin(); }
    std::uint16_t const* sums() const noexcept { return sums_.begin(); }
    std::uint16_t const* columns() const noexcept { return columns_.begin(); }
    /// By word of the block: the place where it ends, counted from the block's.
    std::uint16_t const* ends() const noexcept { return ends_.begin(); }

private:
    class Pass;
    void reserve(std::size_t places, std::size_t slots);
    void appendHead(Head const& head, std::size_t places, std::size_t slot);

    std::size_t begin_ = 0, laidEnd_ = 0;
    std::size_t words_ = 0;
    RawBuffer<std::uint16_t> columns_, sums_;       // by slot
    RawBuffer<std::uint16_t> rows_, ends_, slots_;  // by word
    RawBuffer<std::uint16_t> firstSlot_, counts_;   // by place, and of some behind the last one at which nothing starts
    std::vector<std::uint32_t> beyond_;
};

}  // namespace TAVO

#endif
