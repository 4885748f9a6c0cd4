// Small steps of the choice of continuations, for each of its ways to search.
#ifndef TAVO_ENGINE_BEST_PATH_STEPS_HPP
#define TAVO_ENGINE_BEST_PATH_STEPS_HPP

#include "dic/conn_table.hpp"
#include "engine/best_path_search.hpp"
#include "engine/packed_sum.hpp"

#include <algorithm>

namespace TAVO {

inline BestPathSearch::Followers BestPathSearch::followersOf(Place const& place) const noexcept {
    BundleCell const* const words = cache_.cells() + place.words;
    return {sums() + (place.firstWord - origin_), words, place.wordCount};
}

/// Bound::sure of words with a sum of @p low at least.
inline std::uint64_t BestPathSearch::sureBelow(std::uint32_t low) const noexcept {
    std::uint32_t const above = std::max(low, baseSum_) - baseSum_;
    return std::uint64_t{std::min(above + ConnTable::kForbidden, kMostSum)} << kSumShift;
}

/// The best of them for the row of @p costs.
inline std::uint64_t BestPathSearch::Followers::best(unsigned char const* costs) const noexcept {
    auto const sum = [&](std::size_t i) {
        return packed[i] + (std::uint64_t{costs[words[i].word.column]} << kSumShift);
    };
    std::uint64_t even = sum(0);
    std::uint64_t odd = sum(1);
    auto const add = [&](std::size_t i) {
        even = std::min(even, sum(i));
        odd = std::min(odd, sum(i + 1));
    };
    // Most places have few words, and the processor foretells a branch for each
    // number of them better than the end of one loop.
    if (count == 2) return std::min(even, odd);
    add(2);
    if (count == 4) return std::min(even, odd);
    add(4);
    if (count == 6) return std::min(even, odd);
    add(6);
    for (std::size_t i = 8; i != count; i += 2) add(i);
    return std::min(even, odd);
}

// What was left out. A word that starts at the second byte of a character follows
// only the one-byte unknown word before it, since no word ends there. Unknown
// words cost the same everywhere, before and behind, so a path through one is
// told to be worse than another from the least sums behind it.

/// Bounds the words that start at the second byte @p p of a character: every
/// connection costs 0 or more, and before a word no less than its column's minimum. A word of one
/// byte counts even where there is none, and words that end here are bounded as those that start, which makes the
/// bound a little lower.
inline void BestPathSearch::boundInside(std::size_t p) {
    std::uint32_t const unknown = table_.unknownCost();
    Place const& place = places_[p];
    Bound const* const behind = bounds_.begin() + p + 1;
    // Each of the two may be in the way; a branch on that would often be foretold wrong.
    std::uint32_t const noUnknown = (text_[p] / 128U - 1) & kMaxSum;  // 0 from 128 on
    std::uint32_t const noPair = place.pair() ? 0 : kMaxSum;
    std::uint32_t const behindTwo = std::max(behind[1].low, noUnknown);  // an unknown word of two bytes
    std::uint32_t low = std::min(std::min(behind[0].low, behindTwo) + unknown, behind[0].lowBefore);
    low = std::min(low, std::max(behind[1].lowBefore, noPair));
    if (place.unknown()) [[unlikely]] {
        for (; !overhangs_.empty() && overhangs_.end()[-1].place == p; overhangs_.truncate(overhangs_.size() - 1))
            low = std::min(low, bounds_[overhangs_.end()[-1].end].lowBefore);
    }
    low = std::min(low, kMaxSum);
    bounds_[p] = {low, low};
}

/// What an unknown word at @p p has at least where it was left out; at the end of the text it has more.
inline std::uint32_t BestPathSearch::lowUnknown(std::size_t p, Extent extent) const noexcept {
    if (extent == Extent::kAll) return kMaxSum;
    std::uint32_t const none = text_[p] >= 128 ? 0 : kMaxSum;  // else it may be two bytes long
    return std::min(bounds_[p + 1].low, std::max(bounds_[p + 2].low, none)) + table_.unknownCost();
}

/// No word before @p p chooses an unknown word that was left out when a bounded one has a lower sum than this: before
/// that no word pays more than 254, before the unknown one no less than its cost.
inline std::uint32_t BestPathSearch::needlessFrom(Place const& place, std::uint32_t lowUnknown) const noexcept {
    std::uint32_t const most = lowUnknown + table_.unknownCost();
    constexpr std::uint32_t kMostPaid = ConnTable::kForbidden - 1;
    return place.unknown() ? 0 : std::max(most, kMostPaid) - kMostPaid;
}

/// Lets the numbers that the words of @p place leave over lead nowhere.
inline void BestPathSearch::fillNumbers(Place const& place) noexcept {
    std::uint64_t* const packed = sums() + (place.firstWord - origin_);
    for (std::uint32_t number = place.wordCount; number < numbersOf(place.wordCount); ++number)
        packed[number] = kDeadEnd | number;
}

/// Goes from @p p, where words may start inside a character, to where the character or the run starts, and makes room
/// for the words there.
[[gnu::always_inline]] inline std::size_t BestPathSearch::enterPlace(std::size_t p) {
    if (places_[p].width() == 0) {
        std::size_t const run = places_[p].run;
        if (run == 0) boundInside(p);
        p -= run == 0 ? 1 : run - 1;
    }
    if (places_[p].firstWord < origin_) slide(p);
    return p;
}

/// Notes the bound of the words at @p p, which is @p bound but for unknown words left out, of which @p lowUnknown
/// is told. False when one of these may be needed, which @p needless answers in advance.
[[gnu::always_inline]] inline bool BestPathSearch::setBound(std::size_t p, Bound bound, std::uint32_t lowUnknown,
                                                            bool needless) {
    bound.low = std::min(bound.low, lowUnknown);
    bound.lowBefore = std::min(bound.lowBefore, lowUnknown + table_.unknownCost());
    bound.sure = sureBelow(bound.low);
    bounds_[p] = bound;
    if (!needless && !unknownsAreNeedless(p, lowUnknown)) return false;
    if (bound.low >= rebaseAt_) [[unlikely]]
        rebase(p);
    return true;
}

}  // namespace TAVO

#endif
