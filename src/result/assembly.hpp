// From a path through the lattice to morphemes.
#ifndef TAVO_RESULT_ASSEMBLY_HPP
#define TAVO_RESULT_ASSEMBLY_HPP

#include "result/context.hpp"
#include "result/mrph_access.hpp"
#include "result/reduce_rules.hpp"

#include <utility>
#include <vector>

namespace TAVO {

/// Replaces @p out by the morphemes of @p path, which covers the text of
/// @p sentence from its start. With the divide-word mode a compound comes out as
/// its parts. The morphemes point at @p context and at the sentence's text.
void getMrphArray(std::vector<Mrph>& out, std::vector<LatticeNode const*> const& path, AnalyzerContext const& context,
                  Sentence const& sentence);

/// Appends the lengths of the pieces of the text that these morphemes stand for. False when it takes
/// the morphemes to tell.
bool appendLengths(std::vector<unsigned int>& out, AnalyzerContext const& context, Sentence const& sentence);

// The stages, for one morpheme.

/// The morpheme of @p node, whose first byte is @p text.
inline Mrph makeMrph(char const* text, LatticeNode const* node, AnalyzerContext const& context) {
    return MrphAccess::fromNode(text, node, &context);
}

/// Appends a morpheme to @p out, divided or through @p joiner.
inline void deliverMrph(std::vector<Mrph>& out, Mrph&& m, RunJoiner& joiner, bool divideWords) {
    if (divideWords && m.getPartCount() > 1) {
        joiner.finish();
        MrphAccess::divideAndPush(m, out);
    } else {
        joiner.append(joiner.rules().membershipOf(m.getPid()), MrphAccess::form(m), std::move(m));
    }
}

}  // namespace TAVO

#endif
