// From a path through the lattice to morphemes.
#ifndef TAVO_RESULT_ASSEMBLY_HPP
#define TAVO_RESULT_ASSEMBLY_HPP

#include "result/context.hpp"
#include "result/reduce_rules.hpp"

#include <span>
#include <vector>

namespace TAVO {

/// Replaces @p out by the morphemes of @p path, which covers the text of
/// @p sentence from its start. With the divide-word mode a compound comes out as
/// its parts; runs are joined by @p reduce, which are bound. The morphemes point at
/// @p context and at the sentence's text.
void getMrphArray(std::vector<Mrph>& out, std::span<LatticeNode const* const> path, AnalyzerContext const& context,
                  ReduceRules const& reduce, Sentence const& sentence);

/// Appends the lengths of the pieces of the text that these morphemes stand for. False when it takes
/// the morphemes to tell.
bool appendLengths(std::vector<unsigned int>& out, AnalyzerContext const& context, ReduceRules const& reduce,
                   Sentence const& sentence);

}  // namespace TAVO

#endif
