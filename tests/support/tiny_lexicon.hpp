// The MeCab-format lexicon of a few words in tests/cli/world/mecab, in a temporary
// folder and changed.
#ifndef TAVO_TESTS_TINY_LEXICON_HPP
#define TAVO_TESTS_TINY_LEXICON_HPP

#include "support/temp_dir.hpp"

#include <string>

namespace TAVO::test {

/// A file of the lexicon.
std::string tinyLexicon(std::string const& file);

/// Texts are UTF-8; change them before write(). Ids: 1 noun, 2 particle, 3 verb, 4 symbol.
struct TinyLexicon {
    std::string words = tinyLexicon("words.csv"), matrix = tinyLexicon("matrix.def"), unknown = tinyLexicon("unk.def"),
                characters = tinyLexicon("char.def"), settings = tinyLexicon("dicrc");

    /// Writes the files; the folder's path.
    std::string write(TempDir const& folder) const {
        folder.write("words.csv", words);
        folder.write("matrix.def", matrix);
        folder.write("unk.def", unknown);
        folder.write("char.def", characters);
        folder.write("dicrc", settings);
        return folder.path();
    }
};

}  // namespace TAVO::test

#endif
