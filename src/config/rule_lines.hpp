// The lines of a rule file.
#ifndef TAVO_CONFIG_RULE_LINES_HPP
#define TAVO_CONFIG_RULE_LINES_HPP

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// True for a comment like "; encoding: utf-8" or "# -*- coding: UTF8 -*-".
bool saysUtf8(std::string_view line);
/// Takes a byte order mark off the start of the first line of a file; true when it or a comment says UTF-8.
bool takeUtf8Mark(std::string_view& firstLine);

struct RuleLine {
    std::size_t number;  ///< from 1 on
    std::string text;    ///< Shift_JIS, not stripped
};

/// The lines of @p path but for comments and empty ones; UTF-8 where the first line says so, as in an init file.
/// Throws file_not_found, and illegal_format (path:line:cause) for a line that Shift_JIS cannot hold. A @p given text
/// that is not null is taken instead of the file's, and @p path is its name.
std::vector<RuleLine> readRuleLines(std::string const& path, std::string_view const* given = nullptr);
/// Throws illegal_format with @p path, the line's number and @p cause.
[[noreturn]] void refuseRule(std::string const& path, std::size_t number, std::string const& cause);

}  // namespace TAVO

#endif
