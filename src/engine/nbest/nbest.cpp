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
    wanted_ = count_;
    extend(PathTree::kRoot, startList_, key);
    round_.swap(next_);
    takeKey(key);
    while (missing() != 0 && !waiting_.empty()) {
        auto const first = waiting_.begin();
        key = first->first;
        round_.swap(first->second);
        waitingCount_ -= round_.size();
        leave(first);
        takeKey(key);
    }
}

void NBest::takeKey(PathKey key) {
    for (next_.clear(); !round_.empty(); round_.swap(next_), next_.clear()) {
        if (round_.size() >= missing()) {
            TiedPaths tied(lattice_, firstList_, tree_);
            tied.find(round_, missing(), [&](std::uint32_t step) { found_.push_back({step, key}); });
            return;
        }
        wanted_ = missing() - round_.size();
        pruneWaiting();
        for (PathTree::Step const path : round_) {
            std::uint32_t const step = tree_.add(path);
            std::uint32_t const list = lattice_.edgesOf(path.node);
            if (list == AllPaths::kNone) {
                found_.push_back({step, key});
            } else {
                extend(step, list, key);
            }
        }
    }
}

void NBest::extend(std::uint32_t step, std::uint32_t index, PathKey key) {
    EdgeList const& list = lattice_.list(index);
    Excess const& excess = excessOf(index);
    bool const othersNeeded = excess.smallest < limit_ - key;
    if (excess.tight == 1 && !othersNeeded) {
        next_.push_back({list.bestNode, step});
        return;
    }
    lattice_.eachEdge(list, [&](std::uint32_t node, PathKey edgeKey) {
        PathKey const more = edgeKey - list.bestKey;
        if (more == 0) {
            next_.push_back({node, step});
        } else if (othersNeeded) {
            wait(key + more, {node, step});
        }
    });
}

void NBest::wait(PathKey key, PathTree::Step path) {
    if (key >= limit_) return;
    auto paths = waiting_.lower_bound(key);
    if (paths == waiting_.end() || paths->first != key) {
        if (unused_.empty()) {
            paths = waiting_.try_emplace(paths, key);
        } else {
            unused_.back().key() = key;
            paths = waiting_.insert(paths, std::move(unused_.back()));
            unused_.pop_back();
        }
    }
    paths->second.push_back(path);
    ++waitingCount_;
    pruneWaiting();
}

void NBest::leave(Waiting::iterator paths) {
    unused_.push_back(waiting_.extract(paths));
    unused_.back().mapped().clear();
}

void NBest::pruneWaiting() {
    while (!waiting_.empty()) {
        auto const last = std::prev(waiting_.end());
        if (waitingCount_ - last->second.size() < wanted_) return;
        waitingCount_ -= last->second.size();
        limit_ = last->first;
        leave(last);
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
