// A lattice as text, for whoever looks for a fault.
#ifndef TAVO_TESTS_DRAW_LATTICE_HPP
#define TAVO_TESTS_DRAW_LATTICE_HPP

#include "support/reference_search.hpp"

#include <string>
#include <string_view>

namespace TAVO::test {

/// The bytes of @p text in hexadecimal digits.
std::string hexOf(std::string_view text);

/// A line for each candidate, by the byte it starts at, "*" before those of the best path:
///
///   *  0 8141      id 5   word 2   sums 12, 4   then +7 id 6 at 2
///
/// The sums are those of connection and word costs from the candidate to the end; the cost after "then" is that of the
/// connection with the next word of its best path.
std::string drawLattice(std::string const& text, ReferenceLattice const& lattice);

}  // namespace TAVO::test

#endif
