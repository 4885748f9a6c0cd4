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
/// it finds the keys that are longer, as DicTrie::prefixSearch() does.
class PrefixBatch {
public:
    struct Match {
        unsigned char const* head;  ///< of the records, RecordChain(head, leafEnd)
        std::uint32_t search;       ///< number of the search
        std::uint32_t length;
    };

    void clear() noexcept {
        walks_.clear();
        tails_.clear();
        matches_.clear();
    }
    /// Adds search number @p search, which began at @p start and has come to the node
    /// @p base with @p length bytes; the byte behind them is @p byte.
    void addWalk(DicTrie const& trie, std::uint32_t search, std::uint32_t start, std::uint32_t length,
                 std::uint32_t base, std::uint32_t byte) {
        walks_.push({search, start, start + length, base});
        trie.prefetchChild(base, byte);
    }
    /// The same for one that has come to the leaf cell @p cell, the label included.
    void addTail(DicTrie const& trie, std::uint32_t search, std::uint32_t start, std::uint32_t length,
                 std::uint32_t cell) {
        tails_.push({search, start, length, cell});
        trie.prefetchTail(cell);
    }
    /// Runs the searches through the @p n bytes at @p text.
    void run(DicTrie const& trie, unsigned char const* text, std::size_t n);

    /// All matches; those of one search by increasing length.
    RawBuffer<Match> const& matches() const noexcept { return matches_; }

private:
    struct Walk {
        std::uint32_t search;
        std::uint32_t start;
        std::uint32_t at;  // position of the next byte
        std::uint32_t base;
    };
    struct Found {
        std::uint32_t search;
        std::uint32_t start;
        std::uint32_t length;
        std::uint32_t value;  // of the key's end, or of the leaf cell
    };

    template <bool kFirst>
    void step(DicTrie const& trie, unsigned char const* text, std::size_t n);
    void endTails(DicTrie const& trie, unsigned char const* text, std::size_t n);

    RawBuffer<Match> matches_;
    RawBuffer<Walk> walks_;
    RawBuffer<Found> ends_;
    RawBuffer<Found> tails_;
};

}  // namespace TAVO

#endif
