// From the markup of a sentence to what the search may do.
#ifndef TAVO_RESULT_MARKUP_CONSTRAINTS_HPP
#define TAVO_RESULT_MARKUP_CONSTRAINTS_HPP

#include "engine/exact/lattice_constraints.hpp"
#include "result/comment_rules.hpp"
#include "result/context.hpp"

namespace TAVO {

/// Takes the tags (in the tagged-input mode) out of the text of @p sentence and
/// finds its comments; without any, its markup stays null. False when the markup
/// is malformed. The comment rules have been bound.
bool takeMarkup(Sentence& sentence, AnalyzerContext const& context, CommentRules const& comments);

/// The constraints of @p sentence, which has markup: a tagged word keeps the
/// dictionary records that match its attributes as candidates; where there is
/// none, a record is made for it.
LatticeConstraints constraintsOf(Sentence const& sentence, AnalyzerContext& context);

}  // namespace TAVO

#endif
