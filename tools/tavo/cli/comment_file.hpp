// Comment rules in the user's encoding.
#ifndef TAVO_TOOL_COMMENT_FILE_HPP
#define TAVO_TOOL_COMMENT_FILE_HPP

#include "cli/encoding.hpp"

#include <tavo/tavo.hpp>

#include <string>

namespace tool {

/// Gives @p analyser the comment rules of @p path (docs/comment-rules.md).
/// Throws ToolError (data) with path, line and cause.
void useCommentRules(TAVO::Tavo& analyser, std::string const& path, Encoding encoding);

}  // namespace tool

#endif
