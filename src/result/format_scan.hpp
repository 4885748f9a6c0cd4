// The scanner of the output format language (docs/format-string.md).
#ifndef TAVO_RESULT_FORMAT_SCAN_HPP
#define TAVO_RESULT_FORMAT_SCAN_HPP

#include "base/sjis.hpp"

#include <algorithm>
#include <limits>
#include <string_view>

namespace TAVO {

/// One "%" directive of a format string.
struct Directive {
    static constexpr int kAllFields = -1;

    char letter = '\0';      ///< NUL for a "%" at the end of the format
    int width = 0;           ///< in bytes; 0: no padding
    int field = kAllFields;  ///< the digit behind the letter D
};

namespace format_detail {

constexpr bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

/// The byte that "\" and @p letter stand for; no byte for an unknown letter.
constexpr std::string_view escapedByte(char letter) noexcept {
    switch (letter) {
        case '%':
            return "%";
        case '\\':
            return "\\";
        case 'a':
            return "\a";
        case 'b':
            return "\b";
        case 'f':
            return "\f";
        case 'n':
            return "\n";
        case 'r':
            return "\r";
        case 't':
            return "\t";
        case 'v':
            return "\v";
        default:
            return {};
    }
}

/// Reads digits from @p pos on; a number beyond an int is the largest int.
inline int scanWidth(std::string_view format, std::size_t& pos) noexcept {
    constexpr int kMax = std::numeric_limits<int>::max();
    int width = 0;
    for (; pos < format.size() && isDigit(format[pos]); ++pos) {
        int const digit = format[pos] - '0';
        width = width > (kMax - digit) / 10 ? kMax : width * 10 + digit;
    }
    return width;
}

}  // namespace format_detail

/// Walks @p format once, by characters: literal(std::string_view) for bytes to
/// copy, value(Directive) for directives. A two-byte character after "%" (and
/// its width) or "\" is dropped with the mark.
template <class Literal, class Value>
void scanFormat(std::string_view format, Literal literal, Value value) {
    std::size_t pos = 0;
    while (pos < format.size()) {
        std::size_t const mark = std::min(findMark(format, "%\\", pos), format.size());
        if (mark > pos) literal(format.substr(pos, mark - pos));
        pos = mark;
        if (pos == format.size()) return;
        char const kind = format[pos++];
        Directive directive;
        if (kind == '%') directive.width = format_detail::scanWidth(format, pos);
        std::size_t const width = pos < format.size() ? charWidth(format, pos) : 0;
        if (width == 1) directive.letter = format[pos];
        pos += width;
        if (width == 2) continue;
        if (kind == '\\') {
            std::string_view const byte =
                width == 0 ? std::string_view() : format_detail::escapedByte(directive.letter);
            if (!byte.empty()) literal(byte);
            continue;
        }
        if (directive.letter == 'D' && pos < format.size() && format_detail::isDigit(format[pos]))
            directive.field = format[pos++] - '0';
        value(directive);
    }
}

}  // namespace TAVO

#endif
