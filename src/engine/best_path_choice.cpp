// The second half of the search: from the last position to the first.
#include "engine/best_path_search.hpp"

#include "base/bytes.hpp"
#include "dic/conn_table.hpp"
#include "engine/best_path_steps.hpp"
#include "engine/packed_sum.hpp"
#include "engine/path_key.hpp"
#include "engine/special_records.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace TAVO {
namespace {

/// Stands for the least sum of bounded words where there are none; a cost more still fits.
constexpr std::uint32_t kNoBounded = 0xFFFFFF00;

}  // namespace

/// Starts at the end of the block.
void BestPathSearch::startChoice() {
    constexpr std::size_t kLines = 1024;
    if (packed_.size() < kLines) packed_.resizeForOverwrite(kLines);
    next_.resizeForOverwrite(wordCount_);
    bounds_.resizeForOverwrite(length_ + end_.bounds.size());
    bounds_[length_] = end_.bounds[0];
    bounds_[length_ + 1] = end_.bounds[1];
    bases_.clear();
    baseSum_ = end_.baseSum;
    rebaseAt_ = end_.rebaseAt;
    tooFar_ = false;
    segmentEnd_ = length_;
    behind_.packed.clear();
    for (std::uint64_t const packed : end_.packed) behind_.packed.push(packed);
}

/// Makes room for the words at @p p; those that no word before reaches are forgotten.
[[gnu::cold]] void BestPathSearch::slide(std::size_t p) {
    std::uint32_t const kept = endOf(places_[p]);
    std::uint32_t const keptEnd = endOf(places_[std::min(segmentEnd_, p + longest_)]);
    std::size_t const needed = std::size_t{keptEnd} - places_[p].firstWord;
    if (room() < 2 * needed) packed_.resizeForOverwrite((2 * needed + kLineWords - 1) / kLineWords);
    std::uint32_t const origin = keptEnd > room() ? keptEnd - room() : 0;
    std::size_t const count = keptEnd - kept;
    std::memmove(sums() + (kept - origin), sums() + (kept - origin_), count * sizeof(std::uint64_t));
    origin_ = origin;
}

/// Counts sums from the least one that words at @p p and before can reach.
[[gnu::cold]] void BestPathSearch::rebase(std::size_t p) {
    if (bounds_[p].low == kMaxSum) return;
    std::size_t const end = std::min(segmentEnd_, p + longest_);
    std::uint32_t least = kMaxSum;
    for (std::size_t at = p; at <= end; ++at) least = std::min(least, bounds_[at].low);
    if (std::uint32_t const more = least - baseSum_; least > baseSum_ && least != kMaxSum) {
        for (std::uint32_t slot = places_[p].firstWord - origin_; slot != endOf(places_[end]) - origin_; ++slot)
            if (sums()[slot] < kDeadEnd) sums()[slot] -= std::uint64_t{more} << kSumShift;
        baseSum_ = least;
        for (std::size_t at = p; at <= end; ++at) bounds_[at].sure = sureBelow(bounds_[at].low);
        bases_.push({static_cast<std::uint32_t>(p), least});
    }
    rebaseAt_ = std::min(bounds_[p].low, kMaxSum - kRebase) + kRebase / 2;
}

