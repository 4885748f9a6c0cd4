// Where lexicons lie.
#ifndef TAVO_TEXT_LEXICON_PLACES_HPP
#define TAVO_TEXT_LEXICON_PLACES_HPP

#include <string>
#include <vector>

namespace TAVO {

/// True for a folder with SysDic and ConnTable.
bool holdsLexicon(std::string const& folder);
/// The first of Lexicon::places() with a lexicon. Throws file_not_found, which lists them all.
std::string findLexicon();
/// The dictionaries of a lexicon's folder in their order: SysDic, and for large lexicons SysDic2 and so on.
std::vector<std::string> dictionariesIn(std::string const& folder);

}  // namespace TAVO

#endif
