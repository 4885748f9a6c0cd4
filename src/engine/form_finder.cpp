#include "engine/form_finder.hpp"

#include "base/bytes.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace TAVO {
namespace {

// Room for pairs, in bits: a little for short texts and small dictionaries.
constexpr unsigned kFewBits = 7;
constexpr unsigned kMostBits = 15;

}  // namespace

inline FormFinder::Known& FormFinder::placeOf(std::uint32_t pair) noexcept {
    return known_[(pair * 0x9E3779B1U) >> (32 - bits_)];
}

void FormFinder::clear() noexcept {
    known_.clear();
    learnt_ = 0;
}

/// Takes more room when a text has many pairs, and the dictionary enough words to make that worth it.
void FormFinder::makeRoom(DicTrie const& trie) {
    auto const most =
        std::clamp<unsigned>(static_cast<unsigned>(std::bit_width(trie.cellCount() >> 4)), kFewBits, kMostBits);
    bool const tooFew = bits_ < most && learnt_ > known_.size();
    if (!known_.empty() && !tooFew) return;
    bits_ = tooFew ? std::min(bits_ + 2, most) : std::max(bits_, kFewBits);
    clear();
    known_.resizeForOverwrite(std::size_t{1} << bits_);
    std::fill(known_.begin(), known_.end(), Known{});
    known_[0].pair = 1;  // free too: pair 0 would stand here, pair 1 elsewhere
}

void FormFinder::search(DicTrie const& trie, std::uint32_t dictionary, unsigned char const* text, std::size_t n,
                        std::span<std::uint32_t const> starts, std::span<std::uint32_t> bundles, BundleCache& cache) {
    makeRoom(trie);
    lookUp(text, n, starts);
    learn(trie, dictionary, text, starts, cache);
    batch_.start(starts.size());
    for (std::uint32_t number = 0; number < starts.size(); ++number) {
        std::uint32_t const p = starts[number];
        Known const known = atStarts_[number];
        batch_.match(number) = {0, known.length};
        if (known.state == kEnd) continue;
        if ((known.state & kTail) != 0)
            batch_.addTail(trie, number, p, known.consumed, known.state & ~kTail);
        else if (std::uint32_t const at = p + known.consumed; at < n)
            batch_.addWalk(trie, number, p, known.consumed, known.state, text[at]);
    }
    batch_.run(trie, text, n);
    findBundles(dictionary, text, starts, bundles, cache);
}

/// Finds the bundles of the longest forms.
void FormFinder::findBundles(std::uint32_t dictionary, unsigned char const* text, std::span<std::uint32_t const> starts,
                             std::span<std::uint32_t> bundles, BundleCache& cache) {
    sought_.resizeForOverwrite(starts.size());
    std::size_t count = 0;
    for (std::uint32_t number = 0; number < starts.size(); ++number) {
        PrefixBatch::Match match = batch_.match(number);
        Known const known = atStarts_[number];
        std::uint32_t const parent = bundles[number];
        bool isSought = match.length != known.length;
        if (parent == BundleCache::kEmpty) {
            if (!isSought) bundles[number] = known.bundle;
        } else if (!isSought && match.length != 0) {
            match.cell = cache.cellOf(known.bundle);
            isSought = true;
        }
        sought_[count] = {number, {parent, match.cell, match.length, dictionary}};
        count += isSought ? 1 : 0;
    }
    sought_.truncate(count);
    for (Sought const& sought : sought_) cache.prefetchSlot(sought.key);
    for (Sought const& sought : sought_) cache.prefetchKey(sought.key);
    for (Sought const& sought : sought_) bundles[sought.number] = cache.find(sought.key, text + starts[sought.number]);
}

void FormFinder::lookUp(unsigned char const* text, std::size_t n, std::span<std::uint32_t const> starts) {
    atStarts_.resizeForOverwrite(starts.size());
    for (std::size_t number = 0; number < starts.size(); ++number) {
        std::size_t const p = starts[number];
        std::uint32_t pair = 0;
        if (p + sizeof(pair) <= n)
            pair = loadU32(text + p);
        else
            for (std::size_t i = 0; i < n - p; ++i) pair |= std::uint32_t{text[p + i]} << 8 * i;
        if (text[p] < 0x80) pair &= 0xFFFF;
        atStarts_[number].pair = pair;
        __builtin_prefetch(&placeOf(pair));
    }
}

