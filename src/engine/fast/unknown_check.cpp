#include "engine/fast/unknown_check.hpp"

#include "base/bytes.hpp"
#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "dic/record_walk.hpp"

#include <algorithm>

namespace TAVO {

using namespace CharacterFlag;

/// Most places that the text names need none, and which do nobody foretells: so they are added without a branch.
void UnknownCheck::findLooks() {
    RawBuffer<std::uint32_t> const& places = text_.looks();
    looks_.resizeForOverwrite(places.size());
    Look* to = looks_.begin();
    for (std::uint32_t const p : places) {
        *to = {p, 0};
        to += needsLook(p);
    }
    looks_.truncate(static_cast<std::size_t>(to - looks_.begin()));
    for (Look& look : looks_) look.isDeep = isDeep(look.place) ? 1 : 0;
}

/// False when nothing that is left out at @p p leads beyond two places, or it comes back to known words at the third,
/// or goes on from the first or the second with unknown words alone.
inline bool UnknownCheck::isDeep(std::size_t p) const noexcept {
    unsigned const flags = text_.flags(p);
    unsigned const behind = text_.flags(p + 1);
    bool const isOdd = (flags & kHighByte) != 0 || ((flags & kDouble) != 0 && !mayBeTrail(text_.code(p) & 0xFFU));
    if (isOdd || isBehindUnknown(p)) return true;
    if ((flags & kDouble) == 0 || (behind & kEnd) != 0) return false;
    if ((flags & kTrailContinues) != 0 && mayContinue(p)) return true;
    if ((flags & kHighTrail) == 0 || !mayPair(p)) return false;
    if ((behind & kDouble) == 0 || !mayBeTrail(text_.code(p + 1) & 0xFFU)) return true;
    if ((text_.flags(p + 2) & kEnd) != 0) return false;
    return ((behind & kTrailContinues) != 0 && mayContinue(p + 1)) || ((behind & kHighTrail) != 0 && mayPair(p + 1));
}

/// 1 or 0. A safe character of two bytes needs a look only where words inside it may lead beyond its end.
inline unsigned UnknownCheck::needsLook(std::size_t p) const noexcept {
    unsigned const flags = text_.flags(p);
    unsigned const behind = text_.flags(p + 1);
    auto const is = [](bool fact) { return static_cast<unsigned>(fact); };
    unsigned const leads = is((flags & kHighTrail) != 0) & is((behind & kEnd) == 0) &
                           (is(mayPair(p)) | is((behind & (kDouble | kSafe)) == 0));
    if ((flags & kTrailContinues) != 0 && (behind & kEnd) == 0 && mayContinue(p)) [[unlikely]]
        return 1;
    return leads | is((flags & (kSafe | kDouble)) != (kSafe | kDouble)) | is(isBehindUnknown(p));
}

/// True when the trail byte of @p p and the first byte behind it are a character of some surface.
inline bool UnknownCheck::mayPair(std::size_t p) const noexcept {
    unsigned const next = text_.code(p + 1);
    unsigned const first = next > 0xFF ? next >> 8 : next;
    return state_.indexes.hasPair(static_cast<CharacterCode>((text_.code(p) & 0xFFU) << 8 | first));
}

bool UnknownCheck::passes(std::size_t p, std::size_t last) const {
    Sum const leftOut = lowLeftOut(p, last);
    return leftOut >= kNone || limit(p) < 2 * unknownCost_ + leftOut;
}

bool UnknownCheck::passesForUnknown(std::size_t p, std::size_t last) const {
    return lowOpen(p) < unknownCost_ + lowLeftOut(p, last);
}

UnknownCheck::Sum UnknownCheck::limit(std::size_t p) const noexcept {
    return isBehindUnknown(p) ? std::max(bound(p), unknownCost_ + lowOpen(p)) : bound(p);
}

UnknownCheck::Sum UnknownCheck::lowOpen(std::size_t p) const noexcept {
    ConnIndex const& conn = state_.indexes.conn();
    std::size_t const first = layout_.firstSlot(p);
    Sum least = kNone;
    for (std::size_t slot = first; slot != first + layout_.count(p); ++slot)
        if (conn.isOpenToUnknown(layout_.columns()[slot]) && layout_.sums()[slot] != CandidateLayout::kNoSum)
            least = std::min<Sum>(least, layout_.sums()[slot]);
    return least;
}

UnknownCheck::Sum UnknownCheck::bound(std::size_t p) const noexcept {
    ConnIndex const& conn = state_.indexes.conn();
    std::size_t const first = layout_.firstSlot(p);
    Sum least = kNone;
    for (std::size_t slot = first; slot != first + layout_.count(p); ++slot) {
        Sum const most = conn.columnMost(layout_.columns()[slot]);
        Sum const sum = layout_.sums()[slot];
        if (most != ConnIndex::kUnbounded && sum != CandidateLayout::kNoSum) least = std::min(least, sum + most);
    }
    return least;
}

/// True when in some surface the trail byte of @p p may stand, as a character, before the character behind @p p.
bool UnknownCheck::mayContinue(std::size_t p) const noexcept {
    auto const byte = static_cast<unsigned char>(text_.code(p) & 0xFF);
    for (std::size_t i = 0; i != state_.indexes.count(); ++i)
        if (state_.indexes.dic(i).mayStandBefore(byte, text_.code(p + 1))) return true;
    return false;
}

/// A lower bound of L(q) at the places q at which what is left out at @p p comes back to known words; kNone where
/// nothing is left out, kAny where they lie behind @p last.
UnknownCheck::Sum UnknownCheck::lowLeftOut(std::size_t p, std::size_t last) const {
    unsigned const flags = text_.flags(p);
    if (text_.isEnd(p)) return kNone;
    if (p + 1 > last) return kAny;
    Sum least = (flags & kUnknown) != 0 ? kNone : low(p + 1);
    if ((flags & kDouble) != 0) return std::min(least, lowInside(p, last));
    if ((flags & kHighByte) == 0 || text_.isEnd(p + 1)) return least;
    // An unknown word of two bytes takes in the next character or its first byte.
    if (p + 2 > last) return kAny;
    if ((text_.flags(p + 1) & kDouble) != 0) return std::min(least, lowInside(p + 1, last));
    Sum const leaving = text_.isEnd(p + 2) ? kNone : bound(p + 2) - unknownCost_;
    return std::min({least, low(p + 2), leaving});
}

/// The same for what starts at the trail byte of @p p: the chain of words of one and two bytes that stay inside
/// characters, each of which may also come back at the end of the character that it has come to.
UnknownCheck::Sum UnknownCheck::lowInside(std::size_t p, std::size_t last) const {
    Sum least = kNone;
    for (std::size_t q = p;; ++q) {
        if (q + 1 > last) return kAny;
        Sum const toKnown = (text_.flags(q) & kTrailEnds) != 0 ? 0 : unknownCost_;
        if (!mayBeTrail(text_.code(q) & 0xFFU) && state_.indexes.leavesUntwinned()) return kAny;
        least = std::min(least, low(q + 1) + toKnown);
        if (text_.isEnd(q + 1)) return least;
        if ((text_.flags(q) & kTrailContinues) != 0 && mayContinue(q))
            for (std::size_t from = p; from <= q; ++from) least = std::min(least, lowOfWordsInside(from, last));
        if ((text_.flags(q) & kHighTrail) == 0) return least;
        if (q + 2 > last) return kAny;
        bool const isPair = mayPair(q);
        if ((text_.flags(q + 1) & kDouble) == 0) {
            // The pair ends with the next character, behind which a surface may go on.
            if (isPair && state_.indexes.leavesUntwinned()) return kAny;
            if (isPair)
                for (std::size_t from = p; from <= q; ++from) least = std::min(least, lowOfWordsInside(from, last));
            return std::min(least, low(q + 2));
        }
        // Only an unknown word goes on, for U, to where by 1 nothing has A(q + 1) - U or less.
        if (!isPair) return std::min(least, bound(q + 1) - unknownCost_);
    }
}

/// L at the ends of the dictionaries' words that start at the trail byte of @p p, where these are between characters.
[[gnu::cold]] UnknownCheck::Sum UnknownCheck::lowOfWordsInside(std::size_t p, std::size_t last) const {
    std::uint32_t const begin = text_.offset(p) + 1;
    Sum least = kNone;
    for (DicEntry const& entry : dics_->entries())
        entry.dic->trie()->prefixSearch(asBytes(sentence_.data()) + begin, sentence_.size() - begin,
                                        [&](std::size_t length, RecordChain chain) {
                                            std::size_t q = p + 1;
                                            while (q <= last && text_.offset(q) < begin + length) ++q;
                                            if (q > last)
                                                least = kAny;
                                            else if (text_.offset(q) == begin + length)
                                                least = std::min(least, lacksWordsBehind(q, chain) ? kAny : low(q));
                                            return least != kAny;
                                        });
    return least;
}

/// True when a word of @p chain, which ends at @p q, could choose a word that is not laid out there.
bool UnknownCheck::lacksWordsBehind(std::size_t q, RecordChain chain) const {
    unsigned opened = 0;
    eachNodeRecord(chain, table_->idCount(),
                   [&](MrphDic record) { opened |= state_.indexes.conn().rowClasses(table_->row(record.pid())); });
    return !state_.hasAllWords(q, opened);
}

}  // namespace TAVO
