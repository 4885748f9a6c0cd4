#include "dic/prefix_batch.hpp"

#include <cstring>

namespace TAVO {

void PrefixBatch::run(DicTrie const& trie, unsigned char const* text) {
    while (!walks_.empty()) step(trie, text);
    endTails(trie, text);
}

void PrefixBatch::step(DicTrie const& trie, unsigned char const* text) {
    if (walks_.empty()) return;
    if (stepped_)
        stepAll<false>(trie, text);
    else
        stepAll<true>(trie, text);
    stepped_ = true;
}

/// One step of all walks. The caller has seen the keys that end where they begin, so the first step need not look; a
/// later one does so in vain for walks added meanwhile.
template <bool kFirst>
void PrefixBatch::stepAll(DicTrie const& trie, unsigned char const* text) {
    tails_.reserve(tails_.size() + walks_.size());
    Tail* tail = tails_.end();
    Walk* kept = walks_.begin();
    // How a walk goes on a branch would often foretell wrong, so what each way asks for is written in any case.
    for (Walk const walk : walks_) {
        Place const& place = walk.place;
        std::uint32_t const at = place.start + place.length;
        if (!kFirst) {
            Match const found{walk.base, place.length};
            Match& match = matches_[place.search];
            match = DicTrie::isKeyEnd(trie.cell(walk.base)) ? found : match;
        }
        if (at >= place.end) continue;
        std::uint32_t const byte = text[at];
        std::uint32_t const next = trie.cell(walk.base + byte);
        // A free cell and a key's end carry label 0, which a NUL would match.
        auto const goesOn = static_cast<unsigned>(DicTrie::label(next) == byte) & (byte != 0);
        auto const isLeaf = static_cast<unsigned>(DicTrie::isLeaf(next));
        Place const further{place.search, place.start, place.length + 1, place.end};
        *tail = {further, walk.base + byte};
        tail += goesOn & isLeaf;
        *kept = {further, next & DicTrie::kValueMask};
        kept += goesOn & (isLeaf ^ 1);
        trie.prefetchNext(next & (0U - goesOn), at + 1 < place.end ? text[at + 1] : 0);
    }
    tails_.resizeForOverwrite(static_cast<std::size_t>(tail - tails_.begin()));
    walks_.truncate(static_cast<std::size_t>(kept - walks_.begin()));
}

/// The walks that came to a key which is alone in its branch.
void PrefixBatch::endTails(DicTrie const& trie, unsigned char const* text) {
    for (Tail const& walk : tails_) {
        Place const& place = walk.place;
        DicTrie::Tail const tail = trie.tailOf(trie.cell(walk.index));
        std::size_t const at = std::size_t{place.start} + place.length;
        // The chain comes first: with it, the tail's bytes are readable.
        if (!tail.chain || tail.length > place.end - at || std::memcmp(tail.bytes, text + at, tail.length) != 0)
            continue;
        matches_[place.search] = {walk.index, place.length + static_cast<std::uint32_t>(tail.length)};
    }
}

}  // namespace TAVO
