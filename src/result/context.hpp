// What a morpheme may ask of the analyser that made it.
#ifndef TAVO_RESULT_CONTEXT_HPP
#define TAVO_RESULT_CONTEXT_HPP

#include "base/bytes.hpp"
#include "config/pos_tables.hpp"
#include "config/settings.hpp"
#include "dic/conn_table.hpp"
#include "dic/dic_set.hpp"
#include "dic/record_walk.hpp"
#include "engine/lattice.hpp"
#include "engine/nbest/all_paths.hpp"
#include "engine/sentence.hpp"
#include "result/format.hpp"
#include "result/made_records.hpp"

#include <tavo/mrph.hpp>

#include <deque>
#include <memory>
#include <span>
#include <vector>

namespace TAVO {

/// The analyser's state below the facade. Morphemes point at it, so it never
/// moves while its analyser lives.
struct AnalyzerContext {
    explicit AnalyzerContext(std::uint32_t nodeCapacity) : lattice(nodeCapacity) {}

    Settings settings;
    PosTables pos;
    DicSet dics;
    ConnTable const* connTable = nullptr;  // owned by the pool
    CompiledFormat outputFormat;           // of settings.outputFormat, as of the last output

    /// The candidates that start where @p node does; @p text is the first byte of
    /// its span in the text of a sentence.
    std::span<LatticeNode const> candidates(LatticeNode const* node, char const* text) const;
    /// Calls visit(record, length) for what else may stand where @p node does: in the alternative mode every word of
    /// the dictionaries that begins there, else the candidates. Marked-up text has its candidates alone.
    template <class Visit>
    void eachCandidate(LatticeNode const* node, char const* text, Visit&& visit) const;
    /// The nodes that allPaths was built of.
    NodePool const& edgeNodes() const noexcept { return lateNodes ? *lateNodes : lattice.nodes(); }

    /// The sentence whose text holds the byte at @p text; null for none.
    Sentence const* sentenceOf(char const* text) const;

    // State of the last input.
    Lattice lattice;
    AllPaths allPaths;                    // the edges, where the input was analysed with all paths
    std::unique_ptr<NodePool> lateNodes;  // of edges that were made after the analysis; null while there are none
    std::vector<Sentence> sentences;
    MadeRecords madeRecords;                // of tagged words that no dictionary holds
    mutable std::deque<Mrph> alternatives;  // filled by storeAlt; freed with the input
};

template <class Visit>
void AnalyzerContext::eachCandidate(LatticeNode const* node, char const* text, Visit&& visit) const {
    Sentence const* const sentence = sentenceOf(text);
    if (sentence == nullptr) return;
    if (settings.mode(Mode::Alternative) == 1 && !sentence->markup && connTable != nullptr) {
        auto const rest = static_cast<std::size_t>(sentence->text.data() + sentence->text.size() - text);
        for (DicEntry const& entry : dics.entries()) {
            if (entry.dic == nullptr || entry.dic->trie() == nullptr) continue;
            entry.dic->trie()->prefixSearch(asBytes(text), rest, [&](std::size_t length, RecordChain chain) {
                eachNodeRecord(chain, connTable->idCount(),
                               [&](MrphDic record) { visit(record.head(), static_cast<std::uint32_t>(length)); });
                return true;
            });
        }
        return;
    }
    for (LatticeNode const& candidate : candidates(node, text)) visit(candidate.record, candidate.length);
}

}  // namespace TAVO

#endif
