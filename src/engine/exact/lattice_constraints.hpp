// What a person has fixed in a sentence, as the searches need it.
#ifndef TAVO_ENGINE_EXACT_LATTICE_CONSTRAINTS_HPP
#define TAVO_ENGINE_EXACT_LATTICE_CONSTRAINTS_HPP

#include "dic/conn_table.hpp"

#include <algorithm>
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
/// stands one node per candidate.
///
/// What is fixed always stands: when the connection table leaves no path, a
/// search runs once more with forced set, and next to a fixed word a connection
/// that the table forbids costs kForcedCost.
struct LatticeConstraints {
    /// The largest cost that a connection can have.
    static constexpr std::uint8_t kForcedCost = ConnTable::kForbidden - 1;

    std::vector<std::uint32_t> barriers;  ///< ascending; the ends of spans are among them
    std::vector<FixedSpan> spans;         ///< ascending, not empty, without overlap
    /// Record heads with ids of the connection table, in the order in which
    /// their nodes are made. kUnknownRecord stands for an unknown word.
    std::vector<unsigned char const*> records;
    bool forced = false;

    std::span<unsigned char const* const> candidates(FixedSpan const& span) const noexcept {
        return std::span(records).subspan(span.firstRecord, span.recordCount);
    }
    /// The cost of a connection for which the table says @p cost.
    static std::uint8_t connection(std::uint8_t cost, bool isForced) noexcept {
        return cost == ConnTable::kForbidden && isForced ? kForcedCost : cost;
    }
    /// True when a fixed word begins or ends at @p position and forced is set.
    bool forcesAt(std::size_t position) const noexcept {
        if (!forced) return false;
        auto const behind = std::upper_bound(spans.begin(), spans.end(), position,
                                             [](std::size_t at, FixedSpan const& span) { return at < span.begin; });
        if (behind == spans.begin()) return false;
        FixedSpan const& span = *std::prev(behind);
        return span.begin == position || span.end == position;
    }
};

}  // namespace TAVO

#endif
