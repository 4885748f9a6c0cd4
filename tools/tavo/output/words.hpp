// The words of an analysed text.
#ifndef TAVO_TOOL_WORDS_HPP
#define TAVO_TOOL_WORDS_HPP

#include "text/token_table.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tool {

/// Of text @p text of @p table.
struct Words {
    TAVO::TokenTable& table;
    std::size_t text;

    std::size_t begin() const noexcept { return table.firstOfText()[text]; }
    std::size_t end() const noexcept { return table.firstOfText()[text + 1]; }
    std::uint32_t number(std::size_t word) const noexcept { return table.wordNumbers()[word]; }
    /// False for text that has no analysis.
    bool isAnalysed(std::size_t word) const noexcept { return number(word) != TAVO::WordTable::kNone; }
    TAVO::WordTable::Word const& of(std::size_t word) const noexcept { return table.word(word); }
};

}  // namespace tool

#endif
