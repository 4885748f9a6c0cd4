// One candidate word occurrence in a sentence's lattice.
#ifndef TAVO_ENGINE_LATTICE_NODE_HPP
#define TAVO_ENGINE_LATTICE_NODE_HPP

#include <cstdint>

namespace TAVO {

/// Nodes of one position stand next to each other in memory, so neither a link
/// nor the start is kept in them. The search reads the second half of a node
/// for every pair; 32 bytes keep two nodes to a cache line.
struct LatticeNode {
    static constexpr std::uint16_t kFirstAtPosition = 1;
    static constexpr std::uint16_t kAlone = 2;  ///< the other candidates of its position were not kept

    unsigned char const* record;  ///< head of the dictionary record, or kUnknownRecord
    LatticeNode const* next;      ///< best successor; null when the word ends the sentence
    std::uint32_t length;         ///< in bytes
    std::uint16_t column;         ///< of the connection matrix, for any word before this one
    std::uint16_t flags;
    std::uint32_t wordSum;  ///< word costs of this node and of those behind it on its best path
    std::uint32_t connSum;  ///< connection costs from here to the end of the sentence, end included
};
static_assert(sizeof(LatticeNode) == 32);

}  // namespace TAVO

#endif
