// Stretches of ASCII that the search for a best path takes as one.
#ifndef TAVO_ENGINE_PLAIN_RUNS_HPP
#define TAVO_ENGINE_PLAIN_RUNS_HPP

#include "engine/bundle_cache.hpp"
#include "engine/search_table.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace TAVO {

class DicSet;

/// Of most ASCII characters a dictionary has words for each by itself and no longer ones. Such a character is plain
/// when its words have one row and every word may stand before one of them.
///
/// In a run of plain characters of one row, every character but the first stands behind that row, so the word
/// that a path takes for it is known: the one with the least connection cost, of those the one with the
/// least word cost, of those the first.
///
/// No path takes an unknown word inside a run when none is taken for its last character. With c(i) the least sum of
/// the words at place i, which have it in common, u(i) that of an unknown word there, U what stands before
/// and behind an unknown word, C the connection cost inside the run, M the largest cost of a column that every row may
/// stand before: no unknown word is taken at place i when c(i) + M < 2 U + min(c(i + 1), u(i + 1)). When that is so
/// at i + 1, it is so at i, since c(i) = C + c(i + 1): if c(i + 1) is the smaller one, by C + M < 2 U,
/// else by C <= U, since u(i + 1) = U + min(c(i + 2), u(i + 2)).
class PlainRuns {
public:
    /// What the characters of a run have in common.
    struct Kind {
        std::uint32_t rowOffset;      ///< of the words' row in the matrix, in bytes
        std::uint8_t cost;            ///< connection cost of a word that is not the first of a run: C
        std::uint8_t wordCost;        ///< its word cost
        std::uint8_t largestBounded;  ///< every word may stand before one of the words, at this most: M

        bool operator==(Kind const&) const = default;
        /// The longest run, in characters.
        std::size_t longest() const noexcept { return cost == 0 ? kLongest : std::min(kLongest, 1 + kMostCost / cost); }
    };
    static constexpr std::size_t kLongest = 255;
    /// Of the connections inside a run.
    static constexpr std::size_t kMostCost = 0xC00;

    PlainRuns() { clear(); }
    /// Forgets all, as must be done when the BundleCache forgets.
    void clear() noexcept;

    /// Number of the kind of @p byte, kNotPlain or kUntold.
    std::uint8_t numberOf(unsigned char byte) const noexcept { return numbers_[byte]; }
    static constexpr std::uint8_t kUntold = 0;
    static constexpr std::uint8_t kNotPlain = 1;
    static bool isPlain(std::uint8_t number) noexcept { return number > kNotPlain; }

    // Of a plain character.
    Kind const& kindOf(unsigned char byte) const noexcept { return kinds_[numbers_[byte] - kFirstKind]; }
    std::uint32_t bundleOf(unsigned char byte) const noexcept { return bundles_[byte]; }
    /// The cell of its word when it is not the first of a run.
    std::uint32_t innerWordOf(unsigned char byte) const noexcept { return innerWords_[byte]; }

    /// Tells whether @p byte, whose words are @p bundle where nothing longer begins, is plain.
    void learn(unsigned char byte, std::uint32_t bundle, BundleCache& cache, SearchTable& table, DicSet const& dics);

private:
    static constexpr std::uint8_t kFirstKind = 2;
    static constexpr std::size_t kBytes = 128;

    std::uint8_t numberOf(Kind const& kind);

    std::array<std::uint8_t, 256> numbers_{};
    std::array<std::uint32_t, kBytes> bundles_{};
    std::array<std::uint32_t, kBytes> innerWords_{};
    std::vector<Kind> kinds_;
};

}  // namespace TAVO

#endif
