// Which dictionaries and connection table the program works with.
#ifndef TAVO_TOOL_LEXICON_HPP
#define TAVO_TOOL_LEXICON_HPP

#include <tavo/tavo.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tool {

/// What the command line says about it.
struct LexiconOptions {
    std::string initFile;
    std::vector<std::string> dictionaries;
    std::string connTable;
};

void addLexiconOptions(CLI::App& app, LexiconOptions& options);

/// The folders where a lexicon may lie, in order: TAVO_PATH when set, the
/// installed data folder, the one beside the program's own folder.
std::vector<std::filesystem::path> lexiconFolders();

/// Gives @p analyser its settings, dictionaries and connection table.
///
/// - -c: exactly the dictionaries of -d and this table, with the rule files beside it.
/// - -i: the init file; dictionaries of -d come before its own. What it leaves
///   out comes from the first of lexiconFolders() with a lexicon. A folder stands for
///   the lexicon in it.
/// - else that folder's SysDic and ConnTable, behind those of -d, with the
///   settings of its tavo.init when that names this folder's files.
/// Throws ToolError: usage, or data when there is no lexicon or the init file is faulty, by
/// its lines; the exceptions of the library pass.
void openLexicon(TAVO::Tavo& analyser, LexiconOptions const& options);

/// Warns on standard error of each index file that was not taken, which costs the time of making it at every start.
void warnOfRefusedIndexes();

}  // namespace tool

#endif
