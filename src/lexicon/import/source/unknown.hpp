// Unknown words as dictionary entries: char.def and unk.def unrolled into
// one-character records that chain up to runs.
#ifndef TAVO_LEXICON_IMPORT_SOURCE_UNKNOWN_HPP
#define TAVO_LEXICON_IMPORT_SOURCE_UNKNOWN_HPP

#include "lexicon/import/source/source_lexicon.hpp"

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace TAVO::importer {

/// What char.def says of one category.
struct CharCategory {
    bool always = false;  ///< try unknown words also where a lexicon word begins
    bool group = false;   ///< a whole run makes a word
    unsigned length = 0;  ///< words of 1..length characters
};

struct CharMap {
    std::map<std::string, CharCategory> categories;
    /// Per code point below 0x10000 an index into kinds; 0 is DEFAULT alone.
    std::vector<std::uint16_t> kindOf;
    /// Lists of categories, the first of which gives the unknown words.
    std::vector<std::vector<std::string>> kinds;

    std::vector<std::string> const& at(std::uint32_t codePoint) const { return kinds[kindOf[codePoint & 0xFFFF]]; }
};

/// Throws lexicon_error.
CharMap readCharMap(std::filesystem::path const& file);

/// Adds to @p lexicon one-character words for every character of code page 932
/// and extends its matrix by the rows and columns of the chains: a run is the
/// word "begin", at the whole cost of the unknown word, and words "inside" that
/// cost nothing and follow only begin or inside of the same template.
///
/// Where the category tries unknown words only when no lexicon word begins, a
/// character that is a word of the lexicon itself gets no begin, and one that
/// words begin with gets a dearer one. A character that is a far cheaper word gets
/// neither begin nor inside. Of a category's entries in unk.def only the
/// cheapest is taken.
void addUnknownWords(Lexicon& lexicon, CharMap const& map);

/// The class word of a category as a feature of a name, "" for other categories.
char const* classWord(std::string const& category) noexcept;

}  // namespace TAVO::importer

#endif
