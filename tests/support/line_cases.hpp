// Golden cases in a text file of tests/golden/lines, a line each:
//
//   ; remark
//   [KEY=VALUE ...] FORMAT   an analyser with these lines in its init file, for
//                            the cases that follow; each morpheme is written in
//                            the format, without one as form:part of speech
//   INPUT => EXPECTED        \n \r \t \0 \\ stand for what they do in C
//
// Expected are the morphemes with a blank between, annotations in brackets,
// " | " between sentences, a failed sentence as "!" and its text; "!" alone says
// that the input fails as a whole.
#ifndef TAVO_TESTS_LINE_CASES_HPP
#define TAVO_TESTS_LINE_CASES_HPP

#include "support/small_world.hpp"

#include <string>
#include <vector>

namespace TAVO::test {

/// Texts are Shift_JIS bytes.
struct LineCase {
    int number;  // of the line
    std::string settings, format, input, expected;
};

/// The cases of a file; throws runtime_error when there are none.
std::vector<LineCase> lineCases(std::string const& name);

/// Analyses the cases of a file over a world; @p init is added to their settings.
void expectLineCases(std::string const& name, SmallWorld const& world, std::string const& init = "");

}  // namespace TAVO::test

#endif
