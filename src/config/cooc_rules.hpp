// How cooccurrence chooses between analyses.
#ifndef TAVO_CONFIG_COOC_RULES_HPP
#define TAVO_CONFIG_COOC_RULES_HPP

#include <cstdint>
#include <string>
#include <string_view>

namespace TAVO {

/// The settings of a cooccurrence rule file. A copyable value.
struct CoocSettings {
    std::uint32_t margin = 0;  ///< connection cost by which an analysis may be dearer; 0: both its sums are the best's
    std::uint32_t sentences = 0;    ///< sentences before this one whose words count
    std::uint32_t window = 40;      ///< distance, in characters, from which on words do not count
    std::uint32_t wordWeight = 2;   ///< of an equal word cooccurrence id
    std::uint32_t groupWeight = 1;  ///< of an equal group cooccurrence id
};

/// docs/cooccurrence.md tells the file's syntax.
class CoocRules {
public:
    /// Replaces the settings by those of @p path; what it does not name has its default, and null gives all of them.
    /// Throws file_not_found, and illegal_format (path:line:cause), after which the earlier settings stay. A @p text
    /// that is not null is taken instead of the file's, and @p path is its name.
    void load(char const* path, std::string_view const* text = nullptr);
    std::string const& path() const noexcept { return path_; }
    CoocSettings const& settings() const noexcept { return settings_; }

private:
    std::string path_;
    CoocSettings settings_;
};

}  // namespace TAVO

#endif
