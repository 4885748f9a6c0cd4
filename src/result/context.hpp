// What a morpheme may ask of the analyser that made it.
#ifndef TAVO_RESULT_CONTEXT_HPP
#define TAVO_RESULT_CONTEXT_HPP

#include "config/pos_tables.hpp"
#include "config/settings.hpp"
#include "dic/dic_set.hpp"
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

    // State of the last input.
    Lattice lattice;
    AllPaths allPaths;  // the edges, where the input was analysed with all paths
    std::vector<Sentence> sentences;
    MadeRecords madeRecords;                // of tagged words that no dictionary holds
    mutable std::deque<Mrph> alternatives;  // filled by storeAlt; freed with the input
};

}  // namespace TAVO

#endif