/// Notes the forms inside the pairs that are not known. All go through the trie together.
void FormFinder::learn(DicTrie const& trie, std::uint32_t dictionary, unsigned char const* text,
                       std::span<std::uint32_t const> starts, BundleCache& cache) {
    lessons_.clear();
    for (std::uint32_t number = 0; number < starts.size(); ++number) {
        std::uint32_t const pair = atStarts_[number].pair;
        if (Known const known = placeOf(pair); known.pair == pair) {
            atStarts_[number] = known;
            continue;
        }
        std::uint32_t const base = trie.rootBase(pair & 0xFF);
        Known const known{pair, kEnd, BundleCache::kEmpty, 0, 0};
        lessons_.push({known, base, 0, number, base != 0});
        if (base != 0) trie.prefetch(base, pair >> 8 & 0xFF);
    }
    if (lessons_.empty()) return;
    learnt_ += lessons_.size();
    for (unsigned consumed = 1; consumed <= sizeof(Known::pair); ++consumed)
        for (Lesson& lesson : lessons_)
            if (lesson.goesOn) step(lesson, consumed, trie);
    for (Lesson& lesson : lessons_) {
        if ((lesson.known.state & kTail) != 0 && lesson.known.state != kEnd) endTail(lesson, trie);
        if (lesson.known.length != 0) cache.prefetchSlot(lesson.key(dictionary));
    }
    for (Lesson const& lesson : lessons_)
        if (lesson.known.length != 0) cache.prefetchKey(lesson.key(dictionary));
    for (Lesson& lesson : lessons_) {
        if (lesson.known.length != 0)
            lesson.known.bundle = cache.find(lesson.key(dictionary), text + starts[lesson.number]);
        placeOf(lesson.known.pair) = atStarts_[lesson.number] = lesson.known;
    }
}

/// Takes @p lesson from a node to which @p consumed bytes led to the next one.
inline void FormFinder::step(Lesson& lesson, unsigned consumed, DicTrie const& trie) {
    Known& known = lesson.known;
    if (DicTrie::isKeyEnd(trie.cell(lesson.base))) {
        lesson.own = lesson.base;
        known.length = static_cast<std::uint8_t>(consumed);
    }
    // Behind the first byte a NUL ends forms, and the text may end.
    std::uint32_t const byte = consumed < sizeof(known.pair) ? known.pair >> 8 * consumed & 0xFF : 0;
    lesson.goesOn = false;
    if (byte == 0) {
        known.state = lesson.base;
        known.consumed = static_cast<std::uint8_t>(consumed);
        return;
    }
    std::uint32_t const index = lesson.base + byte;
    std::uint32_t const next = trie.cell(index);
    if (DicTrie::label(next) != byte) return;
    if (DicTrie::isLeaf(next)) {
        known.state = kTail | index;
        known.consumed = static_cast<std::uint8_t>(consumed + 1);
        trie.prefetchTail(next);
        return;
    }
    lesson.goesOn = true;
    lesson.base = next & DicTrie::kValueMask;
    trie.prefetch(lesson.base, consumed + 1 < sizeof(known.pair) ? known.pair >> 8 * (consumed + 1) & 0xFF : 0);
}

/// Compares the part of a tail that is inside the pair.
void FormFinder::endTail(Lesson& lesson, DicTrie const& trie) {
    Known& known = lesson.known;
    std::array<unsigned char, sizeof(known.pair)> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(known.pair >> 8 * i);
    std::uint32_t const index = known.state & ~kTail;
    std::size_t const consumed = known.consumed;
    auto const width = static_cast<std::size_t>(std::find(bytes.begin() + 1, bytes.end(), 0) - bytes.begin());
    DicTrie::Tail const tail = trie.tailOf(trie.cell(index));
    std::size_t const inside = std::min(tail.length, width - consumed);
    bool const matches = tail.chain && std::memcmp(tail.bytes, bytes.data() + consumed, inside) == 0;
    if (matches && inside < tail.length) return;
    known.state = kEnd;
    if (!matches) return;
    lesson.own = index;
    known.length = static_cast<std::uint8_t>(consumed + inside);
}

}  // namespace TAVO
