// Common-prefix searches from many positions of a text at once.
#ifndef TAVO_DIC_PREFIX_BATCH_HPP
#define TAVO_DIC_PREFIX_BATCH_HPP

#include "base/raw_buffer.hpp"
#include "dic/dic_trie.hpp"

#include <cstddef>
#include <cstdint>

namespace TAVO {

/// Takes one step of every search before the next step of any, and asks for the
/// cells of the next step while it is at the others, so that the searches wait
/// for memory together. A search goes on from a node that its caller has come to;
/// it finds the longest key, the last one that DicTrie::prefixSearch() finds.
class PrefixBatch {
public:
    struct Match {
        std::uint32_t cell;    ///< index of the cell where the key ends
        std::uint32_t length;  ///< in bytes; 0: no key
    };

    /// Begins @p count searches.
    void start(std::size_t count) {
        walks_.clear();
        tails_.clear();
        stepped_ = false;
        matches_.resizeForOverwrite(count);
    }
    /// What search number @p search has found: first what its caller knows, then the longest key.
    Match& match(std::size_t search) noexcept { return matches_[search]; }
    /// Where a search is: at its own place of a text, which has an end of its own.
    struct Place {
        std::uint32_t search;  ///< number of the search
        std::uint32_t start;   ///< where it began
        std::uint32_t length;  ///< bytes that it came with
        std::uint32_t end;     ///< of the text; never read at or behind
    };
    /// Lets a search go on from the node @p base; the byte behind its @p place is @p byte.
    void addWalk(DicTrie const& trie, Place const& place, std::uint32_t base, std::uint32_t byte) {
        walks_.push({place, base});
        trie.prefetchChild(base, byte);
    }
    /// The same for one that has come to the leaf cell with index @p index.
    void addTail(DicTrie const& trie, Place const& place, std::uint32_t index) {
        tails_.push({place, index});
        trie.prefetchTail(trie.cell(index));
    }
    /// Takes one step of the searches, whose places count from @p text. More may be added before run().
    void step(DicTrie const& trie, unsigned char const* text);
    /// Runs the searches to their ends.
    void run(DicTrie const& trie, unsigned char const* text);

private:
    struct Walk {
        Place place;
        std::uint32_t base;
    };
    struct Tail {
        Place place;
        std::uint32_t index;  // of the leaf cell
    };

    template <bool kFirst>
    void stepAll(DicTrie const& trie, unsigned char const* text);
    void endTails(DicTrie const& trie, unsigned char const* text);

    RawBuffer<Match> matches_;  // by number of the search
    RawBuffer<Walk> walks_;
    RawBuffer<Tail> tails_;
    bool stepped_ = false;
};

}  // namespace TAVO

#endif
