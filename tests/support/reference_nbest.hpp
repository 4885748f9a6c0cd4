// The N-best queue and the enumeration of all paths, written down slowly and
// obviously: the gold standards of the library's search.
#ifndef TAVO_TESTS_REFERENCE_NBEST_HPP
#define TAVO_TESTS_REFERENCE_NBEST_HPP

#include "support/reference_search.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

namespace TAVO::test {

/// Connection sum and word-cost sum.
using ReferenceKey = std::pair<std::uint64_t, std::uint64_t>;

struct ReferencePath {
    ReferenceKey key;
    std::vector<int> nodes;  // indexes into ReferenceLattice::nodes

    bool operator==(ReferencePath const&) const = default;
};

/// The first @p n paths that leave the queue. Each partial path is an entry with
/// a list of nodes of its own.
std::vector<ReferencePath> referenceNBest(ReferenceLattice const& lattice, CostFunction const& cost, std::size_t n);

/// One word of an enumerated path: start, length, id, cost, dictionary.
using PlainWord = std::tuple<std::size_t, std::size_t, unsigned, unsigned, int>;
using PlainPath = std::pair<ReferenceKey, std::vector<PlainWord>>;

/// Every complete path in no particular order, from the text and the words
/// alone: no lattice, no sums kept. Nothing when there are more than @p most.
std::optional<std::vector<PlainPath>> enumeratePaths(std::string const& text,
                                                     std::vector<WordTable> const& dictionaries,
                                                     CostFunction const& cost, std::size_t most);

}  // namespace TAVO::test

#endif
