#include "support/reference_nbest.hpp"

#include <map>

namespace TAVO::test {
namespace {

struct Edge {
    int node;
    unsigned cost;
};

/// A partial path with what it has cost so far.
struct Entry {
    std::vector<int> nodes;
    std::uint64_t connSum;
    std::uint64_t wordSum;
};

class Queue {
public:
    Queue(ReferenceLattice const& lattice, CostFunction const& cost) : lattice_(lattice), cost_(cost) {
        std::vector<Edge> const starts = edgesTo(0, 1);
        for (auto start = starts.rbegin(); start != starts.rend(); ++start) insert({{}, 0, 0}, *start);
    }

    std::vector<ReferencePath> take(std::size_t n) {
        std::vector<ReferencePath> paths;
        while (paths.size() < n && !queue_.empty()) {
            auto const [key, entry] = *queue_.begin();
            queue_.erase(queue_.begin());
            ReferenceNode const& last = node(entry.nodes.back());
            if (last.next == -1) {
                paths.push_back({key, entry.nodes});
                continue;
            }
            std::vector<Edge> const edges = edgesTo(last.start + last.length, last.record.pid);
            for (auto edge = edges.rbegin(); edge != edges.rend(); ++edge) insert(entry, *edge);
        }
        return paths;
    }

private:
    ReferenceNode const& node(int index) const { return lattice_.nodes[static_cast<std::size_t>(index)]; }

    /// From the node made last to the one made first.
    std::vector<Edge> edgesTo(std::size_t position, unsigned left) const {
        std::vector<Edge> edges;
        for (int i = lattice_.lastMade[position]; i != -1; i = node(i).madeBefore)
            if (unsigned const c = cost_(left, node(i).record.pid); c != 255) edges.push_back({i, c});
        return edges;
    }

    void insert(Entry entry, Edge edge) {
        ReferenceNode const& next = node(edge.node);
        ReferenceKey const key{next.connSum + edge.cost + entry.connSum, next.wordSum + entry.wordSum};
        entry.nodes.push_back(edge.node);
        entry.connSum += edge.cost;
        entry.wordSum += next.record.cost;
        queue_.insert({key, entry});  // behind all entries of the same key
    }

    ReferenceLattice const& lattice_;
    CostFunction const& cost_;
    std::multimap<ReferenceKey, Entry> queue_;
};

class Enumeration {
public:
    Enumeration(std::string const& text, std::vector<WordTable> const& dictionaries, CostFunction const& cost,
                std::size_t most)
        : text_(text), dictionaries_(dictionaries), cost_(cost), most_(most) {}

    std::optional<std::vector<PlainPath>> run() {
        if (!text_.empty()) goOn(0, 1);
        if (paths_.size() > most_) return std::nullopt;
        return std::move(paths_);
    }

private:
    void goOn(std::size_t start, unsigned left) {
        if (static_cast<unsigned char>(text_[start]) >= 128 && start + 2 <= text_.size())
            take(start, 2, {3, 255}, left);
        take(start, 1, {3, 255}, left);
        std::size_t const nul = text_.find('\0', start);
        std::size_t const stop = nul == std::string::npos ? text_.size() : nul;
        for (WordTable const& words : dictionaries_) {
            for (std::size_t length = 1; length <= kMostFormBytes && start + length <= stop; ++length) {
                auto const found = words.find(text_.substr(start, length));
                if (found == words.end()) continue;
                unsigned handled = 0;
                for (Record const& record : found->second) {
                    if (record.pid != handled) take(start, length, record, left);
                    handled = record.pid;
                }
            }
        }
    }

    void take(std::size_t start, std::size_t length, Record record, unsigned left) {
        unsigned const before = cost_(left, record.pid);
        if (before == 255 || paths_.size() > most_) return;
        std::size_t const end = start + length;
        bool const unknown = record.pid == 3;
        unsigned const after = end != text_.size() ? 0 : unknown ? 255 : cost_(record.pid, 2);
        if (end == text_.size() && !unknown && after == 255) return;
        words_.push_back({start, length, record.pid, record.cost, record.dictionary});
        key_.first += before + after;
        key_.second += record.cost;
        if (end == text_.size()) {
            paths_.emplace_back(key_, words_);
        } else {
            goOn(end, record.pid);
        }
        words_.pop_back();
        key_.first -= before + after;
        key_.second -= record.cost;
    }

    std::string const& text_;
    std::vector<WordTable> const& dictionaries_;
    CostFunction const& cost_;
    std::size_t most_;
    std::vector<PlainWord> words_;
    ReferenceKey key_{0, 0};
    std::vector<PlainPath> paths_;
};

}  // namespace

std::vector<ReferencePath> referenceNBest(ReferenceLattice const& lattice, CostFunction const& cost, std::size_t n) {
    return Queue(lattice, cost).take(n);
}

std::optional<std::vector<PlainPath>> enumeratePaths(std::string const& text,
                                                     std::vector<WordTable> const& dictionaries,
                                                     CostFunction const& cost, std::size_t most) {
    return Enumeration(text, dictionaries, cost, most).run();
}

}  // namespace TAVO::test
