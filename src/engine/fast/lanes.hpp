// Eight 16-bit numbers side by side, in what vector registers the compiler's target has.
#ifndef TAVO_ENGINE_FAST_LANES_HPP
#define TAVO_ENGINE_FAST_LANES_HPP

#include <cstdint>
#include <cstring>

namespace TAVO {

inline constexpr unsigned kLanes = 8;
using Lanes = std::uint16_t __attribute__((vector_size(16)));
using ByteLanes = std::uint8_t __attribute__((vector_size(8)));

inline Lanes loadLanes(void const* from) noexcept {
    Lanes lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}
/// Numbers need no alignment beyond their own. A store of bytes would make the compiler load every pointer anew.
inline void storeLanes(std::uint16_t* to, Lanes lanes) noexcept {
    using LooseLanes = Lanes __attribute__((aligned(2)));
    *reinterpret_cast<LooseLanes*>(to) = lanes;
}
inline Lanes allLanes(unsigned value) noexcept {
    auto const v = static_cast<std::uint16_t>(value);
    return Lanes{v, v, v, v, v, v, v, v};
}
/// Eight bytes widened.
inline Lanes widenBytes(void const* from) noexcept {
    ByteLanes bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return __builtin_convertvector(bytes, Lanes);
}
inline Lanes minLanes(Lanes a, Lanes b) noexcept { return a < b ? a : b; }
/// The smallest of the eight.
inline unsigned leastLane(Lanes lanes) noexcept {
    lanes = minLanes(lanes, __builtin_shufflevector(lanes, lanes, 4, 5, 6, 7, 0, 1, 2, 3));
    lanes = minLanes(lanes, __builtin_shufflevector(lanes, lanes, 2, 3, 0, 1, 6, 7, 4, 5));
    lanes = minLanes(lanes, __builtin_shufflevector(lanes, lanes, 1, 0, 3, 2, 5, 4, 7, 6));
    return lanes[0];
}

}  // namespace TAVO

#endif
