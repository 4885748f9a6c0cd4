// The library's line of text, by the program's names.
#ifndef TAVO_TOOL_LINE_TEXT_HPP
#define TAVO_TOOL_LINE_TEXT_HPP

#include "text/line_text.hpp"

namespace tool {

using TAVO::kPaddingBytes;
using TAVO::LineText;

}  // namespace tool

#endif
