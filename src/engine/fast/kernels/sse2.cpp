// What every x86-64 processor has.
#include "engine/fast/kernels/kernels.hpp"

#if defined(__x86_64__)

#include "engine/fast/kernels/relax_words.hpp"

#include <immintrin.h>

namespace TAVO {
namespace {

/// Sums with their highest bit turned: SSE2 compares and adds with saturation signed numbers only.
struct Sse2Eight {
    __m128i sums;

    static __m128i turned() noexcept { return _mm_set1_epi16(static_cast<short>(0x8000)); }
    static __m128i load(void const* from) noexcept { return _mm_loadu_si128(static_cast<__m128i const*>(from)); }

    [[gnu::always_inline]] static Sse2Eight after(unsigned char const* row, std::uint16_t const* columns,
                                                  std::uint16_t const* sums) noexcept {
        __m128i low = _mm_cvtsi32_si128(row[columns[0]]);
        __m128i high = _mm_cvtsi32_si128(row[columns[4]]);
        low = _mm_insert_epi16(low, row[columns[1]], 1);
        high = _mm_insert_epi16(high, row[columns[5]], 1);
        low = _mm_insert_epi16(low, row[columns[2]], 2);
        high = _mm_insert_epi16(high, row[columns[6]], 2);
        low = _mm_insert_epi16(low, row[columns[3]], 3);
        high = _mm_insert_epi16(high, row[columns[7]], 3);
        __m128i const costs = _mm_unpacklo_epi64(low, high);
        __m128i const sum = _mm_adds_epi16(_mm_xor_si128(load(sums), turned()), costs);
        __m128i const forbidden = _mm_cmpeq_epi16(costs, _mm_set1_epi16(255));
        return {_mm_or_si128(_mm_andnot_si128(forbidden, sum), _mm_and_si128(forbidden, _mm_set1_epi16(0x7FFF)))};
    }
    static Sse2Eight of(std::uint16_t const* from) noexcept { return {_mm_xor_si128(load(from), turned())}; }
    static Sse2Eight least(Sse2Eight a, Sse2Eight b) noexcept { return {_mm_min_epi16(a.sums, b.sums)}; }
    [[gnu::always_inline]] unsigned minimum() const noexcept {
        __m128i s = _mm_min_epi16(sums, _mm_shuffle_epi32(sums, 0x4E));
        s = _mm_min_epi16(s, _mm_shuffle_epi32(s, 0xB1));
        s = _mm_min_epi16(s, _mm_or_si128(_mm_slli_epi32(s, 16), _mm_srli_epi32(s, 16)));
        return (static_cast<unsigned>(_mm_cvtsi128_si32(s)) & 0xFFFF) ^ 0x8000;
    }
    [[gnu::always_inline]] unsigned equal(unsigned value) const noexcept {
        __m128i const same = _mm_cmpeq_epi16(sums, _mm_set1_epi16(static_cast<short>(value ^ 0x8000)));
        return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(same, _mm_setzero_si128())));
    }
    void store(std::uint16_t* to) const noexcept {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_xor_si128(sums, turned()));
    }
};

}  // namespace

void relaxSse2(Relaxation const& block, std::size_t begin, std::size_t end) {
    relaxWords<Sse2Eight>(block, begin, end);
}
std::size_t passSse2(Relaxation const& block, std::span<Look const> looks, std::size_t first, Look* left) {
    return passLooks<Sse2Eight>(block, looks, first, left);
}

}  // namespace TAVO

#endif
