// The loops that every kernel runs, over eight lanes of its own.
#ifndef TAVO_ENGINE_FAST_KERNELS_RELAX_WORDS_HPP
#define TAVO_ENGINE_FAST_KERNELS_RELAX_WORDS_HPP

#include "engine/fast/relaxation.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace TAVO {

// A kernel's Eight has:
// - after(matrixRow, columns, sums): eight sums plus the costs of the row in these columns, kNoSum where a cost is 255;
// - of(sums): eight sums;
// - least(a, b): the smaller sums of two;
// - minimum(): the smallest sum;
// - equal(value): a bit for each of the eight lanes that is value, the first one lowest;
// - store(to): the eight sums.
// A forced inline keeps all of it in the function with the kernel's target.

inline constexpr std::size_t kLanesOfKernel = 8;

/// The best of more candidates than two vectors hold. A template, so that each kernel has one for its target.
template <class Eight>
[[gnu::noinline]] unsigned relaxMany(Relaxation const& block, std::size_t end, unsigned char const* row,
                                     std::uint16_t& least) {
    std::size_t const first = block.firstSlots[end];
    std::size_t const count = block.counts[end];
    std::array<std::uint16_t, 256> sums;
    least = Relaxation::kNoSum;
    unsigned best = 0;
    unsigned ties = 0;
    for (std::size_t i = 0; i != count; ++i) {
        unsigned const cost = row[block.columns[first + i]];
        unsigned const sum = cost == 255 ? unsigned{Relaxation::kNoSum}
                                         : std::min<unsigned>(Relaxation::kNoSum, block.sums[first + i] + cost);
        sums[i] = static_cast<std::uint16_t>(sum);
        if (sum < least) {
            least = static_cast<std::uint16_t>(sum);
            best = static_cast<unsigned>(i);
            ties = 0;
        } else if (sum == least) {
            ++ties;
        }
    }
    if (ties == 0 || least == Relaxation::kNoSum) return best;
    return block.ties->breakTie(end, {sums.data(), count}, least);
}

/// A tie between the lanes of one or two vectors.
template <class Eight>
[[gnu::noinline, gnu::cold]] unsigned relaxTie(Relaxation const& block, std::size_t end, std::uint16_t const* sums,
                                               std::uint16_t least) {
    return block.ties->breakTie(end, {sums, block.counts[end]}, least);
}

template <class Eight>
[[gnu::always_inline]] inline void relaxWords(Relaxation const& block, std::size_t begin, std::size_t end) {
    Relaxation const b = block;  // so that no store is taken for a change of it
    for (std::size_t word = end; word-- > begin;) {
        std::size_t const place = b.ends[word];
        std::size_t const first = b.firstSlots[place];
        std::size_t const count = b.counts[place];
        unsigned char const* const row = b.matrix + b.rows[word] * b.stride;
        Eight const low = Eight::after(row, b.columns + first, b.sums + first);
        unsigned least, best;
        if (count <= kLanesOfKernel) [[likely]] {
            least = low.minimum();
            unsigned const equal = low.equal(least);
            best = static_cast<unsigned>(std::countr_zero(equal));
            if ((equal & (equal - 1)) != 0 && least != Relaxation::kNoSum) [[unlikely]] {
                alignas(16) std::array<std::uint16_t, 8> sums;
                low.store(sums.data());
                best = relaxTie<Eight>(block, place, sums.data(), static_cast<std::uint16_t>(least));
            }
        } else if (count <= 2 * kLanesOfKernel) {
            Eight const high = Eight::after(row, b.columns + first + 8, b.sums + first + 8);
            least = Eight::least(low, high).minimum();
            unsigned const equal = low.equal(least) | high.equal(least) << 8;
            best = static_cast<unsigned>(std::countr_zero(equal));
            if ((equal & (equal - 1)) != 0 && least != Relaxation::kNoSum) [[unlikely]] {
                alignas(16) std::array<std::uint16_t, 16> sums;
                low.store(sums.data());
                high.store(sums.data() + 8);
                best = relaxTie<Eight>(block, place, sums.data(), static_cast<std::uint16_t>(least));
            }
        } else {
            std::uint16_t sum;
            best = relaxMany<Eight>(block, place, row, sum);
            least = sum;
        }
        b.sums[b.slots[word]] = static_cast<std::uint16_t>(least);
        b.next[word] = static_cast<std::uint8_t>(best);
    }
}

/// The lesser ones of @p eight and of the candidates of a place behind its first eight.
template <class Eight, class Load>
[[gnu::always_inline]] inline Eight withMore(Eight eight, std::size_t count, Load const& load) {
    for (std::size_t i = kLanesOfKernel; i < count; i += kLanesOfKernel) eight = Eight::least(eight, load(i));
    return eight;
}

template <class Eight>
[[gnu::always_inline]] inline std::size_t passLooks(Relaxation const& block, std::span<Look const> looks,
                                                    std::size_t firstPlace, Look* left) {
    Relaxation const b = block;
    Look* to = left;
    for (Look const look : looks) {
        std::size_t const place = look.place - firstPlace;
        // The sums at a place of the three behind, and what a word before it has at most.
        auto const sums = [&](std::size_t behind) {
            std::uint16_t const* const from = b.sums + b.firstSlots[place + behind];
            return withMore(Eight::of(from), b.counts[place + behind],
                            [&](std::size_t i) { return Eight::of(from + i); });
        };
        auto const bounds = [&](std::size_t behind) {
            std::size_t const slot = b.firstSlots[place + behind];
            auto const load = [&](std::size_t i) {
                return Eight::after(b.columnMosts, b.columns + slot + i, b.sums + slot + i);
            };
            return withMore(load(0), b.counts[place + behind], load);
        };
        unsigned const least = Eight::least(Eight::least(sums(1), sums(2)), sums(3)).minimum();
        unsigned const leaving = Eight::least(bounds(1), bounds(2)).minimum();
        unsigned const most =
            std::min({2 * b.unknownCost + least, b.unknownCost + leaving, unsigned{Relaxation::kNoSum}});
        *to = look;
        to += static_cast<unsigned>(bounds(0).minimum() >= most) | look.isDeep;
    }
    return static_cast<std::size_t>(to - left);
}

}  // namespace TAVO

#endif
