// The commands below `tavo dic`.
#ifndef TAVO_TOOL_DIC_COMMAND_HPP
#define TAVO_TOOL_DIC_COMMAND_HPP

#include "encoding.hpp"
#include "tool_error.hpp"

#include <string>

namespace tool {

struct DicOptions {
    std::string input;
    std::string connTable;
    std::string output;
    Encoding encoding = Encoding::Utf8;
    bool verbose = false;
};

ExitStatus buildDictionary(DicOptions const& options);
ExitStatus dumpDictionary(DicOptions const& options);
ExitStatus checkDictionary(DicOptions const& options);

}  // namespace tool

#endif
