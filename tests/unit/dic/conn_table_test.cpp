#include "dic/conn_table.hpp"

#include <tavo/error.hpp>

#include "base/bytes.hpp"
#include "dic/conn_table_writer.hpp"
#include "dic/dic.hpp"
#include "dic/dic_check.hpp"
#include "dic/pools.hpp"
#include "support/small_world.hpp"
#include "support/testing.hpp"

namespace TAVO::test {
namespace {

ConnTableContent content() {
    ConnTableContent made;
    made.names = {"BOS", "EOS", "UNK", "N", "N"};
    made.rowIndex = {0, 1, 1, 0, 1};
    made.columnIndex = {2, 1, 0, 0, 2};
    made.rows = 2;
    made.cols = 3;
    made.matrix = {1, 2, 3, 254, 255, 0};
    return made;
}

TEST(ConnTableTest, AnswersCostsAndNames) {
    TempDir const dir;
    std::string const path = dir.write("table", serializeConnTable(content()));
    ConnTable const table(true, path.c_str());
    EXPECT_EQ(table.path(), path);
    ASSERT_EQ(table.idCount(), 5);
    EXPECT_EQ(table.cost(1, 1), 3);
    EXPECT_EQ(table.cost(2, 3), 254);
    EXPECT_EQ(table.cost(5, 2), 255);
    EXPECT_EQ(table.cost(3, 5), 0);
    EXPECT_STREQ(table.getName(0), "");
    EXPECT_STREQ(table.getName(3), "UNK");
    EXPECT_STREQ(table.getName(6), "");
    EXPECT_EQ(table.getId("EOS"), 2);
    EXPECT_EQ(table.getId("N"), 5) << "the later id of a name that occurs twice";
    EXPECT_EQ(table.getId(""), 0);
    EXPECT_EQ(table.getId("EO"), 0);
}

std::string textOf(std::string const& path) {
    return thrown([&] { ConnTable(false, path.c_str()); });
}

TEST(ConnTableTest, RefusesMissingFiles) {
    TempDir const dir;
    EXPECT_EQ(textOf(dir.file("absent")), "FILE_NOT_OPEN: " + dir.file("absent"));
    EXPECT_EQ(textOf(dir.path()), "FILE_NOT_OPEN: " + dir.path());
    EXPECT_EQ(thrown<std::invalid_argument>([] { ConnTable(false, nullptr); }),
              "INVALID_ARGUMENT: ConnTable::ConnTable()");
}

TEST(ConnTableTest, RefusesAFileCutAnywhere) {
    TempDir const dir;
    std::string const whole = serializeConnTable(content());
    EXPECT_TRUE(checkConnTable(whole).empty());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        std::string const path = dir.write("table", whole.substr(0, length));
        EXPECT_EQ(textOf(path), "ILLEGAL_FORMAT: " + path) << length;
        EXPECT_FALSE(checkConnTable(whole.substr(0, length)).empty()) << length;
    }
}

TEST(ConnTableTest, RefusesWhatDoesNotHoldTogether) {
    // Positions: N at 0, rows of ids from 10, columns from 20, rows and cols at
    // 30 and 32, matrix from 34, offsets from 40, pool from 60.
    Table<std::size_t, char, char const*> const changes{
        {0, 2, "offset 0: fewer than 3 ids: 2"},
        {10, 2, "offset 10: the row of id 1 is not in the matrix: 2"},
        {19, 1, "offset 18: the row of id 5 is not in the matrix: 257"},
        {20, 3, "offset 20: the column of id 1 is not in the matrix: 3"},
        {30, 1, "offset 12: the row of id 2 is not in the matrix: 1"},
        {31, 7, "offset 30: the file ends before the name pool"},
        {40, 100, "offset 40: name 1 lies outside the name pool"},
        {75, 'x', "offset 74: name 5 is not ended by a NUL"},
    };
    std::string const whole = serializeConnTable(content());
    ASSERT_EQ(whole.size(), 76U);
    TempDir const dir;
    for (auto const& [position, value, fault] : changes) {
        std::string bytes = whole;
        bytes[position] = value;
        std::string const path = dir.write("table", bytes);
        EXPECT_EQ(textOf(path), "ILLEGAL_FORMAT: " + path) << fault;
        std::vector<std::string> const faults = checkConnTable(bytes);
        EXPECT_EQ(std::count(faults.begin(), faults.end(), fault), 1) << fault << testing::PrintToString(faults);
    }
}

TEST(ConnTableTest, ChecksStampAndOrderOfNames) {
    std::string bytes = serializeConnTable(content());
    bytes[60] = 'C';
    EXPECT_EQ(checkConnTable(bytes), std::vector<std::string>{"offset 2: the name stamp is not that of the name pool"});
    bytes = serializeConnTable(content());
    std::swap(bytes[40], bytes[44]);
    EXPECT_EQ(checkConnTable(bytes).front(), "offset 40: name 1 does not start where the name before it ends");
    bytes = serializeConnTable(content()) + "more";
    EXPECT_EQ(checkConnTable(bytes).front(), "offset 76: the name pool goes on behind the last name");
}

TEST(ConnTableTest, TheWriterRefusesWhatTheLoaderWould) {
    Table<char const*, void (*)(ConnTableContent&)> const cases{
        {"fewer than 3 names", [](ConnTableContent& c) { c.names.resize(2); }},
        {"more than 65534 names", [](ConnTableContent& c) { c.names.resize(65535, "N"); }},
        {"a name is empty or holds a NUL", [](ConnTableContent& c) { c.names[3] = ""; }},
        {"a name is empty or holds a NUL", [](ConnTableContent& c) { c.names[3].push_back('\0'); }},
        {"not one row index per name", [](ConnTableContent& c) { c.rowIndex.pop_back(); }},
        {"not one column index per name", [](ConnTableContent& c) { c.columnIndex.push_back(0); }},
        {"a row index is not below the number of rows", [](ConnTableContent& c) { c.rowIndex[0] = 2; }},
        {"a column index is not below the number of columns", [](ConnTableContent& c) { c.columnIndex[0] = 3; }},
        {"the matrix is not rows x columns", [](ConnTableContent& c) { c.matrix.push_back(0); }},
    };
    for (auto const& [fault, change] : cases) {
        ConnTableContent made = content();
        change(made);
        EXPECT_EQ(thrown<std::invalid_argument>([&] { serializeConnTable(made); }),
                  std::string("connection table: ") + fault);
    }
}

TEST(ConnTableTest, AdaptableMeansSameStampOrPrefixOfNames) {
    TempDir const dir;
    auto const adaptable = [&](std::vector<std::string> const& tableNames, std::vector<std::string> const& dicNames) {
        SmallWorld world;
        ConnTable const table(false,
                              dir.write("table", serializeConnTable(world.names(tableNames).connTable())).c_str());
        SmallWorld other;
        Dic const dic(false, dir.write("dic", other.names(dicNames).dictionary()).c_str());
        return checkAdaptable(table, dic);
    };
    std::vector<std::string> const abcd{"A", "B", "C", "D"};
    EXPECT_TRUE(adaptable(abcd, abcd));
    EXPECT_TRUE(adaptable(abcd, {"A", "B"}));
    EXPECT_TRUE(adaptable(abcd, {}));
    EXPECT_FALSE(adaptable(abcd, {"A", "X"}));
    EXPECT_FALSE(adaptable(abcd, {"A", "B", "C", "D", "E"}));
    // The same stamp suffices, whatever the names.
    SmallWorld world;
    std::string bytes = serializeConnTable(world.names(abcd).connTable());
    SmallWorld other;
    std::string const dicBytes = other.names({"X", "Y"}).dictionary();
    bytes.replace(2, 4, dicBytes.substr(12, 4));
    ConnTable const table(false, dir.write("table", bytes).c_str());
    Dic const dic(false, dir.write("dic", dicBytes).c_str());
    EXPECT_TRUE(checkAdaptable(table, dic));
}

TEST(ConnTableTest, IsPooledByPath) {
    TempDir const dir;
    std::string const path = dir.write("table", serializeConnTable(content()));
    ConnTable const* const first = sharedPools().connTable(path.c_str());
    writeFile(path, "changed");
    EXPECT_EQ(sharedPools().connTable(path.c_str()), first);
    EXPECT_THROW(sharedPools().connTable((dir.path() + "/./table").c_str()), illegal_format)
        << "another spelling of the path is another table";
    sharedPools().dispose();
    EXPECT_THROW(sharedPools().connTable(path.c_str()), illegal_format);
}

}  // namespace
}  // namespace TAVO::test
