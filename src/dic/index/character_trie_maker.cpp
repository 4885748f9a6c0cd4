#include "dic/index/character_trie_maker.hpp"

#include "dic/index/dic_index.hpp"

#include <algorithm>
#include <stdexcept>

namespace TAVO {
namespace {

constexpr std::uint32_t kManyTries = 2000;

/// Nodes with few children fit nearly everywhere, those with many only behind the crowded part.
std::size_t kindOf(std::size_t children) noexcept {
    return children == 1 ? 0 : children < 4 ? 1 : children < 32 ? 2 : 3;
}

}  // namespace

void CharacterTrieMaker::start(std::uint32_t characterCount) {
    numbers_ = characterCount + 2;
    // Base 0 is that of nodes without children: nothing may stand there.
    grow(std::size_t{4} * numbers_);
    std::fill_n(taken_.begin(), numbers_, std::uint8_t{1});
    baseTaken_[0] = 1;
    firstFree_ = numbers_;
    last_ = numbers_;
}

std::uint32_t CharacterTrieMaker::place(std::vector<std::uint32_t> const& numbers) {
    while (taken_[firstFree_] != 0) grow(std::size_t{++firstFree_} + 2);
    std::uint32_t const first = numbers.front();
    std::uint32_t& hint = hints_[kindOf(numbers.size())];
    std::uint32_t unit = std::max({firstFree_, first + 1, hint});
    for (std::uint32_t tries = 0;; ++unit, ++tries) {
        grow(std::size_t{unit} + numbers_ + 2);
        if (taken_[unit] != 0 || baseTaken_[unit - first] != 0 || !fits(unit - first, numbers)) continue;
        if (tries > kManyTries) hint = numbers.size() == 1 ? unit : unit - std::min(unit, std::uint32_t{500});
        break;
    }
    std::uint32_t const base = unit - first;
    if (base > DicIndex::kBaseMask) throw std::length_error("LENGTH_ERROR: the trie does not fit the index");
    baseTaken_[base] = 1;
    for (std::uint32_t const number : numbers) taken_[base + number] = 1;
    last_ = std::max(last_, base + numbers.back());
    return base;
}

bool CharacterTrieMaker::fits(std::uint32_t base, std::vector<std::uint32_t> const& numbers) const noexcept {
    return std::none_of(numbers.begin(), numbers.end(),
                        [&](std::uint32_t number) { return taken_[base + number] != 0; });
}

void CharacterTrieMaker::set(std::uint32_t unit, std::uint64_t node, std::uint32_t chain) {
    units_[unit] = node;
    chains_[unit] = chain;
}

void CharacterTrieMaker::finish() {
    std::size_t const size = std::size_t{last_} + 1;
    grow(size);
    units_.resize(size);
    chains_.resize(size);
}

void CharacterTrieMaker::grow(std::size_t size) {
    if (size <= units_.size()) return;
    std::size_t const room = std::max(size, units_.size() * 2);
    units_.resize(room, 0);
    chains_.resize(room, 0);
    taken_.resize(room, 0);
    baseTaken_.resize(room, 0);
}

}  // namespace TAVO
