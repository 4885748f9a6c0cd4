#include "lexicon/import/source/source_lexicon.hpp"

#include "lexicon/import/source/charset.hpp"
#include "support/testing.hpp"
#include "support/tiny_lexicon.hpp"

namespace TAVO::importer {
namespace {

using namespace test;

Lexicon read(TinyLexicon const& tiny = {}) {
    TempDir const folder;
    return readLexicon(tiny.write(folder), "", nullptr);
}

TEST(ImportLexicon, ReadsWordsCostsAndNames) {
    Lexicon const lexicon = read();
    ASSERT_EQ(lexicon.words.size(), 6U);
    Word const& particle = lexicon.words[2];
    EXPECT_EQ(particle.form, toSjis("は"));
    EXPECT_EQ(particle.row, 2U);
    EXPECT_EQ(particle.cost, 1000);
    EXPECT_EQ(lexicon.names.at(particle.name), toSjis("助詞:係助詞"));
    EXPECT_EQ(particle.reading, toSjis("ハ"));
    EXPECT_EQ(particle.pron, toSjis("ワ"));
    EXPECT_EQ(particle.base, "") << "a base form equal to the form is not kept";
    EXPECT_EQ(lexicon.words[5].base, toSjis("行く"));
    EXPECT_EQ(lexicon.names.at(lexicon.words[5].name), toSjis("動詞:自立:五段:連用タ接続"));
    EXPECT_EQ(lexicon.matrix.at(1, 2), -1500) << "row: the word before; column: the word behind";
    EXPECT_EQ(lexicon.costFactor, 700);
}

TEST(ImportLexicon, ReadsTheEncodingThatDicrcNames) {
    TinyLexicon tiny;
    tiny.settings = "config-charset = EUC-JP\n";
    tiny.words = "\xBB\xB3,1,1,3000,\xCC\xBE\xBB\xEC,*,*,*,*,*,\xBB\xB3,\xA5\xE4\xA5\xDE,\xA5\xE4\xA5\xDE\n";
    tiny.unknown = "DEFAULT,4,4,5000,\xB5\xAD\xB9\xE6\n";
    Lexicon const lexicon = read(tiny);
    EXPECT_EQ(lexicon.words.at(0).form, toSjis("山"));
    EXPECT_EQ(lexicon.words.at(0).reading, toSjis("ヤマ"));
}

TEST(ImportLexicon, CountsWhatItLeavesOut) {
    TinyLexicon tiny;
    tiny.words += "😀,1,1,1,名詞,一般,*,*,*,*,😀,エモジ,エモジ\n";
    tiny.words += ",1,1,1,名詞,一般,*,*,*,*,＂,,\n";
    tiny.words += "鴎,1,1,1,名詞,一般,*,*,*,*,鷗外𠮷,カモメ,カモメ\n";
    Lexicon const lexicon = read(tiny);
    EXPECT_EQ(lexicon.entriesRead, 9U);
    EXPECT_EQ(lexicon.words.size(), 7U);
    EXPECT_EQ(lexicon.leftOut.noForm.examples, std::vector<std::string>{"words.csv:8"});
    EXPECT_EQ(lexicon.leftOut.noCode.count, 1U);
    EXPECT_EQ(lexicon.leftOut.noCode.examples, std::vector<std::string>{"😀"});
    EXPECT_EQ(lexicon.leftOut.lostFields.examples, std::vector<std::string>{"鷗外𠮷"});
    EXPECT_EQ(lexicon.words.back().base, "");
}

TEST(ImportLexicon, HyphensInFieldsBecomeFeatures) {
    TinyLexicon tiny;
    tiny.words = "走る,3,3,1,動詞,*,*,*,五段-ラ行,終止形-一般,走る,ハシル,ハシル\n";
    Lexicon const lexicon = read(tiny);
    EXPECT_EQ(lexicon.names.at(lexicon.words.at(0).name), toSjis("動詞:五段:ラ行:終止形:一般"));
}

TEST(ImportLexicon, SplitsQuotedFields) {
    Table<char const*, std::vector<std::string>> const cases{
        {"a,b", {"a", "b"}},
        {"\",\",1", {",", "1"}},
        {"\"say \"\"x\"\"\",1", {"say \"x\"", "1"}},
        {"a,,", {"a", "", ""}},
        {"", {""}},
        {"\"open", {"open"}},
    };
    for (auto const& [line, fields] : cases) {
        std::vector<std::string> found{"left over", "from before", "x", "y"};
        splitCsv(line, found);
        EXPECT_EQ(found, fields) << line;
    }
}

/// Longer than what is read at once, with lines of every kind at its borders.
TEST(ImportText, LinesOfLongFilesKeepTheirNumbers) {
    TempDir const folder;
    std::string text;
    std::vector<std::pair<std::size_t, std::string>> expected, found;
    std::vector<std::string> damaged;
    for (std::size_t number = 1; number <= 40'000; ++number) {
        bool const damage = number % 9001 == 0, empty = number % 7 == 0;
        std::string const line = empty ? "" : "山" + std::string(number % 150, 'x') + std::to_string(number);
        text += line + (damage ? "\xE3\x81" : "") + (number % 3 == 0 ? "\r\n" : "\n");
        if (damage) damaged.push_back("long.csv:" + std::to_string(number));
        if (!damage && !empty) expected.emplace_back(number, line);
    }
    ASSERT_GT(text.size(), std::size_t{2} << 20);
    text += "last";
    expected.emplace_back(40'001, "last");
    Loss loss;
    readLines(folder.write("long.csv", text), "UTF-8", &loss,
              [&](std::string_view line, std::size_t number) { found.emplace_back(number, line); });
    EXPECT_TRUE(found == expected);
    EXPECT_EQ(loss.examples, damaged);
}

TEST(ImportCharset, EveryCodeComesBack) {
    for (auto const& [code, point] : Cp932::table().all()) EXPECT_EQ(Cp932::table().code(point), code);
    EXPECT_GT(Cp932::table().all().size(), 7000U);
    EXPECT_EQ(Cp932::table().code(0x5C), 0x5C);
    EXPECT_EQ(Cp932::table().code(0xA5), 0x818F) << "the yen sign is no backslash";
    EXPECT_EQ(Cp932::table().code(0xFF71), 0xB1);
    EXPECT_EQ(Cp932::table().code(0x1F600), 0);
}

TEST(ImportCharset, MalformedUtf8GivesReplacements) {
    std::string const text = "\xE3\x81\xFF\x80z";
    std::vector<std::uint32_t> points;
    for (std::size_t pos = 0; pos < text.size();) points.push_back(nextCodePoint(text, pos));
    EXPECT_EQ(points, (std::vector<std::uint32_t>{0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 'z'}));
}

}  // namespace
}  // namespace TAVO::importer
