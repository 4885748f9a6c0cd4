#include "dic/prefix_batch.hpp"

#include <cstring>

namespace TAVO {

void PrefixBatch::run(DicTrie const& trie, unsigned char const* text, std::size_t n) {
    if (!walks_.empty()) step<true>(trie, text, n);
    while (!walks_.empty()) step<false>(trie, text, n);
    endTails(trie, text, n);
}

/// One step of all walks. The caller has seen the keys that end where they begin.
template <bool kFirst>
void PrefixBatch::step(DicTrie const& trie, unsigned char const* text, std::size_t n) {
    ends_.resizeForOverwrite(walks_.size());
    std::size_t ended = 0;
    std::size_t kept = 0;
    for (Walk const& walk : walks_) {
        if (!kFirst) {
            std::uint32_t const end = trie.cell(walk.base);
            ends_[ended] = {walk.search, walk.start, walk.at - walk.start, end & DicTrie::kValueMask};
            ended += DicTrie::isKeyEnd(end) ? 1 : 0;
        }
        if (walk.at >= n) continue;
        std::uint32_t const byte = text[walk.at];
        std::uint32_t const next = trie.cell(walk.base + byte);
        // A free cell and a key's end carry label 0, which a NUL would match.
        if (DicTrie::label(next) != byte || byte == 0) continue;
        if (DicTrie::isLeaf(next)) {
            addTail(trie, walk.search, walk.start, walk.at + 1 - walk.start, next);
            continue;
        }
        std::uint32_t const base = next & DicTrie::kValueMask;
        trie.prefetch(base, walk.at + 1 < n ? text[walk.at + 1] : 0);
        walks_[kept++] = {walk.search, walk.start, walk.at + 1, base};
    }
    walks_.truncate(kept);
    for (std::size_t i = 0; i < ended; ++i)
        matches_.push({trie.leaf(ends_[i].value), ends_[i].search, ends_[i].length});
}

/// The walks that came to a key which is alone in its branch.
void PrefixBatch::endTails(DicTrie const& trie, unsigned char const* text, std::size_t n) {
    for (Found const& found : tails_) {
        DicTrie::Tail const tail = trie.tailOf(found.value);
        std::size_t const at = std::size_t{found.start} + found.length;
        // The chain comes first: with it, the tail's bytes are readable.
        if (!tail.chain || tail.length > n - at || std::memcmp(tail.bytes, text + at, tail.length) != 0) continue;
        matches_.push({tail.chain.head(), found.search, found.length + static_cast<std::uint32_t>(tail.length)});
    }
}

}  // namespace TAVO
