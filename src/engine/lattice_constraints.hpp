// What a person has fixed in a sentence, as the search needs it.
#ifndef TAVO_ENGINE_LATTICE_CONSTRAINTS_HPP
#define TAVO_ENGINE_LATTICE_CONSTRAINTS_HPP

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace TAVO {

/// A span of the text that is one word. Its candidates are the records
/// [firstRecord, firstRecord + recordCount) of LatticeConstraints.
struct FixedSpan {
    std::uint32_t begin;
    std::uint32_t end;
    std::size_t firstRecord;
    std::size_t recordCount;
};

/// No node crosses a barrier; in a fixed span no node starts or ends, and over it
/// stands one node per candidate. The ends of fixed spans are barriers.
struct LatticeConstraints {
    std::vector<std::uint32_t> barriers;  ///< ascending; 0 and the text's end may be among them
    std::vector<FixedSpan> spans;         ///< ascending, not empty, without overlap
    /// Record heads with ids of the connection table, in the order in which
    /// their nodes are made. kUnknownRecord stands for an unknown word.
    std::vector<unsigned char const*> records;

    std::span<unsigned char const* const> candidates(FixedSpan const& span) const noexcept {
        return std::span(records).subspan(span.firstRecord, span.recordCount);
    }
};

}  // namespace TAVO

#endif
