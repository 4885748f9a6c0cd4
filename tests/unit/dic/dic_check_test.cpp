#include "dic/dic_check.hpp"

#include "base/bytes.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

using namespace std::string_literals;

void put(std::string& bytes, std::size_t position, std::uint32_t value) {
    std::string word;
    appendU32(word, value);
    bytes.replace(position, 4, word);
}

/// A dictionary whose places are known: keys "a", "ab" (two records), "acde".
/// The root of "a" is base 1, its end cell 1, "b" cell 99, "c" cell 100.
class DicCheckTest : public ::testing::Test {
protected:
    DicCheckTest() {
        SmallWorld world;
        world.names({"A", "B", "C"}).line("a,A,1").line("ab,B,2,r").line("ab,C,3").line("ac/de,C-A-B,4,r-s,,,,,7");
        good_ = world.dictionary();
        trie_ = loadU32(asBytes(good_.data()) + 4);
        cells_ = trie_ + 1032;
        leaf_ = trie_ + loadU32(asBytes(good_.data()) + trie_ + 4);
    }
    std::size_t cell(std::size_t index) const { return cells_ + 4 * index; }
    static std::string at(std::size_t position, std::string const& text) {
        return "offset " + std::to_string(position) + ": " + text;
    }
    /// Expects @p fault among those of the good file with @p value at @p position.
    void expectFault(std::size_t position, char value, std::string const& fault) const {
        std::string bytes = good_;
        ASSERT_NE(bytes.at(position), value) << "no change at " << position;
        bytes[position] = value;
        expectFault(bytes, fault);
    }
    static void expectFault(std::string const& bytes, std::string const& fault) {
        std::vector<std::string> const faults = checkDic(bytes);
        EXPECT_GT(std::count(faults.begin(), faults.end(), fault), 0) << fault << testing::PrintToString(faults);
    }

    std::string good_;
    std::size_t trie_, cells_, leaf_;
};

TEST_F(DicCheckTest, FindsNothingInSoundFiles) {
    EXPECT_EQ(checkDic(good_), std::vector<std::string>{});
    EXPECT_EQ(checkDic(SmallWorld().dictionary()), std::vector<std::string>{}) << "no words";
    EXPECT_EQ(checkDic(SmallWorld().names({}).dictionary()), std::vector<std::string>{}) << "no names";
}

TEST_F(DicCheckTest, ChecksTheHeaderAndNames) {
    expectFault(""s, at(0, "the file is too short for a header"));
    expectFault(good_.substr(0, 16), at(0, "the file is too short for a header"));
    expectFault(0, 1, at(0, "the version is not 2: 1"));
    expectFault(1, 9, at(1, "unknown character type: 9"));
    expectFault(7, 1, at(4, "the trie lies outside the file"));
    expectFault(9, 1, at(8, "the names reach into the trie"));
    expectFault(12, static_cast<char>(good_[12] + 1), at(12, "the name stamp is not that of the name pool"));
    expectFault(17, 1, at(17, "a name flag is not 0"));
    expectFault(19, 90, at(19, "name 1 lies outside the name pool"));
    expectFault(23, 1, at(23, "name 2 does not start where the name before it ends"));
    expectFault(trie_ - 1, 'x', at(trie_ - 2, "name 3 is not ended by a NUL"));
}

TEST_F(DicCheckTest, ChecksTheTrieHeader) {
    expectFault(good_.substr(0, trie_ + 1000), at(trie_, "the trie is too short for its header"));
    expectFault(trie_, 0, at(trie_, "the cells reach into the trie's header"));
    expectFault(trie_ + 1, 0x70, at(trie_ + 4, "the leaf area does not start behind whole cells"));
    expectFault(trie_ + 4, static_cast<char>(good_[trie_ + 4] + 1),
                at(trie_ + 4, "the leaf area does not start behind whole cells"));
    expectFault(trie_ + 6, 1, at(trie_ + 4, "the leaf area starts outside the file"));
}

