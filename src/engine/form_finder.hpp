// The longest surface forms of a dictionary that start at positions of a text.
#ifndef TAVO_ENGINE_FORM_FINDER_HPP
#define TAVO_ENGINE_FORM_FINDER_HPP

#include "base/raw_buffer.hpp"
#include "dic/prefix_batch.hpp"
#include "engine/bundle_cache.hpp"
#include "engine/known_pairs.hpp"

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
    void clear() noexcept { pairs_.clear(); }

    /// Where forms are looked for: places of texts that stand in one piece of memory.
    struct Starts {
        unsigned char const* memory;
        std::span<std::uint32_t const> places;  ///< counted from @p memory
        std::span<std::uint32_t const> ends;    ///< where the text of each place ends
    };
    /// Adds the forms of @p trie, dictionary number @p dictionary, to the @p bundles of @p starts.
    void search(DicTrie const& trie, std::uint32_t dictionary, Starts const& starts, std::span<std::uint32_t> bundles,
                BundleCache& cache);

private:
    // Known::state: a node, or kTail and the index of a leaf cell, or kEnd.
    static constexpr std::uint32_t kTail = std::uint32_t{1} << 31;
    static constexpr std::uint32_t kEnd = 0xFFFFFFFF;

    using Known = KnownPairs::Known;
    /// What search() was asked for.
    struct Search {
        DicTrie const& trie;
        std::uint32_t dictionary;
        Starts const& starts;
        std::span<std::uint32_t> bundles;

        unsigned char const* textAt(std::uint32_t number) const noexcept {
            return starts.memory + starts.places[number];
        }
    };
    struct Sought {
        std::uint32_t number;  // of the start
        std::uint32_t bundle;  // of its pair
        BundleCache::Key key;
    };

    /// A pair on the way to be known.
    struct Lesson {
        Known known;
        std::uint32_t pair;
        std::uint32_t base;    // of the node that it has come to
        std::uint32_t own;     // the cell where the longest form ends
        std::uint32_t number;  // of the start
        bool goesOn;

        BundleCache::Key key(std::uint32_t dictionary) const noexcept {
            return {BundleCache::kEmpty, own, known.length, dictionary};
        }
    };

    void lookUp(Starts const& starts);
    void startWalk(Search const& search, std::uint32_t number, Known const& known);
    void startLesson(Search const& search, std::uint32_t number, std::uint32_t pair);
    void learn(Search const& search, BundleCache& cache);
    void findBundles(Search const& search, BundleCache& cache);
    static void step(Lesson& lesson, unsigned consumed, DicTrie const& trie);
    static void endTail(Lesson& lesson, DicTrie const& trie);

    KnownPairs pairs_;
    // By number of the start.
    RawBuffer<std::uint32_t> pairsAtStarts_;
    RawBuffer<std::uint16_t> numbers_;  // of its pair
    RawBuffer<Lesson> lessons_;
    RawBuffer<Sought> sought_;
    PrefixBatch batch_;
};

}  // namespace TAVO

#endif
