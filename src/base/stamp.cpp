#include "base/stamp.hpp"

#include "base/bytes.hpp"

#include <array>
#include <bit>

namespace TAVO {
namespace {

constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio

std::uint64_t mix(std::uint64_t state, std::uint64_t value) noexcept {
    return std::rotl((state ^ value) * kFactor, 29);
}

}  // namespace

std::uint64_t contentStamp(unsigned char const* bytes, std::size_t sizeBytes) noexcept {
    // Four states side by side, so that no multiplication waits for the one before.
    std::array<std::uint64_t, 4> states{1, 2, 3, 4};
    std::size_t at = 0;
    for (; at + 32 <= sizeBytes; at += 32)
        for (std::size_t i = 0; i < states.size(); ++i) states[i] = mix(states[i], loadU64(bytes + at + 8 * i));
    std::uint64_t stamp = sizeBytes;
    for (std::uint64_t const state : states) stamp = mix(stamp, state);
    for (; at < sizeBytes; ++at) stamp = mix(stamp, bytes[at]);
    return mix(stamp, 0);
}

}  // namespace TAVO
