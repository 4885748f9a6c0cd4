#include "lexicon/import/fit/fit.hpp"

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

namespace TAVO::importer {
namespace {

/// A random walk over the lexicon: word after word with the probability that
/// its connection and word cost stand for.
class Walk {
public:
    explicit Walk(Lexicon const& lexicon)
        : lexicon_(lexicon), byCol_(lexicon.sourceCols), byRow_(lexicon.sourceRows), rowSums_(lexicon.sourceRows) {
        for (int cost = INT16_MIN; cost <= INT16_MAX; ++cost) ofConnection_.push_back(probability(cost));
        for (std::uint32_t i = 0; i < lexicon.words.size(); ++i) {
            Word const& word = lexicon.words[i];
            if (word.unknown) continue;
            add(byCol_[word.col], i, word.cost);
            add(byRow_[word.row], i, word.cost);
        }
    }

    /// A sentence that has a word of right id @p wanted as its third word or
    /// earlier; 0 leaves all to chance.
    std::string sentence(std::uint32_t wanted) {
        std::string text;
        std::uint32_t row = 0;
        for (unsigned length = 0; length < kMaxWords; ++length) {
            std::uint32_t word = Lattice::kNone;
            if (wanted != 0 && length == 2) {
                word = pick(byRow_[wanted]);
            } else {
                std::uint32_t const col = nextColumn(row, length < 3);
                if (col == 0) break;
                word = pick(byCol_[col]);
            }
            if (word == Lattice::kNone) break;
            text += lexicon_.words[word].form;
            row = lexicon_.words[word].row;
        }
        return text;
    }
    bool hasWords(std::uint32_t row) const { return !byRow_[row].words.empty(); }

private:
    static constexpr unsigned kMaxWords = 60;
    // The costs are made for comparing analyses of one text. Taken as they are, a
    // walk would go round among a few words with very low costs; a price per byte
    // and a flatter distribution keep it near language.
    static constexpr double kPerByte = 650, kFlatten = 2;

    double probability(double cost) const { return std::exp(-cost / (kFlatten * lexicon_.costFactor)); }
    double connectionProbability(std::int16_t cost) const {
        return ofConnection_[static_cast<std::size_t>(cost - INT16_MIN)];
    }

    struct Bag {
        std::vector<std::uint32_t> words;
        std::vector<double> sums;
    };

    void add(Bag& bag, std::uint32_t word, double cost) const {
        bag.words.push_back(word);
        bag.sums.push_back((bag.sums.empty() ? 0 : bag.sums.back()) +
                           probability(cost + kPerByte * static_cast<double>(lexicon_.words[word].form.size())));
    }
    double uniform() { return static_cast<double>(random_() >> 11) * 0x1.0p-53; }
    std::size_t pickIndex(std::vector<double> const& sums) {
        auto const at = std::upper_bound(sums.begin(), sums.end(), uniform() * sums.back());
        return std::min(static_cast<std::size_t>(at - sums.begin()), sums.size() - 1);
    }
    std::uint32_t pick(Bag const& bag) { return bag.words.empty() ? Lattice::kNone : bag.words[pickIndex(bag.sums)]; }

    /// Adds up the probabilities of the columns behind @p row, from column index @p from (the text's end comes last),
    /// of which the ones before have the sum @p sum. Calls visit(index, sum) for each until it says no.
    template <class Visit>
    void sumColumns(std::uint32_t row, std::uint32_t from, double sum, Visit const& visit) const {
        for (std::uint32_t at = from; at < lexicon_.sourceCols; ++at) {
            std::uint32_t const id = at + 1 == lexicon_.sourceCols ? 0 : at + 1;
            double const mass = id == 0 ? 1 : byCol_[id].sums.empty() ? 0 : byCol_[id].sums.back();
            sum += mass == 0 ? 0 : mass * connectionProbability(lexicon_.matrix.at(row, id));
            if (!visit(at, sum)) return;
        }
    }

    /// Of the sums of a row every 64th is kept: all of them would take more room than the costs.
    std::uint32_t pickColumn(std::uint32_t row) {
        constexpr std::uint32_t kKept = 64;
        std::vector<double>& sums = rowSums_[row];
        if (sums.empty()) {
            double last = 0;
            sumColumns(row, 0, 0, [&](std::uint32_t at, double sum) {
                if (at % kKept == 0) sums.push_back(last);
                last = sum;
                return true;
            });
            sums.push_back(last);
        }
        double const wanted = uniform() * static_cast<double>(static_cast<float>(sums.back()));
        auto const behind = std::upper_bound(sums.begin() + 1, sums.end() - 1, wanted, [](double value, double sum) {
            return value < static_cast<double>(static_cast<float>(sum));
        });
        auto const block = static_cast<std::uint32_t>(behind - sums.begin() - 1);
        std::uint32_t picked = lexicon_.sourceCols - 1;
        sumColumns(row, block * kKept, sums[block], [&](std::uint32_t at, double sum) {
            bool const found = wanted < static_cast<double>(static_cast<float>(sum));
            if (found) picked = at;
            return !found;
        });
        return picked;
    }

