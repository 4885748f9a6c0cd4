#include "engine/nbest/nbest.hpp"

#include "engine/nbest/tied_paths.hpp"

#include <algorithm>
#include <utility>

namespace TAVO {

NBest::NBest(AllPaths const& lattice, Sentence const& sentence, std::size_t count)
    : lattice_(lattice),
      count_(count),
      firstList_(sentence.firstEdgeList),
      startList_(sentence.startEdgeList),
      excess_(startList_ - firstList_ + std::size_t{1}) {
    search();
}

void NBest::search() {
    PathKey key = lattice_.list(startList_).bestKey;
    Round round;
    wanted_ = count_;
    extend(PathTree::kRoot, startList_, key, round);
    takeKey(key, std::move(round));
    while (missing() != 0 && !waiting_.empty()) {
        auto const first = waiting_.begin();
        key = first->first;
        round = std::move(first->second);
        waitingCount_ -= round.size();
        waiting_.erase(first);
        takeKey(key, std::move(round));
    }
}

void NBest::takeKey(PathKey key, Round round) {
    for (Round next; !round.empty(); round.swap(next), next.clear()) {
        if (round.size() >= missing()) {
            TiedPaths tied(lattice_, firstList_, tree_);
            tied.find(round, missing(), [&](std::uint32_t step) { found_.push_back({step, key}); });
            return;
        }
        wanted_ = missing() - round.size();
        dropNeedless();
        for (PathTree::Step const path : round) {
            std::uint32_t const step = tree_.add(path);
            std::uint32_t const list = lattice_.edgesOf(path.node);
            if (list == AllPaths::kNone) {
                found_.push_back({step, key});
            } else {
                extend(step, list, key, next);
            }
        }
    }
}

void NBest::extend(std::uint32_t step, std::uint32_t index, PathKey key, Round& next) {
    EdgeList const& list = lattice_.list(index);
    Excess const& excess = excessOf(index);
    bool const othersNeeded = excess.smallest < limit_ - key;
    if (excess.tight == 1 && !othersNeeded) {
        next.push_back({list.bestNode, step});
        return;
    }
    lattice_.eachEdge(list, [&](std::uint32_t node, PathKey edgeKey) {
        PathKey const more = edgeKey - list.bestKey;
        if (more == 0) {
            next.push_back({node, step});
        } else if (othersNeeded) {
            wait(key + more, {node, step});
        }
    });
}

void NBest::wait(PathKey key, PathTree::Step path) {
    if (key >= limit_) return;
    waiting_[key].push_back(path);
    ++waitingCount_;
    dropNeedless();
}

void NBest::dropNeedless() {
    while (!waiting_.empty()) {
        auto const last = std::prev(waiting_.end());
        if (waitingCount_ - last->second.size() < wanted_) return;
        waitingCount_ -= last->second.size();
        limit_ = last->first;
        waiting_.erase(last);
    }
}

NBest::Excess const& NBest::excessOf(std::uint32_t index) {
    Excess& excess = excess_[index - firstList_];
    if (excess.smallest != 0) return excess;
    EdgeList const& list = lattice_.list(index);
    excess.smallest = kNoPath;
    lattice_.eachEdge(list, [&](std::uint32_t, PathKey edgeKey) {
        PathKey const more = edgeKey - list.bestKey;
        if (more == 0) {
            ++excess.tight;
        } else {
            excess.smallest = std::min(excess.smallest, more);
        }
    });
    return excess;
}

}  // namespace TAVO
