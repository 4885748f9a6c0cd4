// Reads the entries of a source lexicon.
#ifndef TAVO_LEXICON_IMPORT_SOURCE_ENTRY_READER_HPP
#define TAVO_LEXICON_IMPORT_SOURCE_ENTRY_READER_HPP

#include "lexicon/import/source/charset.hpp"
#include "lexicon/import/source/fields.hpp"
#include "lexicon/import/source/source_lexicon.hpp"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::importer {

/// @p text as a number within [low, high]. Throws lexicon_error that names @p what.
long long parseNumber(std::string_view text, long long low, long long high, std::filesystem::path const& file,
                      std::size_t line, char const* what);

/// Adds entries, line by line, to a lexicon whose matrix is there already. Lines are UTF-8; all throw lexicon_error.
class EntryReader {
public:
    EntryReader(Lexicon& lexicon, FieldLayout const& layout) : lexicon_(lexicon), layout_(layout) {}

    void setLayout(FieldLayout const& layout) { layout_ = layout; }
    /// Of a lexicon whose words have @p features fields.
    void describeFields(std::size_t features);
    /// A line of a *.csv file.
    void csvLine(std::filesystem::path const& file, std::string_view line, std::size_t number);
    /// A line of unk.def.
    void unknownLine(std::filesystem::path const& file, std::string_view line, std::size_t number);
    /// What is wrong with the layout by the words seen, as FieldCheck tells.
    std::string fault() const { return check_.fault(layout_); }

private:
    void ids(std::filesystem::path const& file, std::size_t line, std::uint32_t& row, std::uint32_t& col,
             std::int32_t& cost);
    std::vector<std::string> posFields() const;
    std::string name(std::filesystem::path const& file, std::size_t line);
    std::string_view field(int index);

    Lexicon& lexicon_;
    FieldLayout layout_;
    Cp932 const& cp932_ = Cp932::table();
    std::vector<std::string> fields_;
    std::string scratch_;
    FieldCheck check_;
};

}  // namespace TAVO::importer

#endif
