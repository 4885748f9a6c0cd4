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
#include <string>
#include <utility>
#include <vector>

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
    /// ends it. Never reads at or behind text + n. A chain that does not lie
    /// inside the leaf area is passed over, so visits see whole records only.
    template <class Visit>
    bool prefixSearch(unsigned char const* text, std::size_t n, Visit&& visit) const;

    /// False when no key that is longer than these @p n bytes begins with them;
    /// may be true without one.
    bool mayContinue(unsigned char const* key, std::size_t n) const;

    /// Calls visit(std::size_t length) for the length of every key that is a
    /// prefix of the n bytes, and for some other lengths, in increasing order and
    /// once each; reads no more than it must to tell.
    template <class Visit>
    void possibleLengths(unsigned char const* text, std::size_t n, Visit&& visit) const;

    /// Calls visit(std::string const& key, RecordChain) for every key, in byte
    /// order. Safe on a corrupt trie: each node is entered once at most.
    template <class Visit>
    void visitAll(Visit&& visit) const;

    /// The same for the keys that begin with the n bytes of @p prefix, as long as visit returns true.
    template <class Visit>
    void visitFrom(unsigned char const* prefix, std::size_t n, Visit&& visit) const;

    // The steps of a search, for searches of another shape.

    /// Base of the node behind the key's first byte; 0 when no key begins so.
    std::uint32_t rootBase(unsigned char byte) const noexcept { return root_[byte]; }
    /// Cell @p index; one that does not exist is free.
    std::uint32_t cell(std::uint32_t index) const noexcept {
        return index < cellCount_ ? loadU32(cells_ + std::size_t{index} * 4) : 0;
    }
    /// Label 0 and leaf flag set: a key ends at the node whose base is the
    /// cell's index.
    static bool isKeyEnd(std::uint32_t cell) noexcept { return (cell & ~kValueMask) == kLeafFlag; }
    static std::uint32_t label(std::uint32_t cell) noexcept { return cell >> 24; }
    static bool isLeaf(std::uint32_t cell) noexcept { return (cell & kLeafFlag) != 0; }

    /// Asks for the cells of a node and of its child, which will be read soon.
    void prefetch(std::uint32_t base, std::uint32_t byte) const noexcept {
        __builtin_prefetch(cells_ + std::size_t{base} * 4);
        prefetchChild(base, byte);
    }
    void prefetchChild(std::uint32_t base, std::uint32_t byte) const noexcept {
        __builtin_prefetch(cells_ + std::size_t{base + byte} * 4);
    }
    /// Where @p cell leads to: a node, whose child for @p byte is the next one, or a tail.
    void prefetchNext(std::uint32_t cell, std::uint32_t byte) const noexcept {
        unsigned const leaf = isLeaf(cell) ? 1 : 0;
        std::array<unsigned char const*, 2> const areas{cells_, leaf_};
        unsigned char const* const target = areas[leaf] + std::size_t{cell & kValueMask} * 4;
        __builtin_prefetch(target);
        __builtin_prefetch(target + std::size_t{byte & (leaf - 1)} * 4);
    }
    void prefetchTail(std::uint32_t cell) const noexcept {
        __builtin_prefetch(leaf_ + std::size_t{cell & kValueMask} * 4);
    }

    /// The chain at @p position (in bytes) of the leaf area.
    RecordChain chainAt(std::size_t position) const noexcept {
        return position <= leafBytes_ ? RecordChain(leaf_ + position, leaf_ + leafBytes_) : RecordChain();
    }
    /// Where @p chain, which was found here, stands in the leaf area, in bytes.
    std::uint32_t positionOf(RecordChain const& chain) const noexcept {
        return static_cast<std::uint32_t>(chain.head() - leaf_);
    }
    RecordChain chainOf(std::uint32_t endCell) const noexcept { return chainAt(std::size_t{endCell & kValueMask} * 4); }

    /// The rest of a key that is alone in its branch. Its bytes lie inside the
    /// leaf area; a tail that does not is empty and has no chain.
    struct Tail {
        unsigned char const* bytes = nullptr;
        std::size_t length = 0;
        RecordChain chain;
    };
    Tail tailOf(std::uint32_t cell) const noexcept {
        std::size_t const position = std::size_t{cell & kValueMask} * 4;
        if (position >= leafBytes_) return {};
        std::size_t const length = leaf_[position];
        return {leaf_ + position + 1, length, chainAt(position + 1 + length)};
    }

private:
    /// Visits the keys at and below a node, which begin with @p key; false when a visit stopped it.
    template <class Visit>
    bool visitBelow(std::uint32_t base, std::string key, std::vector<bool>& entered, Visit& visit) const;

    std::array<std::uint32_t, 256> root_{};
    unsigned char const* cells_ = nullptr;
    std::uint32_t cellCount_ = 0;
    unsigned char const* leaf_ = nullptr;
    std::size_t leafBytes_ = 0;
};

