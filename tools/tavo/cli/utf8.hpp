// Measuring UTF-8.
#ifndef TAVO_TOOL_UTF8_HPP
#define TAVO_TOOL_UTF8_HPP

#include "base/utf8.hpp"
#include "text/characters.hpp"

#include <cstddef>
#include <string_view>

namespace tool {

using TAVO::countCharacters;
using TAVO::decodeUtf8;
using TAVO::isZeroWidth;
using TAVO::putUtf8;
using TAVO::Utf8Char;

/// Columns that @p text takes in a terminal: wide East Asian characters two,
/// combining and invisible characters none.
std::size_t displayWidth(std::string_view text) noexcept;

}  // namespace tool

#endif
