// Complete paths of one key, of which there may be exponentially many.
#ifndef TAVO_ENGINE_NBEST_TIED_PATHS_HPP
#define TAVO_ENGINE_NBEST_TIED_PATHS_HPP

#include "engine/nbest/all_paths.hpp"
#include "engine/nbest/path_tree.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_set>
#include <vector>

namespace TAVO {

/// Completes partial paths along tight edges only, those that lie on a best path
/// to the end of the sentence. Depth first, one length after the other, so that
/// memory grows with the paths found.
class TiedPaths {
public:
    /// The lists of the sentence at work are those from @p firstList on. New steps
    /// are added to @p tree.
    TiedPaths(AllPaths const& lattice, std::uint32_t firstList, PathTree& tree)
        : lattice_(lattice), firstList_(firstList), tree_(tree) {}

    /// Completes the paths of @p starts and calls found(last step) for the first
    /// @p count complete ones: those with fewer words behind their start first,
    /// then in the order of starts, then in that of the words. @p starts has at
    /// least @p count elements (each leads to one complete path or more).
    void find(std::vector<PathTree::Step> const& starts, std::size_t count,
              std::function<void(std::uint32_t step)> const& found);

private:
    /// The number of words behind a place; there may be gaps in between.
    struct Words {
        std::uint32_t fewest = 0;
        std::uint32_t most = 0;  // 0: not needed, since no start leads there
    };
    /// A place on the way down: the next edge to try, and how many words are
    /// still to come.
    struct Frame {
        std::uint32_t list;
        std::uint32_t edge;
        std::uint32_t words;
        std::uint32_t step;
        std::size_t countBefore;  // results missing when it was entered
    };

    void countWords(std::vector<PathTree::Step> const& starts);
    template <class Visit>
    void eachTight(EdgeList const& list, Visit&& visit) const;
    Words behind(std::uint32_t node) const noexcept;
    bool mayEnd(std::uint32_t node, std::uint32_t words) const;
    bool isTight(EdgeList const& list, std::uint32_t edge) const noexcept;
    void complete(PathTree::Step start, std::uint32_t words);
    void enter(PathTree::Step path, std::uint32_t words);
    static std::uint64_t place(std::uint32_t list, std::uint32_t words) noexcept {
        return std::uint64_t{list} << 32 | words;
    }

    AllPaths const& lattice_;
    std::uint32_t firstList_;
    PathTree& tree_;
    std::vector<Words> words_;  // by list of the sentence
    /// Places from which no path of that length completes: each is tried once,
    /// so that gaps between the lengths cost no exponential search.
    std::unordered_set<std::uint64_t> dead_;
    std::vector<Frame> frames_;
    std::size_t count_ = 0;  // results missing
    std::function<void(std::uint32_t)> const* found_ = nullptr;
};

}  // namespace TAVO

#endif
