// Builds and writes the trie section of a compiled dictionary.
#ifndef TAVO_DIC_TRIE_BUILDER_HPP
#define TAVO_DIC_TRIE_BUILDER_HPP

#include "dic/cell_map.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// Takes bytes; false when they could not be written.
using ByteSink = std::function<bool(std::string_view)>;

struct TrieKey {
    std::string_view form;   ///< not empty, no NUL
    std::string_view chain;  ///< its serialized records
};

/// A builder builds once. Invariants:
/// 1. No two nodes have one base: a transition is proved by its label alone, so
///    they would see each other's transitions.
/// 2. Leaf entries start at multiples of 4 bytes.
class TrieBuilder {
public:
    static constexpr std::uint32_t kDefaultCells = 0x80000;
    static constexpr std::uint32_t kDefaultLeafBytes = 0x100000;

    /// Allocates; false when there is no memory. 0 stands for a default; kept as
    /// is: a leaf capacity of 0 sets the cell capacity to the leaf default.
    bool init(std::uint32_t cellCapacity, std::uint32_t leafCapacity);

    /// Builds from keys in ascending byte order, each once. @p verbose: progress
    /// and errors go to the standard error stream. False when the builder was
    /// used before or the trie outgrows the format; error() then tells why.
    bool build(std::span<TrieKey const> keys, bool verbose);
    bool write(ByteSink const& sink) const;

    std::string const& error() const noexcept { return error_; }
    std::uint32_t usedCells() const noexcept { return usedCells_; }
    std::size_t leafBytes() const noexcept { return leaf_.size(); }

private:
    struct ListedCell {
        std::uint8_t label;
        std::uint32_t value;  ///< leaf flag and value bits
    };
    /// A node whose children are being built.
    struct Frame {
        std::size_t key;  ///< first key not yet dealt with
        std::size_t end;
        std::size_t depth;  ///< bytes that the keys of the run share
        std::size_t firstListed;
        std::uint8_t label = 0;  ///< of the child being built
    };
    static constexpr std::int32_t kTooManyCells = -1, kTooManyLeafBytes = -2;

    std::int32_t makeIndex(std::span<TrieKey const> keys, std::size_t begin, std::size_t end);
    std::int32_t stepChild(std::span<TrieKey const> keys);
    std::int32_t placeNode();
    std::int32_t storeLeaf(std::string_view head, std::string_view chain);
    bool fail(bool verbose, std::string text);

    std::array<std::uint32_t, 256> root_{};
    std::vector<std::uint32_t> cells_;
    CellMap map_;
    std::uint32_t usedCells_ = 1;  ///< next cell behind the last used one
    std::string leaf_;
    std::vector<Frame> frames_;
    std::vector<ListedCell> listed_;
    std::string error_;
};

}  // namespace TAVO

#endif
