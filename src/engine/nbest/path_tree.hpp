// Partial paths that share their beginnings.
#ifndef TAVO_ENGINE_NBEST_PATH_TREE_HPP
#define TAVO_ENGINE_NBEST_PATH_TREE_HPP

#include <algorithm>
#include <cstdint>
#include <new>
#include <vector>

namespace TAVO {

/// A partial path from the beginning of the sentence is its last node and the
/// path before it.
class PathTree {
public:
    static constexpr std::uint32_t kRoot = 0xFFFFFFFF;  // the empty path

    struct Step {
        std::uint32_t node;
        std::uint32_t parent;
    };

    /// Stores @p step and returns its index.
    std::uint32_t add(Step step) {
        if (steps_.size() >= kRoot) throw std::bad_alloc();
        steps_.push_back(step);
        return static_cast<std::uint32_t>(steps_.size() - 1);
    }

    /// The nodes of the path that ends with step @p last, in text order.
    void nodes(std::uint32_t last, std::vector<std::uint32_t>& out) const {
        out.clear();
        for (std::uint32_t step = last; step != kRoot; step = steps_[step].parent) out.push_back(steps_[step].node);
        std::reverse(out.begin(), out.end());
    }

private:
    std::vector<Step> steps_;
};

}  // namespace TAVO

#endif
