// The search written down slowly and obviously: the gold standard that the
// library's lattice is compared with.
#ifndef TAVO_TESTS_REFERENCE_SEARCH_HPP
#define TAVO_TESTS_REFERENCE_SEARCH_HPP

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace TAVO::test {

struct Record {
    unsigned pid;
    unsigned cost;
    int dictionary = -1;  // position in the list; -1 for the unknown word
};
/// What the search looks for at most.
inline constexpr std::size_t kMostFormBytes = 8;
/// Records of each surface form, in chain order; N-best looks at forms of kMostFormBytes at most.
using WordTable = std::map<std::string, std::vector<Record>>;
using CostFunction = std::function<unsigned(unsigned left, unsigned right)>;

struct ReferenceNode {
    std::size_t start;
    std::size_t length;
    Record record;
    std::uint64_t connSum;
    std::uint64_t wordSum;
    int next;        // index of the chosen following node, -1 at the end
    int madeBefore;  // index of the node made before it at the same start, -1 for none
};

struct ReferenceLattice {
    std::vector<ReferenceNode> nodes;  // in the order of making
    std::vector<int> lastMade;         // by position, -1 for none
    int best = -1;                     // chosen first node
};

/// Borders that no word crosses, and spans that are one word each: by their
/// start, where they end and which words they may be. Ends of spans are borders.
struct ReferenceConstraints {
    struct Span {
        std::size_t end;
        std::vector<Record> records;
    };
    std::set<std::size_t> borders;
    std::map<std::size_t, Span> spans;
};

/// Ids: 1 begins a text, 2 ends it, 3 is the unknown word. A cost of 255 forbids.
ReferenceLattice referenceSearch(std::string const& text, std::vector<WordTable> const& dictionaries,
                                 CostFunction const& cost);
/// Where the costs allow no path, connections at the ends of spans cost 254
/// instead of 255.
ReferenceLattice referenceSearch(std::string const& text, std::vector<WordTable> const& dictionaries,
                                 CostFunction const& cost, ReferenceConstraints const& constraints);

}  // namespace TAVO::test

#endif
