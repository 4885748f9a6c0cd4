// The second half of the search: from the last position to the first.
#include "engine/best_path_search.hpp"

#include "base/bytes.hpp"
#include "dic/conn_table.hpp"
#include "engine/special_records.hpp"

#include <algorithm>
#include <cstring>

namespace TAVO {
namespace {

// A word in 64 bits: its connection sum above baseSum_, its word-cost sum, its number
// among the words that start where it does. Adding a cost to the upper part and
// taking the smallest is all that a choice has to do.
constexpr unsigned kSumShift = 48;
constexpr unsigned kWordShift = 16;
constexpr std::uint64_t kNumberMask = 0xFFFF;
/// A word that leads nowhere; a cost more still fits.
constexpr std::uint32_t kDeadSum = 0xFF00;
constexpr std::uint64_t kDeadEnd = std::uint64_t{kDeadSum} << kSumShift;
/// Sums from here on are too large to be packed.
constexpr std::uint32_t kMostSum = 0xF000;
/// A least sum above the base sum by this much makes the search take another base.
constexpr std::uint32_t kRebase = 0x4000;

constexpr std::uint32_t sumOf(std::uint64_t packed) noexcept { return static_cast<std::uint32_t>(packed >> kSumShift); }

}  // namespace

/// Finds the best path, which may be none.
BestPathSearch::Choice BestPathSearch::choose(Extent extent) {
    startChoice();
    for (std::size_t p = length_; p-- > 0;) {
        Place const& place = places_[p];
        if (place.width == 0) {
            boundInside(p);
            continue;
        }
        if (place.firstWord < origin_) slide(p);
        if (!chooseAt(p)) return Choice::kOmitted;
        if (tooFar_) return Choice::kTooFar;
        if (extent == Extent::kNeeded && !unknownsAreNeedless(p)) return Choice::kOmitted;
        if (bounds_[p].low >= rebaseAt_ && bounds_[p].low < kMaxSum) rebase(p);
    }
    std::uint64_t const best =
        chooseSlowly(followersOf(places_[0]), table_.costs(table_.id(ConnTable::kBeginId).rowOffset));
    path_.clear();
    if (best < kDeadEnd) readPath(static_cast<std::uint32_t>(best & kNumberMask));
    return tooFar_ ? Choice::kTooFar : Choice::kMade;
}

/// Lays out the end of the text, which stands there like a word.
void BestPathSearch::startChoice() {
    constexpr std::size_t kWords = 8192;
    std::uint32_t const words = endOf(places_[length_]);
    if (packed_.size() < kWords) packed_.resizeForOverwrite(kWords);
    origin_ = words > packed_.size() ? words - static_cast<std::uint32_t>(packed_.size()) : 0;
    std::uint32_t const slot = wordCount_ - origin_;
    packed_[slot] = 0;
    packed_[slot + 1] = kDeadEnd | 1;
    next_.resizeForOverwrite(wordCount_);
    bounds_.resizeForOverwrite(length_ + 1);
    bounds_[length_] = {0, 0};
    baseSum_ = 0;
    rebaseAt_ = kRebase;
    tooFar_ = tooMany_;
}

/// Makes room for the words at @p p; those that no word before reaches are forgotten.
[[gnu::cold]] void BestPathSearch::slide(std::size_t p) {
    std::uint32_t const kept = endOf(places_[p]);
    std::uint32_t const keptEnd = endOf(places_[std::min(length_, p + longest_)]);
    std::size_t const needed = std::size_t{keptEnd} - places_[p].firstWord;
    if (packed_.size() < 2 * needed) packed_.resizeForOverwrite(2 * needed);
    std::uint32_t const origin = keptEnd > packed_.size() ? keptEnd - static_cast<std::uint32_t>(packed_.size()) : 0;
    std::size_t const count = keptEnd - kept;
    std::memmove(&packed_[kept - origin], &packed_[kept - origin_], count * sizeof(packed_[0]));
    origin_ = origin;
}

/// Counts sums from the least one that words at @p p and before can reach.
[[gnu::cold]] void BestPathSearch::rebase(std::size_t p) {
    std::size_t const end = std::min(length_, p + longest_);
    std::uint32_t least = kMaxSum;
    for (std::size_t at = p; at <= end; ++at) least = std::min(least, bounds_[at].low);
    if (std::uint32_t const more = least - baseSum_; least > baseSum_ && least != kMaxSum) {
        for (std::uint32_t slot = places_[p].firstWord - origin_; slot != endOf(places_[end]) - origin_; ++slot)
            if (packed_[slot] < kDeadEnd) packed_[slot] -= std::uint64_t{more} << kSumShift;
        baseSum_ = least;
    }
    rebaseAt_ = std::min(bounds_[p].low, kMaxSum - kRebase) + kRebase / 2;
}

inline BestPathSearch::Followers BestPathSearch::followersOf(Place const& place) const noexcept {
    BundleCell const* const words = cache_.cells() + place.words;
    return {packed_.begin() + (place.firstWord - origin_), words, place.wordCount};
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

/// Gives each word that starts at @p p its best continuation. False when one ends inside a character.
[[gnu::always_inline]] inline bool BestPathSearch::chooseAt(std::size_t p) {
    Place const& place = places_[p];
    std::uint64_t* const packed = packed_.begin() + (place.firstWord - origin_);
    Next* const next = next_.begin() + place.firstWord;
    unsigned char const* const matrix = table_.costs(0);
    BundleCell const* const words = cache_.cells() + place.words;
    std::size_t number = 0;
    Bound bound{kMaxSum, kMaxSum};
    lowBounded_ = kMaxSum;
    for (BundleCell const* cell = words - place.arcCount; cell != words; ++cell) {
        BundleCell::Arc const arc = cell->arc;
        Place const& end = places_[p + arc.length()];
        if (end.width == 0) return false;
        Followers const followers = followersOf(end);
        std::uint64_t least = kDeadEnd;
        for (std::size_t const after = number + arc.count; number != after; ++number) {
            BundleCell::Word const word = words[number].word;
            unsigned char const* const costs = matrix + word.rowOffset;
            std::uint64_t best = followers.best(costs);
            std::uint32_t cost = costs[followers.words[best & kNumberMask].word.column];
            // Rarely a forbidden connection at 255 beats all others.
            if (best >= std::uint64_t{kMostSum} << kSumShift || cost == ConnTable::kForbidden) [[unlikely]] {
                best = chooseSlowly(followers, costs);
                cost = costs[followers.words[best & kNumberMask].word.column];
            }
            next[number] = {static_cast<std::uint16_t>(best), static_cast<std::uint16_t>(cost)};
            std::uint64_t const chosen = ((best & ~kNumberMask) + (std::uint64_t{word.cost} << kWordShift)) | number;
            packed[number] = chosen;
            least = std::min(least, chosen);
        }
        if (arc.isUnknown() && p + arc.length() == length_) [[unlikely]]
            least = endWithUnknown(place, number - arc.count, arc);
        if (least >= kDeadEnd) continue;
        std::uint32_t const sum = baseSum_ + sumOf(least);
        bound.low = std::min(bound.low, sum);
        bound.lowBefore = std::min(bound.lowBefore, sum + arc.leastColumn);
        if (arc.allBounded()) lowBounded_ = std::min(lowBounded_, sum);
    }
    if (number != place.wordCount) packed[number] = kDeadEnd | number;
    bounds_[p] = bound;
    return true;
}

/// Lets the text end behind the unknown words of @p arc, which connect to its end at 255.
[[gnu::cold]] std::uint64_t BestPathSearch::endWithUnknown(Place const& place, std::size_t first, BundleCell::Arc arc) {
    std::uint64_t const packed =
        (std::uint64_t{ConnTable::kForbidden} << kSumShift) + (std::uint64_t{kUnknownWordCost} << kWordShift);
    for (std::size_t number = first; number != first + arc.count; ++number) {
        next_[place.firstWord + number] = {0, ConnTable::kForbidden};
        packed_[place.firstWord - origin_ + number] = packed | number;
    }
    return packed | first;
}

/// The best of the followers that may follow; kDeadEnd when none may.
[[gnu::cold]] std::uint64_t BestPathSearch::chooseSlowly(Followers const& followers, unsigned char const* costs) {
    std::uint64_t best = kDeadEnd;
    for (std::size_t i = 0; i < followers.count; ++i) {
        std::uint8_t const cost = costs[followers.words[i].word.column];
        if (cost != ConnTable::kForbidden && followers.packed[i] < kDeadEnd)
            best = std::min(best, followers.packed[i] + (std::uint64_t{cost} << kSumShift));
    }
    tooFar_ |= best < kDeadEnd && sumOf(best) >= kMostSum;
    return best;
}

/// Reads the path that starts with word number @p number of the text.
void BestPathSearch::readPath(std::uint32_t number) {
    pathCells_.clear();
    for (std::size_t p = 0; p != length_;) {
        Place const& place = places_[p];
        Next const next = next_[place.firstWord + number];
        BundleCell const* const words = cache_.cells() + place.words;
        BundleCell const* cell = words - place.arcCount;
        for (std::uint32_t rest = number; rest >= cell->arc.count; ++cell) rest -= cell->arc.count;
        BundleCell::Word const word = words[number].word;
        pathCells_.push(place.words + number);
        cache_.prefetchRecord(place.words + number);
        path_.push({nullptr, pathKey(next.cost, word.cost), cell->arc.length(), word.column});
        p += cell->arc.length();
        number = next.number;
    }
    PathKey sum = 0;
    for (std::size_t i = path_.size(); i-- > 0;) {
        path_[i].record = cache_.record(pathCells_[i]);
        __builtin_prefetch(path_[i].record);  // the morpheme's values come from there
        sum += path_[i].key;
        path_[i].key = sum;
    }
}

// What was left out. A word that starts at the second byte of a character follows
// only the one-byte unknown word before it, since no word ends there. Unknown
// words cost the same everywhere, before and behind, so a path through one is
// told to be worse than another from the least sums behind it.

/// Bounds the words that start at the second byte @p p of a character: every
/// connection costs 0 or more, and before a word no less than its column's minimum.
inline void BestPathSearch::boundInside(std::size_t p) {
    std::uint32_t const unknown = table_.unknownCost();
    std::uint32_t low = bounds_[p + 1].low + unknown;
    std::uint32_t lowBefore = low + unknown;
    auto const word = [&](std::size_t end, std::uint32_t cost) {
        low = std::min(low, bounds_[end].lowBefore);
        lowBefore = std::min(lowBefore, bounds_[end].lowBefore + cost);
    };
    Place const& place = places_[p];
    if (place.single != SearchTable::kNoWord) word(p + 1, place.single);
    if (place.pair != SearchTable::kNoWord) word(p + 2, place.pair);
    if (text_[p] >= 128 && p + 2 <= length_) {
        low = std::min(low, bounds_[p + 2].low + unknown);
        lowBefore = std::min(lowBefore, bounds_[p + 2].low + 2 * unknown);
    }
    for (; !overhangs_.empty() && overhangs_.end()[-1].place == p; overhangs_.truncate(overhangs_.size() - 1))
        word(overhangs_.end()[-1].end, 0);
    bounds_[p] = {std::min(low, kMaxSum), std::min(lowBefore, kMaxSum)};
}

/// True when no word before @p p would choose an unknown word that was left out.
inline bool BestPathSearch::unknownsAreNeedless(std::size_t p) {
    Place const& place = places_[p];
    Bound& bound = bounds_[p];
    std::uint32_t const cost = table_.unknownCost();
    // What an unknown word at p has at least; at the end of the text it has more.
    std::uint32_t least = bounds_[p + 1].low;
    bool const twoMore = place.width == 1 && text_[p] >= 128 && p + 2 <= length_;
    if (twoMore) least = std::min(least, bounds_[p + 2].low);
    least = std::min(least, kMaxSum) + cost;
    bound.low = std::min(bound.low, least);
    bound.lowBefore = std::min(bound.lowBefore, least + cost);
    Followers const words = followersOf(place);
    if (place.unknown) {
        if (place.width == 1) return !twoMore;
        // The one-byte word has the column of the two-byte word, which wins every
        // tie since it is made first.
        std::uint64_t const two = words.packed[0];
        return two < kDeadEnd && pathKey(baseSum_ + sumOf(two), static_cast<std::uint32_t>(two >> kWordShift)) <=
                                     pathKey(least, kUnknownWordCost);
    }
    // Any word before p gets at most `most` from some word that it may stand before.
    std::uint64_t const enough = std::uint64_t{least} + cost;
    if (lowBounded_ < kMaxSum && std::uint64_t{lowBounded_} + 254 < enough) return true;
    std::uint64_t most = ~std::uint64_t{0};
    for (std::size_t number = 0; number != words.count; ++number) {
        BundleCell::Word const word = words.words[number].word;
        if (!word.bounded || words.packed[number] >= kDeadEnd) continue;
        std::uint64_t const sum = std::uint64_t{baseSum_} + sumOf(words.packed[number]);
        most = std::min(most, sum + table_.columnMaximum(word.column));
    }
    return most < enough;
}

}  // namespace TAVO
