// The path whose words fit together best, among those that cost hardly more than the best one.
#ifndef TAVO_ENGINE_COOC_NEAR_PATHS_HPP
#define TAVO_ENGINE_COOC_NEAR_PATHS_HPP

#include "engine/cooc/cooc_histories.hpp"
#include "engine/nbest/all_paths.hpp"
#include "engine/node_pool.hpp"
#include "engine/path_key.hpp"
#include "engine/sentence.hpp"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace TAVO {

/// A search forward through an all-paths lattice.
///
/// 1. Distances count in characters, so the score of a path depends on its words with ids alone: paths with the same
///    ones, a history, have the same score.
/// 2. The best sums behind each node are known, so each extension that cannot end within the limit is left out at once.
/// 3. Hence it takes one state a node and history, the one of the smallest sums before the node. Where a node has more
///    than kMostHistories, those of the best scores are followed.
class NearPaths {
public:
    static constexpr std::size_t kMostHistories = 512;

    /// @p nodes are those that @p lattice was built into, @p histories those of the sentence.
    NearPaths(AllPaths const& lattice, NodePool const& nodes, CoocHistories& histories)
        : lattice_(lattice), nodes_(nodes), histories_(histories) {}

    struct Path {
        std::uint64_t score;
        PathKey key;
        std::vector<std::uint32_t> nodes;
        std::vector<PathKey> before;  ///< by node: the sums of what stands before it
    };
    /// Of the paths of @p sentence with keys up to @p limit the one with the highest score, of those the one with the
    /// smallest key.
    std::optional<Path> best(Sentence const& sentence, PathKey limit);

private:
    struct State {
        PathKey before;
        std::uint32_t node, parent, history, begin;  // begin in bytes
    };
    static constexpr std::uint32_t kNone = ~std::uint32_t{0};

    void reach(std::uint32_t node, PathKey before, std::uint32_t parent, std::uint32_t history, std::uint32_t begin);
    void prune(std::vector<std::uint32_t>& states) const;
    void leave(std::uint32_t state, PathKey limit);
    std::uint64_t scoreOf(std::uint32_t state) const noexcept { return histories_.score(states_[state].history); }
    Path pathTo(std::uint32_t state, PathKey key) const;

    AllPaths const& lattice_;
    NodePool const& nodes_;
    CoocHistories& histories_;
    std::vector<State> states_;
    // Nodes are numbered from the end of the sentence to its beginning.
    std::map<std::uint32_t, std::vector<std::uint32_t>, std::greater<>> waiting_;
    std::uint32_t best_ = kNone;
    PathKey bestKey_ = kNoPath;
};

}  // namespace TAVO

#endif
