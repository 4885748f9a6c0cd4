#include "support/docs_page.hpp"

#include "support/temp_dir.hpp"

namespace TAVO::test {

std::string docsPage(std::string const& name) { return readFile(TAVO_TESTS_DIR "/../docs/" + name); }

}  // namespace TAVO::test
