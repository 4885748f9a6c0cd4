#include "dic/prefix_batch.hpp"

#include <cstring>

namespace TAVO {

void PrefixBatch::run(DicTrie const& trie, unsigned char const* text, std::size_t n) {
    while (!walks_.empty()) step(trie, text, n);
    endTails(trie, text, n);
}

void PrefixBatch::step(DicTrie const& trie, unsigned char const* text, std::size_t n) {
    if (walks_.empty()) return;
    if (stepped_)
        stepAll<false>(trie, text, n);
    else
        stepAll<true>(trie, text, n);
    stepped_ = true;
}

/// One step of all walks. The caller has seen the keys that end where they begin, so the first step need not look; a
/// later one does so in vain for walks added meanwhile.
template <bool kFirst>
void PrefixBatch::stepAll(DicTrie const& trie, unsigned char const* text, std::size_t n) {
    std::size_t kept = 0;
    for (Walk const& walk : walks_) {
        if (!kFirst) {
            Match const found{walk.base, walk.at - walk.start};
            Match& match = matches_[walk.search];
            match = DicTrie::isKeyEnd(trie.cell(walk.base)) ? found : match;
        }
        if (walk.at >= n) continue;
        std::uint32_t const byte = text[walk.at];
        std::uint32_t const next = trie.cell(walk.base + byte);
        // A free cell and a key's end carry label 0, which a NUL would match.
        if (DicTrie::label(next) != byte || byte == 0) continue;
        if (DicTrie::isLeaf(next)) {
            addTail(trie, walk.search, walk.start, walk.at + 1 - walk.start, walk.base + byte);
            continue;
        }
        std::uint32_t const base = next & DicTrie::kValueMask;
        trie.prefetch(base, walk.at + 1 < n ? text[walk.at + 1] : 0);
        walks_[kept++] = {walk.search, walk.start, walk.at + 1, base};
    }
    walks_.truncate(kept);
}

/// The walks that came to a key which is alone in its branch.
void PrefixBatch::endTails(DicTrie const& trie, unsigned char const* text, std::size_t n) {
    for (Tail const& walk : tails_) {
        DicTrie::Tail const tail = trie.tailOf(trie.cell(walk.index));
        std::size_t const at = std::size_t{walk.start} + walk.length;
        // The chain comes first: with it, the tail's bytes are readable.
        if (!tail.chain || tail.length > n - at || std::memcmp(tail.bytes, text + at, tail.length) != 0) continue;
        matches_[walk.search] = {walk.index, walk.length + static_cast<std::uint32_t>(tail.length)};
    }
}

}  // namespace TAVO
