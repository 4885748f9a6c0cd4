// Builds the lattice of a sentence backward and chooses every node's best
// continuation on the way.
#ifndef TAVO_ENGINE_LATTICE_HPP
#define TAVO_ENGINE_LATTICE_HPP

#include "engine/lattice_node.hpp"
#include "engine/sentence.hpp"

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace TAVO {

class ConnTable;
class DicSet;

/// The lattices of all sentences of one input. Nodes live until clear(); their
/// addresses never change.
///
/// Invariants:
/// 1. The nodes that start at one position stand next to each other, in the
///    order of their making: two-byte unknown word, one-byte unknown word, then
///    dictionary by dictionary, by increasing length, in chain order.
/// 2. next of a node starts where the node ends.
class Lattice {
public:
    /// Room for @p capacity nodes is allocated at once; 0 means 4096.
    explicit Lattice(std::uint32_t capacity);
    ~Lattice();

    bool ready() const noexcept;
    void clear() noexcept;

    /// Adds the nodes of @p sentence and sets its bestStart (kNoNode when no
    /// complete path exists). Throws tavo_not_ready without table or dictionary,
    /// too_long_string for a text whose sums could leave 32 bits, bad_alloc.
    void build(Sentence& sentence, ConnTable const* table, DicSet const& dics);

    LatticeNode const& node(std::uint32_t index) const noexcept;
    /// Index of the first node that starts where @p node starts, and their number.
    std::pair<std::uint32_t, std::uint32_t> candidates(Sentence const& sentence,
                                                       LatticeNode const& node) const noexcept;

private:
    struct Search;
    std::unique_ptr<Search> search_;
};

/// The chosen path of @p sentence from first to last node; empty without result.
std::vector<LatticeNode const*> bestPath(Lattice const& lattice, Sentence const& sentence);

}  // namespace TAVO

#endif
