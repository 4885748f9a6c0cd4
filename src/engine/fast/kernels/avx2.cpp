// Processors with AVX2, of which it uses the shorter encodings and SSE4.1's minimum of eight.
#include "engine/fast/kernels/kernels.hpp"

#if defined(__x86_64__)

#include <immintrin.h>
#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

// NOLINTBEGIN(clang-diagnostic-unknown-pragmas)
#pragma GCC push_options
#pragma GCC target("avx2,bmi,bmi2")
// NOLINTEND(clang-diagnostic-unknown-pragmas)

#include "engine/fast/kernels/relax_words.hpp"

namespace TAVO {
namespace {

struct Avx2Eight {
    __m128i sums;

    static __m128i load(void const* from) noexcept { return _mm_loadu_si128(static_cast<__m128i const*>(from)); }

    [[gnu::always_inline]] static Avx2Eight after(unsigned char const* row, std::uint16_t const* columns,
                                                  std::uint16_t const* sums) noexcept {
        __m128i low = _mm_cvtsi32_si128(row[columns[0]]);
        __m128i high = _mm_cvtsi32_si128(row[columns[4]]);
        low = _mm_insert_epi8(low, row[columns[1]], 2);
        high = _mm_insert_epi8(high, row[columns[5]], 2);
        low = _mm_insert_epi8(low, row[columns[2]], 4);
        high = _mm_insert_epi8(high, row[columns[6]], 4);
        low = _mm_insert_epi8(low, row[columns[3]], 6);
        high = _mm_insert_epi8(high, row[columns[7]], 6);
        __m128i const costs = _mm_unpacklo_epi64(low, high);
        return {_mm_or_si128(_mm_adds_epu16(load(sums), costs), _mm_cmpeq_epi16(costs, _mm_set1_epi16(255)))};
    }
    static Avx2Eight of(std::uint16_t const* from) noexcept { return {load(from)}; }
    static Avx2Eight least(Avx2Eight a, Avx2Eight b) noexcept { return {_mm_min_epu16(a.sums, b.sums)}; }
    [[gnu::always_inline]] unsigned minimum() const noexcept {
        return static_cast<unsigned>(_mm_cvtsi128_si32(_mm_minpos_epu16(sums))) & 0xFFFF;
    }
    [[gnu::always_inline]] unsigned equal(unsigned value) const noexcept {
        __m128i const same = _mm_cmpeq_epi16(sums, _mm_set1_epi16(static_cast<short>(value)));
        return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(same, _mm_setzero_si128())));
    }
    void store(std::uint16_t* to) const noexcept { _mm_storeu_si128(reinterpret_cast<__m128i*>(to), sums); }
};

}  // namespace

void relaxAvx2(Relaxation const& block, std::size_t begin, std::size_t end) {
    relaxWords<Avx2Eight>(block, begin, end);
}
std::size_t passAvx2(Relaxation const& block, std::span<Look const> looks, std::size_t first, Look* left) {
    return passLooks<Avx2Eight>(block, looks, first, left);
}

}  // namespace TAVO

#pragma GCC pop_options  // NOLINT(clang-diagnostic-unknown-pragmas)

#endif
