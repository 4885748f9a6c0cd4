// Where the fields of a lexicon's entries stand.
#ifndef TAVO_LEXICON_IMPORT_SOURCE_FIELDS_HPP
#define TAVO_LEXICON_IMPORT_SOURCE_FIELDS_HPP

#include <cstddef>
#include <string>
#include <vector>

namespace TAVO::importer {

/// Lexicons of short units have as many features or more.
inline constexpr std::size_t kShortUnitFeatures = 17;

/// Where the fields behind the four fixed ones stand; -1: the source has no such field.
struct FieldLayout {
    int posFields = 6;
    int base = 6;
    int reading = 7;
    int pron = 8;
};

/// The layout of a lexicon with @p features fields behind the four fixed ones:
/// 9 are usual; lexicons of short units have 17, or 26 and more.
FieldLayout layoutFor(std::size_t features) noexcept;

/// Looks at entries for fields that hold something else than a layout says.
class FieldCheck {
public:
    /// An entry: its form, three fixed fields and features.
    void add(std::vector<std::string> const& entry);
    /// What is wrong with @p layout and which options mend it; "" when nothing is.
    std::string fault(FieldLayout const& layout) const;

private:
    struct Column {
        std::size_t forms = 0;  ///< entries with their form here
        std::size_t kana = 0;   ///< entries with kana here
    };
    bool holdsReading(std::size_t column) const { return columns_[column].kana * 2 >= entries_; }

    std::vector<Column> columns_;
    std::size_t entries_ = 0;
};

}  // namespace TAVO::importer

#endif
