// Making lexicons through the library's interface.
#include <tavo/lexicon_maker.hpp>
#include <tavo/tavo.hpp>

#include "base/sjis.hpp"
#include "dic/pools.hpp"
#include "lexicon/import/source/text.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"
#include "support/tiny_lexicon.hpp"

namespace TAVO::test {
namespace {

/// A lexicon of two nouns and a verb.
struct Lexicon {
    Lexicon() {
        world.namesUtf8({"BOS", "EOS", "UNK", "名詞", "動詞"}).cost([](unsigned, unsigned) { return 10; });
        world.linesUtf8({"犬,名詞,20,いぬ", "犬,動詞,30,いぬ", "猫,名詞,40,ねこ"});
        world.writeTo(folder.path());
        options.connTable = folder.path();
        options.name = "list";
    }
    /// "file:line: cause" of each fault; of one that ends the work too.
    std::string faultsOf(std::string const& list) const {
        std::string text;
        try {
            WordList const made = compileWords(list, options);
            EXPECT_EQ(made.made, made.faults.empty() || made.faults.front().warning);
            for (LexiconFault const& fault : made.faults) text += fault.text() + "\n";
        } catch (lexicon_error const& error) {
            EXPECT_EQ(error.fault().text(), error.what());
            text = error.what();
        }
        return text;
    }

    TempDir folder;
    SmallWorld world;
    WordListOptions options;
};

TEST(LexiconMaker, FaultsTellFileLineAndCause) {
    Table<std::string, char const*> const cases{
        {"狐,名詞,1\n; comment\n\r\n", ""},
        {"狐,鳥,1\n鼠,名詞,x\n猿,名詞,300\n",
         "list:1: Error: Unlisted PartOfSP: 鳥(狐)\nlist:2: Error: Illegal Mrph Cost: [x]\nlist:3: Error: Overflaw "
         "Mrph Cost: [300]\n"},
        {"\n\n狐😀,名詞,1", "list:3: Error: \"😀\" is not in code page 932\n"},
        {"あ\xE3,名詞,1", "list:1: Error: byte 4 is not UTF-8 (Shift_JIS? --encoding sjis)\n"},
        {std::string(5000, 'x'), "list:1: Error: line of 5000 bytes; at most 4095 are read\n"},
        {"狐-鼠,名詞,1\n", "list:1: warning: 狐-鼠 is the word 狐鼠 of 2 parts; write 狐\\-鼠 to keep the character\n"},
        {convert("狐,名詞,1\n鼠の子,名詞,1\n", "CP932", "UTF-8"),
         "list: not UTF-8, it looks like Shift_JIS; use --encoding sjis"},
    };
    Lexicon const lexicon;
    for (auto const& [list, faults] : cases) EXPECT_EQ(lexicon.faultsOf(list), faults) << list;
}

TEST(LexiconMaker, WhatEndsTheWorkIsARecordToo) {
    Table<char const*, char const*> const classes{
        {"step x\n", "word.classes:1: no line of word classes"},
        {"", "word.classes: holds no classes"},
    };
    for (auto const& [text, fault] : classes) {
        Lexicon const lexicon;
        lexicon.folder.write("word.classes", text);
        EXPECT_TRUE(contains(lexicon.faultsOf("狐"), fault));
    }
    Lexicon lexicon;
    lexicon.options.like = "狐";
    EXPECT_EQ(lexicon.faultsOf("狐"), "--like 狐: the lexicon has no such word");
    lexicon.options.like = "😀";
    EXPECT_TRUE(contains(lexicon.faultsOf("狐"), "is not in code page 932"));
    lexicon.options.like = "犬";
    EXPECT_EQ(lexicon.faultsOf("狐"), "") << "the cheaper one wins alone";
    lexicon.options.dictionaries = {lexicon.folder.write("text", std::string(64, 'x'))};
    EXPECT_TRUE(contains(lexicon.faultsOf("狐"), "text: no compiled dictionary"));
    lexicon.options.connTable += "/none";
    EXPECT_THROW(compileWords("", lexicon.options), file_not_found);
}

TEST(LexiconMaker, InMemoryAndToAFileTheSame) {
    Lexicon lexicon;
    lexicon.options.like = "犬,名詞";
    lexicon.options.mustWin = {"狐", "犬"};
    std::vector<std::string> stages;
    lexicon.options.progress = [&](char const* stage, std::size_t done, std::size_t total) {
        EXPECT_LE(done, total);
        if (stages.empty() || stages.back() != stage) stages.push_back(stage);
        return true;
    };
    std::size_t const pooled = sharedPools().DIC_POOL.size();
    WordList const inMemory = compileWords("狐\n鼠,名詞,7,ねずみ\n", lexicon.options);
    EXPECT_TRUE(inMemory.made);
    EXPECT_EQ(inMemory.words, 2U);
    ASSERT_EQ(inMemory.verdicts.size(), 2U);
    EXPECT_TRUE(inMemory.verdicts[0].wins);
    EXPECT_EQ(inMemory.verdicts[0].text, "\"狐\": 狐 wins: 狐");
    EXPECT_FALSE(inMemory.verdicts[1].wins);
    EXPECT_EQ(stages, (std::vector<std::string>{"Compiling", "Judging sentences"}));
    EXPECT_TRUE(checkDictionary(inMemory.dictionary, "made").empty());
    EXPECT_EQ(sharedPools().DIC_POOL.size(), pooled + 1) << "the lexicon's, and not the new one";

    lexicon.options.output = lexicon.folder.file("new.dic");
    WordList const toFile = compileWords("狐\n鼠,名詞,7,ねずみ\n", lexicon.options);
    EXPECT_EQ(toFile.dictionary, "");
    EXPECT_EQ(toFile.verdicts[0].text, inMemory.verdicts[0].text);
    EXPECT_EQ(importer::readFile(lexicon.options.output), inMemory.dictionary);
    EXPECT_TRUE(checkTogether(lexicon.options.output, lexicon.folder.file("ConnTable")).empty());
    EXPECT_TRUE(std::filesystem::exists(lexicon.options.output + ".idx"));
    std::string dumped;
    EXPECT_EQ(dumpDictionary(lexicon.options.output, TextEncoding::Utf8, [&](auto lines) { dumped += lines; }), 0U);
    lexicon.options.output = {};
    EXPECT_EQ(compileWords(dumped, lexicon.options).dictionary, inMemory.dictionary) << dumped;
}

TEST(LexiconMaker, AFaultyListLeavesTheOldDictionary) {
    Lexicon lexicon;
    lexicon.options.output = lexicon.folder.write("old.dic", "old");
    EXPECT_NE(lexicon.faultsOf("狐,鳥,1\n"), "");
    lexicon.options.progress = [](char const*, std::size_t, std::size_t) { return false; };
    EXPECT_EQ(lexicon.faultsOf("狐,名詞,1\n"), "stopped by the caller");
    EXPECT_EQ(importer::readFile(lexicon.options.output), "old");
    lexicon.options.progress = nullptr;
    lexicon.options.output = lexicon.folder.path();
    EXPECT_TRUE(contains(lexicon.faultsOf("狐,名詞,1\n"), "is there and no regular file"));
}

TEST(LexiconMaker, FilesThatDoNotGoTogether) {
    Lexicon const lexicon;
    TempDir const other;
    SmallWorld().names({"BOS", "EOS", "UNK", "X"}).line("a,X,1").writeTo(other.path());
    std::string const dic = lexicon.folder.file("SysDic"), table = other.file("ConnTable");
    std::vector<LexiconFault> const faults = checkTogether(dic, table);
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].file, dic);
    EXPECT_EQ(faults[0].cause, "its parts of speech are not those of " + table);
    writeTableIndex(table);
    writeDictionaryIndexes(table, {other.file("SysDic")});
    EXPECT_TRUE(checkTogether(other.file("SysDic"), table).empty());
    std::string index = importer::readFile(table + ".idx");
    index.back() ^= 1;
    other.write("ConnTable.idx", index);
    EXPECT_EQ(checkTogether(other.file("SysDic"), table).at(0).file, table + ".idx");
    std::string bytes = importer::readFile(dic);
    bytes.pop_back();
    EXPECT_EQ(checkDictionary(bytes, "x").at(0).file, "x");
    EXPECT_FALSE(checkTable("", "y").empty());
    EXPECT_EQ(thrown<lexicon_error>([&] { dumpDictionary(table, TextEncoding::Utf8, [](auto) {}); }).substr(0, 4),
              table.substr(0, 4));
}

