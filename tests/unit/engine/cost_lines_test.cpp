#include "engine/cost_lines.hpp"

#include "dic/conn_table.hpp"
#include "support/testing.hpp"

#include <vector>

namespace TAVO::test {
namespace {

using Kind = CostLines::Kind;

CostLines linesOf(std::vector<std::uint16_t> const& columns) {
    CostLines lines;
    for (std::uint16_t const column : columns) lines.add(column);
    return lines;
}

/// Where the cost of word number @p word is found; kNowhere when no pair of lines has it, or two have it.
std::size_t columnOf(CostLines const& lines, std::size_t word) {
    constexpr std::size_t kNowhere = ~std::size_t{0};
    std::size_t column = kNowhere;
    for (std::size_t pair = 0; pair != 4; ++pair) {
        if ((lines.members()[2 * pair + word / 8] >> word % 8 & 1) == 0) continue;
        std::size_t const place = lines.places(word / 8)[word % 8];
        std::size_t const line = 2 * pair + place / ConnTable::kLineBytes;
        if (column != kNowhere) return kNowhere;
        column = lines.numbers(line / 4)[line % 4] * ConnTable::kLineBytes + place % ConnTable::kLineBytes;
    }
    return column;
}

TEST(CostLines, TellTheirKindAndWhereEachWordsCostIs) {
    std::vector<std::uint16_t> const eights(8, 70), sixteen(16, 65535);
    struct Case {
        char const* name;
        std::vector<std::uint16_t> columns;
        Kind kind;
    } const cases[] = {
        {"one word", {4000}, Kind::kNarrow},
        {"one line", {64, 127, 64}, Kind::kNarrow},
        {"two lines", {63, 64, 0, 127}, Kind::kNarrow},
        {"eight words", eights, Kind::kNarrow},
        {"three lines", {0, 640, 320, 641}, Kind::kWide},
        {"nine words", {1, 2, 3, 4, 5, 6, 7, 8, 9}, Kind::kWide},
        {"four lines", {300, 200, 100, 0, 301, 201, 101, 1, 302, 2}, Kind::kWide},
        {"sixteen words", sixteen, Kind::kWide},
        {"five lines", {0, 64, 128, 192, 256}, Kind::kScattered},
        {"eight lines", {500, 0, 64, 128, 192, 256, 320, 384, 1, 511, 450}, Kind::kScattered},
    };
    for (Case const& c : cases) {
        CostLines const lines = linesOf(c.columns);
        EXPECT_EQ(lines.kind(), c.kind) << c.name;
        for (std::size_t word = 0; word != c.columns.size(); ++word)
            EXPECT_EQ(columnOf(lines, word), c.columns[word]) << c.name << ", word " << word;
    }
    EXPECT_EQ(linesOf(std::vector<std::uint16_t>(17, 0)).kind(), Kind::kMany);
    EXPECT_EQ(linesOf({0, 64, 128, 192, 256, 320, 384, 448, 512}).kind(), Kind::kMany);
}

}  // namespace
}  // namespace TAVO::test
