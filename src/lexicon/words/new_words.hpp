// Costs for words that are added to a lexicon: from MeCab's CSV lines, or as an
// existing word has them.
#ifndef TAVO_LEXICON_WORDS_NEW_WORDS_HPP
#define TAVO_LEXICON_WORDS_NEW_WORDS_HPP

#include "lexicon/words/word_classes.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::words {

/// A word of the lexicon that new words follow.
struct LikeWord {
    Placement placement;
    std::size_t bytes = 0;  ///< of its form
};

/// Makes lines of dictionary source for one connection table. Texts are Shift_JIS.
class NewWords {
public:
    /// @p names: of the parts of speech per id, id 0 unused. @p classes: of the
    /// lexicon, when it has them; without, words take whole classes as they are.
    NewWords(std::vector<std::string> names, std::optional<WordClasses> classes)
        : names_(std::move(names)), classes_(std::move(classes)) {}

    void setLike(LikeWord like) { like_ = like; }

    /// The source line for a line in MeCab's format: form, left id, right id, cost,
    /// features. Ids or cost that are missing (empty, "*" or -1) come from the like
    /// word, else from the typical class of the name. False, with the cause in
    /// @p error, for what is no such line.
    bool fromMecab(std::string_view line, std::string& source, std::string& error) const;

    /// @p line of dictionary source with the part of speech and the cost that it
    /// leaves empty taken from the like word; as it is without one.
    std::string complete(std::string_view line) const;

    std::vector<std::string> const& names() const noexcept { return names_; }
    std::optional<WordClasses> const& classes() const noexcept { return classes_; }

private:
    /// For a word of @p bytes bytes; @p name without class. Id 0 when the table has no such name.
    Placement likePlacement(std::string_view name, std::size_t bytes) const;
    Placement typical(std::string_view name) const;

    std::vector<std::string> names_;
    std::optional<WordClasses> classes_;
    std::optional<LikeWord> like_;
};

}  // namespace TAVO::words

#endif
