// Rules that turn texts of conjugated words into those of their end (dictionary) forms.
#ifndef TAVO_RESULT_END_FORM_RULES_HPP
#define TAVO_RESULT_END_FORM_RULES_HPP

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace TAVO {

/// docs/end-forms.md tells the file's syntax. A value that is cheap to copy: copies share the rules.
class EndFormRules {
public:
    enum class Kind : std::size_t { Form, Reading, Pron, Standard };
    static constexpr std::array<std::string_view, 4> kKindNames{"form", "reading", "pron", "standard"};

    /// Replaces the rules by those of @p path, or of @p text with @p path as its name; null clears them. Throws
    /// file_not_found, and illegal_format (path:line:cause), after which the earlier rules stay.
    void load(char const* path, std::string_view const* text = nullptr);
    std::string const& path() const noexcept { return path_; }
    bool empty() const noexcept { return rules_ == nullptr; }

    /// The end form of @p text, a text of a word of part of speech @p name (with or without class number); nothing
    /// when no rule fits. A form in katakana that no rule for forms fits follows those for readings.
    std::optional<std::string> apply(std::string_view name, Kind kind, std::string_view text) const;

private:
    struct Rule {
        std::string strip, add;
    };
    using OneKind = std::vector<Rule>;  // by strip
    using PartOfSpeech = std::array<OneKind, kKindNames.size()>;
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const noexcept { return std::hash<std::string_view>()(name); }
    };
    using Rules = std::unordered_map<std::string, PartOfSpeech, Hash, std::equal_to<>>;

    static std::string parse(std::string_view line, Rules& rules);
    static std::optional<std::string> applied(OneKind const& rules, std::string_view text);

    std::string path_;
    std::shared_ptr<Rules const> rules_;  // null without rules
};

}  // namespace TAVO

#endif
