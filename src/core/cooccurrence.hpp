// Choosing the analysis whose words fit together best.
#ifndef TAVO_CORE_COOCCURRENCE_HPP
#define TAVO_CORE_COOCCURRENCE_HPP

#include "config/cooc_rules.hpp"
#include "engine/cooc/near_paths.hpp"
#include "engine/exact/lattice_constraints.hpp"
#include "result/context.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace TAVO {

class Cooccurrence {
public:
    void load(char const* path, std::string_view const* text = nullptr) { rules_.load(path, text); }
    CoocRules const& rules() const noexcept { return rules_; }
    void setRules(CoocRules rules) { rules_ = std::move(rules); }
    /// Before dictionaries go.
    void clear() noexcept { words_.clear(); }

    /// True when a word that looks for others may begin somewhere in the searched text of @p sentence, which is not
    /// too long for it.
    static bool mayAct(AnalyzerContext const& context, Sentence const& sentence);
    /// Replaces the best path of a sentence where another one near it has a higher score. The sentences before it
    /// have their paths.
    void choose(AnalyzerContext& context, std::size_t index, LatticeConstraints& constraints);

    /// Paths of one sentence in their order by sums.
    struct Ranked {
        std::vector<LatticeNode const*> nodes;
        PathKey key;
    };
    /// How many paths of a sentence are looked at for the N best.
    static constexpr std::size_t kRankedPaths = 256;
    /// Puts those near @p best, the smallest key, in front, by their scores; the sentence's own path is the first.
    void rank(std::vector<Ranked>& paths, AnalyzerContext const& context, std::size_t index, PathKey best);

private:
    using Words = std::vector<std::pair<unsigned char const*, std::uint32_t>>;  // records and their lengths in bytes

    PathKey limit(PathKey best) const noexcept;
    static Words wordsOf(std::span<LatticeNode const* const> path);
    /// The words before a sentence that count.
    std::vector<CoocPlace> before(AnalyzerContext const& context, std::size_t index);

    CoocRules rules_;
    CoocWords words_;
    AllPaths lattice_;  // of the sentence at work
    std::unique_ptr<NodePool> nodes_;
};

}  // namespace TAVO

#endif
