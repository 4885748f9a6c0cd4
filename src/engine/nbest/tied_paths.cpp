#include "engine/nbest/tied_paths.hpp"

#include <algorithm>
#include <limits>

namespace TAVO {

TiedPaths::TiedPaths(AllPaths const& lattice, std::uint32_t firstList, std::uint32_t lastList, PathTree& tree)
    : lattice_(lattice), firstList_(firstList), tree_(tree) {
    words_.reserve(lastList - firstList + std::size_t{1});
    // A list's words have lists made before it.
    for (std::uint32_t index = firstList; index <= lastList; ++index) {
        EdgeList const& list = lattice_.list(index);
        Words words{std::numeric_limits<std::uint32_t>::max(), 0};
        lattice_.eachEdge(list, [&](std::uint32_t node, PathKey edgeKey) {
            if (edgeKey != list.bestKey) return;
            Words const after = behind(node);
            words.fewest = std::min(words.fewest, after.fewest + 1);
            words.most = std::max(words.most, after.most + 1);
        });
        words_.push_back(words);
    }
}

void TiedPaths::find(std::vector<PathTree::Step> const& starts, std::size_t count,
                     std::function<void(std::uint32_t)> const& found) {
    count_ = count;
    found_ = &found;
    std::vector<PathTree::Step> open = starts;
    std::uint32_t words = std::numeric_limits<std::uint32_t>::max();
    for (PathTree::Step const& start : open) words = std::min(words, behind(start.node).fewest);
    for (; count_ != 0 && !open.empty(); ++words) {
        for (PathTree::Step const& start : open) {
            complete(start, words);
            if (count_ == 0) return;
        }
        std::erase_if(open, [&](PathTree::Step const& start) { return behind(start.node).most <= words; });
    }
}

TiedPaths::Words TiedPaths::behind(std::uint32_t node) const noexcept {
    std::uint32_t const list = lattice_.edgesOf(node);
    return list == AllPaths::kNone ? Words{0, 0} : words_[list - firstList_];
}

bool TiedPaths::mayEnd(std::uint32_t node, std::uint32_t words) const {
    Words const after = behind(node);
    if (words < after.fewest || words > after.most) return false;
    return dead_.empty() || !dead_.contains(place(lattice_.edgesOf(node), words));
}

bool TiedPaths::isTight(EdgeList const& list, std::uint32_t edge) const noexcept {
    return lattice_.edgeKey(list, edge) == list.bestKey;
}

void TiedPaths::complete(PathTree::Step start, std::uint32_t words) {
    if (!mayEnd(start.node, words)) return;
    enter(start, words);
    while (!frames_.empty() && count_ != 0) {
        Frame& frame = frames_.back();
        EdgeList const& list = lattice_.list(frame.list);
        while (frame.edge != list.nodeCount &&
               !(isTight(list, frame.edge) && mayEnd(list.firstNode + frame.edge, frame.words - 1)))
            ++frame.edge;
        if (frame.edge == list.nodeCount) {
            if (frame.countBefore == count_) dead_.insert(place(frame.list, frame.words));
            frames_.pop_back();
        } else {
            std::uint32_t const node = list.firstNode + frame.edge++;
            enter({node, frame.step}, frame.words - 1);
        }
    }
    frames_.clear();
}

void TiedPaths::enter(PathTree::Step path, std::uint32_t words) {
    std::uint32_t const step = tree_.add(path);
    if (words != 0) {
        frames_.push_back({lattice_.edgesOf(path.node), 0, words, step, count_});
        return;
    }
    --count_;
    (*found_)(step);
}

}  // namespace TAVO
