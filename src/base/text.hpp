// Small helpers over lines of configuration and list files.
#ifndef TAVO_BASE_TEXT_HPP
#define TAVO_BASE_TEXT_HPP

#include <string_view>

namespace TAVO {

/// @p text without the blanks, tabs, carriage returns and line feeds at its ends.
constexpr std::string_view strip(std::string_view text) noexcept {
    constexpr std::string_view kBlanks = " \t\r\n";
    auto const begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// A comment line has ";" or "#" as its very first byte; an empty line counts too.
constexpr bool isCommentLine(std::string_view line) noexcept {
    return line.empty() || line.front() == ';' || line.front() == '#';
}

}  // namespace TAVO

#endif
