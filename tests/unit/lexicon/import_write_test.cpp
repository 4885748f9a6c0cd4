#include "lexicon/import/write.hpp"

#include "dic/read_pron.hpp"
#include "dic/source_record.hpp"
#include "support/testing.hpp"

namespace TAVO::importer {
namespace {

using namespace test;

TEST(ImportWrite, ReadingAndPronunciationShareWhatTheyCan) {
    Table<char const*, char const*, char const*> const cases{
        {"ヤマ", "ヤマ", "ヤマ"},
        {"ハ", "ワ", "(ハ|ワ)"},
        {"トウキョウ", "トーキョー", "ト(ウ|ー)キョ(ウ|ー)"},
        {"コンニチハ", "コンニチワ", "コンニチ(ハ|ワ)"},
        {"イウ", "ユー", "(イウ|ユー)"},
        {"ヒカキ", "ヒキ", "ヒ(カ|)キ"},
        {"アア", "アアア", "アア(|ア)"},
        {"ヤマ", "", "ヤマ"},
        {"", "", ""},
        {"ソ", "ソ", "ソ"},
        {"-", "-", ""},
        {"ア(", "ア(", ""},
        {"ア|イ", "アイ", ""},
    };
    for (auto const& [reading, pron, expected] : cases) {
        std::string const joined = joinReadPron(toSjis(reading), toSjis(pron));
        EXPECT_EQ(joined, toSjis(expected)) << reading << " " << pron;
        if (joined.empty()) continue;
        EXPECT_EQ(extractRead(joined.c_str(), true), toSjis(reading));
        EXPECT_EQ(extractPron(joined.c_str()), toSjis(*pron == '\0' ? reading : pron));
    }
}

TEST(ImportWrite, EscapedFieldsComeBack) {
    // The second bytes of these are "\", "|" and "-"-like marks.
    for (char const* text : {"表", "ソ", "ー", "a-b/c,d\\", "-", "/", ",", "\\", "十、―"}) {
        std::string const sjis = toSjis(text);
        SourceRecord record;
        std::string error;
        ASSERT_TRUE(record.parse(escapeField(sjis) + ',' + escapeField(sjis) + ",0,," + escapeField(sjis), error))
            << text << ": " << error;
        EXPECT_EQ(record.form, sjis);
        EXPECT_EQ(record.partOfSP, sjis);
        EXPECT_EQ(record.stdForm, sjis);
        EXPECT_EQ(record.partCount, 1U);
    }
}

/// Two ids, three words of one form; the tables say what the test wants.
struct SmallImport {
    Lexicon lexicon;
    Tables tables;

    SmallImport() { tables.names = {"BOS", "EOS", "Undef", "A", "A-1"}; }
    void add(char const* form, std::uint16_t id, std::uint8_t byte, std::int32_t cost, char const* reading) {
        Word word;
        word.form = lexicon.keep(form);
        word.reading = lexicon.keep(reading);
        word.cost = cost;
        lexicon.words.push_back(word);
        tables.idOfWord.push_back(id);
        tables.costOfWord.push_back(byte);
    }
};

TEST(ImportWrite, LinesAreSortedByFormIdByteAndCost) {
    SmallImport import;
    import.add("b", 4, 1, 0, "r1");
    import.add("a", 5, 1, 0, "r2");
    import.add("a", 4, 9, 5, "r3");
    import.add("a", 4, 9, 3, "r4");
    import.add("a", 4, 2, 8, "r5");
    EXPECT_EQ(sourceLines(import.lexicon, import.tables),
              (std::vector<std::string>{"a,A,2,r5", "a,A,9,r4", "a,A,9,r3", "a,A\\-1,1,r2", "b,A,1,r1"}));
    EXPECT_EQ(import.lexicon.leftOut.duplicates.count, 0U);
}

TEST(ImportWrite, DuplicatesKeepTheCheapest) {
    SmallImport import;
    import.add("a", 4, 9, 5, "r");
    import.add("a", 4, 2, 3, "r");
    import.add("b", 4, 9, 5, "r");
    EXPECT_EQ(sourceLines(import.lexicon, import.tables), (std::vector<std::string>{"a,A,2,r", "b,A,9,r"}));
    EXPECT_EQ(import.lexicon.leftOut.duplicates.examples, std::vector<std::string>{"a"});
}

TEST(ImportWrite, FormsThatLookLikeCommentsStayWords) {
    SmallImport import;
    import.add("#", 4, 0, 0, "");
    import.add(";", 4, 0, 0, "");
    import.add("\\", 4, 0, 0, "");
    EXPECT_EQ(sourceLines(import.lexicon, import.tables), (std::vector<std::string>{"\\#,A,0", "\\;,A,0", "\\\\,A,0"}));
}

TEST(ImportWrite, NothingIsLeftWhereAFileCannotBeWritten) {
    TempDir const folder;
    std::filesystem::create_directory(folder.file("taken"));
    EXPECT_THROW(writeFile(folder.file("taken"), "text"), lexicon_error);
    EXPECT_FALSE(std::filesystem::exists(folder.file("taken.tmp")));
    EXPECT_THROW(writeFile(folder.file("no/such/folder"), "text"), lexicon_error);
}

TEST(ImportWrite, RefusedLinesAreNamed) {
    EXPECT_TRUE(contains(thrown<lexicon_error>([] {
                             compileDictionaries({"A"}, {"a,A,1", "b,B,1"});
                         }),
                         "SysDic.txt:2: "));
}

TEST(ImportWrite, AHalfBeginsWithAForm) {
    Table<std::vector<std::string>, std::size_t> const cases{
        {{"a,A,1", "b,A,1"}, 1},
        {{"a,A,1", "b,A,1", "b,A,2", "b,A,3", "c,A,1"}, 1},
        {{"a,A,1", "a,A,2", "a,A,3", "b,A,1"}, 0},
        {{"a\\,,A,1", "a\\,b,A,1", "a\\,b,A,2"}, 1},  // forms "a," and "a,b"
        {{"\x83\x5C,A,1", "\x83\x5C\x83,A,1"}, 1},    // no escape: the second byte of a character
    };
    for (auto const& [lines, middle] : cases) EXPECT_EQ(middleForm(lines, 0, lines.size()), middle) << lines.back();
    EXPECT_EQ(middleForm({"a,A,1", "b,A,1", "c,A,1", "d,A,1"}, 2, 4), 3U);
}

TEST(ImportWrite, TheInitFileNamesEveryPart) {
    EXPECT_EQ(compileDictionaries({"A"}, {"a,A,1", "b,A,1"}).size(), 1U);
    std::string const text = initFileText("/data", 2, false);
    EXPECT_TRUE(contains(text, "\nDic=/data/SysDic\nDic=/data/SysDic2\n"));
    EXPECT_TRUE(contains(initFileText("/data", 2, true), "\nDic=/data/SysDic2,/data/SysDic2.txt\n"));
}

}  // namespace
}  // namespace TAVO::importer
