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
    tails_.reserve(tails_.size() + walks_.size());
    Tail* tail = tails_.end();
    Walk* kept = walks_.begin();
    // How a walk goes on a branch would often foretell wrong, so what each way asks for is written in any case.
    for (Walk const walk : walks_) {
        if (!kFirst) {
            Match const found{walk.base, walk.at - walk.start};
            Match& match = matches_[walk.search];
            match = DicTrie::isKeyEnd(trie.cell(walk.base)) ? found : match;
        }
        if (walk.at >= n) continue;
        std::uint32_t const byte = text[walk.at];
        std::uint32_t const next = trie.cell(walk.base + byte);
        // A free cell and a key's end carry label 0, which a NUL would match.
        auto const goesOn = static_cast<unsigned>(DicTrie::label(next) == byte) & (byte != 0);
        auto const isLeaf = static_cast<unsigned>(DicTrie::isLeaf(next));
        *tail = {walk.search, walk.start, walk.at + 1 - walk.start, walk.base + byte};
        tail += goesOn & isLeaf;
        *kept = {walk.search, walk.start, walk.at + 1, next & DicTrie::kValueMask};
        kept += goesOn & (isLeaf ^ 1);
        trie.prefetchNext(next & (0U - goesOn), walk.at + 1 < n ? text[walk.at + 1] : 0);
    }
    tails_.resizeForOverwrite(static_cast<std::size_t>(tail - tails_.begin()));
    walks_.truncate(static_cast<std::size_t>(kept - walks_.begin()));
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
