// The library's tagged line, by the program's names.
#ifndef TAVO_TOOL_TAGGED_LINE_HPP
#define TAVO_TOOL_TAGGED_LINE_HPP

#include "text/tagged_line.hpp"

namespace tool {

using TAVO::TaggedLine;

}  // namespace tool

#endif
