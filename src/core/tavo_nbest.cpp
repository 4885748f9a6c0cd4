// The N best analyses of a sentence.
#include "core/impl.hpp"
#include "engine/nbest/nbest.hpp"
#include "result/markup_constraints.hpp"

#include <algorithm>
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

void Tavo::Impl::addEdges(Sentence& sentence) {
    bool const isWanted =
        context.settings.mode(Mode::Alternative) == 1 || context.settings.mode(Mode::Cooccurrence) == 1;
    if (!isWanted || !sentence.path.exists() || sentence.startEdgeList != Sentence::kNoEdges) return;
    LazyPath const best(sentence.path.first());
    try {
        if (!context.lateNodes) context.lateNodes = std::make_unique<NodePool>(0);
        LatticeConstraints constraints;
        if (sentence.markup) constraints = constraintsOf(sentence, context);
        context.allPaths.keepHomographs(actsOn(sentence));
        context.allPaths.build(sentence, context.connTable, context.dics, *context.lateNodes, constraints);
        sentence.path = best;  // whose nodes morphemes point at
    } catch (...) {
        dropInput();  // nodes and edges may not belong together any more
        throw;
    }
}

std::vector<Cooccurrence::Ranked> Tavo::Impl::rankedPaths(std::size_t index, int n) {
    Sentence const& found = context.sentences[index];
    bool const byScore = actsOn(found);
    auto const wanted = static_cast<std::size_t>(n);
    NBest const nbest(context.allPaths, found, byScore ? std::max(wanted, Cooccurrence::kRankedPaths) : wanted);
    std::vector<Cooccurrence::Ranked> paths(nbest.size());
    std::vector<std::uint32_t> indexes;
    for (std::size_t rank = 0; rank < nbest.size(); ++rank) {
        nbest.nodes(rank, indexes);
        for (std::uint32_t const node : indexes) paths[rank].nodes.push_back(&context.edgeNodes().at(node));
        paths[rank].key = nbest.key(rank);
    }
    if (byScore) cooccurrence.rank(paths, context, index, nbest.key(0));
    if (paths.size() > wanted) paths.resize(wanted);
    return paths;
}

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
    AnalyzerContext& context = impl_->context;
    if (static_cast<std::size_t>(sentence) >= context.sentences.size()) throw std::range_error(kRangeError);
    if (n == 0) return;
    impl_->requireReady();
    Sentence& found = context.sentences[static_cast<std::size_t>(sentence)];

    if (n > 1) impl_->addEdges(found);
    // Without edges, or without any path, there is one analysis.
    if (n == 1 || !found.path.exists() || found.startEdgeList == Sentence::kNoEdges) {
        std::vector<std::vector<Mrph>> best(1);
        impl_->assemble(best.front(), bestPath(found), found);
        results = std::move(best);
        costs.assign(1, bestCost(found));
        return;
    }
    std::vector<Cooccurrence::Ranked> const paths = impl_->rankedPaths(static_cast<std::size_t>(sentence), n);
    std::vector<std::vector<Mrph>> all(paths.size());
    std::vector<PathCost> allCosts(paths.size());
    for (std::size_t rank = 0; rank < paths.size(); ++rank) {
        impl_->assemble(all[rank], paths[rank].nodes, found);
        allCosts[rank] = costOf(paths[rank].key);
    }
    results = std::move(all);
    costs = std::move(allCosts);
}

}  // namespace TAVO
