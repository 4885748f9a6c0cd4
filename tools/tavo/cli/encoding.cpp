#include "cli/encoding.hpp"

#include "cli/cp932_tables.hpp"
#include "cli/tool_error.hpp"
#include "cli/utf8.hpp"
#include "output/out_buffer.hpp"

namespace tool {

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

/// The largest factor of growth: half-width katakana.
constexpr std::size_t kUtf8BytesPerSjisByte = 3;

char* putSjisAsUtf8(char* to, std::string_view sjis) noexcept {
    while (!sjis.empty()) {
        SjisChar const c = decodeSjis(sjis);
        to = putUtf8(to, c.character);
        sjis.remove_prefix(c.bytes);
    }
    return to;
}

}  // namespace

std::optional<Encoding> encodingNamed(std::string_view name) {
    std::string plain;
    for (char const c : name)
        if (c != '-' && c != '_') plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    if (plain == "utf8") return Encoding::Utf8;
    for (std::string_view const known : {"sjis", "shiftjis", "cp932", "ms932", "mskanji", "windows31j", "cswindows31j"})
        if (plain == known) return Encoding::Sjis;
    return std::nullopt;
}

void appendSjisAsUtf8(OutBuffer& out, std::string_view sjis) {
    out.finish(putSjisAsUtf8(out.reserve(kUtf8BytesPerSjisByte * sjis.size()), sjis));
}

std::string sjisToUtf8(std::string_view sjis) {
    std::string out(kUtf8BytesPerSjisByte * sjis.size(), '\0');
    out.resize(static_cast<std::size_t>(putSjisAsUtf8(out.data(), sjis) - out.data()));
    return out;
}

std::string argumentToSjis(std::string_view utf8, Encoding encoding, std::string_view what) {
    if (encoding == Encoding::Sjis) return std::string(utf8);
    std::string sjis;
    if (auto const at = appendUtf8AsSjis(sjis, utf8)) {
        std::string_view const rest = utf8.substr(*at);
        throw ToolError(ExitStatus::Usage, std::string(what) + ": \"" +
                                               std::string(rest.substr(0, decodeUtf8(rest).bytes)) +
                                               "\" is not in code page 932, the character set of dictionaries");
    }
    return sjis;
}

std::string fromSjis(std::string_view sjis, Encoding encoding) {
    return encoding == Encoding::Sjis ? std::string(sjis) : sjisToUtf8(sjis);
}

}  // namespace tool
