// Places the nodes of a trie over character numbers in one array.
#ifndef TAVO_DIC_INDEX_CHARACTER_TRIE_MAKER_HPP
#define TAVO_DIC_INDEX_CHARACTER_TRIE_MAKER_HPP

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace TAVO {

/// A double array: a node's children stand at base + number, and no two nodes have one base, so that the number that a
/// unit is labelled with proves whose child it is.
class CharacterTrieMaker {
public:
    /// Numbers run from 1 to @p characterCount + 1, the last one being nobody's child.
    void start(std::uint32_t characterCount);
    /// A base for a node with children of @p numbers (ascending, at least one), whose units are taken.
    std::uint32_t place(std::vector<std::uint32_t> const& numbers);
    /// Fills a child's unit in.
    void set(std::uint32_t unit, std::uint64_t node, std::uint32_t chain);
    /// Cuts to what is used, with room for any number behind any base.
    void finish();

    std::vector<std::uint64_t> const& units() const noexcept { return units_; }
    std::vector<std::uint32_t> const& chains() const noexcept { return chains_; }

private:
    bool fits(std::uint32_t base, std::vector<std::uint32_t> const& numbers) const noexcept;
    void grow(std::size_t size);

    std::uint32_t numbers_ = 0;  // that a child may have, 0 included
    std::vector<std::uint64_t> units_;
    std::vector<std::uint32_t> chains_;
    std::vector<std::uint8_t> taken_, baseTaken_;
    std::uint32_t firstFree_ = 0;
    std::uint32_t last_ = 0;
    std::array<std::uint32_t, 4> hints_{};  // by number of children: where a search had to go on to
};

}  // namespace TAVO

#endif
