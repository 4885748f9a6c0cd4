#include "lexicon/import/fit/cluster.hpp"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace TAVO::importer {
namespace {

constexpr double kLeastUse = 0.5;  // of a line that the fitting text never needs

constexpr std::size_t kBlock = 64;  // positions that are compared before the next look at the sum

/// Lines or positions, most used first.
std::vector<std::uint32_t> byUse(std::vector<double> const& use) {
    std::vector<std::uint32_t> order(use.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), [&](auto a, auto b) { return use[a] > use[b]; });
    return order;
}

/// Weights of the positions of a line, in their order; their sum is 1.
std::vector<float> weightsOf(std::vector<double> const& use, std::vector<std::uint32_t> const& order) {
    double const total = std::accumulate(use.begin(), use.end(), 0.0);
    std::vector<float> weights;
    weights.reserve(order.size());
    for (std::uint32_t const position : order) weights.push_back(static_cast<float>(use[position] / total));
    return weights;
}

/// What squares and sum of differences, weighted, are at least around their mean.
double leastSquares(double squares, double sum, double weight) { return squares - sum * sum / weight; }

/// The weighted mean and variance of a - b; gives up, with a variance above
/// @p limit, as soon as that is sure.
std::pair<double, double> compare(std::int16_t const* a, std::int16_t const* b, std::vector<float> const& weights,
                                  double limit) {
    double sum = 0, squares = 0, weight = 0;
    auto const first = static_cast<float>(a[0] - b[0]);  // keeps the squares small
    for (std::size_t from = 0; from < weights.size(); from += kBlock) {
        std::size_t const to = std::min(from + kBlock, weights.size());
        float blockSum = 0, blockSquares = 0, blockWeight = 0;
        for (std::size_t i = from; i < to; ++i) {
            float const difference = static_cast<float>(a[i] - b[i]) - first;
            blockWeight += weights[i];
            blockSum += weights[i] * difference;
            blockSquares += weights[i] * difference * difference;
        }
        sum += static_cast<double>(blockSum);
        squares += static_cast<double>(blockSquares);
        weight += static_cast<double>(blockWeight);
        // The rest adds nothing at best: when it lies at the mean of what was seen.
        double const least = leastSquares(squares, sum, weight);
        if (least > limit) return {0, least};
    }
    return {sum + static_cast<double>(first), squares - sum * sum};
}

/// The first blocks of the leaders, side by side, so that a line is compared with several at once. Of three hundred
/// pairs all but one differ enough there, by the very sums of compare().
class Heads {
public:
    explicit Heads(std::vector<float> const& weights)
        : weights_(weights.begin(), weights.begin() + static_cast<std::ptrdiff_t>(std::min(kBlock, weights.size()))) {}

    void add(std::int16_t const* line) {
        std::size_t const lane = count_++ % kLanes;
        if (lane == 0) groups_.emplace_back(weights_.size());
        for (std::size_t i = 0; i < weights_.size(); ++i) groups_.back()[i][lane] = static_cast<float>(line[i]);
    }

    /// Calls visit(index) for the leaders that may differ from @p line by no more than @p limit, which visit may lower.
    template <class Visit>
    void mayResemble(std::int16_t const* line, double const& limit, Visit const& visit) const {
        for (std::size_t group = 0; group < groups_.size(); ++group) {
            std::array<double, kLanes> const least = leastOf(groups_[group], line);
            std::size_t const lanes = std::min(kLanes, count_ - group * kLanes);
            for (std::size_t lane = 0; lane < lanes; ++lane)
                if (!(least[lane] > limit)) visit(group * kLanes + lane);
        }
    }

private:
    static constexpr std::size_t kLanes = 16;
    using Lanes = std::array<float, kLanes>;

    std::array<double, kLanes> leastOf(std::vector<Lanes> const& leaders, std::int16_t const* line) const {
        Lanes first{}, sum{}, squares{};
        float weight = 0;
        for (std::size_t lane = 0; lane < kLanes; ++lane) first[lane] = static_cast<float>(line[0]) - leaders[0][lane];
        for (std::size_t i = 0; i < leaders.size(); ++i) {
            auto const cell = static_cast<float>(line[i]);
            float const w = weights_[i];
            weight += w;
            for (std::size_t lane = 0; lane < kLanes; ++lane) {
                float const difference = cell - leaders[i][lane] - first[lane];
                sum[lane] += w * difference;
                squares[lane] += w * difference * difference;
            }
        }
        std::array<double, kLanes> least{};
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            least[lane] = leastSquares(static_cast<double>(squares[lane]), static_cast<double>(sum[lane]),
                                       static_cast<double>(weight));
        return least;
    }

    std::vector<float> weights_;
    std::vector<std::vector<Lanes>> groups_;  // per position of the block a cell of each leader
    std::size_t count_ = 0;
};

/// @p matrix has its rows in the order @p order and its columns in that of @p weights.
Clusters::Lines cluster(Matrix const& matrix, std::vector<std::uint32_t> const& order, std::vector<double> const& use,
                        std::vector<float> const& weights, double tolerance) {
    Clusters::Lines result;
    result.leader.resize(order.size());
    result.offset.assign(order.size(), 0);
    std::iota(result.leader.begin(), result.leader.end(), 0U);
    result.count = static_cast<std::uint32_t>(order.size());
    if (tolerance <= 0) return result;

    Heads heads(weights);
    std::vector<std::size_t> leaders;  // by place in the order
    for (std::size_t place = 0; place < order.size(); ++place) {
        std::uint32_t const line = order[place];
        if (line == 0) continue;  // the text's end stays by itself
        double least = tolerance / use[line];
        heads.mayResemble(matrix.rowAt(place), least, [&](std::size_t leader) {
            auto const [mean, variance] = compare(matrix.rowAt(place), matrix.rowAt(leaders[leader]), weights, least);
            if (variance >= least) return;
            least = variance;
            result.leader[line] = order[leaders[leader]];
            result.offset[line] = mean;
        });
        if (result.leader[line] != line) continue;
        leaders.push_back(place);
        heads.add(matrix.rowAt(place));
    }
    result.count = static_cast<std::uint32_t>(leaders.size()) + 1;
    return result;
}

}  // namespace

Clusters findClusters(Lexicon& lexicon, Usage const& usage, double tolerance) {
    std::vector<double> rowUse(lexicon.sourceRows, kLeastUse), columnUse(lexicon.sourceCols, kLeastUse);
    for (Usage::Edge const& edge : usage.edges) {
        std::uint32_t const row = edge.left == Lattice::kNone ? 0 : lexicon.rowBase[lexicon.words[edge.left].row];
        std::uint32_t const col = edge.right == Lattice::kNone ? 0 : lexicon.words[edge.right].col;
        rowUse[row] += static_cast<double>(edge.weight);
        if (col < lexicon.sourceCols) columnUse[col] += static_cast<double>(edge.weight);
    }
    // The most used positions of a line come first, so that differing lines are soon known to differ.
    auto const rowOrder = byUse(rowUse), columnOrder = byUse(columnUse);
    auto const rowWeights = weightsOf(rowUse, rowOrder), columnWeights = weightsOf(columnUse, columnOrder);
    lexicon.matrix.arrange(rowOrder, columnOrder);
    Clusters clusters;
    clusters.rows = cluster(lexicon.matrix, rowOrder, rowUse, columnWeights, tolerance);
    lexicon.matrix.turn();
    clusters.columns = cluster(lexicon.matrix, columnOrder, columnUse, rowWeights, tolerance);
    lexicon.matrix.turn();
    return clusters;
}

}  // namespace TAVO::importer
