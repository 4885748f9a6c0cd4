// Tagged input: taking the markup out of a line (docs/tagged-input.md).
#ifndef TAVO_RESULT_TAGGED_INPUT_HPP
#define TAVO_RESULT_TAGGED_INPUT_HPP

#include "config/pos_tables.hpp"
#include "result/comment_rules.hpp"
#include "split/markup_scanner.hpp"
#include "split/sentence_markup.hpp"
#include "split/text_origins.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// A line without its markup, and what that said.
struct TaggedText {
    std::string text;
    TextOrigins origins;  ///< in the line
    SentenceMarkup markup;
};

/// Empty when the markup is malformed. Texts between tags are searched for the
/// comments of @p comments, texts inside elements are not.
std::optional<TaggedText> parseTaggedText(std::string_view line, PosTables const& pos, CommentRules const& comments);

/// Markup that stands for the comments of untagged text.
SentenceMarkup commentMarkup(std::string_view text, CommentRules const& comments);

/// The spans of a tagged line that no delimiter cuts: elements, tags,
/// entities and comments.
std::vector<TextSpan> taggedSpans(std::string_view line, CommentRules const& comments);
/// Those of an untagged line: comments.
std::vector<TextSpan> commentSpans(std::string_view line, CommentRules const& comments);

}  // namespace TAVO

#endif
