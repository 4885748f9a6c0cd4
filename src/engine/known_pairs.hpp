// What is known of the pairs of characters that a text begins with.
#ifndef TAVO_ENGINE_KNOWN_PAIRS_HPP
#define TAVO_ENGINE_KNOWN_PAIRS_HPP

#include "base/raw_buffer.hpp"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace TAVO {

/// What is known of up to 2^16 pairs of characters. It stands in the order in which the pairs were
/// met, so that frequent ones share the processor's cache lines, and buckets of two
/// tell where. In a full bucket the pair that was asked for longer ago makes place.
class KnownPairs {
public:
    /// A pair is the first four bytes at a place, two when the first one is ASCII,
    /// as a number. Where the text ends NULs stand.
    struct Known {
        std::uint32_t pair;
        std::uint32_t state;    ///< where longer forms go on, as FormFinder tells it
        std::uint32_t bundle;   ///< of the forms inside the pair
        std::uint8_t length;    ///< of the longest of them, in bytes
        std::uint8_t consumed;  ///< bytes on the way to state
    };

    void clear() noexcept {
        buckets_.clear();
        known_.clear();
    }
    /// To be called before a search in a trie of @p cellCount cells. Takes more room when texts have many
    /// pairs and the dictionary enough words to make that worth it.
    void makeRoom(std::size_t cellCount) {
        auto const width = static_cast<unsigned>(std::bit_width(cellCount >> 4));
        unsigned const most = std::clamp(width, kFewBits, kMostBits);
        bool const tooFew = bits_ < most && added_ > 2 * buckets_.size();
        if (!buckets_.empty() && !tooFew) return;
        if (known_.empty()) known_.extend() = {};  // number 0 is nobody's
        bits_ = tooFew ? std::min(bits_ + 2, most) : std::max(bits_, kFewBits);
        buckets_.resetToZeros(std::size_t{1} << bits_);  // without memory there are none until the next call
        added_ = 0;
        // Those of one bucket are in buckets of their own now, or in one as before.
        for (std::uint32_t number = 1; number < known_.size(); ++number) {
            std::uint64_t& bucket = buckets_[bucketOf(known_[number].pair)];
            bucket = bucket << kEntryBits | tagOf(known_[number].pair) << 16 | number;
        }
    }

    void prefetch(std::uint32_t pair) const noexcept { __builtin_prefetch(&buckets_[bucketOf(pair)]); }
    /// Where at() finds what is known of @p pair, if anything is; asks for it.
    std::uint16_t numberOf(std::uint32_t pair) noexcept {
        std::uint64_t& bucket = buckets_[bucketOf(pair)];
        std::uint64_t entries = bucket;
        if (tagIn(entries) != tagOf(pair)) {
            entries = std::rotl(entries, kEntryBits);
            if (tagIn(entries) != tagOf(pair)) return 0;
            bucket = entries;
        }
        auto const number = static_cast<std::uint16_t>(entries);
        __builtin_prefetch(&known_[number]);
        return number;
    }
    /// What is known of @p pair, for which numberOf() told @p number; null when nothing is. Good until add().
    Known const* at(std::uint16_t number, std::uint32_t pair) const noexcept {
        Known const* const known = &known_[number];
        return number != 0 && known->pair == pair ? known : nullptr;
    }

    void add(Known const& known) {
        constexpr std::size_t kMostKnown = 1 << 16;
        std::uint64_t& bucket = buckets_[bucketOf(known.pair)];
        std::uint64_t const entries = tagIn(bucket) == tagOf(known.pair) ? bucket : std::rotl(bucket, kEntryBits);
        std::uint32_t number = entries & 0xFFFF;
        if (number == 0) {
            if (known_.size() == kMostKnown) return;
            number = static_cast<std::uint32_t>(known_.size());
            known_.extend();
        }
        known_[number] = known;
        bucket = entries >> kEntryBits << kEntryBits | tagOf(known.pair) << 16 | number;
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

    RawBuffer<std::uint64_t> buckets_;  // by the upper bits of the hash
    unsigned bits_ = 0;
    std::size_t added_ = 0;  // since there is room for so many
    RawBuffer<Known> known_;
};

}  // namespace TAVO

#endif
