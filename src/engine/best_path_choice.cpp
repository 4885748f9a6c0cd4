// The second half of the search: from the last position to the first.
#include "engine/best_path_search.hpp"

#include "base/bytes.hpp"
#include "dic/conn_table.hpp"
#include "engine/special_records.hpp"

#include <algorithm>

namespace TAVO {
namespace {

// A follower in 64 bits: connection sum above the base sum of its position,
// word-cost sum, number among the followers. Adding a cost to the upper part and
// taking the smallest is all that a search has to do, and what it finds, the word
// cost added, is kept for the word as it is (packed_).
constexpr unsigned kSumShift = 48;
constexpr unsigned kWordShift = 16;
constexpr std::uint64_t kNumberMask = 0xFFFF;
constexpr std::uint32_t kMostFollowers = 0xFFFF;
/// A follower that leads nowhere; a cost more still fits.
constexpr std::uint64_t kDeadEnd = std::uint64_t{0xFF00} << kSumShift;
/// Words above the best word of their position by this much are not packed.
constexpr std::uint32_t kMostPacked = 0xF000;
/// Continuations above the best follower by this much are looked for word by word.
constexpr std::uint32_t kMostExcess = 0x7000;
/// In packed_: the rest is an index in links_.
constexpr std::uint64_t kLinked = std::uint64_t{0xFFFF} << kSumShift;

/// The smallest of @p count packed followers, an even number, with their costs.
inline std::uint64_t bestPacked(std::uint64_t const* followers, std::uint16_t const* columns, std::size_t count,
                                unsigned char const* costs) noexcept {
    std::uint64_t even = ~std::uint64_t{0};
    std::uint64_t odd = even;
    for (std::size_t i = 0; i != count; i += 2) {
        even = std::min(even, followers[i] + (std::uint64_t{costs[columns[i]]} << kSumShift));
        odd = std::min(odd, followers[i + 1] + (std::uint64_t{costs[columns[i + 1]]} << kSumShift));
    }
    return std::min(even, odd);
}

}  // namespace

/// Finds the best path. False when a candidate that was left out could matter.
bool BestPathSearch::choose(Extent extent) {
    endText();
    auto endArc = static_cast<std::uint32_t>(arcs_.size());
    std::uint32_t endWord = wordCount_;
    for (std::size_t p = length_; p-- > 0;) {
        Place const& place = places_[p];
        if (place.width == 0) {
            boundInside(p);
            continue;
        }
        firstFollower_ = place.firstArc == endArc ? endWord : arcs_[place.firstArc].firstWord;
        followerCount_ = endWord - firstFollower_;
        if (extent == Extent::kNeeded && !unknownsAreNeedless(p, endArc)) return false;
        gather(p, endArc);
        if (p != 0) connect(p);
        endArc = place.firstArc;
        endWord = firstFollower_;
    }
    first_ = bestOfAll(places_[0].baseSum, table_.costs(table_.id(ConnTable::kBeginId).rowOffset)).next;
    return true;
}

/// Words at the end of the text connect to it; unknown ones to nothing, at 255.
void BestPathSearch::endText() {
    std::uint16_t const column = table_.id(ConnTable::kEndId).column;
    Place& end = places_[length_];
    end.low = 0;
    end.lowBefore = end.baseSum = 0;
    for (std::uint32_t index = end.ends; index != kNone; index = arcs_[index].nextEnding) {
        Arc const& arc = arcs_[index];
        bool const unknown = forms_.form(arc.form).head == kUnknownRecord.data();
        PathKey low = kNoPath;
        std::uint32_t high = ConnTable::kForbidden;
        for (std::uint32_t i = 0; i < arc.count; ++i) {
            FormWord const& form = forms_.words()[arc.words + i];
            std::uint8_t const cost = unknown ? ConnTable::kForbidden : table_.costs(form.rowOffset)[column];
            PathKey const key = pathKey(cost, form.cost);
            if (cost == ConnTable::kForbidden && !unknown) {
                high = setLink(arc.firstWord + i, {kNoPath, kNone});
            } else {
                packed_[arc.firstWord + i] = key << kWordShift;
                low = std::min(low, key);
            }
        }
        note(places_[length_ - arc.length], arc, low, high);
    }
}

/// Keeps what the words of @p arc mean for its start.
inline void BestPathSearch::note(Place& start, Arc const& arc, PathKey low, std::uint32_t high) noexcept {
    std::uint32_t const sum = std::min(connSumOf(low), kMaxSum);
    start.low = std::min(start.low, low);
    start.lowBefore = std::min(start.lowBefore, sum + arc.leastColumn);
    if (arc.allBounded) start.lowBounded = std::min(start.lowBounded, sum);
    start.high = std::max(start.high, high);
}

/// Lays out the words that start at @p p, those of the arcs up to @p endArc.
void BestPathSearch::gather(std::size_t p, std::uint32_t endArc) {
    Place& place = places_[p];
    std::uint32_t const baseSum = connSumOf(place.low);
    place.baseSum = baseSum;
    packs_ = followerCount_ <= kMostFollowers && place.high < kMaxSum && place.high - baseSum < kMostPacked;
    std::uint32_t const even = followerCount_ + (followerCount_ & 1);
    columns_.resizeForOverwrite(even);
    followers_.resizeForOverwrite(even);
    hasSparse_ = false;
    if (!packs_) return layOut(p, endArc);
    std::uint16_t* column = columns_.begin();
    std::uint64_t* follower = followers_.begin();
    std::uint64_t number = 0;
    for (Arc const *arc = arcs_.begin() + place.firstArc, *end = arcs_.begin() + endArc; arc != end; ++arc) {
        FormWord const* form = forms_.words() + arc->words;
        std::uint64_t const* packed = packed_.begin() + arc->firstWord;
        PathKey const above = pathKey(places_[p + arc->length].baseSum - baseSum, 0);
        for (FormWord const* const last = form + arc->count; form != last; ++form) {
            *follower++ = ((*packed++ >> kWordShift) + above) << kWordShift | number++;
            *column++ = form->column;
        }
        hasSparse_ |= arc->sparse;
    }
    if (even != followerCount_) {
        *follower = kDeadEnd;
        *column = 0;
    }
    if (hasSparse_) hideSparse(place.firstArc, endArc);
}

/// The followers as words of no class see them.
void BestPathSearch::hideSparse(std::uint32_t firstArc, std::uint32_t endArc) {
    plainFollowers_.resizeForOverwrite(followers_.size());
    std::copy(followers_.begin(), followers_.end(), plainFollowers_.begin());
    std::size_t i = 0;
    for (std::uint32_t index = firstArc; index != endArc; ++index) {
        FormWord const* const words = forms_.words() + arcs_[index].words;
        for (std::uint32_t w = 0; w < arcs_[index].count; ++w, ++i)
            if ((words[w].marks & FormWord::kSparse) != 0) plainFollowers_[i] = kDeadEnd;
    }
}

/// Lays out words that cannot be packed.
void BestPathSearch::layOut(std::size_t p, std::uint32_t endArc) {
    keys_.clear();
    std::uint32_t i = 0;
    for (std::uint32_t index = places_[p].firstArc; index != endArc; ++index) {
        Arc const& arc = arcs_[index];
        for (std::uint32_t w = 0; w < arc.count; ++w) {
            keys_.push(linkOf(arc.firstWord + w, p + arc.length).key);
            columns_[i++] = forms_.words()[arc.words + w].column;
        }
    }
}

/// Gives each word of the arcs that end at @p p its best continuation.
void BestPathSearch::connect(std::size_t p) {
    for (std::uint32_t index = places_[p].ends; index != kNone;) {
        Arc const& arc = arcs_[index];
        Place& start = places_[p - arc.length];
        if (hasSparse_)
            connectArc<true>(places_[p].baseSum, start, arc);
        else
            connectArc<false>(places_[p].baseSum, start, arc);
        index = arc.nextEnding;
    }
}

template <bool kSparse>
inline void BestPathSearch::connectArc(std::uint32_t baseSum, Place& start, Arc const& arc) {
    std::uint64_t const* const followers = followers_.begin();
    std::uint64_t const* const plain = kSparse ? plainFollowers_.begin() : followers;
    std::uint16_t const* const columns = columns_.begin();
    std::size_t const count = packs_ ? followers_.size() : 0;
    unsigned char const* const matrix = table_.costs(0);
    FormWord const* form = forms_.words() + arc.words;
    std::uint64_t* packed = packed_.begin() + arc.firstWord;
    std::uint64_t least = kDeadEnd;
    PathKey low = kNoPath;  // of words that are not packed
    std::uint32_t high = baseSum + kMostExcess;
    for (FormWord const* const last = form + arc.count; form != last; ++form, ++packed) {
        unsigned char const* const costs = matrix + form->rowOffset;
        bool const enters = kSparse && (form->marks & FormWord::kEntersSparse) != 0;
        std::uint64_t best = bestPacked(enters ? followers : plain, columns, count, costs);
        // Rarely a forbidden connection at 255 beats all others.
        if (best >= std::uint64_t{kMostExcess} << kSumShift ||
            costs[columns[best & kNumberMask]] == ConnTable::kForbidden) [[unlikely]] {
            high = std::max(high, connectSlowly(baseSum, packed, *form));
            if (*packed >= kLinked) {
                low = std::min(low, links_[*packed & ~kLinked].key);
                continue;
            }
            best = *packed;
        } else {
            best += std::uint64_t{form->cost} << kWordShift;
            *packed = best;
        }
        least = std::min(least, best);
    }
    if (least != kDeadEnd) low = std::min(low, (least >> kWordShift) + pathKey(baseSum, 0));
    note(start, arc, low, high);
}

/// The same for one word, with sums of any size. Returns the largest sum that the
/// word may have.
std::uint32_t BestPathSearch::connectSlowly(std::uint32_t baseSum, std::uint64_t* packed, FormWord const& form) {
    Link link = bestOfAll(baseSum, table_.costs(form.rowOffset));
    if (link.next != kNone) link.key += form.cost;
    if (packs_ && link.next != kNone && connSumOf(link.key) - baseSum < kMostExcess) {
        *packed = (link.key - pathKey(baseSum, 0)) << kWordShift | (link.next - firstFollower_);
        return connSumOf(link.key);
    }
    return setLink(static_cast<std::uint32_t>(packed - packed_.begin()), link);
}

std::uint32_t BestPathSearch::setLink(std::uint32_t word, Link link) {
    packed_[word] = kLinked | links_.size();
    links_.push(link);
    return kNoSum;
}

BestPathSearch::Link BestPathSearch::linkOf(std::uint32_t word, std::size_t end) const noexcept {
    std::uint64_t const packed = packed_[word];
    if (packed >= kLinked) return links_[packed & ~kLinked];
    PathKey const key = (packed >> kWordShift) + pathKey(places_[end].baseSum, 0);
    if (end == length_) return {key, kNone};
    return {key, arcs_[places_[end].firstArc].firstWord + static_cast<std::uint32_t>(packed & kNumberMask)};
}

/// The best of the followers for a row; kNoPath and kNone when nothing may follow.
BestPathSearch::Link BestPathSearch::bestOfAll(std::uint32_t baseSum, unsigned char const* costs) const noexcept {
    Link best{kNoPath, kNone};
    for (std::uint32_t i = 0; i < followerCount_; ++i) {
        std::uint8_t const cost = costs[columns_[i]];
        if (cost == ConnTable::kForbidden) continue;
        PathKey const key = packs_ ? (followers_[i] >> kWordShift) + pathKey(baseSum, 0) : keys_[i];
        if (key == kNoPath) continue;
        // Among complete ties the word made first is the best.
        if (key + pathKey(cost, 0) < best.key) best = {key + pathKey(cost, 0), firstFollower_ + i};
    }
    return best;
}

// What was left out. A word that starts at the second byte of a character follows
// only the one-byte unknown word before it, since no word ends there. Unknown
// words cost the same everywhere, before and behind, so a path through one is
// told to be worse than another from the least sums behind it.

/// Bounds the words that start at the second byte @p p of a character: every
/// connection costs 0 or more, and before a word no less than its column's minimum.
void BestPathSearch::boundInside(std::size_t p) {
    Place& place = places_[p];
    std::uint64_t const unknown = table_.unknownCost();
    std::uint64_t low = connSumOf(places_[p + 1].low) + unknown;
    std::uint64_t lowBefore = low + unknown;
    auto const word = [&](std::size_t end, std::uint64_t cost) {
        low = std::min<std::uint64_t>(low, places_[end].lowBefore);
        lowBefore = std::min<std::uint64_t>(lowBefore, places_[end].lowBefore + cost);
    };
    if (std::uint8_t const cost = table_.byteForm(text_[p], *dics_).least; cost != SearchTable::kNoWord)
        word(p + 1, cost);
    if (place.pair != SearchTable::kNoWord) word(p + 2, place.pair);
    if (text_[p] >= 128 && p + 2 <= length_) {
        low = std::min(low, connSumOf(places_[p + 2].low) + unknown);
        lowBefore = std::min(lowBefore, connSumOf(places_[p + 2].low) + 2 * unknown);
    }
    for (; !overhangs_.empty() && overhangs_.back().place == p; overhangs_.pop_back()) word(overhangs_.back().end, 0);
    place.low = pathKey(static_cast<std::uint32_t>(std::min<std::uint64_t>(low, kMaxSum)), 0);
    place.lowBefore = static_cast<std::uint32_t>(std::min<std::uint64_t>(lowBefore, kMaxSum));
}

/// True when no word before @p p would choose an unknown word that was left out.
bool BestPathSearch::unknownsAreNeedless(std::size_t p, std::uint32_t endArc) {
    Place& place = places_[p];
    std::uint32_t const cost = table_.unknownCost();
    // What an unknown word at p has at least; at the end of the text it has more.
    PathKey least = places_[p + 1].low;
    bool const twoMore = place.width == 1 && text_[p] >= 128 && p + 2 <= length_;
    if (twoMore) least = std::min(least, places_[p + 2].low);
    least = pathKey(std::min(connSumOf(least), kMaxSum) + cost, kUnknownWordCost);
    place.low = std::min(place.low, least);
    place.lowBefore = std::min(place.lowBefore, connSumOf(least) + cost);
    if (place.unknown) {
        if (place.width == 1) return !twoMore;
        // The one-byte word has the column of the two-byte word, which wins every
        // tie since it is made first.
        return linkOf(firstFollower_, p + 2).key <= least;
    }
    // Any word before p gets at most `most` from some word that it may stand before.
    std::uint64_t const enough = std::uint64_t{connSumOf(least)} + cost;
    if (place.lowBounded < kMaxSum && std::uint64_t{place.lowBounded} + 254 < enough) return true;
    std::uint64_t most = ~std::uint64_t{0};
    for (std::uint32_t index = place.firstArc; index != endArc; ++index) {
        Arc const& arc = arcs_[index];
        for (std::uint32_t i = 0; i < arc.count; ++i) {
            FormWord const& form = forms_.words()[arc.words + i];
            if ((form.marks & FormWord::kBounded) == 0) continue;
            std::uint32_t const sum = connSumOf(linkOf(arc.firstWord + i, p + arc.length).key);
            most = std::min(most, std::uint64_t{sum} + table_.columnMaximum(form.column));
        }
    }
    return most < enough;
}

}  // namespace TAVO
