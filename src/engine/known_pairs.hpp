// What is known of the pairs of characters that a text begins with.
#ifndef TAVO_ENGINE_KNOWN_PAIRS_HPP
#define TAVO_ENGINE_KNOWN_PAIRS_HPP

#include "base/raw_buffer.hpp"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace TAVO {

/// What is known of up to 2^16 pairs of characters. Buckets of two tell where it stands; in
/// a full one the pair that was asked for longer ago makes place. Of most first characters no longer form
/// begins with most second ones: such pairs share what is known of them, which leaves so little that it
/// stays in the processor's caches.
class KnownPairs {
public:
    struct Known {
        std::uint32_t state;    ///< where longer forms go on, as FormFinder tells it
        std::uint32_t bundle;   ///< of the forms inside the pair
        std::uint16_t first;    ///< the lower half of the pair
        std::uint8_t length;    ///< of the longest of the forms, in bytes
        std::uint8_t consumed;  ///< bytes on the way to state
    };
    // A pair is the first four bytes at a place, two when the first one is ASCII,
    // as a number. Where the text ends NULs stand.

    void clear() noexcept { buckets_.clear(); }
    /// To be called before a search in a trie of @p cellCount cells. Takes more room when a text has many
    /// pairs and the dictionary enough words to make that worth it; what was known is forgotten then.
    void makeRoom(std::size_t cellCount) {
        auto const width = static_cast<unsigned>(std::bit_width(cellCount >> 4));
        unsigned const most = std::clamp(width, kFewBits, kMostBits);
        bool const tooFew = bits_ < most && added_ > 2 * buckets_.size();
        if (!buckets_.empty() && !tooFew) return;
        buckets_.clear();  // there are none until all of the memory is there
        bits_ = tooFew ? most : std::max(bits_, kFewBits);
        known_.resetToZeros(std::size_t{2} << bits_);
        if (bits_ > kFewBits) shared_.resetToZeros(std::size_t{1} << 16);
        buckets_.resetToZeros(std::size_t{1} << bits_);
        free_.clear();
        owned_ = 1;  // number 0 is nobody's
        firstShared_ = static_cast<std::uint32_t>(known_.size());
        added_ = 0;
    }

    void prefetch(std::uint32_t pair) const noexcept { __builtin_prefetch(&buckets_[bucketOf(pair)]); }
    /// Where at() finds what is known of @p pair, if anything is; asks for it.
    std::uint16_t numberOf(std::uint32_t pair) noexcept {
        std::uint64_t& bucket = buckets_[bucketOf(pair)];
        // Which of the two it is a branch would often foretell wrong.
        std::uint32_t const tag = tagOf(pair);
        auto const isSecond = static_cast<unsigned>(tagIn(bucket) != tag) & (tagIn(bucket >> kEntryBits) == tag);
        bucket = std::rotl(bucket, static_cast<int>(kEntryBits * isSecond));
        auto const isThere = static_cast<std::uint16_t>(tagIn(bucket) == tag);
        auto const number = static_cast<std::uint16_t>(bucket & (0U - isThere));
        __builtin_prefetch(&known_[number]);
        return number;
    }
    /// What is known of @p pair, for which numberOf() told @p number; null when nothing is. Good until add().
    Known const* at(std::uint16_t number, std::uint32_t pair) const noexcept {
        // Pairs with one bucket and one tag differ in a part of the hash that is so low that they differ in their lower
        // half, too, since the hash's factor is odd.
        Known const* const known = &known_[number];
        return number != 0 && known->first == (pair & 0xFFFF) ? known : nullptr;
    }

    /// Notes what is known of @p pair. @p ofFirst: it is so for all pairs with that lower half that are told so.
    void add(std::uint32_t pair, Known const& known, bool ofFirst) {
        std::uint64_t& bucket = buckets_[bucketOf(pair)];
        std::uint64_t const entries = tagIn(bucket) == tagOf(pair) ? bucket : std::rotl(bucket, kEntryBits);
        auto const before = static_cast<std::uint16_t>(entries);
        if (before != 0 && before < firstShared_) free_.push(before);
        std::uint32_t const number = ofFirst && !shared_.empty() ? sharedNumber(known.first) : ownNumber();
        known_[number] = known;
        bucket = entries >> kEntryBits << kEntryBits | (number != 0 ? tagOf(pair) << 16 | number : 0);
        ++added_;
    }

private:
    // Room, in bits: a little for short texts and small dictionaries.
    static constexpr unsigned kFewBits = 6;
    static constexpr unsigned kMostBits = 15;
    // An entry of a bucket: a tag and, below it, a number; 0 when there is none. The one that was
    // asked for last is the lower one.
    static constexpr int kEntryBits = 32;

    static std::uint32_t hash(std::uint32_t pair) noexcept { return pair * 0x9E3779B1U; }
    std::size_t bucketOf(std::uint32_t pair) const noexcept { return hash(pair) >> (32 - bits_); }
    /// The bits behind those of bucketOf(), but not 0.
    std::uint32_t tagOf(std::uint32_t pair) const noexcept { return (hash(pair) >> (16 - bits_) & 0xFFFF) | 1; }
    static std::uint32_t tagIn(std::uint64_t entries) noexcept { return static_cast<std::uint32_t>(entries) >> 16; }

    /// A number for one pair; 0 when there is none left.
    std::uint32_t ownNumber() noexcept {
        if (!free_.empty()) {
            std::uint32_t const number = free_.end()[-1];
            free_.truncate(free_.size() - 1);
            return number;
        }
        return owned_ < firstShared_ ? owned_++ : 0;
    }
    /// The number for pairs with the lower half @p first.
    std::uint32_t sharedNumber(std::uint16_t first) noexcept {
        std::uint16_t& number = shared_[first];
        if (number == 0 && owned_ < firstShared_) number = static_cast<std::uint16_t>(--firstShared_);
        return number;
    }

    RawBuffer<std::uint64_t> buckets_;  // by the upper bits of the hash
    unsigned bits_ = 0;
    std::size_t added_ = 0;  // since there is room for so many
    // By number: those of single pairs [1, owned_), in the order in which they were met, so that frequent ones share
    // cache lines, and behind a gap the shared ones [firstShared_, end).
    RawBuffer<Known> known_;
    std::uint32_t owned_ = 0;
    std::uint32_t firstShared_ = 0;
    RawBuffer<std::uint16_t> free_;    // below owned_, no pair's any more
    RawBuffer<std::uint16_t> shared_;  // by the lower half; 0: no number yet
};

}  // namespace TAVO

#endif
