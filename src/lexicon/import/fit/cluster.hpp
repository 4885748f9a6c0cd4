// Finds right ids, and left ids, that connect alike up to a constant: the
// constant moves into the words' costs, and the ids share a row or column.
#ifndef TAVO_LEXICON_IMPORT_FIT_CLUSTER_HPP
#define TAVO_LEXICON_IMPORT_FIT_CLUSTER_HPP

#include "lexicon/import/fit/fit.hpp"
#include "lexicon/import/source/source_lexicon.hpp"

#include <cstdint>
#include <vector>

namespace TAVO::importer {

/// The cost of an edge from line r to line c is taken to be
/// m[rows.leader[r]][columns.leader[c]] + rows.offset[r] + columns.offset[c].
struct Clusters {
    struct Lines {
        std::vector<std::uint32_t> leader;
        std::vector<double> offset;
        std::uint32_t count = 0;  ///< of leaders
    };
    Lines rows, columns;  ///< over the source's right ids and left ids
};

/// A line joins the most used line that it resembles so that the mean squared
/// difference, weighted by use, times its own use stays within @p tolerance
/// (source cost squared); 0 leaves every line by itself. Puts the matrix into
/// another order in memory; its costs stay.
Clusters findClusters(Lexicon& lexicon, Usage const& usage, double tolerance);

}  // namespace TAVO::importer

#endif
