// Words that are added to a lexicon: their ids and costs.
#include "lexicon/words/new_words.hpp"
#include "lexicon/import/source/text.hpp"
#include "lexicon/words/like_word.hpp"
#include "lexicon/words/must_win.hpp"

#include "config/pos_name.hpp"
#include "dic/conn_table.hpp"
#include "dic/dic_compiler.hpp"
#include "support/testing.hpp"
#include "support/tiny_lexicon.hpp"

namespace TAVO::words {
namespace {

using namespace test;

/// Names 1 to 8: of one name in three classes, another, and one without class.
std::vector<std::string> const kNames{"", "BOS", "EOS", "Undef", "A:B-1", "A:B", "A:B-2", "C", "D"};

/// Ids 4 to 6 are one name at levels 10, 20 and 30; id 7 has another row.
WordClasses smallClasses() {
    WordClasses classes;
    classes.step = 10;
    classes.perByte = 5;
    classes.left = {{1, {1, 0}}, {2, {1, 40}}};
    classes.right = {{1, {1, 0}}, {2, {2, -100}}};
    classes.classes = {{}, {}, {}, {}, {1, 1, 10, true}, {1, 1, 20, true}, {1, 1, 30, true}, {2, 1, 12, true}};
    return classes;
}

TEST(WordClasses, TextComesBack) {
    TempDir const folder;
    std::string const text = smallClasses().text();
    WordClasses const again = WordClasses::read(folder.write("classes", text));
    EXPECT_EQ(again.text(), text);
    EXPECT_EQ(again.left.at(2).offset, 40);
    EXPECT_FALSE(again.classes.at(3).known);
    EXPECT_EQ(again.classes.at(6).level, 30);
}

TEST(WordClasses, FaultsNameTheLine) {
    TempDir const folder;
    for (char const* line : {"id 4", "id 70000 1 1 1", "left x 1 0", "step 0", "what 1"}) {
        std::string const path = folder.write("classes", "; comment\nid 1 1 1 1\n" + std::string(line) + "\n");
        EXPECT_TRUE(contains(thrown<lexicon_error>([&] { WordClasses::read(path); }), "classes:3: ")) << line;
    }
    EXPECT_THROW(WordClasses::read(folder.write("empty", "step 1\n")), lexicon_error);
    EXPECT_THROW(WordClasses::read(folder.file("none")), lexicon_error);
}

TEST(WordClasses, ACostOfTheSourceFindsItsLevel) {
    // Left and right id, cost and bytes of the word; the id and the byte it gets.
    Table<unsigned, unsigned, double, std::size_t, unsigned, unsigned> const cases{
        {1, 1, 90, 2, 4, 128},    // (90 + 5 * 2) / 10 = 10
        {1, 1, 190, 2, 5, 128},   // 20
        {1, 1, 150, 2, 5, 1},     // 16: far below the class, as cheap as a byte can tell
        {1, 1, 195, 2, 5, 192},   // 20.5
        {2, 1, 150, 2, 5, 128},   // 16 + 4 of the left id
        {1, 2, 10, 2, 4, 255},    // the other row has no class of this name
        {1, 1, 100, 20, 5, 128},  // longer: (100 + 100) / 10
    };
    for (auto const& [left, right, cost, bytes, id, byte] : cases) {
        Placement const placed = smallClasses().bySource(kNames, "A:B", left, right, cost, bytes);
        EXPECT_EQ(placed.id, id) << cost;
        EXPECT_EQ(placed.cost, byte) << cost;
    }
    EXPECT_EQ(smallClasses().bySource(kNames, "A:B", 9, 1, 0, 2).id, 0);
    EXPECT_EQ(smallClasses().bySource(kNames, "D", 1, 1, 0, 2).id, 0) << "a name without classes";
}

TEST(NewWords, CompleteFillsWhatIsEmpty) {
    // Like a word of 2 bytes at level 20: each further byte adds 5 / 10 of a unit.
    Table<char const*, char const*> const cases{
        {"xy", "xy,A:B,128"},
        {"xy,,,read,std", "xy,A:B,128,read,std"},
        {"xyxy", "xyxy,A:B,255"},                                          // level 21
        {"xyxyxyxyxyxyxyxyxyxyxy", "xyxyxyxyxyxyxyxyxyxyxy,A:B\\-2,128"},  // 20 bytes more: level 30
        {"x\\,", "x\\,,A:B,128"},
        {"x-y", "x-y,A:B,128"},
        {"xy,C", "xy,C,255"},              // its one class, far below
        {"xy,A:B\\-2", "xy,A:B\\-2,128"},  // named with its class: kept
        {"xy,,7", "xy,A:B,7"},
        {"xy,C,7,r", "xy,C,7,r"},
        {"xy,E", "xy,E,128"},  // unlisted: for the compiler to refuse
    };
    NewWords words(kNames, smallClasses());
    EXPECT_EQ(words.complete("xy,,"), "xy,,") << "no like word";
    words.setLike({{5, 128}, 2});
    for (auto const& [line, expected] : cases) EXPECT_EQ(words.complete(line), expected) << line;
}

TEST(NewWords, WithoutClassesTheLikeWordIsTakenAsItIs) {
    NewWords words(kNames, std::nullopt);
    words.setLike({{6, 77}, 2});
    EXPECT_EQ(words.complete("xyxy"), "xyxy,A:B\\-2,77");
    EXPECT_EQ(words.complete("xy,C"), "xy,C,77");
    std::string source, error;
    ASSERT_TRUE(words.fromMecab("xy,1,1,90,A,B,*,*,*,*,*", source, error));
    EXPECT_EQ(source, "xy,A:B\\-2,77");
}

TEST(NewWords, MecabLines) {
    Table<char const*, char const*, char const*> const cases{
        {"xy,1,1,90,A,B,*,*,*,*,xy,r,p", "xy,A:B\\-1,128,(r|p)", ""},
        {"xy,1,1,190,A,B,*,*,*,*,base,r,r", "xy,A:B,128,r,base", ""},
        {"\"x,y\",,,,A,B,*,*,*,*,*,*,*", "x\\,y,A:B,128", ""},  // the typical class
        {"xy,-1,-1,-1,A,B", "xy,A:B,128", ""},
        {"xy,,,,E", "xy,E,128", ""},  // for the compiler to refuse
        {"xy,1,1,90", "", "Error: form, left id, right id, cost and features are expected"},
        {",1,1,90,A", "", "Error: form, left id, right id, cost and features are expected"},
        {"xy,1,x,90,A", "", "Error: left id, right id and cost are numbers, or empty"},
    };
    NewWords const words(kNames, smallClasses());
    for (auto const& [line, wanted, fault] : cases) {
        std::string source, error;
        EXPECT_EQ(words.fromMecab(line, source, error), *fault == '\0') << line;
        EXPECT_EQ(source, wanted) << line;
        EXPECT_EQ(error, fault) << line;
    }
}

/// An imported lexicon, as the tools see it.
struct Imported {
    explicit Imported(char const* more = "") {
        tiny.words += "谷,1,1,20000,名詞,一般,*,*,*,*,谷,タニ,タニ\n";
        tiny.words += more;
        MecabImportOptions options;
        options.folder = tiny.write(source);
        options.output = out.path();
        options.source = true;
        importMecab(options);
        ConnTable const table(false, out.file("ConnTable").c_str());
        names.emplace_back();
        for (std::uint32_t id = 1; id <= table.idCount(); ++id) names.emplace_back(table.getName(id));
    }
    void attachTo(Tavo& analyser) const {
        analyser.addDicPath(out.file("SysDic").c_str(), true);
        analyser.setConnTablePath(out.file("ConnTable").c_str());
    }
    NewWords words() const { return {names, WordClasses::read(out.file(kWordClassesName))}; }

