#include "engine/cost_lines.hpp"

#include "dic/conn_table.hpp"

#include <algorithm>

namespace TAVO {

void CostLines::add(std::uint16_t column) noexcept {
    std::size_t const word = words_++;
    if (word >= kMostWords || lines_ > kMostLines) return;
    auto const number = static_cast<std::uint16_t>(column / ConnTable::kLineBytes);
    auto const end = numbers_.begin() + static_cast<std::ptrdiff_t>(lines_);
    auto const line = static_cast<std::size_t>(std::find(numbers_.begin(), end, number) - numbers_.begin());
    if (line == lines_ && ++lines_ > kMostLines) return;
    numbers_[line] = number;
    std::size_t const eight = word / 8;
    places_[eight][word % 8] =
        static_cast<std::uint8_t>(line % 2 * ConnTable::kLineBytes + column % ConnTable::kLineBytes);
    std::uint8_t& members = members_[line / 2 * 2 + eight];
    members = static_cast<std::uint8_t>(members | 1U << word % 8);
}

CostLines::Kind CostLines::kind() const noexcept {
    if (words_ > kMostWords || lines_ > kMostLines) return Kind::kMany;
    if (lines_ > 4) return Kind::kScattered;
    return words_ <= 8 && lines_ <= 2 ? Kind::kNarrow : Kind::kWide;
}

CostLines::Numbers CostLines::numbers(std::size_t four) const noexcept {
    Numbers numbers{};
    for (std::size_t i = 0; i != numbers.size(); ++i)
        numbers[i] = numbers_[std::min(four * numbers.size() + i, std::max<std::size_t>(lines_, 1) - 1)];
    return numbers;
}

}  // namespace TAVO
