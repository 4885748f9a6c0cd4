// The words that start at one place of a text, ready for the search.
#ifndef TAVO_ENGINE_BUNDLE_CACHE_HPP
#define TAVO_ENGINE_BUNDLE_CACHE_HPP

#include "base/raw_buffer.hpp"
#include "dic/dic_trie.hpp"
#include "engine/cost_lines.hpp"
#include "engine/search_table.hpp"

#include <cstddef>
#include <cstdint>

namespace TAVO {

class DicSet;

/// A bundle is all words that start at one place. What the search reads of it lies in one
/// piece, so that a place takes few of the processor's cache lines: a Head, a Reach, a Variant,
/// its arcs, and behind them the words of all arcs, in the order of making. Each of these is a cell. For a search
/// with wide registers the CostLines of the words stand before the Head.
union BundleCell {
    // Where they are, from the Head on.
    static constexpr std::uint32_t kReach = 1;
    static constexpr std::uint32_t kVariant = 2;
    static constexpr std::uint32_t kHeadCells = 3;
    // CostLines, from the Head back. Their kind tells which there are.
    static constexpr std::uint32_t kLines = 1;         ///< four numbers
    static constexpr std::uint32_t kPlaces = 2;        ///< of words 0 to 7
    static constexpr std::uint32_t kMembers = 3;       ///< all but kNarrow
    static constexpr std::uint32_t kSecondPlaces = 4;  ///< of words from 8 on, all but kNarrow
    static constexpr std::uint32_t kSecondLines = 5;   ///< kScattered

    struct Head {
        static constexpr std::uint16_t kIncomplete = 0xFFFF;

        std::uint32_t source;     ///< number of the bundle
        std::uint16_t arcCount;   ///< or kIncomplete
        std::uint16_t wordCount;  ///< even: a word that stands for none is the last where need be
    } head;
    /// What stands instead of a Reach while a bundle is incomplete: the complete one, if it is known.
    std::uint32_t complete;
    struct Reach {
        static constexpr std::uint8_t kBounded = 1;  ///< some words are
        static constexpr std::uint8_t kTooMany = 2;  ///< not all words are here
        static constexpr unsigned kLinesShift = 2;   ///< above it CostLines::Kind, kMany where there are none

        std::uint32_t longest;   ///< of the arcs, in bytes
        std::uint8_t enters;     ///< classes of all rows
        std::uint8_t enteredBy;  ///< classes that may stand before words of sparse columns, which may be missing
        std::uint8_t marks;
        std::uint8_t leastColumn;  ///< smallest cost of the columns

        bool hasBounded() const noexcept { return (marks & kBounded) != 0; }
        bool tooMany() const noexcept { return (marks & kTooMany) != 0; }
        unsigned lines() const noexcept { return marks >> kLinesShift; }
    } reach;
    /// The variant that was asked for last.
    struct Variant {
        std::uint32_t kind;  ///< 0: none was
        std::uint32_t bundle;
    } variant;
    CostLines::Numbers lines;
    CostLines::Places places;
    CostLines::Members members;
    /// The words of a surface form.
    struct Arc {
        static constexpr std::uint32_t kLengthMask = 0xFFFFFF;
        static constexpr std::uint16_t kAllBounded = 1;  ///< all words are
        static constexpr std::uint16_t kUnknown = 2;     ///< the unknown word
        static constexpr std::uint16_t kFirstBounded = 4;

        std::uint32_t reach;  ///< length and, above it, classes of the rows
        std::uint16_t count;  ///< of the words, at least 1
        std::uint16_t marks;

        /// In bytes; no dictionary has room for a longer form.
        std::uint32_t length() const noexcept { return reach & kLengthMask; }
        bool allBounded() const noexcept { return (marks & kAllBounded) != 0; }
        bool firstBounded() const noexcept { return (marks & kFirstBounded) != 0; }
        bool isUnknown() const noexcept { return (marks & kUnknown) != 0; }
        std::uint8_t enters() const noexcept { return static_cast<std::uint8_t>(reach >> 24); }
    } arc;
    struct Word {
        std::uint32_t rowOffset;  ///< of the row in the matrix, in bytes
        std::uint16_t column;
        std::uint8_t cost;
        std::uint8_t marks;  ///< kBounded and, above it, the length in bytes; 0: it is more than kMostLength

        static constexpr std::uint8_t kBounded = 1;
        static constexpr unsigned kLengthShift = 1;
        static constexpr std::uint32_t kMostLength = 127;
        /// Every word may stand before.
        bool bounded() const noexcept { return (marks & kBounded) != 0; }
        std::uint32_t shortLength() const noexcept { return marks >> kLengthShift; }
    } word;
};
static_assert(sizeof(BundleCell) == 8);

/// The longest form that starts at a place tells all others, so a text has few
/// different bundles, which come again and again; the records of their words lie all
/// over the dictionary and are read once. A bundle is told by the index of its first
/// cell, which is good until trim() or clear().
class BundleCache {
public:
    /// Where a bundle comes from: another one, and the longest form that starts there in a dictionary.
    struct Key {
        std::uint32_t parent;
        std::uint32_t cell;  ///< DicTrie's, where the form ends
        std::uint32_t length;
        std::uint32_t dictionary;

        bool operator==(Key const&) const = default;
    };
    /// The bundle without words.
    static constexpr std::uint32_t kEmpty = 0;
    /// Unknown words of a bundle: those one and two bytes long.
    static constexpr unsigned kOneByte = 1;
    static constexpr unsigned kTwoBytes = 2;

