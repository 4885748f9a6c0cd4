// How paths compare.
#ifndef TAVO_ENGINE_PATH_KEY_HPP
#define TAVO_ENGINE_PATH_KEY_HPP

#include <cstdint>

namespace TAVO {

/// The sums of a path or of a part of one: connection costs in the upper half,
/// word costs in the lower. A smaller key is better; keys of parts add up to the
/// key of the whole, since no sum of a sentence reaches 2^32.
using PathKey = std::uint64_t;

inline constexpr PathKey kNoPath = ~PathKey{0};

constexpr PathKey pathKey(std::uint32_t connSum, std::uint32_t wordSum) noexcept {
    return PathKey{connSum} << 32 | wordSum;
}
constexpr std::uint32_t connSumOf(PathKey key) noexcept { return static_cast<std::uint32_t>(key >> 32); }
constexpr std::uint32_t wordSumOf(PathKey key) noexcept { return static_cast<std::uint32_t>(key); }

}  // namespace TAVO

#endif
