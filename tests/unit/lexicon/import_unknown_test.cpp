#include "lexicon/import/source/unknown.hpp"

#include "lexicon/import/fit/search.hpp"
#include "support/testing.hpp"
#include "support/tiny_lexicon.hpp"

namespace TAVO::importer {
namespace {

using namespace test;

Lexicon readWithUnknown(TinyLexicon const& tiny = {}) {
    TempDir const folder;
    Lexicon lexicon = readLexicon(tiny.write(folder), "", nullptr);
    addUnknownWords(lexicon, readCharMap(folder.file("char.def")));
    return lexicon;
}

std::vector<Word> wordsOf(Lexicon const& lexicon, char const* form) {
    std::vector<Word> result;
    for (Word const& word : lexicon.words)
        if (word.unknown && word.form == toSjis(form)) result.push_back(word);
    return result;
}

/// The best analysis by exact costs: forms and names' features, "form/name ...".
std::string bestPath(Lexicon const& lexicon, char const* text) {
    FormIndex const index(lexicon);
    std::string const sjis = toSjis(text);
    Lattice lattice;
    fillLattice(lattice, index, lexicon, sjis);
    searchForward(lattice, sjis.size(), ExactEdge{lexicon});
    std::string result;
    for (std::uint32_t const i : lattice.path()) {
        Word const& word = lexicon.words[lattice.nodes[i].word];
        result += (result.empty() ? "" : " ") + std::string(word.form) + "/" + lexicon.names.at(word.name);
    }
    return toUtf8(result);
}

TEST(ImportUnknown, AGroupIsBeginAndInsides) {
    Lexicon const lexicon = readWithUnknown();
    EXPECT_EQ(bestPath(lexicon, "ソーセへ行く"),
              "ソ/名詞:一般:Undef:Katakana ー/名詞:一般:Undef:Katakana:Inside セ/名詞:一般:Undef:Katakana:Inside "
              "へ/助詞:格助詞 行く/動詞:自立:五段:基本形");
    // One unknown word's cost, however long the run is.
    FormIndex const index(lexicon);
    Lattice one, three;
    for (auto& [lattice, text] : {std::pair(&one, toSjis("ソ")), std::pair(&three, toSjis("ソーセ"))}) {
        fillLattice(*lattice, index, lexicon, text);
        searchForward(*lattice, text.size(), ExactEdge{lexicon});
    }
    EXPECT_EQ(one.best, -500 + 9000 + 600);
    EXPECT_EQ(three.best, one.best);
}

TEST(ImportUnknown, InsideFollowsItsOwnChainOnly) {
    Lexicon const lexicon = readWithUnknown();
    std::uint32_t chains = 0;
    for (std::uint32_t col = lexicon.sourceCols; col < lexicon.matrix.cols; ++col, ++chains)
        for (std::uint32_t row = 0; row < lexicon.sourceRows; ++row)
            EXPECT_EQ(lexicon.matrix.at(row, col), Matrix::kForbidden) << row << " " << col;
    EXPECT_EQ(chains, 4U);
    for (std::uint32_t row = lexicon.sourceRows; row < lexicon.matrix.rows; ++row) {
        int allowed = 0;
        for (std::uint32_t col = lexicon.sourceCols; col < lexicon.matrix.cols; ++col)
            allowed += lexicon.matrix.at(row, col) == 0 ? 1 : 0;
        EXPECT_EQ(allowed, 1) << row;
        for (std::uint32_t col = 0; col < lexicon.sourceCols; ++col)
            EXPECT_EQ(lexicon.matrix.at(row, col), lexicon.matrix.at(lexicon.rowBase[row], col));
    }
}

TEST(ImportUnknown, LengthTwoEndsAfterTheSecondCharacter) {
    Lexicon const lexicon = readWithUnknown();
    EXPECT_EQ(bestPath(lexicon, "犬猫"), "犬/名詞:一般:Undef:Kanji 猫/名詞:一般:Undef:Kanji:Inside");
    EXPECT_EQ(bestPath(lexicon, "犬猫馬鹿"),
              "犬/名詞:一般:Undef:Kanji 猫/名詞:一般:Undef:Kanji:Inside 馬/名詞:一般:Undef:Kanji "
              "鹿/名詞:一般:Undef:Kanji:Inside");
}

TEST(ImportUnknown, NoBeginWhereAWordBegins) {
    Lexicon const lexicon = readWithUnknown();
    ASSERT_EQ(wordsOf(lexicon, "山").size(), 1U) << "a word of the lexicon: inside only";
    EXPECT_GE(wordsOf(lexicon, "山")[0].col, lexicon.sourceCols);
    // 行 begins words without being one: its begin is dearer than that of 犬.
    ASSERT_EQ(wordsOf(lexicon, "行").size(), 2U);
    ASSERT_EQ(wordsOf(lexicon, "犬").size(), 2U);
    EXPECT_EQ(wordsOf(lexicon, "犬")[0].cost, 9500);
    EXPECT_GT(wordsOf(lexicon, "行")[0].cost, 9500);
    EXPECT_EQ(wordsOf(lexicon, "カ")[0].cost, 9000) << "a category that is always tried has no such doubt";
}

TEST(ImportUnknown, AFarCheaperWordIsNoPartOfUnknownOnes) {
    TinyLexicon tiny;
    tiny.words += "、,4,4,-3000,記号,読点\n！,4,4,-2900,記号,一般\n";
    tiny.unknown += "SYMBOL,4,4,9000,名詞,サ変接続\n";
    tiny.characters += "SYMBOL 1 1 0\n0x3001 SYMBOL\n0xFF01 SYMBOL\n0x3002 SYMBOL\n";
    Lexicon const lexicon = readWithUnknown(tiny);
    EXPECT_EQ(wordsOf(lexicon, "、").size(), 0U);
    EXPECT_EQ(wordsOf(lexicon, "！").size(), 2U) << "dear enough for begin and inside";
    EXPECT_EQ(wordsOf(lexicon, "。").size(), 2U) << "no word itself";
}

TEST(ImportUnknown, OnlyTheCheapestTemplateOfACategoryIsTaken) {
    TinyLexicon tiny;
    tiny.unknown += "KATAKANA,3,3,8900,動詞\nKATAKANA,2,2,8900,助詞\n";
    Lexicon const lexicon = readWithUnknown(tiny);
    std::vector<Word> const words = wordsOf(lexicon, "カ");
    ASSERT_EQ(words.size(), 2U) << "begin and inside";
    EXPECT_EQ(lexicon.names.at(words[0].name), toSjis("動詞:Undef:Katakana"));
}

TEST(ImportUnknown, LaterLinesOfCharDefWin) {
    TempDir const folder;
    folder.write("char.def", "DEFAULT 0 1 0\nA 1 0 3\nB 0 1 0\n0x0041..0x0043 A\n0x0042 B A\n");
    CharMap const map = readCharMap(folder.file("char.def"));
    EXPECT_EQ(map.at('A'), std::vector<std::string>{"A"});
    EXPECT_EQ(map.at('B'), (std::vector<std::string>{"B", "A"}));
    EXPECT_EQ(map.at('D'), std::vector<std::string>{"DEFAULT"});
    EXPECT_TRUE(map.categories.at("A").always);
    EXPECT_EQ(map.categories.at("A").length, 3U);
}

}  // namespace
}  // namespace TAVO::importer
