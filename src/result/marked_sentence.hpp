// A sentence with marks on its way through the analysis: from the marks to what
// the search may do, and from the chosen path to morphemes.
#ifndef TAVO_RESULT_MARKED_SENTENCE_HPP
#define TAVO_RESULT_MARKED_SENTENCE_HPP

#include "engine/exact/lattice_constraints.hpp"
#include "result/context.hpp"

#include <vector>

namespace TAVO {

/// Takes the tags (in the tagged-input mode) out of the text of @p sentence and
/// finds its comments; without any, its marks stay null. False when the mark-up
/// is malformed. The comment rules have been bound.
bool takeMarks(Sentence& sentence, AnalyzerContext const& context);

/// The constraints of @p sentence, which has marks: a tagged word keeps the
/// dictionary records that match its attributes as candidates; where there is
/// none, a record is made for it.
LatticeConstraints constraintsOf(Sentence const& sentence, AnalyzerContext& context);

/// getMrphArray() for a sentence with marks: with annotations, attributes and
/// multiwords. Rules that join runs join across no mark.
void getMarkedMrphArray(std::vector<Mrph>& out, std::vector<LatticeNode const*> const& path,
                        AnalyzerContext const& context, Sentence const& sentence);

}  // namespace TAVO

#endif
