// The search through a sentence in which a person has fixed words and borders.
#ifndef TAVO_ENGINE_CONSTRAINED_SEARCH_HPP
#define TAVO_ENGINE_CONSTRAINED_SEARCH_HPP

#include "engine/lattice_constraints.hpp"
#include "engine/lattice_node.hpp"
#include "engine/node_pool.hpp"
#include "engine/path_key.hpp"
#include "engine/sentence.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace TAVO {

class ConnTable;
class DicSet;
class RecordChain;

/// Builds the nodes of one sentence with the order of making and the tie rules of
/// Lattice. It is the builder of its own walk (constrained_walk.hpp).
class ConstrainedSearch {
public:
    ConstrainedSearch(NodePool& pool, ConnTable const& table, LatticeConstraints const& constraints)
        : pool_(pool), table_(table), constraints_(constraints) {}

    /// Adds the nodes of @p sentence and sets its bestStart; null when no path
    /// exists. The text is at most kMaxSentenceBytes long.
    void build(Sentence& sentence, DicSet const& dics);

    /// The nodes of the sentence built last, by position.
    std::vector<std::span<LatticeNode const>> const& starts() const noexcept { return starts_; }

    void beginPosition(std::size_t) { pool_.beginPosition(); }
    void addUnknown(std::size_t p, std::uint32_t length);
    void addRecords(std::size_t p, std::uint32_t length, RecordChain chain);
    void addFixed(std::size_t p, std::uint32_t length, unsigned char const* record);
    void endPosition(std::size_t p) { starts_[p] = pool_.position(); }

private:
    struct Best {
        LatticeNode const* next;
        PathKey key;
    };

    Best bestAfter(std::size_t end, std::uint16_t left) const noexcept;
    void addNode(unsigned char const* record, std::uint32_t length, Best const& best);

    NodePool& pool_;
    ConnTable const& table_;
    LatticeConstraints const& constraints_;
    std::vector<std::span<LatticeNode const>> starts_;  // by position
};

}  // namespace TAVO

#endif
