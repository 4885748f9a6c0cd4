// Tagged input: taking the mark-up out of a line (docs/tagged-input.md).
#ifndef TAVO_RESULT_TAGGED_INPUT_HPP
#define TAVO_RESULT_TAGGED_INPUT_HPP

#include "config/pos_tables.hpp"
#include "engine/sentence_marks.hpp"
#include "engine/tag_scan.hpp"
#include "result/comment_rules.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// A line without its mark-up, and what that said.
struct TaggedText {
    std::string text;
    SentenceMarks marks;
};

/// Empty when the mark-up is malformed. Texts between tags are searched for the
/// comments of @p comments, texts inside elements are not.
std::optional<TaggedText> parseTaggedText(std::string_view line, PosTables const& pos, CommentRules const& comments);

/// Marks for the comments of untagged text.
SentenceMarks commentMarks(std::string_view text, CommentRules const& comments);

/// The stretches of a tagged line that no delimiter cuts: elements, tags,
/// entities and comments.
std::vector<Stretch> taggedStretches(std::string_view line, CommentRules const& comments);
/// Those of an untagged line: comments.
std::vector<Stretch> commentStretches(std::string_view line, CommentRules const& comments);

}  // namespace TAVO

#endif
