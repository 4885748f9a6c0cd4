#include "engine/nbest/tied_paths.hpp"

#include <algorithm>
#include <limits>

namespace TAVO {

template <class Visit>
void TiedPaths::eachTight(EdgeList const& list, Visit&& visit) const {
    lattice_.eachEdge(list, [&](std::uint32_t node, PathKey edgeKey) {
        if (edgeKey == list.bestKey) visit(node);
    });
}

void TiedPaths::countWords(std::vector<PathTree::Step> const& starts) {
    // A list's words have lists made before it: first all lists that are needed,
    // from the last one back, then their counts in the other direction.
    words_.clear();
    auto const need = [&](std::uint32_t node) {
        std::uint32_t const list = lattice_.edgesOf(node);
        if (list != AllPaths::kNone) words_[list - firstList_].most = 1;
    };
    std::uint32_t end = firstList_;
    for (PathTree::Step const& start : starts) {
        std::uint32_t const list = lattice_.edgesOf(start.node);
        if (list != AllPaths::kNone) end = std::max(end, list + 1);
    }
    words_.resize(end - firstList_);
    for (PathTree::Step const& start : starts) need(start.node);
    std::vector<std::uint32_t> needed;
    for (std::uint32_t i = end - firstList_; i-- != 0;) {
        if (words_[i].most == 0) continue;
        needed.push_back(i);
        eachTight(lattice_.list(firstList_ + i), need);
    }
    for (; !needed.empty(); needed.pop_back()) {
        Words words{std::numeric_limits<std::uint32_t>::max(), 0};
        eachTight(lattice_.list(firstList_ + needed.back()), [&](std::uint32_t node) {
            Words const after = behind(node);
            words.fewest = std::min(words.fewest, after.fewest + 1);
            words.most = std::max(words.most, after.most + 1);
        });
        words_[needed.back()] = words;
    }
}

void TiedPaths::find(std::vector<PathTree::Step> const& starts, std::size_t count,
                     std::function<void(std::uint32_t)> const& found) {
    count_ = count;
    found_ = &found;
    countWords(starts);
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
