#include "config/rule_lines.hpp"

#include "base/text.hpp"
#include "base/utf8.hpp"
#include "config/line_file.hpp"

namespace TAVO {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

char lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool saysUtf8(std::string_view line) {
    if (!isCommentLine(line)) return false;
    std::string plain;  // in small letters, without blanks and hyphens
    for (char const c : line)
        if (c != ' ' && c != '\t' && c != '-') plain += lower(c);
    return plain.find("coding:utf8") != std::string::npos || plain.find("coding=utf8") != std::string::npos;
}

bool takeUtf8Mark(std::string_view& firstLine) {
    bool const hasMark = firstLine.starts_with(kByteOrderMark);
    if (hasMark) firstLine.remove_prefix(kByteOrderMark.size());
    return hasMark || saysUtf8(firstLine);
}

std::vector<RuleLine> readRuleLines(std::string const& path, std::string_view const* given) {
    std::vector<RuleLine> lines;
    LineFile file(path, given);
    bool isUtf8 = false;
    for (bool isFirst = true; file.next(); isFirst = false) {
        std::string_view text = file.line();
        if (isFirst) isUtf8 = takeUtf8Mark(text);
        if (isCommentLine(text) || strip(text).empty()) continue;
        RuleLine line{file.lineNumber(), std::string(text)};
        if (isUtf8) {
            line.text.clear();
            if (appendUtf8AsSjis(line.text, text)) refuseRule(path, line.number, "Not In Shift_JIS");
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

void refuseRule(std::string const& path, std::size_t number, std::string const& cause) {
    throw illegal_format(path + ":" + std::to_string(number) + ":" + cause);
}

}  // namespace TAVO
