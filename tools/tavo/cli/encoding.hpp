// Whole texts between UTF-8 and Shift_JIS (code page 932): arguments,
// dictionary sources, values of dictionary records.
#ifndef TAVO_TOOL_ENCODING_HPP
#define TAVO_TOOL_ENCODING_HPP

#include "base/utf8.hpp"
#include "lexicon/user_text.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

using Encoding = TAVO::TextEncoding;
using TAVO::words::fromSjis;
using TAVO::words::kByteOrderMark;

/// The encoding of a usual @p name such as "UTF-8", "cp932" or "Shift_JIS"; case,
/// "-" and "_" do not count.
std::optional<Encoding> encodingNamed(std::string_view name);

using TAVO::appendUtf8AsSjis;
using TAVO::sjisToUtf8;

/// An argument of the command line in Shift_JIS. Throws ToolError (usage) that
/// names @p what when code page 932 cannot hold it.
std::string argumentToSjis(std::string_view utf8, Encoding encoding, std::string_view what);

}  // namespace tool

#endif
