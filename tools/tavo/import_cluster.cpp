#include "import_cluster.hpp"

#include <algorithm>
#include <numeric>
#include <utility>

namespace TAVO::importer {
namespace {

constexpr double kLeastUse = 0.5;  // of a line that the fitting text never needs

/// One side of the matrix: lines of cells. The positions in a line come most
/// used first, so that differing lines are soon known to differ.
struct Side {
    std::vector<float> cells;
    std::vector<float> weights;  ///< per position; their sum is 1
    std::vector<double> use;     ///< per line

    float const* line(std::uint32_t i) const { return &cells[i * weights.size()]; }
    std::uint32_t lines() const { return static_cast<std::uint32_t>(use.size()); }
};

/// @p cell(line, position) is the cost; the uses are of the lines and of the positions.
template <class Cell>
Side makeSide(std::vector<double> const& use, std::vector<double> const& positionUse, Cell&& cell) {
    Side side;
    side.use = use;
    double const total = std::accumulate(positionUse.begin(), positionUse.end(), 0.0);
    std::vector<std::uint32_t> order(positionUse.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), [&](auto a, auto b) { return positionUse[a] > positionUse[b]; });
    for (std::uint32_t const position : order)
        side.weights.push_back(static_cast<float>(positionUse[position] / total));
    side.cells.resize(use.size() * order.size());
    float* out = side.cells.data();
    for (std::uint32_t line = 0; line < use.size(); ++line)
        for (std::uint32_t const position : order) *out++ = static_cast<float>(cell(line, position));
    return side;
}

/// The weighted mean and variance of a - b; gives up, with a variance above
/// @p limit, as soon as that is sure.
std::pair<double, double> compare(float const* a, float const* b, std::vector<float> const& weights, double limit) {
    constexpr std::size_t kBlock = 64;
    double sum = 0, squares = 0, weight = 0;
    float const first = a[0] - b[0];  // keeps the squares small
    for (std::size_t from = 0; from < weights.size(); from += kBlock) {
        std::size_t const to = std::min(from + kBlock, weights.size());
        float blockSum = 0, blockSquares = 0, blockWeight = 0;
        for (std::size_t i = from; i < to; ++i) {
            float const difference = a[i] - b[i] - first;
            blockWeight += weights[i];
            blockSum += weights[i] * difference;
            blockSquares += weights[i] * difference * difference;
        }
        sum += static_cast<double>(blockSum);
        squares += static_cast<double>(blockSquares);
        weight += static_cast<double>(blockWeight);
        // The rest adds nothing at best: when it lies at the mean of what was seen.
        double const least = squares - sum * sum / weight;
        if (least > limit) return {0, least};
    }
    return {sum + static_cast<double>(first), squares - sum * sum};
}

Clusters::Lines cluster(Side const& side, double tolerance) {
    Clusters::Lines result;
    result.leader.resize(side.lines());
    result.offset.assign(side.lines(), 0);
    std::iota(result.leader.begin(), result.leader.end(), 0U);
    result.count = side.lines();
    if (tolerance <= 0) return result;

    std::vector<std::uint32_t> order(result.leader.begin() + 1, result.leader.end());
    std::stable_sort(order.begin(), order.end(), [&](auto a, auto b) { return side.use[a] > side.use[b]; });
    std::vector<std::uint32_t> leaders;  // line 0, the text's end, stays by itself
    for (std::uint32_t const line : order) {
        double least = tolerance / side.use[line];
        for (std::uint32_t const leader : leaders) {
            auto const [mean, variance] = compare(side.line(line), side.line(leader), side.weights, least);
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
    std::vector<double> rowUse(lexicon.sourceRows, kLeastUse), columnUse(lexicon.sourceCols, kLeastUse);
    for (Usage::Edge const& edge : usage.edges) {
        std::uint32_t const row = edge.left == Lattice::kNone ? 0 : lexicon.rowBase[lexicon.words[edge.left].row];
        std::uint32_t const col = edge.right == Lattice::kNone ? 0 : lexicon.words[edge.right].col;
        rowUse[row] += static_cast<double>(edge.weight);
        if (col < lexicon.sourceCols) columnUse[col] += static_cast<double>(edge.weight);
    }
    Matrix const& matrix = lexicon.matrix;
    Clusters clusters;
    // One side after the other: for large lexicons each takes a gigabyte.
    clusters.rows =
        cluster(makeSide(rowUse, columnUse, [&](auto row, auto col) { return matrix.at(row, col); }), tolerance);
    clusters.columns =
        cluster(makeSide(columnUse, rowUse, [&](auto col, auto row) { return matrix.at(row, col); }), tolerance);
    return clusters;
}

}  // namespace TAVO::importer
