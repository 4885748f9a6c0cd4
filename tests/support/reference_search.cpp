#include "support/reference_search.hpp"

namespace TAVO::test {
namespace {

class Search {
public:
    Search(std::string const& text, CostFunction const& cost) : text_(text), cost_(cost) {
        lattice_.lastMade.assign(text.size() + 1, -1);
    }

    ReferenceLattice run(std::vector<WordTable> const& dictionaries) {
        for (std::size_t end = text_.size(); end > 0; --end) {
            insertUnknown(end);
            for (WordTable const& words : dictionaries) insertWords(end - 1, words);
        }
        if (!text_.empty()) lattice_.best = best(0, 1);
        return lattice_;
    }

private:
    /// The best node that starts at @p position for a word of id @p left before it.
    int best(std::size_t position, unsigned left) const {
        std::uint64_t total = 4294967294;
        int chosen = -1;
        for (int i = lattice_.lastMade[position]; i != -1; i = lattice_.nodes[static_cast<std::size_t>(i)].madeBefore) {
            ReferenceNode const& node = lattice_.nodes[static_cast<std::size_t>(i)];
            unsigned const c = cost_(left, node.record.pid);
            if (c == 255) continue;
            std::uint64_t const sum = node.connSum + c;
            bool const better =
                sum < total || (sum == total && chosen != -1 &&
                                node.wordSum <= lattice_.nodes[static_cast<std::size_t>(chosen)].wordSum);
            if (!better) continue;
            total = sum;
            chosen = i;
        }
        return chosen;
    }

    void make(std::size_t start, std::size_t length, Record record, std::uint64_t connSum, int next) {
        std::uint64_t const after = next == -1 ? 0 : lattice_.nodes[static_cast<std::size_t>(next)].wordSum;
        int& last = lattice_.lastMade[start];
        lattice_.nodes.push_back({start, length, record, connSum, record.cost + after, next, last});
        last = static_cast<int>(lattice_.nodes.size()) - 1;
    }

    void insertUnknown(std::size_t end) {
        std::uint64_t connSum = 255;
        int next = -1;
        if (end != text_.size()) {
            next = best(end, 3);
            if (next == -1) return;
            ReferenceNode const& node = lattice_.nodes[static_cast<std::size_t>(next)];
            connSum = node.connSum + cost_(3, node.record.pid);
        }
        make(end - 1, 1, {3, 255}, connSum, next);
        if (end >= 2 && static_cast<unsigned char>(text_[end - 2]) >= 128) make(end - 2, 2, {3, 255}, connSum, next);
    }

    void insertWords(std::size_t start, WordTable const& words) {
        for (std::size_t length = 1; start + length <= text_.size(); ++length) {
            if (text_[start + length - 1] == '\0') return;
            auto const found = words.find(text_.substr(start, length));
            if (found == words.end()) continue;
            unsigned handled = 0;
            for (Record const& record : found->second) {
                if (record.pid == handled) continue;
                handled = record.pid;
                insertRecord(start, length, record);
            }
        }
    }

    void insertRecord(std::size_t start, std::size_t length, Record record) {
        if (start + length == text_.size()) {
            unsigned const c = cost_(record.pid, 2);
            if (c != 255) make(start, length, record, c, -1);
            return;
        }
        int const next = best(start + length, record.pid);
        if (next == -1) return;
        ReferenceNode const& node = lattice_.nodes[static_cast<std::size_t>(next)];
        make(start, length, record, node.connSum + cost_(record.pid, node.record.pid), next);
    }

    std::string const& text_;
    CostFunction const& cost_;
    ReferenceLattice lattice_;
};

}  // namespace

ReferenceLattice referenceSearch(std::string const& text, std::vector<WordTable> const& dictionaries,
                                 CostFunction const& cost) {
    return Search(text, cost).run(dictionaries);
}

}  // namespace TAVO::test
