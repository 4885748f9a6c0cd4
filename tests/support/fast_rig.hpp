// The fast search with its stages within reach.
#ifndef TAVO_TESTS_FAST_RIG_HPP
#define TAVO_TESTS_FAST_RIG_HPP

#include "engine/fast/fast_search.hpp"
#include "support/random_world.hpp"

#include <span>
#include <string_view>
#include <vector>

namespace TAVO::test {

class FastRig {
public:
    explicit FastRig(Attached const& attached, FastSearch::Options const& options = {})
        : paths(pool, state.indexes), fast(paths, state, options), attached_(attached) {
        state.indexes.attach(*attached.table, attached.dics);
        paths.setTable(*attached.table);
    }

    std::vector<LazyPath> search(std::span<std::string_view const> texts) {
        std::vector<LazyPath> found(texts.size());
        fast.search(texts, *attached_.table, attached_.dics, found);
        return found;
    }

    NodePool pool{0};
    SearchState state;
    PathStore paths;
    FastSearch fast;

private:
    Attached const& attached_;
};

/// Small blocks and chunks, so that texts have many, and any kernel.
inline FastSearch::Options randomOptions(Random& random) {
    FastSearch::Options options;
    if (!random.oneIn(3)) options.blockPlaces = 2 + random.below(random.oneIn(2) ? 4 : 30);
    if (!random.oneIn(3)) options.chunkPlaces = 1 + random.below(random.oneIn(2) ? 4 : 30);
    options.kernel = &random.of(relaxKernels());
    return options;
}

}  // namespace TAVO::test

#endif
