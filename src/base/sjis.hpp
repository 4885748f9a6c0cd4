// Stepping through Shift_JIS (code page 932) text by characters, so that the
// second byte of a two-byte character is never taken for a mark.
#ifndef TAVO_BASE_SJIS_HPP
#define TAVO_BASE_SJIS_HPP

#include <cstddef>
#include <string_view>

namespace TAVO {

/// No position, as string_view says it.
inline constexpr auto npos = std::string_view::npos;

/// True for the bytes that start a two-byte character: 0x81..0x9F and 0xE0 up.
constexpr bool isLeadByte(char c) noexcept {
    auto const byte = static_cast<unsigned char>(c);
    return (byte >= 0x81 && byte <= 0x9F) || byte >= 0xE0;
}

/// Width in bytes (1 or 2) of the character at @p pos (pos < text.size()). A
/// lead byte that is last in the text or is followed by NUL counts as one byte.
constexpr std::size_t charWidth(std::string_view text, std::size_t pos) noexcept {
    return isLeadByte(text[pos]) && pos + 1 < text.size() && text[pos + 1] != '\0' ? 2 : 1;
}

/// True when the byte at @p pos (0..text.size()), if it is not NUL, is or would be the second one of a two-byte
/// character.
constexpr bool isInsideCharacter(std::string_view text, std::size_t pos) noexcept {
    // A byte that is no lead byte ends a character, whichever it is of.
    std::size_t first = pos;
    while (first != 0 && isLeadByte(text[first - 1])) --first;
    return (pos - first) % 2 != 0;
}

/// Position of the first one-byte character of @p text, from @p pos on, that is
/// one of @p marks; npos when there is none.
constexpr std::size_t findMark(std::string_view text, std::string_view marks, std::size_t pos = 0) noexcept {
    while (pos < text.size()) {
        std::size_t const width = charWidth(text, pos);
        if (width == 1) {
            for (char const mark : marks)
                if (mark == text[pos]) return pos;
        }
        pos += width;
    }
    return npos;
}

}  // namespace TAVO

#endif
