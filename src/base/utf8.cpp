#include "base/utf8.hpp"

#include "base/cp932_tables.hpp"

namespace TAVO {

Utf8Char decodeUtf8(std::string_view text) noexcept {
    constexpr Utf8Char kInvalid{0, 1, false};
    auto const first = static_cast<unsigned char>(text[0]);
    if (first < 0x80) return {first, 1, true};
    unsigned const bytes = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < bytes) return kInvalid;
    char32_t character = first & (0x7FU >> bytes);
    for (unsigned i = 1; i < bytes; ++i) {
        auto const next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80) return kInvalid;
        character = character << 6 | (next & 0x3FU);
    }
    constexpr char32_t kLowest[] = {0, 0, 0x80, 0x800, 0x10000};
    bool const surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < kLowest[bytes] || character > 0x10FFFF || surrogate) return kInvalid;
    return {character, static_cast<std::uint8_t>(bytes), true};
}

std::optional<std::size_t> appendUtf8AsSjis(std::string& out, std::string_view utf8) {
    for (std::size_t at = 0; at < utf8.size();) {
        Utf8Char const c = decodeUtf8(utf8.substr(at));
        unsigned const code = c.valid && c.character < 0x10000 ? kCp932FromUnicode[c.character] : 0U;
        if (code == 0 && (c.character != 0 || !c.valid)) return at;
        out.push_back(static_cast<char>(code & 0xFF));
        if (code >= 0x100) out.push_back(static_cast<char>(code >> 8));
        at += c.bytes;
    }
    return std::nullopt;
}

}  // namespace TAVO
