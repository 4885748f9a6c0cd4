// The user's own rules of input conversion.
#ifndef TAVO_CONVERT_CONVERT_RULES_HPP
#define TAVO_CONVERT_CONVERT_RULES_HPP

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// docs/normalisation.md tells the file's syntax. A copyable value.
class ConvertRules {
public:
    struct Rule {
        std::string from, to;  ///< neither is empty
    };

    /// Replaces the rules by those of @p path; null clears them. Throws file_not_found, and illegal_format
    /// (path:line:cause), after which the earlier rules stay.
    void load(char const* path);
    std::string const& path() const noexcept { return path_; }
    std::vector<Rule> const& rules() const noexcept { return rules_; }
    /// The longest rule whose text begins @p text; null for none.
    Rule const* longest(std::string_view text) const noexcept;
    /// A number that changes with each load.
    std::uint64_t revision() const noexcept { return revision_; }

private:
    std::string path_;
    std::vector<Rule> rules_;  // by from; longer ones before those that they begin with
    std::uint64_t revision_ = 0;
};

/// The character at the start of @p text, which is not empty, as one number: one byte, or lead byte and trail byte.
std::uint16_t charCode(std::string_view text) noexcept;

}  // namespace TAVO

#endif
