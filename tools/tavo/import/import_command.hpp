// `tavo import`: makes Tavo lexicons from other formats.
#ifndef TAVO_TOOL_IMPORT_COMMAND_HPP
#define TAVO_TOOL_IMPORT_COMMAND_HPP

#include "cli/tool_error.hpp"

namespace tool {

/// argv[0] is "import". Writes the report to standard output.
ExitStatus importCommand(int argc, char** argv);

}  // namespace tool

#endif
