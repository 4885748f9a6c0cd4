// Builds the lattice of a sentence with all its edges, for searches beyond the
// best path.
#ifndef TAVO_ENGINE_NBEST_ALL_PATHS_HPP
#define TAVO_ENGINE_NBEST_ALL_PATHS_HPP

#include "base/raw_buffer.hpp"
#include "dic/conn_table.hpp"
#include "engine/node_pool.hpp"
#include "engine/path_key.hpp"
#include "engine/sentence.hpp"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TAVO {

class DicSet;
class RecordChain;
struct LatticeConstraints;

/// The edges to the words that start at one position, as all words with one row
/// of the connection matrix that end there share them. In the order of making.
struct EdgeList {
    PathKey bestKey;          ///< smallest key of an edge; kNoPath without edges
    std::size_t firstCost;    ///< place of the first word's connection cost
    std::uint32_t firstNode;  ///< index of the first word
    std::uint32_t nodeCount;  ///< words at the position, connectable or not
    std::uint32_t bestNode;   ///< index of the chosen word
    std::uint32_t row;        ///< of the connection matrix
    std::uint32_t sameEnd;    ///< another list of the position
};

/// The longest sentence, in bytes, of an analysis for the N best paths.
inline constexpr std::size_t kMaxNBestBytes = 8192;

/// The lattices of all sentences of one input: the nodes that the rules of
/// Lattice name, made in the same order and with the same choices, and their
/// edges. Nodes are known by their index in the node pool.
///
/// An edge takes one byte, its connection cost: lists are shared by the words
/// that end at a position with equal rows, and the words that start at a
/// position have neighbouring indexes.
///
/// Invariants:
/// 1. Since clear() every node of the pool was made here.
/// 2. A list leads to nodes whose own lists have smaller indexes: what starts at
///    a position is made, with its lists, before any list of that position is.
class AllPaths {
public:
    static constexpr std::uint32_t kNone = Sentence::kNoEdges;

    void clear() noexcept;

    /// Every homograph is to be a node, also one that costs what another one does, which sums cannot tell apart. Of
    /// words that differ in their cooccurrence ids alone the first dictionary's is one.
    void keepHomographs(bool keep) noexcept { keepsHomographs_ = keep; }

    /// Adds nodes and edges of @p sentence to @p pool and to this, and sets its
    /// path (none when no complete path exists) and its edge lists. Throws
    /// as Lattice::build does.
    void build(Sentence& sentence, ConnTable const* table, DicSet const& dics, NodePool& pool);

    /// The same under constraints, forced ones where nothing else gives a path.
    void build(Sentence& sentence, ConnTable const* table, DicSet const& dics, NodePool& pool,
               LatticeConstraints& constraints);

    /// Nodes made since clear().
    std::size_t nodeCount() const noexcept { return keys_.size(); }
    /// The best sums from the node to the end of its sentence.
    PathKey key(std::uint32_t node) const noexcept { return keys_[node]; }
    /// The edges behind a node; kNone when the word ends the sentence.
    std::uint32_t edgesOf(std::uint32_t node) const noexcept { return edgesOf_[node]; }
    EdgeList const& list(std::uint32_t index) const noexcept { return lists_[index]; }

    /// The key of edge @p i (below nodeCount) of @p list, which leads to node
    /// firstNode + i: the best sums over that edge; kNoPath when the words must
    /// not stand next to each other.
    PathKey edgeKey(EdgeList const& list, std::uint32_t i) const noexcept {
        std::uint8_t const cost = costs_[list.firstCost + i];
        return cost == ConnTable::kForbidden ? kNoPath : keys_[list.firstNode + i] + pathKey(cost, 0);
    }
    /// Calls visit(node, key) for each edge of @p list in the order of making.
    template <class Visit>
    void eachEdge(EdgeList const& list, Visit&& visit) const {
        for (std::uint32_t i = 0; i < list.nodeCount; ++i) {
            if (PathKey const key = edgeKey(list, i); key != kNoPath) visit(list.firstNode + i, key);
        }
    }

private:
    class Builder;

    /// The nodes that start at one position.
    struct Starts {
        LatticeNode const* nodes;
        std::uint32_t firstNode;
        std::uint32_t nodeCount;
        std::uint32_t lists;  // the list made last for words that end here
        bool forced;          // words may stand here that the table forbids
    };

    void begin(Sentence& sentence);
    void finish(Sentence& sentence, Builder& builder);
    std::uint32_t edgesAfter(std::size_t end, std::uint16_t id, ConnTable const& table);
    std::uint32_t makeList(Starts const& starts, std::uint32_t row, ConnTable const& table);

    // By node.
    RawBuffer<PathKey> keys_;
    RawBuffer<std::uint32_t> edgesOf_;
    RawBuffer<std::uint16_t> columns_;  // of the connection matrix
    RawBuffer<EdgeList> lists_;
    RawBuffer<std::uint8_t> costs_;
    std::vector<Starts> starts_;  // by position of the sentence at work
    bool keepsHomographs_ = false;
};

}  // namespace TAVO

#endif