    std::uint32_t nextColumn(std::uint32_t row, bool notEnd) {
        std::uint32_t at = pickColumn(row);
        for (unsigned tries = 0; notEnd && at + 1 == lexicon_.sourceCols && tries < 8; ++tries) at = pickColumn(row);
        return (at + 1) % lexicon_.sourceCols;
    }

    Lexicon const& lexicon_;
    std::vector<Bag> byCol_, byRow_;
    std::vector<double> ofConnection_;          // by cost, from the lowest on
    std::vector<std::vector<double>> rowSums_;  // made when first needed
    std::mt19937_64 random_{20061};
};

/// A linear least-squares problem over the shifts: every edge is a row
/// cost + x[from] - x[to] + x[last] * bytes.
struct Equation {
    std::uint32_t from, to;
    std::int32_t bytes, cost;
    double count;
};

/// One equation for all that are equal; a count weighs by its root.
std::vector<Equation> mergeEqual(std::vector<Equation> edges) {
    auto const key = [](Equation const& e) { return std::tuple(e.from, e.to, e.bytes, e.cost); };
    std::stable_sort(edges.begin(), edges.end(), [&](Equation const& a, Equation const& b) { return key(a) < key(b); });
    std::size_t merged = 0;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        if (merged == 0 || key(edges[merged - 1]) != key(edges[i]))
            edges[merged++] = edges[i];
        else
            edges[merged - 1].count += edges[i].count;
    }
    edges.resize(merged);
    edges.shrink_to_fit();
    for (Equation& e : edges) e.count = std::sqrt(e.count);
    return edges;
}

class Solver {
public:
    Solver(std::vector<Equation> const& equations, std::size_t unknowns, FitOptions const& options)
        : equations_(equations), options_(options), x_(unknowns, 0.0) {}

    /// Newton's method on a convex loss: the square of the distance to the target,
    /// and far heavier the square of the distance to the range where that is left.
    std::vector<double> solve() {
        std::vector<double> weights(equations_.size(), 1), wanted(equations_.size(), options_.target);
        for (unsigned round = 0; round < options_.rounds; ++round) {
            for (std::size_t i = 0; round > 0 && i < equations_.size(); ++i) {
                double const value = evaluate(equations_[i], x_) + static_cast<double>(equations_[i].cost);
                double const bound = std::clamp(value, options_.lowest, options_.highest);
                weights[i] = value == bound ? 1 : 1 + options_.heavy;
                wanted[i] = value == bound ? options_.target : (options_.target + options_.heavy * bound) / weights[i];
            }
            conjugateGradient(weights, wanted);
        }
        return x_;
    }

private:
    static constexpr unsigned kSteps = 60;
    static constexpr double kRidge = 0.05;

    double evaluate(Equation const& e, std::vector<double> const& x) const {
        return x[e.from] - x[e.to] + x.back() * e.bytes;
    }
    void scatter(Equation const& e, double value, std::vector<double>& out) const {
        out[e.from] += value;
        out[e.to] -= value;
        out.back() += value * e.bytes;
    }
    void apply(std::vector<double> const& weights, std::vector<double> const& x, std::vector<double>& out) const {
        for (std::size_t i = 0; i < x.size(); ++i) out[i] = kRidge * x[i];
        for (std::size_t i = 0; i < equations_.size(); ++i)
            scatter(equations_[i], weights[i] * equations_[i].count * evaluate(equations_[i], x), out);
    }

