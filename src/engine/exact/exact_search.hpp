// The search through all candidates of a sentence, byte by byte.
#ifndef TAVO_ENGINE_EXACT_EXACT_SEARCH_HPP
#define TAVO_ENGINE_EXACT_EXACT_SEARCH_HPP

#include "engine/exact/exact_walk.hpp"
#include "engine/exact/lattice_constraints.hpp"
#include "engine/lattice_node.hpp"
#include "engine/node_pool.hpp"
#include "engine/path_key.hpp"
#include "engine/sentence.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace TAVO {

class ConnTable;
class RecordChain;

/// Makes every candidate of a text, from its last byte to its first, and gives each its best successor by the tie rules
/// of Lattice. It is the builder of walkBackward().
class ExactSearch {
public:
    ExactSearch(NodePool& pool, ConnTable const& table, LatticeConstraints const& constraints)
        : pool_(pool), table_(table), constraints_(constraints) {}

    /// Adds the nodes of @p sentence and returns the first one of the best path, null when there is no path. The text
    /// is at most kMaxSentenceBytes long.
    LatticeNode const* build(std::string_view text, DicSet const& dics);

    /// A node behind a segment of a text, with the best sums from it to the end of the sentence.
    struct Successor {
        unsigned number;
        std::uint16_t column;
        PathKey key;
    };
    /// Adds the nodes of the segment @p range of @p text, behind which @p successors stand, in the order of making.
    /// Each of these is a node without a record whose length is its number. False when a word reaches over the end of
    /// the segment.
    bool buildPiece(std::string_view text, WalkRange range, std::span<Successor const> successors, DicSet const& dics);

    /// The nodes built last that start at position @p p.
    std::span<LatticeNode const> starts(std::size_t p) const noexcept { return starts_[p - range_.begin]; }
    /// The nodes built last, by position.
    std::vector<std::span<LatticeNode const>> const& starts() const noexcept { return starts_; }
    /// The best node at the beginning of what was built, for a word of id @p left before it; null for none.
    LatticeNode const* first(std::uint16_t left) const noexcept { return bestAfter(range_.begin, left).next; }

    void beginPosition(std::size_t) { pool_.beginPosition(); }
    void addUnknown(std::size_t p, std::uint32_t length);
    void addRecords(std::size_t p, std::uint32_t length, RecordChain chain);
    void addFixed(std::size_t p, std::uint32_t length, unsigned char const* record);
    void endPosition(std::size_t p) { starts_[p - range_.begin] = pool_.position(); }

private:
    struct Best {
        LatticeNode const* next;
        PathKey key;
    };

    bool endsText(std::size_t position) const noexcept { return position == textEnd_; }
    Best bestAfter(std::size_t end, std::uint16_t left) const noexcept;
    Best ending(std::uint8_t cost) const noexcept;
    void addNode(unsigned char const* record, std::uint32_t length, Best const& best);

    NodePool& pool_;
    ConnTable const& table_;
    LatticeConstraints const& constraints_;
    WalkRange range_{0, 0};
    std::size_t textEnd_ = 0;                           // beyond the range, when that is a segment
    bool crossed_ = false;                              // a word reaches over the end of the range
    std::vector<std::span<LatticeNode const>> starts_;  // by position of the range, its end included
};

}  // namespace TAVO

#endif
