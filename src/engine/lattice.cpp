#include "engine/lattice.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "engine/constrained_search.hpp"

#include <tavo/error.hpp>

#include <functional>
#include <string>

namespace TAVO {

void checkSearchable(Sentence const& sentence, ConnTable const* table, DicSet const& dics) {
    if (table == nullptr) throw tavo_not_ready("No ConnTable: Need to call setConnTablePath()");
    if (dics.getDicCount() == 0) throw tavo_not_ready("No Dictionary: Need to call addDicPath()");
    std::size_t const length = sentence.text.size();
    if (length > kMaxSentenceBytes) throw too_long_string("Exceed limit: length=" + std::to_string(length));
}

void Lattice::clear() noexcept {
    pool_.clear();
    candidates_.clear();
    forgetPaths();
}

bool Lattice::belongTogether(std::string_view first, std::string_view next) const noexcept {
    constexpr std::size_t kMostBytes = 16384;  // paths wait in the caches
    return !search_.isLong(first.size()) && !search_.isLong(next.size()) && std::less<>()(first.data(), next.data()) &&
           static_cast<std::size_t>(next.data() + next.size() - first.data()) <= kMostBytes;
}

void Lattice::search(std::span<Sentence> sentences, ConnTable const* table, DicSet const& dics) {
    texts_.clear();
    for (Sentence& sentence : sentences) {
        checkSearchable(sentence, table, dics);
        sentence.bestStart = nullptr;
        sentence.unread = false;
        if (!sentence.text.empty()) texts_.push_back(sentence.text);
    }
    if (texts_.empty()) return;
    results_.resize(texts_.size());
    search_.search(texts_, *table, dics, results_);
    std::uint32_t number = 0;
    for (Sentence& sentence : sentences) {
        if (sentence.text.empty()) continue;
        BestPathSearch::Result const result = results_[number];
        sentence.unread = result == BestPathSearch::Result::kFound;
        sentence.unreadNumber = number++;
        if (result != BestPathSearch::Result::kTooFar) continue;
        LatticeConstraints const none;
        ConstrainedSearch(pool_, *table, none).build(sentence, dics);
    }
}

void Lattice::read(Sentence& sentence) {
    if (!sentence.unread) return;
    LatticeNode const* first = nullptr;
    LatticeNode const** link = &first;
    search_.readPath(sentence.unreadNumber, [&](BestPathSearch::PathWord const& word) {
        pool_.beginPosition();
        LatticeNode& node = pool_.make();
        node.record = word.record;
        node.next = nullptr;
        node.length = word.length;
        node.column = word.column;
        node.flags = LatticeNode::kFirstAtPosition | LatticeNode::kAlone;
        node.wordSum = word.wordSum;
        node.connSum = word.connSum;
        *link = &node;
        link = &node.next;
    });
    sentence.bestStart = first;
    sentence.unread = false;
}

void Lattice::build(Sentence& sentence, ConnTable const* table, DicSet const& dics, LatticeConstraints& constraints) {
    checkSearchable(sentence, table, dics);
    ConstrainedSearch search(pool_, *table, constraints);
    search.build(sentence, dics);
    if (sentence.bestStart != nullptr || constraints.spans.empty()) return;
    constraints.forced = true;
    search.build(sentence, dics);
}

std::span<LatticeNode const> Lattice::candidates(LatticeNode const* node, std::string_view text, std::size_t start,
                                                 ConnTable const* table, DicSet const& dics) const {
    if ((node->flags & LatticeNode::kAlone) == 0) return pool_.candidates(node);
    if (table == nullptr || !isAttached(*table, dics)) return {};
    return candidates_.at(text, start, *table, dics);
}

std::vector<LatticeNode const*> bestPath(Sentence const& sentence) {
    std::vector<LatticeNode const*> path;
    for (LatticeNode const* node = sentence.bestStart; node != nullptr; node = node->next) path.push_back(node);
    return path;
}

}  // namespace TAVO
