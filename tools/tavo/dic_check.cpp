// tavo dic check
#include "dic_command.hpp"

namespace tool {
ExitStatus checkDictionary(DicOptions const&) { throw ToolError(ExitStatus::Data, "pending"); }
}  // namespace tool
