#include "lexicon/encoding_guess.hpp"

#include "base/cp932_tables.hpp"
#include "base/utf8.hpp"

#include <algorithm>

namespace TAVO::words {

namespace {

constexpr std::size_t kSampleBytes = 4096;

unsigned char byteAt(std::string_view text, std::size_t at) noexcept {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : static_cast<unsigned char>(0);
}

bool within(unsigned char byte, unsigned low, unsigned high) noexcept { return byte >= low && byte <= high; }

/// How text reads in one encoding.
struct Reading {
    std::size_t characters = 0;  ///< beyond ASCII
    std::size_t invalid = 0;     ///< bytes that are no text
    std::size_t typical = 0;     ///< characters that Japanese text is full of
    /// Some bytes may be damaged; a sample may end inside a character.
    bool fits() const noexcept { return characters != 0 && invalid * 50 <= characters; }
};

/// Reads character by character: step(rest, reading) returns how many bytes the one at the start of rest has, 0 when
/// it is none.
template <class Step>
Reading read(std::string_view text, Step const& step) {
    Reading reading;
    while (!text.empty()) {
        bool const ascii = byteAt(text, 0) < 0x80;
        std::size_t const bytes = ascii ? 1 : step(text, reading);
        if (!ascii) ++(bytes != 0 ? reading.characters : reading.invalid);
        text.remove_prefix(std::max<std::size_t>(bytes, 1));
    }
    return reading;
}

Reading readUtf8(std::string_view text) {
    return read(text, [](std::string_view rest, Reading& reading) -> std::size_t {
        Utf8Char const c = decodeUtf8(rest);
        if (!c.valid) return 0;
        if (c.bytes == 3) ++reading.typical;
        return c.bytes;
    });
}

/// Kana and the characters of daily use have first bytes that no EUC-JP text has.
Reading readSjis(std::string_view text) {
    return read(text, [](std::string_view rest, Reading& reading) -> std::size_t {
        unsigned char const first = byteAt(rest, 0);
        if (within(first, 0xA1, 0xDF)) return 1;
        if (kUnicodeFromCp932[(first & 0x7FU) * 0x100U + byteAt(rest, 1)] == 0) return 0;
        if (first <= 0x9F) ++reading.typical;
        return 2;
    });
}

/// Typical: hiragana and katakana.
Reading readEucJp(std::string_view text) {
    return read(text, [](std::string_view rest, Reading& reading) -> std::size_t {
        unsigned char const first = byteAt(rest, 0), second = byteAt(rest, 1);
        if (first == 0x8E) return within(second, 0xA1, 0xDF) ? 2 : 0;
        if (first == 0x8F) return within(second, 0xA1, 0xFE) && within(byteAt(rest, 2), 0xA1, 0xFE) ? 3 : 0;
        bool const used = within(first, 0xA1, 0xA8) || first == 0xAD || within(first, 0xB0, 0xF4) || first >= 0xF9;
        if (!used || first == 0xFF || !within(second, 0xA1, 0xFE)) return 0;
        if (first == 0xA4 || first == 0xA5) ++reading.typical;
        return 2;
    });
}

/// Half-width katakana of Shift_JIS are pairs of EUC-JP too, of the lower rows alone.
bool isEucJp(std::string_view text) {
    Reading const reading = readEucJp(text);
    if (!reading.fits()) return false;
    bool const kanaAlone =
        std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0xE0; });
    if (kanaAlone) return reading.typical * 2 >= reading.characters;
    constexpr std::size_t kFew = 8;  // words without kana
    return reading.characters < kFew || reading.typical * 16 >= reading.characters;
}

bool isSjis(std::string_view text) {
    Reading const reading = readSjis(text);
    return reading.fits() && reading.characters > 1 && reading.typical * 2 >= reading.characters;
}

bool isIso2022Jp(std::string_view text) {
    bool const switches =
        text.find("\x1B$B") != std::string_view::npos || text.find("\x1B$@") != std::string_view::npos;
    return switches &&
           std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

/// Of two-byte units ASCII has NULs, all at even or all at odd places; the bytes beside are mostly those of kana,
/// kanji and full-width forms.
std::string_view utf16(std::string_view text) {
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) return "UTF-16";
    std::size_t const nul = text.find('\0');
    if (nul == std::string_view::npos || text.size() < 4) return {};
    std::size_t units = 0, likely = 0;
    for (std::size_t high = nul % 2; high < text.size(); high += 2, ++units) {
        auto const byte = byteAt(text, high);
        unsigned char const low = byteAt(text, high ^ 1U);
        if (low == 0 && byte == 0) return {};
        if (byte == 0 || byte == 0x30 || byte == 0xFF || within(byte, 0x4E, 0x9F)) ++likely;
    }
    if (likely * 10 < units * 9) return {};
    return nul % 2 == 1 ? "UTF-16LE" : "UTF-16BE";
}

/// What tells encodings apart in @p text; UTF-16 is read in pairs from its start.
std::string_view sample(std::string_view text) {
    auto const tells = [](char c) {
        auto const byte = static_cast<unsigned char>(c);
        return byte >= 0x80 || byte == 0 || byte == 0x1B;
    };
    auto const first = static_cast<std::size_t>(std::find_if(text.begin(), text.end(), tells) - text.begin());
    std::string_view part = text.substr(first - first % 2, kSampleBytes);
    // A character that is cut would look damaged.
    if (std::size_t const line = part.rfind('\n'); part.size() == kSampleBytes && line != std::string_view::npos)
        part = part.substr(0, line + 1);
    return part;
}

}  // namespace

std::string_view otherEncoding(std::string_view text, TextEncoding said) {
    std::string_view const part = sample(text);
    if (part.empty()) return {};
    if (auto const name = utf16(part); !name.empty()) return name;
    if (isIso2022Jp(part)) return "ISO-2022-JP";
    Reading const utf8 = readUtf8(part);
    if (said == TextEncoding::Utf8) {
        if (utf8.invalid == 0 || utf8.characters >= utf8.invalid) return {};
        if (isSjis(part)) return "Shift_JIS";
    } else if (utf8.fits() && utf8.typical != 0) {
        return "UTF-8";
    }
    return isEucJp(part) ? "EUC-JP" : "";
}

std::string wrongEncoding(std::string_view found, TextEncoding said) {
    std::string text = said == TextEncoding::Utf8 ? "not UTF-8" : "not Shift_JIS";
    text.append(", it looks like ").append(found);
    if (found == "UTF-8") return text + "; leave --encoding sjis out";
    if (found == "Shift_JIS") return text + "; use --encoding sjis";
    return text.append("; convert it first: iconv -f ").append(found).append(" -t UTF-8");
}

void requireEncoding(std::string_view text, std::string const& path, TextEncoding said) {
    std::string_view const found = otherEncoding(text, said);
    if (!found.empty()) throw lexicon_error(path, 0, wrongEncoding(found, said));
}

}  // namespace TAVO::words
