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
#include "result/end_form_rules.hpp"
#include "result/format.hpp"
#include "result/made_records.hpp"

#include <tavo/mrph.hpp>

#include <deque>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace TAVO {

/// The analyser's state below the facade. Morphemes point at it, so it never
/// moves while its analyser lives.
struct AnalyzerContext {
    explicit AnalyzerContext(std::uint32_t nodeCapacity) : lattice(nodeCapacity) {}

    Settings settings;
    PosTables pos;
    EndFormRules endForms;
    DicSet dics;
    ConnTable const* connTable = nullptr;  // owned by the pool
    CompiledFormat outputFormat;           // of settings.outputFormat, as of the last output

    /// The candidates that start where @p node does; @p text is the first byte of
    /// its span in the text of a sentence.
    std::span<LatticeNode const> candidates(LatticeNode const* node, char const* text) const;
    /// Place in the searched text of a byte of the sentence's text.
    static std::size_t searchPlace(Sentence const& sentence, char const* text) {
        auto const place = static_cast<std::size_t>(text - sentence.text.data());
        return sentence.conversion ? sentence.conversion->toConverted(place) : place;
    }
    /// Calls visit(record, length) for what else may stand where @p node does: in the alternative mode every word of
    /// the dictionaries that begins there, else the candidates. Marked-up text has its candidates alone.
    template <class Visit>
    void eachCandidate(LatticeNode const* node, char const* text, Visit&& visit) const;
    /// The nodes that allPaths was built of.
    NodePool const& edgeNodes() const noexcept { return lateNodes ? *lateNodes : lattice.nodes(); }

    /// What @p span of a sentence's text was converted to; the span itself where nothing was.
    std::string_view convertedText(std::string_view span) const;
    /// The sentence whose text holds the byte at @p text; null for none.
    Sentence const* sentenceOf(char const* text) const;

    // State of the last input.
    std::string_view input;  // as given, not owned
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
    Conversion const* const conversion = sentence->conversion.get();
    std::size_t const start = searchPlace(*sentence, text);
    auto const visitAt = [&](unsigned char const* record, std::uint32_t length) {
        if (conversion == nullptr) return visit(record, length);
        std::size_t const end = conversion->toGiven(start + length);
        if (conversion->toConverted(end) != start + length) return;  // ends inside what was one character
        visit(record, static_cast<std::uint32_t>(sentence->text.data() + end - text));
    };
    if (settings.mode(Mode::Alternative) == 1 && !sentence->markup && connTable != nullptr) {
        std::string_view const rest = sentence->searchText().substr(start);
        for (DicEntry const& entry : dics.entries()) {
            if (entry.dic == nullptr || entry.dic->trie() == nullptr) continue;
            entry.dic->trie()->prefixSearch(
                asBytes(rest.data()), rest.size(), [&](std::size_t length, RecordChain chain) {
                    eachNodeRecord(chain, connTable->idCount(),
                                   [&](MrphDic record) { visitAt(record.head(), static_cast<std::uint32_t>(length)); });
                    return true;
                });
        }
        return;
    }
    for (LatticeNode const& candidate : candidates(node, text)) visitAt(candidate.record, candidate.length);
}

}  // namespace TAVO

#endif
