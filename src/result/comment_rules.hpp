// Comment rules: spans of the input that are no language, and the morpheme
// that each becomes.
#ifndef TAVO_RESULT_COMMENT_RULES_HPP
#define TAVO_RESULT_COMMENT_RULES_HPP

#include "config/pos_tables.hpp"
#include "split/sentence_markup.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// docs/comment-rules.md tells the file's syntax.
struct CommentRule {
    std::string begin;     ///< the string itself, or what the comment begins with
    std::string end;       ///< what it ends with; empty for a fixed string
    std::string partOfSP;  ///< resolved by CommentRules::bind()
    TagInfo info;
};

/// A comment in a text, [begin, end).
struct Comment {
    std::size_t begin;
    std::size_t end;
    CommentRule const* rule;
};

/// The rules of one analyser in file order. A copyable value.
class CommentRules {
public:
    /// Replaces the rules by those of @p path; null clears them. Throws
    /// file_not_found, and illegal_format (path:line:cause), after which the
    /// earlier rules stay.
    void setCommentRulePath(char const* path);
    std::string const& path() const noexcept { return path_; }
    bool empty() const noexcept { return rules_.empty(); }

    /// Checks one rule and adds it; returns the error's text, empty on success.
    std::string setCommentRule(std::map<std::string, std::string> const& rule);
    /// Resolves the rules' part-of-speech names; cheap when nothing changed.
    void setCommentPartOfSP(PosTables const& pos);

    /// The comments of @p text, in order: the earliest one, at one position the
    /// longest, then the earlier rule. A comment whose end string is missing
    /// reaches to the end of the text. They refer to these rules.
    std::vector<Comment> find(std::string_view text) const;

private:
    Comment longestAt(std::string_view text, std::size_t pos) const;

    std::string path_;
    std::vector<CommentRule> rules_;
    std::array<bool, 256> mayBegin_{};  // by byte: some comment begins with it
    std::uint64_t boundRevision_ = 0;
};

}  // namespace TAVO

#endif
