#include "config/init_file.hpp"

#include "base/sjis.hpp"
#include "base/text.hpp"
#include "base/utf8.hpp"
#include "config/line_file.hpp"
#include "config/rule_lines.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace TAVO {

InitLines readInitLines(std::string const& path) {
    InitLines read;
    LineFile file(path);
    for (bool isFirst = true; file.next(); isFirst = false) {
        std::string_view text = file.line();
        if (isFirst) read.isUtf8 = takeUtf8Mark(text);
        if (isCommentLine(text) || strip(text).empty()) continue;
        InitLine line{file.lineNumber(), {}, {}, file.wasCut()};
        std::size_t const equals = text.find('=');
        line.key = strip(text.substr(0, equals));
        if (equals != npos) line.value = strip(text.substr(equals + 1));
        read.lines.push_back(std::move(line));
    }
    return read;
}

InitValues readInitFile(std::string const& path) {
    InitValues values;
    InitLines const read = readInitLines(path);
    for (InitLine const& line : read.lines) {
        if (line.key.empty() || line.value.empty()) continue;
        std::string value = line.value;
        if (read.isUtf8 && isTextKey(line.key)) {
            value.clear();
            if (appendUtf8AsSjis(value, line.value)) throw unknown_setting(path + ": " + line.key + "=" + line.value);
        }
        values[line.key].push_back(std::move(value));
    }
    return values;
}

bool isTextKey(std::string_view key) noexcept {
    constexpr std::string_view kTextKeys[] = {"Delimiter",  "OutputFormat",        "EOS",
                                              "NullString", "ProsodicInfoCombine", "ExtCombine"};
    return std::find(std::begin(kTextKeys), std::end(kTextKeys), key) != std::end(kTextKeys);
}

std::string tableCompanion(std::string const& connTablePath, std::string_view key) {
    for (auto const& [companion, name] : kTableCompanions) {
        if (companion != key) continue;
        std::size_t const slash = connTablePath.rfind('/');
        std::string path = connTablePath.substr(0, slash == npos ? 0 : slash + 1) + name;
        if (FileLength(path.c_str()) >= 0) return path;
    }
    return {};
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
