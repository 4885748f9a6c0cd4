#include "base/utf8.hpp"

#include "base/cp932_tables.hpp"

namespace TAVO {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

struct SjisChar {
    char32_t character;
    std::size_t bytes;
};

SjisChar decodeSjis(std::string_view text) noexcept {
    auto const first = static_cast<unsigned char>(text[0]);
    if (first < 0x80) return {first, 1};
    if (first >= 0xA1 && first <= 0xDF) return {0xFF61U + (first - 0xA1U), 1};  // half-width katakana
    if (text.size() < 2 || first == 0x80 || first == 0xA0) return {kReplacement, 1};
    char32_t const character = kUnicodeFromCp932[(first & 0x7FU) * 0x100U + static_cast<unsigned char>(text[1])];
    return character != 0 ? SjisChar{character, 2} : SjisChar{kReplacement, 1};
}

}  // namespace

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

std::size_t countCharacters(std::string_view text) noexcept {
    std::size_t count = 0;
    for (; !text.empty(); ++count) text.remove_prefix(decodeUtf8(text).bytes);
    return count;
}

char* putSjisAsUtf8(char* to, std::string_view sjis) noexcept {
    while (!sjis.empty()) {
        SjisChar const c = decodeSjis(sjis);
        to = putUtf8(to, c.character);
        sjis.remove_prefix(c.bytes);
    }
    return to;
}

std::string sjisToUtf8(std::string_view sjis) {
    std::string out(kUtf8BytesPerSjisByte * sjis.size(), '\0');
    out.resize(static_cast<std::size_t>(putSjisAsUtf8(out.data(), sjis) - out.data()));
    return out;
}

}  // namespace TAVO