template <class Visit>
bool DicTrie::prefixSearch(unsigned char const* text, std::size_t n, Visit&& visit) const {
    if (n == 0) return true;
    std::uint32_t base = root_[text[0]];
    if (base == 0) return true;
    for (std::size_t consumed = 1;;) {
        if (std::uint32_t const end = cell(base); isKeyEnd(end)) {
            RecordChain const chain = chainOf(end);
            if (chain && !visit(consumed, chain)) return false;
        }
        if (consumed >= n) return true;
        std::uint32_t const byte = text[consumed];
        // A free cell and a key's end carry label 0, which a NUL would match.
        if (byte == 0) return true;
        std::uint32_t const next = cell(base + byte);
        if (label(next) != byte) return true;
        ++consumed;
        if (isLeaf(next)) {
            Tail const tail = tailOf(next);
            // The chain comes first: with it, the tail's bytes are readable.
            if (!tail.chain || tail.length > n - consumed) return true;
            if (std::memcmp(tail.bytes, text + consumed, tail.length) != 0) return true;
            return visit(consumed + tail.length, tail.chain);
        }
        base = next & kValueMask;
    }
}

template <class Visit>
void DicTrie::possibleLengths(unsigned char const* text, std::size_t n, Visit&& visit) const {
    std::uint32_t base = n == 0 ? 0 : root_[text[0]];
    if (base == 0) return;
    for (std::size_t length = 1;;) {
        visit(length);
        if (length >= n) return;
        std::uint32_t const byte = text[length];
        if (byte == 0) return;
        std::uint32_t const next = cell(base + byte);
        if (label(next) != byte) return;
        ++length;
        if (isLeaf(next)) {
            Tail const tail = tailOf(next);
            if (tail.length <= n - length) visit(length + tail.length);
            return;
        }
        base = next & kValueMask;
    }
}

template <class Visit>
void DicTrie::visitAll(Visit&& visit) const {
    visitFrom(nullptr, 0, [&visit](std::string const& key, RecordChain chain) {
        visit(key, chain);
        return true;
    });
}

template <class Visit>
void DicTrie::visitFrom(unsigned char const* prefix, std::size_t n, Visit&& visit) const {
    std::vector<bool> entered(cellCount_, false);
    if (n == 0) {
        for (std::size_t first = 1; first != root_.size(); ++first)
            if (root_[first] != 0 && !visitBelow(root_[first], {static_cast<char>(first)}, entered, visit)) return;
        return;
    }
    std::uint32_t base = root_[prefix[0]];
    if (base == 0) return;
    for (std::size_t consumed = 1; consumed != n;) {
        std::uint32_t const byte = prefix[consumed];
        std::uint32_t const next = cell(base + byte);
        if (byte == 0 || label(next) != byte) return;
        ++consumed;
        if (isLeaf(next)) {
            Tail const tail = tailOf(next);
            std::size_t const rest = n - consumed;
            if (!tail.chain || tail.length < rest || std::memcmp(tail.bytes, prefix + consumed, rest) != 0) return;
            visit(std::string(asChars(prefix), consumed).append(asChars(tail.bytes), tail.length), tail.chain);
            return;
        }
        base = next & kValueMask;
    }
    visitBelow(base, std::string(asChars(prefix), n), entered, visit);
}

template <class Visit>
bool DicTrie::visitBelow(std::uint32_t base, std::string key, std::vector<bool>& entered, Visit& visit) const {
    struct Step {
        std::uint32_t base;
        std::uint32_t nextLabel;
    };
    std::vector<Step> path;
    bool goesOn = true;
    auto const enter = [&](std::uint32_t node) {
        if (node >= cellCount_ || entered[node]) return false;
        entered[node] = true;
        if (std::uint32_t const end = cell(node); isKeyEnd(end)) {
            if (RecordChain const chain = chainOf(end)) goesOn = visit(std::as_const(key), chain);
        }
        path.push_back({node, 1});
        return true;
    };
    enter(base);
    while (goesOn && !path.empty()) {
        Step& step = path.back();
        if (step.nextLabel > 255) {
            path.pop_back();
            key.pop_back();
            continue;
        }
        std::uint32_t const byte = step.nextLabel++;
        std::uint32_t const next = cell(step.base + byte);
        if (label(next) != byte) continue;
        key.push_back(static_cast<char>(byte));
        if (!isLeaf(next)) {
            if (!enter(next & kValueMask)) key.pop_back();
            continue;
        }
        std::size_t const length = key.size();
        if (Tail const tail = tailOf(next); tail.chain) {
            key.append(asChars(tail.bytes), tail.length);
            goesOn = visit(std::as_const(key), tail.chain);
        }
        key.resize(length - 1);
    }
    return goesOn;
}

}  // namespace TAVO

#endif
