// The longest surface forms of a dictionary that start at positions of a text.
#ifndef TAVO_ENGINE_FORM_FINDER_HPP
#define TAVO_ENGINE_FORM_FINDER_HPP

#include "base/raw_buffer.hpp"
#include "dic/prefix_batch.hpp"
#include "engine/bundle_cache.hpp"

#include <cstddef>
#include <cstdint>
#include <span>

namespace TAVO {

/// Remembers for pairs of characters which forms they begin with and where in the trie a longer one
/// goes on, since a text has few different ones. Longer forms are searched from all
/// starts together. Serves one dictionary and one BundleCache.
class FormFinder {
public:
    /// Forgets what it remembers, as must be done when the BundleCache forgets.
    void clear() noexcept;

    /// Adds the forms of @p trie, dictionary number @p dictionary, to the bundles of places: @p bundles
    /// are those of @p starts in the @p n bytes at @p text.
    void search(DicTrie const& trie, std::uint32_t dictionary, unsigned char const* text, std::size_t n,
                std::span<std::uint32_t const> starts, std::span<std::uint32_t> bundles, BundleCache& cache);

private:
    // Known::state: a node, or kTail and the index of a leaf cell, or kEnd.
    static constexpr std::uint32_t kTail = std::uint32_t{1} << 31;
    static constexpr std::uint32_t kEnd = 0xFFFFFFFF;

    /// What is known of a pair: the first four bytes at a place, two when the first one is ASCII,
    /// as a number. Where the text ends NULs stand.
    struct Known {
        std::uint32_t pair;
        std::uint32_t state;    // where longer forms go on
        std::uint32_t bundle;   // of the forms inside the pair
        std::uint8_t length;    // of the longest of them, in bytes
        std::uint8_t consumed;  // bytes on the way to state
    };
    struct Sought {
        std::uint32_t number;  // of the start
        BundleCache::Key key;
    };

    /// A pair on the way to be known.
    struct Lesson {
        Known known;
        std::uint32_t base;    // of the node that it has come to
        std::uint32_t own;     // the cell where the longest form ends
        std::uint32_t number;  // of the start
        bool goesOn;

        BundleCache::Key key(std::uint32_t dictionary) const noexcept {
            return {BundleCache::kEmpty, own, known.length, dictionary};
        }
    };

    Known& placeOf(std::uint32_t pair) noexcept;
    void makeRoom(DicTrie const& trie);
    void lookUp(unsigned char const* text, std::size_t n, std::span<std::uint32_t const> starts);
    void findBundles(std::uint32_t dictionary, unsigned char const* text, std::span<std::uint32_t const> starts,
                     std::span<std::uint32_t> bundles, BundleCache& cache);
    void learn(DicTrie const& trie, std::uint32_t dictionary, unsigned char const* text,
               std::span<std::uint32_t const> starts, BundleCache& cache);
    static void step(Lesson& lesson, unsigned consumed, DicTrie const& trie);
    static void endTail(Lesson& lesson, DicTrie const& trie);

    RawBuffer<Known> known_;     // by hash of the pair
    unsigned bits_ = 0;          // of the hash
    std::size_t learnt_ = 0;     // pairs, since there is room for so many
    RawBuffer<Known> atStarts_;  // by number of the start
    RawBuffer<Lesson> lessons_;
    RawBuffer<Sought> sought_;
    PrefixBatch batch_;
};

}  // namespace TAVO

#endif
