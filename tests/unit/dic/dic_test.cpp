#include "dic/dic.hpp"

#include <tavo/error.hpp>

#include "dic/file_access.hpp"
#include "support/guarded_bytes.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

SmallWorld world() {
    SmallWorld made;
    made.namesUtf8({"文頭", "文末", "未定義", "名詞", "助詞"});
    made.linesUtf8({"東,名詞,10,ヒガシ", "東京,名詞,20,トウキョウ", "東京都,名詞,30,トウキョウト", "と,助詞,5",
                    "と,名詞,7", "a,名詞,1", "国際連合,名詞,40"});
    return made;
}

bool finds(Dic const& dic, std::string const& form) {
    GuardedBytes const guarded(form);
    return static_cast<bool>(dic.trie()->exactMatch(guarded.data(), guarded.size()));
}

class DicTest : public ::testing::Test {
protected:
    TempDir const dir;
    std::string const path = world().writeTo(dir.path()).dic;
    std::string bytes = readFile(path);
    std::size_t const trie = loadU32(asBytes(bytes.data()) + 4);
};

TEST_F(DicTest, AVisitThatStopsEndsTheSearch) {
    Dic const dic(true, path.c_str());
    std::string const text = toSjis("東京都");
    int visits = 0;
    EXPECT_FALSE(dic.trie()->prefixSearch(asBytes(text.data()), text.size(),
                                          [&](std::size_t, RecordChain) { return ++visits < 2; }));
    EXPECT_EQ(visits, 2);
}

TEST_F(DicTest, AnswersNames) {
    Dic const dic(false, path.c_str());
    EXPECT_EQ(dic.nameCount(), 5);
    EXPECT_EQ(toUtf8(dic.getPartOfSPName(1)), "文頭");
    EXPECT_EQ(toUtf8(dic.getPartOfSPName(5)), "助詞");
    EXPECT_EQ(toUtf8(dic.getPartOfSPName(0x10005)), "助詞") << "16 bits of the id are used";
    EXPECT_STREQ(dic.getPartOfSPName(0), "");
    EXPECT_STREQ(dic.getPartOfSPName(6), "");
    EXPECT_EQ(dic.charType(), 1U);
}

std::string loading(std::string const& path, bool memoryMapped) {
    std::string outcome;
    std::string const error = thrown([&] {
        Dic const dic(memoryMapped, path.c_str());
        EXPECT_EQ(dic.trie() != nullptr, dic.hasHeader());
        outcome = !dic.hasHeader() ? "no header" : dic.trie()->empty() ? "empty" : "words";
    });
    return !outcome.empty() ? outcome : error == "ILLEGAL_FORMAT: " + path ? "illegal" : error;
}

TEST_F(DicTest, JudgesHeaders) {
    std::string const& good = bytes;
    auto const with = [&good](std::size_t position, char value) {
        std::string changed = good;
        changed[position] = value;
        return changed;
    };
    Table<std::string, char const*> const cases{
        {good, "words"},
        {SmallWorld().dictionary(), "empty"},  // a dictionary without words is valid
        {"", "illegal"},
        {good.substr(0, 1), "no header"},
        {good.substr(0, 16), "no header"},
        {std::string(16, '\3'), "no header"},  // too short to be judged
        {with(0, 3), "INVALID_DIC_VERSION:3"},
        {with(0, 0), "INVALID_DIC_VERSION:0"},
        {with(1, 3), "INVALID_DIC_CHAR_TYPE:3"},
        {with(1, 0), "words"},
        {with(1, 2), "words"},
        {with(7, 1), "no header"},  // the trie lies outside
        {with(9, 1), "no header"},  // 261 names reach into the trie
        {good.substr(0, trie), "empty"},
        {good.substr(0, trie + 1031), "empty"},
        {with(trie + 3, 1), "empty"},  // cells outside
        {with(trie + 7, 1), "empty"},  // leaf area outside
        {with(trie + 4, static_cast<char>(good[trie + 4] + 1)), "empty"},
    };
    for (auto const& [image, outcome] : cases)
        for (bool const memoryMapped : {false, true})
            EXPECT_EQ(loading(dir.write("dic", image), memoryMapped), outcome);
}

TEST_F(DicTest, ANameOutsideThePoolIsEmpty) {
    bytes[16 + 5 + 3] = 1;  // offset of name 1
    bytes[trie - 1] = 'x';  // the NUL of the last name
    Dic const dic(true, dir.write("dic", bytes).c_str());
    EXPECT_STREQ(dic.getPartOfSPName(1), "");
    EXPECT_STREQ(dic.getPartOfSPName(5), "");
    EXPECT_EQ(toUtf8(dic.getPartOfSPName(2)), "文末");
}

TEST_F(DicTest, TellsWhatIsMissing) {
    for (bool const memoryMapped : {false, true}) {
        for (std::string const& no : {dir.file("absent"), dir.path()})
            EXPECT_EQ(thrown<file_not_found>([&] { Dic(memoryMapped, no.c_str()); }), "FILE_NOT_OPEN: " + no);
        EXPECT_EQ(thrown<std::invalid_argument>([&] { Dic(memoryMapped, nullptr); }), "INVALID_ARGUMENT: Dic::Dic()");
    }
}

TEST_F(DicTest, AConstructorThatThrowsGivesItsMappingBack) {
    std::string const bad = dir.write("dic", std::string(20, '\3'));
    for (std::size_t i = 0; i < kMappingSlots + 1; ++i)
        EXPECT_THROW(Dic(true, bad.c_str()), invalid_dictionary_version);
}

TEST_F(DicTest, TakesTheFileThatNowHasItsNameBack) {
    Dic dic(true, path.c_str());
    dic.release();
    EXPECT_FALSE(dic.hasHeader());
    EXPECT_EQ(dic.trie(), nullptr);
    EXPECT_STREQ(dic.getPartOfSPName(1), "");
    SmallWorld other;
    other.names({"A", "B", "C", "D", "E", "F", "G"}).line("longer,F").line("words,G");
    writeFile(path, other.dictionary());
    dic.takeBack();
    EXPECT_TRUE(finds(dic, "longer"));
    EXPECT_FALSE(finds(dic, "a"));
    EXPECT_STREQ(dic.getPartOfSPName(7), "G");
    dic.release();
    std::filesystem::remove(path);
    EXPECT_EQ(thrown<file_not_found>([&] { dic.takeBack(); }), "FILE_NOT_OPEN: FILE_NOT_OPEN:" + path);
}

TEST_F(DicTest, KnowsItsRecords) {
    Dic const dic(true, path.c_str());
    Dic const other(false, dic.path().c_str());
    RecordChain const chain = dic.trie()->exactMatch(asBytes("a"), 1);
    EXPECT_TRUE(dic.contains(chain.head()));
    EXPECT_FALSE(other.contains(chain.head()));
    EXPECT_FALSE(dic.contains(nullptr));
}

}  // namespace
}  // namespace TAVO::test