    void conjugateGradient(std::vector<double> const& weights, std::vector<double> const& wanted) {
        std::size_t const n = x_.size();
        std::vector<double> residual(n, 0.0), scale(n, kRidge), direction(n), image(n);
        apply(weights, x_, image);
        for (std::size_t i = 0; i < n; ++i) residual[i] = -image[i];
        for (std::size_t i = 0; i < equations_.size(); ++i) {
            Equation const& e = equations_[i];
            double const weight = weights[i] * e.count;
            scatter(e, weight * (wanted[i] - e.cost), residual);
            scale[e.from] += weight;
            scale[e.to] += weight;
            scale.back() += weight * e.bytes * e.bytes;
        }
        double product = 0;
        for (std::size_t i = 0; i < n; ++i) {
            direction[i] = residual[i] / scale[i];
            product += residual[i] * direction[i];
        }
        for (unsigned step = 0; step < kSteps && product > 1e-3; ++step) {
            apply(weights, direction, image);
            double curvature = 0;
            for (std::size_t i = 0; i < n; ++i) curvature += direction[i] * image[i];
            double const length = product / curvature;
            double next = 0;
            for (std::size_t i = 0; i < n; ++i) {
                x_[i] += length * direction[i];
                residual[i] -= length * image[i];
                next += residual[i] * residual[i] / scale[i];
            }
            for (std::size_t i = 0; i < n; ++i) direction[i] = residual[i] / scale[i] + next / product * direction[i];
            product = next;
        }
    }

    std::vector<Equation> const& equations_;
    FitOptions const& options_;
    std::vector<double> x_;
};

}  // namespace

std::vector<std::string> drawSentences(Lexicon const& lexicon, std::size_t count) {
    Walk walk(lexicon);
    std::vector<std::string> sentences;
    for (std::size_t i = 0; i < count; ++i) sentences.push_back(walk.sentence(0));
    for (std::uint32_t row = 1; row < lexicon.sourceRows; ++row)
        if (walk.hasWords(row)) sentences.push_back(walk.sentence(row));
    return sentences;
}

Usage countEdges(Lexicon const& lexicon, FormIndex const& index, std::vector<std::string> const& sentences,
                 double nearBest) {
    constexpr double kLeastWeight = 0.01;
    Usage usage;
    Lattice lattice;
    ExactEdge const edge{lexicon};
    for (std::string const& text : sentences) {
        ++usage.sentences;
        fillLattice(lattice, index, lexicon, text);
        searchForward(lattice, text.size(), edge);
        if (lattice.best >= Lattice::kNoPath) {
            ++usage.withoutPath;
            continue;
        }
        searchBackward(lattice, text.size(), edge);
        auto const use = [&](std::uint32_t left, std::uint32_t right, std::int64_t total) {
            if (total >= Lattice::kNoPath) return;
            double const weight = std::exp(-static_cast<double>(total - lattice.best) / nearBest);
            if (weight >= kLeastWeight) usage.edges.push_back({left, right, static_cast<float>(weight)});
        };
        for (Node const& node : lattice.nodes) {
            if (node.rest >= Lattice::kNoPath || node.best >= Lattice::kNoPath) continue;
            if (node.best + node.rest > lattice.best + static_cast<std::int64_t>(5 * nearBest)) continue;
            if (node.start == 0) use(Lattice::kNone, node.word, node.best + node.rest);
            if (node.end == text.size()) use(node.word, Lattice::kNone, node.best + node.rest);
            for (std::uint32_t const before : lattice.endingAt[node.start]) {
                Node const& left = lattice.nodes[before];
                if (left.best >= Lattice::kNoPath) continue;
                use(left.word, node.word,
                    left.best + std::min(Lattice::kNoPath / 2, edge(left.word, node.word)) + node.rest);
            }
        }
    }
    return usage;
}

Shifts fitShifts(Lexicon const& lexicon, Usage const& usage, FitOptions const& options) {
    std::uint32_t const end = lexicon.sourceRows;  // the text's end has a shift of its own
    std::vector<Equation> edges;
    edges.reserve(usage.edges.size());
    ExactEdge const edge{lexicon};
    for (Usage::Edge const& used : usage.edges) {
        std::uint32_t const from = used.left == Lattice::kNone ? 0 : lexicon.rowBase[lexicon.words[used.left].row];
        std::uint32_t const to = used.right == Lattice::kNone ? end : lexicon.rowBase[lexicon.words[used.right].row];
        std::size_t const bytes = used.right == Lattice::kNone ? 0 : lexicon.words[used.right].form.size();
        auto const cost = static_cast<std::int32_t>(edge(used.left, used.right));
        edges.push_back({from, to, static_cast<std::int32_t>(bytes), cost, static_cast<double>(used.weight)});
    }
    std::vector<Equation> const equations = mergeEqual(std::move(edges));
    std::vector<double> const x = Solver(equations, end + 2, options).solve();
    Shifts shifts;
    shifts.row.assign(x.begin(), x.begin() + static_cast<std::ptrdiff_t>(end));
    shifts.end = x[end];
    shifts.perByte = x.back();
    return shifts;
}

}  // namespace TAVO::importer
