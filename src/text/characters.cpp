#include "text/characters.hpp"

#include "base/utf8.hpp"
#include "text/unicode_tables.hpp"

#include <algorithm>
#include <cstddef>
#include <span>
#include <tuple>

namespace TAVO {

namespace {

/// The range that holds @p character; null when none does.
template <class Range>
Range const* rangeOf(std::span<Range const> ranges, char32_t character) noexcept {
    auto const found = std::lower_bound(ranges.begin(), ranges.end(), character,
                                        [](Range const& range, char32_t c) { return range.last < c; });
    return found != ranges.end() && found->first <= character ? &*found : nullptr;
}

/// The usual width of half-width katakana, from U+FF61 on.
constexpr char16_t kWideKana[] =
    u"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモヤユヨラリ"
    u"ルレロワン";

/// The first characters of the two kinds of kana, which have the same order, and how many have a partner: small a to
/// small ke.
constexpr char32_t kHiragana = 0x3041, kKatakana = 0x30A1, kKana = 0x56;

/// @p utf8 with the kana of the kind that begins with @p from as those of the other one.
std::string withKana(std::string_view utf8, char32_t from, char32_t to) {
    std::string result;
    while (!utf8.empty()) {
        Utf8Char const c = decodeUtf8(utf8);
        bool const changes = c.valid && c.character >= from && c.character < from + kKana;
        char bytes[4];
        if (changes)
            result.append(bytes, putUtf8(bytes, c.character - from + to));
        else
            result += utf8.substr(0, c.bytes);
        utf8.remove_prefix(c.bytes);
    }
    return result;
}

}  // namespace

CharacterKind kindOf(char32_t character) noexcept {
    CharacterRange const* const range = rangeOf(kCharacters, character);
    return range != nullptr ? range->kind : CharacterKind::Other;
}

std::uint8_t letterScript(char32_t character) noexcept {
    CharacterRange const* const range = rangeOf(kCharacters, character);
    return range != nullptr ? range->script : std::uint8_t{0};
}

char32_t composed(char32_t first, char32_t second) noexcept {
    auto const found = std::lower_bound(kCompositions.begin(), kCompositions.end(), std::tie(first, second),
                                        [](Composition const& pair, std::tuple<char32_t const&, char32_t const&> key) {
                                            return std::tie(pair.first, pair.second) < key;
                                        });
    bool const isThere = found != kCompositions.end() && found->first == first && found->second == second;
    return isThere ? found->composed : U'\0';
}

char32_t smallLetter(char32_t character) noexcept {
    LowerRange const* const range = rangeOf(kLower, character);
    if (range == nullptr || (character - range->first) % range->step != 0) return character;
    return static_cast<char32_t>(static_cast<std::int32_t>(character) + range->difference);
}

bool isWide(char32_t character) noexcept { return rangeOf(kWide, character) != nullptr; }

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
        if (char32_t const voiced = c == 0xFF9E || c == 0xFF9F ? composed(last, c - 0xFF9E + 0x3099) : 0; voiced != 0) {
            c = voiced;
            result.resize(lastAt);
        }
        c = smallLetter(c);
        char bytes[4];
        lastAt = result.size();
        result.append(bytes, putUtf8(bytes, c));
        last = c;
    }
    return result;
}

std::vector<std::string> readingSpellings(std::string_view reading) {
    std::vector<std::string> found;
    for (std::string const& utf8 :
         {std::string(reading), withKana(reading, kHiragana, kKatakana), withKana(reading, kKatakana, kHiragana)}) {
        std::string sjis;
        bool const isKnown = !appendUtf8AsSjis(sjis, utf8);
        if (isKnown && std::find(found.begin(), found.end(), sjis) == found.end()) found.push_back(sjis);
    }
    return found;
}

bool isZeroWidth(char32_t character) noexcept { return rangeOf(kZeroWidth, character) != nullptr; }

}  // namespace TAVO
