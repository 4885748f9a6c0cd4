#include "dic/trie_builder.hpp"

#include "base/bytes.hpp"
#include "dic/dic_trie.hpp"

#include <algorithm>
#include <iostream>
#include <new>

namespace TAVO {
namespace {

constexpr std::size_t kMaxTail = 255;
constexpr std::uint32_t kSpareCells = 255;  // base + label never leaves the array

std::uint8_t byteAt(TrieKey const& key, std::size_t pos) { return static_cast<std::uint8_t>(key.form[pos]); }

/// End of the run of keys from @p begin that have one byte at @p depth.
std::size_t runEnd(std::span<TrieKey const> keys, std::size_t begin, std::size_t end, std::size_t depth) {
    std::uint8_t const byte = byteAt(keys[begin], depth);
    while (begin < end && byteAt(keys[begin], depth) == byte) ++begin;
    return begin;
}

bool areSortedKeys(std::span<TrieKey const> keys) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (keys[i].form.empty() || keys[i].form.find('\0') != std::string_view::npos) return false;
        if (i > 0 && keys[i - 1].form.compare(keys[i].form) >= 0) return false;
    }
    return true;
}

}  // namespace

bool TrieBuilder::init(std::uint32_t cellCapacity, std::uint32_t leafCapacity) {
    if (cellCapacity == 0) cellCapacity = kDefaultCells;
    if (leafCapacity == 0) cellCapacity = kDefaultLeafBytes;
    try {
        root_.fill(0);
        map_.reset(cellCapacity);
        cells_.assign(map_.capacity(), 0);
        leaf_.clear();
        leaf_.reserve(leafCapacity);
        usedCells_ = 1;
    } catch (std::bad_alloc const&) {
        cells_ = {};
        leaf_ = {};
        return false;
    }
    return true;
}

bool TrieBuilder::fail(bool verbose, std::string text) {
    if (verbose) std::cerr << text << '\n';
    if (error_.empty()) error_ = std::move(text);
    return false;
}

bool TrieBuilder::build(std::span<TrieKey const> keys, bool verbose) {
    if (usedCells_ != 1) return fail(verbose, "Error: Cannot Rebuild Trie");
    if (!areSortedKeys(keys)) return fail(verbose, "Error: Keys Not In Ascending Order");
    if (verbose) std::cerr << "Building Trie...";
    for (std::size_t begin = 0; begin < keys.size();) {
        std::size_t const end = runEnd(keys, begin, keys.size(), 0);
        std::int32_t const base = makeIndex(keys, begin, end);
        if (base < 1) {
            fail(verbose, base == kTooManyCells ? "Error: Too Many Trie Cells: the format has room for 8388608"
                                                : "Error: Too Much Leaf Data: the format has room for 33554432 bytes");
            return fail(verbose, "Error: TrieBuilder::makeIndex(): " + std::to_string(base));
        }
        root_[byteAt(keys[begin], 0)] = static_cast<std::uint32_t>(base);
        if (verbose) std::cerr << '.';
        begin = end;
    }
    if (verbose) std::cerr << "Done\n";
    return true;
}

/// The base of the node reached by the first byte of the keys [begin, end), or an
/// error below 1. A stack of its own instead of recursion, since the depth is
/// that of the longest key.
std::int32_t TrieBuilder::makeIndex(std::span<TrieKey const> keys, std::size_t begin, std::size_t end) {
    frames_.assign(1, Frame{begin, end, 1, 0});
    listed_.clear();
    for (;;) {
        if (frames_.back().key < frames_.back().end) {
            if (std::int32_t const result = stepChild(keys); result < 0) return result;
            continue;
        }
        std::int32_t const base = placeNode();
        frames_.pop_back();
        if (base < 1 || frames_.empty()) return base;
        listed_.push_back({frames_.back().label, static_cast<std::uint32_t>(base)});
    }
}

/// Deals with the next key, or group of keys, of the innermost node: lists its
/// cell, or opens the child node that has to be placed first.
std::int32_t TrieBuilder::stepChild(std::span<TrieKey const> keys) {
    Frame& frame = frames_.back();
    TrieKey const& key = keys[frame.key];
    if (key.form.size() == frame.depth) {
        std::int32_t const value = storeLeaf({}, key.chain);
        listed_.push_back({0, DicTrie::kLeafFlag | static_cast<std::uint32_t>(value)});
        ++frame.key;
        return value;
    }
    std::uint8_t const label = byteAt(key, frame.depth);
    std::size_t const groupEnd = runEnd(keys, frame.key, frame.end, frame.depth);
    std::string_view const tail = key.form.substr(frame.depth + 1);
    if (groupEnd == frame.key + 1 && tail.size() <= kMaxTail) {
        std::string head(1, static_cast<char>(tail.size()));
        head += tail;
        std::int32_t const value = storeLeaf(head, key.chain);
        listed_.push_back({label, DicTrie::kLeafFlag | static_cast<std::uint32_t>(value)});
        ++frame.key;
        return value;
    }
    // A longer tail than its length byte can say becomes nodes of one child each.
    Frame const child{frame.key, groupEnd, frame.depth + 1, listed_.size()};
    frame.label = label;
    frame.key = groupEnd;
    frames_.push_back(child);
    return 0;
}

/// Places the cells that the innermost node has listed; its base.
std::int32_t TrieBuilder::placeNode() {
    std::span<ListedCell const> const cells = std::span(listed_).subspan(frames_.back().firstListed);
    std::array<std::uint8_t, 256> labels{};
    std::transform(cells.begin(), cells.end(), labels.begin(), [](ListedCell const& cell) { return cell.label; });
    std::span<std::uint8_t const> const listedLabels(labels.data(), cells.size());
    std::uint32_t const base = map_.findBase(listedLabels);
    if (base > DicTrie::kValueMask) return kTooManyCells;
    map_.take(base, listedLabels);
    usedCells_ = std::max(usedCells_, base + labels[cells.size() - 1] + 1);
    if (usedCells_ > cells_.size()) cells_.resize(std::max<std::size_t>(map_.capacity(), usedCells_), 0);
    for (ListedCell const& cell : cells) {
        cells_[base + cell.label] = static_cast<std::uint32_t>(cell.label) << 24 | cell.value;
    }
    listed_.resize(frames_.back().firstListed);
    return static_cast<std::int32_t>(base);
}

/// Appends an entry to the leaf area; its position divided by 4.
std::int32_t TrieBuilder::storeLeaf(std::string_view head, std::string_view chain) {
    leaf_.resize((leaf_.size() + 3) / 4 * 4, '\0');
    std::size_t const value = leaf_.size() / 4;
    if (value > DicTrie::kValueMask) return kTooManyLeafBytes;
    leaf_ += head;
    leaf_ += chain;
    return static_cast<std::int32_t>(value);
}

bool TrieBuilder::write(ByteSink const& sink) const {
    std::uint32_t const cellCount = usedCells_ + kSpareCells;
    std::string header;
    appendU32(header, DicTrie::kHeaderBytes);
    appendU32(header, DicTrie::kHeaderBytes + 4 * cellCount);
    for (std::uint32_t const base : root_) appendU32(header, base);
    if (!sink(header)) return false;
    std::string cells;
    cells.reserve(std::size_t{4} * cellCount);
    for (std::uint32_t i = 0; i < cellCount; ++i) appendU32(cells, i < usedCells_ ? cells_[i] : 0);
    return sink(cells) && sink(leaf_);
}

}  // namespace TAVO
