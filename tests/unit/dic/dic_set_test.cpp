#include "dic/dic_set.hpp"

#include <fcntl.h>
#include <sys/stat.h>

#include "dic/pools.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

#include <future>
#include <mutex>

namespace TAVO::test {
namespace {

/// Moves the modification time of @p path to @p seconds and @p nanoseconds of a
/// fixed day.
void setTime(std::string const& path, long seconds, long nanoseconds = 0) {
    timespec const time{1'700'000'000 + seconds, nanoseconds};
    timespec const times[2] = {time, time};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

class DicSetTest : public ::testing::Test {
protected:
    DicSetTest() {
        world_.names({"BOS", "EOS", "UNK", "N"}).line("old,N");
        writeWorld();
        spec_ = paths_.dicSpec();
    }
    ~DicSetTest() override { sharedPools().dispose(); }

    /// Dictionary and source of one time.
    void writeWorld() {
        paths_ = world_.writeTo(dir_.path());
        setTime(paths_.dic, 0);
        setTime(paths_.source, 0);
    }
    /// A set with the dictionary and its source.
    DicSet attached() const {
        DicSet set;
        set.addDicPath(spec_.c_str(), true, nullptr);
        return set;
    }
    int users() const { return sharedPools().DIC_USED.at(sharedPools().DIC_POOL.at(paths_.dic).get()); }
    static bool finds(DicSet const& set, std::string const& form) {
        DicTrie const* const trie = set.entries().front().dic->trie();
        return trie != nullptr && trie->exactMatch(asBytes(form.data()), form.size());
    }
    void newSource(std::string const& text) {
        writeFile(paths_.source, text);
        setTime(paths_.source, 10);
    }
    bool leftOvers() const {
        return std::filesystem::exists(paths_.dic + "_tmp") || std::filesystem::exists(paths_.dic + "_bak");
    }

    TempDir dir_;
    SmallWorld world_;
    SmallWorld::Paths paths_;
    std::string spec_;
    std::vector<std::string> const names_{"BOS", "EOS", "UNK", "N"};
};

TEST_F(DicSetTest, KeepsAPathOnceAndCountsItsUsers) {
    DicSet first = attached();
    first.addDicPath(paths_.dic.c_str(), false, nullptr);
    ASSERT_EQ(first.getDicCount(), 1);
    EXPECT_STREQ(first.getDicPath(0), paths_.dic.c_str());
    EXPECT_STREQ(first.getSrcPath(0), paths_.source.c_str());
    EXPECT_EQ(users(), 1);
    {
        DicSet second(first);
        EXPECT_EQ(users(), 2);
        DicSet third;
        third.addDicPath(paths_.dic.c_str(), true, nullptr);
        EXPECT_STREQ(third.getSrcPath(0), "");
        EXPECT_EQ(third.entries()[0].dic, first.entries()[0].dic);
        EXPECT_EQ(users(), 3);
        third = second;
        EXPECT_EQ(users(), 3);
        second.offDic();
        EXPECT_EQ(users(), 2);
    }
    EXPECT_EQ(users(), 1);
    first.offDic(0);
    EXPECT_EQ(users(), 0) << "stays pooled without users";
}

TEST_F(DicSetTest, RemovesEntriesByIndexAndPath) {
    std::vector<std::string> paths;
    DicSet set;
    for (char const* name : {"a", "b", "c"}) {
        paths.push_back(dir_.write(name, world_.dictionary()));
        set.addDicPath(paths.back().c_str(), true, nullptr);
    }
    EXPECT_EQ(set.getDicIndex(paths[2].c_str()), 2);
    set.offDic(0);
    EXPECT_EQ(set.getDicIndex(paths[2].c_str()), 1);
    set.offDic(paths[1].c_str());
    ASSERT_EQ(set.getDicCount(), 1);
    EXPECT_STREQ(set.getDicPath(0), paths[2].c_str());
}

TEST_F(DicSetTest, NamesTheOperationInErrors) {
    DicSet set = attached();
    // The flat interface's tests have the other operations that take an index.
    for (int const index : {-1, 1})
        EXPECT_EQ(thrown([&] { set.getDicPath(index); }), "RANGE_ERROR: Tavo::getDicPath()");
    char const* const null = nullptr;
    EXPECT_EQ(thrown([&] { set.addDicPath(null, true, nullptr); }), "INVALID_ARGUMENT: Tavo::addDicPath()");
    EXPECT_EQ(thrown([&] { set.getDicIndex(null); }), "INVALID_ARGUMENT: Tavo::getDicIndex()");
    EXPECT_EQ(thrown([&] { set.offDic(null); }), "INVALID_ARGUMENT: Tavo::offDic()");
    for (char const* path : {"absent", ""}) {
        std::string const expected = std::string("FILE_NOT_OPEN: ") + path;
        EXPECT_EQ(thrown([&] { set.getDicIndex(path); }), expected);
        EXPECT_EQ(thrown([&] { set.offDic(path); }), expected);
        EXPECT_EQ(thrown([&] { set.touchDic(path); }), expected);
        EXPECT_EQ(thrown([&] { set.addDicPath(path, true, nullptr); }), expected);
    }
    EXPECT_EQ(thrown([&] { set.touchDic(0); }), "nothing thrown");
    EXPECT_EQ(set.getDicCount(), 1);
}

TEST_F(DicSetTest, RefusesWhatItCannotUse) {
    std::string bytes = world_.dictionary();
    bytes[1] = 2;
    std::string const otherType = dir_.write("type", bytes);
    DicSet set;
    EXPECT_EQ(thrown([&] { set.addDicPath(otherType.c_str(), true, nullptr); }),
              "NOT_ADAPTABLE: " + otherType + ": Missmatch Char Type");
    std::string const tooShort = dir_.write("short", "\2\1");
    EXPECT_EQ(thrown([&] { set.addDicPath(tooShort.c_str(), true, nullptr); }), "ILLEGAL_FORMAT: " + tooShort);
    SmallWorld other;
    std::string const table =
        dir_.write("table", serializeConnTable(other.names({"BOS", "EOS", "UNK", "X"}).connTable()));
    ConnTable const connTable(false, table.c_str());
    EXPECT_EQ(thrown([&] { set.addDicPath(paths_.dic.c_str(), true, &connTable); }),
              "NOT_ADAPTABLE: " + table + ": " + paths_.dic);
    EXPECT_EQ(users(), 0) << "pooled all the same";
    EXPECT_EQ(set.getDicCount(), 0);
    for (auto& [dic, count] : sharedPools().DIC_USED) count = -1;
    EXPECT_EQ(thrown([&] { set.addDicPath(paths_.dic.c_str(), true, nullptr); }), "BUSY_DICTIONARY: " + paths_.dic);
}

TEST_F(DicSetTest, RebuildsWhenTheSourceIsNewer) {
    for (bool const memoryMapped : {true, false}) {
        DicSet set;
        set.addDicPath(spec_.c_str(), memoryMapped, nullptr);
        EXPECT_EQ(set.updateDic(0, names_), 0) << "of one time";
        writeFile(paths_.source, "; comment\n\n# comment\nnew,N\n \\,x,N\n");
        setTime(paths_.source, 0, 1);
        EXPECT_EQ(set.updateDic(0, names_), 1) << "newer by a nanosecond";
        EXPECT_TRUE(finds(set, "new"));
        EXPECT_TRUE(finds(set, " ,x")) << "lines are not stripped";
        EXPECT_FALSE(finds(set, "old"));
        EXPECT_EQ(users(), 1);
        EXPECT_EQ(sharedPools().DIC_USED.size(), 1U) << "the old dictionary is gone";
        EXPECT_FALSE(leftOvers());
        EXPECT_EQ(set.updateDic(0, names_), 0);
        sharedPools().dispose();
        writeWorld();
    }
}

TEST_F(DicSetTest, AnUpdateThatCannotBeLeavesAllAsItWas) {
    std::string const before = readFile(paths_.dic);
    DicSet set = attached();
    newSource("new,N\n");
    {
        DicSet const other(set);
        EXPECT_EQ(set.updateDic(0, names_), 2);
        EXPECT_EQ(users(), 2) << "a refusal leaves the count alone";
    }
    newSource("new,N\nbad\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(set.updateDic(0, names_), 5); }), "Error: Too Less Fields\n");
    newSource("new,M\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(set.updateDic(0, names_), 5); }), "Error: Unlisted PartOfSP: M(new)\n");
    newSource("new,N\n");
    std::filesystem::create_directory(paths_.dic + "_tmp");
    EXPECT_EQ(set.updateDic(0, names_), 6) << "the temporary file cannot be made";
    std::filesystem::remove(paths_.dic + "_tmp");
    std::filesystem::remove(paths_.source);
    EXPECT_EQ(set.updateDic(0, names_), 4);
    std::filesystem::create_directory(paths_.source);
    setTime(paths_.source, 10);
    EXPECT_EQ(set.updateDic(0, names_), 4);
    EXPECT_EQ(users(), 1);
    EXPECT_TRUE(finds(set, "old"));
    EXPECT_FALSE(leftOvers());
    EXPECT_EQ(readFile(paths_.dic), before);
}

TEST_F(DicSetTest, ARenameThatFailsBringsTheOldDictionaryBack) {
    std::string const before = readFile(paths_.dic);
    DicSet set = attached();
    newSource("new,N\n");
    // A folder that is not empty can neither be deleted nor be replaced by a file.
    std::filesystem::create_directories(paths_.dic + "_bak/x");
    EXPECT_EQ(set.updateDic(0, names_), 6);
    EXPECT_TRUE(finds(set, "old"));
    EXPECT_EQ(users(), 1);
    EXPECT_FALSE(std::filesystem::exists(paths_.dic + "_tmp"));
    EXPECT_EQ(readFile(paths_.dic), before);
    std::filesystem::remove_all(paths_.dic + "_bak");
    EXPECT_EQ(set.updateDic(0, names_), 1) << "the next attempt is not hindered";
}

TEST_F(DicSetTest, TellsThatTheDictionaryToUpdateIsGone) {
    DicSet set;
    set.addDicPath(paths_.dic.c_str(), true, nullptr);
    std::filesystem::remove(paths_.dic);
    EXPECT_EQ(thrown([&] { set.updateDic(0, names_); }), "FILE_NOT_OPEN: " + paths_.dic);
}

TEST_F(DicSetTest, AnUpdateDropsTheReadingIndex) {
    DicSet set = attached();
    newSource("b-a,N,1," + toSjis("ア(イ|ウ)/エ") + "\nc,N,1," + toSjis("アイエ") + "\nd,N,1,x\n");
    EXPECT_EQ(set.findByRead(toSjis("アイエ").c_str(), 0).size(), 0U);
    ASSERT_EQ(set.updateDic(0, names_), 1);
    std::vector<ReadingWord> const words = set.findByRead(toSjis("アイエ").c_str(), 0);
    ASSERT_EQ(words.size(), 2U);
    EXPECT_EQ(words[0].form, "ba");
    EXPECT_EQ(words[1].form, "c");
    EXPECT_STREQ(MrphDic(words[0].record).partForm(), "b-a");
    EXPECT_EQ(thrown([&] { set.findByRead(nullptr, 0); }), "INVALID_ARGUMENT: Tavo::getByRead()");
}

TEST_F(DicSetTest, LeavesTheThreadLockOnEveryWayOut) {
    sharedPools().readyForThread();
    DicSet set = attached();
    newSource("bad\n");
    stderrOf([&] { EXPECT_EQ(set.updateDic(0, names_), 5); });
    newSource("new,N\n");
    EXPECT_EQ(set.updateDic(0, names_), 1);
    auto const free = [] { return std::unique_lock(*sharedPools().CriticalSection, std::try_to_lock).owns_lock(); };
    EXPECT_TRUE(std::async(std::launch::async, free).get());
}

}  // namespace
}  // namespace TAVO::test
