#include "text/characters.hpp"

#include "base/utf8.hpp"
#include "text/zero_width_ranges.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace TAVO {

namespace {

struct KindRange {
    char32_t first, last;
    CharacterKind kind;
};

constexpr KindRange kKinds[] = {
    {0x0000, 0x0008, CharacterKind::Other},    {0x0009, 0x000D, CharacterKind::Blank},
    {0x0020, 0x0020, CharacterKind::Blank},    {0x0021, 0x002F, CharacterKind::Symbol},
    {0x0030, 0x0039, CharacterKind::Digit},    {0x003A, 0x0040, CharacterKind::Symbol},
    {0x0041, 0x005A, CharacterKind::Latin},    {0x005B, 0x0060, CharacterKind::Symbol},
    {0x0061, 0x007A, CharacterKind::Latin},    {0x007B, 0x007E, CharacterKind::Symbol},
    {0x00A1, 0x00BF, CharacterKind::Symbol},   {0x00C0, 0x024F, CharacterKind::Latin},
    {0x0370, 0x03FF, CharacterKind::Greek},    {0x0400, 0x052F, CharacterKind::Cyrillic},
    {0x0530, 0x109F, CharacterKind::Letter},   {0x1100, 0x11FF, CharacterKind::Hangul},
    {0x1200, 0x1DFF, CharacterKind::Letter},   {0x1E00, 0x1EFF, CharacterKind::Latin},
    {0x1F00, 0x1FFF, CharacterKind::Greek},    {0x2000, 0x2BFF, CharacterKind::Symbol},
    {0x2E80, 0x2FDF, CharacterKind::Kanji},    {0x3000, 0x3004, CharacterKind::Symbol},
    {0x3005, 0x3007, CharacterKind::Kanji},    {0x3008, 0x3040, CharacterKind::Symbol},
    {0x3041, 0x309F, CharacterKind::Hiragana}, {0x30A0, 0x30FF, CharacterKind::Katakana},
    {0x3130, 0x318F, CharacterKind::Hangul},   {0x31F0, 0x31FF, CharacterKind::Katakana},
    {0x3400, 0x9FFF, CharacterKind::Kanji},    {0xA960, 0xA97F, CharacterKind::Hangul},
    {0xAC00, 0xD7FF, CharacterKind::Hangul},   {0xF900, 0xFAFF, CharacterKind::Kanji},
    {0xFF10, 0xFF19, CharacterKind::Digit},    {0xFF21, 0xFF3A, CharacterKind::Latin},
    {0xFF41, 0xFF5A, CharacterKind::Latin},    {0xFF66, 0xFF9F, CharacterKind::Katakana},
    {0x1F000, 0x1FAFF, CharacterKind::Emoji},  {0x20000, 0x3FFFF, CharacterKind::Kanji},
};

/// The usual width of half-width katakana, from U+FF61 on.
constexpr char16_t kWideKana[] =
    u"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモヤユヨラリ"
    u"ルレロワン";

/// @p kana with the half-width voicing mark @p mark behind it; 0 where they do not combine.
char32_t voicedWideKana(char32_t kana, char32_t mark) noexcept {
    if (mark == 0xFF9F) return kana >= 0x30CF && kana <= 0x30DB && (kana - 0x30CF) % 3 == 0 ? kana + 2 : 0;
    if (mark != 0xFF9E) return 0;
    if (kana == 0x30A6) return 0x30F4;
    bool const voices = (kana >= 0x30AB && kana <= 0x30C1 && kana % 2 == 1) ||
                        (kana >= 0x30C4 && kana <= 0x30C8 && kana % 2 == 0) ||
                        (kana >= 0x30CF && kana <= 0x30DB && (kana - 0x30CF) % 3 == 0);
    return voices ? kana + 1 : 0;
}

}  // namespace

CharacterKind kindOf(char32_t character) noexcept {
    auto const* const range = std::lower_bound(std::begin(kKinds), std::end(kKinds), character,
                                               [](KindRange const& r, char32_t c) { return r.last < c; });
    return range != std::end(kKinds) && range->first <= character ? range->kind : CharacterKind::Other;
}

CharacterKind kindOf(std::string_view text) noexcept {
    if (text.empty()) return CharacterKind::Other;
    Utf8Char const first = decodeUtf8(text);
    return first.valid ? kindOf(first.character) : CharacterKind::Invalid;
}

std::string normalizedText(std::string_view text) {
    std::string result;
    result.reserve(text.size() + 4);
    char32_t last = 0;
    std::size_t lastAt = 0;
    while (!text.empty()) {
        Utf8Char const read = decodeUtf8(text);
        char32_t c = read.character;
        if (!read.valid) {
            result += text[0];
            last = 0;
            text.remove_prefix(1);
            continue;
        }
        text.remove_prefix(read.bytes);
        if (c >= 0xFF01 && c <= 0xFF5E) c -= 0xFEE0;
        if (c >= 0xFF61 && c <= 0xFF9D) c = kWideKana[c - 0xFF61];
        if (char32_t const voiced = voicedWideKana(last, c); voiced != 0) {
            c = voiced;
            result.resize(lastAt);
        }
        if (c >= U'A' && c <= U'Z') c += 32;
        char bytes[4];
        lastAt = result.size();
        result.append(bytes, putUtf8(bytes, c));
        last = c;
    }
    return result;
}

bool isZeroWidth(char32_t character) noexcept {
    auto const* const range = std::lower_bound(std::begin(kZeroWidth), std::end(kZeroWidth), character,
                                               [](ZeroWidthRange const& r, char32_t c) { return r.last < c; });
    return range != std::end(kZeroWidth) && range->first <= character;
}

}  // namespace TAVO
