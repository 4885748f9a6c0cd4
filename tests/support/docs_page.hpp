// Pages of docs/, whose examples tests compare.
#ifndef TAVO_TESTS_DOCS_PAGE_HPP
#define TAVO_TESTS_DOCS_PAGE_HPP

#include <string>

namespace TAVO::test {

/// The text of docs/NAME.
std::string docsPage(std::string const& name);

}  // namespace TAVO::test

#endif
