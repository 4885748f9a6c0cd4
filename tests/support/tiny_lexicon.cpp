#include "support/tiny_lexicon.hpp"

namespace TAVO::test {

std::string tinyLexicon(std::string const& file) { return readFile(TAVO_TESTS_DIR "/cli/world/mecab/" + file); }

}  // namespace TAVO::test
