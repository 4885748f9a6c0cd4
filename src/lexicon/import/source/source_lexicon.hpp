// A MeCab-format lexicon in memory: words, unknown-word templates, connection
// costs. Text is in code page 932.
#ifndef TAVO_LEXICON_IMPORT_SOURCE_SOURCE_LEXICON_HPP
#define TAVO_LEXICON_IMPORT_SOURCE_SOURCE_LEXICON_HPP

#include "lexicon/import/source/fields.hpp"
#include "lexicon/import/source/matrix.hpp"
#include "lexicon/import/source/text.hpp"
#include "lexicon/mecab_fields.hpp"

#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace TAVO::importer {

/// Unique strings with stable addresses, numbered from 0.
class StringPool {
public:
    std::uint32_t add(std::string_view text);
    std::string const& at(std::uint32_t index) const noexcept { return strings_[index]; }
    std::uint32_t size() const noexcept { return static_cast<std::uint32_t>(strings_.size()); }

private:
    std::deque<std::string> strings_;
    std::unordered_map<std::string_view, std::uint32_t> index_;
};

struct Word {
    std::string_view form;                 ///< stands in the lexicon's storage
    std::string_view base, reading, pron;  ///< empty when the source has none
    std::uint32_t row = 0, col = 0;        ///< of the (extended) matrix: right id, left id
    std::int32_t cost = 0;
    std::uint32_t name = 0;  ///< index into Lexicon::names
    bool unknown = false;    ///< stands for one character of an unknown word
};

/// One line of unk.def.
struct UnknownTemplate {
    std::string category;
    std::uint32_t row = 0, col = 0;
    std::int32_t cost = 0;
    std::string name;
    std::vector<std::string> fields;  ///< those behind the four fixed ones, UTF-8
};

/// The name of a word's part of speech: @p count fields from @p first on, joined
/// with ":", those with "*" left out. A "-" or "/" would end a name's features,
/// so it separates features as well.
std::string joinName(std::vector<std::string> const& fields, std::size_t first, std::size_t count);

/// The feature that the names of @p form (UTF-8) have beside, with its ":": words
/// made of digits, commas between them allowed, have ":Number", single letters
/// ":Alphabet"; "" for others.
std::string classFeature(std::string_view form);

struct LeftOut {
    Loss damaged;     ///< lines that are no text in the source's encoding; the examples are file:line
    Loss noForm;      ///< an empty form; the examples are file:line
    Loss noCode;      ///< a form with a character outside code page 932
    Loss duplicates;  ///< equal in all that a user can see
    Loss lostFields;  ///< a base form or reading dropped, the word kept
};

struct Lexicon {
    std::string charset;
    std::filesystem::path folder;
    std::uint64_t entriesRead = 0;
    StringPool names;
    words::MecabFields fields;  ///< those that the names were made of
    std::vector<Word> words;
    std::vector<UnknownTemplate> templates;
    Matrix matrix;
    std::uint32_t sourceRows = 0, sourceCols = 0;  ///< of the matrix as the source has it
    std::vector<std::uint32_t> rowBase;            ///< per row: the source's right id that it stands for
    bool shortUnits = false;                       ///< words are the shortest units: letters, digits
    double costFactor = 800;                       ///< source cost of a factor e in probability
    LeftOut leftOut;

    /// Tells the fields (UTF-8) that a name was made of, unless it has some.
    void nameFields(std::string_view name, std::vector<std::string> values, bool unknown);
    /// Keeps a copy of @p text for the lexicon's life.
    std::string_view keep(std::string_view text);

private:
    std::deque<std::string> storage_;
    std::size_t room_ = 0;
};

/// Reads the folder's *.csv, matrix.def, unk.def and dicrc. Throws lexicon_error.
Lexicon readLexicon(std::filesystem::path const& folder, std::string const& charsetOverride, FieldLayout const* layout);

/// Splits @p line at commas; a field in double quotes may hold commas, and two
/// double quotes for one.
void splitCsv(std::string_view line, std::vector<std::string>& fields);

}  // namespace TAVO::importer

#endif
