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
/// In a run of plain characters, every one but the first stands behind one row, so the word
/// that a path takes for it is known: the one with the least connection cost, of those the one with the
/// least word cost, of those the first.
///
/// No path takes an unknown word inside a run when none is taken for its last character. With c(i) the least sum of
/// the words at place i, which have it in common, u(i) that of an unknown word there, U what stands before
/// and behind an unknown word, C(i) the connection cost from i to the character behind it, M(i) the largest cost of a
/// column of i that every row may stand before: no unknown word is taken at place i when
/// c(i) + M(i) < 2 U + min(c(i + 1), u(i + 1)) = U + u(i). Unknown words stand before others, too, so M(i) >= U, and
/// then c(i) < u(i). When that is so at i + 1, it is so at i where C(i) + M(i) < 2 U, since c(i) = C(i) + c(i + 1).
/// Where C(i) + M(i) is not less, a run ends.
class PlainRuns {
public:
    /// What a path takes behind a plain character.
    struct Inner {
        std::uint32_t cell;     ///< of the word
        std::uint8_t cost;      ///< of its connection: C
        std::uint8_t wordCost;  ///< its own
        bool follows = false;   ///< it is of the same run
    };
    /// What plain characters have in common.
    struct Kind {
        std::uint32_t rowOffset;  ///< of the words' row in the matrix, in bytes
        std::uint8_t enters;      ///< the row's classes
        std::uint8_t largest;     ///< every word may stand before one of the words, at this most: M

        bool operator==(Kind const&) const = default;
    };
    /// The longest run, in characters.
    static constexpr std::size_t kLongest = 255;
    /// Of the connections inside a run.
    static constexpr std::uint32_t kMostCost = 0xC00;

    PlainRuns() { clear(); }
    /// Forgets all, as must be done when the BundleCache forgets.
    void clear() noexcept;

    /// Number of the kind of @p byte, kNotPlain or kUntold.
    std::uint8_t numberOf(unsigned char byte) const noexcept { return numbers_[byte]; }
    static constexpr std::uint8_t kUntold = 0;
    static constexpr std::uint8_t kNotPlain = 1;
    static bool isPlain(std::uint8_t number) noexcept { return number > kNotPlain; }

    // Of plain characters.
    Kind const& kindOf(unsigned char byte) const noexcept { return kinds_[numbers_[byte] - kFirstKind]; }
    std::uint32_t bundleOf(unsigned char byte) const noexcept { return plain_[byte].bundle; }
    Inner const& innerOf(unsigned char before, unsigned char byte) const noexcept {
        return inners_[std::size_t{numbers_[before]} * kBytes + byte];
    }

    /// Tells whether @p byte, whose words are @p bundle where nothing longer begins, is plain.
    void learn(unsigned char byte, std::uint32_t bundle, BundleCache& cache, SearchTable& table, DicSet const& dics);

private:
    static constexpr std::uint8_t kFirstKind = 2;
    static constexpr std::size_t kBytes = 128;
    struct Plain {
        std::uint32_t bundle;
        std::uint32_t firstWord;  // cell of the first of all words
        std::uint32_t wordCount;
    };

    std::uint8_t numberOf(Kind const& kind);
    Inner innerOf(Kind const& before, unsigned char byte, BundleCache const& cache, SearchTable const& table) const;
    void learnInners(unsigned char byte, BundleCache const& cache, SearchTable const& table);

    std::array<std::uint8_t, 256> numbers_{};
    std::array<Plain, kBytes> plain_{};
    std::vector<Kind> kinds_;
    std::vector<Inner> inners_;  // by number of the kind before, and by byte
};

}  // namespace TAVO

#endif
