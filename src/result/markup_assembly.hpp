// From the path of a sentence with markup to morphemes.
#ifndef TAVO_RESULT_MARKUP_ASSEMBLY_HPP
#define TAVO_RESULT_MARKUP_ASSEMBLY_HPP

#include "result/context.hpp"
#include "result/reduce_rules.hpp"

#include <vector>

namespace TAVO {

/// getMrphArray() for a sentence with markup: with annotations, attributes and
/// multiwords. Rules that join runs join across no tag and no comment.
void getMarkedUpMrphArray(std::vector<Mrph>& out, std::span<LatticeNode const* const> path,
                          AnalyzerContext const& context, ReduceRules const& reduce, Sentence const& sentence);

}  // namespace TAVO

#endif
