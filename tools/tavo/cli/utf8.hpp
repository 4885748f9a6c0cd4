// Writing, counting and measuring UTF-8.
#ifndef TAVO_TOOL_UTF8_HPP
#define TAVO_TOOL_UTF8_HPP

#include "base/utf8.hpp"

#include <cstddef>
#include <string_view>

namespace tool {

using TAVO::decodeUtf8;
using TAVO::Utf8Char;

/// Writes a character, at most 4 bytes; returns the end.
inline char* putUtf8(char* to, char32_t c) noexcept {
    auto const put = [&to](char32_t byte) { *to++ = static_cast<char>(byte); };
    if (c < 0x80) {
        put(c);
        return to;
    }
    if (c < 0x800) {
        put(0xC0 | c >> 6);
    } else {
        if (c < 0x10000) {
            put(0xE0 | c >> 12);
        } else {
            put(0xF0 | c >> 18);
            put(0x80 | (c >> 12 & 0x3F));
        }
        put(0x80 | (c >> 6 & 0x3F));
    }
    put(0x80 | (c & 0x3F));
    return to;
}

/// Number of characters; each byte that is not UTF-8 counts as one.
std::size_t countCharacters(std::string_view text) noexcept;

/// Columns that @p text takes in a terminal: wide East Asian characters two,
/// combining and invisible characters none.
std::size_t displayWidth(std::string_view text) noexcept;

/// True for characters without a place of their own: combining marks, joiners,
/// variation selectors.
bool isZeroWidth(char32_t character) noexcept;

}  // namespace tool

#endif
