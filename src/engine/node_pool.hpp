// Memory for lattice nodes.
#ifndef TAVO_ENGINE_NODE_POOL_HPP
#define TAVO_ENGINE_NODE_POOL_HPP

#include "engine/lattice_node.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace TAVO {

/// Blocks of node slots that never move. Nodes are freed all at once.
///
/// Invariants:
/// 1. The nodes made between two calls of beginPosition() stand next to each
///    other: when a block is full, those made so far for the current position
///    move to the new block with it (nothing points at them yet).
/// 2. Slots of a block are used from its start without gaps.
class NodePool {
public:
    static constexpr std::uint32_t kDefaultCapacity = 4096;
    static constexpr std::size_t kMaxBlocks = 256;

    /// Allocates @p capacity slots (0: kDefaultCapacity); bad_alloc on failure.
    explicit NodePool(std::uint32_t capacity);

    void clear() noexcept;
    bool ready() const noexcept { return blocks_[0].slots != nullptr; }

    /// Starts the list of a new position.
    void beginPosition() noexcept { positionBegin_ = next_; }
    LatticeNode& make() {
        if (next_ == end_) grow();
        return *next_++;
    }
    /// The nodes made since beginPosition().
    std::span<LatticeNode> position() noexcept { return {positionBegin_, next_}; }

    /// Index of a node in the order of making, and back.
    std::uint32_t indexOf(LatticeNode const* node) const noexcept;
    LatticeNode const& at(std::uint32_t index) const noexcept {
        std::size_t block = current_;
        while (index < blocks_[block].firstIndex) --block;
        return blocks_[block].slots[index - blocks_[block].firstIndex];
    }
    bool holds(LatticeNode const* node) const noexcept;
    /// All nodes of @p node's position.
    std::span<LatticeNode const> candidates(LatticeNode const* node) const noexcept;

private:
    struct Block {
        std::unique_ptr<LatticeNode[]> slots;
        std::size_t capacity = 0;
        LatticeNode* used = nullptr;   // end of the used slots, for blocks behind which others follow
        std::uint32_t firstIndex = 0;  // index of the block's first node
    };

    void grow();
    void open(std::size_t block);
    LatticeNode const* usedEnd(std::size_t block) const noexcept {
        return block == current_ ? next_ : blocks_[block].used;
    }
    std::size_t blockOf(LatticeNode const* node) const noexcept;

    std::vector<Block> blocks_;
    std::size_t current_ = 0;
    LatticeNode* next_ = nullptr;
    LatticeNode* end_ = nullptr;
    LatticeNode* positionBegin_ = nullptr;
};

}  // namespace TAVO

#endif
