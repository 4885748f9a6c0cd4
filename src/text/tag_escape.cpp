#include "text/tag_escape.hpp"

#include "base/utf8.hpp"

#include <optional>

namespace TAVO {

namespace {

/// Begins and ends an escape; between two of them stand the bytes, two digits each. No UTF-8 text becomes these bytes
/// but one with two characters of the user-defined area side by side that are one byte each in Shift_JIS.
constexpr std::string_view kMark = "\xFE\xFE";
/// A digit is the character with this first byte and kFirstDigit + its value as the second.
constexpr char kDigitLead = '\x82';
constexpr unsigned char kFirstDigit = 0x4F;
constexpr std::size_t kBytesPerByte = 4;

void appendDigit(std::string& sjis, unsigned value) {
    sjis += kDigitLead;
    sjis += static_cast<char>(kFirstDigit + value);
}

std::optional<unsigned> digitAt(std::string_view text) noexcept {
    if (text[0] != kDigitLead) return std::nullopt;
    unsigned const value = static_cast<unsigned char>(text[1]) - unsigned{kFirstDigit};
    return value < 16 ? std::optional(value) : std::nullopt;
}

/// Appends the bytes of the escape that @p sjis begins with, and returns its length; 0 where it begins with none.
std::size_t appendBytes(std::string& utf8, std::string_view sjis) {
    if (!sjis.starts_with(kMark)) return 0;
    std::string bytes;
    for (std::size_t at = kMark.size(); at + kMark.size() <= sjis.size(); at += kBytesPerByte) {
        if (sjis.substr(at).starts_with(kMark)) {
            utf8 += bytes;
            return at + kMark.size();
        }
        if (at + kBytesPerByte > sjis.size()) return 0;
        std::optional<unsigned> const high = digitAt(sjis.substr(at)), low = digitAt(sjis.substr(at + 2));
        if (!high || !low) return 0;
        bytes += static_cast<char>(*high << 4 | *low);
    }
    return 0;
}

}  // namespace

void appendTagEscape(std::string& sjis, std::string_view utf8) {
    sjis += kMark;
    for (char const byte : utf8) {
        appendDigit(sjis, static_cast<unsigned char>(byte) >> 4);
        appendDigit(sjis, static_cast<unsigned char>(byte) & 0xFU);
    }
    sjis += kMark;
}

std::string tagTextToUtf8(std::string_view sjis) {
    std::string utf8;
    std::size_t mark = sjis.find(kMark);
    for (; mark != std::string_view::npos; mark = sjis.find(kMark)) {
        utf8 += sjisToUtf8(sjis.substr(0, mark));
        std::size_t const length = appendBytes(utf8, sjis.substr(mark));
        if (length == 0) utf8 += sjisToUtf8(sjis.substr(mark, kMark.size()));
        sjis.remove_prefix(mark + (length == 0 ? kMark.size() : length));
    }
    return utf8 += sjisToUtf8(sjis);
}

}  // namespace TAVO
