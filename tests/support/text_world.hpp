// A lexicon for the tests of the UTF-8 front.
#ifndef TAVO_TESTS_TEXT_WORLD_HPP
#define TAVO_TESTS_TEXT_WORLD_HPP

#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <tavo/tokenizer.hpp>

#include <fstream>
#include <iterator>
#include <string>

namespace TAVO::test {

/// A folder with a lexicon that has a word of each kind, joins unknown words and digits, and tells conjugations.
struct TextWorld {
    TextWorld() {
        SmallWorld world;
        world.namesUtf8({"BOS", "EOS", "Undef:Inside", "名詞:一般", "動詞:自立:一段:連用形", "助詞", "数:Number"});
        world.cost([](unsigned, unsigned) { return 10; });
        world.linesUtf8({"東京,名詞:一般,5,トウキョウ", "見,動詞:自立:一段:連用形,5,ミ,見る", "は,助詞,5,ワ",
                         "が,助詞,5,ガ", "1,数:Number,5,イチ", "2,数:Number,5,ニ", "スー,名詞:一般,5,スー"});
        world.writeTo(dir.path());
        dir.write("reduce.rules", "Number = :\nUndef = :\n");
        dir.write("number.list", toSjis("数:Number\n"));
        dir.write("pos.fields", "layout,9,6,6,7,8\nword,動詞:自立:一段:連用形,動詞,自立,*,*,一段,連用形\n");
    }
    std::string read(std::string const& name) const {
        std::ifstream in(dir.path() + "/" + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    TempDir dir;
};

/// All that can be asked of the tokens.
inline std::string describe(Tokens const& tokens) {
    std::ostringstream out;
    for (Token const& token : tokens) {
        out << token.surface() << '|' << token.begin() << '-' << token.end() << ' ' << token.charBegin() << '-'
            << token.charEnd() << ' ' << token.utf16Begin() << '-' << token.utf16End() << '|' << token.pos() << '|';
        for (std::string_view const field : token.posFields()) out << field << ',';
        out << '|' << token.conjugationType() << '|' << token.conjugationForm() << '|' << token.base() << '|'
            << token.reading() << '|' << token.pronunciation() << '|' << token.normalized() << '|' << token.converted()
            << '|' << token.annotation() << '|' << token.additional() << '|' << token.cost() << '|' << token.isUnknown()
            << static_cast<int>(token.kind()) << (token.wordId() != 0) << '\n';
    }
    return out.str();
}

}  // namespace TAVO::test

#endif
