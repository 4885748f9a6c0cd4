#include "cli/tool_error.hpp"

#include <cstdio>
#include <cstring>

namespace tool {

ToolError fileError(std::string const& path, int error) {
    return ToolError(ExitStatus::Data, path + ": " + std::strerror(error));
}

void complain(std::string const& message) {
    std::string const line = "tavo: " + message + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace tool
