// A MeCab-format lexicon of a few words in a temporary folder.
#ifndef TAVO_TESTS_TINY_LEXICON_HPP
#define TAVO_TESTS_TINY_LEXICON_HPP

#include "support/temp_dir.hpp"

#include <string>

namespace TAVO::test {

/// Texts are UTF-8; change them before write().
struct TinyLexicon {
    // Ids: 1 noun, 2 particle, 3 verb, 4 symbol.
    std::string words =
        "山,1,1,3000,名詞,一般,*,*,*,*,山,ヤマ,ヤマ\n"
        "川,1,1,3100,名詞,一般,*,*,*,*,川,カワ,カワ\n"
        "は,2,2,1000,助詞,係助詞,*,*,*,*,は,ハ,ワ\n"
        "へ,2,2,1200,助詞,格助詞,*,*,*,*,へ,ヘ,エ\n"
        "行く,3,3,4000,動詞,自立,*,*,五段,基本形,行く,イク,イク\n"
        "行っ,3,3,4100,動詞,自立,*,*,五段,連用タ接続,行く,イッ,イッ\n";
    std::string matrix =
        "5 5\n"
        "0 0 0\n0 1 -500\n0 2 2000\n0 3 300\n0 4 900\n"
        "1 0 600\n1 1 1500\n1 2 -1500\n1 3 800\n1 4 900\n"
        "2 0 900\n2 1 -700\n2 2 2500\n2 3 -900\n2 4 900\n"
        "3 0 -800\n3 1 700\n3 2 900\n3 3 3000\n3 4 900\n"
        "4 0 100\n4 1 100\n4 2 100\n4 3 100\n4 4 100\n";
    std::string unknown =
        "DEFAULT,4,4,5000,記号,一般,*,*,*,*,*\n"
        "SPACE,4,4,5000,記号,空白,*,*,*,*,*\n"
        "KATAKANA,1,1,9000,名詞,一般,*,*,*,*,*\n"
        "KANJI,1,1,9500,名詞,一般,*,*,*,*,*\n";
    std::string characters =
        "DEFAULT 0 1 0\n"
        "SPACE 0 1 0\n"
        "KATAKANA 1 1 2\n"
        "KANJI 0 0 2\n"
        "0x0020 SPACE\n"
        "0x30A1..0x30FF KATAKANA # the middle dot too\n"
        "0x4E00..0x9FA5 KANJI\n";
    std::string settings = "cost-factor = 700\nconfig-charset = UTF-8\n";

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
