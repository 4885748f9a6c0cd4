// How the search for a best path keeps a word that starts at a place.
#ifndef TAVO_ENGINE_PACKED_SUM_HPP
#define TAVO_ENGINE_PACKED_SUM_HPP

#include "dic/conn_table.hpp"
#include "engine/plain_runs.hpp"

#include <cstdint>

namespace TAVO {

// A word in 64 bits: its connection sum above a base sum, its word-cost sum, its number
// among the words that start where it does. Adding a cost to the upper part and
// taking the smallest is all that a choice has to do.
inline constexpr unsigned kSumShift = 48;
inline constexpr unsigned kWordShift = 16;
inline constexpr std::uint64_t kNumberMask = 0xFFFF;
/// A word that leads nowhere; a cost more still fits.
inline constexpr std::uint32_t kDeadSum = 0xFF00;
inline constexpr std::uint64_t kDeadEnd = std::uint64_t{kDeadSum} << kSumShift;
/// Sums from here on are too large to be packed.
inline constexpr std::uint32_t kMostSum = 0xF000;
static_assert(kMostSum + PlainRuns::kMostCost + ConnTable::kForbidden <= kDeadSum, "a run's costs come on top");
/// A least sum above the base sum by this much makes the search take another base.
inline constexpr std::uint32_t kRebase = 0x4000;

constexpr std::uint32_t sumOf(std::uint64_t packed) noexcept { return static_cast<std::uint32_t>(packed >> kSumShift); }

constexpr std::uint32_t packedWordSum(std::uint64_t packed) noexcept {
    return static_cast<std::uint32_t>(packed >> kWordShift);
}

}  // namespace TAVO

#endif