TEST_F(DicCheckTest, ChecksNodesAndCells) {
    expectFault(trie_ + 8, 1, at(trie_ + 8, "keys cannot begin with a NUL"));
    expectFault(trie_ + 8 + 4 * 'b', 1,
                at(trie_ + 8 + 4 * 'b', "root entry 98 leads to a node that has another parent: base 1"));
    expectFault(trie_ + 8 + 4 * 'b', 2, at(cell(2), "the node at base 2 leads nowhere"));
    expectFault(trie_ + 8 + 4 * 'a' + 2, 1,
                at(trie_ + 8 + 4 * 'a', "root entry 97 leads outside the cells: base 65537"));
    expectFault(cell(50) + 3, 7, at(cell(50), "cell 50 belongs to no node"));
    expectFault(cell(99) + 3, 'x', at(cell(99), "cell 99 belongs to no node"));
    expectFault(cell(1) + 1, 1, at(cell(1), "cell 1 leads outside the leaf area"));
    std::string inner = good_;
    put(inner, cell(99), 0x62000001);
    expectFault(inner, at(cell(99), "cell 99 leads to a node that has another parent: base 1"));
    put(inner, cell(99), 0x62000000);
    expectFault(inner, at(cell(99), "cell 99 leads outside the cells: base 0"));
    std::string shared = good_;
    shared.replace(cell(1), 4, "\x02\0\x80\0"s);
    expectFault(shared, at(leaf_ + 8, "a leaf entry overlaps the one before it"));
}

TEST_F(DicCheckTest, ChecksTailsAndRecords) {
    // "a" at 0 (8 bytes); "b" at 8: tail length, record of 10 bytes, record of 8;
    // "c" at 28: tail length 2, "de", record at 31.
    std::size_t const first = leaf_ + 9;
    std::size_t const compound = leaf_ + 31;
    ASSERT_EQ(good_.substr(leaf_ + 28, 3),
              "\x02"
              "de"s);
    expectFault(leaf_ + 28, 90, at(leaf_ + 28, "a tail leaves the leaf area"));
    expectFault(leaf_ + 29, 0, at(leaf_ + 29, "a tail holds a NUL"));
    expectFault(leaf_, 7, at(leaf_, "a record's length does not fit: 7"));
    expectFault(leaf_ + 1, 1, at(leaf_, "a record's length does not fit: 264"));
    expectFault(leaf_ + 2, 0, at(leaf_ + 2, "part-of-speech id has no name: 0"));
    expectFault(leaf_ + 2, 4, at(leaf_ + 2, "part-of-speech id has no name: 4"));
    expectFault(first + 7, 0x21, at(first + 7, "unknown bits are set in flags B"));
    expectFault(first + 9, 'x', at(first + 8, "ReadPron is not ended inside its record"));
    expectFault(compound + 8, 1, at(compound + 8, "the list of parts has too few entries: 1"));
    expectFault(compound + 8, 90, at(compound + 8, "the list of parts leaves its record"));
    expectFault(compound + 9, 5, at(compound + 9, "part-of-speech id of a part has no name: 5"));
    expectFault(good_.size() - 3, 0, at(good_.size() - 3, "Cat1 has too few entries: 0"));
    expectFault(good_.size() - 3, 2, at(good_.size() - 3, "Cat1 leaves its record"));
    // The last record says that another follows it.
    expectFault(compound + 7, static_cast<char>(good_[compound + 7] | 1),
                at(good_.size(), "a record's head leaves the leaf area"));
    expectFault(leaf_ + 7, 1, at(leaf_ + 8, "a record's length does not fit: 2560"));
}

TEST_F(DicCheckTest, CountsTheFaultsItDoesNotKeep) {
    SmallWorld world;
    std::string bytes = world.dictionary();
    std::size_t const trie = loadU32(asBytes(bytes.data()) + 4);
    for (std::size_t byte = 1; byte < 256; ++byte) put(bytes, trie + 8 + 4 * byte, 0x7FFFFF);
    EXPECT_EQ(checkDic(bytes).size(), 255U);
    // 1024 cells that belong to no node.
    bytes = world.dictionary();
    std::string const cells = "\x05\0\0\x09"s;
    std::string damage;
    for (int i = 0; i < 1024; ++i) damage += cells;
    bytes.append(damage);
    put(bytes, trie + 4, loadU32(asBytes(bytes.data()) + trie + 4) + 4096);
    std::vector<std::string> const faults = checkDic(bytes);
    ASSERT_EQ(faults.size(), 1001U);
    EXPECT_EQ(faults.back(), "and 24 more faults");
}

}  // namespace
}  // namespace TAVO::test
