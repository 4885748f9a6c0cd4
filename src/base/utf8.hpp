// UTF-8: decoding, and between it and Shift_JIS.
#ifndef TAVO_BASE_UTF8_HPP
#define TAVO_BASE_UTF8_HPP

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace TAVO {

struct Utf8Char {
    char32_t character;  // meaningless when invalid
    std::uint8_t bytes;  // 1 when invalid
    bool valid;
};

/// The character at the start of @p text, which is not empty. Overlong forms,
/// surrogates and values above U+10FFFF are invalid.
Utf8Char decodeUtf8(std::string_view text) noexcept;

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

/// Appends @p utf8 in Shift_JIS. Stops at the first character that code page
/// 932 lacks, or byte that is not UTF-8, and returns its offset.
std::optional<std::size_t> appendUtf8AsSjis(std::string& out, std::string_view utf8);

/// The largest factor by which text grows from Shift_JIS to UTF-8: half-width katakana.
inline constexpr std::size_t kUtf8BytesPerSjisByte = 3;
/// Writes @p sjis in UTF-8, at most kUtf8BytesPerSjisByte times its bytes; U+FFFD for a code that has no character.
/// Returns the end.
char* putSjisAsUtf8(char* to, std::string_view sjis) noexcept;
std::string sjisToUtf8(std::string_view sjis);

}  // namespace TAVO

#endif
