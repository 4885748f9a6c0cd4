// Levels of cost: classes of words that connect alike.
#ifndef TAVO_LEXICON_IMPORT_TABLE_LEVELS_HPP
#define TAVO_LEXICON_IMPORT_TABLE_LEVELS_HPP

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace TAVO::importer {

/// Groups the values of one source column into levels: neighbours merge while
/// the weighted squared error that this adds stays below a tolerance.
class Levels {
public:
    struct Level {
        double mean, weight;
        std::uint32_t first, last;  ///< rounded values that belong to it
    };

    void add(double value, double weight) {
        auto& [sum, total] = sums_[static_cast<std::int32_t>(std::lround(value))];
        sum += value * weight;
        total += weight;
    }

    /// Calls assign(rounded value, mean of its level) for each rounded value.
    template <class Assign>
    void merge(double tolerance, Assign&& assign) const {
        struct Group {
            std::int32_t first, last;
            double mean, weight;
        };
        std::vector<Group> groups;
        for (auto const& [value, sum] : sums_) groups.push_back({value, value, sum.first / sum.second, sum.second});
        while (groups.size() > 1) {
            std::size_t best = 0;
            double least = tolerance;
            for (std::size_t i = 0; i + 1 < groups.size(); ++i) {
                Group const &a = groups[i], &b = groups[i + 1];
                double const gap = b.mean - a.mean;
                double const loss = a.weight * b.weight / (a.weight + b.weight) * gap * gap;
                if (loss >= least) continue;
                least = loss;
                best = i + 1;
            }
            if (best == 0) break;
            Group &a = groups[best - 1], &b = groups[best];
            a = {a.first, b.last, (a.mean * a.weight + b.mean * b.weight) / (a.weight + b.weight), a.weight + b.weight};
            groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(best));
        }
        for (Group const& group : groups)
            for (auto at = sums_.find(group.first); at != sums_.end() && at->first <= group.last; ++at)
                assign(at->first, group.mean);
    }

private:
    std::map<std::int32_t, std::pair<double, double>> sums_;
};

}  // namespace TAVO::importer

#endif
