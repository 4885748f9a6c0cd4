#include "result/part_text.hpp"

#include "base/sjis.hpp"

#include <algorithm>
#include <utility>

namespace TAVO {
namespace {

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
        unsigned const pieces = 1 + std::max(countMarks(read, marks), countMarks(pron, marks));
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

unsigned countMarks(std::string_view text, std::string_view marks) noexcept {
    unsigned count = 0;
    for (std::size_t pos = findMark(text, marks); pos != npos; pos = findMark(text, marks, pos + 1)) ++count;
    return count;
}

std::string_view segment(std::string_view text, std::string_view marks, unsigned index, unsigned count) noexcept {
    std::size_t begin = 0;
    for (unsigned i = 0; i < index; ++i) {
        std::size_t const end = findMark(text, marks, begin);
        if (end == npos) return {};
        begin = end + 1;
    }
    std::size_t const end = index + 1 == count ? npos : findMark(text, marks, begin);
    return text.substr(begin, end == npos ? npos : end - begin);
}

std::size_t takePartLength(std::string_view& written) noexcept {
    std::size_t length = 0;
    std::size_t pos = 0;
    for (; pos < written.size() && written[pos] != '-' && written[pos] != '/';) {
        if (written[pos] == '\\' && ++pos == written.size()) break;
        std::size_t const width = charWidth(written, pos);
        length += width;
        pos += width;
    }
    written.remove_prefix(std::min(pos + 1, written.size()));
    return length;
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
    bool const both = countMarks(text, "/") + 1 != count && countMarks(text, "-/") + 1 == count;
    return both ? "-/" : "/";
}

std::string readPronPart(std::string_view readPron, unsigned index, unsigned count) {
    if (count < 2) return std::string(readPron);
    std::string flat = flattenGroups(readPron, "/");
    std::string_view marks = "/";
    if (countMarks(flat, marks) + 1 != count) {
        std::string flatAtBoth = flattenGroups(readPron, "-/");
        if (countMarks(flatAtBoth, "-/") + 1 == count) {
            flat = std::move(flatAtBoth);
            marks = "-/";
        }
    }
    return std::string(segment(flat, marks, index, count));
}

}  // namespace TAVO
