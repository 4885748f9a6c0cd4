// One candidate word occurrence in a sentence's lattice.
#ifndef TAVO_ENGINE_LATTICE_NODE_HPP
#define TAVO_ENGINE_LATTICE_NODE_HPP

#include <cstdint>

namespace TAVO {

struct LatticeNode {
    unsigned char const* record;  ///< head of the dictionary record, or kUnknownRecord
    LatticeNode const* next;      ///< chosen following node; null when the word ends the sentence
    std::uint32_t start;          ///< in bytes from the start of the sentence
    std::uint32_t length;         ///< in bytes
    std::uint32_t connSum;        ///< connection costs from here to the end along next, end included
    std::uint32_t wordSum;        ///< word costs of this node and of those along next
};

}  // namespace TAVO

#endif
