// Dictionary records as source lines.
#ifndef TAVO_TOOL_SOURCE_LINE_HPP
#define TAVO_TOOL_SOURCE_LINE_HPP

#include "dic/mrph_dic.hpp"

#include <functional>
#include <string>
#include <string_view>

namespace tool {

/// The name of a part-of-speech id, Shift_JIS.
using NameOf = std::function<std::string(unsigned id)>;

/// The Shift_JIS source line, without line feed, that compiles to @p record
/// again when its names have the same ids.
std::string sourceLine(std::string_view form, TAVO::MrphDic record, NameOf const& nameOf);

}  // namespace tool

#endif
