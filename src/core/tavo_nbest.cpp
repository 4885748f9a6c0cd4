// The N best analyses of a sentence.
#include "core/impl.hpp"
#include "engine/nbest/nbest.hpp"

#include <stdexcept>
#include <utility>

namespace TAVO {
namespace {

PathCost costOf(PathKey key) noexcept { return {connSumOf(key), wordSumOf(key)}; }

PathCost bestCost(Sentence const& sentence) noexcept {
    LatticeNode const* const start = sentence.path.first();
    return start == nullptr ? PathCost{0, 0} : PathCost{start->connSum + sentence.beginCost, start->wordSum};
}

}  // namespace

int Tavo::analyzeNBest(char const* text, int length) {
    if (length < 0 || (text == nullptr && length > 0))
        throw std::invalid_argument("INVALID_ARGUMENT: Tavo::analyzeNBest()");
    return impl_->analyzeText({text, static_cast<std::size_t>(length)}, true);
}

int Tavo::analyzeNBest(std::string const& text) { return impl_->analyzeText(text, true); }
int Tavo::analyzeNBest(std::string&& text) { return impl_->analyzeOwn(std::move(text), true); }

void Tavo::getResultNBest(std::vector<std::vector<Mrph>>& results, int sentence, int n) {
    std::vector<PathCost> costs;
    getResultNBest(results, costs, sentence, n);
}

void Tavo::getResultNBest(std::vector<std::vector<Mrph>>& results, std::vector<PathCost>& costs, int sentence, int n) {
    constexpr char const* kRangeError = "RANGE_ERROR: Tavo::getResultNBest()";
    if (sentence < 0) throw std::range_error(kRangeError);
    if (n < 0) throw std::invalid_argument("INVALID_ARGUMENT: Tavo::getResultNBest()");
    if (!impl_->hasResult) throw tavo_not_ready("No Analyze: Need to call analyze()");
    AnalyzerContext const& context = impl_->context;
    if (static_cast<std::size_t>(sentence) >= context.sentences.size()) throw std::range_error(kRangeError);
    if (n == 0) return;
    impl_->requireReady();
    Sentence const& found = context.sentences[static_cast<std::size_t>(sentence)];

    // Without edges, or without any path, there is one analysis.
    if (n == 1 || !found.path.exists() || found.startEdgeList == Sentence::kNoEdges) {
        std::vector<std::vector<Mrph>> best(1);
        impl_->assemble(best.front(), bestPath(found), found);
        results = std::move(best);
        costs.assign(1, bestCost(found));
        return;
    }
    NBest const nbest(context.allPaths, found, static_cast<std::size_t>(n));
    std::vector<std::vector<Mrph>> all(nbest.size());
    std::vector<PathCost> allCosts(nbest.size());
    std::vector<std::uint32_t> indexes;
    std::vector<LatticeNode const*> path;
    for (std::size_t rank = 0; rank < nbest.size(); ++rank) {
        nbest.nodes(rank, indexes);
        path.clear();
        for (std::uint32_t const index : indexes) path.push_back(&context.lattice.nodes().at(index));
        impl_->assemble(all[rank], path, found);
        allCosts[rank] = costOf(nbest.key(rank));
    }
    results = std::move(all);
    costs = std::move(allCosts);
}

}  // namespace TAVO
