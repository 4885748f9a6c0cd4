// How the program fails: a message and an exit status.
#ifndef TAVO_TOOL_TOOL_ERROR_HPP
#define TAVO_TOOL_TOOL_ERROR_HPP

#include <stdexcept>
#include <string>

namespace tool {

enum class ExitStatus : int { Ok = 0, Data = 1, Usage = 2 };

/// A failure for the user to read: what, where, what to do.
class ToolError : public std::runtime_error {
public:
    ToolError(ExitStatus status, std::string const& message) : std::runtime_error(message), status_(status) {}
    ExitStatus status() const noexcept { return status_; }

private:
    ExitStatus status_;
};

/// "path: reason" for the errno value @p error.
ToolError fileError(std::string const& path, int error);

/// Nobody reads the output any more. Not a failure: the program just ends.
struct OutputClosed {};

/// Writes "tavo: " + @p message and a line feed to standard error.
void complain(std::string const& message);

}  // namespace tool

#endif