/// True when no word before @p p would choose an unknown word that was left out. Where all are, they
/// have at least @p least.
[[gnu::noinline]] bool BestPathSearch::unknownsAreNeedless(std::size_t p, std::uint32_t least) {
    Place const& place = places_[p];
    Followers const words = followersOf(place);
    if (place.unknown()) {
        if (place.width() == 1) return text_[p] < 128 || p + 2 > length_;
        // The one-byte word has the column of the two-byte word, which wins every
        // tie since it is made first.
        std::uint64_t const two = words.packed[0];
        return two < kDeadEnd && pathKey(baseSum_ + sumOf(two), packedWordSum(two)) <=
                                     pathKey(bounds_[p + 1].low + table_.unknownCost(), kUnknownWordCost);
    }
    // The one of two bytes is told exactly: before an unknown word, such as a CR at the end of a text, it costs what
    // every word does, and only its word cost is larger.
    std::uint32_t const unknown = table_.unknownCost();
    bool const exact = place.width() == 2 && p + 2 < rest_;
    if (exact) least = bounds_[p + 1].low + unknown;
    std::uint64_t const two = exact ? chooseSlowly(p + 2, table_.id(ConnTable::kUnknownId).rowOffset) : kDeadEnd;
    std::uint64_t const twoKey = pathKey(baseSum_ + sumOf(two) + unknown, packedWordSum(two) + kUnknownWordCost);
    bool beatsTwo = two >= kDeadEnd;
    // Any word before p gets at most `most` from some word that it may stand before.
    std::uint64_t most = ~std::uint64_t{0};
    for (std::size_t number = 0; number != words.count; ++number) {
        BundleCell::Word const word = words.words[number].word;
        std::uint64_t const packed = words.packed[number];
        if (!word.bounded() || packed >= kDeadEnd) continue;
        std::uint32_t const sum = baseSum_ + sumOf(packed) + table_.columnMaximum(word.column);
        most = std::min(most, std::uint64_t{sum});
        beatsTwo |= pathKey(sum, packedWordSum(packed)) < twoKey;
    }
    return beatsTwo && most < std::uint64_t{least} + unknown;
}

/// Gives each word that starts at @p p its best continuation. False when one ends inside a character, or
/// when a word left out may be needed. @p kAtEnd tells whether an unknown word may reach the end of the text.
template <bool kAtEnd>
[[gnu::always_inline]] inline bool BestPathSearch::chooseAt(std::size_t p, Extent extent) {
    Place const& place = places_[p];
    std::uint64_t* const packed = sums() + (place.firstWord - origin_);
    Next* const next = next_.begin() + place.firstWord;
    unsigned char const* const matrix = table_.costs(0);
    BundleCell const* const words = cache_.cells() + place.words;
    std::uint32_t const base = baseSum_;
    std::size_t number = 0;
    packed[place.wordCount - 1] = kDeadEnd | (place.wordCount - 1U);  // stays where it only evens the number of words
    std::uint64_t lowest = kDeadEnd;
    std::uint64_t lowestBounded = kDeadEnd;
    for (BundleCell const* cell = words - place.arcCount; cell != words; ++cell) {
        BundleCell::Arc const& arc = cell->arc;
        Place const& end = places_[p + arc.length()];
        if (end.width() == 0) return false;
        Followers const followers = followersOf(end);
        std::uint64_t const sure = bounds_[p + arc.length()].sure;
        std::uint64_t least = kDeadEnd;
        for (std::size_t const after = number + arc.count; number != after; ++number) {
            BundleCell::Word const word = words[number].word;
            std::uint64_t best = followers.best(matrix + word.rowOffset);
            if (best >= sure) [[unlikely]]
                best = chooseSlowly(p + cell->arc.length(), word.rowOffset);
            next[number] = static_cast<Next>(std::rotl(best, 64 - static_cast<int>(kSumShift)));
            std::uint64_t const chosen = (best & ~kNumberMask) + (std::uint64_t{word.cost} << kWordShift | number);
            packed[number] = chosen;
            least = std::min(least, chosen);
        }
        if (kAtEnd && arc.isUnknown() && p + arc.length() == rest_)
            least = endWithUnknown(place, number - arc.count, arc);
        lowest = std::min(lowest, least);
        if (arc.allBounded())
            lowestBounded = std::min(lowestBounded, least);
        else if (arc.firstBounded())
            lowestBounded = std::min(lowestBounded, packed[number - arc.count]);
    }
    Bound bound{kMaxSum, kMaxSum};
    if (lowest < kDeadEnd) bound = {base + sumOf(lowest), base + sumOf(lowest) + place.leastColumn};
    std::uint32_t const lowBounded = lowestBounded < kDeadEnd ? base + sumOf(lowestBounded) : kNoBounded;
    std::uint32_t const unknown = lowUnknown(p, extent);
    return setBound(p, bound, unknown, extent == Extent::kAll || lowBounded < needlessFrom(place, unknown));
}

/// The same for any place.
[[gnu::noinline]] bool BestPathSearch::chooseAnywhere(std::size_t p, Extent extent) {
    bool const chosen = chooseAt<true>(p, extent);
    fillNumbers(places_[p]);
    return chosen;
}

