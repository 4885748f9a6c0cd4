#include "core/cooccurrence.hpp"

#include "core/impl.hpp"
#include "result/markup_constraints.hpp"

#include <algorithm>
#include <limits>

namespace TAVO {
namespace {

/// True when a line break ends @p sentence, so that @p next belongs to another text.
bool endsLine(Sentence const& sentence, Sentence const& next) noexcept {
    auto const isBreak = [](char c) { return c == '\n' || c == '\r'; };
    char const* const end = sentence.given.data() + sentence.given.size();
    return (!sentence.given.empty() && isBreak(end[-1])) || std::any_of(end, next.given.data(), isBreak);
}

/// Makes the nodes of @p path anew, with the other candidates of their positions, in @p pool; the first one.
LatticeNode const* adopt(NearPaths::Path const& path, NodePool const& from, NodePool& pool) {
    LatticeNode const* next = nullptr;
    for (std::size_t i = path.nodes.size(); i-- != 0;) {
        LatticeNode const& node = from.at(path.nodes[i]);
        std::span<LatticeNode const> const candidates = from.candidates(&node);
        pool.beginPosition();
        for (LatticeNode const& candidate : candidates) {
            LatticeNode& copy = pool.make();
            copy = candidate;
            copy.next = nullptr;
        }
        LatticeNode& chosen = pool.position()[static_cast<std::size_t>(&node - candidates.data())];
        chosen.next = next;
        chosen.connSum = connSumOf(path.key - path.before[i]);
        chosen.wordSum = wordSumOf(path.key - path.before[i]);
        next = &chosen;
    }
    return next;
}

}  // namespace

bool Cooccurrence::mayAct(AnalyzerContext const& context, Sentence const& sentence) {
    std::string_view const text = sentence.searchText();
    if (!sentence.path.exists() || text.size() > kMaxNBestBytes) return false;
    bool found = false;
    for (DicEntry const& entry : context.dics.entries()) {
        if (entry.dic->trie() == nullptr || !entry.dic->hasCoocMarks()) continue;
        for (std::size_t p = 0; p != text.size() && !found; ++p)
            entry.dic->trie()->prefixSearch(asBytes(text.data()) + p, text.size() - p, [&](std::size_t, RecordChain c) {
                for (; c; c = c.next()) found = found || c.record().hasCoocMarks();
                return !found;
            });
    }
    return found;
}

PathKey Cooccurrence::limit(PathKey best) const noexcept {
    std::uint32_t const margin = rules_.settings().margin;
    if (margin == 0) return best;
    return pathKey(connSumOf(best) + margin, std::numeric_limits<std::uint32_t>::max());
}

Cooccurrence::Words Cooccurrence::wordsOf(std::span<LatticeNode const* const> path) {
    Words words;
    for (LatticeNode const* const node : path) words.emplace_back(node->record, node->length);
    return words;
}

std::vector<CoocPlace> Cooccurrence::before(AnalyzerContext const& context, std::size_t index) {
    std::vector<CoocPlace> places;  // from the last one to the first
    std::int64_t begin = 0;
    for (std::size_t i = index; i != 0 && index - i < rules_.settings().sentences; --i) {
        Sentence const& sentence = context.sentences[i - 1];
        if (endsLine(sentence, context.sentences[i])) break;
        std::vector<std::uint32_t> const numbers = characterNumbers(sentence.searchText());
        begin -= numbers.back();
        std::size_t const firstOfSentence = places.size();
        std::size_t at = 0;
        for (auto const& [record, length] : wordsOf(bestPath(sentence))) {
            if (CoocIds const* const ids = words_.of(record))
                places.push_back({begin + numbers[at], begin + numbers[at + length], ids});
            at += length;
        }
        std::reverse(places.begin() + static_cast<std::ptrdiff_t>(firstOfSentence), places.end());
    }
    std::reverse(places.begin(), places.end());
    return places;
}

void Cooccurrence::choose(AnalyzerContext& context, std::size_t index, LatticeConstraints& constraints) {
    Sentence& sentence = context.sentences[index];
    if (!nodes_) nodes_ = std::make_unique<NodePool>(0);
    nodes_->clear();
    lattice_.clear();
    lattice_.keepHomographs(true);
    Sentence searched;
    searched.text = sentence.searchText();
    lattice_.build(searched, context.connTable, context.dics, *nodes_, constraints);
    if (searched.startEdgeList == Sentence::kNoEdges) return;

    std::vector<CoocPlace> const places = before(context, index);
    CoocHistories histories(rules_.settings(), words_, searched.text, places);
    auto const best =
        NearPaths(lattice_, *nodes_, histories).best(searched, limit(lattice_.list(searched.startEdgeList).bestKey));
    if (!best || best->score <= histories.scoreOf(wordsOf(bestPath(sentence)))) return;
    sentence.path = LazyPath(adopt(*best, *nodes_, context.lattice.nodes()));
    sentence.beginCost = static_cast<std::uint8_t>(connSumOf(best->before.front()));
}

void Cooccurrence::rank(std::vector<Ranked>& paths, AnalyzerContext const& context, std::size_t index, PathKey best) {
    Sentence const& sentence = context.sentences[index];
    std::vector<CoocPlace> const places = before(context, index);
    CoocHistories histories(rules_.settings(), words_, sentence.searchText(), places);
    PathKey const most = limit(best);
    std::vector<std::pair<std::uint64_t, std::size_t>> order;  // of those that are near, by falling score
    for (std::size_t i = 0; i != paths.size() && paths[i].key <= most; ++i)
        order.emplace_back(~histories.scoreOf(wordsOf(paths[i].nodes)), i);
    std::sort(order.begin(), order.end());

    std::vector<Ranked> ranked(1);
    ranked[0].nodes = bestPath(sentence);
    LatticeNode const* const first = ranked[0].nodes.front();
    ranked[0].key = pathKey(first->connSum + sentence.beginCost, first->wordSum);
    Words const own = wordsOf(ranked[0].nodes);
    std::size_t const nearCount = order.size();
    for (std::size_t i = 0; i != paths.size(); ++i) {
        Ranked& path = paths[i < nearCount ? order[i].second : i];
        if (wordsOf(path.nodes) != own) ranked.push_back(std::move(path));
    }
    paths = std::move(ranked);
}

bool Tavo::Impl::actsOn(Sentence const& sentence) const {
    return context.settings.mode(Mode::Cooccurrence) == 1 && Cooccurrence::mayAct(context, sentence);
}

void Tavo::Impl::reconsider(std::size_t index) {
    if (!actsOn(context.sentences[index])) return;
    LatticeConstraints constraints;
    if (context.sentences[index].markup) constraints = constraintsOf(context.sentences[index], context);
    cooccurrence.choose(context, index, constraints);
}

}  // namespace TAVO
