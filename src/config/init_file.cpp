#include "config/init_file.hpp"

#include "base/sjis.hpp"
#include "base/text.hpp"
#include "config/line_file.hpp"

#include <string_view>

namespace TAVO {

InitValues readInitFile(std::string const& path) {
    InitValues values;
    LineFile file(path);
    while (file.next()) {
        std::string_view const text = file.line();
        if (isCommentLine(text)) continue;
        std::size_t const equals = text.find('=');
        if (equals == std::string_view::npos) continue;
        std::string_view const key = strip(text.substr(0, equals));
        std::string_view const value = strip(text.substr(equals + 1));
        if (!key.empty() && !value.empty()) values[std::string(key)].emplace_back(value);
    }
    return values;
}

char escapedByte(char c) noexcept {
    switch (c) {
        case '\\':
            return '\\';
        case 'a':
            return '\a';
        case 'b':
            return '\b';
        case 'f':
            return '\f';
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        case 'v':
            return '\v';
        default:
            return '\0';
    }
}

std::string decodeEscapes(std::string const& text) {
    std::string result;
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t const width = charWidth(text, pos);
        char const decoded =
            text[pos] == '\\' && width == 1 && pos + 1 < text.size() ? escapedByte(text[pos + 1]) : '\0';
        if (decoded != '\0') {
            result.push_back(decoded);
            pos += 2;
        } else {
            result.append(text, pos, width);
            pos += width;
        }
    }
    return result;
}

}  // namespace TAVO
