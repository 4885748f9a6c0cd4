// The search through a sentence in which a person has fixed words and borders.
#ifndef TAVO_ENGINE_CONSTRAINED_SEARCH_HPP
#define TAVO_ENGINE_CONSTRAINED_SEARCH_HPP

#include "engine/lattice_constraints.hpp"
#include "engine/lattice_node.hpp"
#include "engine/node_pool.hpp"
#include "engine/sentence.hpp"

#include <cstdint>
#include <span>
#include <vector>

namespace TAVO {

class ConnTable;
class DicSet;
class RecordChain;

/// Builds the nodes of one sentence under constraints, with the order of making
/// and the tie rules of Lattice. It stands beside Lattice so that the search of
/// plain text tests nothing for constraints.
///
/// What is fixed always stands: when the connection table forbids every path,
/// the search runs once more and lets a fixed word connect at the cost 255 where
/// the table forbids it.
class ConstrainedSearch {
public:
    ConstrainedSearch(NodePool& pool, ConnTable const& table, DicSet const& dics, LatticeConstraints const& constraints)
        : pool_(pool), table_(table), dics_(dics), constraints_(constraints) {}

    /// Adds the nodes of @p sentence and sets its bestStart; null when no path
    /// exists. The text is at most kMaxSentenceBytes long.
    void build(Sentence& sentence);

private:
    struct Starts {
        std::span<LatticeNode const> nodes;
        bool fixed = false;  // they stand over a fixed span
    };
    struct Best {
        LatticeNode const* next;
        std::uint32_t connSum;
        std::uint32_t wordSum;
        bool found;
    };

    LatticeNode const* search();
    Best bestAfter(std::size_t end, std::uint16_t left, bool leftIsFixed) const noexcept;
    void addFixed(FixedSpan const& span);
    void addPlain(std::size_t position, std::size_t limit);
    void addUnknown(std::size_t position, std::uint32_t length);
    void addRecords(std::size_t position, std::uint32_t length, RecordChain chain);
    void addRecord(std::size_t position, std::uint32_t length, unsigned char const* record, bool fixed);
    void addNode(unsigned char const* record, std::uint32_t length, Best const& best);

    NodePool& pool_;
    ConnTable const& table_;
    DicSet const& dics_;
    LatticeConstraints const& constraints_;
    std::string_view text_;
    std::vector<Starts> starts_;  // by position
    bool forced_ = false;         // fixed words connect at any cost
};

}  // namespace TAVO

#endif