/// Gives each word of the first character of a run its best continuation, which is the same for all
/// as they have one row. False when an unknown word may be needed.
bool BestPathSearch::chooseRun(std::size_t p) {
    Place const& place = places_[p];
    std::size_t const end = p + place.run;
    PlainRuns::Kind const& last = plain_.kindOf(text_[end - 1]);
    std::uint64_t best = followersOf(places_[end]).best(table_.costs(last.rowOffset));
    if (best >= bounds_[end].sure) [[unlikely]]
        best = chooseSlowly(end, last.rowOffset);
    if (best >= std::uint64_t{kMostSum} << kSumShift) return false;
    std::uint32_t const lastSum = baseSum_ + sumOf(best);
    if (lastSum + last.largest >= bounds_[end].low + 2U * table_.unknownCost()) return false;
    RunCosts inner;
    if (place.run > 1) {
        inner = std::bit_cast<RunCosts>(places_[end - 1].words);
        std::uint32_t const behind = lastSum + inner.conn - plain_.innerOf(text_[p], text_[p + 1]).cost;
        bounds_[p + 1] = {behind, behind};
        std::fill(bounds_.begin() + p + 2, bounds_.begin() + end, Bound{lastSum, lastSum});
    }
    std::uint64_t const all =
        (best & ~kNumberMask) + (std::uint64_t{inner.conn} << kSumShift) + (std::uint64_t{inner.word} << kWordShift);
    Next const next = static_cast<Next>(best & kNumberMask) << 16 | sumOf(all);
    BundleCell const* const words = cache_.cells() + place.words;
    BundleCell::Arc const arc = words[-1].arc;
    std::uint64_t* const packed = sums() + (place.firstWord - origin_);
    packed[place.wordCount - 1] = kDeadEnd | (place.wordCount - 1U);
    fillNumbers(place);
    for (std::uint32_t number = 0; number != arc.count; ++number) {
        packed[number] = all + (std::uint64_t{words[number].word.cost} << kWordShift | number);
        next_[place.firstWord + number] = next;
    }
    // Unknown words have more, here and inside the run.
    std::uint32_t const sum = lastSum + inner.conn;
    bounds_[p] = {sum, sum + place.leastColumn};
    bounds_[p].sure = sureBelow(bounds_[p].low);
    if (bounds_[p].low >= rebaseAt_) [[unlikely]]
        rebase(p);
    return true;
}

/// Lets the text end behind the unknown words of @p arc, which connect to its end at 255.
[[gnu::cold]] std::uint64_t BestPathSearch::endWithUnknown(Place const& place, std::size_t first, BundleCell::Arc arc) {
    std::uint64_t const packed =
        (std::uint64_t{ConnTable::kForbidden} << kSumShift) + (std::uint64_t{kUnknownWordCost} << kWordShift);
    for (std::size_t number = first; number != first + arc.count; ++number) {
        next_[place.firstWord + number] = ConnTable::kForbidden;
        sums()[place.firstWord - origin_ + number] = packed | number;
    }
    return packed | first;
}

/// The best of the words at @p p that may follow; kDeadEnd when none may.
[[gnu::cold, gnu::noinline]] std::uint64_t BestPathSearch::chooseSlowly(std::size_t p, std::uint32_t rowOffset) {
    Followers const followers = followersOf(places_[p]);
    unsigned char const* const costs = table_.costs(rowOffset);
    std::uint64_t best = kDeadEnd;
    for (std::size_t i = 0; i < followers.count; ++i) {
        std::uint8_t const cost = costs[followers.words[i].word.column];
        if (cost != ConnTable::kForbidden && followers.packed[i] < kDeadEnd)
            best = std::min(best, followers.packed[i] + (std::uint64_t{cost} << kSumShift));
    }
    tooFar_ |= best < kDeadEnd && sumOf(best) >= kMostSum;
    return best;
}