TEST(LexiconMaker, FaultsOfASourceLexicon) {
    struct Case {
        std::string TinyLexicon::*file;
        char const* text;
        char const* name;
        std::size_t line;
        char const* cause;
    };
    std::vector<Case> const cases{
        {&TinyLexicon::words, "桜,1,1\n", "words.csv", 1, "fewer than 5 fields"},
        {&TinyLexicon::words, "桜,1,1,5,名詞\n桜,1,x,5,名詞\n", "words.csv", 2, "right id \"x\" is not a number"},
        {&TinyLexicon::matrix, "2 2\n0 0 1\n", "matrix.def", 0, "4 costs are announced, 1 given"},
        {&TinyLexicon::matrix, "2 2\n0 9 1\n", "matrix.def", 2, "the ids 0 9 lie outside the matrix"},
        {&TinyLexicon::settings, "", "dicrc", 0, "no config-charset line; name the encoding: --charset UTF-8"},
    };
    for (Case const& wrong : cases) {
        TempDir const source, out;
        TinyLexicon lexicon;
        lexicon.*wrong.file = wrong.text;
        MecabImportOptions options;
        options.folder = lexicon.write(source);
        options.output = out.file("made");
        try {
            importMecab(options);
            ADD_FAILURE() << wrong.cause;
        } catch (lexicon_error const& error) {
            EXPECT_EQ(error.fault().file, source.file(wrong.name));
            EXPECT_EQ(error.fault().line, wrong.line);
            EXPECT_EQ(error.fault().cause, wrong.cause);
        }
        EXPECT_FALSE(std::filesystem::exists(out.file("made")));
    }
}

}  // namespace
}  // namespace TAVO::test
