#include "dic/pools.hpp"
#include "support/text_world.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

using namespace TAVO;
using namespace TAVO::test;
namespace fs = std::filesystem;

class LexiconTest : public testing::Test {
protected:
    static std::string words(Lexicon const& lexicon, std::string const& text) {
        Tokenizer tokenizer(lexicon);
        return describe(tokenizer.tokenize(text));
    }
    /// Aligned copies of the lexicon's files.
    std::vector<LexiconFile> files(std::initializer_list<char const*> names) {
        std::vector<LexiconFile> found;
        for (char const* name : names) {
            std::string const bytes = world_.read(name);
            auto& block = blocks_.emplace_back(bytes.size() / 8 + 1);
            std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char*>(block.data()));
            found.push_back({name, {reinterpret_cast<std::byte const*>(block.data()), bytes.size()}});
        }
        return found;
    }

    TextWorld world_;
    std::string const text_ = "東京は12見naïve";
    std::string const expected_ = words(Lexicon::open(world_.dir.path()), text_);
    std::vector<std::vector<std::uint64_t>> blocks_;
};

TEST_F(LexiconTest, PathsOfAnInitFileCountFromItsFolder) {
    world_.dir.write("tavo.init", "Dic=SysDic\nConnTable=ConnTable\nReduceRule=none\n");
    std::string const init = world_.dir.path() + "/tavo.init";
    EXPECT_EQ(Lexicon::open(init).path(), init);
    std::string const apart = words(Lexicon::open(init), text_);
    EXPECT_NE(apart, expected_);
    EXPECT_EQ(words(Lexicon::open(world_.dir.path()), text_), apart);  // the folder's own init file
    world_.dir.write("tavo.init", "Dic=/moved/SysDic\nConnTable=/moved/ConnTable\n");
    EXPECT_EQ(words(Lexicon::open(world_.dir.path()), text_), expected_);
}

TEST_F(LexiconTest, InMemory) {
    auto const given = files({"SysDic", "ConnTable", "reduce.rules", "number.list", "pos.fields"});
    Lexicon const lexicon = Lexicon::open(given);
    EXPECT_EQ(words(lexicon, text_), expected_);
    EXPECT_EQ(words(lexicon.reloaded(), text_), expected_);
    EXPECT_EQ(lexicon.path(), "");
    EXPECT_EQ(lexicon.fingerprint(), Lexicon::open(world_.dir.path()).fingerprint());
    EXPECT_TRUE(contains(thrown([&] { Lexicon::open(files({"SysDic"})); }), "need \"SysDic\" and \"ConnTable\""));
}

TEST_F(LexiconTest, VersionsStayWhileFilesChange) {
    Lexicon const before = Lexicon::open(world_.dir.path());
    Tokenizer old(before);
    std::string const print = before.fingerprint();
    SmallWorld world;
    world.namesUtf8({"BOS", "EOS", "Undef:Inside", "名詞:一般", "動詞:自立:一段:連用形", "助詞", "数:Number"});
    world.cost([](unsigned, unsigned) { return 10; }).linesUtf8({"東京は,名詞:一般,5"});
    TempDir made;
    world.writeTo(made.path());
    fs::rename(made.path() + "/SysDic", world_.dir.path() + "/SysDic");
    Lexicon const after = before.reloaded();
    EXPECT_EQ(describe(old.tokenize(text_)), expected_);
    EXPECT_EQ(words(before, text_), expected_);
    EXPECT_NE(words(after, text_), expected_);
    EXPECT_EQ(before.fingerprint(), print);
    EXPECT_NE(after.fingerprint(), print);
    world_.dir.write("SysDic", "no dictionary");
    EXPECT_EQ(thrown([&] { after.reloaded(); }),
              "ILLEGAL_FORMAT: " + world_.dir.path() +
                  "/SysDic: damaged, no compiled dictionary, or one of another version; make it anew");
    EXPECT_EQ(describe(old.tokenize(text_)), expected_);
}

