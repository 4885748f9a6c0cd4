#include "engine/form_finder.hpp"

#include "base/bytes.hpp"

#include <algorithm>
#include <array>
#include <cstring>

namespace TAVO {
void FormFinder::search(DicTrie const& trie, std::uint32_t dictionary, Starts const& starts,
                        std::span<std::uint32_t> bundles, BundleCache& cache) {
    pairs_.makeRoom(trie.cellCount());
    lookUp(starts);
    std::size_t const count = starts.places.size();
    sought_.clear();
    sought_.reserve(count);
    lessons_.clear();
    batch_.start(count);
    Search const search{trie, dictionary, starts, bundles};
    for (std::uint32_t number = 0; number < count; ++number) {
        std::uint32_t const pair = pairsAtStarts_[number];
        if (Known const* const known = pairs_.at(numbers_[number], pair))
            startWalk(search, number, *known);
        else
            startLesson(search, number, pair);
    }
    if (!lessons_.empty()) learn(search, cache);
    batch_.run(trie, starts.memory);
    findBundles(search, cache);
}

/// Gives a place the bundle of its pair and goes on from the pair when longer forms begin with it.
[[gnu::always_inline]] inline void FormFinder::startWalk(Search const& search, std::uint32_t number,
                                                         Known const& known) {
    std::uint32_t const parent = search.bundles[number];
    if (parent == BundleCache::kEmpty) search.bundles[number] = known.bundle;
    if (known.state == kEnd && (parent == BundleCache::kEmpty || known.length == 0)) return;
    auto const count = static_cast<std::uint32_t>(sought_.size());
    sought_.push({number, known.bundle, {parent, 0, known.length, search.dictionary}});
    batch_.match(count) = {0, known.length};
    PrefixBatch::Place const place{count, search.starts.places[number], known.consumed, search.starts.ends[number]};
    if ((known.state & kTail) == 0) {
        if (std::uint32_t const at = place.start + place.length; at < place.end)
            batch_.addWalk(search.trie, place, known.state, search.starts.memory[at]);
    } else if (known.state != kEnd) {
        batch_.addTail(search.trie, place, known.state & ~kTail);
    }
}

/// Finds the bundles of the longest forms where those of the pairs are not all.
void FormFinder::findBundles(Search const& search, BundleCache& cache) {
    std::size_t count = 0;
    for (std::uint32_t i = 0; i < sought_.size(); ++i) {
        Sought sought = sought_[i];
        PrefixBatch::Match match = batch_.match(i);
        if (match.length == sought.key.length) {
            if (match.length == 0 || sought.key.parent == BundleCache::kEmpty) continue;
            match.cell = cache.cellOf(sought.bundle);
        }
        sought.key.cell = match.cell;
        sought.key.length = match.length;
        sought_[count++] = sought;
    }
    sought_.truncate(count);
    for (Sought const& sought : sought_) cache.prefetchSlot(sought.key);
    for (Sought const& sought : sought_) cache.prefetchKey(sought.key);
    for (Sought const& sought : sought_)
        search.bundles[sought.number] = cache.find(sought.key, search.textAt(sought.number));
}

void FormFinder::lookUp(Starts const& starts) {
    std::size_t const count = starts.places.size();
    pairsAtStarts_.resizeForOverwrite(count);
    for (std::size_t number = 0; number < count; ++number) {
        unsigned char const* const text = starts.memory + starts.places[number];
        std::uint32_t const left = starts.ends[number] - starts.places[number];
        std::uint32_t pair = 0;
        if (left >= sizeof(pair))
            pair = loadU32(text);
        else
            for (std::uint32_t i = 0; i < left; ++i) pair |= std::uint32_t{text[i]} << 8 * i;
        if (text[0] < 0x80) pair &= 0xFFFF;
        pairsAtStarts_[number] = pair;
        pairs_.prefetch(pair);
    }
    numbers_.resizeForOverwrite(count);
    for (std::size_t number = 0; number < count; ++number) numbers_[number] = pairs_.numberOf(pairsAtStarts_[number]);
}

inline void FormFinder::startLesson(Search const& search, std::uint32_t number, std::uint32_t pair) {
    std::uint32_t const base = search.trie.rootBase(pair & 0xFF);
    Known const known{kEnd, BundleCache::kEmpty, static_cast<std::uint16_t>(pair), 0, 0};
    lessons_.push({known, pair, base, 0, number, base != 0});
    if (base != 0) search.trie.prefetch(base, pair >> 8 & 0xFF);
}

/// Notes the forms inside the pairs that are not known. All go through the trie together.
void FormFinder::learn(Search const& search, BundleCache& cache) {
    DicTrie const& trie = search.trie;
    for (unsigned consumed = 1; consumed <= sizeof(Lesson::pair); ++consumed) {
        for (Lesson& lesson : lessons_)
            if (lesson.goesOn) step(lesson, consumed, trie);
        batch_.step(trie, search.starts.memory);  // meanwhile what the lessons wait for comes
    }
    for (Lesson& lesson : lessons_) {
        if ((lesson.known.state & kTail) != 0 && lesson.known.state != kEnd) endTail(lesson, trie);
        if (lesson.known.length != 0) cache.prefetchSlot(lesson.key(search.dictionary));
    }
    for (Lesson const& lesson : lessons_)
        if (lesson.known.length != 0) cache.prefetchKey(lesson.key(search.dictionary));
    for (Lesson& lesson : lessons_) {
        Known& known = lesson.known;
        if (known.length != 0) known.bundle = cache.find(lesson.key(search.dictionary), search.textAt(lesson.number));
        // Forms of the first character alone are those of all pairs that begin so and that no form goes on from.
        bool const ofFirst = known.state == kEnd && known.length <= 2 && (lesson.pair & 0x80) != 0;
        pairs_.add(lesson.pair, known, ofFirst);
        startWalk(search, lesson.number, known);
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
    std::uint32_t const byte = consumed < sizeof(lesson.pair) ? lesson.pair >> 8 * consumed & 0xFF : 0;
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
    trie.prefetch(lesson.base, consumed + 1 < sizeof(lesson.pair) ? lesson.pair >> 8 * (consumed + 1) & 0xFF : 0);
}

/// Compares the part of a tail that is inside the pair.
void FormFinder::endTail(Lesson& lesson, DicTrie const& trie) {
    Known& known = lesson.known;
    std::array<unsigned char, sizeof(lesson.pair)> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(lesson.pair >> 8 * i);
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
