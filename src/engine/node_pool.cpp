#include "engine/node_pool.hpp"

#include <algorithm>
#include <functional>
#include <new>

namespace TAVO {
namespace {

// Blocks double up to this size, so that a long text needs few of them and a
// short one wastes little; 256 blocks then hold more nodes than 32 bits count.
constexpr std::size_t kLargestBlock = std::size_t{1} << 25;

}  // namespace

NodePool::NodePool(std::uint32_t capacity) : blocks_(1) {
    blocks_[0].capacity = capacity == 0 ? kDefaultCapacity : capacity;
    blocks_[0].slots = std::make_unique_for_overwrite<LatticeNode[]>(blocks_[0].capacity);
    open(0);
}

void NodePool::clear() noexcept { open(0); }

void NodePool::open(std::size_t block) {
    current_ = block;
    next_ = blocks_[block].slots.get();
    end_ = next_ + blocks_[block].capacity;
    positionBegin_ = next_;
}

void NodePool::grow() {
    std::size_t const pending = static_cast<std::size_t>(next_ - positionBegin_);
    std::size_t const following = current_ + 1;
    if (following == kMaxBlocks) throw std::bad_alloc();
    if (following == blocks_.size()) blocks_.emplace_back();
    Block& block = blocks_[following];
    std::size_t const wanted = std::max(std::min(blocks_[current_].capacity * 2, kLargestBlock), pending * 2);
    if (block.slots == nullptr || block.capacity < pending * 2) {
        block.slots = std::make_unique_for_overwrite<LatticeNode[]>(wanted);
        block.capacity = wanted;
    }
    LatticeNode* const moved = positionBegin_;
    blocks_[current_].used = positionBegin_;
    block.firstIndex =
        blocks_[current_].firstIndex + static_cast<std::uint32_t>(positionBegin_ - blocks_[current_].slots.get());
    open(following);
    next_ = std::copy(moved, moved + pending, next_);
}

std::size_t NodePool::blockOf(LatticeNode const* node) const noexcept {
    std::size_t block = current_;
    while (block > 0 && (std::less<>()(node, blocks_[block].slots.get()) || !std::less<>()(node, usedEnd(block))))
        --block;
    return block;
}

std::uint32_t NodePool::indexOf(LatticeNode const* node) const noexcept {
    Block const& block = blocks_[blockOf(node)];
    return block.firstIndex + static_cast<std::uint32_t>(node - block.slots.get());
}

bool NodePool::holds(LatticeNode const* node) const noexcept {
    std::size_t const block = blockOf(node);
    return !std::less<>()(node, blocks_[block].slots.get()) && std::less<>()(node, usedEnd(block));
}

std::span<LatticeNode const> NodePool::candidates(LatticeNode const* node) const noexcept {
    LatticeNode const* const end = usedEnd(blockOf(node));
    LatticeNode const* first = node;
    while ((first->flags & LatticeNode::kFirstAtPosition) == 0) --first;
    LatticeNode const* last = node + 1;
    while (last != end && (last->flags & LatticeNode::kFirstAtPosition) == 0) ++last;
    return {first, last};
}

}  // namespace TAVO
