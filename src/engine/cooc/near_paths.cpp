#include "engine/cooc/near_paths.hpp"

#include <algorithm>
#include <utility>

namespace TAVO {

std::optional<NearPaths::Path> NearPaths::best(Sentence const& sentence, PathKey limit) {
    if (sentence.startEdgeList == Sentence::kNoEdges) return std::nullopt;
    lattice_.eachEdge(lattice_.list(sentence.startEdgeList), [&](std::uint32_t node, PathKey key) {
        if (key <= limit) reach(node, key - lattice_.key(node), kNone, CoocHistories::kEmpty, 0);
    });
    while (!waiting_.empty()) {
        std::vector<std::uint32_t> states = std::move(waiting_.begin()->second);
        waiting_.erase(waiting_.begin());
        prune(states);
        for (std::uint32_t const state : states) leave(state, limit);
    }
    if (best_ == kNone) return std::nullopt;
    return pathTo(best_, bestKey_);
}

void NearPaths::reach(std::uint32_t node, PathKey before, std::uint32_t parent, std::uint32_t history,
                      std::uint32_t begin) {
    LatticeNode const& word = nodes_.at(node);
    history = histories_.extended(history, word.record, begin, word.length);
    waiting_[node].push_back(static_cast<std::uint32_t>(states_.size()));
    states_.push_back({before, node, parent, history, begin});
}

void NearPaths::prune(std::vector<std::uint32_t>& states) const {
    // Of equal ones the first stays.
    std::stable_sort(states.begin(), states.end(), [this](std::uint32_t a, std::uint32_t b) {
        return std::pair(states_[a].history, states_[a].before) < std::pair(states_[b].history, states_[b].before);
    });
    auto const isSame = [this](std::uint32_t a, std::uint32_t b) { return states_[a].history == states_[b].history; };
    states.erase(std::unique(states.begin(), states.end(), isSame), states.end());
    if (states.size() <= kMostHistories) return;
    std::stable_sort(states.begin(), states.end(), [this](std::uint32_t a, std::uint32_t b) {
        return scoreOf(a) != scoreOf(b) ? scoreOf(a) > scoreOf(b) : states_[a].before < states_[b].before;
    });
    states.resize(kMostHistories);
}

void NearPaths::leave(std::uint32_t index, PathKey limit) {
    State const state = states_[index];
    std::uint32_t const edges = lattice_.edgesOf(state.node);
    if (edges == AllPaths::kNone) {
        PathKey const key = state.before + lattice_.key(state.node);
        std::uint64_t const score = scoreOf(index);
        std::uint64_t const bestScore = best_ == kNone ? 0 : scoreOf(best_);
        if (best_ != kNone && (score < bestScore || (score == bestScore && key >= bestKey_))) return;
        best_ = index;
        bestKey_ = key;
        return;
    }
    EdgeList const& list = lattice_.list(edges);
    PathKey const withNode = state.before + (lattice_.key(state.node) - list.bestKey);
    std::uint32_t const end = state.begin + nodes_.at(state.node).length;
    lattice_.eachEdge(list, [&](std::uint32_t node, PathKey key) {
        PathKey const whole = withNode + key;
        if (whole <= limit) reach(node, whole - lattice_.key(node), index, state.history, end);
    });
}

NearPaths::Path NearPaths::pathTo(std::uint32_t state, PathKey key) const {
    Path path{scoreOf(state), key, {}, {}};
    for (; state != kNone; state = states_[state].parent) {
        path.nodes.push_back(states_[state].node);
        path.before.push_back(states_[state].before);
    }
    std::reverse(path.nodes.begin(), path.nodes.end());
    std::reverse(path.before.begin(), path.before.end());
    return path;
}

}  // namespace TAVO
