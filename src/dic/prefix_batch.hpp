// Common-prefix searches from many positions of a text at once.
#ifndef TAVO_DIC_PREFIX_BATCH_HPP
#define TAVO_DIC_PREFIX_BATCH_HPP

#include "base/raw_buffer.hpp"
#include "dic/dic_trie.hpp"

#include <cstddef>
#include <cstdint>
#include <span>

namespace TAVO {

/// Takes one step of every search before the next step of any, and asks for the
/// cells of the next step while it is at the others, so that the searches wait
/// for memory together. Finds what DicTrie::prefixSearch() finds.
class PrefixBatch {
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    struct Match {
        unsigned char const* head;  ///< of the records, RecordChain(head, leafEnd)
        unsigned char const* leafEnd;
        std::uint32_t form;  ///< for the caller
        std::uint32_t length;
        std::uint32_t next;  ///< of the same start; kNone behind the last
    };

    /// Drops all matches; @p starts are the positions from now on.
    void begin(std::span<std::uint32_t const> starts);
    /// Adds the matches in @p trie of the @p n bytes at @p text, from each start.
    void search(DicTrie const& trie, unsigned char const* text, std::size_t n);

    /// All matches, start after start mixed.
    RawBuffer<Match>& matches() noexcept { return matches_; }
    /// Calls visit(Match const&) for each match from start number @p start: trie
    /// by trie in the order of the searches, by increasing length.
    template <class Visit>
    void eachMatch(std::size_t start, Visit&& visit) const {
        for (std::uint32_t i = lists_[start].first; i != kNone; i = matches_[i].next) visit(matches_[i]);
    }

private:
    struct List {
        std::uint32_t first;
        std::uint32_t last;
    };
    struct Walk {
        std::uint32_t start;  // number of the start
        std::uint32_t at;     // position of the next byte
        std::uint32_t base;
    };
    struct Found {
        std::uint32_t start;
        std::uint32_t length;
        std::uint32_t value;  // of the key's end, or of the leaf cell
    };

    void step(DicTrie const& trie, unsigned char const* text, std::size_t n, std::uint32_t length);
    void endTails(DicTrie const& trie, unsigned char const* text, std::size_t n);
    void add(std::uint32_t start, std::uint32_t length, unsigned char const* head, unsigned char const* leafEnd);

    std::span<std::uint32_t const> starts_;
    RawBuffer<List> lists_;  // by number of the start
    RawBuffer<Match> matches_;
    RawBuffer<Walk> walks_;
    RawBuffer<Found> ends_;
    RawBuffer<Found> tails_;
};

}  // namespace TAVO

#endif
