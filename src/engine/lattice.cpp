#include "engine/lattice.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "engine/exact/exact_search.hpp"

#include <tavo/error.hpp>

#include <string>

namespace TAVO {

void checkSearchable(Sentence const& sentence, ConnTable const* table, DicSet const& dics) {
    if (table == nullptr) throw tavo_not_ready("No ConnTable: Need to call setConnTablePath()");
    if (dics.getDicCount() == 0) throw tavo_not_ready("No Dictionary: Need to call addDicPath()");
    std::size_t const length = sentence.searchText().size();
    if (length > kMaxSentenceBytes) throw too_long_string("Exceed limit: length=" + std::to_string(length));
}

void Lattice::clear() noexcept {
    pool_.clear();
    paths_.clear();
    candidates_.clear();
}

void Lattice::search(std::span<Sentence> sentences, ConnTable const* table, DicSet const& dics) {
    texts_.clear();
    for (Sentence& sentence : sentences) {
        checkSearchable(sentence, table, dics);
        sentence.path = {};
        if (!sentence.searchText().empty()) texts_.push_back(sentence.searchText());
    }
    if (texts_.empty()) return;
    state_.indexes.attach(*table, dics);
    paths_.setTable(*table);
    found_.assign(texts_.size(), {});
    if (state_.indexes.isUsable()) fast_.search(texts_, *table, dics, found_);
    LatticeConstraints const none;
    auto found = found_.begin();
    for (Sentence& sentence : sentences) {
        if (sentence.searchText().empty()) continue;
        sentence.path = *found++;
        if (!sentence.path.exists())
            sentence.path = LazyPath(ExactSearch(pool_, *table, none).build(sentence.searchText(), dics));
    }
}

void Lattice::build(Sentence& sentence, ConnTable const* table, DicSet const& dics, LatticeConstraints& constraints) {
    checkSearchable(sentence, table, dics);
    ExactSearch search(pool_, *table, constraints);
    sentence.path = LazyPath(search.build(sentence.searchText(), dics));
    if (sentence.path.exists() || constraints.spans.empty()) return;
    constraints.forced = true;
    sentence.path = LazyPath(search.build(sentence.searchText(), dics));
}

std::span<LatticeNode const> Lattice::candidates(LatticeNode const* node, std::string_view text, std::size_t start,
                                                 ConnTable const* table, DicSet const& dics) const {
    if ((node->flags & LatticeNode::kAlone) == 0) return pool_.candidates(node);
    if (table == nullptr || !isAttached(*table, dics)) return {};
    return candidates_.at(text, start, *table, dics);
}

std::vector<LatticeNode const*> bestPath(Sentence const& sentence) {
    std::vector<LatticeNode const*> path;
    for (LatticeNode const* node = sentence.path.first(); node != nullptr; node = node->next) path.push_back(node);
    return path;
}

}  // namespace TAVO
