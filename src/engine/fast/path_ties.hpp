// Ties of the fast search: equal connection sums, decided by word costs.
#ifndef TAVO_ENGINE_FAST_PATH_TIES_HPP
#define TAVO_ENGINE_FAST_PATH_TIES_HPP

#include "engine/fast/relaxation.hpp"
#include "engine/fast/search_state.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace TAVO {

/// Adds the word costs of two paths up until they meet, which is soon: so no sum of word costs is kept for every word.
class PathTies final : public TieBreaker {
public:
    explicit PathTies(SearchState const& state) : state_(state) {}

    unsigned breakTie(std::size_t end, std::span<std::uint16_t const> sums, std::uint16_t least) override;
    /// True when paths did not meet within kMostSteps since restart(): the choices are not to be used.
    bool failed() const noexcept { return failed_; }
    void restart() noexcept { failed_ = false; }

    /// For each candidate at @p place, the word-cost sum of its path less that of the first one's; 0 for those without
    /// a path. Their paths have to meet.
    void relativeWordSums(std::size_t place, std::vector<std::uint32_t>& sums);

private:
    static constexpr std::size_t kMostSteps = 4096;

    /// Word costs of @p a's path less those of @p b's.
    std::int64_t difference(PlacedCandidate a, PlacedCandidate b);

    SearchState const& state_;
    bool failed_ = false;
};

}  // namespace TAVO

#endif
