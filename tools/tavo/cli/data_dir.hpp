// The library's data folder, by the program's names.
#ifndef TAVO_TOOL_DATA_DIR_HPP
#define TAVO_TOOL_DATA_DIR_HPP

#include "text/data_dir.hpp"

namespace tool {

using TAVO::kDataDir;

}  // namespace tool

#endif
