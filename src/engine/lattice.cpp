#include "engine/lattice.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "engine/constrained_search.hpp"

#include <tavo/error.hpp>

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
    search_.forgetPath();
}

void Lattice::search(Sentence& sentence, ConnTable const* table, DicSet const& dics) {
    checkSearchable(sentence, table, dics);
    sentence.bestStart = nullptr;
    sentence.unread = false;
    if (sentence.text.empty()) return;
    switch (search_.search(sentence.text, *table, dics)) {
        case BestPathSearch::Result::kFound:
            sentence.unread = true;
            break;
        case BestPathSearch::Result::kNothing:
            break;
        case BestPathSearch::Result::kTooFar: {
            LatticeConstraints const none;
            ConstrainedSearch(pool_, *table, none).build(sentence, dics);
        }
    }
}

void Lattice::read(Sentence& sentence) {
    if (!sentence.unread) return;
    LatticeNode const* first = nullptr;
    LatticeNode const** link = &first;
    search_.readPath([&](BestPathSearch::PathWord const& word) {
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
