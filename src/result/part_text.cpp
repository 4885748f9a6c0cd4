#include "result/part_text.hpp"

#include "base/sjis.hpp"

#include <algorithm>
#include <utility>

namespace TAVO {
namespace {

constexpr auto npos = std::string_view::npos;

/// Position behind the group that starts at @p open and its inner marks; false
/// when the group is malformed, so that its "(" is an ordinary character.
bool findGroup(std::string_view text, std::size_t open, std::size_t& bar, std::size_t& close) noexcept {
    bar = findMark(text, "|", open);
    close = bar == npos ? npos : findMark(text, ")", bar);
    return close != npos;
}

/// @p readPron with the separators of its groups brought outside.
std::string flattenGroups(std::string_view readPron, std::string_view marks) {
    std::string flat;
    std::size_t pos = 0;
    while (pos < readPron.size()) {
        std::size_t const open = findMark(readPron, "(", pos);
        std::size_t bar, close;
        if (open == npos || !findGroup(readPron, open, bar, close)) break;
        flat.append(readPron, pos, open - pos);
        std::string_view const read = readPron.substr(open + 1, bar - open - 1);
        std::string_view const pron = readPron.substr(bar + 1, close - bar - 1);
        unsigned const pieces = 1 + std::max(countSeparators(read, marks), countSeparators(pron, marks));
        for (unsigned i = 0; i < pieces; ++i) {
            if (i > 0) flat.push_back('/');
            flat.append("(").append(segment(read, marks, i, pieces));
            flat.append("|").append(segment(pron, marks, i, pieces)).append(")");
        }
        pos = close + 1;
    }
    flat.append(readPron.substr(pos));
    return flat;
}

}  // namespace

std::size_t findSeparator(std::string_view text, std::string_view marks, std::size_t pos) noexcept {
    while (pos < text.size()) {
        std::size_t const width = charWidth(text, pos);
        if (width == 1 && marks.find(text[pos]) != npos) return pos;
        bool const escape = text[pos] == '\\' && pos + 1 < text.size();
        pos += escape ? 1 + charWidth(text, pos + 1) : width;
    }
    return text.size();
}

unsigned countSeparators(std::string_view text, std::string_view marks) noexcept {
    unsigned count = 0;
    for (std::size_t pos = findSeparator(text, marks, 0); pos < text.size(); pos = findSeparator(text, marks, pos + 1))
        ++count;
    return count;
}

std::string_view segment(std::string_view text, std::string_view marks, unsigned index, unsigned count) noexcept {
    std::size_t begin = 0;
    for (unsigned i = 0; i < index; ++i) {
        std::size_t const end = findSeparator(text, marks, begin);
        if (end == text.size()) return {};
        begin = end + 1;
    }
    std::size_t const end = index + 1 == count ? text.size() : findSeparator(text, marks, begin);
    return text.substr(begin, end - begin);
}

std::string unescape(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t pos = 0; pos < text.size();) {
        if (text[pos] == '\\' && pos + 1 < text.size()) ++pos;
        std::size_t const width = charWidth(text, pos);
        plain.append(text.substr(pos, width));
        pos += width;
    }
    return plain;
}

void dropMarks(std::string& text, std::string_view marks) {
    std::size_t kept = findMark(text, marks);
    if (kept == npos) return;
    for (std::size_t pos = kept; pos < text.size();) {
        std::size_t const width = charWidth(text, pos);
        bool const drop = width == 1 && marks.find(text[pos]) != npos;
        for (std::size_t i = 0; i < width && !drop; ++i) text[kept++] = text[pos + i];
        pos += width;
    }
    text.resize(kept);
}

std::string_view separatorsFor(std::string_view text, unsigned count) noexcept {
    bool const both = countSeparators(text, "/") + 1 != count && countSeparators(text, "-/") + 1 == count;
    return both ? "-/" : "/";
}

std::string readPronPart(std::string_view readPron, unsigned index, unsigned count) {
    if (count < 2) return std::string(readPron);
    std::string flat = flattenGroups(readPron, "/");
    std::string_view marks = "/";
    if (countSeparators(flat, marks) + 1 != count) {
        std::string flatAtBoth = flattenGroups(readPron, "-/");
        if (countSeparators(flatAtBoth, "-/") + 1 == count) {
            flat = std::move(flatAtBoth);
            marks = "-/";
        }
    }
    return std::string(segment(flat, marks, index, count));
}

}  // namespace TAVO
