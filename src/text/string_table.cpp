#include "text/string_table.hpp"

#include <algorithm>
#include <cstring>
#include <functional>
#include <stdexcept>

namespace TAVO {

namespace {

constexpr std::size_t kFirstSlots = 1024;

}  // namespace

void StringTable::clear() {
    texts_.assign(1, {});
    hashes_.assign(1, 0);
    slots_.assign(kFirstSlots, 0);
    chunks_.clear();
    freeBytes_ = bytes_ = 0;
    flatBytes_.clear();
    flatOffsets_.assign({0, 0});
}

std::uint32_t StringTable::add(std::string_view text) {
    if (text.empty()) return 0;
    auto const hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(text));
    if (2 * (texts_.size() + 1) > slots_.size()) grow();
    std::size_t const mask = slots_.size() - 1;
    std::size_t at = hash & mask;
    for (; slots_[at] != 0; at = (at + 1) & mask) {
        std::uint32_t const number = slots_[at] - 1;
        if (hashes_[number] == hash && texts_[number] == text) return number;
    }
    if (bytes_ + text.size() > UINT32_MAX) throw std::length_error("LENGTH_ERROR: too much text for one call");
    if (text.size() > freeBytes_) {
        freeBytes_ = std::max(kChunkBytes, text.size());
        chunks_.push_back(std::make_unique_for_overwrite<char[]>(freeBytes_));
        free_ = chunks_.back().get();
    }
    texts_.reserve(texts_.size() + 1 > texts_.capacity() ? 2 * texts_.size() : 0);  // what follows must not throw
    hashes_.push_back(hash);
    std::memcpy(free_, text.data(), text.size());
    texts_.emplace_back(free_, text.size());
    free_ += text.size();
    freeBytes_ -= text.size();
    bytes_ += text.size();
    slots_[at] = static_cast<std::uint32_t>(texts_.size());
    return slots_[at] - 1;
}

void StringTable::grow() {
    std::vector<std::uint32_t> slots(2 * slots_.size(), 0);
    std::size_t const mask = slots.size() - 1;
    for (std::uint32_t number = 1; number != texts_.size(); ++number) {
        std::size_t at = hashes_[number] & mask;
        while (slots[at] != 0) at = (at + 1) & mask;
        slots[at] = number + 1;
    }
    slots_ = std::move(slots);
}

StringTable::Flat StringTable::flat() {
    for (std::size_t number = flatOffsets_.size() - 1; number != texts_.size(); ++number) {
        flatBytes_.insert(flatBytes_.end(), texts_[number].begin(), texts_[number].end());
        flatOffsets_.push_back(static_cast<std::uint32_t>(flatBytes_.size()));
    }
    return {flatBytes_.data(), flatOffsets_.data()};
}

}  // namespace TAVO
