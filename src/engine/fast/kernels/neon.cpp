// 64-bit ARM processors, which all have NEON.
#include "engine/fast/kernels/kernels.hpp"

#if defined(__aarch64__)

#include "engine/fast/kernels/relax_words.hpp"

#include <arm_neon.h>

namespace TAVO {
namespace {

struct NeonEight {
    uint16x8_t sums;

    [[gnu::always_inline]] static NeonEight after(unsigned char const* row, std::uint16_t const* columns,
                                                  std::uint16_t const* sums) noexcept {
        uint8x8_t bytes = vdup_n_u8(row[columns[0]]);
        bytes = vld1_lane_u8(row + columns[1], bytes, 1);
        bytes = vld1_lane_u8(row + columns[2], bytes, 2);
        bytes = vld1_lane_u8(row + columns[3], bytes, 3);
        bytes = vld1_lane_u8(row + columns[4], bytes, 4);
        bytes = vld1_lane_u8(row + columns[5], bytes, 5);
        bytes = vld1_lane_u8(row + columns[6], bytes, 6);
        bytes = vld1_lane_u8(row + columns[7], bytes, 7);
        uint16x8_t const costs = vmovl_u8(bytes);
        return {vorrq_u16(vqaddq_u16(vld1q_u16(sums), costs), vceqq_u16(costs, vdupq_n_u16(255)))};
    }
    static NeonEight of(std::uint16_t const* from) noexcept { return {vld1q_u16(from)}; }
    static NeonEight least(NeonEight a, NeonEight b) noexcept { return {vminq_u16(a.sums, b.sums)}; }
    unsigned minimum() const noexcept { return vminvq_u16(sums); }
    [[gnu::always_inline]] unsigned equal(unsigned value) const noexcept {
        uint16x8_t const bits{1, 2, 4, 8, 16, 32, 64, 128};
        return vaddvq_u16(vandq_u16(vceqq_u16(sums, vdupq_n_u16(static_cast<std::uint16_t>(value))), bits));
    }
    void store(std::uint16_t* to) const noexcept { vst1q_u16(to, sums); }
};

}  // namespace

void relaxNeon(Relaxation const& block, std::size_t begin, std::size_t end) {
    relaxWords<NeonEight>(block, begin, end);
}
std::size_t passNeon(Relaxation const& block, std::span<Look const> looks, std::size_t first, Look* left) {
    return passLooks<NeonEight>(block, looks, first, left);
}

}  // namespace TAVO

#endif
