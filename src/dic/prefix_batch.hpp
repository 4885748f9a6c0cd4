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
    /// Lets search number @p search, which began at @p start, go on from the node @p base, to
    /// which it came with @p length bytes; the byte behind them is @p byte.
    void addWalk(DicTrie const& trie, std::uint32_t search, std::uint32_t start, std::uint32_t length,
                 std::uint32_t base, std::uint32_t byte) {
        walks_.push({search, start, start + length, base});
        trie.prefetchChild(base, byte);
    }
    /// The same for one that has come to the leaf cell with index @p index.
    void addTail(DicTrie const& trie, std::uint32_t search, std::uint32_t start, std::uint32_t length,
                 std::uint32_t index) {
        tails_.push({search, start, length, index});
        trie.prefetchTail(trie.cell(index));
    }
    /// Takes one step of the searches through the @p n bytes at @p text. More may be added before run().
    void step(DicTrie const& trie, unsigned char const* text, std::size_t n);
    /// Runs the searches through the @p n bytes at @p text to their ends.
    void run(DicTrie const& trie, unsigned char const* text, std::size_t n);

private:
    struct Walk {
        std::uint32_t search;
        std::uint32_t start;
        std::uint32_t at;  // position of the next byte
        std::uint32_t base;
    };
    struct Tail {
        std::uint32_t search;
        std::uint32_t start;
        std::uint32_t length;
        std::uint32_t index;  // of the leaf cell
    };

    template <bool kFirst>
    void stepAll(DicTrie const& trie, unsigned char const* text, std::size_t n);
    void endTails(DicTrie const& trie, unsigned char const* text, std::size_t n);

    RawBuffer<Match> matches_;  // by number of the search
    RawBuffer<Walk> walks_;
    RawBuffer<Tail> tails_;
    bool stepped_ = false;
};

}  // namespace TAVO

#endif
