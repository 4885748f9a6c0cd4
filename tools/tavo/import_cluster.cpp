#include "import_cluster.hpp"

#include <algorithm>
#include <numeric>
#include <utility>

namespace TAVO::importer {
namespace {

constexpr double kLeastUse = 0.5;          // of a line that the fitting text never needs
constexpr std::uint32_t kMaxLines = 4096;  // comparing all pairs of more takes too long

/// One side of the matrix: lines of cells, and how much each line and each
/// position in a line is used.
struct Side {
    std::vector<float> cells;
    std::uint32_t lines, length;
    std::vector<double> use, positionUse;

    float const* line(std::uint32_t i) const { return &cells[std::size_t{i} * length]; }
};

/// The weighted mean and variance of a - b; gives up, with a variance above
/// @p limit, as soon as that is sure.
std::pair<double, double> compare(float const* a, float const* b, std::vector<float> const& weights, double limit) {
    constexpr std::size_t kBlock = 128;
    double sum = 0, squares = 0;
    float const first = a[0] - b[0];  // keeps the squares small
    for (std::size_t from = 0; from < weights.size(); from += kBlock) {
        std::size_t const to = std::min(from + kBlock, weights.size());
        float blockSum = 0, blockSquares = 0;
        for (std::size_t i = from; i < to; ++i) {
            float const difference = a[i] - b[i] - first;
            blockSum += weights[i] * difference;
            blockSquares += weights[i] * difference * difference;
        }
        sum += static_cast<double>(blockSum);
        squares += static_cast<double>(blockSquares);
        // The rest can add to the squares only; the mean is at most as far as they allow.
        if (squares - sum * sum > limit && squares > 4 * limit && from > weights.size() / 2) break;
    }
    return {sum + static_cast<double>(first), squares - sum * sum};
}

Clusters::Lines cluster(Side const& side, double tolerance) {
    Clusters::Lines result;
    result.leader.resize(side.lines);
    result.offset.assign(side.lines, 0);
    std::iota(result.leader.begin(), result.leader.end(), 0U);
    result.count = side.lines;
    if (tolerance <= 0 || side.lines > kMaxLines) return result;

    double const total = std::accumulate(side.positionUse.begin(), side.positionUse.end(), 0.0);
    std::vector<float> weights;
    for (double const use : side.positionUse) weights.push_back(static_cast<float>(use / total));
    std::vector<std::uint32_t> order(result.leader.begin() + 1, result.leader.end());
    std::stable_sort(order.begin(), order.end(), [&](auto a, auto b) { return side.use[a] > side.use[b]; });
    std::vector<std::uint32_t> leaders;  // line 0, the text's end, stays by itself
    for (std::uint32_t const line : order) {
        double least = tolerance / side.use[line];
        for (std::uint32_t const leader : leaders) {
            auto const [mean, variance] = compare(side.line(line), side.line(leader), weights, least);
            if (variance >= least) continue;
            least = variance;
            result.leader[line] = leader;
            result.offset[line] = mean;
        }
        if (result.leader[line] == line) leaders.push_back(line);
    }
    result.count = static_cast<std::uint32_t>(leaders.size()) + 1;
    return result;
}

}  // namespace

Clusters findClusters(Lexicon const& lexicon, Usage const& usage, double tolerance) {
    Side rows{{}, lexicon.sourceRows, lexicon.sourceCols, {}, {}};
    Side columns{{}, lexicon.sourceCols, lexicon.sourceRows, {}, {}};
    rows.use.assign(lexicon.sourceRows, kLeastUse);
    columns.use.assign(lexicon.sourceCols, kLeastUse);
    for (Usage::Edge const& edge : usage.edges) {
        std::uint32_t const row = edge.left == Lattice::kNone ? 0 : lexicon.rowBase[lexicon.words[edge.left].row];
        std::uint32_t const col = edge.right == Lattice::kNone ? 0 : lexicon.words[edge.right].col;
        rows.use[row] += static_cast<double>(edge.weight);
        if (col < lexicon.sourceCols) columns.use[col] += static_cast<double>(edge.weight);
    }
    rows.positionUse = columns.use;
    columns.positionUse = rows.use;
    for (std::uint32_t row = 0; row < lexicon.sourceRows; ++row)
        for (std::uint32_t col = 0; col < lexicon.sourceCols; ++col)
            rows.cells.push_back(static_cast<float>(lexicon.matrix.at(row, col)));
    for (std::uint32_t col = 0; col < lexicon.sourceCols; ++col)
        for (std::uint32_t row = 0; row < lexicon.sourceRows; ++row)
            columns.cells.push_back(static_cast<float>(lexicon.matrix.at(row, col)));
    return {cluster(rows, tolerance), cluster(columns, tolerance)};
}

}  // namespace TAVO::importer
