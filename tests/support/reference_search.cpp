#include "support/reference_search.hpp"

#include <algorithm>
#include <utility>

namespace TAVO::test {
namespace {

class Search {
public:
    Search(std::string const& text, CostFunction const& cost, ReferenceConstraints const& constraints, bool forced)
        : text_(text), cost_(cost), constraints_(constraints), forced_(forced) {
        lattice_.lastMade.assign(text.size() + 1, -1);
    }

    ReferenceLattice run(std::vector<WordTable> const& dictionaries) {
        for (std::size_t end = text_.size(); end > 0; --end) {
            insertUnknown(end);
            for (WordTable const& words : dictionaries) insertWords(end - 1, words);
            insertSpan(end - 1);
        }
        if (!text_.empty()) lattice_.best = best(0, 1);
        return std::move(lattice_);
    }

private:
    bool allows(std::size_t start, std::size_t length) const {
        for (std::size_t const border : constraints_.borders)
            if (start < border && border < start + length) return false;
        for (auto const& [begin, span] : constraints_.spans)
            if (start < span.end && begin < start + length) return false;
        return true;
    }

    unsigned costAt(std::size_t position, unsigned left, unsigned right) const {
        unsigned const cost = cost_(left, right);
        bool atSpan = false;
        for (auto const& [begin, span] : constraints_.spans)
            atSpan = atSpan || begin == position || span.end == position;
        return cost == 255 && forced_ && atSpan ? 254 : cost;
    }

    /// The best node that starts at @p position for a word of id @p left before it.
    int best(std::size_t position, unsigned left) const {
        std::uint64_t total = 4294967294;
        int chosen = -1;
        for (int i = lattice_.lastMade[position]; i != -1; i = lattice_.nodes[static_cast<std::size_t>(i)].madeBefore) {
            ReferenceNode const& node = lattice_.nodes[static_cast<std::size_t>(i)];
            unsigned const c = costAt(position, left, node.record.pid);
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
            connSum = node.connSum + costAt(end, 3, node.record.pid);
        }
        if (allows(end - 1, 1)) make(end - 1, 1, {3, 255}, connSum, next);
        if (end >= 2 && static_cast<unsigned char>(text_[end - 2]) >= 128 && allows(end - 2, 2))
            make(end - 2, 2, {3, 255}, connSum, next);
    }

    void insertSpan(std::size_t start) {
        auto const span = constraints_.spans.find(start);
        if (span == constraints_.spans.end()) return;
        for (Record const& record : span->second.records) insertRecord(start, span->second.end - start, record);
    }

    void insertWords(std::size_t start, WordTable const& words) {
        std::size_t longest = 0;
        for (auto const& [form, records] : words) longest = std::max(longest, form.size());
        for (std::size_t length = 1; length <= longest && start + length <= text_.size(); ++length) {
            if (text_[start + length - 1] == '\0') return;
            auto const found = words.find(text_.substr(start, length));
            if (found == words.end() || !allows(start, length)) continue;
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
            // An unknown word ends the text at any cost.
            unsigned const c = record.pid == 3 ? 255 : costAt(text_.size(), record.pid, 2);
            if (c != 255 || record.pid == 3) make(start, length, record, c, -1);
            return;
        }
        int const next = best(start + length, record.pid);
        if (next == -1) return;
        ReferenceNode const& node = lattice_.nodes[static_cast<std::size_t>(next)];
        make(start, length, record, node.connSum + costAt(start + length, record.pid, node.record.pid), next);
    }

    std::string const& text_;
    CostFunction const& cost_;
    ReferenceConstraints const& constraints_;
    bool forced_;
    ReferenceLattice lattice_;
};

}  // namespace

ReferenceLattice referenceSearch(std::string const& text, std::vector<WordTable> const& dictionaries,
                                 CostFunction const& cost) {
    return referenceSearch(text, dictionaries, cost, {});
}

ReferenceLattice referenceSearch(std::string const& text, std::vector<WordTable> const& dictionaries,
                                 CostFunction const& cost, ReferenceConstraints const& constraints) {
    ReferenceLattice free = Search(text, cost, constraints, false).run(dictionaries);
    if (free.best != -1 || constraints.spans.empty()) return free;
    return Search(text, cost, constraints, true).run(dictionaries);
}

}  // namespace TAVO::test
