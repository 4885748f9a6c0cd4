// The library's code page 932 tables, by the program's names.
#ifndef TAVO_TOOL_CP932_TABLES_HPP
#define TAVO_TOOL_CP932_TABLES_HPP

#include "base/cp932_tables.hpp"

namespace tool {

using TAVO::kCp932FromUnicode;
using TAVO::kUnicodeFromCp932;

}  // namespace tool

#endif
