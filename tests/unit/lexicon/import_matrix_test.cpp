#include "lexicon/import/source/matrix.hpp"

#include "lexicon/import/fit/cluster.hpp"
#include "support/testing.hpp"

#include <cmath>
#include <numeric>
#include <random>

namespace TAVO::importer {
namespace {

std::int16_t costOf(std::uint32_t row, std::uint32_t col) {
    return static_cast<std::int16_t>(static_cast<int>(row * 331 + col * 17) % 30011 - 15000);
}

Matrix made(std::uint32_t rows, std::uint32_t cols) {
    Matrix matrix(rows, cols);
    for (std::uint32_t row = 0; row < rows; ++row)
        for (std::uint32_t col = 0; col < cols; ++col) matrix.set(row, col, costOf(row, col));
    return matrix;
}

std::vector<std::uint32_t> shuffled(std::uint32_t count, std::mt19937& random) {
    std::vector<std::uint32_t> order(count);
    std::iota(order.begin(), order.end(), 0U);
    std::shuffle(order.begin(), order.end(), random);
    return order;
}

TEST(ImportMatrix, CostsStayInAnyOrder) {
    std::mt19937 random(4711);
    // Nearly square, and not.
    for (auto const& [rows, cols] :
         test::Table<std::uint32_t, std::uint32_t>{{1, 1}, {7, 7}, {70, 64}, {129, 150}, {3, 40}, {90, 2}, {1, 9}}) {
        SCOPED_TRACE(std::to_string(rows) + " x " + std::to_string(cols));
        Matrix matrix = made(rows, cols);
        matrix.extend({rows - 1, 0}, 2, {{rows, cols}, {0, cols + 1}});
        for (int round = 0; round < 3; ++round) {
            auto const rowOrder = shuffled(rows, random), columnOrder = shuffled(cols, random);
            matrix.arrange(rowOrder, columnOrder);
            matrix.arrange(rowOrder, columnOrder);
            for (std::uint32_t row = 0; row < rows; ++row)
                for (std::uint32_t col = 0; col < cols; ++col) {
                    ASSERT_EQ(matrix.at(row, col), costOf(row, col));
                    ASSERT_EQ(matrix.rowAt(row)[col], costOf(rowOrder[row], columnOrder[col]));
                }
            matrix.turn();
            for (std::uint32_t row = 0; row < rows; ++row)
                for (std::uint32_t col = 0; col < cols; ++col)
                    ASSERT_EQ(matrix.rowAt(col)[row], costOf(rowOrder[row], columnOrder[col]));
            matrix.turn();
        }
        EXPECT_EQ(matrix.at(rows, 0), costOf(rows - 1, 0)) << "an added row is as the one it names";
        EXPECT_EQ(matrix.at(rows + 1, cols - 1), costOf(0, cols - 1));
        EXPECT_EQ(matrix.at(rows, cols), 0);
        EXPECT_EQ(matrix.at(0, cols + 1), 0);
        EXPECT_EQ(matrix.at(rows, cols + 1), Matrix::kForbidden);
    }
}

/// Mean and variance of the differences of two rows or columns.
double variance(Matrix const& matrix, bool rows, std::uint32_t a, std::uint32_t b) {
    std::uint32_t const count = rows ? matrix.cols : matrix.rows;
    double sum = 0, squares = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        double const difference = rows ? matrix.at(a, i) - matrix.at(b, i) : matrix.at(i, a) - matrix.at(i, b);
        sum += difference / count;
        squares += difference * difference / count;
    }
    return squares - sum * sum;
}

/// More leaders than are compared at once, and lines longer than what is compared first.
TEST(ImportCluster, LinesJoinTheNearestLeaderWithinTheTolerance) {
    std::mt19937 random(815);
    constexpr std::uint32_t kRows = 150, kColumns = 170, kKinds = 40;
    constexpr double kTolerance = 400, kLimit = kTolerance / 0.5;  // nothing is used more than the least
    Lexicon lexicon;
    lexicon.matrix = Matrix(kRows, kColumns);
    lexicon.sourceRows = kRows;
    lexicon.sourceCols = kColumns;
    std::vector<int> kinds(std::size_t{kKinds} * kKinds);
    for (int& cost : kinds) cost = static_cast<int>(random() % 20000) - 10000;
    for (std::uint32_t row = 0; row < kRows; ++row)
        for (std::uint32_t col = 0; col < kColumns; ++col) {
            int const noise = static_cast<int>(random() % 90);  // differs by 1,350 on average, squared
            int const kind = kinds[row * 7 % kKinds * kKinds + col * 3 % kKinds];
            lexicon.matrix.set(row, col,
                               static_cast<std::int16_t>(kind + static_cast<int>(row * 5 + col * 9) +
                                                         (row % 3 + col % 3 == 0 ? noise : noise / 4)));
        }
    Clusters const clusters = findClusters(lexicon, {}, kTolerance);
    for (bool const rows : {true, false}) {
        Clusters::Lines const& lines = rows ? clusters.rows : clusters.columns;
        std::vector<std::uint32_t> leaders;
        std::size_t joined = 0;
        for (std::uint32_t line = 1; line < lines.leader.size(); ++line) {
            double nearest = kLimit;
            std::uint32_t wanted = line;
            for (std::uint32_t const leader : leaders) {
                double const distance = variance(lexicon.matrix, rows, line, leader);
                if (distance >= nearest) continue;
                nearest = distance;
                wanted = leader;
            }
            EXPECT_EQ(lines.leader[line], wanted) << line;
            if (lines.leader[line] == line)
                leaders.push_back(line);
            else
                ++joined;
        }
        EXPECT_GT(leaders.size(), 33U);
        EXPECT_GT(joined, 20U);
        EXPECT_EQ(lines.count, leaders.size() + 1);
        EXPECT_EQ(lines.leader[0], 0U);
    }
}

}  // namespace
}  // namespace TAVO::importer
