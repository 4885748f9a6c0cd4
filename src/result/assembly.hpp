// From a path through the lattice to morphemes.
#ifndef TAVO_RESULT_ASSEMBLY_HPP
#define TAVO_RESULT_ASSEMBLY_HPP

#include "result/context.hpp"

#include <vector>

namespace TAVO {

/// Replaces @p out by the morphemes of @p path, which covers the text of
/// @p sentence from its start. With the divide-word mode a compound comes out as
/// its parts. The morphemes point at @p context and at the sentence's text.
void getMrphArray(std::vector<Mrph>& out, std::vector<LatticeNode const*> const& path, AnalyzerContext const& context,
                  Sentence const& sentence);

}  // namespace TAVO

#endif