    TinyLexicon tiny;
    TempDir source, out;
    std::vector<std::string> names;
};

TEST(NewWords, AMecabLineGivesWhatTheImportGives) {
    Imported const lexicon;
    NewWords const words = lexicon.words();
    std::string const written = "\n" + importer::readFile(lexicon.out.file("SysDic.txt"));
    std::istringstream lines(lexicon.tiny.words);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        std::string source, error;
        ASSERT_TRUE(words.fromMecab(toSjis(line), source, error)) << line;
        EXPECT_NE(written.find("\n" + source + "\n"), std::string::npos) << line << ": " << toUtf8(source);
    }
    EXPECT_EQ(count, 7);
}

TEST(LikeWord, OfSeveralEntriesTheOneThatWinsAlone) {
    Imported const lexicon(
        "桜,1,1,3000,名詞,一般\n桜,3,3,3000,動詞,自立\n"
        "山川,1,1,30000,名詞,一般\n山川,3,3,30000,動詞,自立\n");
    Tavo analyser;
    lexicon.attachTo(analyser);
    auto const nameOf = [&](char const* word) {
        LikeWord const like = findLike(analyser, word, TextEncoding::Utf8);
        return toUtf8(withoutClass(lexicon.names.at(like.placement.id))) + " " + std::to_string(like.bytes);
    };
    EXPECT_EQ(nameOf("桜"), "動詞:自立 2");
    EXPECT_EQ(nameOf("桜,名詞"), "名詞:一般 2");
    EXPECT_EQ(nameOf("山川,名詞:一般"), "名詞:一般 4");
    EXPECT_EQ(thrown<lexicon_error>([&] { findLike(analyser, "山川", TextEncoding::Utf8); }),
              "--like 山川: the lexicon has several; name one:\n"
              "  --like 山川,動詞:自立\n  --like 山川,名詞:一般")
        << "alone it is two words";
    EXPECT_THROW(findLike(analyser, "カ", TextEncoding::Utf8), lexicon_error) << "parts of unknown words are no words";
}

TEST(MustWin, TellsWhatAWordLacks) {
    Imported const lexicon;
    NewWords const words = lexicon.words();
    Table<char const*, char const*, bool, char const*> const cases{
        {"山川,1,1,3000,名詞,一般", "山川へ行く", true, "\"山川へ行く\": 山川 wins: 山川 へ 行く"},
        {"山川,1,1,20000,名詞,一般", "山川へ行く", false, "to win over 山 川 へ 行く; as 名詞:一般"},
        {"山川,1,1,3000,名詞,一般", "川へ行く", false, "\"川へ行く\": no new word is in the "},
    };
    for (auto const& [line, sentence, wins, text] : cases) {
        TempDir const folder;
        std::string source, error;
        ASSERT_TRUE(words.fromMecab(toSjis(line), source, error));
        DicCompiler compiler({words.names().begin() + 1, words.names().end()});
        ASSERT_TRUE(compiler.add(source, error)) << error;
        std::ostringstream bytes;
        ASSERT_TRUE(compiler.compile(bytes, false));
        Tavo analyser;
        analyser.addDicPath(folder.write("new", std::move(bytes).str()).c_str(), true);
        lexicon.attachTo(analyser);
        WordVerdict const verdict = judge(analyser, words, toSjis(sentence), TextEncoding::Utf8);
        EXPECT_EQ(verdict.wins, wins) << verdict.text;
        EXPECT_TRUE(contains(verdict.text, text));
    }
}

}  // namespace
}  // namespace TAVO::words
