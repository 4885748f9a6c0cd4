// The files of a lexicon, for those who open them.
#ifndef TAVO_LEXICON_LEXICON_FILES_HPP
#define TAVO_LEXICON_LEXICON_FILES_HPP

#include "config/init_file.hpp"

#include <tavo/tavo.hpp>

#include <functional>
#include <string>

namespace TAVO::words {

/// Throws lexicon_error naming @p path when it is no compiled dictionary; the
/// library's own exceptions of this kind name no file. Other exceptions pass.
void namingDictionary(std::string const& path, std::function<void()> const& load);

/// The connection table at @p path, or in the folder there.
std::string tableAt(std::string const& path);

/// Gives @p analyser a connection table with the rule files that lie beside it. Those of which
/// @p named has the key stay as they are.
void useTable(Tavo& analyser, std::string const& table, InitValues const& named = {});

}  // namespace TAVO::words

#endif
