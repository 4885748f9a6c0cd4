// UTF-8: decoding, and into Shift_JIS.
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

/// Appends @p utf8 in Shift_JIS. Stops at the first character that code page
/// 932 lacks, or byte that is not UTF-8, and returns its offset.
std::optional<std::size_t> appendUtf8AsSjis(std::string& out, std::string_view utf8);

}  // namespace TAVO

#endif
