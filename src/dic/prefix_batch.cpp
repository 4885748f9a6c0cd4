#include "dic/prefix_batch.hpp"

#include <cstring>

namespace TAVO {

void PrefixBatch::begin(std::span<std::uint32_t const> starts) {
    starts_ = starts;
    matches_.clear();
    lists_.resizeForOverwrite(starts.size());
    for (List& list : lists_) list = {kNone, kNone};
}

void PrefixBatch::search(DicTrie const& trie, unsigned char const* text, std::size_t n) {
    walks_.clear();
    tails_.clear();
    for (std::uint32_t number = 0; number < starts_.size(); ++number) {
        std::uint32_t const at = starts_[number];
        std::uint32_t const base = trie.rootBase(text[at]);
        if (base == 0) continue;
        trie.prefetch(base, at + 1 < n ? text[at + 1] : 0);
        walks_.push({number, at + 1, base});
    }
    for (std::uint32_t length = 1; !walks_.empty(); ++length) step(trie, text, n, length);
    endTails(trie, text, n);
}

/// One step of all walks, which have gone @p length bytes.
void PrefixBatch::step(DicTrie const& trie, unsigned char const* text, std::size_t n, std::uint32_t length) {
    ends_.resizeForOverwrite(walks_.size());
    std::size_t ended = 0;
    std::size_t kept = 0;
    for (Walk const& walk : walks_) {
        std::uint32_t const end = trie.cell(walk.base);
        ends_[ended] = {walk.start, length, end & DicTrie::kValueMask};
        ended += DicTrie::isKeyEnd(end) ? 1 : 0;
        if (walk.at >= n) continue;
        std::uint32_t const byte = text[walk.at];
        std::uint32_t const next = trie.cell(walk.base + byte);
        // A free cell and a key's end carry label 0, which a NUL would match.
        if (DicTrie::label(next) != byte || byte == 0) continue;
        if (DicTrie::isLeaf(next)) {
            tails_.push({walk.start, length + 1, next});
            trie.prefetchTail(next);
            continue;
        }
        std::uint32_t const base = next & DicTrie::kValueMask;
        trie.prefetch(base, walk.at + 1 < n ? text[walk.at + 1] : 0);
        walks_[kept++] = {walk.start, walk.at + 1, base};
    }
    walks_.truncate(kept);
    ends_.truncate(ended);
    for (Found const& found : ends_) add(found.start, found.length, trie.leaf(found.value), trie.leafEnd());
}

/// The walks that came to a key which is alone in its branch.
void PrefixBatch::endTails(DicTrie const& trie, unsigned char const* text, std::size_t n) {
    for (Found const& found : tails_) {
        DicTrie::Tail const tail = trie.tailOf(found.value);
        std::size_t const at = starts_[found.start] + std::size_t{found.length};
        // The chain comes first: with it, the tail's bytes are readable.
        if (!tail.chain || tail.length > n - at || std::memcmp(tail.bytes, text + at, tail.length) != 0) continue;
        add(found.start, found.length + static_cast<std::uint32_t>(tail.length), tail.chain.head(), trie.leafEnd());
    }
}

void PrefixBatch::add(std::uint32_t start, std::uint32_t length, unsigned char const* head,
                      unsigned char const* leafEnd) {
    auto const index = static_cast<std::uint32_t>(matches_.size());
    matches_.push({head, leafEnd, 0, length, kNone});
    List& list = lists_[start];
    (list.first == kNone ? list.first : matches_[list.last].next) = index;
    list.last = index;
}

}  // namespace TAVO