/// Gives each word of the segment from @p begin on its best continuation; its words have numbers below @p wordsEnd.
/// False when a word left out may be needed; behind_ then tells what was there before.
bool BestPathSearch::chooseSegment(std::size_t begin, std::uint32_t wordsEnd, Extent extent) {
    behind_.bases = bases_.size();
    behind_.baseSum = baseSum_;
    behind_.rebaseAt = rebaseAt_;
    behind_.tooFar = tooFar_;
    bounds_[segmentEnd_].sure = sureBelow(bounds_[segmentEnd_].low);
    // Meanwhile the words behind have the numbers that follow the segment's.
    std::uint32_t const number = std::exchange(places_[segmentEnd_].firstWord, wordsEnd);
    std::uint32_t const words = endOf(places_[segmentEnd_]);
    origin_ = words > room() ? words - room() : 0;
    std::uint64_t* slot = sums() + (wordsEnd - origin_);
    for (std::uint64_t const packed : behind_.packed) *slot++ = packed;
    fillNumbers(places_[segmentEnd_]);
    bool const chosen = chooseWords(begin, extent);
    places_[segmentEnd_].firstWord = number;
    return chosen;
}

/// Gives each word from segmentEnd_ down to @p begin its best continuation. False when a word left out may be needed.
bool BestPathSearch::chooseWords(std::size_t begin, Extent extent) {
    if (parts_.wide) return chooseWordsWide(begin, extent);
    for (std::size_t p = segmentEnd_; p-- > begin;) {
        p = enterPlace(p);
        bool chosen = false;
        if (places_[p].run != 0) [[unlikely]]
            chosen = chooseRun(p);
        else if (isBeforeEnd(p))
            chosen = chooseAt<false>(p, extent);
        else
            chosen = chooseAnywhere(p, extent);
        if (!chosen) return false;
    }
    return true;
}

/// Searches all candidates of the segment from @p begin on. False when they are no segment of their own.
[[gnu::cold]] bool BestPathSearch::searchAgain(std::size_t begin) {
    while (!overhangs_.empty() && overhangs_.end()[-1].place >= begin) overhangs_.truncate(overhangs_.size() - 1);
    bases_.truncate(behind_.bases);
    baseSum_ = behind_.baseSum;
    rebaseAt_ = behind_.rebaseAt;
    tooFar_ = behind_.tooFar;
    std::uint8_t const reach = reach_[segmentEnd_];
    farthest_ = begin;
    nextSegment_ = length_;
    collectSegment(begin, segmentEnd_, Extent::kAll);
    if (tooMany_ || farthest_ > segmentEnd_ || reach_[segmentEnd_] != reach) return false;
    next_.resizeForOverwrite(wordCount_);
    return chooseSegment(begin, firstWord(), Extent::kAll);
}

/// Lets the segment before the one from @p begin on have the first words of this one behind it.
void BestPathSearch::endSegment(std::size_t begin) {
    Place const& place = places_[begin];
    std::uint64_t const* const packed = sums() + (place.firstWord - origin_);
    behind_.packed.resizeForOverwrite(place.wordCount);
    std::copy(packed, packed + place.wordCount, behind_.packed.begin());
    segmentEnd_ = begin;
}

/// Finds the best path, which may be none; of a block that other ones stand before, those from its first words.
BestPathSearch::Choice BestPathSearch::choose(Extent extent) {
    if (tooMany_) return Choice::kTooFar;
    if (farthest_ > length_) return Choice::kOmitted;
    startChoice();
    bool const whole = segments_.size() == 2;
    for (std::size_t number = segments_.size() - 1; number-- > 0;) {
        std::size_t const begin = segments_[number].place;
        if (!chooseSegment(begin, segments_[number + 1].firstWord, extent) && (whole || !searchAgain(begin)))
            return Choice::kOmitted;
        if (number != 0 || !startsText()) endSegment(begin);
    }
    if (!startsText()) return tooFar_ ? Choice::kTooFar : Choice::kMade;
    std::uint64_t const best = chooseSlowly(0, table_.id(ConnTable::kBeginId).rowOffset);
    if (tooFar_) return Choice::kTooFar;
    if (best >= kDeadEnd) return Choice::kNone;
    firstNumber_ = static_cast<std::uint32_t>(best & kNumberMask);
    pathWordSum_ = packedWordSum(best);
    return Choice::kMade;
}

}  // namespace TAVO