TEST_F(LexiconTest, WhatIsMissingDamagedOrDoesNotFitIsTold) {
    SmallWorld other;
    TempDir made;
    other.namesUtf8({"BOS", "EOS", "UNK", "別"}).linesUtf8({"東,別,5"}).writeTo(made.path());
    auto const ofOther = [&](char const* name) {
        std::ifstream in(made.path() + "/" + name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    std::string const dic = world_.read("SysDic"), table = world_.read("ConnTable");
    // A file, what stands in it ("-": it is missing), and what is told of it.
    Table<char const*, std::string, std::string> const cases{
        {"SysDic", "-", "no lexicon: it has no SysDic and ConnTable; name the folder"},
        {"ConnTable", "-", "no lexicon: it has no SysDic and ConnTable; name the folder"},
        {"SysDic", "", "SysDic: damaged, no compiled dictionary, or one of another version; make it anew"},
        {"SysDic", dic.substr(0, 40),
         "SysDic: damaged, no compiled dictionary, or one of another version; make it anew"},
        {"ConnTable", "", "ConnTable: damaged, or no connection table; take it from its source anew"},
        {"ConnTable", table.substr(0, table.size() / 2),
         "ConnTable: damaged, or no connection table; take it from its source anew"},
        {"ConnTable", ofOther("ConnTable"), "ConnTable; compile it with this connection table"},
        {"SysDic", ofOther("SysDic"), "SysDic: its parts of speech are not those of"},
        {"reduce.rules", "Nonsense\n", "reduce.rules:1:No Equals Sign"},
        {"tavo.init", "Dic=gone\nConnTable=ConnTable\n", "/gone"},
        {"tavo.init", "Dic=SysDic\nConnTable=ConnTable\nReduceRule=gone\n", "/gone"},
        {"tavo.init", "Dic=SysDic\nConnTable=ConnTable\nReduceUndef=7\n", "ReduceUndef=7"},
    };
    for (auto const& [name, bytes, expected] : cases) {
        TempDir folder;
        fs::copy(world_.dir.path(), folder.path(), fs::copy_options::overwrite_existing | fs::copy_options::recursive);
        if (bytes == "-")
            fs::remove(folder.path() + "/" + name);
        else
            folder.write(name, bytes);
        std::string const what = thrown([&] { Lexicon::open(folder.path()); });
        EXPECT_TRUE(contains(what, expected)) << name;
        EXPECT_TRUE(contains(what, folder.path())) << name;
    }
}

TEST_F(LexiconTest, Options) {
    std::string const folder = world_.dir.path();
    std::string const print = Lexicon::open(folder).fingerprint();
    LexiconOptions options;
    options.reduceRules = "none";
    EXPECT_NE(words(Lexicon::open(folder, options), text_), expected_);
    EXPECT_NE(Lexicon::open(folder, options).fingerprint(), print);
    options = {};
    options.modes = {{"ReduceNumber", 0}};
    EXPECT_NE(words(Lexicon::open(folder, options), text_), expected_);
    options.modes = {{"Reduce", 0}};
    EXPECT_TRUE(contains(thrown([&] { Lexicon::open(folder, options); }), "\"Reduce\" is no mode"));
    options.modes = {{"ReduceNumber", 7}};
    EXPECT_TRUE(contains(thrown([&] { Lexicon::open(folder, options); }), "ReduceNumber=7"));
    options = {};
    options.dictionaries = {folder + "/none"};
    EXPECT_EQ(thrown([&] { Lexicon::open(folder, options); }), "FILE_NOT_OPEN: " + folder + "/none");
}

TEST_F(LexiconTest, MakesTheLockThatAnAnalyserDoesWithout) {
    Tavo::dispose();
    { Tavo const analyser; }
    EXPECT_FALSE(sharedPools().HasCS);
    Lexicon::open(world_.dir.path());
    EXPECT_TRUE(sharedPools().HasCS);
}

TEST_F(LexiconTest, FoundByItself) {
    ::setenv("TAVO_PATH", world_.dir.path().c_str(), 1);
    EXPECT_EQ(Lexicon::places().front(), world_.dir.path());
    EXPECT_EQ(words(Lexicon::open(), text_), expected_);
    ::unsetenv("TAVO_PATH");
    EXPECT_TRUE(contains(thrown([&] { Lexicon::open(world_.dir.path() + "/nowhere"); }), "FILE_NOT_OPEN"));
    TempDir const empty;
    EXPECT_TRUE(contains(thrown([&] { Lexicon::open(empty.path()); }), "no lexicon: it has no SysDic and ConnTable"));
}

}  // namespace