    /// Forgets all when the words fill more memory than is good for the processor's
    /// caches; true then.
    bool trim() noexcept;
    void clear() noexcept;
    /// Makes ready for a search in @p dics with @p table; @p lines tells whether bundles have CostLines, always the
    /// same for one object. To be called before what follows.
    void start(SearchTable const& table, DicSet const& dics, bool lines);

    /// The bundle of @p key.parent and of the forms of dictionary number @p key.dictionary that @p text
    /// begins with, of which the longest has @p key.length bytes.
    std::uint32_t find(Key const& key, unsigned char const* text) {
        std::uint32_t const source = lookUp(key);
        return source != kNone ? sources_[source].bundle : make(key, text);
    }
    /// @p bundle, with which all dictionaries have been asked for @p text, with its words. Bundles of
    /// several dictionaries have none until a place needs them, since with each dictionary there would
    /// be one more, and each would have the words of those before.
    std::uint32_t complete(std::uint32_t bundle, unsigned char const* text) {
        if (cells_[bundle].head.arcCount != BundleCell::Head::kIncomplete) [[likely]]
            return bundle;
        return completeSlowly(bundle, text);
    }
    /// Complete bundle @p bundle with the unknown words @p unknown and the words of sparse columns in
    /// forms that have some of classes @p classes. Not both are 0.
    std::uint32_t variant(std::uint32_t bundle, unsigned unknown, unsigned classes, unsigned char const* text) {
        BundleCell::Variant const last = cells_[bundle + BundleCell::kVariant].variant;
        return last.kind == (unknown << 8 | classes) ? last.bundle : findVariant(bundle, unknown, classes, text);
    }
    /// The bundle that stands where a text ends.
    std::uint32_t textEnd();

    /// Asks for what find() will read soon: first where the bundle is noted, then its key.
    void prefetchSlot(Key const& key) const noexcept { __builtin_prefetch(&slots_[slot(key)]); }
    void prefetchKey(Key const& key) const noexcept {
        if (std::uint32_t const source = slots_[slot(key)]; source != kNone) __builtin_prefetch(&sources_[source]);
    }
    /// Asks for @p bundle.
    void prefetch(std::uint32_t bundle) const noexcept { __builtin_prefetch(&cells_[bundle]); }

    /// Key::cell of @p bundle.
    std::uint32_t cellOf(std::uint32_t bundle) const noexcept { return sources_[cells_[bundle].head.source].key.cell; }
    BundleCell const* cells() const noexcept { return cells_.begin(); }
    void prefetchRecord(std::uint32_t cell) const noexcept { __builtin_prefetch(&records_[cell]); }
    /// The record of the word of a cell.
    unsigned char const* record(std::uint32_t cell) const noexcept { return records_[cell]; }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    // Key::cell of bundles that do not come from a dictionary.
    static constexpr std::uint32_t kVariantCell = 0xFFFFFFFF;
    static constexpr std::uint32_t kTextEndCell = 0xFFFFFFFE;

    /// What the search does not read.
    struct Source {
        Key key;
        std::uint32_t bundle;
    };

    std::size_t slot(Key const& key) const noexcept {
        std::uint64_t const mixed = (std::uint64_t{key.parent} << 32 | key.cell) ^ std::uint64_t{key.dictionary} << 24 ^
                                    std::uint64_t{key.length} << 48;
        return static_cast<std::size_t>(mixed * 0x9E3779B97F4A7C15ULL >> shift_);
    }
    std::uint32_t lookUp(Key const& key) const noexcept {
        std::size_t const mask = slots_.size() - 1;
        for (std::size_t i = slot(key);; i = (i + 1) & mask) {
            std::uint32_t const source = slots_[i];
            if (source == kNone || sources_[source].key == key) return source;
        }
    }
    std::uint32_t make(Key const& key, unsigned char const* text);
    std::uint32_t completeSlowly(std::uint32_t bundle, unsigned char const* text);
    std::uint32_t findVariant(std::uint32_t bundle, unsigned unknown, unsigned classes, unsigned char const* text);
    std::uint32_t makeVariant(Key const& key, unsigned unknown, unsigned classes, unsigned char const* text);
    void startWords() noexcept;
    void addAllForms(std::uint32_t bundle, unsigned char const* text, unsigned classes);
    void addForms(DicTrie const& trie, unsigned char const* text, std::size_t n, unsigned classes);
    void addArc(std::uint32_t length, RecordChain chain, unsigned classes, std::uint8_t marks);
    void addWord(BundleCell::Word word, unsigned char const* record);
    void addLines();
    std::uint32_t addBundle(Key const& key);
    std::uint32_t addCells(std::uint32_t source);
    void note(std::uint32_t source) noexcept;
    void rehash();

    RawBuffer<std::uint32_t> slots_;  // number of a source or kNone; a power of two
    unsigned shift_ = 64;
    RawBuffer<Source> sources_;
    RawBuffer<BundleCell> cells_;
    RawBuffer<unsigned char const*> records_;  // by cell
    SearchTable const* table_ = nullptr;
    DicSet const* dics_ = nullptr;
    bool lines_ = false;
    // Of the bundle at work.
    BundleCell::Reach reach_{};
    RawBuffer<BundleCell> arcs_;
    RawBuffer<BundleCell> words_;
    RawBuffer<unsigned char const*> wordRecords_;
};

}  // namespace TAVO

#endif
