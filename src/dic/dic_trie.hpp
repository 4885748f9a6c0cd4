// The byte-wise double-array trie of a compiled dictionary: exact match and
// common-prefix search, in place.
#ifndef TAVO_DIC_DIC_TRIE_HPP
#define TAVO_DIC_DIC_TRIE_HPP

#include "base/bytes.hpp"
#include "dic/mrph_dic.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace TAVO {

/// A record chain found by a search: the records of one surface form, and where
/// the leaf area ends. Always safe to walk: a record whose head or length does
/// not lie inside the leaf area ends the walk.
class RecordChain {
public:
    RecordChain() = default;
    RecordChain(unsigned char const* head, unsigned char const* end) noexcept
        : head_(isWhole(head, end) ? head : nullptr), end_(end) {}

    explicit operator bool() const noexcept { return head_ != nullptr; }
    MrphDic record() const noexcept { return MrphDic(head_); }
    unsigned char const* head() const noexcept { return head_; }
    /// The rest of the chain behind the first record; empty at its end.
    RecordChain next() const noexcept {
        if (!record().anotherFollows()) return {};
        return {head_ + record().sizeBytes(), end_};
    }

private:
    static bool isWhole(unsigned char const* head, unsigned char const* end) noexcept {
        if (end - head < static_cast<std::ptrdiff_t>(MrphDic::kHeadBytes)) return false;
        std::uint32_t const size = loadU16(head);
        return size >= MrphDic::kHeadBytes && static_cast<std::ptrdiff_t>(size) <= end - head;
    }

    unsigned char const* head_ = nullptr;
    unsigned char const* end_ = nullptr;
};

/// Refers to the section's bytes, which must outlive it; copies the root table.
class DicTrie {
public:
    static constexpr std::uint32_t kHeaderBytes = 1032;  // two offsets and the root table
    static constexpr std::uint32_t kLeafFlag = 1U << 23;
    static constexpr std::uint32_t kValueMask = kLeafFlag - 1;

    /// A section whose offsets do not fit gives a trie that finds nothing.
    DicTrie(unsigned char const* section, std::size_t sizeBytes);

    bool empty() const noexcept { return cellCount_ == 0; }
    std::uint32_t cellCount() const noexcept { return cellCount_; }
    std::size_t leafBytes() const noexcept { return leafBytes_; }

    /// The chain of exactly this key; empty when there is none.
    RecordChain exactMatch(unsigned char const* key, std::size_t n) const;

    /// Calls visit(std::size_t length, RecordChain) for every key that is a
    /// prefix of the n bytes, shortest first; visit returns true to go on.
    /// Returns false when a visit stopped the search. A NUL byte in the text
    /// ends it. Never reads at or behind text + n.
    template <class Visit>
    bool prefixSearch(unsigned char const* text, std::size_t n, Visit&& visit) const;

    /// Calls visit(std::string const& key, RecordChain) for every key, in byte
    /// order. Safe on a corrupt trie: depth and cells are bounded.
    template <class Visit>
    void visitAll(Visit&& visit) const;

private:
    std::uint32_t cell(std::uint32_t index) const noexcept {
        return index < cellCount_ ? loadU32(cells_ + std::size_t{index} * 4) : 0;
    }
    RecordChain chainAt(std::uint32_t value, std::size_t skip = 0) const noexcept {
        std::size_t const position = std::size_t{value} * 4 + skip;
        return position <= leafBytes_ ? RecordChain(leaf_ + position, leaf_ + leafBytes_) : RecordChain();
    }

    std::array<std::uint32_t, 256> root_{};
    unsigned char const* cells_ = nullptr;
    std::uint32_t cellCount_ = 0;
    unsigned char const* leaf_ = nullptr;
    std::size_t leafBytes_ = 0;
};

}  // namespace TAVO

#endif
