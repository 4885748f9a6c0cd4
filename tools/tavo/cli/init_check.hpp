// What is wrong with an init file, for the person who wrote it.
#ifndef TAVO_TOOL_INIT_CHECK_HPP
#define TAVO_TOOL_INIT_CHECK_HPP

#include <string>
#include <vector>

namespace tool {

/// Messages in file order within each list, each beginning with "FILE:LINE: ".
struct InitFindings {
    std::vector<std::string> errors;    ///< the file cannot be applied
    std::vector<std::string> warnings;  ///< the library passes over these
};

/// Looks @p path over without applying it. Throws TAVO::file_not_found.
InitFindings checkInitFile(std::string const& path);

}  // namespace tool

#endif
