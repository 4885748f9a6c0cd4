// Writes an imported lexicon: dictionary source text, compiled dictionary,
// connection table, init file and reduce rules.
#ifndef TAVO_LEXICON_IMPORT_WRITE_HPP
#define TAVO_LEXICON_IMPORT_WRITE_HPP

#include "lexicon/import/source/source_lexicon.hpp"
#include "lexicon/import/table/table.hpp"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::importer {

/// Reading and pronunciation in one string: what they share stands plain, spans
/// where they differ as "(reading|pronunciation)". Both in code page 932. Empty
/// when a one-byte mark in them would be taken for one of the encoding.
std::string joinReadPron(std::string_view reading, std::string_view pron);

/// @p text (code page 932) with a "\" before each "\", ",", "-" and "/".
std::string escapeField(std::string_view text);

/// A line of dictionary source; texts in code page 932, empty ones left out.
std::string sourceLine(std::string_view form, std::string_view name, unsigned cost, std::string_view reading,
                       std::string_view pron, std::string_view base);

/// The lines of the dictionary source, sorted by form, id, word-cost byte and
/// exact cost. Lines of a form that a user can't tell apart are written once;
/// the others are counted in the lexicon's leftOut.
std::vector<std::string> sourceLines(Lexicon& lexicon, Tables const& tables);

/// Writes @p text to @p path through a temporary file, so that nothing
/// half-written is left. Throws lexicon_error.
void writeFile(std::filesystem::path const& path, std::string_view text);

/// The connection table's file.
std::string connTableBytes(Tables const& tables);

/// A compiled dictionary and the lines that it holds.
struct DictionaryPart {
    std::size_t first, last;  ///< of the source's lines, last not included
    std::string bytes;
};

/// Compiles @p lines, into several dictionaries when one file has no room for
/// them. Throws lexicon_error naming the line that is refused.
std::vector<DictionaryPart> compileDictionaries(std::vector<std::string> const& names,
                                                std::vector<std::string> const& lines);

/// The line near the middle of [first, last) at which a form begins; first when
/// all lines before the middle have one form.
std::size_t middleForm(std::vector<std::string> const& lines, std::size_t first, std::size_t last);

/// File name of the dictionary at position @p part, from 0: SysDic, SysDic2, ...
std::string dictionaryName(std::size_t part);

/// The text of tavo.init for files in folder @p data (an absolute path).
std::string initFileText(std::filesystem::path const& data, std::size_t parts, bool withSource);
/// The reduce rules for parts of speech @p names. Where words are short units,
/// numbers end at commas and points, and letters that are words join.
std::string reduceRuleText(std::vector<std::string> const& names, bool shortUnits);
/// The list of number parts of speech, from the names that have the feature Number.
std::string numberListText(std::vector<std::string> const& names);

}  // namespace TAVO::importer

#endif
